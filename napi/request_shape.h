#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <type_traits>

#include "common/request_types.h"
#include "modal/base_context.h"
#include "want.h"

namespace TAVIK::GAME_PLAYER {

/// The arguments of one JS call. Missing ones read as `undefined`.
struct CallArguments {
    size_t count = 0;  // as the caller passed them, also those that were not read
    std::array<napi_value, 4> values{};
    napi_value thisArg = nullptr;
    napi_value undefined = nullptr;

    /// Reads the first `maxArgs` arguments. False, with business error 1002000001 thrown, if that fails.
    bool Read(napi_env env, napi_callback_info info, size_t maxArgs);

    /// The same for `method`, unless this thread's environment is not registered any more: that is logged.
    bool ReadIfValid(napi_env env, napi_callback_info info, const char* method, size_t maxArgs);
};

/// How many arguments a method takes, which forms it has, and whether it logs their number.
struct ArgumentRule {
    size_t min;
    size_t max;
    size_t read;
    size_t callbackCount;  // of the callback form, whose last argument is the callback; 0: there is none
    bool isCountLogged;
};

/// `count` arguments and a callback; or any other number from `count` on, for a promise.
constexpr ArgumentRule WithCallback(size_t count) { return {count, SIZE_MAX, count + 1, count + 1, true}; }

/// Exactly `count` arguments, for a promise.
constexpr ArgumentRule PromiseOnly(size_t count) { return {count, count, count, 0, true}; }

constexpr ArgumentRule WithoutCountLog(ArgumentRule rule) {
    rule.isCountLogged = false;
    return rule;
}

/// Any number of arguments, of which the first `count` are read, for a promise.
constexpr ArgumentRule Unchecked(size_t count) { return {0, SIZE_MAX, count, 0, false}; }

/// One asynchronous method: see `Request` and `PageLaunch`.
struct RequestRule {
    const char* method;  // as log lines name it
    RequestType type;
    ArgumentRule arguments;
    RequestType failureType;  // whose name a failure after the count was accepted has in analytics
    bool isAnswered;
    std::shared_ptr<BaseContext> (*create)();
    bool (*parse)(napi_env env, const CallArguments& args, BaseContext& context);
    void (*execute)(const RequestRule& rule, const std::shared_ptr<BaseContext>& context);
};

/// Opens the game-service extension with a Want of the request's type, to which `addParams` adds.
void OpenExtension(const RequestRule& rule, const std::shared_ptr<BaseContext>& context,
                   void (*addParams)(BaseContext& context, OHOS::AAFwk::Want& want));

inline bool ParseNothing(napi_env /*env*/, const CallArguments& /*args*/, BaseContext& /*context*/) {
    return true;
}

template <typename Context, auto EXECUTE>
void Execute(const RequestRule& rule, const std::shared_ptr<BaseContext>& context) {
    if constexpr (std::is_invocable_v<decltype(EXECUTE), std::shared_ptr<Context>>) {
        EXECUTE(std::static_pointer_cast<Context>(context));
    } else {
        OpenExtension(rule, context, [](BaseContext& base, OHOS::AAFwk::Want& want) {
            EXECUTE(static_cast<Context&>(base), want);
        });
    }
}

/// A method that brings JS the extension's answer: its name, type and arguments; the class of its context;
/// PARSE, which reads the parameters into that and tells whether they will do; and EXECUTE, which adds to the
/// Want that opens the extension, or hands the context over itself. A call that fails after its arguments
/// were counted is known to analytics as one of `failureType`, unless that is unknown.
template <typename Context, auto PARSE, auto EXECUTE>
constexpr RequestRule Request(const char* method, RequestType type, ArgumentRule arguments,
                              RequestType failureType = REQUEST_UNKNOWN) {
    auto create = []() -> std::shared_ptr<BaseContext> { return std::make_shared<Context>(); };
    auto parse = [](napi_env env, const CallArguments& args, BaseContext& context) {
        return PARSE(env, args, static_cast<Context&>(context));
    };
    const RequestType known = failureType != REQUEST_UNKNOWN ? failureType : type;
    return {method, type, arguments, known, true, create, parse, Execute<Context, EXECUTE>};
}

/// A method whose answer reaches nobody: neither the caller, whose promise never settles and only tells that
/// the call was taken, nor analytics. The same holds for a failure, which is only logged. It reads `count`
/// arguments, and takes any number.
template <typename Context, auto PARSE, auto EXECUTE>
constexpr RequestRule PageLaunch(const char* method, RequestType type, size_t count) {
    RequestRule rule = Request<Context, PARSE, EXECUTE>(method, type, Unchecked(count));
    rule.isAnswered = false;
    return rule;
}

/// The rule of the method that makes requests of a type. There must be one.
const RequestRule& FindRequest(RequestType type);

/// One asynchronous JS method from its call to the opened extension: reads the arguments, builds the context
/// in the form that the caller chose, parses, and hands the request over to its session. Returns the promise,
/// or `undefined` in the callback form. What fails on the way is reported to analytics as 401, and to JS as
/// business error 401 (0 for the types whose failures are hidden): thrown for a wrong count, by promise or
/// callback otherwise. An exception that a getter throws while parameters are read ends the call. On `env`'s
/// JS thread.
napi_value RunRequest(napi_env env, napi_callback_info info, const RequestRule& rule);

}  // namespace TAVIK::GAME_PLAYER
