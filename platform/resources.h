#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "resource_manager.h"

namespace StandIn {

using Bytes = std::vector<uint8_t>;

/// The resources of one module of an application.
struct Resources {
    std::map<uint32_t, Bytes> mediaById;
    std::map<std::string, Bytes> mediaByName;
    std::map<std::string, Bytes> rawFiles;
};

/// The manager that reads `resources`, which must not change any more.
std::shared_ptr<OHOS::Global::Resource::ResourceManager> MakeResourceManager(
    std::shared_ptr<const Resources> resources);

}  // namespace StandIn
