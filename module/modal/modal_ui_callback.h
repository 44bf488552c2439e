#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "modal/answer_rules.h"
#include "modal/base_context.h"
#include "modal_ui_extension_config.h"
#include "want.h"

namespace TAVIK::GAME_PLAYER {

/// A Want for the game-service UI extension, with the integer parameter "requestType" and no others.
OHOS::AAFwk::Want MakeGameServiceWant(int32_t requestType);

/// The life of one request after the JS call: opens the game-service extension, decides what each answer means, and
/// delivers the result to JS. It owns the request's context. The platform's callbacks, a start that waits for a window,
/// the anti-addiction timer and a queued delivery share it.
///
/// | state    | meaning                                        | ended by                               |
/// |----------|------------------------------------------------|----------------------------------------|
/// | WAITING  | no answer yet; its modal may not be open yet   | an answer that queues the result       |
/// | ANSWERED | the result is on its way to JS                 | its delivery                           |
/// | OPEN     | JS has it, or expects none; the page stays     | a release, an error, a code other than |
/// |          |                                                | 0; nothing while a timer runs          |
/// | ENDED    | the context is gone; later answers are logged  | nothing                                |
///
/// The first answer settles the request. A later one may still end the process, raise an event, close the modal, or end
/// the request.
///
/// A callback decides under the lock and acts afterwards. So an answer may come from within any call of the platform,
/// on any thread, even one that the platform waits for. Any thread may call any public member.
class ModalUICallback : public std::enable_shared_from_this<ModalUICallback> {
public:
    /// Takes ownership of `request`, which must not be null. If its state is OPEN, JS expects no result.
    explicit ModalUICallback(std::shared_ptr<BaseContext> request);

    /// Opens the extension over the caller's window, or waits up to five seconds for it. Adds the parameters that every
    /// request has. Called on the JS thread for the request, and on the anti-addiction timer's thread for its page. The
    /// page's modal then replaces the request's.
    void StartUIExtensionAbility(OHOS::AAFwk::Want want);

    /// Counts down `seconds` on a separate thread, then shows the anti-addiction page with `endText`. 15 seconds later
    /// it ends the process; for a quick game, it closes the page and raises an event instead. Does nothing if a timer
    /// is already running.
    void LaunchAntiAddictionAbility(std::string endText, int32_t seconds);

    /// Passes a game event to the listeners of an environment; dropped if the environment has ended.
    static void DoGameEvent(const std::shared_ptr<EnvInfo>& envInfo, int32_t event, std::string eventType,
                            std::string resultInfo);

    // The platform's callbacks.
    void OnRelease(int32_t releaseCode);
    void OnResultForModal(int32_t resultCode, const OHOS::AAFwk::Want& result);
    void OnReceive(const OHOS::AAFwk::WantParams& data);
    void OnError(int32_t code, const std::string& name, const std::string& message);

private:
    struct WorkData;

    /// An answer's meaning for a request.
    struct Decision {
        std::shared_ptr<BaseContext> request;  // null: it has already ended
        Verdict verdict;
    };

    // Starting.
    OHOS::Ace::ModalUIExtensionCallbacks BindCallbacks();
    bool CreateModal(BaseContext& request, OHOS::Ace::UIContent& content, const OHOS::AAFwk::Want& want);
    void DelayStartUIExtensionAbility(const OHOS::AAFwk::Want& want);
    void AnswerLateStart();

    // Answering.
    void HandleAnswer(const char* callback, const Answer& answer, const OHOS::AAFwk::WantParams& data);
    Decision Decide(const Answer& answer);
    void RaiseEvent(GameEvent event, const OHOS::AAFwk::WantParams& data) const;
    void HandleRelease(Decision decision);
    void HandleMessage(const Answer& answer, Decision decision, const OHOS::AAFwk::WantParams& data);
    std::shared_ptr<BaseContext> Share();
    void CloseModalUIExtension(Decision decision);
    void CloseModalUIExtension(BaseContext& request);
    int32_t ReadSessionId(BaseContext& request, bool isTaken);
    static void ResetContext(Decision decision);

    // The anti-addiction timer.
    static int32_t ReadPlayableTime(const OHOS::AAFwk::WantParams& data);  // in minutes
    void DoAntiAddiction(TimerStep step, const OHOS::AAFwk::WantParams& data);
    void StartTimer(std::string endText, int32_t seconds);
    void RunAntiAddictionTimer(const std::string& endText, int32_t seconds);
    void PreventQuickGame();

    // Delivering.
    void SendMessageBack(std::shared_ptr<BaseContext> request, int32_t code, const char* message);
    void QueueMessageBack(std::shared_ptr<BaseContext> request, bool isLateStart);
    void SendMessageBackWork(std::shared_ptr<BaseContext> request);
    void DoMessageBackSuccess(std::shared_ptr<BaseContext> request);
    void DoMessageBackException(std::shared_ptr<BaseContext> request);

    const std::shared_ptr<EnvInfo> envInfo_;  // of the context; outlives it
    const int32_t requestType_;

    // Guards the members below, and those of BaseContext itself. Nothing is called under it.
    std::mutex mutex_;
    std::shared_ptr<BaseContext> context_;  // null once the request has ended
    bool isOpening_ = false;                // the platform is opening a modal; its ID is not known yet
    bool isCloseWanted_ = false;            // it must be closed when its ID is known
};

}  // namespace TAVIK::GAME_PLAYER
