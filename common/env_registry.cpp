#include "common/env_registry.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <shared_mutex>
#include <utility>
#include <vector>

#include "common/velmor_log.h"

namespace TAVIK::GAME_PLAYER {
namespace {

// The mutex guards `infos` and writing `isRegistered`. While it is held shared, no environment can end, so
// its event loop can be found and work queued there; nothing else is called under it. A waiting writer may
// block further readers, so a thread that holds it takes no other lock of the module, and not this one again.
struct EnvRegistry {
    std::shared_mutex mutex;
    std::vector<std::shared_ptr<EnvInfo>> infos;
};

// Never destroyed: detached threads may use it while the process exits.
EnvRegistry& gEnvInfoList = *new EnvRegistry();

struct ReferenceWork : uv_work_t {
    std::shared_ptr<EnvInfo> envInfo;
    napi_ref reference;
};

auto FindEnvInfo(const EnvInfo* info) {
    auto isSame = [info](const std::shared_ptr<EnvInfo>& entry) { return entry.get() == info; };
    return std::find_if(gEnvInfoList.infos.begin(), gEnvInfoList.infos.end(), isSame);
}

bool DeleteOwnReference(const EnvInfo* info, napi_ref reference) {
    if (!IsValidEnv(info)) return false;
    (void)napi_delete_reference(info->env, reference);
    return true;
}

}  // namespace

thread_local std::shared_ptr<EnvInfo> gEnvInfo;

void SaveEnvInfo(const std::shared_ptr<EnvInfo>& info) {
    if (info == nullptr) {
        GAME_LOGE("SaveEnvInfo envInfo is nullptr");
        return;
    }
    {
        std::lock_guard<std::shared_mutex> guard(gEnvInfoList.mutex);
        auto& infos = gEnvInfoList.infos;
        for (const auto& entry : infos) {
            if (entry->env == info->env) entry->isRegistered = false;
        }
        info->isRegistered = true;
        auto isStale = [](const std::shared_ptr<EnvInfo>& entry) { return !entry->isRegistered; };
        infos.erase(std::remove_if(infos.begin(), infos.end(), isStale), infos.end());
        infos.push_back(info);
    }
    GAME_LOGI("SaveEnvInfo add env success");
}

void DeleteEnvInfo(const EnvInfo* info) {
    if (info == nullptr) {
        GAME_LOGE("DeleteEnvInfo envInfo is nullptr");
        return;
    }
    {
        std::lock_guard<std::shared_mutex> guard(gEnvInfoList.mutex);
        auto found = FindEnvInfo(info);
        if (found == gEnvInfoList.infos.end()) return;
        const std::shared_ptr<EnvInfo> removed = std::move(*found);
        gEnvInfoList.infos.erase(found);
        removed->isRegistered = FindEnvInfo(info) != gEnvInfoList.infos.end();
    }
    GAME_LOGI("DeleteEnvInfo delete env success");
}

bool IsValidEnv(const EnvInfo* info) {
    if (info == nullptr) {
        GAME_LOGE("IsValidEnv envInfo is nullptr");
        return false;
    }
    return info->isRegistered;
}

QueueStatus QueueOnLoop(const std::shared_ptr<EnvInfo>& info, uv_work_t* work, uv_after_work_cb after) {
    if (work == nullptr || info == nullptr) return QueueStatus::NO_LOOP;
    std::shared_lock<std::shared_mutex> guard(gEnvInfoList.mutex);
    uv_loop_t* loop = nullptr;
    if (!info->isRegistered || napi_get_uv_event_loop(info->env, &loop) != napi_ok) {
        return QueueStatus::NO_LOOP;
    }
    auto doNothing = [](uv_work_t*) {};
    return uv_queue_work(loop, work, doNothing, after) == 0 ? QueueStatus::QUEUED : QueueStatus::REFUSED;
}

bool DeleteReference(const std::shared_ptr<EnvInfo>& info, napi_ref reference) {
    if (info == gEnvInfo) return DeleteOwnReference(info.get(), reference);
    auto deleteThere = [](uv_work_t* work, int /*status*/) {
        std::unique_ptr<ReferenceWork> owned(static_cast<ReferenceWork*>(work));
        (void)DeleteOwnReference(owned->envInfo.get(), owned->reference);
    };
    std::unique_ptr<ReferenceWork> work(new (std::nothrow) ReferenceWork{{}, info, reference});
    if (QueueOnLoop(info, work.get(), deleteThere) != QueueStatus::QUEUED) return false;
    (void)work.release();
    return true;
}

}  // namespace TAVIK::GAME_PLAYER
