#pragma once

#include <cstdint>
#include <functional>

namespace StandIn {

/// What the module is at work for on a thread: an answer of an extension, or a timer that one has begun.
struct Occasion {
    bool isTimer = false;
    int32_t requestType = 0;
    int32_t code = 0;              // of the answer
    int32_t modal = 0;             // that answers
    std::function<void()> giveUp;  // on that thread, if the answer ends the game and so never returns
};

/// Sets the occasion of this thread for as long as it lives.
class OccasionScope {
public:
    explicit OccasionScope(Occasion occasion);
    OccasionScope(const OccasionScope&) = delete;
    OccasionScope& operator=(const OccasionScope&) = delete;
    ~OccasionScope();

private:
    Occasion occasion_;
    Occasion* const outer_;
};

/// For a thread that the module starts on this one: what it is at work for.
Occasion InheritOccasion();

/// The end of the game, which the module brings about by ending its process. Thread-safe.
class GameEnd {
public:
    /// Passes the end on to its JS thread. Must not call back in here.
    using Handler = std::function<void(const Occasion& why)>;

    /// While anybody handles the end the process goes on. One handler per owner.
    static void Handle(const void* owner, Handler handler);
    static void Unhandle(const void* owner);

    /// In place of `_exit`: says why, then tells the handlers and never returns, or ends the process.
    [[noreturn]] static void Arrive(int status);
    /// Whether the game has ended since the last reset.
    static bool HasArrived();
    /// The game is as good as new; nobody handles its end.
    static void Reset();
};

}  // namespace StandIn
