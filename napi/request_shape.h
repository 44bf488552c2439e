#ifndef NAPI_REQUEST_SHAPE_H
#define NAPI_REQUEST_SHAPE_H

#include <array>
#include <cstdint>
#include <memory>

#include "common/request_types.h"
#include "modal/base_context.h"
#include "napi/native_api.h"
#include "want.h"

namespace TAVIK::GAME_PLAYER {

/// The arguments of one JS call. Missing ones read as `undefined`.
struct CallArguments {
    size_t count = 0;  // as the caller passed them, also those that were not read
    std::array<napi_value, 4> values{};
    napi_value thisArg = nullptr;
    napi_value undefined = nullptr;

    /// Reads the first `maxArgs` arguments. If the environment refuses, throws business error 1002000001 and
    /// answers false.
    bool Read(napi_env env, napi_callback_info info, size_t maxArgs);
};

/// How many arguments a method takes, and which forms it has.
struct ArgumentRule {
    size_t min;
    size_t max;
    size_t read;
    size_t callbackCount;  // of the callback form, whose last argument is the callback; 0: there is none
};

/// `count` arguments and a callback, or any other number from `count` on for a promise.
constexpr ArgumentRule WithCallback(size_t count)
{
    return {count, SIZE_MAX, count + 1, count + 1};
}

/// Exactly `count` arguments, for a promise.
constexpr ArgumentRule PromiseOnly(size_t count)
{
    return {count, count, count, 0};
}

/// Any number of arguments, of which the first `count` are read, for a promise.
constexpr ArgumentRule Unchecked(size_t count)
{
    return {0, SIZE_MAX, count, 0};
}

/// One asynchronous method: see `Request` and `PageLaunch`.
struct RequestRule {
    using Context = std::shared_ptr<BaseContext>;

    const char* method;  // as log lines name it
    RequestType type;
    ArgumentRule arguments;
    Context (*create)();
    bool (*parse)(napi_env env, const CallArguments& args, BaseContext& context);
    void (*addParams)(BaseContext& context, OHOS::AAFwk::Want& want);
    void (*start)(const RequestRule& rule, const Context& context);
    RequestType failureType;
    bool isCountLogged = true;
    bool isAnswered = true;

    /// Writes no line that tells the number of arguments.
    constexpr RequestRule WithoutCountLog() const
    {
        RequestRule rule = *this;
        rule.isCountLogged = false;
        return rule;
    }

    /// Analytics know a call that fails after its arguments were counted under the name of another type.
    constexpr RequestRule FailingAs(RequestType other) const
    {
        RequestRule rule = *this;
        rule.failureType = other;
        return rule;
    }

    /// Hands the request over in another way than by opening the extension.
    constexpr RequestRule StartedBy(void (*handOver)(const RequestRule& rule, const Context& context)) const
    {
        RequestRule rule = *this;
        rule.start = handOver;
        return rule;
    }
};

/// Opens the game-service extension with a Want of the request's type, to which the rule's parameters are
/// added.
void OpenExtension(const RequestRule& rule, const RequestRule::Context& context);

inline bool ParseNothing(napi_env /*env*/, const CallArguments& /*args*/, BaseContext& /*context*/)
{
    return true;
}

inline void AddNothing(BaseContext& /*context*/, OHOS::AAFwk::Want& /*want*/) {}

/// A method that opens the extension and brings JS its answer: its name, its type, its arguments; the class
/// of its context; PARSE, which reads the parameters into it and tells whether they will do; and EXECUTE,
/// which adds to the Want.
template <typename Context, auto PARSE, auto EXECUTE>
constexpr RequestRule Request(const char* method, RequestType type, ArgumentRule arguments)
{
    return {
        method,
        type,
        arguments,
        []() -> RequestRule::Context { return std::make_shared<Context>(); },
        [](napi_env env, const CallArguments& args, BaseContext& context) {
            return PARSE(env, args, static_cast<Context&>(context));
        },
        [](BaseContext& context, OHOS::AAFwk::Want& want) { EXECUTE(static_cast<Context&>(context), want); },
        OpenExtension,
        type,
    };
}

/// A method whose answer reaches nobody: neither the caller, whose promise never settles and only tells that
/// the call was taken, nor analytics. The same holds for a failure, which is only logged. It reads `count`
/// arguments, and takes any number.
template <typename Context, auto PARSE, auto EXECUTE>
constexpr RequestRule PageLaunch(const char* method, RequestType type, size_t count)
{
    RequestRule rule = Request<Context, PARSE, EXECUTE>(method, type, Unchecked(count));
    rule.isCountLogged = false;
    rule.isAnswered = false;
    return rule;
}

/// One asynchronous JS method from its call to the opened extension: reads the arguments, builds the context
/// in the form that the caller chose, parses, and hands the request over to its session. Returns the promise,
/// or `undefined` in the callback form. What fails on the way is reported to analytics as 401, and to JS as
/// business error 401 (0 for the types whose failures are hidden): thrown for a wrong count, by promise or
/// callback otherwise. An exception that a getter throws while parameters are read ends the call. On `env`'s
/// JS thread.
napi_value RunRequest(napi_env env, napi_callback_info info, const RequestRule& rule);

}  // namespace TAVIK::GAME_PLAYER

#endif
