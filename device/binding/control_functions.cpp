#include "analytics.h"
#include "clock.h"
#include "device_context.h"
#include "faults.h"
#include "functions.h"
#include "game_end.h"
#include "instance.h"
#include "log.h"
#include "say.h"
#include "ui_thread.h"
#include "wrap/strings.h"

namespace StandIn {
namespace {

napi_value ListFaults(napi_env env) {
    return MakeArray(env, Faults::All(), [env](const Faults::Armed& record) {
        return ObjectMaker(env).Set("call", record.name).Set("made", record.made).Set("failed", record.failed).Object();
    });
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
                            {"reset", Exposed<Reset>}});
}

}  // namespace StandIn
