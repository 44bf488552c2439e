#pragma once

#include <node_api.h>

#include <array>
#include <initializer_list>
#include <type_traits>
#include <utility>

#include "js_values.h"

namespace StandIn {

/// The first `COUNT` arguments of a call; undefined for those that the caller left out.
template <size_t COUNT>
std::array<napi_value, COUNT> Arguments(napi_env env, napi_callback_info info) {
    std::array<napi_value, COUNT> values{};
    size_t count = COUNT;
    (void)napi_get_cb_info(env, info, &count, values.data(), nullptr, nullptr);
    return values;
}

/// Calls `function` with the arguments of a JS call, read as `Parameters`. Returns its result for JS.
template <typename... Parameters, typename Function, size_t... INDEX>
napi_value Apply(napi_env env, napi_callback_info info, const Function& function,
                 std::index_sequence<INDEX...> /*indices*/) {
    [[maybe_unused]] const auto values = Arguments<sizeof...(Parameters)>(env, info);
    if constexpr (std::is_void_v<std::invoke_result_t<Function, Parameters...>>) {
        function(Read<Parameters>(env, values[INDEX])...);
        return nullptr;
    } else {
        return Make(env, function(Read<Parameters>(env, values[INDEX])...));
    }
}

// The functions that can be applied: those with the environment as an additional first parameter, those without, and
// the members of a class with one object.

template <typename Result, typename... Parameters>
napi_value Apply(napi_env env, napi_callback_info info, Result (*function)(napi_env env, Parameters...)) {
    auto bound = [env, function](auto&&... values) { return function(env, std::forward<decltype(values)>(values)...); };
    return Apply<std::decay_t<Parameters>...>(env, info, bound, std::index_sequence_for<Parameters...>());
}

template <typename Result, typename... Parameters>
napi_value Apply(napi_env env, napi_callback_info info, Result (*function)(Parameters...)) {
    return Apply<std::decay_t<Parameters>...>(env, info, function, std::index_sequence_for<Parameters...>());
}

template <typename Result, typename Class, typename... Parameters>
napi_value Apply(napi_env env, napi_callback_info info, Result (Class::*function)(Parameters...)) {
    auto bound = [function](Parameters... values) { return (Class::Get().*function)(std::move(values)...); };
    return Apply<std::decay_t<Parameters>...>(env, info, bound, std::index_sequence_for<Parameters...>());
}

/// A C++ function as JS calls it.
template <auto FUNCTION>
napi_value Exposed(napi_env env, napi_callback_info info) {
    return Apply(env, info, FUNCTION);
}

struct Function {
    const char* name;
    napi_callback callback;
};

/// Defines the functions on `target`; false if a Node-API call fails.
bool DefineFunctions(napi_env env, napi_value target, std::initializer_list<Function> functions);

// The functions of the binding by group. Each definer adds its group to `exports`; false if a Node-API call fails.

bool DefineModalFunctions(napi_env env, napi_value exports);
bool DefineAnswerFunctions(napi_env env, napi_value exports);
bool DefineRecordFunctions(napi_env env, napi_value exports);
bool DefineControlFunctions(napi_env env, napi_value exports);

}  // namespace StandIn
