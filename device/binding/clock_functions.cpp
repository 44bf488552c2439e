#include <cmath>
#include <memory>
#include <utility>

#include "clock.h"
#include "forever.h"
#include "functions.h"
#include "making.h"
#include "pending_promise.h"
#include "reading.h"
#include "ui_thread.h"

namespace StandIn {
namespace {

// Takes the rate; 0 makes the clock manual.
napi_value SetClockRate(napi_env env, napi_callback_info info) {
    Clock::Get().SetRate(ReadNumber(env, Arguments<1>(env, info)[0]));
    return nullptr;
}

napi_value ClockRate(napi_env env, napi_callback_info /*info*/) { return MakeNumber(env, Clock::Get().Rate()); }

napi_value ClockNow(napi_env env, napi_callback_info /*info*/) {
    return MakeNumber(env, static_cast<double>(Clock::Get().NowMs()));
}

napi_value ClockSleepers(napi_env env, napi_callback_info /*info*/) {
    return MakeNumber(env, static_cast<double>(Clock::Get().Sleepers()));
}

// Milliseconds until the next thread is due to wake; infinite if none is.
napi_value ClockNext(napi_env env, napi_callback_info /*info*/) { return MakeNumber(env, Clock::Get().NextMs()); }

// Takes milliseconds. The promise fails if the clock is not manual.
napi_value ClockAdvance(napi_env env, napi_callback_info info) {
    const Clock::Nanoseconds distance(std::llround(ReadNumber(env, Arguments<1>(env, info)[0]) * 1e6));
    napi_value result = nullptr;
    auto promise = PendingPromise::Make(env, result);
    if (promise == nullptr) return nullptr;
    Forever<SerialThread>().Post([distance, promise = std::move(promise)]() mutable {
        if (!Clock::Get().Advance(distance)) {
            promise->Fail("clock.advance needs the manual clock: call clock.manual() first");
        }
        PendingPromise::Settle(std::move(promise));
    });
    return result;
}

}  // namespace

bool DefineClockFunctions(napi_env env, napi_value exports) {
    return DefineFunctions(env, exports,
                           {{"setClockRate", SetClockRate},
                            {"clockRate", ClockRate},
                            {"clockNow", ClockNow},
                            {"clockSleepers", ClockSleepers},
                            {"clockNext", ClockNext},
                            {"clockAdvance", ClockAdvance}});
}

}  // namespace StandIn
