#include "wrap/call_records.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "watching.h"
#include "wrap/wrap.h"

namespace StandIn {
namespace {

constexpr size_t MAX_TEXT = 4096;     // bytes of a result that are told
constexpr size_t MAX_ARGUMENT = 256;  // and of an argument
constexpr double NO_CODE = -1;

struct Made {
    uint64_t call = 0;
    const char* method = "";
    std::string about;  // what `on` listens for; else empty
};

/// What a thread remembers of the calls that were watched.
struct Notes {
    Made now;  // the method called last; its call is 0 if nobody watched
    std::unordered_map<napi_deferred, Made> promises;
    std::unordered_map<napi_ref, Made> functions;
    napi_ref used = nullptr;
};

thread_local Notes* gNotes = nullptr;  // null until somebody watches, and once the thread ends

/// Frees the notes when the thread ends.
struct NotesOwner {
    ~NotesOwner() { delete std::exchange(gNotes, nullptr); }
};

thread_local NotesOwner gOwner;

Notes* MakeNotes() {
    (void)&gOwner;  // its first use has it destroyed when the thread ends
    return new Notes();
}

bool IsOf(napi_env env, napi_value value, napi_valuetype type) {
    napi_valuetype actual = napi_undefined;
    return value != nullptr && napi_typeof(env, value, &actual) == napi_ok && actual == type;
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

/// A property of an object that the module itself has made.
napi_value Property(napi_env env, napi_value object, const char* name) {
    napi_value value = nullptr;
    (void)napi_get_named_property(env, object, name, &value);
    return value;
}

napi_value MakeObject(napi_env env) {
    napi_value object = nullptr;
    (void)napi_create_object(env, &object);
    return object;
}

Happening About(const char* kind, const Made& made) {
    return {kind, {{"call", static_cast<double>(made.call)}, {"method", std::string(made.method)}}};
}

void AddText(napi_env env, const char* name, napi_value value, Happening& happening) {
    if (IsOf(env, value, napi_string)) {
        happening.fields.emplace_back(name, TextOf(env, value, MAX_TEXT));
    }
}

/// The code of an error of the module; `NO_CODE` if it has none.
double CodeOf(napi_env env, napi_value error) {
    double code = NO_CODE;
    return napi_get_value_double(env, Property(env, error, "code"), &code) == napi_ok ? code : NO_CODE;
}

/// Tells that a call came to `error`, or to `data` if that is not an object.
void TellSettled(napi_env env, const Made& made, const char* how, napi_value error, napi_value data) {
    const bool isFailed = IsOf(env, error, napi_object);
    const double code = isFailed ? CodeOf(env, error) : 0;
    Happening settled = About("settled", made);
    settled.fields.emplace_back("how", std::string(how));
    if (code != NO_CODE) settled.fields.emplace_back("code", code);
    if (isFailed) AddText(env, "message", Property(env, error, "message"), settled);
    AddText(env, "data", data, settled);
    Watching::Tell(std::move(settled));
}

void TellHeard(napi_env env, const Made& made, napi_value data) {
    Happening heard = About("heard", made);
    heard.fields.emplace_back("type", made.about);
    AddText(env, "data", IsOf(env, data, napi_object) ? Property(env, data, "resultInfo") : data, heard);
    Watching::Tell(std::move(heard));
}

Made TakePromise(napi_deferred deferred) {
    if (gNotes == nullptr) return {};
    auto found = gNotes->promises.extract(deferred);
    return found.empty() ? Made() : found.mapped();
}

}  // namespace

void TellCall(napi_env env, const char* method, size_t count, const napi_value* arguments) {
    if (gNotes != nullptr) gNotes->now = Made();
    if (!Watching::IsOn()) return;
    if (gNotes == nullptr) gNotes = MakeNotes();
    Made& now = gNotes->now;
    now = {CurrentCall(), method, {}};
    std::vector<std::string> shown;
    for (size_t i = 0; i < count; ++i) {
        shown.push_back(Show(env, arguments[i]));
    }
    if (std::string_view(method) == "on" && count > 0) now.about = TextOf(env, arguments[0], MAX_ARGUMENT);
    Happening call = About("call", now);
    call.fields.emplace_back("arguments", std::move(shown));
    Watching::Tell(std::move(call));
}

void NotePromise(napi_deferred deferred) {
    if (gNotes != nullptr && gNotes->now.call != 0) gNotes->promises[deferred] = gNotes->now;
}

void NoteFunction(napi_ref reference) {
    if (gNotes != nullptr && gNotes->now.call != 0) gNotes->functions[reference] = gNotes->now;
}

void NoteUse(napi_ref reference) {
    if (gNotes != nullptr) gNotes->used = reference;
}

void DropFunction(napi_ref reference) {
    if (gNotes != nullptr) (void)gNotes->functions.erase(reference);
}

void TellResolved(napi_env env, napi_deferred deferred, napi_value value) {
    const Made made = TakePromise(deferred);
    if (made.call != 0) TellSettled(env, made, "resolved", nullptr, value);
}

void TellRejected(napi_env env, napi_deferred deferred, napi_value error) {
    const Made made = TakePromise(deferred);
    if (made.call != 0) TellSettled(env, made, "rejected", error, nullptr);
}

void TellThrown(napi_env env, napi_value error) {
    if (gNotes == nullptr || gNotes->now.call == 0) return;
    const Made made = std::exchange(gNotes->now, Made());
    if (error == nullptr) error = MakeObject(env);
    TellSettled(env, made, "thrown", error, nullptr);
}

void TellCalledBack(napi_env env, size_t count, const napi_value* arguments) {
    if (gNotes == nullptr || count == 0) return;
    const auto found = gNotes->functions.find(gNotes->used);
    if (found == gNotes->functions.end()) return;
    if (!found->second.about.empty()) {
        TellHeard(env, found->second, arguments[0]);
    } else {
        TellSettled(env, found->second, "called back", arguments[0], count > 1 ? arguments[1] : nullptr);
    }
}

}  // namespace StandIn
