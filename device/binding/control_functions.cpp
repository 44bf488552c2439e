#include <cmath>
#include <memory>
#include <utility>

#include "analytics.h"
#include "clock.h"
#include "device_context.h"
#include "faults.h"
#include "forever.h"
#include "functions.h"
#include "game_end.h"
#include "instance.h"
#include "log.h"
#include "pending_promise.h"
#include "say.h"
#include "served_call.h"
#include "ui_thread.h"

namespace StandIn {
namespace {

napi_value ListFaults(napi_env env) {
    return MakeArray(env, Faults::All(), [env](const Faults::Armed& record) {
        return ObjectMaker(env).Set("call", record.name).Set("made", record.made).Set("failed", record.failed).Object();
    });
}

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

// The logs are cleared last, because forgetting the modals may write some.
void Reset() {
    Subscription::EndAll();
    RecordStream::Get().Clear();
    Faults::Reset();
    Modals::Get().Reset();
    UiThread::Get().SetBypassed(false);
    Environment::SetQueueOrder(false);
    SetPlatformStrings(true);
    Clock::Get().Reset();
    DropWindowWaits();
    GameEnd::Reset();
    SetSystemApp(false);
    EventStore::Get().Clear();
    LogStore::Get().Clear();
}

}  // namespace

bool DefineControlFunctions(napi_env env, napi_value exports) {
    return DefineFunctions(env, exports,
                           {{"failNext", Exposed<Faults::Arm>},
                            {"faults", Exposed<ListFaults>},
                            {"setSystemApp", Exposed<SetSystemApp>},
                            {"queueOrder", Exposed<Environment::SetQueueOrder>},
                            {"strings", Exposed<SetPlatformStrings>},
                            {"onExit", On<&Instance::OnExit>},
                            {"say", Exposed<Say>},
                            {"moduleExports", Exposed<ModuleExports>},
                            {"reset", Exposed<Reset>},
                            {"setClockRate", Exposed<&Clock::SetRate>},
                            {"clockRate", Exposed<&Clock::Rate>},
                            {"clockNow", Exposed<&Clock::NowMs>},
                            {"clockSleepers", Exposed<&Clock::Sleepers>},
                            {"clockNext", Exposed<&Clock::NextMs>},
                            {"clockAdvance", Exposed<Advance>}});
}

}  // namespace StandIn
