#pragma once

#include <uv.h>

#include <cstdint>
#include <deque>
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
    uint64_t ticket_ = 0;
    bool isAccepted_ = false;    // by the loop; guarded by the queue's mutex
    bool hasRun_ = false;        // this and the next are the JS thread's
    bool hasCompleted_ = false;  // the loop has returned the request
};

/// The work on its way to one environment, oldest first. A platform may complete requests in any order. So
/// whichever completes, the oldest work that the loop has accepted is run. Thread-safe.
class LoopQueue : public std::enable_shared_from_this<LoopQueue> {
public:
    /// Adds `work`, which stays the caller's. It must then be submitted to the loop, and accepted or removed
    /// by the returned ticket.
    uint64_t Add(LoopWork& work);

    /// Submits the request of `work` to `loop`. Returns whether the loop takes it. Its completion may run, on
    /// the JS thread, before this returns.
    static bool Submit(LoopWork& work, uv_loop_t* loop);

    /// From now on, the queue owns the work.
    void Accept(uint64_t ticket);
    void Remove(uint64_t ticket);

private:
    std::deque<LoopWork*>::iterator Find(uint64_t ticket);
    LoopWork* TakeOldest(LoopWork& completed);
    static void Complete(uv_work_t* request, int status);
    static void DestroyIfDone(LoopWork* work);

    std::mutex mutex_;  // guards what follows; nothing is called under it
    std::deque<LoopWork*> works_;
    uint64_t tickets_ = 0;
};

}  // namespace TAVIK::GAME_PLAYER
