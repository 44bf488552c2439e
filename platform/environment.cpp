#include "environment.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "calls/runtime.h"
#include "forever.h"

namespace StandIn {
namespace {

struct Registry {
    std::mutex mutex;  // guards the maps
    std::unordered_map<napi_env, std::shared_ptr<Environment>> byEnv;
    std::unordered_map<const uv_loop_t*, std::shared_ptr<Environment>> byLoop;
};

napi_module* gRecord = nullptr;  // set once, while the library is being loaded
thread_local napi_env gModuleEnv = nullptr;
thread_local napi_ref gExports = nullptr;  // freed with the environment
thread_local Environment* gCurrent = nullptr;
thread_local napi_env gLastOwn = nullptr;  // known to be alive and to belong to this thread

/// How completions are ordered: the number of that setting, whether it is any order, and its seed.
struct QueueOrder {
    uint32_t setting : 31;
    uint32_t isAny : 1;  // of the same type, so that all compilers pack the two
    uint32_t seed;
};
std::atomic<QueueOrder> gOrder{{0, false, 0}};

template <typename Map>
std::shared_ptr<Environment> Find(Map Registry::*map, typename Map::key_type key) {
    auto& registry = Forever<Registry>();
    std::lock_guard<std::mutex> guard(registry.mutex);
    auto found = (registry.*map).find(key);
    return found == (registry.*map).end() ? nullptr : found->second;
}

void Require(bool isDone, const char* what) {
    if (isDone) return;
    (void)std::fprintf(stderr, "The device cannot serve this JS environment: %s failed.\n", what);
    std::abort();
}

}  // namespace

std::shared_ptr<Environment> Environment::Attach(napi_env env) {
    uv_loop_t* loop = nullptr;
    Require(napi_get_uv_event_loop(env, &loop) == napi_ok, "napi_get_uv_event_loop");
    auto environment = OfLoop(loop);
    if (environment == nullptr) {
        environment.reset(new Environment(loop));
        environment->Start(env);
    }
    auto& registry = Forever<Registry>();
    std::lock_guard<std::mutex> guard(registry.mutex);
    if (registry.byEnv.emplace(env, environment).second) {
        Require(napi_add_env_cleanup_hook(env, CloseEnv, env) == napi_ok, "napi_add_env_cleanup_hook");
    }
    return environment;
}

std::shared_ptr<Environment> Environment::Of(napi_env env) { return Find(&Registry::byEnv, env); }

std::shared_ptr<Environment> Environment::OfLoop(const uv_loop_t* loop) { return Find(&Registry::byLoop, loop); }

Environment* Environment::Current() { return gCurrent; }

bool Environment::IsOwn(napi_env env) {
    if (env == gLastOwn && env != nullptr) return true;
    if (gCurrent == nullptr || Of(env).get() != gCurrent) return false;
    gLastOwn = env;
    return true;
}

// Cleanup hooks run in LIFO order. The hook that ends the whole environment is therefore added before any other on its
// thread, and each `napi_env` is closed after the hooks that its addon adds later have run.
void Environment::Start(napi_env env) {
    scopeEnv_ = env;
    async_.data = this;
    auto run = [](uv_async_t* async) { static_cast<Environment*>(async->data)->RunQueued(); };
    Require(uv_async_init(loop_, &async_, run) == 0, "uv_async_init");
    uv_unref(reinterpret_cast<uv_handle_t*>(&async_));
    napi_value name = nullptr;
    Require(napi_create_string_utf8(env, "device", NAPI_AUTO_LENGTH, &name) == napi_ok &&
                napi_async_init(env, nullptr, name, &asyncContext_) == napi_ok,
            "napi_async_init");
    auto end = [](napi_async_cleanup_hook_handle, void* self) { static_cast<Environment*>(self)->End(); };
    Require(napi_add_async_cleanup_hook(env, end, this, &cleanupHandle_) == napi_ok, "napi_add_async_cleanup_hook");
    gCurrent = this;
    auto& registry = Forever<Registry>();
    std::lock_guard<std::mutex> guard(registry.mutex);
    registry.byLoop.emplace(loop_, shared_from_this());
}

void Environment::CloseEnv(void* env) {
    gLastOwn = nullptr;
    auto& registry = Forever<Registry>();
    std::lock_guard<std::mutex> guard(registry.mutex);
    registry.byEnv.erase(static_cast<napi_env>(env));
}

void Environment::End() {
    gCurrent = nullptr;
    std::vector<Item> rest;
    {
        std::lock_guard<std::mutex> guard(mutex_);
        hasEnded_ = true;
        rest.swap(queue_);
    }
    Reorder(rest);
    for (const Item& item : rest) {
        item.job(true);
    }
    (void)napi_async_destroy(scopeEnv_, asyncContext_);
    // The registry keeps this object alive until the handle is closed.
    uv_close(reinterpret_cast<uv_handle_t*>(&async_), [](uv_handle_t* handle) {
        auto* self = static_cast<Environment*>(handle->data);
        (void)napi_remove_async_cleanup_hook(self->cleanupHandle_);
        auto& registry = Forever<Registry>();
        std::shared_ptr<Environment> last;
        std::lock_guard<std::mutex> guard(registry.mutex);
        last.swap(registry.byLoop[self->loop_]);
        registry.byLoop.erase(self->loop_);
    });
}

bool Environment::Post(napi_env env, Job job) { return Add({env, std::move(job)}); }

bool Environment::Add(Item item) {
    std::lock_guard<std::mutex> guard(mutex_);
    if (hasEnded_) return false;
    queue_.push_back(std::move(item));
    if (queue_.size() == 1) {
        if (IsLoopThread()) UpdateRef();
        (void)uv_async_send(&async_);
    }
    return true;
}

bool Environment::PostTo(const uv_loop_t* loop, Job job) {
    Item item{nullptr, std::move(job), true};
    if (gCurrent != nullptr && gCurrent->loop_ == loop) return gCurrent->Add(std::move(item));
    auto environment = OfLoop(loop);
    return environment != nullptr && environment->Add(std::move(item));
}

void Environment::SetQueueOrder(bool isAny, uint32_t seed) {
    static std::atomic<uint32_t> settings{0};
    gOrder = {++settings, isAny ? 1U : 0U, seed};
}

void Environment::Reorder(std::vector<Item>& items) {
    const QueueOrder order = gOrder;
    if (!order.isAny) return;
    if (std::exchange(randomOf_, order.setting) != order.setting) random_.seed(order.seed);
    std::vector<Item*> completions;
    for (Item& item : items) {
        if (item.isCompletion) completions.push_back(&item);
    }
    for (size_t left = completions.size(); left > 1; --left) {
        std::swap(*completions[left - 1], *completions[random_() % left]);
    }
}

LoopHold Environment::Hold() {
    std::lock_guard<std::mutex> guard(mutex_);
    if (++holds_ == 1 && queue_.empty()) ChangeRef();
    return {this, [self = shared_from_this()](void* /*self*/) { self->Unhold(); }};
}

void Environment::Unhold() {
    std::lock_guard<std::mutex> guard(mutex_);
    if (--holds_ == 0 && queue_.empty()) ChangeRef();
}

// Only the loop thread may change what keeps the loop alive.
void Environment::ChangeRef() {
    if (hasEnded_) return;
    if (IsLoopThread()) {
        UpdateRef();
    } else {
        (void)uv_async_send(&async_);
    }
}

void Environment::UpdateRef() {
    auto* handle = reinterpret_cast<uv_handle_t*>(&async_);
    if (holds_ > 0 || !queue_.empty()) {
        uv_ref(handle);
    } else {
        uv_unref(handle);
    }
}

void Environment::RunQueued() {
    std::vector<Item> batch;
    {
        std::lock_guard<std::mutex> guard(mutex_);
        batch.swap(queue_);
        queue_.swap(spare_);
    }
    Reorder(batch);
    for (const Item& item : batch) {
        RunItem(item);
    }
    batch.clear();
    std::lock_guard<std::mutex> guard(mutex_);
    spare_.swap(batch);
    UpdateRef();
}

void Environment::RunItem(const Item& item) {
    napi_handle_scope handles = nullptr;
    napi_callback_scope callbacks = nullptr;
    (void)napi_open_handle_scope(scopeEnv_, &handles);
    (void)napi_open_callback_scope(scopeEnv_, nullptr, asyncContext_, &callbacks);
    item.job(false);
    napi_env env = item.env == nullptr ? gModuleEnv : item.env;
    if (napi_value error = TakePendingException(env)) (void)napi_fatal_exception(env, error);
    if (callbacks != nullptr) (void)napi_close_callback_scope(scopeEnv_, callbacks);
    if (handles != nullptr) (void)napi_close_handle_scope(scopeEnv_, handles);
}

napi_env ModuleEnv() { return gModuleEnv; }

napi_value TakePendingException(napi_env env) {
    bool isPending = false;
    napi_value error = nullptr;
    const bool isTaken = env != nullptr && napi_is_exception_pending(env, &isPending) == napi_ok && isPending &&
                         napi_get_and_clear_last_exception(env, &error) == napi_ok;
    return isTaken ? error : nullptr;
}

napi_value ModuleExports() {
    napi_value exports = nullptr;
    if (gModuleEnv != nullptr) (void)napi_get_reference_value(gModuleEnv, gExports, &exports);
    return exports;
}

void RegisterModule(napi_module* record) { gRecord = record; }

napi_value LoadModule(napi_env env, napi_value exports) {
    if (gRecord == nullptr) {
        (void)napi_throw_error(env, nullptr, "The library registered no module when it was loaded.");
        return nullptr;
    }
    (void)Environment::Attach(env);
    if (gModuleEnv == nullptr) {
        gModuleEnv = env;
        (void)napi_create_reference(env, exports, 1, &gExports);
        (void)napi_add_env_cleanup_hook(
            env, [](void*) { gModuleEnv = nullptr; }, nullptr);
    }
    napi_value result = gRecord->nm_register_func(gModuleEnv, exports);
    napi_value error = env != gModuleEnv ? TakePendingException(gModuleEnv) : nullptr;
    if (error != nullptr) (void)napi_throw(env, error);
    return result;
}

}  // namespace StandIn
