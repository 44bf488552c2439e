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

constexpr const char* KEY_RESULT_CODE = "resultCode";
constexpr const char* KEY_RESULT_INFO = "resultInfo";

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

}  // namespace

void ModalUICallback::OnResultForModal(int32_t resultCode, const Want& result) {
    GAME_LOGI("OnResultForModal resultCode=%{public}d", resultCode);
    TakeAnswer(AnswerKind::RESULT, "OnResultForModal", resultCode, result.GetParams());
}

void ModalUICallback::OnReceive(const WantParams& data) {
    GAME_LOGI("OnReceive enter");
    TakeAnswer(AnswerKind::RECEIVE, "OnReceive", data.GetIntParam(KEY_RESULT_CODE, ERROR_SYSTEM_INTERNAL),
               data);
}

void ModalUICallback::OnError(int32_t code, const std::string& name, const std::string& message) {
    GAME_LOGE("OnError code=%{public}d, name=%{public}s, message=%{public}s", code, name.c_str(),
              message.c_str());
    TakeAnswer(AnswerKind::ERROR, "OnError", code, WantParams());
}

void ModalUICallback::OnRelease(int32_t releaseCode) {
    GAME_LOGI("OnRelease releaseCode=%{public}d", releaseCode);
    Decision decision = Decide(AnswerKind::RELEASE, releaseCode, 0, true);
    if (decision.context == nullptr) {
        GAME_LOGE("OnRelease baseContext is null");
        return;
    }
    if (!decision.verdict.closes) {
        GAME_LOGI("OnRelease end, not need close modal UI extension");
        return;
    }
    if (!HasFlag(requestType_, CLOSES_ON_RELEASE)) {
        GAME_LOGW_AS("IsCloseModalUIExtension", "ModalUIExtension meet exception and close modal");
    }
    CloseModalUIExtension(std::move(decision));
    GAME_LOGI("OnRelease end, close modal UI extension finished");
}

void ModalUICallback::TakeAnswer(AnswerKind kind, const char* callback, int32_t code,
                                 const WantParams& data) {
    const bool isHeard = kind != AnswerKind::RECEIVE || IsValidEnv(envInfo_);
    const int32_t minutes = kind == AnswerKind::RECEIVE ? ReadPlayableTime(data) : 0;
    Decision decision = Decide(kind, code, minutes, isHeard);
    if (decision.context == nullptr) {
        GAME_LOGE_AS(callback, "%{public}s baseContext is null", callback);
        return;
    }
    if (decision.verdict.exits) ExitGame(callback, code);
    if (!isHeard) {
        GAME_LOGE_AS(callback, "%{public}s invalid env", callback);
        return;
    }
    if (decision.isRepeatedError) {
        GAME_LOGE_AS(callback, "%{public}s message has been back", callback);
        return;
    }
    RaiseEvent(decision.verdict.event, data);
    if (decision.verdict.settles || decision.verdict.closes) {
        TakeMessage(kind, std::move(decision), code, data);
    }
}

void ModalUICallback::RaiseEvent(GameEvent event, const WantParams& data) const {
    if (event == GameEvent::PLAYER_CHANGED) {
        DoGameEvent(envInfo_, 0, EVENT_PLAYER_CHANGED, data.GetStringParam(KEY_RESULT_INFO));
    } else if (event == GameEvent::GAME_ADDICTION_PREVENTED) {
        DoGameEvent(envInfo_, 0, EVENT_GAME_ADDICTION_PREVENTED, "The user is under age.");
    }
}

void ModalUICallback::TakeMessage(AnswerKind kind, Decision decision, int32_t code, const WantParams& data) {
    const char* message = "";
    if (decision.verdict.stores && decision.verdict.settles) decision.context->resultParams = data;
    if (decision.verdict.isFailure) {
        if (kind == AnswerKind::RESULT) {
            GAME_LOGI_AS("OnResultForModal", "OnResultForModal set isResetContext to true");
        }
        message = AssembleErrorMessage(requestType_, code);
    } else if (code == ERROR_SUCCESS && kind == AnswerKind::RESULT) {
        DealResponseForModal(decision);
    } else if (code == ERROR_SUCCESS) {
        DealResponseForReceive(decision, data);
    }
    SendMessageBack(std::move(decision), code, message);
}

