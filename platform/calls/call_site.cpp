#include <cstdlib>
#include <string>
#include <string_view>

#include "calls/call_records.h"
#include "js_values.h"

namespace StandIn {
namespace {

bool IsOff() {
    const char* wanted = std::getenv("GAMEAPI_STACKS");  // NOLINT(concurrency-mt-unsafe): once, while loading
    return wanted != nullptr && std::string_view(wanted) == "off";
}

const bool IS_OFF = IsOff();

// Empty if the stack is not a string or reading it throws, as a game's Error.prepareStackTrace may.
std::string ReadStack(napi_env env, napi_value error) {
    napi_value stack = nullptr;
    if (napi_get_named_property(env, error, "stack", &stack) == napi_ok) return Read<std::string>(env, stack);
    (void)napi_get_and_clear_last_exception(env, &stack);
    return {};
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
    napi_value error = nullptr;
    if (!IS_OFF && napi_create_error(env, nullptr, Make(env, std::string()), &error) == napi_ok) {
        (void)napi_create_reference(env, error, 1, &site);
    }
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
    (void)napi_set_named_property(env, error, "stack", Make(env, whole));
}

}  // namespace StandIn
