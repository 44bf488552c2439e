#include <unistd.h>

#include <utility>

#include "common/velmor_error.h"
#include "common/velmor_log.h"
#include "events/game_player_event_callback.h"
#include "modal/modal_ui_callback.h"

namespace TAVIK::GAME_PLAYER {

using OHOS::AAFwk::Want;
using OHOS::AAFwk::WantParams;

namespace {

// Answers that are no result of a request.
constexpr int32_t CODE_PLAYER_CHANGED = 9;
constexpr int32_t CODE_GAME_EXIT = 10;

constexpr const char* KEY_RESULT_CODE = "resultCode";
constexpr const char* KEY_RESULT_INFO = "resultInfo";
constexpr const char* TEXT_UNDER_AGE = "The user is under age.";

bool IsKillApp(int32_t code, int32_t requestType)
{
    if (code == CODE_GAME_EXIT) {
        return true;
    }
    if (code == ERROR_AGREEMENT_NOT_AGREED && requestType == REQUEST_INIT) {
        GAME_LOGI("game exit when init not agreed agreement.");
        return true;
    }
    if (code == ERROR_UNDER_AGE && requestType != REQUEST_QUICK_GAME_LOGIN) {
        GAME_LOGI("game exit when anti-addiction");
        return true;
    }
    return false;
}

}  // namespace

void ModalUICallback::OnResultForModal(int32_t resultCode, const Want& result)
{
    GAME_LOGI("OnResultForModal resultCode=%{public}d", resultCode);
    LockedContext context = owner_->Lock();
    if (!context) {
        GAME_LOGE("OnResultForModal baseContext is null");
        return;
    }
    if (IsKillApp(resultCode, context->requestType)) {
        GAME_LOGI("OnResultForModal game exit");
        _exit(0);
    }
    context->errorCode = resultCode;
    if (resultCode == ERROR_UNDER_AGE) {
        context->antiAddictionRunning = false;
        DoGameEvent(&*context, 0, EVENT_GAME_ADDICTION_PREVENTED, TEXT_UNDER_AGE);
    } else if (resultCode == CODE_PLAYER_CHANGED) {
        DoGameEvent(&*context, 0, EVENT_PLAYER_CHANGED, result.GetStringParam(KEY_RESULT_INFO));
        return;
    } else if (resultCode != ERROR_SUCCESS) {
        GAME_LOGI("OnResultForModal set isResetContext to true");
        context->isResetContext = true;
        AssembleErrorMessage(*context);
    } else {
        DealResponseForModal(*context, result);
    }
    SendMessageBack(std::move(context));
}

void ModalUICallback::DealResponseForModal(BaseContext& context, const Want& result)
{
    switch (context.requestType) {
        case REQUEST_GET_LOCAL_PLAYER:
        case REQUEST_VERIFY_LOCAL_PLAYER:
            context.isResetContext = true;
            GAME_LOGI("DealResponseForModal %{public}s close modal and reset context.",
                      FindApiName(context.requestType));
            break;
        case REQUEST_PRE_PURCHASE:
            context.resultParams = result.GetParams();
            break;
        default:
            GAME_LOGI("DealResponseForModal %{public}s succeed.", FindApiName(context.requestType));
            break;
    }
}

void ModalUICallback::OnReceive(const WantParams& data)
{
    GAME_LOGI("OnReceive enter");
    LockedContext context = owner_->Lock();
    if (!context) {
        GAME_LOGE("OnReceive baseContext is null");
        return;
    }
    const int32_t code = data.GetIntParam(KEY_RESULT_CODE, ERROR_SYSTEM_INTERNAL);
    context->errorCode = code;
    if (IsKillApp(code, context->requestType)) {
        GAME_LOGI("OnReceive game exit");
        _exit(0);
    }
    if (!IsValidEnv(context->envInfo)) {
        GAME_LOGE("OnReceive invalid env");
        return;
    }
    if (code == ERROR_PLAYER_INVALID || code == CODE_PLAYER_CHANGED) {
        DoGameEvent(&*context, 0, EVENT_PLAYER_CHANGED, data.GetStringParam(KEY_RESULT_INFO));
        if (code == CODE_PLAYER_CHANGED) {
            return;
        }
    } else if (code != ERROR_SUCCESS) {
        context->isResetContext = true;
        AssembleErrorMessage(*context);
    } else {
        DealResponseForReceive(*context, data);
    }
    SendMessageBack(std::move(context));
}

void ModalUICallback::DealResponseForReceive(BaseContext& context, const WantParams& data)
{
    switch (context.requestType) {
        case REQUEST_GET_LOCAL_PLAYER:
        case REQUEST_VERIFY_LOCAL_PLAYER:
        case REQUEST_QUICK_GAME_LOGIN:
            context.isResetContext = false;
            context.resultParams = data;
            DoAntiAddiction(context, data);
            break;
        case REQUEST_PRE_PURCHASE:
            context.resultParams = data;
            break;
        case REQUEST_UNION_LOGIN:
            context.isResetContext = false;
            context.resultParams = data;
            break;
        default:
            GAME_LOGW("DealResponseForReceive API not supported");
            break;
    }
}

void ModalUICallback::OnError(int32_t code, const std::string& name, const std::string& message)
{
    GAME_LOGE("OnError code=%{public}d, name=%{public}s, message=%{public}s", code, name.c_str(),
              message.c_str());
    LockedContext context = owner_->Lock();
    if (!context) {
        GAME_LOGE("OnError baseContext is null");
        return;
    }
    if (!context->needMessageBack) {
        GAME_LOGE("OnError message has been back");
        return;
    }
    context->needMessageBack = false;
    context->isResetContext = true;
    context->errorCode = code;
    AssembleErrorMessage(*context);
    SendMessageBack(std::move(context));
}

void ModalUICallback::OnRelease(int32_t releaseCode)
{
    GAME_LOGI("OnRelease releaseCode=%{public}d", releaseCode);
    LockedContext context = owner_->Lock();
    if (!context) {
        GAME_LOGE("OnRelease baseContext is null");
        return;
    }
    if (!IsCloseModalUIExtension(context->requestType, releaseCode)) {
        GAME_LOGI("OnRelease end, not need close modal UI extension");
        return;
    }
    CloseModalUIExtension();
    GAME_LOGI("OnRelease end, close modal UI extension finished");
}

bool ModalUICallback::IsCloseModalUIExtension(int32_t requestType, int32_t releaseCode)
{
    switch (requestType) {
        case REQUEST_GET_LOCAL_PLAYER:
        case REQUEST_VERIFY_LOCAL_PLAYER:
        case REQUEST_UNION_LOGIN:
        case REQUEST_LAUNCH_WELCOME_BANNER:
        case REQUEST_QUICK_GAME_LOGIN:
        case REQUEST_LAUNCH_COMMON_PAGE:
            break;
        default:
            if (releaseCode == 0) {
                return false;
            }
            GAME_LOGW("ModalUIExtension meet exception and close modal");
            break;
    }
    LockedContext context = owner_->Lock();
    if (context && !context->antiAddictionRunning) {
        context->isResetContext = true;
    }
    return true;
}

void ModalUICallback::CloseModalUIExtension()
{
    LockedContext context = owner_->Lock();
    if (!context) {
        GAME_LOGE("CloseModalUIExtension baseContext is null");
        return;
    }
    GAME_LOGI("CloseModalUIExtension %{public}s", FindApiName(context->requestType));
    CloseModalUIExtension(&*context);
    ResetContext();
}

void ModalUICallback::CloseModalUIExtension(BaseContext* context)
{
    if (context == nullptr) {
        GAME_LOGE("CloseModalUIExtension asyncContext is null");
        return;
    }
    if (context->sessionId == SESSION_OPENING) {
        context->sessionId = SESSION_UNWANTED;
        return;
    }
    if (context->sessionId <= 0) {
        GAME_LOGI("CloseModalUIExtension need not close modal");
        return;
    }
    OHOS::Ace::UIContent* content = GetUIContent(*context);
    if (content == nullptr) {
        return;
    }
    content->CloseModalUIExtension(context->sessionId);
    context->sessionId = 0;
    GAME_LOGI("CloseModalUIExtension closed");
}

void ModalUICallback::ResetContext()
{
    LockedContext context = owner_->Lock();
    if (!context) {
        GAME_LOGE("ResetContext context is nullptr");
        return;
    }
    if (context->antiAddictionRunning) {
        GAME_LOGI("ResetContext anti-addiction keep context");
        return;
    }
    if (!context->isResetContext || !context->hasMsgBack) {
        GAME_LOGI("ResetContext isResetContext or hasMsgBack is false and keep context");
        return;
    }
    owner_->Release();
    GAME_LOGI("ResetContext delete context");
}

}  // namespace TAVIK::GAME_PLAYER
