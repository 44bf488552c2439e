#ifndef COMMON_HANDLE_SCOPE_H
#define COMMON_HANDLE_SCOPE_H

#include "napi/native_api.h"

namespace TAVIK::GAME_PLAYER {

/// A handle scope of `env` for the life of this object; false if none was obtained. On `env`'s JS thread.
class HandleScope
{
public:
    explicit HandleScope(napi_env env) : env_(env) { (void)napi_open_handle_scope(env, &scope_); }
    HandleScope(const HandleScope&) = delete;
    HandleScope& operator=(const HandleScope&) = delete;
    ~HandleScope()
    {
        if (scope_ != nullptr) {
            (void)napi_close_handle_scope(env_, scope_);
        }
    }

    explicit operator bool() const { return scope_ != nullptr; }

    /// Leaves the scope to an environment that has ended meanwhile.
    void Abandon() { scope_ = nullptr; }

private:
    napi_env env_;
    napi_handle_scope scope_ = nullptr;
};

}  // namespace TAVIK::GAME_PLAYER

#endif
