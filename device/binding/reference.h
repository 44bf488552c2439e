#pragma once

#include <node_api.h>

#include <utility>

namespace StandIn {

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
