#include <new>
#include <utility>

#include "analytics/ha_utils.h"
#include "common/handle_scope.h"
#include "common/velmor_error.h"
#include "common/velmor_log.h"
#include "modal/modal_ui_callback.h"
#include "napi_common_want.h"

namespace TAVIK::GAME_PLAYER {

namespace {

constexpr int32_t CODE_ICONS_TOO_LARGE = 100015;
constexpr const char* TEXT_ICONS_TOO_LARGE = "Total size of icon resource is too large";
constexpr const char* KEY_RESULT_MESSAGE = "resultMessage";

bool IsParseResultMessage(int32_t requestType)
{
    GAME_LOGI("IsParseResultMessage requestType=%{public}d", requestType);
    return requestType == REQUEST_GET_LOCAL_PLAYER || requestType == REQUEST_PRE_PURCHASE ||
           requestType == REQUEST_UNION_LOGIN || requestType == REQUEST_QUICK_GAME_LOGIN;
}

// A promise whose error could not be made is rejected with `undefined`, rather than never.
void SettlePromise(napi_env env, napi_deferred deferred, int32_t errorCode, const napi_value (&result)[2])
{
    if (errorCode == ERROR_SUCCESS) {
        (void)napi_resolve_deferred(env, deferred, result[1]);
        return;
    }
    (void)napi_reject_deferred(env, deferred, result[0] != nullptr ? result[0] : result[1]);
}

}  // namespace

void ModalUICallback::SendMessageBack(LockedContext context)
{
    const char* apiName = FindApiName(context->requestType);
    GAME_LOGI("SendMessageBack %{public}s", apiName);
    if (context->hasMsgBack) {
        GAME_LOGI("SendMessageBack hasMsgBack is true and close modal");
        CloseModalUIExtension();
        return;
    }
    if (context->isResetContext) {
        GAME_LOGI("SendMessageBack isResetContext is true and close modal");
        CloseModalUIExtension(&*context);
    }
    OHOS::Velmor::HaUtils::ReportEnd(apiName, context->startTime, context->errorCode);
    std::unique_ptr<WorkData> workData = TakeResult(context, owner_);
    context.Unlock();
    switch (QueueMessageBack(workData)) {
        case QueueStatus::QUEUED:
            return;
        case QueueStatus::NO_LOOP:
            GAME_LOGE("isValidEnv[%{public}d] or get loop failed", IsValidEnv(workData->context->envInfo));
            break;
        case QueueStatus::REFUSED:
            GAME_LOGE("SendMessageBack uv_queue_work call failed");
            break;
    }
    DoMessageBackException(*workData);
}

// Unless the status is QUEUED, `workData` stays the caller's. The context must not be locked, as its delivery
// may begin at once. The address of an environment that has ended may name another one by now, so it is kept
// from ending meanwhile.
QueueStatus ModalUICallback::QueueMessageBack(std::unique_ptr<WorkData>& workData)
{
    const std::shared_ptr<EnvInfo> envInfo = workData->context->envInfo;
    LiveEnv isLive(envInfo);
    if (!isLive) {
        return QueueStatus::NO_LOOP;
    }
    std::unique_ptr<uv_work_t> work(new (std::nothrow) uv_work_t{});
    if (work != nullptr) {
        work->data = workData.get();
    }
    const QueueStatus status = QueueOnLoop(envInfo->env, work.get(), SendMessageBackWork);
    if (status == QueueStatus::QUEUED) {
        (void)work.release();
        (void)workData.release();
    }
    return status;
}

// A result that ends the request takes the context along, so that an answer which comes before the delivery
// ran finds what one finds that comes after it.
std::unique_ptr<WorkData> ModalUICallback::TakeResult(const LockedContext& context,
                                                      const std::shared_ptr<ContextOwner>& owner)
{
    context->hasMsgBack = true;
    auto workData = std::make_unique<WorkData>();
    workData->owner = owner;
    workData->context = context.Share();
    workData->errorCode = context->errorCode;
    workData->errorMessage = std::move(context->errorMessage);
    workData->resultParams = std::move(context->resultParams);
    if (context->isResetContext) {
        owner->Release();
    }
    return workData;
}

void ModalUICallback::AssembleErrorMessage(BaseContext& context)
{
    if (IsFailureHidden(context.requestType)) {
        GAME_LOGI("AssembleErrorMessage transfer code %{public}d to 0", context.errorCode);
        context.errorCode = ERROR_SUCCESS;
        context.errorMessage = FindErrorMessage(ERROR_SUCCESS);
        return;
    }
    if (const char* text = FindErrorMessage(context.errorCode)) {
        context.errorMessage = text;
        return;
    }
    GAME_LOGE("AssembleErrorMessage resultCode not existed: %{public}d", context.errorCode);
    if (context.requestType == REQUEST_UNION_LOGIN && context.errorCode == CODE_ICONS_TOO_LARGE) {
        context.errorCode = ERROR_PARAMETER;
        context.errorMessage = TEXT_ICONS_TOO_LARGE;
        return;
    }
    context.errorCode = ERROR_SYSTEM_INTERNAL;
    context.errorMessage = FindErrorMessage(ERROR_SYSTEM_INTERNAL);
}

void ModalUICallback::SendMessageBackWork(uv_work_t* work, int /*status*/)
{
    std::unique_ptr<uv_work_t> ownedWork(work);
    std::unique_ptr<WorkData> workData(static_cast<WorkData*>(work->data));
    if (!IsValidEnv(workData->context->envInfo)) {
        GAME_LOGE("SendMessageBackWork context is null or invalid env");
        DoMessageBackException(*workData);
        return;
    }
    if (!SettleRequest(*workData)) {
        GAME_LOGE("SendMessageBackWork open handle scope failed");
        DoMessageBackException(*workData);
        return;
    }
    DoMessageBackSuccess(*workData);
}

// False if no handle scope is to be had.
bool ModalUICallback::SettleRequest(WorkData& workData)
{
    const BaseContext& context = *workData.context;
    napi_env env = context.envInfo->env;
    HandleScope scope(env);
    if (!scope) {
        return false;
    }
    napi_value result[] = {nullptr, nullptr};
    CreateResultMessage(workData, result);
    if (context.deferred != nullptr) {
        SettlePromise(env, context.deferred, workData.errorCode, result);
    } else if (context.callbackRef != nullptr) {
        napi_value receiver = nullptr;
        napi_value callback = nullptr;
        (void)napi_get_undefined(env, &receiver);
        (void)napi_get_reference_value(env, context.callbackRef, &callback);
        (void)napi_call_function(env, receiver, callback, std::size(result), result, nullptr);
    } else {
        GAME_LOGW("SendMessageBackWork callback and deferred nullptr");
    }
    if (!IsValidEnv(context.envInfo)) {
        scope.Abandon();
    }
    return true;
}

void ModalUICallback::CreateResultMessage(WorkData& workData, napi_value (&result)[2])
{
    const BaseContext& context = *workData.context;
    if (!IsValidEnv(context.envInfo)) {
        GAME_LOGE("CreateResultMessage invalid env");
        return;
    }
    napi_env env = context.envInfo->env;
    if (workData.errorCode != ERROR_SUCCESS) {
        result[0] = CreateBusinessError(env, workData.errorCode, workData.errorMessage);
        (void)napi_get_undefined(env, &result[1]);
        return;
    }
    if (IsParseResultMessage(context.requestType)) {
        napi_value params = OHOS::AppExecFwk::WrapWantParams(env, workData.resultParams);
        if (params == nullptr ||
            napi_get_named_property(env, params, KEY_RESULT_MESSAGE, &result[1]) != napi_ok) {
            GAME_LOGE("CreateResultMessage parse napiResult or resultMessage failed");
            workData.errorCode = ERROR_SYSTEM_INTERNAL;
            result[0] =
                CreateBusinessError(env, ERROR_SYSTEM_INTERNAL, FindErrorMessage(ERROR_SYSTEM_INTERNAL));
        }
    }
    if (result[1] == nullptr) {
        GAME_LOGI("CreateResultMessage set result[1] to undefined");
        (void)napi_get_undefined(env, &result[1]);
    }
}

void ModalUICallback::DoMessageBackSuccess(const WorkData& workData)
{
    LockedContext context = workData.owner->Lock();
    if (context && (!context->isResetContext || context->antiAddictionRunning)) {
        GAME_LOGI("DoMessageBackSuccess set hasMsgBack to true");
        return;
    }
    if (context) {
        workData.owner->Release();
    }
    GAME_LOGI("DoMessageBackSuccess release context");
}

void ModalUICallback::DoMessageBackException(const WorkData& workData)
{
    LockedContext context = workData.owner->Lock();
    CloseModalUIExtension(workData.context.get());
    const std::shared_ptr<EnvInfo>& envInfo = workData.context->envInfo;
    if (IsValidEnv(envInfo)) {
        ThrowBusinessError(envInfo->env, ERROR_SYSTEM_INTERNAL, "");
    }
    workData.owner->Release();
    GAME_LOGI("DoMessageBackException release context");
}

}  // namespace TAVIK::GAME_PLAYER
