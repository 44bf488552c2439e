#include "ui_thread.h"

#include <utility>

#include "forever.h"

namespace StandIn {

void SerialThread::Post(Task task) {
    {
        std::lock_guard<std::mutex> guard(mutex_);
        tasks_.push_back(std::move(task));
        if (thread_ == std::thread::id()) Start();
        if (tasks_.size() > 1) return;
    }
    arrived_.notify_one();
}

void SerialThread::Abandon() {
    std::lock_guard<std::mutex> guard(mutex_);
    if (std::this_thread::get_id() == thread_) Start();
}

void SerialThread::Start() {
    std::thread thread(&SerialThread::Run, this);
    thread_ = thread.get_id();
    thread.detach();
}

// A task and what it holds are destroyed before the next task runs.
void SerialThread::Run() {
    for (;;) {
        Task task;
        std::unique_lock<std::mutex> lock(mutex_);
        arrived_.wait(lock, [this] { return !tasks_.empty(); });
        task.swap(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        task();
    }
}

UiThread& UiThread::Get() { return Forever<UiThread>(); }

void UiThread::Post(Task answer) {
    thread_.Post([this, answer = std::move(answer)] { RunHere(answer); });
}

void UiThread::RunHere(const Task& answer) {
    const auto self = std::this_thread::get_id();
    {
        std::unique_lock<std::mutex> lock(mutex_);
        free_.wait(lock, [this, self] { return depth_ == 0 || answering_ == self; });
        answering_ = self;
        ++depth_;
    }
    answer();
    {
        std::lock_guard<std::mutex> guard(mutex_);
        if (--depth_ > 0) return;
    }
    free_.notify_one();
}

void UiThread::Abandon() {
    {
        std::lock_guard<std::mutex> guard(mutex_);
        if (depth_ > 0 && answering_ == std::this_thread::get_id()) depth_ = 0;
    }
    free_.notify_one();
    thread_.Abandon();
}

}  // namespace StandIn
