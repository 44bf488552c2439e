#include "common/loop_work.h"

#include <algorithm>
#include <iterator>

namespace TAVIK::GAME_PLAYER {

uint64_t LoopQueue::Add(LoopWork& work) {
    work.queue_ = shared_from_this();
    work.request_.data = &work;
    std::lock_guard<std::mutex> guard(mutex_);
    works_.push_back(&work);
    work.ticket_ = ++tickets_;
    return work.ticket_;
}

bool LoopQueue::Submit(LoopWork& work, uv_loop_t* loop) {
    return uv_queue_work(
               loop, &work.request_, [](uv_work_t*) {}, Complete) == 0;
}

// Work that is no longer there has run already.
void LoopQueue::Accept(uint64_t ticket) {
    std::lock_guard<std::mutex> guard(mutex_);
    auto found = Find(ticket);
    if (found != works_.end() && (*found)->ticket_ == ticket) (*found)->isAccepted_ = true;
}

// A refused request never completes, and no other completion runs work that is not accepted. So it is there.
void LoopQueue::Remove(uint64_t ticket) {
    std::lock_guard<std::mutex> guard(mutex_);
    works_.erase(Find(ticket));
}

// The first work with this ticket or a later one: tickets rise from front to back.
std::deque<LoopWork*>::iterator LoopQueue::Find(uint64_t ticket) {
    if (!works_.empty() && works_.back()->ticket_ == ticket) return std::prev(works_.end());
    return std::lower_bound(works_.begin(), works_.end(), ticket,
                            [](const LoopWork* work, uint64_t wanted) { return work->ticket_ < wanted; });
}

// There is one: completions never outnumber the requests that were accepted, and the completed one was.
LoopWork* LoopQueue::TakeOldest(LoopWork& completed) {
    std::lock_guard<std::mutex> guard(mutex_);
    completed.isAccepted_ = true;
    auto oldest =
        std::find_if(works_.begin(), works_.end(), [](const LoopWork* work) { return work->isAccepted_; });
    LoopWork* work = *oldest;
    works_.erase(oldest);
    return work;
}

void LoopQueue::Complete(uv_work_t* request, int /*status*/) {
    auto* completed = static_cast<LoopWork*>(request->data);
    completed->hasCompleted_ = true;
    LoopWork* oldest = completed->queue_->TakeOldest(*completed);
    oldest->Run();
    oldest->hasRun_ = true;
    if (oldest != completed) DestroyIfDone(completed);
    DestroyIfDone(oldest);
}

void LoopQueue::DestroyIfDone(LoopWork* work) {
    if (work->hasRun_ && work->hasCompleted_) delete work;
}

}  // namespace TAVIK::GAME_PLAYER
