#include <chrono>
#include <thread>
#include <utility>

#include "common/velmor_error.h"
#include "common/velmor_log.h"
#include "modal/modal_ui_callback.h"

namespace TAVIK::GAME_PLAYER {

using OHOS::AAFwk::Want;
using OHOS::AAFwk::WantParams;
using OHOS::Ace::ModalUIExtensionCallbacks;
using OHOS::Ace::ModalUIExtensionConfig;
using OHOS::Ace::UIContent;

namespace {

constexpr std::chrono::seconds RETRY_INTERVAL(1);
constexpr int RETRY_COUNT = 5;

ModalUIExtensionConfig MakeModalConfig()
{
    ModalUIExtensionConfig config;
    config.isBackBlocked = true;
    config.isBoundAsync = true;
    config.isCoverable = true;
    config.isKeptByRouter = true;
    return config;
}

ModalUIExtensionCallbacks BindCallbacks(const std::shared_ptr<ModalUICallback>& session)
{
    ModalUIExtensionCallbacks callbacks;
    callbacks.onRelease = [session](int32_t releaseCode) {
        session->OnRelease(releaseCode);
    };
    callbacks.onResult = [session](int32_t code, const Want& want) {
        session->OnResultForModal(code, want);
    };
    callbacks.onReceive = [session](const WantParams& data) {
        session->OnReceive(data);
    };
    callbacks.onError = [session](int32_t code, const std::string& name, const std::string& message) {
        session->OnError(code, name, message);
    };
    return callbacks;
}

}  // namespace

ModalUICallback::ModalUICallback(std::shared_ptr<ContextOwner> owner) : owner_(std::move(owner))
{
    GAME_LOGI("constructor ModalUICallback");
}

void ModalUICallback::StartUIExtensionAbility(Want want, const std::shared_ptr<ContextOwner>& owner)
{
    const std::shared_ptr<BaseContext> context = owner->Get();
    if (context == nullptr) {
        GAME_LOGE("asyncContext is nullptr");
        return;
    }
    ModalUIExtensionCallbacks callbacks = BindCallbacks(std::make_shared<ModalUICallback>(owner));
    want.SetParam("ability.want.params.uiExtensionType", "sys/commonUI");
    want.SetParam("traceId", GetTraceId());
    UIContent* content = GetUIContent(*context);
    if (content == nullptr) {
        GAME_LOGW("UIContent is nullptr and delay start UIExtensionAbility");
        DelayStartUIExtensionAbility(std::move(want), owner, std::move(callbacks));
        return;
    }
    if (!IsValidEnv(context->envInfo)) {
        GAME_LOGE("StartUIExtensionAbility invalid env");
        return;
    }
    CreateModal(*owner, *context, *content, std::move(want), std::move(callbacks));
    GAME_LOGI("StartUIExtensionAbility create modal succeeded");
}

UIContent* ModalUICallback::GetUIContent(const BaseContext& context)
{
    if (context.abilityContext != nullptr) {
        GAME_LOGI("GetUIContent abilityContext is not nullptr");
        return context.abilityContext->GetUIContent();
    }
    if (context.extensionContext != nullptr) {
        GAME_LOGI("GetUIContent extensionContext is not nullptr");
        return context.extensionContext->GetUIContent();
    }
    return nullptr;
}

// Not locked while the platform opens the modal: it may do so on the thread that brings the answers, where
// one may wait for the lock. One that came before the session id was known, and wanted the modal closed, is
// obeyed now.
void ModalUICallback::CreateModal(ContextOwner& owner, BaseContext& context, UIContent& content, Want want,
                                  ModalUIExtensionCallbacks callbacks)
{
    if (LockedContext locked = owner.Lock()) {
        context.sessionId = SESSION_OPENING;
    } else {
        return;
    }
    const int32_t sessionId =
        content.CreateModalUIExtension(std::move(want), std::move(callbacks), MakeModalConfig());
    LockedContext locked = owner.Lock();
    const bool isWanted = context.sessionId != SESSION_UNWANTED;
    context.sessionId = sessionId;
    if (!isWanted) {
        CloseModalUIExtension(&context);
    }
}

void ModalUICallback::DelayStartUIExtensionAbility(Want want, std::shared_ptr<ContextOwner> owner,
                                                   ModalUIExtensionCallbacks callbacks)
{
    std::thread(WaitForWindow, std::move(want), std::move(owner), std::move(callbacks)).detach();
}

void ModalUICallback::WaitForWindow(Want want, const std::shared_ptr<ContextOwner>& owner,
                                    ModalUIExtensionCallbacks callbacks)
{
    for (int round = 0; round < RETRY_COUNT; ++round) {
        std::this_thread::sleep_for(RETRY_INTERVAL);
        auto context = owner->Get();
        if (context == nullptr || !IsValidEnv(context->envInfo)) {
            GAME_LOGE("DelayStartUIExtensionAbility invalid env");
            break;
        }
        if (UIContent* content = GetUIContent(*context)) {
            CreateModal(*owner, *context, *content, std::move(want), std::move(callbacks));
            return;
        }
    }
    GAME_LOGE("After delay 5s, uiContent is still nullptr.");
    AnswerLateStart(owner);
}

void ModalUICallback::AnswerLateStart(const std::shared_ptr<ContextOwner>& owner)
{
    LockedContext context = owner->Lock();
    if (!context || context->hasMsgBack) {
        GAME_LOGI("DelayStartUIExtensionAbility need not message back");
        return;
    }
    context->errorCode = IsFailureHidden(context->requestType) ? ERROR_SUCCESS : ERROR_PARAMETER;
    std::unique_ptr<WorkData> workData = TakeResult(context, owner);
    context.Unlock();
    switch (QueueMessageBack(workData)) {
        case QueueStatus::QUEUED:
            return;
        case QueueStatus::NO_LOOP:
            GAME_LOGE("DelayStartUIExtensionAbility invalid work or get loop failed");
            break;
        case QueueStatus::REFUSED:
            GAME_LOGE("DelayStartUIExtensionAbility uv_queue_work call failed");
            break;
    }
    DoMessageBackException(*workData);
}

}  // namespace TAVIK::GAME_PLAYER
