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
        .Set("leading",
             MakeFlags(env, {config.isProhibitBack, config.isAsyncModalBinding, config.isAllowedBeCovered}))
        .Set("trailing", MakeFlags(env, {config.prohibitedRemoveByRouter, config.isAllowAddChildBelowModalUec,
                                         config.isDensityFollowHost, config.prohibitedRemoveByNavigation}))
        .Object();
}

/// The modal whose ID is the first argument; empty if there is none. If the argument is not an ID, also
/// leaves a JS exception pending.
std::shared_ptr<Modal> FindModal(napi_env env, napi_callback_info info) {
    int32_t id = 0;
    return ReadInt32(env, Arguments<1>(env, info)[0], "id", id) ? Modals::Get().Find(id) : nullptr;
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
    int32_t age = 0;
    if (ReadInt32(env, Arguments<1>(env, info)[0], "age", age)) {
        Modals::Get().ReportSilent(std::chrono::milliseconds(age));
    }
    return nullptr;
}

// Undefined if there is none.
napi_value TakeModal(napi_env env, napi_callback_info info) {
    int32_t requestType = 0;
    if (!ReadInt32(env, Arguments<1>(env, info)[0], "requestType", requestType)) return nullptr;
    const auto modal = Modals::Get().Take(requestType);
    return modal == nullptr ? nullptr : MakeModalSnapshot(env, *modal);
}

bool ReadRequest(napi_env env, napi_value value, const std::string& name, RequestMethod& request) {
    return ForEachProperty(env, value, name, [&](const std::string& key, napi_value field) {
        if (key == "type") return ReadInt32(env, field, key, request.type);
        return key == "isPage" ? ReadFlag(env, field, key, request.isPage)
                               : ReadText(env, field, key, request.name);
    });
}

// What the device's JS knows of the methods: an array of { type, method, isPage }.
napi_value NameRequests(napi_env env, napi_callback_info info) {
    std::vector<RequestMethod> requests;
    auto add = [&](const std::string& name, napi_value value) {
        return ReadRequest(env, value, name, requests.emplace_back());
    };
    if (ForEachElement(env, Arguments<1>(env, info)[0], "requests", add))
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
