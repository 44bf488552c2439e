#include "common/loop_work.h"

namespace TAVIK::GAME_PLAYER {

void LoopQueue::Add(const std::shared_ptr<LoopQueue>& queue, LoopWork& work) {
    work.queue_ = queue;
    work.request_.data = &work;
    std::lock_guard<std::mutex> guard(queue->mutex_);
    LoopWork*& link = queue->latest_ != nullptr ? queue->latest_->next_ : queue->oldest_;
    link = &work;
    queue->latest_ = &work;
}

bool LoopQueue::Submit(LoopWork& work, uv_loop_t* loop) {
    return uv_queue_work(
               loop, &work.request_, [](uv_work_t*) {}, Complete) == 0;
}

void LoopQueue::Accept(LoopWork* work) {
    work->isAccepted_.store(true, std::memory_order_release);
    FinishSteps(work, 1);
}

// A refused request never completes, and no other completion runs work that is not accepted. So it is there.
void LoopQueue::Remove(const LoopWork& work) {
    std::lock_guard<std::mutex> guard(mutex_);
    LoopWork* previous = nullptr;
    LoopWork* current = oldest_;
    while (current != &work) {
        previous = current;
        current = current->next_;
    }
    Unlink(previous, current);
}

LoopWork* LoopQueue::Unlink(LoopWork* previous, LoopWork* work) {
    (previous != nullptr ? previous->next_ : oldest_) = work->next_;
    if (latest_ == work) latest_ = previous;
    return work;
}

// There is one: completions never outnumber the requests that were accepted, and the completed one was.
LoopWork* LoopQueue::TakeOldest(LoopWork& completed) {
    completed.isAccepted_.store(true, std::memory_order_release);
    std::lock_guard<std::mutex> guard(mutex_);
    LoopWork* previous = nullptr;
    LoopWork* work = oldest_;
    while (!work->isAccepted_.load(std::memory_order_acquire)) {
        previous = work;
        work = work->next_;
    }
    return Unlink(previous, work);
}

void LoopQueue::Complete(uv_work_t* request, int /*status*/) {
    auto* completed = static_cast<LoopWork*>(request->data);
    LoopWork* oldest = completed->queue_->TakeOldest(*completed);
    oldest->Run();
    if (oldest == completed) return FinishSteps(completed, 2);
    FinishSteps(oldest, 1);
    FinishSteps(completed, 1);
}

void LoopQueue::FinishSteps(LoopWork* work, int count) {
    if (work->steps_.fetch_sub(count, std::memory_order_acq_rel) == count) delete work;
}

}  // namespace TAVIK::GAME_PLAYER
