#include "functions.h"
#include "instance.h"
#include "internals.h"
#include "making.h"
#include "reading.h"

namespace StandIn {
namespace {

napi_value MakeFlags(napi_env env, std::initializer_list<bool> flags) {
    return MakeArray(env, flags, [env](bool flag) { return MakeFlag(env, flag); });
}

napi_value MakeWant(napi_env env, const Modal::Want& want) {
    return ObjectMaker(env)
        .Text("bundleName", Internals::BundleNameOf(want))
        .Text("abilityName", Internals::AbilityNameOf(want))
        .Text("deviceId", Internals::DeviceIdOf(want))
        .Set("parameters", MakeParamsObject(env, want.GetParams()))
        .Object();
}

napi_value MakeConfig(napi_env env, const Modal::Config& config) {
    return ObjectMaker(env)
        .Set("leading", MakeFlags(env, {config.isProhibitBack, config.isAsyncModalBinding, config.isAllowedBeCovered}))
        .Set("trailing", MakeFlags(env, {config.prohibitedRemoveByRouter, config.isAllowAddChildBelowModalUec,
                                         config.isDensityFollowHost, config.prohibitedRemoveByNavigation}))
        .Object();
}

/// The modal whose ID is the first argument; empty if there is none.
std::shared_ptr<Modal> FindModal(napi_env env, napi_callback_info info) {
    return Modals::Get().Find(ReadInt32(env, Arguments<1>(env, info)[0]));
}

napi_value ModalIds(napi_env env, napi_callback_info /*info*/) {
    return MakeArray(env, Modals::Get().Ids(), [env](int32_t id) { return MakeNumber(env, id); });
}

// Undefined for a modal that was forgotten in the meantime.
napi_value ModalSnapshot(napi_env env, napi_callback_info info) {
    const auto modal = FindModal(env, info);
    return modal == nullptr ? nullptr : MakeModalSnapshot(env, *modal);
}

napi_value IsModalOpen(napi_env env, napi_callback_info info) {
    const auto modal = FindModal(env, info);
    return MakeFlag(env, modal != nullptr && modal->IsOpen());
}

napi_value IsModalAnswered(napi_env env, napi_callback_info info) {
    const auto modal = FindModal(env, info);
    return MakeFlag(env, modal != nullptr && modal->IsAnswered());
}

// Reports the modals that have had no answer for this many milliseconds.
napi_value ReportSilentModals(napi_env env, napi_callback_info info) {
    Modals::Get().ReportSilent(std::chrono::milliseconds(ReadInt32(env, Arguments<1>(env, info)[0])));
    return nullptr;
}

// Takes a request type. Undefined if there is none.
napi_value TakeModal(napi_env env, napi_callback_info info) {
    const auto modal = Modals::Get().Take(ReadInt32(env, Arguments<1>(env, info)[0]));
    return modal == nullptr ? nullptr : MakeModalSnapshot(env, *modal);
}

// Takes what the device's JS knows of the methods: an array of { type, method, isPage }.
napi_value NameRequests(napi_env env, napi_callback_info info) {
    std::vector<RequestMethod> requests;
    ForEachElement(env, Arguments<1>(env, info)[0], [&requests, env](napi_value request) {
        requests.push_back({ReadInt32(env, ReadProperty(env, request, "type")),
                            ReadText(env, ReadProperty(env, request, "method")),
                            ReadFlag(env, ReadProperty(env, request, "isPage"))});
    });
    SetRequestMethods(std::move(requests));
    return nullptr;
}

}  // namespace

napi_value MakeModalSnapshot(napi_env env, const Modal& modal) {
    return ObjectMaker(env)
        .Number("id", modal.Id())
        .Number("generation", modal.Generation())
        .Set("want", MakeWant(env, modal.GetWant()))
        .Set("config", MakeConfig(env, modal.GetConfig()))
        .Object();
}

bool DefineModalFunctions(napi_env env, napi_value exports) {
    return DefineFunctions(env, exports,
                           {{"modalIds", ModalIds},
                            {"modalSnapshot", ModalSnapshot},
                            {"isModalOpen", IsModalOpen},
                            {"isModalAnswered", IsModalAnswered},
                            {"reportSilentModals", ReportSilentModals},
                            {"takeModal", TakeModal},
                            {"nameRequests", NameRequests},
                            {"onModal", On<&Instance::OnModal>},
                            {"onOpening", On<&Instance::OnOpening>}});
}

}  // namespace StandIn
