#include <openssl/bio.h>
#include <openssl/buffer.h>
#include <openssl/evp.h>

#include <nlohmann/json.hpp>
#include <ostream>
#include <streambuf>
#include <utility>
#include <vector>

#include "pending.h"
#include "resource_manager.h"

// A union login whose accounts all have an icon that is found by its number.

namespace Straight {
namespace {

using nlohmann::json;

struct Account {
    std::string name;
    std::string icon;
};

/// Appends what is written to a string that has its final size already.
class Sink final : public std::streambuf {
public:
    explicit Sink(std::string& text) : text_(text) {}

protected:
    int_type overflow(int_type character) override {
        text_.push_back(static_cast<char>(character));
        return character;
    }
    std::streamsize xsputn(const char* characters, std::streamsize count) override {
        text_.append(characters, count);
        return count;
    }

private:
    std::string& text_;
};

std::string Encode(const uint8_t* data, size_t length) {
    BIO* memory = BIO_new(BIO_s_mem());
    BUF_MEM* buffer = BUF_MEM_new();
    (void)BUF_MEM_grow(buffer, length);
    buffer->length = 0;
    (void)BIO_set_mem_buf(memory, buffer, BIO_CLOSE);
    BIO* chain = BIO_push(BIO_new(BIO_f_base64()), memory);
    BIO_set_flags(chain, BIO_FLAGS_BASE64_NO_NL);
    (void)BIO_write(chain, data, static_cast<int>(length));
    (void)BIO_flush(chain);
    (void)BIO_get_mem_ptr(chain, &buffer);
    std::string text(buffer->data, buffer->length);
    BIO_free_all(chain);
    return text;
}

std::string ReadIcon(napi_env env, napi_value icon, Pending& pending) {
    const std::string moduleName = ReadString(env, Property(env, icon, "moduleName"));
    const auto resources = pending.context->CreateModuleContext(moduleName)->GetResourceManager();
    const int32_t id = ReadInt(env, Property(env, icon, "id"));
    std::unique_ptr<uint8_t[]> bytes;
    size_t length = 0;
    (void)resources->GetMediaDataById(static_cast<uint32_t>(id), length, bytes, 0);
    SAY("GetEncodedAccountIcon id:%{public}d, len:%{public}zu, moduleName:%{public}s", id, length,
        moduleName.c_str());
    return Encode(bytes.get(), length);
}

Account ReadAccount(napi_env env, napi_value element, Pending& pending) {
    Account account{ReadString(env, Property(env, element, "accountName")), {}};
    const napi_value icon = Property(env, element, "accountIcon");
    SAY("JsObjectToAccountInfoList has accountIcon property, accountName=%{public}s", account.name.c_str());
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
    SAY("JsObjectToAccountInfoList end, length=%{public}d", static_cast<int>(length));
    Must(napi_close_handle_scope(env, scope));
    return accounts;
}

std::string WriteRecord(bool isDialogShown, int32_t panel, std::vector<Account> accounts) {
    size_t length = 80;
    json list = json::array();
    for (Account& account : accounts) {
        length += account.icon.size() + account.name.size() + 40;
        json entry;
        entry["accountName"] = std::move(account.name);
        entry["encodedIcon"] = std::move(account.icon);
        list.push_back(std::move(entry));
    }
    json record;
    record["showLoginDialog"] = isDialogShown;
    record["loginPanelType"] = panel;
    record["thirdAccountInfos"] = std::move(list);
    std::string text;
    text.reserve(length);
    Sink sink(text);
    std::ostream(&sink) << record;
    return text;
}

}  // namespace

napi_value UnionLogin(napi_env env, napi_callback_info info) {
    SAY("begin %{public}s", "UnionLogin");
    Pending& pending = BeginUnanswered();
    const auto call = ReadCall<2>(env, info);
    SAY("%{public}s params size:%{public}lu", "UnionLogin", static_cast<unsigned long>(call.count));
    const napi_value promise = Promise(env, call.values[0], pending);
    const napi_value login = call.values[1];
    CheckType(env, login, napi_object);
    bool isDialogShown = false;
    Must(napi_get_value_bool(env, Property(env, login, "showLoginDialog"), &isDialogShown));
    bool hasPanel = false;
    Must(napi_has_named_property(env, login, "loginPanelType", &hasPanel));
    const int32_t panel = ReadInt(env, Property(env, login, "loginPanelType"));
    SAY("ParseUnionLoginReq hasLoginPanelType");
    std::vector<Account> accounts = ReadAccounts(env, login, pending);
    CheckNoException(env);
    SAY("begin Execute%{public}s", "UnionLogin");
    OHOS::AAFwk::Want want = MakeWant(10);
    want.SetParam("unionLoginParam", WriteRecord(isDialogShown, panel, std::move(accounts)));
    Open(pending, std::move(want));
    SAY("end Execute%{public}s", "UnionLogin");
    SAY("end %{public}s", "UnionLogin");
    return promise;
}

}  // namespace Straight
