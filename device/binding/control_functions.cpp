#include "analytics.h"
#include "clock.h"
#include "device_context.h"
#include "faults.h"
#include "functions.h"
#include "game_end.h"
#include "instance.h"
#include "log.h"
#include "making.h"
#include "reading.h"
#include "say.h"
#include "ui_thread.h"
#include "wrap/strings.h"

namespace StandIn {
namespace {

// Takes the name of a call, how many pass, and how many fail then. False if there is no such call.
napi_value FailNext(napi_env env, napi_callback_info info) {
    const auto [call, skip, times] = Arguments<3>(env, info);
    return MakeFlag(env, Faults::Arm(ReadText(env, call), static_cast<uint64_t>(ReadNumber(env, skip)),
                                     static_cast<uint64_t>(ReadNumber(env, times))));
}

napi_value ListFaults(napi_env env, napi_callback_info /*info*/) {
    return MakeArray(env, Faults::All(), [env](const Faults::Armed& record) {
        return ObjectMaker(env)
            .Text("call", record.name)
            .Number("made", static_cast<double>(record.made))
            .Number("failed", static_cast<double>(record.failed))
            .Object();
    });
}

napi_value ChangeSystemApp(napi_env env, napi_callback_info info) {
    SetSystemApp(ReadFlag(env, Arguments<1>(env, info)[0]));
    return nullptr;
}

// Takes whether the module reads strings as on a device.
napi_value Strings(napi_env env, napi_callback_info info) {
    SetPlatformStrings(ReadFlag(env, Arguments<1>(env, info)[0]));
    return nullptr;
}

// Takes whether the order is any, and its seed.
napi_value QueueOrder(napi_env env, napi_callback_info info) {
    const auto [isAny, seed] = Arguments<2>(env, info);
    Environment::SetQueueOrder(ReadFlag(env, isAny), static_cast<uint32_t>(ReadNumber(env, seed)));
    return nullptr;
}

napi_value SayText(napi_env env, napi_callback_info info) {
    Say(ReadText(env, Arguments<1>(env, info)[0]));
    return nullptr;
}

napi_value GetModuleExports(napi_env /*env*/, napi_callback_info /*info*/) { return ModuleExports(); }

// The logs are cleared last, because forgetting the modals may write some.
napi_value Reset(napi_env /*env*/, napi_callback_info /*info*/) {
    Subscription::EndAll();
    RecordStream::Reset();
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
    return nullptr;
}

}  // namespace

bool DefineControlFunctions(napi_env env, napi_value exports) {
    return DefineFunctions(env, exports,
                           {{"failNext", FailNext},
                            {"faults", ListFaults},
                            {"setSystemApp", ChangeSystemApp},
                            {"queueOrder", QueueOrder},
                            {"strings", Strings},
                            {"onExit", On<&Instance::OnExit>},
                            {"say", SayText},
                            {"moduleExports", GetModuleExports},
                            {"reset", Reset}});
}

}  // namespace StandIn
