#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "common/request_types.h"
#include "modal/base_context.h"
#include "want.h"

namespace TAVIK::GAME_PLAYER {

/// The arguments of one JS call. Missing ones read as `undefined`.
struct CallArguments {
    size_t count = 0;  // all that the caller passed, even if not all were read
    std::array<napi_value, 4> values{};
    napi_value thisArg = nullptr;
    napi_value undefined = nullptr;

    /// Reads the first `maxArgs` arguments. On failure, throws business error 1002000001 and returns false.
    bool Read(napi_env env, napi_callback_info info, size_t maxArgs);

    /// The same for `method`. Returns false and logs if this thread's environment is no longer registered.
    bool ReadIfValid(napi_env env, napi_callback_info info, const char* method, size_t maxArgs);
};

/// How many arguments a method accepts, which forms it has, and whether it logs the number of arguments.
struct ArgumentRule {
    size_t min;
    size_t max;
    size_t read;
    size_t callbackCount;  // of the callback form, whose last argument is the callback; 0: no such form
    bool isCountLogged;
};

/// `count` arguments and a callback; with any other number of at least `count`, a promise.
constexpr ArgumentRule WithCallback(size_t count) { return {count, SIZE_MAX, count + 1, count + 1, true}; }

/// Exactly `count` arguments, and a promise.
constexpr ArgumentRule PromiseOnly(size_t count, bool isCountLogged = true) {
    return {count, count, count, 0, isCountLogged};
}

/// One asynchronous method: see `Request` and `PageLaunch`.
struct RequestRule {
    ArgumentRule arguments;
    RequestType failureType;  // names a failure in analytics, unless the argument count was wrong
    std::shared_ptr<BaseContext> (*create)();
    bool (*parse)(napi_env env, const CallArguments& args, BaseContext& context);
    void (*addParams)(BaseContext& context, OHOS::AAFwk::Want& want);
    void (*start)(const std::shared_ptr<BaseContext>& context) = nullptr;  // instead of opening the extension
    bool isAnswered = true;
    bool parsesFirst = false;  // before the promise is made
    RequestType type = REQUEST_UNKNOWN;
    const char* method = nullptr;  // its name in log lines, and that of its execute step
    const char* executeStep = nullptr;
};

inline bool ParseNothing(napi_env /*env*/, const CallArguments& /*args*/, BaseContext& /*context*/) { return true; }
inline void SendNothing(BaseContext& /*context*/, OHOS::AAFwk::Want& /*want*/) {}

/// A method that passes the extension's answer to JS: the class of its context, and its arguments. PARSE reads the
/// parameters into the context, and returns whether they are valid. EXECUTE adds to the Want that opens the extension.
/// Analytics reports a call that fails after its arguments were counted under `failureType`, if that is known,
/// otherwise under the method's own type.
template <typename Context, auto PARSE, auto EXECUTE>
constexpr RequestRule Request(ArgumentRule arguments, RequestType failureType = REQUEST_UNKNOWN) {
    auto create = []() -> std::shared_ptr<BaseContext> { return std::make_shared<Context>(); };
    auto parse = [](napi_env env, const CallArguments& args, BaseContext& context) {
        return PARSE(env, args, static_cast<Context&>(context));
    };
    auto addParams = [](BaseContext& context, OHOS::AAFwk::Want& want) {
        EXECUTE(static_cast<Context&>(context), want);
    };
    return {arguments, failureType, create, parse, addParams};
}

/// A method whose answer and failures reach neither the caller nor analytics. Its promise never settles, and only shows
/// that the call was accepted. Failures are only logged. It accepts any number of arguments, and reads `count` of them.
template <typename Context, auto PARSE, auto EXECUTE>
constexpr RequestRule PageLaunch(size_t count, bool parsesFirst = false,
                                 void (*start)(const std::shared_ptr<BaseContext>&) = nullptr) {
    RequestRule rule = Request<Context, PARSE, EXECUTE>({0, SIZE_MAX, count, 0, false});
    rule.start = start;
    rule.isAnswered = false;
    rule.parsesFirst = parsesFirst;
    return rule;
}

/// The rule of the method with this request type. There must be one.
const RequestRule& FindRequest(RequestType type);

/// Runs an asynchronous JS method until the extension is opened: reads the arguments, builds the context in the form
/// that the caller chose, parses the parameters, and passes the request to its session. Returns the promise, or
/// `undefined` in the callback form. A failure is reported to analytics as 401, and to JS as business error 401 (0 for
/// types whose failures are hidden). It is thrown for a wrong number of arguments, and otherwise settles the request.
/// If a getter throws, the call ends with that exception. On `env`'s JS thread.
napi_value RunRequest(napi_env env, napi_callback_info info, const RequestRule& rule);

}  // namespace TAVIK::GAME_PLAYER
