// What the module uses of the platform, by its published type: headers that drift from it stop the build.

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "ability_context.h"
#include "app_event.h"
#include "app_event_processor_mgr.h"
#include "base_type.h"
#include "context.h"
#include "hilog/log.h"
#include "internals.h"
#include "ipc_skeleton.h"
#include "modal_ui_extension_config.h"
#include "napi/native_api.h"
#include "napi_base_context.h"
#include "napi_common_want.h"
#include "refbase.h"
#include "resource_manager.h"
#include "singleton.h"
#include "time_service_client.h"
#include "tokenid_kit.h"
#include "ui_content.h"
#include "ui_extension_context.h"
#include "want.h"
#include "want_params.h"

namespace {

using namespace OHOS;
using namespace OHOS::HiviewDFX::HiAppEvent;
using namespace OHOS::AbilityRuntime;
using namespace OHOS::Global::Resource;
using AAFwk::Want;
using AAFwk::WantParams;
using Ace::ModalUIExtensionCallbacks;
using Ace::ModalUIExtensionConfig;
using Ace::UIContent;
using MiscServices::TimeServiceClient;
using std::function;
using std::string;
using std::vector;
using Data = std::unique_ptr<uint8_t[]>;

// Whether there is an overload of exactly this type.
template <typename Type>
constexpr bool Has(Type /*function*/) {
    return true;
}

// A member of a class has this type.
#define MEMBER(owner, name, ...) static_assert(std::is_same_v<decltype(owner::name), __VA_ARGS__>)

static_assert(LOG_CORE == 3 && LOG_DEBUG == 3 && LOG_INFO == 4 && LOG_WARN == 5 && LOG_ERROR == 6);
static_assert(LOG_DOMAIN == 0 && LOG_TAG == nullptr);
static_assert(Has<int (*)(LogType, LogLevel, unsigned, const char*, const char*, ...)>(HiLogPrint));

static_assert(FAULT == 1 && STATISTIC == 2 && SECURITY == 3 && BEHAVIOR == 4);
static_assert(std::is_convertible_v<EventType, int>, "it is not a scoped one");
static_assert(std::is_constructible_v<Event, const string&, const string&, EventType>);
static_assert(Has<void (Event::*)(const string&, int32_t)>(&Event::AddParam));
static_assert(Has<void (Event::*)(const string&, int64_t)>(&Event::AddParam));
static_assert(Has<void (Event::*)(const string&, const string&)>(&Event::AddParam));
static_assert(Has<int (*)(const Event&)>(Write));
static_assert(Has<int64_t (*)(const ReportConfig&)>(AppEventProcessorMgr::AddProcessor));
MEMBER(ReportConfig, name, string);
MEMBER(ReportConfig, routeInfo, string);
MEMBER(ReportConfig, appId, string);
MEMBER(ReportConfig, triggerCond, TriggerCondition);
MEMBER(ReportConfig, eventConfigs, vector<EventConfig>);
MEMBER(TriggerCondition, row, int);
MEMBER(TriggerCondition, timeout, int);
MEMBER(EventConfig, domain, string);
MEMBER(EventConfig, name, string);
MEMBER(EventConfig, isRealTime, bool);

static_assert(Has<Want& (Want::*)(const string&, const string&)>(&Want::SetElementName));
static_assert(Has<Want& (Want::*)(const string&, bool)>(&Want::SetParam));
static_assert(Has<Want& (Want::*)(const string&, int)>(&Want::SetParam));
static_assert(Has<Want& (Want::*)(const string&, double)>(&Want::SetParam));
static_assert(Has<Want& (Want::*)(const string&, const string&)>(&Want::SetParam));
static_assert(Has<Want& (Want::*)(const string&, const vector<string>&)>(&Want::SetParam));
static_assert(Has<Want& (Want::*)(const string&, const WantParams&)>(&Want::SetParam));
static_assert(Has<const WantParams& (Want::*)() const>(&Want::GetParams));
static_assert(Has<Want& (Want::*)(const WantParams&)>(&Want::SetParams));
static_assert(Has<int (WantParams::*)(const string&, int) const>(&WantParams::GetIntParam));
static_assert(Has<string (WantParams::*)(const string&) const>(&WantParams::GetStringParam));
static_assert(Has<napi_value (*)(napi_env, const WantParams&)>(AppExecFwk::WrapWantParams));

MEMBER(ModalUIExtensionCallbacks, onRelease, function<void(int32_t)>);
MEMBER(ModalUIExtensionCallbacks, onResult, function<void(int32_t, const Want&)>);
MEMBER(ModalUIExtensionCallbacks, onReceive, function<void(const WantParams&)>);
MEMBER(ModalUIExtensionCallbacks, onError, function<void(int32_t, const string&, const string&)>);
MEMBER(ModalUIExtensionCallbacks, onRemoteReady, function<void(const std::shared_ptr<Ace::ModalUIExtensionProxy>&)>);
MEMBER(ModalUIExtensionCallbacks, onDestroy, function<void()>);
static_assert(Has<int32_t (UIContent::*)(const Want&, const ModalUIExtensionCallbacks&, const ModalUIExtensionConfig&)>(
    &UIContent::CreateModalUIExtension));
static_assert(Has<void (UIContent::*)(int32_t)>(&UIContent::CloseModalUIExtension));

static_assert(SUCCESS == 0 && NOT_FOUND == 7 && ERROR_CODE_RES_NOT_FOUND_BY_ID == 9001002);
static_assert(Has<RState (ResourceManager::*)(uint32_t, size_t&, Data&, uint32_t)>(&ResourceManager::GetMediaDataById));
static_assert(
    Has<RState (ResourceManager::*)(const char*, size_t&, Data&, uint32_t)>(&ResourceManager::GetMediaDataByName));
static_assert(Has<RState (ResourceManager::*)(const string&, size_t&, Data&)>(&ResourceManager::GetRawFileFromHap));

using ContextPointer = std::shared_ptr<Context>;
static_assert(Has<ContextPointer (Context::*)(const string&)>(&Context::CreateModuleContext));
static_assert(Has<ContextPointer (Context::*)(const string&, const string&)>(&Context::CreateModuleContext));
static_assert(Has<std::shared_ptr<ResourceManager> (Context::*)() const>(&Context::GetResourceManager));
static_assert(Has<std::shared_ptr<AbilityContext> (*)(const ContextPointer&)>(&Context::ConvertTo<AbilityContext>));
static_assert(Has<UIContent* (AbilityContext::*)()>(&AbilityContext::GetUIContent));
static_assert(Has<UIContent* (UIExtensionContext::*)()>(&UIExtensionContext::GetUIContent));
static_assert(Has<napi_status (*)(napi_env, napi_value, bool&)>(IsStageContext));
static_assert(Has<ContextPointer (*)(napi_env, napi_value)>(GetStageModeContext));

static_assert(Has<sptr<TimeServiceClient> (*)()>(TimeServiceClient::GetInstance));
static_assert(Has<int64_t (TimeServiceClient::*)()>(&TimeServiceClient::GetBootTimeMs));
static_assert(Has<uint64_t (*)()>(IPCSkeleton::GetCallingFullTokenID));
static_assert(Has<bool (*)(uint64_t)>(Security::AccessToken::TokenIdKit::IsSystemAppByFullTokenID));
static_assert(Has<std::shared_ptr<int> (*)()>(DelayedSingleton<int>::GetInstance));

}  // namespace

TEST(Platform, SendsALiteralAsABoolean) {
    Want want;
    want.SetParam("key", "text");
    EXPECT_TRUE(std::holds_alternative<bool>(*StandIn::Internals::FindParam(want.GetParams(), "key")));
    Event event("domain", "name", BEHAVIOR);
    event.AddParam("key", "text");
    EXPECT_TRUE(std::holds_alternative<bool>(StandIn::Internals::ParamsOf(event)[0].second));
}

TEST(Platform, KeepsItsModalsWhileAPageNavigates) {
    const ModalUIExtensionConfig config;
    EXPECT_TRUE(config.prohibitedRemoveByNavigation);
    EXPECT_FALSE(config.isProhibitBack || config.isAsyncModalBinding || config.isAllowedBeCovered);
    EXPECT_FALSE(config.prohibitedRemoveByRouter || config.isAllowAddChildBelowModalUec);
}
