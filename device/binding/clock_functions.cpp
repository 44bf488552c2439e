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

constexpr double SLOWEST_RATE = 1e-6;
constexpr double FASTEST_RATE = 1e6;
constexpr double LONGEST_ADVANCE_MS = 1e11;  // three years; a 64-bit nanosecond count holds 292
constexpr const char* NEEDS_MANUAL = "clock.advance needs the manual clock: call clock.manual() first";

void Advance(Clock::Nanoseconds distance, std::shared_ptr<PendingPromise> promise) {
    if (!Clock::Get().Advance(distance)) promise->Fail(NEEDS_MANUAL);
    PendingPromise::Settle(std::move(promise));
}

napi_value ClockReal(napi_env env, napi_callback_info info) {
    const napi_value value = Arguments<1>(env, info)[0];
    double rate = 1;
    if (IsOfType(env, value, napi_undefined) ||
        ReadNumber(env, value, "rate", SLOWEST_RATE, FASTEST_RATE, rate)) {
        Clock::Get().SetReal(rate);
    }
    return nullptr;
}

napi_value ClockManual(napi_env /*env*/, napi_callback_info /*info*/) {
    Clock::Get().SetManual();
    return nullptr;
}

napi_value ClockRate(napi_env env, napi_callback_info /*info*/) {
    return MakeNumber(env, Clock::Get().Rate());
}

napi_value ClockNow(napi_env env, napi_callback_info /*info*/) {
    return MakeNumber(env, static_cast<double>(Clock::Get().NowMs()));
}

napi_value ClockSleepers(napi_env env, napi_callback_info /*info*/) {
    return MakeNumber(env, static_cast<double>(Clock::Get().Sleepers()));
}

// Milliseconds until the next thread is due to wake; infinite if none is.
napi_value ClockNext(napi_env env, napi_callback_info /*info*/) {
    return MakeNumber(env, Clock::Get().NextMs());
}

napi_value ClockAdvance(napi_env env, napi_callback_info info) {
    double milliseconds = 0;
    if (!ReadNumber(env, Arguments<1>(env, info)[0], "ms", 0, LONGEST_ADVANCE_MS, milliseconds)) {
        return nullptr;
    }
    if (Clock::Get().Rate() != 0) {
        (void)napi_throw_error(env, nullptr, NEEDS_MANUAL);
        return nullptr;
    }
    napi_value result = nullptr;
    if (auto promise = PendingPromise::Make(env, result)) {
        const Clock::Nanoseconds distance(std::llround(milliseconds * 1e6));
        Forever<SerialThread>().Post(
            [distance, promise = std::move(promise)]() mutable { Advance(distance, std::move(promise)); });
    }
    return result;
}

}  // namespace

bool DefineClockFunctions(napi_env env, napi_value exports) {
    return DefineFunctions(env, exports,
                           {{"clockReal", ClockReal},
                            {"clockManual", ClockManual},
                            {"clockRate", ClockRate},
                            {"clockNow", ClockNow},
                            {"clockSleepers", ClockSleepers},
                            {"clockNext", ClockNext},
                            {"clockAdvance", ClockAdvance}});
}

}  // namespace StandIn
