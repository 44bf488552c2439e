#include "modal/answer_rules.h"

#include <utility>

#include "common/request_types.h"
#include "common/velmor_error.h"

namespace TAVIK::GAME_PLAYER {
namespace {

constexpr int32_t CODE_PLAYER_CHANGED = 9;  // an event for the game's listeners, not a result
constexpr int32_t CODE_GAME_EXIT = 10;

bool IsKillApp(int32_t code, int32_t requestType) {
    return code == CODE_GAME_EXIT || (code == ERROR_AGREEMENT_NOT_AGREED && requestType == REQUEST_INIT) ||
           (code == ERROR_UNDER_AGE && requestType != REQUEST_QUICK_GAME_LOGIN);
}

bool IsCloseModalUIExtension(int32_t requestType, int32_t releaseCode) {
    return releaseCode != 0 || HasFlag(requestType, CLOSES_ON_RELEASE);
}

GameEvent EventOf(const Answer& answer) {
    const bool isReceived = answer.kind == AnswerKind::RECEIVE;
    if (answer.code == CODE_PLAYER_CHANGED || (isReceived && answer.code == ERROR_PLAYER_INVALID)) {
        return GameEvent::PLAYER_CHANGED;
    }
    // Only a quick game gets here: for any other request, such a result ends the game.
    const bool isUnderAge = !isReceived && answer.code == ERROR_UNDER_AGE;
    return isUnderAge ? GameEvent::GAME_ADDICTION_PREVENTED : GameEvent::NONE;
}

bool MayEnd(const RequestStatus& status) { return status.isResetContext && !status.antiAddictionRunning; }

void JudgeTimer(const Answer& answer, Verdict& verdict) {
    if (verdict.status.antiAddictionRunning) {
        verdict.timer = TimerStep::RUNS_ALREADY;
    } else if (answer.playableTime >= 1) {
        verdict.timer = TimerStep::STARTS;
        verdict.status.antiAddictionRunning = true;
    }
}

void JudgeSuccess(const Answer& answer, int32_t requestType, Verdict& verdict, bool isEnding) {
    if (answer.kind == AnswerKind::RESULT) {
        verdict.stores = HasFlag(requestType, STORES_RESULT);
        if (HasFlag(requestType, ENDS_ON_SUCCESS)) verdict.status.isResetContext = true;
        return;
    }
    verdict.stores = HasFlag(requestType, STORES_RECEIVED);
    if (isEnding) return;
    if (HasFlag(requestType, STAYS_OPEN)) verdict.status.isResetContext = false;
    if (HasFlag(requestType, IS_TIMED)) JudgeTimer(answer, verdict);
}

void JudgeRelease(const Answer& answer, int32_t requestType, Verdict& verdict) {
    if (!IsCloseModalUIExtension(requestType, answer.code)) return;
    verdict.action = Action::CLOSE;
    if (!verdict.status.antiAddictionRunning) verdict.status.isResetContext = true;
}

// Of a result, received data or an error that reaches the request.
void JudgeMessage(const Answer& answer, int32_t requestType, Verdict& verdict) {
    RequestStatus& status = verdict.status;
    const bool isEnding = status.state == RequestState::ANSWERED && MayEnd(status);  // by its delivery
    verdict.action = status.state == RequestState::WAITING ? Action::SETTLE : Action::CLOSE;
    if (verdict.action == Action::SETTLE) status.state = RequestState::ANSWERED;
    if (verdict.event == GameEvent::GAME_ADDICTION_PREVENTED) status.antiAddictionRunning = false;
    if (verdict.event != GameEvent::NONE) return;
    if (answer.kind == AnswerKind::ERROR || answer.code != ERROR_SUCCESS) {
        verdict.isFailure = status.isResetContext = true;
    } else {
        JudgeSuccess(answer, requestType, verdict, isEnding);
    }
}

// An order to end the game is obeyed for an environment that has ended, too.
void JudgeResult(const Answer& answer, int32_t requestType, Verdict& verdict) {
    if (IsKillApp(answer.code, requestType)) {
        verdict.action = Action::EXIT;
        return;
    }
    if (!answer.isEnvironmentAlive) return;
    verdict.event = EventOf(answer);
    if (answer.code != CODE_PLAYER_CHANGED) JudgeMessage(answer, requestType, verdict);
}

}  // namespace

Verdict Judge(const Answer& answer, int32_t requestType, const RequestStatus& status) {
    Verdict verdict;
    verdict.status = status;
    if (answer.kind == AnswerKind::RELEASE) {
        JudgeRelease(answer, requestType, verdict);
    } else if (answer.kind == AnswerKind::ERROR) {
        // Only the first error of a request reaches it.
        if (std::exchange(verdict.status.needMessageBack, false)) JudgeMessage(answer, requestType, verdict);
    } else {
        JudgeResult(answer, requestType, verdict);
    }
    const bool isClosed = verdict.action == Action::CLOSE && status.state == RequestState::OPEN;
    if (isClosed && MayEnd(verdict.status)) verdict.status.state = RequestState::ENDED;
    return verdict;
}

RequestState AfterDelivery(const RequestStatus& status) {
    return MayEnd(status) ? RequestState::ENDED : RequestState::OPEN;
}

bool GiveUp(RequestStatus& status) {
    if (status.state != RequestState::WAITING) return false;
    status.state = RequestState::ANSWERED;
    return true;
}

// The next release of the page ends the request.
void EndTimer(RequestStatus& status) {
    status.antiAddictionRunning = false;
    status.isResetContext = true;
}

}  // namespace TAVIK::GAME_PLAYER
