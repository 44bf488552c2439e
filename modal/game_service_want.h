#ifndef MODAL_GAME_SERVICE_WANT_H
#define MODAL_GAME_SERVICE_WANT_H

#include <cstdint>

#include "want.h"

namespace TAVIK::GAME_PLAYER {

/// A Want addressed to the game-service UI extension that carries the integer parameter "requestType" alone.
OHOS::AAFwk::Want MakeGameServiceWant(int32_t requestType);

}  // namespace TAVIK::GAME_PLAYER

#endif
