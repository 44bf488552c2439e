#pragma once

#include "receivers.h"
#include "served_call.h"

namespace StandIn {

/// The end of the game: the module exits its process. Thread-safe.
class GameEnd {
public:
    /// Those who handle the end: each forwards it to its JS thread. While there is one, the end of the game does not
    /// end the process.
    static Receivers<Occasion>& Handlers();

    /// Replaces `_exit` and never returns. Calls the handlers; without any, or on a JS thread, prints the reason and
    /// ends the process.
    [[noreturn]] static void Arrive(int status);
    /// Whether the game has ended since the last reset.
    static bool HasArrived();
    /// Forgets the end and removes all handlers.
    static void Reset();
};

}  // namespace StandIn
