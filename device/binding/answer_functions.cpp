#include <functional>
#include <utility>

#include "functions.h"
#include "making.h"
#include "modals.h"
#include "module_entry.h"
#include "napi_common_want.h"
#include "pending_promise.h"
#include "reading.h"
#include "ui_thread.h"

namespace StandIn {
namespace {

using OHOS::AAFwk::Want;
using OHOS::AAFwk::WantParams;
using OHOS::AppExecFwk::UnwrapWantParams;

using Answer = std::function<void(const Modal::Callbacks&)>;

void Deliver(int32_t id, const Answer& answer, PendingPromise& promise) {
    const auto modal = Modals::Get().Find(id);
    const auto callbacks = modal == nullptr ? nullptr : modal->GetCallbacks();
    if (callbacks == nullptr) {
        promise.Fail("Modal " + std::to_string(id) + " cannot answer: reset() made the device forget it.");
        return;
    }
    // The module closes the modal before it queues what the answer brought.
    const LoopHold untilQueued = modal->HoldLoop();
    answer(*callbacks);
}

/// What the module left pending in its own environment of this thread belongs to the one who answered.
void MoveModuleException(PendingPromise& promise) {
    napi_env moduleEnv = ModuleEnv();
    bool isPending = false;
    napi_value error = nullptr;
    if (moduleEnv != nullptr && napi_is_exception_pending(moduleEnv, &isPending) == napi_ok && isPending &&
        napi_get_and_clear_last_exception(moduleEnv, &error) == napi_ok) {
        promise.FailWith(error);
    }
}

/// Lets the modal `id` answer. Returns the promise that is settled when the module has taken the answer.
napi_value Give(napi_env env, int32_t id, Answer answer) {
    napi_value result = nullptr;
    auto promise = PendingPromise::Make(env, result);
    if (promise == nullptr) return nullptr;
    UiThread& ui = UiThread::Get();
    if (ui.IsBypassed()) {
        ui.RunHere([&] { Deliver(id, answer, *promise); });
        MoveModuleException(*promise);
        PendingPromise::Settle(std::move(promise));
    } else {
        ui.Post([id, answer = std::move(answer), promise = std::move(promise)]() mutable {
            Deliver(id, answer, *promise);
            PendingPromise::Settle(std::move(promise));
        });
    }
    return result;
}

napi_value AnswerResult(napi_env env, napi_callback_info info) {
    const auto [modal, code, parameters] = Arguments<3>(env, info);
    int32_t id = 0;
    int32_t resultCode = 0;
    WantParams params;
    if (!ReadInt32(env, modal, "id", id) || !ReadInt32(env, code, "code", resultCode) ||
        !UnwrapWantParams(env, parameters, params)) {
        return nullptr;
    }
    Want want;
    want.SetParams(std::move(params));
    return Give(env, id, [resultCode, want = std::move(want)](const Modal::Callbacks& callbacks) {
        if (callbacks.onResult) callbacks.onResult(resultCode, want);
    });
}

napi_value AnswerReceive(napi_env env, napi_callback_info info) {
    const auto [modal, parameters] = Arguments<2>(env, info);
    int32_t id = 0;
    WantParams params;
    if (!ReadInt32(env, modal, "id", id) || !UnwrapWantParams(env, parameters, params)) return nullptr;
    return Give(env, id, [params = std::move(params)](const Modal::Callbacks& callbacks) {
        if (callbacks.onReceive) callbacks.onReceive(params);
    });
}

napi_value AnswerRelease(napi_env env, napi_callback_info info) {
    const auto [modal, code] = Arguments<2>(env, info);
    int32_t id = 0;
    int32_t releaseCode = 0;
    if (!ReadInt32(env, modal, "id", id) || !ReadInt32(env, code, "code", releaseCode)) return nullptr;
    return Give(env, id, [releaseCode](const Modal::Callbacks& callbacks) {
        if (callbacks.onRelease) callbacks.onRelease(releaseCode);
    });
}

napi_value AnswerError(napi_env env, napi_callback_info info) {
    const auto [modal, code, name, message] = Arguments<4>(env, info);
    int32_t id = 0;
    int32_t errorCode = 0;
    std::string nameText;
    std::string messageText;
    if (!ReadInt32(env, modal, "id", id) || !ReadInt32(env, code, "code", errorCode) ||
        !ReadText(env, name, "name", nameText) || !ReadText(env, message, "message", messageText)) {
        return nullptr;
    }
    return Give(env, id, [errorCode, nameText, messageText](const Modal::Callbacks& callbacks) {
        if (callbacks.onError) callbacks.onError(errorCode, nameText, messageText);
    });
}

napi_value AnswerAll(napi_env env, napi_callback_info info) {
    const napi_value value = Arguments<1>(env, info)[0];
    if (IsOfType(env, value, napi_null)) {
        Modals::Get().SetAnswer(nullptr);
        return nullptr;
    }
    auto answer = std::make_shared<WantParams>();
    if (UnwrapWantParams(env, value, *answer)) Modals::Get().SetAnswer(std::move(answer));
    return nullptr;
}

napi_value AnswerOn(napi_env env, napi_callback_info info) {
    const napi_value value = Arguments<1>(env, info)[0];
    std::string thread;
    if (!ReadText(env, value, "thread", thread)) return nullptr;
    if (thread != "ui" && thread != "caller") {
        (void)ThrowUnexpected(env, "thread", "'ui' or 'caller'", value);
        return nullptr;
    }
    UiThread::Get().SetBypassed(thread == "caller");
    return nullptr;
}

}  // namespace

bool DefineAnswerFunctions(napi_env env, napi_value exports) {
    return DefineFunctions(env, exports,
                           {{"answerAll", AnswerAll},
                            {"answerResult", AnswerResult},
                            {"answerReceive", AnswerReceive},
                            {"answerRelease", AnswerRelease},
                            {"answerError", AnswerError},
                            {"answerOn", AnswerOn}});
}

}  // namespace StandIn
