#include <nlohmann/json.hpp>
#include <ostream>
#include <streambuf>
#include <utility>
#include <vector>

#include "ability_context.h"
#include "base64.h"
#include "floors.h"
#include "resource_manager.h"

// A union login whose accounts all have an icon that is found by its number.

namespace Floors {
namespace {

using nlohmann::json;
using OHOS::AbilityRuntime::AbilityContext;

std::string ReadIcon(napi_env env, napi_value icon, AbilityContext& context) {
    const std::string moduleName = ReadText(env, Property(env, icon, "moduleName"));
    const auto resources = context.CreateModuleContext(moduleName)->GetResourceManager();
    const int32_t id = ReadInt(env, Property(env, icon, "id"));
    std::unique_ptr<uint8_t[]> bytes;
    size_t length = 0;
    (void)resources->GetMediaDataById(static_cast<uint32_t>(id), length, bytes, 0);
    SAY("GetEncodedAccountIcon", "GetEncodedAccountIcon id:%{public}d, len:%{public}zu, moduleName:%{public}s", id,
        length, moduleName.c_str());
    return EncodeBase64(bytes.get(), length);
}

json ReadAccount(napi_env env, napi_value element, AbilityContext& context) {
    json account;
    std::string name = ReadText(env, Property(env, element, "accountName"));
    const napi_value icon = Property(env, element, "accountIcon");
    SAY("JsObjectToAccountInfoList", "JsObjectToAccountInfoList has accountIcon property, accountName=%{public}s",
        name.c_str());
    account["accountName"] = std::move(name);
    account["encodedIcon"] = ReadIcon(env, icon, context);
    return account;
}

std::vector<json> ReadAccounts(napi_env env, napi_value login, AbilityContext& context) {
    const napi_value list = Property(env, login, "thirdAccountInfos");
    (void)Get<bool>(napi_is_array, env, list);
    const auto length = Get<uint32_t>(napi_get_array_length, env, list);
    const auto scope = Get<napi_handle_scope>(napi_open_handle_scope, env);
    std::vector<json> accounts;
    for (uint32_t i = 0; i < length; ++i) {
        accounts.push_back(ReadAccount(env, Get(napi_get_element, env, list, i), context));
    }
    Must(napi_close_handle_scope(env, scope));
    SAY("JsObjectToAccountInfoList", "JsObjectToAccountInfoList end, length=%{public}d", static_cast<int>(length));
    return accounts;
}

/// Appends to a string.
struct Sink final : std::streambuf {
    explicit Sink(std::string& output) : text(output) {}
    std::streamsize xsputn(const char* characters, std::streamsize count) override {
        text.append(characters, count);
        return count;
    }
    int_type overflow(int_type character) override {
        text.push_back(static_cast<char>(character));
        return character;
    }
    std::string& text;
};

/// Frees each account before it writes the next.
std::string WriteRecord(bool isDialogShown, int32_t panel, std::vector<json> accounts) {
    size_t length = 80;
    for (json& account : accounts) {
        length += account["encodedIcon"].get_ref<std::string&>().size() + 80;
    }
    std::string text;
    text.reserve(length);
    Sink sink(text);
    std::ostream out(&sink);
    json record;
    record["showLoginDialog"] = isDialogShown;
    record["loginPanelType"] = panel;
    record["thirdAccountInfos"] = json::array();
    out << record;
    text.resize(text.size() - 2);
    for (json& account : accounts) {
        if (text.back() != '[') text.push_back(',');
        out << std::exchange(account, {});
    }
    text += "]}";
    return text;
}

}  // namespace

std::string ReadLogin(napi_env env, napi_value login, AbilityContext& context) {
    const bool isDialogShown = Get<bool>(napi_get_value_bool, env, Property(env, login, "showLoginDialog"));
    (void)Get<bool>(napi_has_named_property, env, login, "loginPanelType");
    const int32_t panel = ReadInt(env, Property(env, login, "loginPanelType"));
    SAY("ParseUnionLoginReq", "ParseUnionLoginReq hasLoginPanelType");
    return WriteRecord(isDialogShown, panel, ReadAccounts(env, login, context));
}

}  // namespace Floors
