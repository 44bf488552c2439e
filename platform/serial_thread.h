#ifndef PLATFORM_SERIAL_THREAD_H
#define PLATFORM_SERIAL_THREAD_H

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace StandIn {

/// Runs tasks one at a time, first in, first out, on one thread, which starts with the first task and never
/// ends. The object must live as long as the process.
class SerialThread
{
public:
    /// Any thread.
    void Post(std::function<void()> task);

private:
    void Run();
    std::function<void()> Next();

    std::mutex mutex_;
    std::condition_variable arrived_;
    std::deque<std::function<void()>> tasks_;
    bool isStarted_ = false;
};

}  // namespace StandIn

#endif
