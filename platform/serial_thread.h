#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <vector>

namespace StandIn {

/// Runs tasks one at a time, first in, first out, on one thread, which starts with the first task and never
/// ends. The object must live as long as the process.
class SerialThread {
public:
    using Task = std::function<void()>;

    virtual ~SerialThread() = default;

    /// Any thread.
    void Post(Task task);

protected:
    /// On the thread.
    virtual void RunTask(const Task& task) { task(); }

private:
    void Run();
    void AwaitTasks(std::vector<Task>& tasks);

    std::mutex mutex_;
    std::condition_variable arrived_;
    std::vector<Task> tasks_;
    bool isStarted_ = false;
};

}  // namespace StandIn
