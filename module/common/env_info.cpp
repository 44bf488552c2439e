#include "common/env_info.h"

namespace TAVIK::GAME_PLAYER {

void EnvInfo::SetRegistered(bool isRegistered) {
    std::lock_guard<std::mutex> guard(mutex_);
    isRegistered_ = isRegistered;
}

// The only calls of the platform under a lock.
QueueStatus EnvInfo::Queue(std::unique_ptr<LoopWork>& work) {
    if (work == nullptr) return QueueStatus::NO_LOOP;
    work->envInfo_ = shared_from_this();
    work->request_.data = work.get();
    std::lock_guard<std::mutex> guard(mutex_);
    uv_loop_t* loop = nullptr;
    if (!isRegistered_ || napi_get_uv_event_loop(env, &loop) != napi_ok) return QueueStatus::NO_LOOP;
    auto doNothing = [](uv_work_t*) {};
    if (uv_queue_work(loop, &work->request_, doNothing, CompleteWork) != 0) return QueueStatus::REFUSED;
    queue_.push_back(work.release());
    return QueueStatus::QUEUED;
}

// There is one: the event loop completes no more requests than it has accepted.
LoopWork* EnvInfo::TakeOldest() {
    std::lock_guard<std::mutex> guard(mutex_);
    LoopWork* oldest = queue_.front();
    queue_.pop_front();
    return oldest;
}

// A platform may complete requests in any order. Whichever completes, the oldest work runs.
void EnvInfo::CompleteWork(uv_work_t* request, int /*status*/) {
    auto* completed = static_cast<LoopWork*>(request->data);
    LoopWork* oldest = completed->envInfo_->TakeOldest();
    oldest->Run();
    FinishHalf(oldest);
    FinishHalf(completed);
}

void EnvInfo::FinishHalf(LoopWork* work) {
    if (std::exchange(work->isHalfDone_, true)) delete work;
}

}  // namespace TAVIK::GAME_PLAYER
