#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace OHOS::Global::Resource {

enum RState { SUCCESS = 0, NOT_FOUND = 7, ERROR_CODE_RES_NOT_FOUND_BY_ID = 9001002 };

/// Reads the resources of an application package. Each read sets `length`, in bytes, and `data`, which the caller then
/// owns. A missing resource gives `NOT_FOUND` and length 0. Callable from any thread.
class ResourceManager {
public:
    virtual ~ResourceManager() = default;

    /// Media by resource ID; `density` 0 is the screen's own.
    virtual RState GetMediaDataById(uint32_t id, size_t& length, std::unique_ptr<uint8_t[]>& data,
                                    uint32_t density) = 0;

    /// Media by resource name, without type or extension; `density` 0 is the screen's own.
    virtual RState GetMediaDataByName(const char* name, size_t& length, std::unique_ptr<uint8_t[]>& data,
                                      uint32_t density) = 0;

    /// A raw file by its name within the package.
    virtual RState GetRawFileFromHap(const std::string& name, size_t& length, std::unique_ptr<uint8_t[]>& data) = 0;
};

}  // namespace OHOS::Global::Resource
