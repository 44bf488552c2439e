#pragma once

#include <functional>

#include "served_call.h"

namespace StandIn {

/// The end of the game: the module exits its process. Thread-safe.
class GameEnd {
public:
    /// Forwards the end to its JS thread. Must not call back into this class.
    using Handler = std::function<void(const Occasion& why)>;

    /// While there is a handler, the end of the game does not end the process. One handler per owner.
    static void Handle(const void* owner, Handler handler);
    static void Unhandle(const void* owner);

    /// Replaces `_exit` and never returns. Calls the handlers; without any, or on a JS thread, prints the reason and
    /// ends the process.
    [[noreturn]] static void Arrive(int status);
    /// Whether the game has ended since the last reset.
    static bool HasArrived();
    /// Forgets the end and removes all handlers.
    static void Reset();
};

}  // namespace StandIn
