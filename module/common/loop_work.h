#pragma once

#include <uv.h>

#include <atomic>
#include <memory>
#include <mutex>

namespace TAVIK::GAME_PLAYER {

class LoopQueue;

/// Work for the JS thread of an environment: see `QueueOnLoop`.
class LoopWork {
public:
    LoopWork() = default;
    LoopWork(const LoopWork&) = delete;
    LoopWork& operator=(const LoopWork&) = delete;
    virtual ~LoopWork() = default;

    /// Called once, on the JS thread. Releases what the work holds, as the object may live on.
    virtual void Run() = 0;

private:
    friend class LoopQueue;

    uv_work_t request_{};
    std::shared_ptr<LoopQueue> queue_;
    LoopWork* next_ = nullptr;  // guarded by the queue's mutex
    std::atomic<bool> isAccepted_{false};
    std::atomic<int> steps_{3};  // to go, in any order: it is accepted, it has run, its request completed
};

/// The work on its way to one environment, oldest first. A platform may complete requests in any order. So
/// whichever completes, the oldest work that the loop has accepted is run. Thread-safe.
class LoopQueue {
public:
    LoopQueue() = default;
    LoopQueue(const LoopQueue&) = delete;
    LoopQueue& operator=(const LoopQueue&) = delete;

    /// Adds `work`, which stays the caller's, to `queue`. It must then be submitted, and accepted or removed.
    static void Add(const std::shared_ptr<LoopQueue>& queue, LoopWork& work);

    /// Submits the request of `work` to `loop`. Returns whether the loop takes it. Its completion may run, on
    /// the JS thread, before this returns.
    static bool Submit(LoopWork& work, uv_loop_t* loop);

    /// From now on, the queue owns the work, which may be gone when this returns.
    static void Accept(LoopWork* work);

    /// Only for work that the loop has refused.
    void Remove(const LoopWork& work);

private:
    LoopWork* TakeOldest(LoopWork& completed);
    LoopWork* Unlink(LoopWork* previous, LoopWork* work);
    static void Complete(uv_work_t* request, int status);
    static void FinishSteps(LoopWork* work, int count);

    std::mutex mutex_;  // guards the list; nothing is called under it
    LoopWork* oldest_ = nullptr;
    LoopWork* latest_ = nullptr;
};

}  // namespace TAVIK::GAME_PLAYER
