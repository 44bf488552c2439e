#include "common/velmor_util.h"

#include <algorithm>
#include <mutex>
#include <shared_mutex>
#include <utility>
#include <vector>

#include "common/velmor_log.h"
#include "ipc_skeleton.h"
#include "time_service_client.h"
#include "tokenid_kit.h"

namespace TAVIK::GAME_PLAYER {

namespace {

// The lock's cache line travels between the threads that ask; the list's stays with each of them.
struct EnvRegistry {
    static constexpr size_t CACHE_LINE = 64;

    alignas(CACHE_LINE) std::shared_mutex mutex;
    alignas(CACHE_LINE) std::vector<std::shared_ptr<EnvInfo>> infos;
};

struct TraceId {
    std::mutex mutex;
    std::string value;
};

// Never destroyed: detached threads may ask while the process exits.
EnvRegistry& gEnvInfoList = *new EnvRegistry();
TraceId& gTraceId = *new TraceId();

auto FindEnvInfo(const EnvInfo* info)
{
    auto isSame = [info](const std::shared_ptr<EnvInfo>& entry) {
        return entry.get() == info;
    };
    return std::find_if(gEnvInfoList.infos.begin(), gEnvInfoList.infos.end(), isSame);
}

// The property's value; null if there is none or it could not be had.
napi_value GetProperty(napi_env env, napi_value object, const char* name)
{
    napi_value value = nullptr;
    if (HasProperty(env, object, name)) {
        (void)napi_get_named_property(env, object, name, &value);
    }
    return value;
}

napi_status SetCreated(napi_env env, napi_value object, const char* name, napi_status created,
                       napi_value value)
{
    if (created != napi_ok) {
        GAME_LOGE("create %{public}s failed", name);
        return created;
    }
    napi_status status = napi_set_named_property(env, object, name, value);
    if (status != napi_ok) {
        GAME_LOGE("set %{public}s failed", name);
    }
    return status;
}

}  // namespace

thread_local std::shared_ptr<EnvInfo> gEnvInfo;

void JsObjectToString(napi_env env, const napi_value& object, const char* name, int32_t maxLength,
                      std::string& output)
{
    if (!HasProperty(env, object, name)) {
        return;
    }
    napi_value value = nullptr;
    (void)napi_get_named_property(env, object, name, &value);
    char buffer[MAX_TEXT_LENGTH + 1];
    buffer[0] = '\0';  // all that is read of it if it is not written
    const auto size = static_cast<size_t>(std::min(maxLength, MAX_TEXT_LENGTH)) + 1;
    (void)napi_get_value_string_utf8(env, value, buffer, size, nullptr);
    output = buffer;
}

void JsObjectToInt(napi_env env, const napi_value& object, const char* name, int32_t& output)
{
    (void)napi_get_value_int32(env, GetProperty(env, object, name), &output);
}

void JsObjectToBool(napi_env env, const napi_value& object, const char* name, bool& output)
{
    (void)napi_get_value_bool(env, GetProperty(env, object, name), &output);
}

bool HasProperty(napi_env env, napi_value object, const char* name)
{
    bool hasProperty = false;
    return napi_has_named_property(env, object, name, &hasProperty) == napi_ok && hasProperty;
}

std::string GetStringUtf8(napi_env env, napi_value value)
{
    napi_valuetype type = napi_undefined;
    if (napi_typeof(env, value, &type) != napi_ok || type != napi_string) {
        GAME_LOGE("GetStringUtf8 value param type is not string");
        return {};
    }
    char buffer[MAX_TEXT_LENGTH + 1];
    if (napi_get_value_string_utf8(env, value, buffer, sizeof(buffer), nullptr) != napi_ok) {
        return {};
    }
    return buffer;
}

int32_t ToInt32(napi_env env, napi_value value)
{
    int32_t number = 0;
    (void)napi_get_value_int32(env, value, &number);
    return number;
}

napi_status SetIntProperty(napi_env env, napi_value object, const char* name, int32_t value)
{
    napi_value number = nullptr;
    napi_status created = napi_create_int32(env, value, &number);
    return SetCreated(env, object, name, created, number);
}

napi_status SetStringProperty(napi_env env, napi_value object, const char* name, const std::string& value)
{
    napi_value text = nullptr;
    napi_status created = napi_create_string_utf8(env, value.c_str(), NAPI_AUTO_LENGTH, &text);
    return SetCreated(env, object, name, created, text);
}

bool IsObject(napi_env env, napi_value value)
{
    napi_valuetype type = napi_undefined;
    return napi_typeof(env, value, &type) == napi_ok && type == napi_object;
}

bool IsExceptionPending(napi_env env)
{
    bool isPending = false;
    (void)napi_is_exception_pending(env, &isPending);
    return isPending;
}

bool ValidateTypeNotEmpty(napi_env env, napi_value value)
{
    napi_valuetype type = napi_undefined;
    (void)napi_typeof(env, value, &type);
    if (type == napi_undefined || type == napi_null) {
        GAME_LOGE("param invalid");
        return false;
    }
    return true;
}

void SaveEnvInfo(const std::shared_ptr<EnvInfo>& info)
{
    if (info == nullptr) {
        GAME_LOGE("SaveEnvInfo envInfo is nullptr");
        return;
    }
    {
        std::lock_guard<std::shared_mutex> guard(gEnvInfoList.mutex);
        auto& infos = gEnvInfoList.infos;
        auto isStale = [&info](const std::shared_ptr<EnvInfo>& entry) {
            return entry != info && entry->env == info->env;
        };
        infos.erase(std::remove_if(infos.begin(), infos.end(), isStale), infos.end());
        infos.push_back(info);
    }
    GAME_LOGI("SaveEnvInfo add env success");
}

void DeleteEnvInfo(const EnvInfo* info)
{
    if (info == nullptr) {
        GAME_LOGE("DeleteEnvInfo envInfo is nullptr");
        return;
    }
    {
        std::lock_guard<std::shared_mutex> guard(gEnvInfoList.mutex);
        auto found = FindEnvInfo(info);
        if (found == gEnvInfoList.infos.end()) {
            return;
        }
        gEnvInfoList.infos.erase(found);
    }
    GAME_LOGI("DeleteEnvInfo delete env success");
}

bool IsValidEnv(const EnvInfo* info)
{
    if (info == nullptr) {
        GAME_LOGE("IsValidEnv envInfo is nullptr");
        return false;
    }
    std::shared_lock<std::shared_mutex> guard(gEnvInfoList.mutex);
    return FindEnvInfo(info) != gEnvInfoList.infos.end();
}

LiveEnv::LiveEnv(const std::shared_ptr<EnvInfo>& info) : lock_(gEnvInfoList.mutex)
{
    if (FindEnvInfo(info.get()) == gEnvInfoList.infos.end()) {
        lock_.unlock();
    }
}

void SetTraceId(std::string traceId)
{
    std::lock_guard<std::mutex> guard(gTraceId.mutex);
    gTraceId.value = std::move(traceId);
    GAME_LOGI("SetTraceId traceId[%{public}s] success", gTraceId.value.c_str());
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
