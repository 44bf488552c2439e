#include "common/env_registry.h"

#include <algorithm>
#include <iterator>
#include <mutex>
#include <utility>
#include <vector>

#include "common/velmor_log.h"

namespace TAVIK::GAME_PLAYER {
namespace {

// The mutex guards `infos`; nothing is called under it.
struct EnvRegistry {
    std::mutex mutex;
    std::vector<std::shared_ptr<EnvInfo>> infos;
};

// Never destroyed: detached threads may use it while the process exits.
EnvRegistry& gEnvInfoList = *new EnvRegistry();

auto FindEnvInfo(const EnvInfo* info) {
    auto isSame = [info](const std::shared_ptr<EnvInfo>& entry) { return entry.get() == info; };
    return std::find_if(gEnvInfoList.infos.begin(), gEnvInfoList.infos.end(), isSame);
}

}  // namespace

thread_local std::shared_ptr<EnvInfo> gEnvInfo;

void SaveEnvInfo(const std::shared_ptr<EnvInfo>& info) {
    if (info == nullptr) {
        GAME_LOGE("SaveEnvInfo envInfo is nullptr");
        return;
    }
    std::vector<std::shared_ptr<EnvInfo>> stale;
    {
        std::lock_guard<std::mutex> guard(gEnvInfoList.mutex);
        auto& infos = gEnvInfoList.infos;
        auto isOther = [&info](const auto& entry) { return entry->env != info->env || entry == info; };
        auto first = std::stable_partition(infos.begin(), infos.end(), isOther);
        stale.assign(std::make_move_iterator(first), std::make_move_iterator(infos.end()));
        infos.erase(first, infos.end());
        infos.push_back(info);
    }
    for (const auto& entry : stale) {
        entry->SetRegistered(false);
    }
    info->SetRegistered(true);
    GAME_LOGI("SaveEnvInfo add env success");
}

void DeleteEnvInfo(const EnvInfo* info) {
    if (info == nullptr) {
        GAME_LOGE("DeleteEnvInfo envInfo is nullptr");
        return;
    }
    std::shared_ptr<EnvInfo> removed;
    bool isStillThere = false;
    {
        std::lock_guard<std::mutex> guard(gEnvInfoList.mutex);
        auto found = FindEnvInfo(info);
        if (found == gEnvInfoList.infos.end()) return;
        removed = std::move(*found);
        gEnvInfoList.infos.erase(found);
        isStillThere = FindEnvInfo(info) != gEnvInfoList.infos.end();  // it was saved twice
    }
    removed->SetRegistered(isStillThere);
    GAME_LOGI("DeleteEnvInfo delete env success");
}

bool IsValidEnv(const EnvInfo* info) {
    if (info == nullptr) {
        GAME_LOGE("IsValidEnv envInfo is nullptr");
        return false;
    }
    return info->IsRegistered();
}

bool DeleteReference(const std::shared_ptr<EnvInfo>& info, napi_ref reference) {
    auto deleteIt = [info, reference] {
        const bool isAlive = IsValidEnv(info);
        if (isAlive) (void)napi_delete_reference(info->env, reference);
        return isAlive;
    };
    if (info == gEnvInfo) return deleteIt();
    auto work = MakeLoopWork([deleteIt] { (void)deleteIt(); });
    return info->Queue(work) == QueueStatus::QUEUED;
}

}  // namespace TAVIK::GAME_PLAYER
