#pragma once

#include <cstdint>

namespace TAVIK::GAME_PLAYER {

// What the extension's answers mean. Pure functions, callable from any thread.

/// The callback that an answer came through.
enum class AnswerKind { RESULT, RECEIVE, ERROR, RELEASE };

struct Answer {
    AnswerKind kind = AnswerKind::RESULT;
    int32_t code = 0;          // of the result, the received data, the error or the release
    int32_t playableTime = 0;  // of received data, in minutes; below 1: no limit
    bool isEnvironmentAlive = true;
};

/// `ModalUICallback` describes the states and their transitions.
enum class RequestState { WAITING, ANSWERED, OPEN, ENDED };

/// How far a request is. The session's lock guards it.
struct RequestStatus {
    RequestState state = RequestState::WAITING;
    bool isResetContext = true;         // the request ends after JS has its result
    bool needMessageBack = true;        // the extension has not reported an error yet
    bool antiAddictionRunning = false;  // a timer keeps the request from ending
};

enum class Action {
    NOTHING,
    EXIT,    // ends the game process; nothing else of the verdict happens
    SETTLE,  // this is the request's result: JS does not get a later one
    CLOSE,   // closes the modal, and ends the request if its state says so
};

enum class GameEvent { NONE, PLAYER_CHANGED, GAME_ADDICTION_PREVENTED };

/// What a success means for the anti-addiction timer.
enum class TimerStep { NONE, STARTS, RUNS_ALREADY };

/// What an answer has for effects.
struct Verdict {
    Action action = Action::NOTHING;
    GameEvent event = GameEvent::NONE;
    TimerStep timer = TimerStep::NONE;
    bool isFailure = false;  // its code needs an error message
    bool stores = false;     // its parameters are kept for JS, if it settles the request
    RequestStatus status;    // the request's from now on
};

/// Judges an answer to a request that has not ended.
Verdict Judge(const Answer& answer, int32_t requestType, const RequestStatus& status);

/// The state of a request whose result JS has got.
RequestState AfterDelivery(const RequestStatus& status);

/// A start has found no window in time. Returns whether that settles the request.
bool GiveUp(RequestStatus& status);

/// The page at the end of a quick game's time has been shown for long enough.
void EndTimer(RequestStatus& status);

}  // namespace TAVIK::GAME_PLAYER
