#include "wrap/call_site.h"

#include <cstdlib>
#include <string>
#include <string_view>

namespace StandIn {
namespace {

bool IsOff() {
    const char* wanted = std::getenv("GAMEAPI_STACKS");  // NOLINT(concurrency-mt-unsafe): once, while loading
    return wanted != nullptr && std::string_view(wanted) == "off";
}

const bool IS_OFF = IsOff();

napi_value MakeError(napi_env env) {
    napi_value message = nullptr;
    napi_value error = nullptr;
    (void)napi_create_string_utf8(env, "", 0, &message);
    (void)napi_create_error(env, nullptr, message, &error);
    return error;
}

// Empty if the stack is not a string or reading it throws, as a game's Error.prepareStackTrace may.
std::string ReadStack(napi_env env, napi_value error) {
    napi_value stack = nullptr;
    size_t length = 0;
    if (napi_get_named_property(env, error, "stack", &stack) != napi_ok ||
        napi_get_value_string_utf8(env, stack, nullptr, 0, &length) != napi_ok) {
        (void)napi_get_and_clear_last_exception(env, &stack);
        return {};
    }
    std::string text(length + 1, '\0');
    (void)napi_get_value_string_utf8(env, stack, text.data(), text.size(), &length);
    text.resize(length);
    return text;
}

constexpr std::string_view FRAME = "\n    at ";

/// The location in the first of `frames`: the part in parentheses, or all of it.
std::string PlaceOf(const std::string& frames) {
    const size_t end = frames.find('\n', FRAME.size());
    std::string place = frames.substr(FRAME.size(), end - FRAME.size());
    const size_t open = place.rfind(" (");
    return open == std::string::npos ? place : place.substr(open + 2, place.size() - open - 3);
}

}  // namespace

// The stack of an Error is formatted when it is read.
napi_ref MakeCallSite(napi_env env) {
    napi_ref site = nullptr;
    if (!IS_OFF) (void)napi_create_reference(env, MakeError(env), 1, &site);
    return site;
}

void AddStack(napi_env env, napi_ref site, const char* method, napi_value error) {
    bool isError = false;
    napi_value made = nullptr;
    if (napi_is_error(env, error, &isError) != napi_ok || !isError ||
        napi_get_reference_value(env, site, &made) != napi_ok) {
        return;
    }
    const std::string stack = ReadStack(env, made);
    const std::string own = ReadStack(env, error);
    const size_t first = stack.find(FRAME);
    if (first == std::string::npos) return;
    const std::string frames = stack.substr(first);
    const std::string whole =
        own.substr(0, own.find(FRAME)) + std::string(FRAME) + method + " (" + PlaceOf(frames) + ")" + frames;
    napi_value text = nullptr;
    (void)napi_create_string_utf8(env, whole.data(), whole.size(), &text);
    (void)napi_set_named_property(env, error, "stack", text);
}

}  // namespace StandIn
