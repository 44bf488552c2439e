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

struct FaultOptions {
    uint64_t skip = 0;
    uint64_t times = 1;
};

bool ReadOptions(napi_env env, napi_value value, FaultOptions& options) {
    if (IsOfType(env, value, napi_undefined)) return true;
    return ForEachProperty(env, value, "options", [&](const std::string& key, napi_value option) {
        if (key == "skip") return ReadCount(env, option, "options.skip", 0, options.skip);
        if (key == "times") return ReadCount(env, option, "options.times", 1, options.times);
        return ThrowTypeError(env, "options has no '" + key + "': possible are skip and times");
    });
}

napi_value FailNext(napi_env env, napi_callback_info info) {
    const auto [callValue, optionsValue] = Arguments<2>(env, info);
    std::string call;
    FaultOptions options;
    if (!ReadText(env, callValue, "call", call) || !ReadOptions(env, optionsValue, options)) return nullptr;
    if (!Faults::Arm(call, options.skip, options.times)) {
        const std::string message = "'" + call + "' cannot be made to fail: the module makes no such call";
        (void)napi_throw_error(env, nullptr, message.c_str());
    }
    return nullptr;
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
    bool isSystem = false;
    if (ReadFlag(env, Arguments<1>(env, info)[0], "isSystem", isSystem)) SetSystemApp(isSystem);
    return nullptr;
}

/// Reads one of two words; `isFirst` tells which.
bool ReadChoice(napi_env env, napi_value value, const char* name, const char* first, const char* second,
                bool& isFirst) {
    std::string word;
    if (!ReadText(env, value, name, word)) return false;
    isFirst = word == first;
    if (isFirst || word == second) return true;
    const std::string expected = "'" + std::string(first) + "' or '" + second + "'";
    return ThrowUnexpected(env, name, expected.c_str(), value);
}

napi_value Strings(napi_env env, napi_callback_info info) {
    bool isLikePlatform = true;
    if (ReadChoice(env, Arguments<1>(env, info)[0], "like", "platform", "node", isLikePlatform)) {
        SetPlatformStrings(isLikePlatform);
    }
    return nullptr;
}

napi_value QueueOrder(napi_env env, napi_callback_info info) {
    const auto [order, seedValue] = Arguments<2>(env, info);
    bool isAny = false;
    uint64_t seed = 1;
    if (ReadChoice(env, order, "order", "any", "fifo", isAny) &&
        (IsOfType(env, seedValue, napi_undefined) || ReadCount(env, seedValue, "seed", 0, seed))) {
        Environment::SetQueueOrder(isAny, static_cast<uint32_t>(seed));
    }
    return nullptr;
}

napi_value SayText(napi_env env, napi_callback_info info) {
    std::string text;
    if (ReadText(env, Arguments<1>(env, info)[0], "text", text)) Say(text);
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
