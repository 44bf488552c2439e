#pragma once

#include <atomic>
#include <memory>

#include "environment.h"

namespace StandIn {

/// The hold that one request has on its environment's loop: taken when its modal opens or its start begins to
/// wait for a window, dropped when the modal closes, the waiting ends, or the request is answered in JS,
/// whichever comes first. Thread-safe.
///
/// The module does not tell which request a modal or a waiting thread belongs to. It makes a promise or a
/// reference to a callback before it opens a modal on the same JS thread, and looks for a window before it
/// starts a thread that waits for one; the calls named after that are noted here.
class RequestHold {
public:
    /// Of the request that is settled through `settler`, a promise or a callback's reference; of none if
    /// that is null. Holds nothing without an environment.
    RequestHold(std::shared_ptr<Environment> environment, const void* settler);
    RequestHold(const RequestHold&) = delete;
    RequestHold& operator=(const RequestHold&) = delete;
    ~RequestHold() { Drop(); }

    void Drop();
    /// Another hold of the same loop; of none if this one was dropped.
    LoopHold Share() const { return LoopHold(isDropped_ ? nullptr : environment_); }

    /// The hold of the request that is being started on this thread, for the modal that opens now: on a JS
    /// thread of the promise or callback made last, on a waiting start's thread the one it was born with,
    /// elsewhere one of `environment`'s own.
    static std::shared_ptr<RequestHold> Take(const std::shared_ptr<Environment>& environment);

    /// A promise or a callback's reference was made on this JS thread: the request now being started.
    static void NoteRequest(const void* settler);
    /// It is being settled or given up, on this JS thread: its request holds nothing any more.
    static void NoteSettled(const void* settler);
    /// A start found no window on this JS thread: the thread born next waits for it.
    static void NoteWindowMissing();

    /// For a thread being born: the hold it takes along; empty unless it will wait for a window.
    static std::shared_ptr<RequestHold> Inherit();
    /// On a thread just born: what `Inherit` gave its parent.
    static void Adopt(std::shared_ptr<RequestHold> hold);
    /// On that thread, as it ends.
    static void Return();
    /// Drops the holds of all starts that wait for a window: their threads are never to wake.
    static void DropInherited();

private:
    const std::shared_ptr<Environment> environment_;
    const void* const settler_;
    std::atomic<bool> isDropped_{false};  // changed under the environment's lock
};

}  // namespace StandIn
