#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <unordered_map>

#include "wrap/wrap.h"

namespace StandIn {
namespace {

struct CallSite {
    const char* method;
    napi_ref error;  // created at the call; its stack is formatted when it is read
};

thread_local const char* gMethod = nullptr;
std::atomic<uint64_t> gThreads{0};
thread_local uint64_t gCalls = 0;   // on this thread
thread_local uint64_t gThread = 0;  // counted from 1; 0: no number was asked for yet
thread_local std::unordered_map<napi_deferred, CallSite> gSites;

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

void BeginMethod(const char* name) {
    gMethod = name;
    ++gCalls;
}

uint64_t CurrentCall() {
    if (gThread == 0) gThread = ++gThreads;
    return ((gThread - 1) << 32) + gCalls;
}

const char* LastMethod() { return gMethod; }

void NoteCallSite(napi_env env, napi_deferred deferred) {
    napi_ref reference = nullptr;
    if (IS_OFF || gMethod == nullptr ||
        napi_create_reference(env, MakeError(env), 1, &reference) != napi_ok) {
        return;
    }
    gSites[deferred] = {gMethod, reference};
}

void GiveCallSite(napi_env env, napi_deferred deferred, napi_value error) {
    auto site = gSites.find(deferred);
    bool isError = false;
    if (site == gSites.end() || napi_is_error(env, error, &isError) != napi_ok || !isError) return;
    napi_value made = nullptr;
    (void)napi_get_reference_value(env, site->second.error, &made);
    const std::string stack = ReadStack(env, made);
    const std::string own = ReadStack(env, error);
    const size_t first = stack.find(FRAME);
    napi_value text = nullptr;
    if (first != std::string::npos) {
        const std::string frames = stack.substr(first);
        const std::string told = own.substr(0, own.find(FRAME)) + std::string(FRAME) + site->second.method +
                                 " (" + PlaceOf(frames) + ")" + frames;
        (void)napi_create_string_utf8(env, told.data(), told.size(), &text);
        (void)napi_set_named_property(env, error, "stack", text);
    }
    DropCallSite(env, deferred);
}

void DropCallSite(napi_env env, napi_deferred deferred) {
    auto site = gSites.extract(deferred);
    if (!site.empty()) (void)napi_delete_reference(env, site.mapped().error);
}

}  // namespace StandIn
