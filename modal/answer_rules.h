#pragma once

#include <cstdint>

namespace TAVIK::GAME_PLAYER {

// What the extension's answers mean. Pure functions, callable from any thread.

/// The callback that an answer came through.
enum class AnswerKind { RESULT, RECEIVE, ERROR, RELEASE };

/// The state of a request. `ModalUICallback` describes the transitions.
enum class RequestState { WAITING, ANSWERED, OPEN, ENDED };

enum class GameEvent { NONE, PLAYER_CHANGED, GAME_ADDICTION_PREVENTED };

/// The effects of one answer. If all are false, it has none.
struct Verdict {
    bool exits = false;  // the game process ends, and nothing else happens
    GameEvent event = GameEvent::NONE;
    bool settles = false;      // this is the request's result; JS does not get later answers
    bool closes = false;       // closes the modal, and ends the request if it may end
    bool isFailure = false;    // its code needs an error message
    bool marksEnd = false;     // sets `isResetContext`
    bool marksStay = false;    // clears `isResetContext`
    bool stores = false;       // its parameters are kept for JS
    bool startsTimer = false;  // if it contains a playable time
};

/// The effects of one answer to a request. `code` is a release code, a result code or the extension's error.
Verdict Judge(AnswerKind kind, int32_t code, int32_t requestType, RequestState state);

/// Whether a result or a received answer with this code ends the game process.
bool IsKillApp(int32_t code, int32_t requestType);

/// Whether a release closes the modal.
bool IsCloseModalUIExtension(int32_t requestType, int32_t releaseCode);

}  // namespace TAVIK::GAME_PLAYER
