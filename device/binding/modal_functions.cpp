#include "functions.h"
#include "instance.h"
#include "internals.h"

namespace StandIn {
namespace {

napi_value MakeFlags(napi_env env, std::initializer_list<bool> flags) {
    return MakeArray(env, flags, [env](bool flag) { return Make(env, flag); });
}

napi_value MakeWant(napi_env env, const Modal::Want& want) {
    return ObjectMaker(env)
        .Set("bundleName", Internals::BundleNameOf(want))
        .Set("abilityName", Internals::AbilityNameOf(want))
        .Set("deviceId", Internals::DeviceIdOf(want))
        .Set("parameters", want.GetParams())
        .Object();
}

napi_value MakeConfig(napi_env env, const Modal::Config& config) {
    return ObjectMaker(env)
        .Set("leading", MakeFlags(env, {config.isProhibitBack, config.isAsyncModalBinding, config.isAllowedBeCovered}))
        .Set("trailing", MakeFlags(env, {config.prohibitedRemoveByRouter, config.isAllowAddChildBelowModalUec,
                                         config.isDensityFollowHost, config.prohibitedRemoveByNavigation}))
        .Object();
}

bool IsModalOpen(int32_t id) {
    const auto modal = Modals::Get().Find(id);
    return modal != nullptr && modal->IsOpen();
}

bool IsModalAnswered(int32_t id) {
    const auto modal = Modals::Get().Find(id);
    return modal != nullptr && modal->IsAnswered();
}

void ReportSilentModals(double age) {
    Modals::Get().ReportSilent(std::chrono::milliseconds(static_cast<int64_t>(age)));
}

// Takes what the device's JS knows of the methods: an array of { type, method, isPage }.
void NameRequests(napi_env env, napi_value methods) {
    std::vector<RequestMethod> requests;
    ForEachElement(env, methods, [&requests, env](napi_value request) {
        requests.push_back({Read<int32_t>(env, ReadProperty(env, request, "type")),
                            Read<std::string>(env, ReadProperty(env, request, "method")),
                            Read<bool>(env, ReadProperty(env, request, "isPage"))});
    });
    SetRequestMethods(std::move(requests));
}

}  // namespace

napi_value Make(napi_env env, const std::shared_ptr<Modal>& modal) {
    if (modal == nullptr) return nullptr;
    return ObjectMaker(env)
        .Set("id", modal->Id())
        .Set("generation", modal->Generation())
        .Set("want", MakeWant(env, modal->GetWant()))
        .Set("config", MakeConfig(env, modal->GetConfig()))
        .Object();
}

bool DefineModalFunctions(napi_env env, napi_value exports) {
    return DefineFunctions(env, exports,
                           {{"modalIds", Exposed<&Modals::Ids>},
                            {"modalSnapshot", Exposed<&Modals::Find>},
                            {"isModalOpen", Exposed<IsModalOpen>},
                            {"isModalAnswered", Exposed<IsModalAnswered>},
                            {"reportSilentModals", Exposed<ReportSilentModals>},
                            {"takeModal", Exposed<&Modals::Take>},
                            {"nameRequests", Exposed<NameRequests>},
                            {"onModal", On<&Instance::OnModal>},
                            {"onOpening", On<&Instance::OnOpening>}});
}

}  // namespace StandIn
