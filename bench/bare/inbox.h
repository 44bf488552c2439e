#pragma once

#include <node_api.h>
#include <uv.h>

#include <algorithm>
#include <iterator>
#include <mutex>
#include <utility>
#include <vector>

#include "bare.h"

namespace Bare {

/// Delivers items to the JS thread of `env`, first in, first out, with one queue and one uv_async_t. Each
/// item gets a handle scope, and a callback scope so that its microtasks run before the next item. The inbox
/// lives as long as the process, and keeps the event loop alive.
template <typename Item, void (*DELIVER)(napi_env env, const Item& item)>
class Inbox {
public:
    explicit Inbox(napi_env env) : env_(env) {
        uv_loop_t* loop = nullptr;
        Must(napi_get_uv_event_loop(env, &loop));
        async_.data = this;
        auto run = [](uv_async_t* async) { static_cast<Inbox*>(async->data)->Run(); };
        Must(uv_async_init(loop, &async_, run) == 0 ? napi_ok : napi_generic_failure);
        Must(napi_async_init(env, nullptr, MakeText(env, "floor"), &asyncContext_));
    }

    /// Queues `items`, whose contents are unspecified afterwards. Any thread.
    void Post(std::vector<Item>& items) {
        {
            std::lock_guard<std::mutex> guard(mutex_);
            if (queue_.empty()) {
                queue_.swap(items);
            } else {
                std::copy(items.begin(), items.end(), std::back_inserter(queue_));
            }
        }
        (void)uv_async_send(&async_);
    }

private:
    void Run() {
        std::vector<Item> batch;
        {
            std::lock_guard<std::mutex> guard(mutex_);
            batch.swap(queue_);
        }
        for (const Item& item : batch) {
            napi_handle_scope handles = nullptr;
            napi_callback_scope callbacks = nullptr;
            Must(napi_open_handle_scope(env_, &handles));
            Must(napi_open_callback_scope(env_, nullptr, asyncContext_, &callbacks));
            DELIVER(env_, item);
            Must(napi_close_callback_scope(env_, callbacks));
            Must(napi_close_handle_scope(env_, handles));
        }
    }

    napi_env const env_;
    uv_async_t async_{};
    napi_async_context asyncContext_ = nullptr;
    std::mutex mutex_;
    std::vector<Item> queue_;
};

}  // namespace Bare
