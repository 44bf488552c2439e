#include "device_context.h"

#include <algorithm>
#include <utility>

#include "faults.h"
#include "resource_manager.h"

namespace StandIn {
namespace {

using OHOS::Global::Resource::NOT_FOUND;
using OHOS::Global::Resource::ResourceManager;
using OHOS::Global::Resource::RState;
using OHOS::Global::Resource::SUCCESS;

/// The bytes that a read found, or null.
RState CopyOut(const Bytes* bytes, size_t& length, std::unique_ptr<uint8_t[]>& data) {
    length = 0;
    if (bytes == nullptr) return NOT_FOUND;
    length = bytes->size();
    data = std::make_unique<uint8_t[]>(length);
    std::copy(bytes->begin(), bytes->end(), data.get());
    return SUCCESS;
}

template <typename Key>
const Bytes* Find(Call call, const std::map<Key, Bytes>& resources, const Key& key) {
    auto found = resources.find(key);
    return Faults::Trip(call) || found == resources.end() ? nullptr : &found->second;
}

class ModuleResources final : public ResourceManager {
public:
    explicit ModuleResources(std::shared_ptr<const Resources> resources) : resources_(std::move(resources)) {}

    RState GetMediaDataById(uint32_t id, size_t& length, std::unique_ptr<uint8_t[]>& data,
                            uint32_t /*density*/) override {
        return CopyOut(Find(Call::GetMediaDataById, resources_->mediaById, id), length, data);
    }

    RState GetMediaDataByName(const char* name, size_t& length, std::unique_ptr<uint8_t[]>& data,
                              uint32_t /*density*/) override {
        return CopyOut(Find(Call::GetMediaDataByName, resources_->mediaByName, std::string(name)), length,
                       data);
    }

    RState GetRawFileFromHap(const std::string& name, size_t& length,
                             std::unique_ptr<uint8_t[]>& data) override {
        return CopyOut(Find(Call::GetRawFileFromHap, resources_->rawFiles, name), length, data);
    }

private:
    const std::shared_ptr<const Resources> resources_;
};

}  // namespace

std::shared_ptr<ResourceManager> MakeResourceManager(std::shared_ptr<const Resources> resources) {
    return std::make_shared<ModuleResources>(std::move(resources));
}

}  // namespace StandIn
