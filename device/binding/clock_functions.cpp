#include <cmath>
#include <memory>
#include <utility>

#include "clock.h"
#include "forever.h"
#include "functions.h"
#include "pending_promise.h"
#include "ui_thread.h"

namespace StandIn {
namespace {

// The promise fails if the clock is not manual.
napi_value Advance(napi_env env, double milliseconds) {
    const Clock::Nanoseconds distance(std::llround(milliseconds * 1e6));
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
                           {{"setClockRate", Exposed<&Clock::SetRate>},
                            {"clockRate", Exposed<&Clock::Rate>},
                            {"clockNow", Exposed<&Clock::NowMs>},
                            {"clockSleepers", Exposed<&Clock::Sleepers>},
                            {"clockNext", Exposed<&Clock::NextMs>},
                            {"clockAdvance", Exposed<Advance>}});
}

}  // namespace StandIn
