#include <chrono>
#include <thread>
#include <utility>

#include "common/request_types.h"
#include "common/velmor_error.h"
#include "common/velmor_log.h"
#include "common/velmor_util.h"
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

ModalUIExtensionConfig MakeModalConfig() {
    ModalUIExtensionConfig config;
    config.isProhibitBack = true;
    config.isAllowedBeCovered = true;
    config.prohibitedRemoveByRouter = true;
    config.prohibitedRemoveByNavigation = true;
    return config;
}

UIContent* GetUIContent(const BaseContext& request) {
    if (request.abilityContext != nullptr) {
        GAME_LOGI("GetUIContent abilityContext is not nullptr");
    } else if (request.extensionContext != nullptr) {
        GAME_LOGI("GetUIContent extensionContext is not nullptr");
    }
    return request.FindUIContent();
}

}  // namespace

Want MakeGameServiceWant(int32_t requestType) {
    Want want;
    want.SetElementName("com.lumora.tavik.velmor", "GamePlayerUIExtAbility");
    want.SetParam("requestType", requestType);
    return want;
}

ModalUICallback::ModalUICallback(std::shared_ptr<BaseContext> request)
    : envInfo_(request->envInfo), requestType_(request->requestType), context_(std::move(request)) {}

void ModalUICallback::StartUIExtensionAbility(Want want) {
    const std::shared_ptr<BaseContext> request = Share();
    if (request == nullptr) {
        GAME_LOGE("asyncContext is nullptr");
        return;
    }
    GAME_LOGI_AS("ModalUICallback", "constructor ModalUICallback");
    // A literal would be sent as true.
    want.SetParam("ability.want.params.uiExtensionType", std::string("sys/commonUI"));
    want.SetParam("traceId", GetTraceId());
    UIContent* content = GetUIContent(*request);
    if (content == nullptr) {
        GAME_LOGW("UIContent is nullptr and delay start UIExtensionAbility");
        std::thread(&ModalUICallback::DelayStartUIExtensionAbility, shared_from_this(), std::move(want)).detach();
        return;
    }
    if (!IsValidEnv(envInfo_)) {
        GAME_LOGE("StartUIExtensionAbility invalid env");
        return;
    }
    if (CreateModal(*request, *content, want)) GAME_LOGI("StartUIExtensionAbility create modal succeeded");
}

ModalUIExtensionCallbacks ModalUICallback::BindCallbacks() {
    const auto session = shared_from_this();
    ModalUIExtensionCallbacks callbacks;
    callbacks.onRelease = [session](int32_t code) { session->OnRelease(code); };
    callbacks.onResult = [session](int32_t code, const Want& result) { session->OnResultForModal(code, result); };
    callbacks.onReceive = [session](const WantParams& data) { session->OnReceive(data); };
    callbacks.onError = [session](int32_t code, const std::string& name, const std::string& message) {
        session->OnError(code, name, message);
    };
    return callbacks;
}

// Until the new modal's ID is known, answers close the previous modal. If there is none, the new modal is closed as
// soon as its ID is known. Returns false if the request has ended, and opens nothing.
bool ModalUICallback::CreateModal(BaseContext& request, UIContent& content, const Want& want) {
    {
        std::lock_guard<std::mutex> guard(mutex_);
        if (context_ == nullptr) return false;
        isOpening_ = true;
    }
    const int32_t sessionId = content.CreateModalUIExtension(want, BindCallbacks(), MakeModalConfig());
    bool isCloseWanted = false;
    {
        std::lock_guard<std::mutex> guard(mutex_);
        request.sessionId = sessionId;
        isOpening_ = false;
        isCloseWanted = std::exchange(isCloseWanted_, false) || context_ == nullptr;
    }
    if (isCloseWanted) CloseModalUIExtension(request);
    return true;
}

void ModalUICallback::DelayStartUIExtensionAbility(const Want& want) {
    for (int round = 0; round < RETRY_COUNT; ++round) {
        std::this_thread::sleep_for(RETRY_INTERVAL);
        const std::shared_ptr<BaseContext> request = Share();
        if (request == nullptr || !IsValidEnv(envInfo_)) {
            GAME_LOGE("DelayStartUIExtensionAbility invalid env");
            break;
        }
        if (UIContent* content = GetUIContent(*request)) {
            CreateModal(*request, *content, want);
            return;
        }
    }
    GAME_LOGE("After delay 5s, uiContent is still nullptr.");
    AnswerLateStart();
}

// Not reported to analytics.
void ModalUICallback::AnswerLateStart() {
    std::shared_ptr<BaseContext> request;
    {
        std::lock_guard<std::mutex> guard(mutex_);
        if (context_ != nullptr && GiveUp(context_->status)) request = context_;
    }
    if (request == nullptr) {
        GAME_LOGI_AS("DelayStartUIExtensionAbility", "DelayStartUIExtensionAbility need not message back");
        return;
    }
    request->errorCode = HasFlag(requestType_, HIDES_FAILURES) ? ERROR_SUCCESS : ERROR_PARAMETER;
    QueueMessageBack(std::move(request), true);
}

}  // namespace TAVIK::GAME_PLAYER
