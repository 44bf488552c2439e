#include "common/velmor_util.h"

#include <mutex>

#include "common/velmor_log.h"
#include "ipc_skeleton.h"
#include "time_service_client.h"
#include "tokenid_kit.h"

namespace TAVIK::GAME_PLAYER {

namespace {

// The mutex guards `value`; nothing is called under it.
struct TraceId {
    std::mutex mutex;
    std::string value;
};

// Never destroyed: detached threads may ask while the process exits.
TraceId& gTraceId = *new TraceId();

}  // namespace

void SetTraceId(const std::string& traceId)
{
    {
        std::lock_guard<std::mutex> guard(gTraceId.mutex);
        gTraceId.value = traceId;
    }
    GAME_LOGI("SetTraceId traceId[%{public}s] success", traceId.c_str());
}

std::string GetTraceId()
{
    std::lock_guard<std::mutex> guard(gTraceId.mutex);
    return gTraceId.value;
}

int64_t GetCurrentTimestamp()
{
    return OHOS::MiscServices::TimeServiceClient::GetInstance()->GetBootTimeMs();
}

bool IsSystemAppCalling()
{
    const uint64_t token = OHOS::IPCSkeleton::GetCallingFullTokenID();
    if (!OHOS::Security::AccessToken::TokenIdKit::IsSystemAppByFullTokenID(token)) {
        GAME_LOGE("Permission denied, non-system app called system api.");
        return false;
    }
    return true;
}

}  // namespace TAVIK::GAME_PLAYER
