#include <unistd.h>

#include <chrono>
#include <thread>
#include <utility>

#include "common/request_types.h"
#include "common/velmor_log.h"
#include "common/velmor_util.h"
#include "events/game_player_event_callback.h"
#include "modal/modal_ui_callback.h"

namespace TAVIK::GAME_PLAYER {

using OHOS::AAFwk::Want;
using OHOS::AAFwk::WantParams;

namespace {

constexpr std::chrono::seconds CHECK_INTERVAL(15);
constexpr std::chrono::seconds PAGE_TIME(15);
constexpr const char* KEY_END_TEXT = "endText";
constexpr int32_t NO_LIMIT = -1;
constexpr const char* LAUNCHER = "LaunchAntiAddictionAbility";  // the timer is its second half

// Wraps around like a 32-bit number: the extension's number of minutes is not checked.
int32_t ToSeconds(int32_t minutes) { return static_cast<int32_t>(static_cast<uint32_t>(minutes) * 60U); }

}  // namespace

int32_t ModalUICallback::ReadPlayableTime(const WantParams& data) { return data.GetIntParam("playableTime", NO_LIMIT); }

void ModalUICallback::DoAntiAddiction(TimerStep step, const WantParams& data) {
    if (step == TimerStep::RUNS_ALREADY) {
        GAME_LOGI("DoAntiAddiction anti-addiction task started and return");
    } else if (step == TimerStep::STARTS) {
        StartTimer(data.GetStringParam(KEY_END_TEXT), ToSeconds(ReadPlayableTime(data)));
    }
}

void ModalUICallback::LaunchAntiAddictionAbility(std::string endText, int32_t seconds) {
    {
        std::lock_guard<std::mutex> guard(mutex_);
        if (context_ == nullptr || std::exchange(context_->status.antiAddictionRunning, true)) return;
    }
    StartTimer(std::move(endText), seconds);
}

void ModalUICallback::StartTimer(std::string endText, int32_t seconds) {
    GAME_LOGI_AS(LAUNCHER, "LaunchAntiAddictionAbility playable time %{public}d seconds", seconds);
    std::thread(&ModalUICallback::RunAntiAddictionTimer, shared_from_this(), std::move(endText), seconds).detach();
}

// The time limit applies to the game even if the request has ended in the meantime.
void ModalUICallback::RunAntiAddictionTimer(const std::string& endText, int32_t seconds) {
    const int64_t deadline = GetCurrentTimestamp() + int64_t{1000} * seconds;
    do {
        std::this_thread::sleep_for(CHECK_INTERVAL);
    } while (GetCurrentTimestamp() <= deadline);
    GAME_LOGI_AS(LAUNCHER, "LaunchAntiAddictionAbility playable time %{public}d seconds end", seconds);

    Want want = MakeGameServiceWant(REQUEST_LAUNCH_ANTI_ADDICTION);
    want.SetParam(KEY_END_TEXT, endText);
    StartUIExtensionAbility(std::move(want));
    GAME_LOGI_AS(LAUNCHER, "launched anti-addiction ability.");
    std::this_thread::sleep_for(PAGE_TIME);
    if (requestType_ != REQUEST_QUICK_GAME_LOGIN) _exit(0);
    PreventQuickGame();
}

void ModalUICallback::PreventQuickGame() {
    std::shared_ptr<BaseContext> request;
    {
        std::lock_guard<std::mutex> guard(mutex_);
        if (context_ == nullptr) return;
        EndTimer(context_->status);
        request = context_;
    }
    RaiseEvent(GameEvent::GAME_ADDICTION_PREVENTED, WantParams());
    CloseModalUIExtension(*request);
}

void ModalUICallback::DoGameEvent(const std::shared_ptr<EnvInfo>& envInfo, int32_t event, std::string eventType,
                                  std::string resultInfo) {
    GAME_LOGI("DoGameEvent %{public}s[%{public}d] called", eventType.c_str(), event);
    if (!IsValidEnv(envInfo)) {
        GAME_LOGW("DoGameEvent invalid context or env");
        return;
    }
    GameEventResult result{envInfo, event, std::move(eventType), std::move(resultInfo)};
    (void)WithListeners(
        [&result](GamePlayerEventCallback& listeners) { listeners.OnEventCallback(std::move(result)); });
}

}  // namespace TAVIK::GAME_PLAYER
