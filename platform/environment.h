#pragma once

#include <node_api.h>
#include <uv.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <random>
#include <thread>
#include <unordered_map>
#include <vector>

namespace StandIn {

/// Keeps the loop of one environment alive while any copy exists. May be dropped on any thread.
using LoopHold = std::shared_ptr<void>;

/// One JS thread as the device sees it: the main thread or a Worker. Node gives every addon its own `napi_env`, so
/// several of them may belong to one Environment. An Environment ends in the first cleanup hook that Node runs for it
/// after those of the module. From then on it accepts no work, and the jobs that were queued have run with `isEnding`
/// set.
class Environment : public std::enable_shared_from_this<Environment> {
public:
    /// Runs on the environment's JS thread inside a handle scope and a callback scope. If `isEnding` is set, the
    /// environment is being torn down and the job must not touch JS.
    using Job = std::function<void(bool isEnding)>;

    /// The environment of the calling JS thread, created on first use. `env` belongs to it from now on.
    static std::shared_ptr<Environment> Attach(napi_env env);
    /// Any thread. Empty for an environment that has ended or was never attached.
    static std::shared_ptr<Environment> Of(napi_env env);
    /// The environment of this JS thread; null on other threads and after its end.
    static Environment* Current();
    /// Whether this is the JS thread of `env` and `env` is alive. Cheap: every guarded call checks it.
    static bool IsOwn(napi_env env);

    /// Any thread. Queues `job` in FIFO order. An exception that it leaves pending in `env` (null: in the module's own)
    /// becomes an uncaught exception. The loop stays alive until the job has run. Returns false and drops the job if
    /// the environment has ended.
    bool Post(napi_env env, Job job);
    /// Any thread. The same for a request of the module that `loop` completes, with the module's `napi_env` there.
    /// False if there is no such environment.
    static bool PostTo(const uv_loop_t* loop, Job job);
    /// Any thread. How completions come from now on: in any order, drawn from `seed`, or else first in, first out. Each
    /// takes the place of another one, so that whatever was queued after them all comes after them.
    static void SetQueueOrder(bool isAny, uint32_t seed = 0);

    /// Any thread.
    LoopHold Hold();

    uv_loop_t* Loop() const { return loop_; }
    /// Any thread. Whether it has stopped accepting work.
    bool HasEnded() const { return hasEnded_; }

private:
    struct Item {
        napi_env env;
        Job job;
        bool isCompletion = false;
    };

    explicit Environment(uv_loop_t* loop) : loop_(loop) {}
    void Start(napi_env env);
    void Unhold();
    bool Add(Item item);
    void Reorder(std::vector<Item>& items);
    bool IsLoopThread() const { return std::this_thread::get_id() == thread_; }
    void ChangeRef();
    void UpdateRef();
    void RunQueued();
    void RunItem(const Item& item);
    void End();
    static void CloseEnv(void* env);
    static std::shared_ptr<Environment> OfLoop(const uv_loop_t* loop);

    uv_loop_t* const loop_;
    const std::thread::id thread_ = std::this_thread::get_id();
    uv_async_t async_{};
    napi_env scopeEnv_ = nullptr;
    napi_async_context asyncContext_ = nullptr;
    napi_async_cleanup_hook_handle cleanupHandle_ = nullptr;
    std::mt19937 random_;    // this and the next: on the JS thread only
    uint64_t randomOf_ = 0;  // the setting of the order that seeded it

    std::mutex mutex_;  // guards what follows
    std::vector<Item> queue_;
    std::vector<Item> spare_;  // always empty; its memory is reused for the next queue
    size_t holds_ = 0;
    std::atomic<bool> hasEnded_{false};  // written under the lock
};

/// The module's `napi_env` on the calling JS thread; null if the module was never loaded there.
napi_env ModuleEnv();

/// The module's exports on the calling JS thread; null if it has none there.
napi_value ModuleExports();

/// Calls the register function of the record that the module's load-time constructor registered. On the device a JS
/// thread has one environment, so a second load on the same thread gets the first one again.
napi_value LoadModule(napi_env env, napi_value exports);

/// Clears and returns the exception pending in `env`; null if there is none or `env` is null. On the JS thread of
/// `env`.
napi_value TakePendingException(napi_env env);

}  // namespace StandIn
