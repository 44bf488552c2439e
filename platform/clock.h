#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <utility>

namespace StandIn {

/// The device's only clock. Its boot time and every sleep of the module's threads follow it.
///
/// In real mode it follows the machine's monotonic clock at a rate. In manual mode only `Advance` moves time: it wakes
/// one sleeper at a time, in order of (deadline, thread), and lets each thread it woke run until that thread sleeps
/// again or ends. The same calls therefore give the same trace every time. Thread-safe.
class Clock {
public:
    using Nanoseconds = std::chrono::nanoseconds;

    static Clock& Get();
    /// Real time at rate 1, starting from the machine's boot time.
    Clock();

    /// Follows the machine's clock from now on, `rate` times as fast. A rate of 0 makes the clock manual.
    void SetRate(double rate);
    /// How many times as fast as the machine's clock; 0: manual.
    double Rate();

    /// Milliseconds since boot.
    int64_t NowMs();
    /// Moves manual time forward by `distance`, stopping at each deadline on the way. Blocks until every thread it woke
    /// sleeps or has ended, so not for a JS thread. False if the clock is not manual.
    bool Advance(Nanoseconds distance);
    /// The number of sleeping threads. Blocks until no thread of the module is awake.
    size_t Sleepers();
    /// Milliseconds until the next sleeper is due to wake; infinite if none sleeps. Blocks like `Sleepers`.
    double NextMs();
    /// Returns to real time at rate 1. Threads that are asleep now never wake.
    void Reset();

    /// Sleeps for `span` of device time.
    void Sleep(Nanoseconds span);

    /// Call before starting a thread of the module, on its parent thread, so that the numbers have one order. Returns
    /// the new thread's number.
    uint64_t CountThread();
    /// Call on the new thread, before it does anything else.
    static void BeginThread(uint64_t thread);
    /// Call if the thread announced with `CountThread` did not start, or has ended.
    void EndThread();
    /// If this is a thread of the module, counts it as ended.
    void Leave();

private:
    using Steady = std::chrono::steady_clock;
    struct Sleeper {
        std::condition_variable changed;  // signals a change of a flag, or of how time moves
        bool isAwake = false;
        bool isForgotten = false;  // removed from `sleepers_`, never wakes
        bool isCounted = false;    // counts in `running_` while awake
    };
    using Order = std::pair<Nanoseconds, uint64_t>;  // deadline, thread

    Nanoseconds Now() const;
    void SetOrigin(Nanoseconds now, double rate);
    void AwaitSettled(std::unique_lock<std::mutex>& lock);
    void WaitForChange(Sleeper& self, const Order& order, std::unique_lock<std::mutex>& lock);
    void Wake(std::map<Order, Sleeper*>::iterator which);

    std::mutex mutex_;                 // guards what follows
    std::condition_variable settled_;  // `running_` fell to 0
    std::map<Order, Sleeper*> sleepers_;
    uint64_t threads_ = 0;
    size_t running_ = 0;  // threads of the module that are neither asleep nor ended
    double rate_ = 1;     // 0: manual
    Steady::time_point originReal_;
    Nanoseconds origin_{0};  // the device's time at `originReal_`
};

}  // namespace StandIn
