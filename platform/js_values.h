#pragma once

#include <node_api.h>

#include <cstdint>
#include <string>
#include <utility>

#include "want_params.h"

// Values of JS, read and made by their types in C++. All on the JS thread of `env`.

namespace StandIn {

// Readers. A value of another type than the wanted one reads as 0, false or empty.

bool IsOfType(napi_env env, napi_value value, napi_valuetype type);
bool IsArray(napi_env env, napi_value value);

void ReadInto(napi_env env, napi_value value, bool& flag);
void ReadInto(napi_env env, napi_value value, int32_t& number);
void ReadInto(napi_env env, napi_value value, uint32_t& number);
void ReadInto(napi_env env, napi_value value, uint64_t& number);
void ReadInto(napi_env env, napi_value value, double& number);
void ReadInto(napi_env env, napi_value value, std::string& text);
void ReadInto(napi_env env, napi_value object, OHOS::AAFwk::WantParams& params);
inline void ReadInto(napi_env /*env*/, napi_value value, napi_value& same) { same = value; }
template <typename Value>
Value Read(napi_env env, napi_value value) {
    Value result{};
    ReadInto(env, value, result);
    return result;
}

napi_value ReadElement(napi_env env, napi_value array, uint32_t index);
napi_value ReadProperty(napi_env env, napi_value object, const char* name);

/// Calls `visit` with each element of `array`; with none if it is undefined.
template <typename Visit>
void ForEachElement(napi_env env, napi_value array, const Visit& visit) {
    uint32_t length = 0;
    (void)napi_get_array_length(env, array, &length);
    for (uint32_t i = 0; i < length; ++i) {
        visit(ReadElement(env, array, i));
    }
}

// Makers. Null if a Node-API call fails, as in an environment that is ending.

inline napi_value Make(napi_env /*env*/, napi_value value) { return value; }
napi_value Make(napi_env env, bool flag);
napi_value Make(napi_env env, double number);
inline napi_value Make(napi_env env, int32_t number) { return Make(env, static_cast<double>(number)); }
inline napi_value Make(napi_env env, uint32_t number) { return Make(env, static_cast<double>(number)); }
inline napi_value Make(napi_env env, int64_t number) { return Make(env, static_cast<double>(number)); }
inline napi_value Make(napi_env env, uint64_t number) { return Make(env, static_cast<double>(number)); }
napi_value Make(napi_env env, const std::string& text);
napi_value Make(napi_env env, const OHOS::AAFwk::WantParams& params);

/// Makes an array of the results of `make` for each of `items`.
template <typename Items, typename Make>
napi_value MakeArray(napi_env env, const Items& items, const Make& make) {
    napi_value array = nullptr;
    (void)napi_create_array(env, &array);
    uint32_t index = 0;
    for (const auto& item : items) {
        napi_handle_scope scope = nullptr;  // frees each item's handles: an array may be long
        (void)napi_open_handle_scope(env, &scope);
        (void)napi_set_element(env, array, index++, make(item));
        (void)napi_close_handle_scope(env, scope);
    }
    return array;
}

/// An array of all items of a container.
template <typename Items, typename = typename Items::const_iterator>
napi_value Make(napi_env env, const Items& items) {
    return MakeArray(env, items, [env](const auto& item) { return Make(env, item); });
}

/// Builds a plain object. Null values are left out.
class ObjectMaker {
public:
    explicit ObjectMaker(napi_env env);

    ObjectMaker& Set(const char* name, napi_value value);
    ObjectMaker& Set(const char* name, const char* text) { return Set(name, Make(env_, std::string(text))); }
    template <typename Value>
    ObjectMaker& Set(const char* name, const Value& value) {
        return Set(name, Make(env_, value));
    }

    napi_value Object() const { return object_; }

private:
    napi_env env_;
    napi_value object_ = nullptr;
};

/// Keeps a JS object or function alive. Unless empty, use and destroy it only on its environment's JS thread.
class Reference {
public:
    Reference() = default;
    Reference(napi_env env, napi_value value) : env_(env) { (void)napi_create_reference(env, value, 1, &reference_); }
    Reference(Reference&& other) noexcept : env_(other.env_), reference_(std::exchange(other.reference_, nullptr)) {}
    Reference& operator=(Reference&& other) noexcept {
        std::swap(env_, other.env_);
        std::swap(reference_, other.reference_);
        return *this;
    }
    ~Reference() {
        if (reference_ != nullptr) (void)napi_delete_reference(env_, reference_);
    }

    bool IsEmpty() const { return reference_ == nullptr; }
    /// Null if there is none.
    napi_value Value() const {
        napi_value value = nullptr;
        if (reference_ != nullptr) (void)napi_get_reference_value(env_, reference_, &value);
        return value;
    }

private:
    napi_env env_ = nullptr;
    napi_ref reference_ = nullptr;
};

}  // namespace StandIn
