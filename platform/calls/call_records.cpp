#include "calls/call_records.h"

#include <algorithm>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "js_values.h"
#include "record_stream.h"
#include "served_call.h"

namespace StandIn {
namespace {

constexpr size_t MAX_TEXT = 4096;     // bytes of a result that are recorded
constexpr size_t MAX_ARGUMENT = 256;  // and of an argument
constexpr double NO_CODE = -1;
constexpr size_t MAX_PROMISES = 4096;  // that are kept: those of launches never settle

/// A call that made a promise or passed a function.
struct Made {
    uint64_t call = 0;
    const char* method = "";
    bool isRecorded = false;
    napi_ref site = nullptr;  // of a promise
    std::string about;        // what `on` listens for; else empty
};

/// What this JS thread keeps of the calls whose outcome is still to come.
struct Kept {
    std::unordered_map<napi_deferred, Made> promises;
    std::deque<std::pair<napi_deferred, uint64_t>> order;  // with their calls; some are settled
    std::unordered_map<napi_ref, Made> functions;
    std::string about;  // what the served call of `on` listens for
};

thread_local Kept gKept;

Made MadeByServed() {
    const ServedCall* served = Served();
    if (served == nullptr) return {};
    return {served->number, served->method, served->isRecorded, nullptr, {}};
}

std::string TextOf(napi_env env, napi_value value, size_t most) {
    std::string text(most, '\0');
    size_t length = 0;
    if (napi_get_value_string_utf8(env, value, text.data(), text.size(), &length) != napi_ok) return {};
    text.resize(length);
    return text;
}

/// A value as JS would write it; of objects only that they are objects.
std::string Show(napi_env env, napi_value value) {
    napi_valuetype type = napi_undefined;
    (void)napi_typeof(env, value, &type);
    if (type == napi_string) return '"' + TextOf(env, value, MAX_ARGUMENT) + '"';
    if (type == napi_object) return "object";
    if (type == napi_function) return "function";
    napi_value text = nullptr;
    if (type == napi_symbol || napi_coerce_to_string(env, value, &text) != napi_ok) return "symbol";
    return TextOf(env, text, MAX_ARGUMENT);
}

DeviceRecord About(const char* kind, const Made& made) {
    return {kind, {{"call", static_cast<double>(made.call)}, {"method", std::string(made.method)}}};
}

void AddText(napi_env env, const char* name, napi_value value, DeviceRecord& record) {
    if (IsOfType(env, value, napi_string)) record.fields.emplace_back(name, TextOf(env, value, MAX_TEXT));
}

/// The code of an error of the module; `NO_CODE` if it has none.
double CodeOf(napi_env env, napi_value error) {
    double code = NO_CODE;
    return napi_get_value_double(env, ReadProperty(env, error, "code"), &code) == napi_ok ? code : NO_CODE;
}

/// A call came to `error`, or to `data` if that is not an object.
void RecordOutcome(napi_env env, const Made& made, const char* how, napi_value error, napi_value data) {
    const bool isFailed = IsOfType(env, error, napi_object);
    const double code = isFailed ? CodeOf(env, error) : 0;
    DeviceRecord settled = About("settled", made);
    settled.fields.emplace_back("how", std::string(how));
    if (code != NO_CODE) settled.fields.emplace_back("code", code);
    if (isFailed) AddText(env, "message", ReadProperty(env, error, "message"), settled);
    AddText(env, "data", data, settled);
    RecordStream::Publish(std::move(settled));
}

void RecordHeard(napi_env env, const Made& made, napi_value data) {
    DeviceRecord record = About("heard", made);
    record.fields.emplace_back("type", made.about);
    AddText(env, "data", IsOfType(env, data, napi_object) ? ReadProperty(env, data, "resultInfo") : data, record);
    RecordStream::Publish(std::move(record));
}

Made TakePromise(napi_deferred deferred) {
    auto found = gKept.promises.extract(deferred);
    return found.empty() ? Made() : found.mapped();
}

void DropSite(napi_env env, const Made& made) {
    if (made.site != nullptr) (void)napi_delete_reference(env, made.site);
}

/// Drops the oldest promises. The handle of a settled one may be that of a newer one.
void LimitPromises(napi_env env) {
    for (; gKept.order.size() > MAX_PROMISES; gKept.order.pop_front()) {
        const auto [deferred, call] = gKept.order.front();
        auto found = gKept.promises.find(deferred);
        if (found != gKept.promises.end() && found->second.call == call) DropSite(env, TakePromise(deferred));
    }
}

/// Whose function a handle belongs to that the served code has read; null if nobody's.
const Made* FindFunction(napi_value function) {
    if (Served() == nullptr) return nullptr;
    const auto& read = Served()->functions;
    auto found =
        std::find_if(read.rbegin(), read.rend(), [function](const auto& each) { return each.first == function; });
    if (found == read.rend()) return nullptr;
    auto made = gKept.functions.find(found->second);
    return made == gKept.functions.end() ? nullptr : &made->second;
}

/// The caller of this method chooses the type of its request.
void ReadRequestType(napi_env env, ServedCall& call, size_t count, const napi_value* arguments) {
    if (std::string_view(call.method) != "launchAntiAddiction" || count < 4) return;
    int32_t type = 0;
    (void)napi_get_value_int32(env, arguments[3], &type);
    call.requestType = type;
}

}  // namespace

void RecordCall(napi_env env, size_t count, const napi_value* arguments) {
    ServedCall& served = *Served();
    std::copy_n(arguments, std::min(count, served.arguments.size()), served.arguments.begin());
    ReadRequestType(env, served, count, arguments);
    gKept.about.clear();
    if (!RecordStream::HasSubscribers()) return;
    served.isRecorded = true;
    std::vector<std::string> shown;
    for (size_t i = 0; i < count; ++i) {
        shown.push_back(Show(env, arguments[i]));
    }
    if (std::string_view(served.method) == "on" && count > 0) gKept.about = TextOf(env, arguments[0], MAX_ARGUMENT);
    DeviceRecord call = About("call", MadeByServed());
    call.fields.emplace_back("arguments", std::move(shown));
    RecordStream::Publish(std::move(call));
}

// A getter of the game may have thrown: then the method ends with that exception.
void RecordEndOfCall(napi_env env) {
    bool isThrowing = false;
    if (Served()->isRecorded && napi_is_exception_pending(env, &isThrowing) == napi_ok && isThrowing) {
        RecordThrown(env, nullptr);
    }
}

void KeepPromise(napi_env env, napi_deferred deferred) {
    Made made = MadeByServed();
    made.site = MakeCallSite(env);
    if (made.site == nullptr && !made.isRecorded) return;
    gKept.order.emplace_back(deferred, made.call);
    gKept.promises[deferred] = std::move(made);
    LimitPromises(env);
}

void KeepFunction(napi_ref reference) {
    Made made = MadeByServed();
    made.about = gKept.about;
    if (made.isRecorded) gKept.functions[reference] = std::move(made);
}

void DropFunction(napi_ref reference) { (void)gKept.functions.erase(reference); }

void KeepHandle(napi_ref reference, napi_value function) {
    if (Served() == nullptr || gKept.functions.count(reference) == 0) return;
    Served()->functions.emplace_back(function, reference);
}

void AddCallSite(napi_env env, napi_deferred deferred, napi_value error) {
    auto found = gKept.promises.find(deferred);
    if (found == gKept.promises.end() || found->second.site == nullptr) return;
    AddStack(env, found->second.site, found->second.method, error);
}

void RecordSettled(napi_env env, napi_deferred deferred, napi_value error, napi_value data) {
    const Made made = TakePromise(deferred);
    DropSite(env, made);
    if (!made.isRecorded) return;
    RecordOutcome(env, made, error != nullptr ? "rejected" : "resolved", error, data);
}

void RecordThrown(napi_env env, napi_value error) {
    ServedCall* served = Served();
    if (served == nullptr || !served->isRecorded || std::exchange(served->hasThrown, true)) return;
    if (error == nullptr) error = ObjectMaker(env).Object();
    RecordOutcome(env, MadeByServed(), "thrown", error, nullptr);
}

void RecordCalledBack(napi_env env, napi_value function, size_t count, const napi_value* arguments) {
    const Made* made = count > 0 && arguments != nullptr ? FindFunction(function) : nullptr;
    if (made == nullptr) return;
    if (!made->about.empty()) {
        RecordHeard(env, *made, arguments[0]);
    } else {
        RecordOutcome(env, *made, "called back", arguments[0], count > 1 ? arguments[1] : nullptr);
    }
}

}  // namespace StandIn
