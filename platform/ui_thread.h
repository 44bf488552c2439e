#pragma once

#include <atomic>
#include <mutex>

#include "serial_thread.h"

namespace StandIn {

/// Delivers what extensions answer: one answer at a time on the whole device, whichever thread it runs on.
/// What is posted runs on the UI thread.
class UiThread final : public SerialThread {
public:
    static UiThread& Get();

    /// Whether answers are to run on the thread that gives them, instead of the UI thread.
    bool IsBypassed() const { return isBypassed_; }
    void SetBypassed(bool isBypassed) { isBypassed_ = isBypassed; }

    /// Any thread. Runs `answer` at once, or as soon as no other thread runs one.
    void RunHere(const Task& answer);

private:
    void RunTask(const Task& answer) override { RunHere(answer); }

    std::recursive_mutex answering_;  // an answer may give another one on its own thread
    std::atomic<bool> isBypassed_{false};
};

}  // namespace StandIn
