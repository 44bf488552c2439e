#pragma once

#include <uv.h>

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

#include "napi/native_api.h"

namespace TAVIK::GAME_PLAYER {

class EnvInfo;

/// Work for the JS thread of an environment: see `EnvInfo::Queue`.
class LoopWork {
public:
    LoopWork() = default;
    LoopWork(const LoopWork&) = delete;
    LoopWork& operator=(const LoopWork&) = delete;
    virtual ~LoopWork() = default;

    /// Called once, on the JS thread. Releases what the work holds, as the object may live on.
    virtual void Run() = 0;

private:
    friend class EnvInfo;

    uv_work_t request_{};
    std::shared_ptr<EnvInfo> envInfo_;
    bool isHalfDone_ = false;  // has run, or its request has completed; used on the JS thread
};

/// Work that calls `task`; null if it could not be allocated.
template <typename Task>
std::unique_ptr<LoopWork> MakeLoopWork(Task task) {
    struct TaskWork final : LoopWork {
        explicit TaskWork(Task&& work) : task(std::move(work)) {}
        void Run() override { Task(std::move(task))(); }
        Task task;
    };
    return std::unique_ptr<LoopWork>(new (std::nothrow) TaskWork(std::move(task)));
}

enum class QueueStatus {
    QUEUED,
    NO_LOOP,  // `work` is null, the environment has ended, or its event loop could not be found
    REFUSED,  // the event loop did not accept the work
};

/// One JS environment, and the work on its way to it. The object lives as long as anything refers to it, so its address
/// is not reused while a late answer still checks it. The environment itself is alive only while it is registered.
/// Thread-safe.
class EnvInfo : public std::enable_shared_from_this<EnvInfo> {
public:
    explicit EnvInfo(napi_env jsEnv) : env(jsEnv) {}

    const napi_env env;

    bool IsRegistered() const { return isRegistered_; }

    /// For the registry alone. Waits for a thread that is queuing work.
    void SetRegistered(bool isRegistered);

    /// Queues `work`, which may be null, to run on the JS thread, after all that was queued for it before. Takes it if
    /// the status is QUEUED; otherwise `work` stays the caller's. The environment cannot end meanwhile. Any thread.
    QueueStatus Queue(std::unique_ptr<LoopWork>& work);

private:
    LoopWork* TakeOldest();
    static void CompleteWork(uv_work_t* request, int status);
    static void FinishHalf(LoopWork* work);

    // Guards writing `isRegistered_`, and the queue. While it is held, the environment cannot end, so its event loop
    // can be found and work queued there; nothing else is called under it.
    std::mutex mutex_;
    std::atomic<bool> isRegistered_{false};
    std::deque<LoopWork*> queue_;  // accepted by the event loop, oldest first
};

}  // namespace TAVIK::GAME_PLAYER
