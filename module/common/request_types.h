#pragma once

#include <cstdint>

namespace TAVIK::GAME_PLAYER {

/// The API of a request, with the numbers of the game-service extension.
enum RequestType : int32_t {
#define REQUEST(type, number, Method, name, flags) type = (number),
#define RESERVED(type, number, name) type = (number),
#include "common/requests.def"
};

/// How a request type treats answers. `OnReceive` gets received ones, `OnResultForModal` gets results.
enum RequestFlag : uint32_t {
    HIDES_FAILURES = 1U << 0,     // a failure is reported as a success
    HAS_MESSAGE = 1U << 1,        // on success, JS gets the extension's "resultMessage"
    STORES_RECEIVED = 1U << 2,    // the parameters of a received success are kept for JS
    STORES_RESULT = 1U << 3,      // the parameters of a successful result are kept for JS
    STAYS_OPEN = 1U << 4,         // a received success leaves the page open
    IS_TIMED = 1U << 5,           // a received success may start the anti-addiction timer
    ENDS_ON_SUCCESS = 1U << 6,    // a successful result ends the request even if its page stayed open
    CLOSES_ON_RELEASE = 1U << 7,  // any release closes the page, not only one with an error
};

/// Whether `requestType` has the flag; any number is allowed. Callable from any thread.
bool HasFlag(int32_t requestType, RequestFlag flag);

/// The JS name of a request type; "undefined" for any other number. Callable from any thread.
const char* FindApiName(int32_t requestType);

}  // namespace TAVIK::GAME_PLAYER
