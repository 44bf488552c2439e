#include <cstring>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <utility>
#include <variant>
#include <vector>

#include "bare.h"
#include "bench/floors/base64.h"

namespace Bare {
namespace {

using nlohmann::json;

/// What remains of a call: its promise, and the string that would be sent.
struct Request {
    napi_deferred deferred;
    std::string text;
};

/// A minimal pending request: the caller's promise, the state of the request, and its parameters.
struct Pending {
    napi_deferred deferred = nullptr;
    std::array<char, 512> block{};
    std::map<std::string, std::variant<int32_t, std::string>> want;
};

std::vector<Request>& gRequests = *new std::vector<Request>();
std::vector<std::unique_ptr<Pending>>& gPending = *new std::vector<std::unique_ptr<Pending>>();
std::vector<uint8_t>& gIcon = *new std::vector<uint8_t>();

/// Stores a new request and returns its promise.
napi_value Keep(napi_env env, std::string text) {
    Request request{nullptr, std::move(text)};
    napi_value promise = nullptr;
    Must(napi_create_promise(env, &request.deferred, &promise));
    gRequests.push_back(std::move(request));
    return promise;
}

/// forget(): drops all requests so far. Their promises stay pending.
napi_value Forget(napi_env /*env*/, napi_callback_info /*info*/) {
    gRequests.clear();
    return nullptr;
}

/// refuse(): throws an Error with a number as its code.
napi_value Refuse(napi_env env, napi_callback_info /*info*/) {
    napi_value message = nullptr;
    napi_value error = nullptr;
    Must(napi_create_string_utf8(env, "Parameter error.", NAPI_AUTO_LENGTH, &message));
    Must(napi_create_error(env, nullptr, message, &error));
    SetInt(env, error, "code", 401);
    Must(napi_throw(env, error));
    return nullptr;
}

/// prePurchase(purchase)
napi_value PrePurchase(napi_env env, napi_callback_info info) {
    const napi_value purchase = Arguments(env, info)[0];
    json record;
    record["productId"] = ReadText(env, Property(env, purchase, "productId"));
    record["productType"] = ReadInt(env, Property(env, purchase, "productType"));
    record["developerPayload"] = ReadText(env, Property(env, purchase, "developerPayload"));
    record["reservedInfo"] = ReadText(env, Property(env, purchase, "reservedInfo"));
    return Keep(env, record.dump());
}

/// savePlayerRole(role)
napi_value SavePlayerRole(napi_env env, napi_callback_info info) {
    const napi_value role = Arguments(env, info)[0];
    json record;
    for (const char* name :
         {"roleId", "roleName", "serverId", "serverName", "gamePlayerId", "teamPlayerId", "thirdOpenId"}) {
        record[name] = ReadText(env, Property(env, role, name));
    }
    return Keep(env, record.dump());
}

/// setIcon(bytes): sets the only resource.
napi_value SetIcon(napi_env env, napi_callback_info info) {
    void* data = nullptr;
    size_t length = 0;
    Must(napi_get_typedarray_info(env, Arguments(env, info)[0], nullptr, &length, &data, nullptr, nullptr));
    gIcon.assign(static_cast<uint8_t*>(data), static_cast<uint8_t*>(data) + length);
    return nullptr;
}

std::string EncodeIcon() {
    std::unique_ptr<uint8_t[]> bytes(new uint8_t[gIcon.size()]);
    std::memcpy(bytes.get(), gIcon.data(), gIcon.size());
    return Floors::EncodeBase64(bytes.get(), gIcon.size());
}

/// unionLogin(login): uses the same icon for every account.
napi_value UnionLogin(napi_env env, napi_callback_info info) {
    const napi_value login = Arguments(env, info)[0];
    const napi_value infos = Property(env, login, "thirdAccountInfos");
    uint32_t count = 0;
    Must(napi_get_array_length(env, infos, &count));
    json accounts = json::array();
    for (uint32_t i = 0; i < count; ++i) {
        napi_value element = nullptr;
        Must(napi_get_element(env, infos, i, &element));
        json account;
        account["accountName"] = ReadText(env, Property(env, element, "accountName"));
        account["encodedIcon"] = EncodeIcon();
        accounts.push_back(std::move(account));
    }
    json record;
    record["loginPanelType"] = ReadInt(env, Property(env, login, "loginPanelType"));
    record["showLoginDialog"] = false;
    record["thirdAccountInfos"] = std::move(accounts);
    return Keep(env, record.dump());
}

/// wait(text): adds a request that stays pending, with the four parameters of its Want.
napi_value Wait(napi_env env, napi_callback_info info) {
    auto pending = std::make_unique<Pending>();
    pending->want["requestType"] = 4;
    pending->want["tavikExtra"] = ReadText(env, Arguments(env, info)[0]);
    pending->want["ability.want.params.uiExtensionType"] = "sys/commonUI";
    pending->want["traceId"] = "";
    napi_value promise = nullptr;
    Must(napi_create_promise(env, &pending->deferred, &promise));
    gPending.push_back(std::move(pending));
    return promise;
}

}  // namespace
}  // namespace Bare

NAPI_MODULE_INIT() {
    using namespace Bare;
    Define(env, exports, "refuse", Refuse);
    Define(env, exports, "prePurchase", PrePurchase);
    Define(env, exports, "savePlayerRole", SavePlayerRole);
    Define(env, exports, "setIcon", SetIcon);
    Define(env, exports, "unionLogin", UnionLogin);
    Define(env, exports, "wait", Wait);
    Define(env, exports, "forget", Forget);
    DefineDeliveries(env, exports);
    return exports;
}
