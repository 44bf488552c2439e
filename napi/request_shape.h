#ifndef NAPI_REQUEST_SHAPE_H
#define NAPI_REQUEST_SHAPE_H

#include <array>
#include <cstdint>
#include <memory>

#include "common/velmor_error.h"
#include "napi/base_context.h"
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

/// How many arguments a method takes.
struct CountRule {
    size_t min = 0;
    size_t max = SIZE_MAX;

    constexpr bool Accepts(size_t count) const { return count >= min && count <= max; }
};

constexpr CountRule AtLeast(size_t count)
{
    return {count, SIZE_MAX};
}
constexpr CountRule Exactly(size_t count)
{
    return {count, count};
}

/// The count of arguments that selects the callback form; the last one is the callback then.
inline constexpr size_t PROMISE_ONLY = 0;
constexpr size_t CallbackAt(size_t count)
{
    return count;
}

/// What distinguishes one asynchronous method from another before its parameters are read.
struct RequestRule {
    const char* method = nullptr;  // as log lines name it
    RequestType type = REQUEST_UNKNOWN;
    size_t maxArgs = 0;  // read at most
    CountRule counts;
    size_t callbackCount = PROMISE_ONLY;
    bool isCountLogged = true;
};

/// What a method does of its own. `parse` reads its parameters into the context it made, and answers whether
/// they will do; `execute` puts them into the Want.
struct RequestSteps {
    std::shared_ptr<BaseContext> (*create)(int32_t type, int64_t startTime,
                                           napi_value contextValue) = nullptr;
    bool (*parse)(napi_env env, const CallArguments& args, BaseContext& context) = nullptr;
    void (*execute)(const BaseContext& context, OHOS::AAFwk::Want& want) = nullptr;
};

/// One asynchronous JS method from its call to the opened extension: reads the arguments, builds the context
/// in the form that the caller chose, parses, and starts the session, which then owns the context. Returns
/// the promise, or `undefined` in the callback form. What fails on the way is reported to analytics as 401,
/// and to JS as business error 401 (0 for the types whose failures are hidden): thrown for a wrong count, by
/// promise or callback otherwise. An exception that a getter throws while parameters are read ends the call.
napi_value RunRequest(napi_env env, napi_callback_info info, const RequestRule& rule,
                      const RequestSteps& steps);

template <typename Context>
bool NoParameters(napi_env /*env*/, const CallArguments& /*args*/, Context& /*context*/)
{
    return true;
}

template <typename Context>
void AddNothing(const Context& /*context*/, OHOS::AAFwk::Want& /*want*/)
{
}

/// `RunRequest` with a context class and its two steps.
template <typename Context, bool (*PARSE)(napi_env, const CallArguments&, Context&) = NoParameters<Context>,
          void (*EXECUTE)(const Context&, OHOS::AAFwk::Want&) = AddNothing<Context>>
napi_value RunRequest(napi_env env, napi_callback_info info, const RequestRule& rule)
{
    static constexpr RequestSteps STEPS = {
        [](int32_t type, int64_t startTime, napi_value contextValue) -> std::shared_ptr<BaseContext> {
            return std::make_shared<Context>(type, startTime, contextValue);
        },
        [](napi_env callEnv, const CallArguments& args, BaseContext& context) {
            return PARSE(callEnv, args, static_cast<Context&>(context));
        },
        [](const BaseContext& context, OHOS::AAFwk::Want& want) {
            EXECUTE(static_cast<const Context&>(context), want);
        },
    };
    return RunRequest(env, info, rule, STEPS);
}

}  // namespace TAVIK::GAME_PLAYER

#endif
