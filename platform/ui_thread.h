#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace StandIn {

using Task = std::function<void()>;

/// Runs tasks one at a time, in FIFO order, on one thread, which starts with the first task and never ends. The object
/// must live as long as the process. Thread-safe.
class SerialThread {
public:
    void Post(Task task);
    /// Called by a task that will never return. Later tasks run on a new thread.
    void Abandon();

private:
    void Start();
    void Run();

    std::mutex mutex_;  // guards what follows
    std::condition_variable arrived_;
    std::deque<Task> tasks_;
    std::thread::id thread_;  // runs the tasks; no thread before the first one
};

/// Delivers the answers of extensions: one at a time on the whole device, whichever thread an answer runs on. Posted
/// answers run on the UI thread. Thread-safe.
class UiThread {
public:
    static UiThread& Get();

    void Post(Task answer);
    /// Runs `answer` on the calling thread, immediately or as soon as no other thread runs one.
    void RunHere(const Task& answer);
    /// Called from within an answer that will never return. Later answers do not wait for it.
    void Abandon();

    /// Whether answers run on the thread that gives them, instead of the UI thread.
    bool IsBypassed() const { return isBypassed_; }
    void SetBypassed(bool isBypassed) { isBypassed_ = isBypassed; }

private:
    SerialThread thread_;
    std::atomic<bool> isBypassed_{false};

    std::mutex mutex_;  // guards what follows; nothing is called under it
    std::condition_variable free_;
    std::thread::id answering_;  // the answering thread, while `depth_` is above 0
    int depth_ = 0;              // an answer may give another one on the same thread
};

}  // namespace StandIn