void ModalUICallback::DealResponseForModal(const Decision& decision) {
    const char* apiName = FindApiName(decision.context->requestType);
    if (decision.verdict.marksEnd) {
        GAME_LOGI("DealResponseForModal %{public}s close modal and reset context.", apiName);
    } else if (!decision.verdict.stores) {
        GAME_LOGI("DealResponseForModal %{public}s succeed.", apiName);
    }
}

void ModalUICallback::DealResponseForReceive(const Decision& decision, const WantParams& data) {
    if (!decision.verdict.stores) GAME_LOGW("DealResponseForReceive API not supported");
    if (decision.verdict.startsTimer) DoAntiAddiction(data, decision.hadTimer);
}

std::shared_ptr<BaseContext> ModalUICallback::Share() {
    std::lock_guard<std::mutex> guard(mutex_);
    return context_;
}

// An answer whose environment has ended is not heard, but may still end the process.
ModalUICallback::Decision ModalUICallback::Decide(AnswerKind kind, int32_t code, int32_t minutes,
                                                  bool isHeard) {
    std::lock_guard<std::mutex> guard(mutex_);
    Decision decision;
    decision.context = context_;
    decision.verdict = Judge(kind, code, requestType_, state_);
    if (context_ != nullptr && isHeard) Note(kind, minutes, decision);
    return decision;
}

void ModalUICallback::Note(AnswerKind kind, int32_t minutes, Decision& decision) {
    Verdict& verdict = decision.verdict;
    BaseContext& request = *context_;
    if (kind == AnswerKind::ERROR && !std::exchange(request.needMessageBack, false)) {
        decision.isRepeatedError = true;
        return;
    }
    if (state_ == RequestState::ANSWERED && MayEnd()) {
        verdict.marksStay = verdict.startsTimer = false;  // its delivery ends it, whatever comes now
    }
    if (verdict.event == GameEvent::GAME_ADDICTION_PREVENTED) request.antiAddictionRunning = false;
    if (verdict.marksStay) request.isResetContext = false;
    if (verdict.marksEnd && !(kind == AnswerKind::RELEASE && request.antiAddictionRunning)) {
        request.isResetContext = true;
    }
    decision.hadTimer = request.antiAddictionRunning;
    if (verdict.startsTimer && minutes >= 1) request.antiAddictionRunning = true;
    if (verdict.settles) state_ = RequestState::ANSWERED;
    decision.isResetContext = request.isResetContext;
    decision.isTimerRunning = request.antiAddictionRunning;
    decision.hasEnded = verdict.closes && state_ == RequestState::OPEN && MayEnd();
    if (decision.hasEnded) End();
}

bool ModalUICallback::MayEnd() const { return context_->isResetContext && !context_->antiAddictionRunning; }

// The caller holds another reference, so nothing is destroyed under the lock.
void ModalUICallback::End() {
    state_ = RequestState::ENDED;
    context_.reset();
}

void ModalUICallback::CloseModalUIExtension(Decision decision) {
    GAME_LOGI("CloseModalUIExtension %{public}s", FindApiName(requestType_));
    CloseModalUIExtension(*decision.context);
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
    if (decision.isTimerRunning) {
        GAME_LOGI("ResetContext anti-addiction keep context");
        return;
    }
    if (!decision.hasEnded) {
        GAME_LOGI("ResetContext isResetContext or hasMsgBack is false and keep context");
        return;
    }
    decision.context.reset();
    GAME_LOGI("ResetContext delete context");
}

}  // namespace TAVIK::GAME_PLAYER
