#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <utility>

#include "forever.h"

namespace StandIn {

/// The device's one clock: its boot time, and every sleep of the module's threads, run on it.
///
/// Real, it follows the machine's monotonic clock at a rate. Manual, time moves only by `Advance`, which
/// wakes one sleeper at a time in order of (deadline, birth) and lets every thread it woke run until that
/// thread sleeps again or ends; so the same calls give the same trace every time. All calls are thread-safe.
class Clock {
public:
    using Nanoseconds = std::chrono::nanoseconds;

    static Clock& Get() { return Forever<Clock>(); }
    /// Real at rate 1, from the machine's boot time on.
    Clock();

    /// Follows the machine's clock from the present moment on, `rate` times as fast; with 0 it stops there.
    void SetReal(double rate);
    void SetManual() { SetReal(0); }
    bool IsManual();

    /// Milliseconds since boot.
    int64_t NowMs();
    /// Moves manual time on by `distance`, stopping at each deadline on the way. Blocks until every thread it
    /// woke sleeps or has ended, so not for a JS thread. False at once if the clock is not manual.
    bool Advance(Nanoseconds distance);
    /// How many threads are asleep, once those that are awake sleep or have ended.
    size_t Sleepers();
    /// Milliseconds until the next sleeper is to wake, once those that are awake sleep or have ended;
    /// infinite if none sleeps.
    double NextMs();
    /// Real at rate 1 again; the threads that there are never wake from their sleep.
    void Reset();

    /// Sleeps for `span` of the device's time.
    void Sleep(Nanoseconds span);

    /// A thread of the module is about to start; called by its parent, so that births have one order. Returns
    /// the thread's birth number.
    uint64_t Born();
    /// On the new thread, before anything else it does.
    static void Began(uint64_t birth);
    /// The thread that `Born` announced did not start, or has ended.
    void Ended();
    /// This thread, if it is one of the module's, does no more.
    void Leave();

private:
    using Steady = std::chrono::steady_clock;
    struct Sleeper {
        std::condition_variable changed;  // one of the flags, or the way time moves
        bool isAwake = false;
        bool isForgotten = false;  // no longer among `sleepers_`, and never to wake
        bool isCounted = false;    // counts in `running_` while awake
    };
    using Order = std::pair<Nanoseconds, uint64_t>;  // deadline, birth

    Nanoseconds Now() const;
    void SetOrigin(Nanoseconds now, double rate);
    void AwaitSettled(std::unique_lock<std::mutex>& lock);
    void WaitForChange(Sleeper& self, const Order& order, std::unique_lock<std::mutex>& lock);
    void Wake(std::map<Order, Sleeper*>::iterator which);

    std::mutex mutex_;                 // guards what follows
    std::condition_variable settled_;  // `running_` fell to 0
    std::map<Order, Sleeper*> sleepers_;
    uint64_t births_ = 0;
    size_t running_ = 0;  // threads of the module that are neither asleep nor ended
    double rate_ = 1;     // 0: manual
    Steady::time_point originReal_;
    Nanoseconds origin_{0};  // the device's time at `originReal_`
};

}  // namespace StandIn
