#ifndef PLATFORM_ENVIRONMENT_H
#define PLATFORM_ENVIRONMENT_H

#include <node_api.h>
#include <uv.h>

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

namespace StandIn {

class Environment;

/// Keeps the loop of one environment from ending while it lives. Movable, droppable on any thread.
class LoopHold
{
public:
    LoopHold() = default;
    explicit LoopHold(std::shared_ptr<Environment> environment);
    LoopHold(LoopHold&& other) noexcept = default;
    LoopHold& operator=(LoopHold&& other) noexcept;
    ~LoopHold() { Drop(); }

    void Drop();
    /// Another hold of the same loop; of none if this one was dropped.
    LoopHold Share() const { return LoopHold(environment_); }

private:
    std::shared_ptr<Environment> environment_;
};

/// The hold of one request: taken when its modal opens or its start begins to wait for a window, dropped when
/// the modal closes, the waiting ends, or the request is answered in JS, whichever comes first.
class RequestHold
{
public:
    explicit RequestHold(LoopHold hold) : hold_(std::move(hold)) {}
    void Drop();
    LoopHold Share();

private:
    std::mutex mutex_;
    LoopHold hold_;
};

/// One JS thread as the device sees it: the main thread or a Worker. Node gives every addon a `napi_env` of
/// its own, so several of them may belong to one Environment. It ends with the first clean-up hook that Node
/// runs for it after those of the module; from then on it takes no work, and what was queued has been handed
/// over.
class Environment : public std::enable_shared_from_this<Environment>
{
public:
    /// Runs on the environment's JS thread inside a handle scope and a callback scope. `isEnding` tells that
    /// the environment is being torn down and no JS may be touched.
    using Job = std::function<void(bool isEnding)>;

    /// The environment of the calling JS thread, made on first use; `env` belongs to it from now on.
    static std::shared_ptr<Environment> Attach(napi_env env);
    /// Any thread. Empty for an environment that has ended or was never attached.
    static std::shared_ptr<Environment> Of(napi_env env);
    /// Any thread. Empty as above.
    static std::shared_ptr<Environment> OfLoop(const uv_loop_t* loop);
    /// The environment of this JS thread; null on other threads and after its end.
    static Environment* Current();
    /// Whether this is the JS thread of `env`, and `env` is alive. The cheap check of every guarded call.
    static bool IsOwn(napi_env env);

    /// Any thread. Queues `job`, first in, first out; an exception it leaves pending in `env` (null: in the
    /// module's own) becomes an uncaught exception. The loop stays alive until it has run. False, dropping
    /// the job, once ended.
    bool Post(napi_env env, Job job);

    uv_loop_t* Loop() const { return loop_; }

    /// The hold of the request that is being started on this thread, for the modal that opens now: on a JS
    /// thread of the promise or callback made last, on a waiting start's thread the one it was born with,
    /// elsewhere one of `environment`'s own.
    static std::shared_ptr<RequestHold> HoldRequest(const std::shared_ptr<Environment>& environment);
    /// A start found no window on this JS thread: the thread born next waits for it.
    static void NoteWindowMissing();
    /// For a thread being born: the hold it takes along; empty unless it will wait for a window.
    static std::shared_ptr<RequestHold> InheritHold();
    /// On a thread just born: what `InheritHold` gave its parent.
    static void AdoptHold(std::shared_ptr<RequestHold> hold);
    /// On that thread, as it ends.
    static void ReturnHold();
    /// Drops the holds of all starts that wait for a window: their threads are never to wake.
    static void DropInheritedHolds();
    /// A promise or callback reference was made on this JS thread: the request now being started.
    static void NoteRequest(const void* settler);
    /// The promise or callback is being settled on this JS thread: its request holds nothing any more.
    static void NoteSettled(const void* settler);

private:
    friend class LoopHold;
    struct Item {
        napi_env env;
        Job job;
    };

    explicit Environment(uv_loop_t* loop) : loop_(loop) {}
    void Start(napi_env env);
    void Hold();
    void Unhold();
    void Wake();
    void UpdateRef();
    void RunQueued();
    void RunItem(const Item& item);
    void End();
    static void CloseEnv(void* env);

    uv_loop_t* const loop_;
    const std::thread::id thread_ = std::this_thread::get_id();
    uv_async_t async_{};
    napi_env scopeEnv_ = nullptr;
    napi_async_context asyncContext_ = nullptr;
    napi_async_cleanup_hook_handle cleanupHandle_ = nullptr;
    std::unordered_map<const void*, std::weak_ptr<RequestHold>> unsettled_;  // JS thread only

    std::mutex mutex_;
    std::deque<Item> queue_;
    size_t holds_ = 0;
    bool hasEnded_ = false;
};

/// Moves an exception pending in `from` to `to`, both of the calling JS thread; whether there was one.
bool MovePendingException(napi_env from, napi_env to);

}  // namespace StandIn

#endif
