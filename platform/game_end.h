#pragma once

#include <cstdint>
#include <functional>

namespace StandIn {

/// Why the module is running on a thread: an extension's answer, or a timer.
struct Occasion {
    bool isTimer = false;
    int32_t requestType = 0;
    int32_t code = 0;              // of the answer
    int32_t modal = 0;             // the ID of the modal that answers
    std::function<void()> giveUp;  // called on that thread if the answer ends the game: it never returns
    uint64_t call = 0;             // the number of the call whose request this serves
};

/// Sets the occasion of this thread for the lifetime of the scope.
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

/// The occasion of a thread that the module starts from this one.
Occasion InheritOccasion();

/// The number of the call that this thread serves.
uint64_t ServedCall();

/// The end of the game: the module exits its process. Thread-safe.
class GameEnd {
public:
    /// Forwards the end to its JS thread. Must not call back into this class.
    using Handler = std::function<void(const Occasion& why)>;

    /// While there is a handler, the end of the game does not end the process. One handler per owner.
    static void Handle(const void* owner, Handler handler);
    static void Unhandle(const void* owner);

    /// Replaces `_exit` and never returns. Calls the handlers; without any, or on a JS thread, prints the
    /// reason and ends the process.
    [[noreturn]] static void Arrive(int status);
    /// Whether the game has ended since the last reset.
    static bool HasArrived();
    /// Forgets the end and removes all handlers.
    static void Reset();
};

}  // namespace StandIn
