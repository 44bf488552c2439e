#include "modal/game_service_want.h"

namespace TAVIK::GAME_PLAYER {

OHOS::AAFwk::Want MakeGameServiceWant(int32_t requestType)
{
    OHOS::AAFwk::Want want;
    want.SetElementName("com.lumora.tavik.velmor", "GamePlayerUIExtAbility");
    want.SetParam("requestType", requestType);
    return want;
}

}  // namespace TAVIK::GAME_PLAYER
