#include <unistd.h>

#include <utility>

#include "common/request_types.h"
#include "common/velmor_error.h"
#include "common/velmor_log.h"
#include "events/game_player_event_callback.h"
#include "modal/modal_ui_callback.h"

namespace TAVIK::GAME_PLAYER {

using OHOS::AAFwk::Want;
using OHOS::AAFwk::WantParams;

namespace {

constexpr const char* SENDER = "SendMessageBack";  // for the log

constexpr int32_t CODE_ICONS_TOO_LARGE = 100015;
constexpr const char* TEXT_ICONS_TOO_LARGE = "Total size of icon resource is too large";

[[noreturn]] void ExitGame(const char* callback, int32_t code) {
    if (code == ERROR_AGREEMENT_NOT_AGREED) {
        GAME_LOGI_AS("IsKillApp", "game exit when init not agreed agreement.");
    } else if (code == ERROR_UNDER_AGE) {
        GAME_LOGI_AS("IsKillApp", "game exit when anti-addiction");
    }
    GAME_LOGI_AS(callback, "%{public}s game exit", callback);
    _exit(0);
}

// Returns the message for a failure's code, and sets `code` to the one that JS gets.
const char* AssembleErrorMessage(int32_t requestType, int32_t& code) {
    if (HasFlag(requestType, HIDES_FAILURES)) {
        GAME_LOGI("AssembleErrorMessage transfer code %{public}d to 0", code);
        code = ERROR_SUCCESS;
        return FindErrorMessage(ERROR_SUCCESS);
    }
    if (const char* message = FindErrorMessage(code)) return message;
    GAME_LOGE("AssembleErrorMessage resultCode not existed: %{public}d", code);
    if (requestType == REQUEST_UNION_LOGIN && code == CODE_ICONS_TOO_LARGE) {
        code = ERROR_PARAMETER;
        return TEXT_ICONS_TOO_LARGE;
    }
    code = ERROR_SYSTEM_INTERNAL;
    return FindErrorMessage(ERROR_SYSTEM_INTERNAL);
}

void DealResponseForModal(int32_t requestType) {
    const char* apiName = FindApiName(requestType);
    if (HasFlag(requestType, ENDS_ON_SUCCESS)) {
        GAME_LOGI("DealResponseForModal %{public}s close modal and reset context.", apiName);
    } else if (!HasFlag(requestType, STORES_RESULT)) {
        GAME_LOGI("DealResponseForModal %{public}s succeed.", apiName);
    }
}

}  // namespace

void ModalUICallback::OnResultForModal(int32_t resultCode, const Want& result) {
    GAME_LOGI("OnResultForModal resultCode=%{public}d", resultCode);
    HandleAnswer("OnResultForModal", {AnswerKind::RESULT, resultCode}, result.GetParams());
}

void ModalUICallback::OnReceive(const WantParams& data) {
    GAME_LOGI("OnReceive enter");
    const int32_t code = data.GetIntParam("resultCode", ERROR_SYSTEM_INTERNAL);
    HandleAnswer("OnReceive", {AnswerKind::RECEIVE, code, ReadPlayableTime(data), IsValidEnv(envInfo_)}, data);
}

void ModalUICallback::OnError(int32_t code, const std::string& name, const std::string& message) {
    GAME_LOGE("OnError code=%{public}d, name=%{public}s, message=%{public}s", code, name.c_str(), message.c_str());
    HandleAnswer("OnError", {AnswerKind::ERROR, code}, WantParams());
}

void ModalUICallback::OnRelease(int32_t releaseCode) {
    GAME_LOGI("OnRelease releaseCode=%{public}d", releaseCode);
    HandleAnswer("OnRelease", {AnswerKind::RELEASE, releaseCode}, WantParams());
}

// Decides under the lock, and acts afterwards.
void ModalUICallback::HandleAnswer(const char* callback, const Answer& answer, const WantParams& data) {
    Decision decision = Decide(answer);
    const Verdict& verdict = decision.verdict;
    if (decision.request == nullptr) {
        GAME_LOGE_AS(callback, "%{public}s baseContext is null", callback);
        return;
    }
    if (verdict.action == Action::EXIT) ExitGame(callback, answer.code);
    if (!answer.isEnvironmentAlive) {
        GAME_LOGE_AS(callback, "%{public}s invalid env", callback);
        return;
    }
    RaiseEvent(verdict.event, data);
    if (answer.kind == AnswerKind::RELEASE) {
        HandleRelease(std::move(decision));
    } else if (verdict.action != Action::NOTHING) {
        HandleMessage(answer, std::move(decision), data);
    } else if (answer.kind == AnswerKind::ERROR) {
        GAME_LOGE_AS(callback, "%{public}s message has been back", callback);
    }
}

ModalUICallback::Decision ModalUICallback::Decide(const Answer& answer) {
    std::lock_guard<std::mutex> guard(mutex_);
    if (context_ == nullptr) return {};
    Decision decision{context_, Judge(answer, requestType_, context_->status)};
    context_->status = decision.verdict.status;
    if (context_->status.state == RequestState::ENDED) context_.reset();  // the decision has another reference
    return decision;
}

void ModalUICallback::RaiseEvent(GameEvent event, const WantParams& data) const {
    if (event == GameEvent::PLAYER_CHANGED) {
        DoGameEvent(envInfo_, 0, EVENT_PLAYER_CHANGED, data.GetStringParam("resultInfo"));
    } else if (event == GameEvent::GAME_ADDICTION_PREVENTED) {
        DoGameEvent(envInfo_, 0, EVENT_GAME_ADDICTION_PREVENTED, "The user is under age.");
    }
}

void ModalUICallback::HandleRelease(Decision decision) {
    if (decision.verdict.action == Action::NOTHING) {
        GAME_LOGI_AS("OnRelease", "OnRelease end, not need close modal UI extension");
        return;
    }
    if (!HasFlag(requestType_, CLOSES_ON_RELEASE)) {
        GAME_LOGW_AS("IsCloseModalUIExtension", "ModalUIExtension meet exception and close modal");
    }
    CloseModalUIExtension(std::move(decision));
    GAME_LOGI_AS("OnRelease", "OnRelease end, close modal UI extension finished");
}

// A later answer than the first one is read like it, and then only closes.
void ModalUICallback::HandleMessage(const Answer& answer, Decision decision, const WantParams& data) {
    const Verdict& verdict = decision.verdict;
    int32_t code = answer.code;
    const char* message = "";
    if (verdict.stores && verdict.action == Action::SETTLE) decision.request->resultParams = data;
    if (verdict.isFailure) {
        if (answer.kind == AnswerKind::RESULT) {
            GAME_LOGI_AS("OnResultForModal", "OnResultForModal set isResetContext to true");
        }
        message = AssembleErrorMessage(requestType_, code);
    } else if (code == ERROR_SUCCESS && answer.kind == AnswerKind::RESULT) {
        DealResponseForModal(requestType_);
    } else if (code == ERROR_SUCCESS) {
        if (!verdict.stores) GAME_LOGW_AS("DealResponseForReceive", "DealResponseForReceive API not supported");
        DoAntiAddiction(verdict.timer, data);
    }
    GAME_LOGI_AS(SENDER, "SendMessageBack %{public}s", FindApiName(requestType_));
    if (verdict.action == Action::CLOSE) {
        GAME_LOGI_AS(SENDER, "SendMessageBack hasMsgBack is true and close modal");
        CloseModalUIExtension(std::move(decision));
        return;
    }
    if (verdict.status.isResetContext) {
        GAME_LOGI_AS(SENDER, "SendMessageBack isResetContext is true and close modal");
        CloseModalUIExtension(*decision.request);
    }
    SendMessageBack(std::move(decision.request), code, message);
}

std::shared_ptr<BaseContext> ModalUICallback::Share() {
    std::lock_guard<std::mutex> guard(mutex_);
    return context_;
}

void ModalUICallback::CloseModalUIExtension(Decision decision) {
    GAME_LOGI("CloseModalUIExtension %{public}s", FindApiName(requestType_));
    CloseModalUIExtension(*decision.request);
    ResetContext(std::move(decision));
}

// The ID is cleared before the platform call: an answer from within it must not close the modal again.
void ModalUICallback::CloseModalUIExtension(BaseContext& request) {
    if (ReadSessionId(request, false) <= 0) {
        GAME_LOGI("CloseModalUIExtension need not close modal");
        return;
    }
    OHOS::Ace::UIContent* content = request.FindUIContent();
    if (content == nullptr) return;
    const int32_t sessionId = ReadSessionId(request, true);
    if (sessionId <= 0) return;  // closed in the meantime
    content->CloseModalUIExtension(sessionId);
    GAME_LOGI("CloseModalUIExtension closed");
}

// The ID of the modal to close; 0 or less if there is none. One that is opening is then closed later.
int32_t ModalUICallback::ReadSessionId(BaseContext& request, bool isTaken) {
    std::lock_guard<std::mutex> guard(mutex_);
    if (request.sessionId <= 0) isCloseWanted_ = isOpening_;
    return isTaken ? std::exchange(request.sessionId, 0) : request.sessionId;
}

void ModalUICallback::ResetContext(Decision decision) {
    const RequestStatus& status = decision.verdict.status;
    if (status.antiAddictionRunning) {
        GAME_LOGI("ResetContext anti-addiction keep context");
    } else if (status.state != RequestState::ENDED) {
        GAME_LOGI("ResetContext isResetContext or hasMsgBack is false and keep context");
    } else {
        decision.request.reset();
        GAME_LOGI("ResetContext delete context");
    }
}

}  // namespace TAVIK::GAME_PLAYER
