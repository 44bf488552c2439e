#include <utility>

#include "functions.h"
#include "modals.h"
#include "pending_promise.h"
#include "ui_thread.h"

namespace StandIn {
namespace {

constexpr int32_t CODE_MISSING = 1002000001;  // received data without a code counts as this

using OHOS::AAFwk::WantParams;
using Answer = Modal::Answer;
using Kind = Answer::Kind;

/// Gives `answer` to the module. The caller then settles `promise`, unless the answer ends the game: then this settles
/// it and never returns. `hold` keeps the modal's loop alive until everything that the answer causes is queued there.
void Deliver(const Modal& modal, const Answer& answer, const std::shared_ptr<PendingPromise>& promise, LoopHold& hold) {
    promise->Fail(modal.Give(answer, [&promise, &hold] {
        hold.reset();
        PendingPromise::Settle(promise);
    }));
}

/// Answers for the modal `id`. Returns a promise that is settled when the module has processed the answer.
napi_value Give(napi_env env, int32_t id, Answer answer) {
    napi_value result = nullptr;
    auto promise = PendingPromise::Make(env, result);
    if (promise == nullptr) return nullptr;
    const auto modal = Modals::Get().Find(id);
    if (modal == nullptr) {
        promise->Fail("Modal " + std::to_string(id) + " cannot answer: reset() made the device forget it.");
        PendingPromise::Settle(std::move(promise));
        return result;
    }
    modal->MarkAnswered(answer);
    LoopHold hold = modal->HoldLoop();
    UiThread& ui = UiThread::Get();
    if (ui.IsBypassed()) {
        ui.RunHere([&] { Deliver(*modal, answer, promise, hold); });
        // An exception that the module left pending in its own environment rejects the answer's promise.
        napi_value error = TakePendingException(ModuleEnv());
        error != nullptr ? promise->Reject(error) : PendingPromise::Settle(std::move(promise));
        return result;
    }
    ui.Post([modal, answer = std::move(answer), promise = std::move(promise), hold = std::move(hold)]() mutable {
        Deliver(*modal, answer, promise, hold);
        PendingPromise::Settle(std::move(promise));
    });
    return result;
}

napi_value AnswerResult(napi_env env, int32_t id, int32_t code, WantParams params) {
    return Give(env, id, {Kind::RESULT, code, std::move(params)});
}

Answer MakeReceive(WantParams params) {
    const int32_t code = params.GetIntParam("resultCode", CODE_MISSING);
    return {Kind::RECEIVE, code, std::move(params)};
}

napi_value AnswerReceive(napi_env env, int32_t id, WantParams params) {
    return Give(env, id, MakeReceive(std::move(params)));
}

napi_value AnswerRelease(napi_env env, int32_t id, int32_t code) { return Give(env, id, {Kind::RELEASE, code, {}}); }

napi_value AnswerError(napi_env env, int32_t id, int32_t code, WantParams params) {
    return Give(env, id, {Kind::ERROR, code, std::move(params)});
}

// For benchmarks: no JS runs between the opening of a modal and its answer. Cannot be turned off.
void AnswerAll(WantParams params) {
    static const char OWNER = 0;
    const auto answer = std::make_shared<const Answer>(MakeReceive(std::move(params)));
    Modals::Get().Openings().Add(&OWNER, [answer](const std::shared_ptr<Modal>& modal) {
        modal->MarkAnswered(*answer);
        UiThread::Get().Post([modal, answer, hold = modal->HoldLoop()] { (void)modal->Give(*answer, {}); });
    });
}

}  // namespace

bool DefineAnswerFunctions(napi_env env, napi_value exports) {
    return DefineFunctions(env, exports,
                           {{"answerAll", Exposed<AnswerAll>},
                            {"answerResult", Exposed<AnswerResult>},
                            {"answerReceive", Exposed<AnswerReceive>},
                            {"answerRelease", Exposed<AnswerRelease>},
                            {"answerError", Exposed<AnswerError>},
                            {"answerOn", Exposed<&UiThread::SetBypassed>}});
}

}  // namespace StandIn
