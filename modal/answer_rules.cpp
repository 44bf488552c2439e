#include "modal/answer_rules.h"

#include "common/request_types.h"
#include "common/velmor_error.h"

namespace TAVIK::GAME_PLAYER {
namespace {

constexpr int32_t CODE_PLAYER_CHANGED = 9;  // an event for the game's listeners, not a result
constexpr int32_t CODE_GAME_EXIT = 10;

GameEvent EventOf(AnswerKind kind, int32_t code) {
    if (code == CODE_PLAYER_CHANGED || (kind == AnswerKind::RECEIVE && code == ERROR_PLAYER_INVALID)) {
        return GameEvent::PLAYER_CHANGED;
    }
    // Only a quick game gets here: for any other request, such a result ends the game.
    if (kind == AnswerKind::RESULT && code == ERROR_UNDER_AGE) return GameEvent::GAME_ADDICTION_PREVENTED;
    return GameEvent::NONE;
}

void JudgeSuccess(AnswerKind kind, int32_t requestType, Verdict& verdict) {
    if (kind == AnswerKind::RESULT) {
        verdict.marksEnd = HasFlag(requestType, ENDS_ON_SUCCESS);
        verdict.stores = HasFlag(requestType, STORES_RESULT);
        return;
    }
    verdict.marksStay = HasFlag(requestType, STAYS_OPEN);
    verdict.stores = HasFlag(requestType, STORES_RECEIVED);
    verdict.startsTimer = HasFlag(requestType, IS_TIMED);
}

}  // namespace

bool IsKillApp(int32_t code, int32_t requestType) {
    return code == CODE_GAME_EXIT || (code == ERROR_AGREEMENT_NOT_AGREED && requestType == REQUEST_INIT) ||
           (code == ERROR_UNDER_AGE && requestType != REQUEST_QUICK_GAME_LOGIN);
}

bool IsCloseModalUIExtension(int32_t requestType, int32_t releaseCode) {
    return releaseCode != 0 || HasFlag(requestType, CLOSES_ON_RELEASE);
}

Verdict Judge(AnswerKind kind, int32_t code, int32_t requestType, RequestState state) {
    if (state == RequestState::ENDED) return {};
    Verdict verdict;
    if (kind == AnswerKind::RELEASE) {
        verdict.closes = verdict.marksEnd = IsCloseModalUIExtension(requestType, code);
        return verdict;
    }
    if (kind != AnswerKind::ERROR) {
        verdict.exits = IsKillApp(code, requestType);
        if (verdict.exits) return verdict;
        verdict.event = EventOf(kind, code);
        if (code == CODE_PLAYER_CHANGED) return verdict;
    }
    verdict.settles = state == RequestState::WAITING;
    verdict.closes = !verdict.settles;
    if (kind == AnswerKind::ERROR || (code != ERROR_SUCCESS && verdict.event == GameEvent::NONE)) {
        verdict.isFailure = verdict.marksEnd = true;
    } else if (code == ERROR_SUCCESS) {
        JudgeSuccess(kind, requestType, verdict);
    }
    return verdict;
}

}  // namespace TAVIK::GAME_PLAYER
