#include <unistd.h>

#include <chrono>
#include <thread>
#include <utility>

#include "common/velmor_error.h"
#include "common/velmor_log.h"
#include "events/game_player_event_callback.h"
#include "modal/game_service_want.h"
#include "modal/modal_ui_callback.h"

namespace TAVIK::GAME_PLAYER {

using OHOS::AAFwk::Want;
using OHOS::AAFwk::WantParams;

namespace {

constexpr std::chrono::seconds CHECK_INTERVAL(15);
constexpr std::chrono::seconds PAGE_TIME(15);
constexpr int64_t MILLISECONDS = 1000;
constexpr const char* KEY_PLAYABLE_TIME = "playableTime";  // minutes
constexpr const char* KEY_END_TEXT = "endText";
constexpr int32_t NO_LIMIT = -1;

// Wraps around as 32-bit numbers do; the extension's number of minutes is not checked.
int32_t ToSeconds(int32_t minutes)
{
    return static_cast<int32_t>(static_cast<uint32_t>(minutes) * 60U);
}

}  // namespace

void ModalUICallback::DoAntiAddiction(BaseContext& context, const WantParams& data)
{
    if (context.antiAddictionRunning) {
        GAME_LOGI("DoAntiAddiction anti-addiction task started and return");
        return;
    }
    const int32_t minutes = data.GetIntParam(KEY_PLAYABLE_TIME, NO_LIMIT);
    if (minutes < 1) {
        return;
    }
    LaunchAntiAddictionAbility(owner_, data.GetStringParam(KEY_END_TEXT), ToSeconds(minutes));
}

void ModalUICallback::LaunchAntiAddictionAbility(const std::shared_ptr<ContextOwner>& owner,
                                                 std::string endText, int32_t seconds)
{
    LockedContext context = owner->Lock();
    if (!context) {
        return;
    }
    context->antiAddictionRunning = true;
    GAME_LOGI("LaunchAntiAddictionAbility playable time %{public}d seconds", seconds);
    std::thread(RunAntiAddictionTimer, owner, context->requestType, std::move(endText), seconds).detach();
}

// Time is up for the game even if the request has ended meanwhile.
void ModalUICallback::RunAntiAddictionTimer(const std::shared_ptr<ContextOwner>& owner, int32_t requestType,
                                            const std::string& endText, int32_t seconds)
{
    const int64_t deadline = GetCurrentTimestamp() + seconds * MILLISECONDS;
    do {
        std::this_thread::sleep_for(CHECK_INTERVAL);
    } while (GetCurrentTimestamp() <= deadline);
    GAME_LOGI("LaunchAntiAddictionAbility playable time %{public}d seconds end", seconds);

    Want want = MakeGameServiceWant(REQUEST_LAUNCH_ANTI_ADDICTION);
    want.SetParam(KEY_END_TEXT, endText);
    StartUIExtensionAbility(std::move(want), owner);
    GAME_LOGI("launched anti-addiction ability.");
    std::this_thread::sleep_for(PAGE_TIME);
    if (requestType != REQUEST_QUICK_GAME_LOGIN) {
        _exit(0);
    }
    PreventQuickGame(*owner);
}

void ModalUICallback::PreventQuickGame(ContextOwner& owner)
{
    LockedContext context = owner.Lock();
    if (!context) {
        return;
    }
    context->antiAddictionRunning = false;
    context->isResetContext = true;
    DoGameEvent(&*context, 0, EVENT_GAME_ADDICTION_PREVENTED, "The user is under age.");
    CloseModalUIExtension(&*context);
}

void ModalUICallback::DoGameEvent(const BaseContext* context, int32_t event, std::string eventType,
                                  std::string resultInfo)
{
    GAME_LOGI("DoGameEvent %{public}s[%{public}d] called", eventType.c_str(), event);
    LiveEnv isLive(context != nullptr ? context->envInfo : nullptr);
    if (!isLive) {
        GAME_LOGW("DoGameEvent invalid context or env");
        return;
    }
    GameEventResult result{context->envInfo, event, std::move(eventType), std::move(resultInfo)};
    (void)WithListeners([&result](GamePlayerEventCallback& listeners) {
        listeners.OnEventCallback(std::move(result));
        return true;
    });
}

}  // namespace TAVIK::GAME_PLAYER
