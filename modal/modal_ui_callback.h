#ifndef MODAL_MODAL_UI_CALLBACK_H
#define MODAL_MODAL_UI_CALLBACK_H

#include <uv.h>

#include <cstdint>
#include <memory>
#include <string>

#include "common/loop_work.h"
#include "modal_ui_extension_config.h"
#include "napi/base_context.h"
#include "ui_content.h"
#include "want.h"

namespace TAVIK::GAME_PLAYER {

/// What travels to the JS thread: one result, and the request it belongs to. The result is the delivery's
/// own, so that answers which come later cannot change it; and so is the context, if the result ends the
/// request.
struct WorkData {
    std::shared_ptr<ContextOwner> owner;
    std::shared_ptr<BaseContext> context;
    int32_t errorCode = 0;
    std::string errorMessage;
    OHOS::AAFwk::WantParams resultParams;
};

/// One modal UI-extension session: opens the game-service extension for a request, and decides what each of
/// its answers means. The platform's callbacks hold it, and it shares the ownership of the request's context,
/// which a second session of the same request (the anti-addiction page) shares too.
///
/// The four callbacks come on a thread of the platform; results reach JS on the thread of its environment.
class ModalUICallback
{
public:
    explicit ModalUICallback(std::shared_ptr<ContextOwner> owner);

    /// Opens the extension for the request over its caller's window, or waits up to five seconds for the
    /// window; adds the parameters that every request carries. From here on the session owns the context. On
    /// the JS thread, or on the anti-addiction timer's.
    static void StartUIExtensionAbility(OHOS::AAFwk::Want want, const std::shared_ptr<ContextOwner>& owner);

    /// Counts `seconds` down on a thread of its own, then shows the anti-addiction page with `endText` and,
    /// 15 seconds later, ends the process; for a quick game it closes the page and raises an event instead.
    /// The context is kept meanwhile. Any thread.
    static void LaunchAntiAddictionAbility(const std::shared_ptr<ContextOwner>& owner, std::string endText,
                                           int32_t seconds);

    /// Hands a game event of the request's environment to the listeners; dropped if that has ended. Any
    /// thread.
    static void DoGameEvent(const BaseContext* context, int32_t event, std::string eventType,
                            std::string resultInfo);

    // The platform's callbacks.
    void OnRelease(int32_t releaseCode);
    void OnResultForModal(int32_t resultCode, const OHOS::AAFwk::Want& result);
    void OnReceive(const OHOS::AAFwk::WantParams& data);
    void OnError(int32_t code, const std::string& name, const std::string& message);

private:
    static OHOS::Ace::UIContent* GetUIContent(const BaseContext& context);
    static void CreateModal(ContextOwner& owner, BaseContext& context, OHOS::Ace::UIContent& content,
                            OHOS::AAFwk::Want want, OHOS::Ace::ModalUIExtensionCallbacks callbacks);
    static void DelayStartUIExtensionAbility(OHOS::AAFwk::Want want, std::shared_ptr<ContextOwner> owner,
                                             OHOS::Ace::ModalUIExtensionCallbacks callbacks);
    static void WaitForWindow(OHOS::AAFwk::Want want, const std::shared_ptr<ContextOwner>& owner,
                              OHOS::Ace::ModalUIExtensionCallbacks callbacks);
    static void AnswerLateStart(const std::shared_ptr<ContextOwner>& owner);

    bool IsCloseModalUIExtension(int32_t requestType, int32_t releaseCode);
    void CloseModalUIExtension();
    static void CloseModalUIExtension(BaseContext* context);
    void ResetContext();
    void DealResponseForModal(BaseContext& context, const OHOS::AAFwk::Want& result);
    void DealResponseForReceive(BaseContext& context, const OHOS::AAFwk::WantParams& data);
    void DoAntiAddiction(BaseContext& context, const OHOS::AAFwk::WantParams& data);
    static void RunAntiAddictionTimer(const std::shared_ptr<ContextOwner>& owner, int32_t requestType,
                                      const std::string& endText, int32_t seconds);
    static void PreventQuickGame(ContextOwner& owner);

    void SendMessageBack(LockedContext context);
    static void AssembleErrorMessage(BaseContext& context);
    static std::unique_ptr<WorkData> TakeResult(const LockedContext& context,
                                                const std::shared_ptr<ContextOwner>& owner);
    static QueueStatus QueueMessageBack(std::unique_ptr<WorkData>& workData);
    static void SendMessageBackWork(uv_work_t* work, int status);
    static bool SettleRequest(WorkData& workData);
    static void CreateResultMessage(WorkData& workData, napi_value (&result)[2]);
    static void DoMessageBackSuccess(const WorkData& workData);
    static void DoMessageBackException(const WorkData& workData);

    const std::shared_ptr<ContextOwner> owner_;
};

}  // namespace TAVIK::GAME_PLAYER

#endif
