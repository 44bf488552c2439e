#include "serial_thread.h"

#include <thread>
#include <utility>

namespace StandIn {

void SerialThread::Post(std::function<void()> task)
{
    std::lock_guard<std::mutex> guard(mutex_);
    tasks_.push_back(std::move(task));
    if (!std::exchange(isStarted_, true)) {
        std::thread(&SerialThread::Run, this).detach();
    }
    arrived_.notify_one();
}

void SerialThread::Run()
{
    for (;;) {
        const std::function<void()> task = Next();
        task();
    }
}

std::function<void()> SerialThread::Next()
{
    std::unique_lock<std::mutex> lock(mutex_);
    arrived_.wait(lock, [this] { return !tasks_.empty(); });
    std::function<void()> task = std::move(tasks_.front());
    tasks_.pop_front();
    return task;
}

}  // namespace StandIn
