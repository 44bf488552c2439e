#include "serial_thread.h"

#include <thread>
#include <utility>

namespace StandIn {

// Told of the first task after the thread took those before, and with the lock released: it could not run.
void SerialThread::Post(Task task) {
    bool isFirst = false;
    {
        std::lock_guard<std::mutex> guard(mutex_);
        isFirst = tasks_.empty();
        tasks_.push_back(std::move(task));
        if (!std::exchange(isStarted_, true)) std::thread(&SerialThread::Run, this).detach();
    }
    if (isFirst) arrived_.notify_one();
}

void SerialThread::Run() {
    std::vector<Task> tasks;
    for (;;) {
        AwaitTasks(tasks);
        for (Task& task : tasks) {
            RunTask(task);
            task = nullptr;  // what it holds goes before the next one runs
        }
        tasks.clear();
    }
}

void SerialThread::AwaitTasks(std::vector<Task>& tasks) {
    std::unique_lock<std::mutex> lock(mutex_);
    arrived_.wait(lock, [this] { return !tasks_.empty(); });
    tasks.swap(tasks_);
}

}  // namespace StandIn
