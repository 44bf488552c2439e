#pragma once

#include <cstdint>

namespace TAVIK::GAME_PLAYER {

// What an answer of the extension means: pure functions, callable from any thread.

/// The callback that an answer came through.
enum class AnswerKind { RESULT, RECEIVE, ERROR, RELEASE };

/// How far a request has come. `ModalUICallback` tells how one state leads to another.
enum class RequestState { WAITING, ANSWERED, OPEN, ENDED };

enum class GameEvent { NONE, PLAYER_CHANGED, GAME_ADDICTION_PREVENTED };

/// What one answer brings about. All false: nothing.
struct Verdict {
    bool exits = false;  // the game process ends, and nothing else happens
    GameEvent event = GameEvent::NONE;
    bool settles = false;      // this is the request's result; later answers are not told to JS
    bool closes = false;       // closes the modal, and ends the request if that may end
    bool isFailure = false;    // its code needs an error text
    bool marksEnd = false;     // sets `isResetContext`
    bool marksStay = false;    // clears it
    bool stores = false;       // its parameters are kept for JS
    bool startsTimer = false;  // if it tells a playable time
};

/// Judges one answer to a request, by its code: a release code, a result code, or the extension's error.
Verdict Judge(AnswerKind kind, int32_t code, int32_t requestType, RequestState state);

/// Whether a result or a received answer with this code ends the game process.
bool IsKillApp(int32_t code, int32_t requestType);

/// Whether a release closes the modal.
bool IsCloseModalUIExtension(int32_t requestType, int32_t releaseCode);

}  // namespace TAVIK::GAME_PLAYER
