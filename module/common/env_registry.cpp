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

auto FindEnvInfo(const EnvInfo* info) {
    auto isSame = [info](const std::shared_ptr<EnvInfo>& entry) { return entry.get() == info; };
    return std::find_if(gEnvInfoList.infos.begin(), gEnvInfoList.infos.end(), isSame);
}

bool DeleteOwnReference(const EnvInfo* info, napi_ref reference) {
    if (!IsValidEnv(info)) return false;
    (void)napi_delete_reference(info->env, reference);
    return true;
}

class ReferenceWork final : public LoopWork {
public:
    ReferenceWork(std::shared_ptr<EnvInfo> info, napi_ref reference)
        : envInfo_(std::move(info)), reference_(reference) {}
    void Run() override { (void)DeleteOwnReference(std::exchange(envInfo_, nullptr).get(), reference_); }

private:
    std::shared_ptr<EnvInfo> envInfo_;
    napi_ref reference_;
};

// The only call of the platform under the lock.
QueueStatus SubmitToLoop(const EnvInfo& info, LoopWork& work) {
    std::shared_lock<std::shared_mutex> guard(gEnvInfoList.mutex);
    uv_loop_t* loop = nullptr;
    if (!info.isRegistered || napi_get_uv_event_loop(info.env, &loop) != napi_ok) return QueueStatus::NO_LOOP;
    return LoopQueue::Submit(work, loop) ? QueueStatus::QUEUED : QueueStatus::REFUSED;
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

QueueStatus QueueOnLoop(const std::shared_ptr<EnvInfo>& info, std::unique_ptr<LoopWork>& work) {
    if (work == nullptr || info == nullptr) return QueueStatus::NO_LOOP;
    LoopQueue::Add(info->queue, *work);
    const QueueStatus status = SubmitToLoop(*info, *work);
    if (status != QueueStatus::QUEUED) {
        info->queue->Remove(*work);
        return status;
    }
    LoopQueue::Accept(work.release());
    return status;
}

bool DeleteReference(const std::shared_ptr<EnvInfo>& info, napi_ref reference) {
    if (info == gEnvInfo) return DeleteOwnReference(info.get(), reference);
    std::unique_ptr<LoopWork> work(new (std::nothrow) ReferenceWork(info, reference));
    return QueueOnLoop(info, work) == QueueStatus::QUEUED;
}

}  // namespace TAVIK::GAME_PLAYER
