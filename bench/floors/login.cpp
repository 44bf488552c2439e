#include <nlohmann/json.hpp>
#include <ostream>
#include <streambuf>
#include <utility>
#include <vector>

#include "base64.h"
#include "pending.h"
#include "resource_manager.h"

// A union login whose accounts all have an icon that is found by its number.

namespace Floors {
namespace {

using nlohmann::json;

struct Account {
    std::string name;
    std::string icon;
};

std::string ReadIcon(napi_env env, napi_value icon, Pending& pending) {
    const std::string moduleName = ReadText(env, Property(env, icon, "moduleName"));
    const auto resources = pending.context->CreateModuleContext(moduleName)->GetResourceManager();
    const int32_t id = ReadInt(env, Property(env, icon, "id"));
    std::unique_ptr<uint8_t[]> bytes;
    size_t length = 0;
    (void)resources->GetMediaDataById(static_cast<uint32_t>(id), length, bytes, 0);
    SAY("GetEncodedAccountIcon",
        "GetEncodedAccountIcon id:%{public}d, len:%{public}zu, moduleName:%{public}s", id, length,
        moduleName.c_str());
    return EncodeBase64(bytes.get(), length);
}

Account ReadAccount(napi_env env, napi_value element, Pending& pending) {
    Account account{ReadText(env, Property(env, element, "accountName")), {}};
    const napi_value icon = Property(env, element, "accountIcon");
    SAY("JsObjectToAccountInfoList",
        "JsObjectToAccountInfoList has accountIcon property, accountName=%{public}s", account.name.c_str());
    account.icon = ReadIcon(env, icon, pending);
    return account;
}

std::vector<Account> ReadAccounts(napi_env env, napi_value login, Pending& pending) {
    const napi_value list = Property(env, login, "thirdAccountInfos");
    bool isArray = false;
    uint32_t length = 0;
    Must(napi_is_array(env, list, &isArray));
    Must(napi_get_array_length(env, list, &length));
    napi_handle_scope scope = nullptr;
    Must(napi_open_handle_scope(env, &scope));
    std::vector<Account> accounts;
    for (uint32_t i = 0; i < length; ++i) {
        napi_value element = nullptr;
        Must(napi_get_element(env, list, i, &element));
        accounts.push_back(ReadAccount(env, element, pending));
    }
    Must(napi_close_handle_scope(env, scope));
    SAY("JsObjectToAccountInfoList", "JsObjectToAccountInfoList end, length=%{public}d",
        static_cast<int>(length));
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

std::string WriteRecord(bool isDialogShown, int32_t panel, std::vector<Account> accounts) {
    size_t length = 80;
    for (const Account& account : accounts) {
        length += account.icon.size() + account.name.size() + 40;
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
    for (Account& account : accounts) {
        if (text.back() != '[') text.push_back(',');
        json entry;
        entry["accountName"] = std::move(account.name);
        entry["encodedIcon"] = std::move(account.icon);
        out << entry;
    }
    text += "]}";
    return text;
}

std::string ReadLogin(napi_env env, napi_value login, Pending& pending) {
    bool isDialogShown = false;
    Must(napi_get_value_bool(env, Property(env, login, "showLoginDialog"), &isDialogShown));
    bool hasPanel = false;
    Must(napi_has_named_property(env, login, "loginPanelType", &hasPanel));
    const int32_t panel = ReadInt(env, Property(env, login, "loginPanelType"));
    SAY("ParseUnionLoginReq", "ParseUnionLoginReq hasLoginPanelType");
    return WriteRecord(isDialogShown, panel, ReadAccounts(env, login, pending));
}

}  // namespace

napi_value UnionLogin(napi_env env, napi_callback_info info) {
    return Request<2, ReadLogin>(env, info, "UnionLogin", "ExecuteUnionLogin", 10, "unionLoginParam");
}

}  // namespace Floors
