#include "calls/runtime.h"

#include <cstdlib>
#include <new>
#include <string>

#include "clock.h"
#include "device_context.h"
#include "faults.h"
#include "game_end.h"
#include "say.h"
#include "served_call.h"

namespace StandIn {

std::thread Thread::Start(std::function<void()> run) {
    MarkEffect();
    const uint64_t number = Clock::Get().CountThread();
    BeginWindowWait(number);
    return std::thread([run = std::move(run), call = ServedByNewThread(), number]() mutable {
        Clock::BeginThread(number);
        const ServedCallScope scope(std::move(call));
        run();
        run = nullptr;  // frees what the thread owns before the clock goes on
        EndWindowWait(number);
        Clock::Get().Leave();
    });
}

void Thread::detach() { thread_.detach(); }

void SleepFor(std::chrono::nanoseconds span) { Clock::Get().Sleep(span); }

void Exit(int status) { GameEnd::Arrive(status); }

void Abort() {
    const ServedCall* call = Served();
    if (call != nullptr && !call->invalidString.empty()) {
        Say("the module aborts the process: " + call->invalidString + " of " + call->method +
            " is no valid UTF-8, and cannot be written as JSON");
    } else {
        Say("the module aborts the process");
    }
    std::abort();
}

}  // namespace StandIn

void* operator new(std::size_t size, const StandIn::Nothrow& /*tag*/) noexcept {
    return StandIn::Faults::Trip(StandIn::Call::NEW_NOTHROW) ? nullptr : operator new(size, std::nothrow);
}
