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

/// Whether the extension's answer, or a failure before it, reaches the caller and analytics. A page launch
/// expects no answer: its promise, which never settles, only tells that the call was taken.
enum class Answer { EXPECTED, NONE };

/// What distinguishes one asynchronous method from another before its parameters are read.
struct RequestRule {
    const char* method = nullptr;  // as log lines name it
    RequestType type = REQUEST_UNKNOWN;
    size_t maxArgs = 0;  // read at most
    CountRule counts;
    size_t callbackCount = PROMISE_ONLY;
    bool isCountLogged = true;
    Answer answer = Answer::EXPECTED;
    RequestType failureType = type;  // whose name a failure after the count was accepted has in analytics
};

constexpr RequestRule PageLaunch(const char* method, RequestType type, size_t maxArgs)
{
    return {method, type, maxArgs, AtLeast(0), PROMISE_ONLY, false, Answer::NONE};
}

/// What a method does of its own: makes its context, reads its parameters into it and answers whether they
/// will do, and hands the request over.
struct RequestSteps {
    std::shared_ptr<BaseContext> (*create)(int32_t type, int64_t startTime,
                                           napi_value contextValue) = nullptr;
    bool (*parse)(napi_env env, const CallArguments& args, BaseContext& context) = nullptr;
    void (*execute)(const RequestRule& rule, const std::shared_ptr<BaseContext>& context) = nullptr;
};

/// One asynchronous JS method from its call to the opened extension: reads the arguments, builds the context
/// in the form that the caller chose, parses, and hands the request over to its session. Returns the promise,
/// or `undefined` in the callback form. What fails on the way is reported to analytics as 401, and to JS as
/// business error 401 (0 for the types whose failures are hidden): thrown for a wrong count, by promise or
/// callback otherwise; a page launch only logs it. An exception that a getter throws while parameters are
/// read ends the call.
napi_value RunRequest(napi_env env, napi_callback_info info, const RequestRule& rule,
                      const RequestSteps& steps);

/// Opens the game-service extension with a Want of the request's type, to which `addParams` adds.
void OpenExtension(const RequestRule& rule, const std::shared_ptr<BaseContext>& context,
                   void (*addParams)(BaseContext& context, OHOS::AAFwk::Want& want));

template <typename Context>
bool NoParameters(napi_env /*env*/, const CallArguments& /*args*/, Context& /*context*/)
{
    return true;
}

template <typename Context>
void AddNothing(Context& /*context*/, OHOS::AAFwk::Want& /*want*/)
{
}

/// The steps of a request with a context class of its own and its parser.
template <typename Context, bool (*PARSE)(napi_env, const CallArguments&, Context&)>
constexpr RequestSteps MakeSteps(void (*execute)(const RequestRule&, const std::shared_ptr<BaseContext>&))
{
    return {
        [](int32_t type, int64_t startTime, napi_value contextValue) -> std::shared_ptr<BaseContext> {
            return std::make_shared<Context>(type, startTime, contextValue);
        },
        [](napi_env env, const CallArguments& args, BaseContext& context) {
            return PARSE(env, args, static_cast<Context&>(context));
        },
        execute,
    };
}

/// `RunRequest` for a request that opens the extension: its context class, its parser, and what it adds to
/// the Want.
template <typename Context, bool (*PARSE)(napi_env, const CallArguments&, Context&) = NoParameters<Context>,
          void (*EXECUTE)(Context&, OHOS::AAFwk::Want&) = AddNothing<Context>>
napi_value RunRequest(napi_env env, napi_callback_info info, const RequestRule& rule)
{
    constexpr auto OPEN = [](const RequestRule& request, const std::shared_ptr<BaseContext>& context) {
        OpenExtension(request, context, [](BaseContext& base, OHOS::AAFwk::Want& want) {
            EXECUTE(static_cast<Context&>(base), want);
        });
    };
    return RunRequest(env, info, rule, MakeSteps<Context, PARSE>(OPEN));
}

}  // namespace TAVIK::GAME_PLAYER

#endif
