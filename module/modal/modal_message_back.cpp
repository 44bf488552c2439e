#include <new>
#include <utility>

#include "analytics/ha_utils.h"
#include "common/js_value_helpers.h"
#include "common/request_types.h"
#include "common/velmor_error.h"
#include "common/velmor_log.h"
#include "modal/modal_ui_callback.h"
#include "napi_common_want.h"

namespace TAVIK::GAME_PLAYER {
namespace {

bool IsParseResultMessage(int32_t requestType) {
    GAME_LOGI("IsParseResultMessage requestType=%{public}d", requestType);
    return HasFlag(requestType, HAS_MESSAGE);
}

// Fills the pair (error, data) from a request's result.
void CreateResultMessage(BaseContext& request, napi_value (&result)[2]) {
    if (!IsValidEnv(request.envInfo)) {
        GAME_LOGE("CreateResultMessage invalid env");
        return;
    }
    napi_env env = request.envInfo->env;
    if (request.errorCode != ERROR_SUCCESS) {
        result[0] = ObtainBusinessError(env, request.errorCode, request.errorMessage);
        (void)napi_get_undefined(env, &result[1]);
        return;
    }
    if (IsParseResultMessage(request.requestType)) {
        napi_value params = OHOS::AppExecFwk::WrapWantParams(env, request.resultParams);
        if (params == nullptr || napi_get_named_property(env, params, "resultMessage", &result[1]) != napi_ok) {
            GAME_LOGE("CreateResultMessage parse napiResult or resultMessage failed");
            request.errorCode = ERROR_SYSTEM_INTERNAL;
            result[0] = ObtainBusinessError(env, ERROR_SYSTEM_INTERNAL, "");
        }
    }
    if (result[1] == nullptr) {
        GAME_LOGI("CreateResultMessage set result[1] to undefined");
        (void)napi_get_undefined(env, &result[1]);
    }
}

// False if no handle scope could be opened.
bool SettleRequest(BaseContext& request) {
    napi_env env = request.envInfo->env;
    HandleScope scope(env);
    if (!scope) return false;
    napi_value result[] = {nullptr, nullptr};
    CreateResultMessage(request, result);
    if (request.deferred == nullptr && request.callbackRef == nullptr) {
        GAME_LOGW_AS("SendMessageBackWork", "SendMessageBackWork callback and deferred nullptr");
    }
    const bool isFailure = request.errorCode != ERROR_SUCCESS;
    if (isFailure && result[0] == nullptr) {
        result[0] = result[1];  // no error can be created: better to reject with `undefined` than never
    }
    (void)Settle(env, request, isFailure, result);
    if (!IsValidEnv(request.envInfo)) scope.Abandon();
    return true;
}

}  // namespace

/// Sent to the JS thread: a request whose result is in its context.
struct ModalUICallback::WorkData final : LoopWork {
    explicit WorkData(std::shared_ptr<ModalUICallback> session) : modalUICallback(std::move(session)) {}
    void Run() override {
        const std::shared_ptr<ModalUICallback> session = std::move(modalUICallback);
        session->SendMessageBackWork(std::move(context));
    }

    std::shared_ptr<ModalUICallback> modalUICallback;
    std::shared_ptr<BaseContext> context;
};

void ModalUICallback::SendMessageBack(std::shared_ptr<BaseContext> request, int32_t code, const char* message) {
    request->errorCode = code;
    request->errorMessage = message;
    OHOS::Velmor::HaUtils::ReportEnd(FindApiName(requestType_), request->startTime, code);
    QueueMessageBack(std::move(request), false);
}

// This thread keeps no reference to what it queues, so the delivery destroys the context, on the JS thread.
void ModalUICallback::QueueMessageBack(std::shared_ptr<BaseContext> request, bool isLateStart) {
    auto* workData = new (std::nothrow) WorkData(shared_from_this());
    if (workData != nullptr) workData->context.swap(request);
    std::unique_ptr<LoopWork> work(workData);
    const QueueStatus status = envInfo_->Queue(work);
    if (status == QueueStatus::QUEUED) return;
    if (work != nullptr) workData->context.swap(request);
    const char* sender = isLateStart ? "DelayStartUIExtensionAbility" : "SendMessageBack";
    if (status == QueueStatus::REFUSED) {
        GAME_LOGE_AS(sender, "%{public}s uv_queue_work call failed", sender);
    } else if (isLateStart) {
        GAME_LOGE_AS(sender, "%{public}s invalid work or get loop failed", sender);
    } else {
        GAME_LOGE_AS(sender, "isValidEnv[%{public}d] or get loop failed", IsValidEnv(envInfo_));
    }
    DoMessageBackException(std::move(request));
}

void ModalUICallback::SendMessageBackWork(std::shared_ptr<BaseContext> request) {
    const bool isAlive = IsValidEnv(envInfo_);
    if (isAlive && SettleRequest(*request)) {
        DoMessageBackSuccess(std::move(request));
        return;
    }
    GAME_LOGE("SendMessageBackWork %{public}s",
              isAlive ? "open handle scope failed" : "context is null or invalid env");
    DoMessageBackException(std::move(request));
}

void ModalUICallback::DoMessageBackSuccess(std::shared_ptr<BaseContext> request) {
    RequestState state = RequestState::ENDED;
    {
        std::lock_guard<std::mutex> guard(mutex_);
        state = request->status.state = AfterDelivery(request->status);
        if (state == RequestState::ENDED) context_.reset();  // `request` is another reference
    }
    if (state == RequestState::OPEN) {
        GAME_LOGI("DoMessageBackSuccess set hasMsgBack to true");
        return;
    }
    request.reset();
    GAME_LOGI("DoMessageBackSuccess release context");
}

void ModalUICallback::DoMessageBackException(std::shared_ptr<BaseContext> request) {
    CloseModalUIExtension(*request);
    ThrowBusinessError(envInfo_, ERROR_SYSTEM_INTERNAL, "");
    {
        std::lock_guard<std::mutex> guard(mutex_);
        context_.reset();
    }
    request.reset();
    GAME_LOGI("DoMessageBackException release context");
}

}  // namespace TAVIK::GAME_PLAYER
