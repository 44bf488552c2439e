#include "fake_node.h"

#include <atomic>
#include <deque>
#include <mutex>
#include <utility>

#include "ability_context.h"
#include "analytics/ha_utils.h"
#include "events/game_player_event_callback.h"
#include "records.h"

using namespace TAVIK::GAME_PLAYER;

namespace {

std::atomic<bool> gIsWatching{false};
std::atomic<const char*> gComplaint{nullptr};
thread_local int gHeld = 0;

// Told by TearDown: GoogleTest takes locks of its own when it notes a failure.
void Complain(const char* what) {
    if (gIsWatching) gComplaint = what;
}

// At the start of everything that the platform does for the module.
void Enter(const char* call) {
    if (gHeld > 0) Complain(call);
}

void Watch(int change) {
    if (change > 0 && gHeld > 0) Complain("a lock is taken");
    gHeld += change;
}

struct Reference {
    napi_env env;
    napi_value value;
};

struct Work {
    uv_work_t* request;
    uv_after_work_cb after;
};

/// Makes no use of the locks that are watched.
class Spin {
public:
    void lock()  // NOLINT(readability-identifier-naming): as std::lock_guard wants it
    {
        while (flag_.test_and_set()) {
        }
    }
    void unlock() { flag_.clear(); }  // NOLINT(readability-identifier-naming)

private:
    std::atomic_flag flag_ = ATOMIC_FLAG_INIT;
};

std::atomic<bool> gIsRefusing{false};
Spin gSpin;
std::deque<Work> gQueue;          // guarded by gSpin
std::vector<std::string> gDeeds;  // of the JS thread alone, like what follows
std::vector<std::pair<void (*)(void*), void*>> gHooks;
std::deque<Reference> gReferences;  // never freed within a test

napi_status Note(const char* call, const char* deed) {
    Enter(call);
    gDeeds.emplace_back(deed);
    return napi_ok;
}

napi_status Make(const char* call, napi_value* value) {
    Enter(call);
    *value = AsHandle(1);
    return napi_ok;
}

Reference& Own(napi_env env, napi_ref ref) {
    auto& reference = *reinterpret_cast<Reference*>(ref);
    EXPECT_EQ(reference.env, env) << "a reference is used in another environment than its own";
    return reference;
}

class FakeContext final : public OHOS::AbilityRuntime::AbilityContext {
public:
    explicit FakeContext(FakeContent& content) : content_(content) {}

    OHOS::Ace::UIContent* GetUIContent() override {
        Enter("GetUIContent");
        return &content_;
    }
    std::shared_ptr<Context> CreateModuleContext(const std::string& /*name*/) override { return nullptr; }
    std::shared_ptr<OHOS::Global::Resource::ResourceManager> GetResourceManager() const override {
        return nullptr;
    }

protected:
    bool IsContext(size_t /*contextTypeId*/) const override { return true; }

private:
    FakeContent& content_;
};

}  // namespace

void RefuseNextWork() { gIsRefusing = true; }

void FakeNodeTest::SetUp() {
    // Made before anything is watched: the platform makes both under a lock of its own.
    (void)WithListeners([](GamePlayerEventCallback&) {});
    OHOS::Velmor::HaUtils::ReportEnd("", 0, 0);
    StandIn::EventStore::Get().Clear();
    StandIn::LogStore::Get().Clear();
    SaveEnvInfo(envInfo);
    gEnvInfo = envInfo;
    gIsWatching = true;
}

void FakeNodeTest::TearDown() {
    for (const auto& [hook, data] : std::exchange(gHooks, {})) {
        hook(data);
    }
    gIsWatching = false;
    const char* complaint = gComplaint.exchange(nullptr);
    EXPECT_TRUE(HasFailure() || complaint == nullptr) << complaint << " with a lock held";
    DeleteEnvInfo(envInfo.get());
    (void)RunLoop();
    gEnvInfo = nullptr;
    gReferences.clear();
}

FakeNodeTest::Deeds FakeNodeTest::RunLoop() {
    for (;;) {
        std::deque<Work> batch;
        {
            std::lock_guard<Spin> guard(gSpin);
            batch.swap(gQueue);
        }
        if (batch.empty()) return std::exchange(gDeeds, {});
        for (const Work& work : batch) {
            work.after(work.request, 0);
        }
    }
}

int32_t FakeContent::CreateModalUIExtension(OHOS::AAFwk::Want want, Callbacks callbacks,
                                            OHOS::Ace::ModalUIExtensionConfig /*config*/) {
    Enter("CreateModalUIExtension");
    wants.push_back(std::move(want));
    opened.push_back(std::move(callbacks));
    const auto id = static_cast<int32_t>(opened.size());
    whileOpening();
    return id;
}

void FakeContent::CloseModalUIExtension(int32_t sessionId) {
    Enter("CloseModalUIExtension");
    closed.push_back(sessionId);
    whileClosing();
}

std::shared_ptr<BaseContext> MakeRequest(FakeContent& content, int32_t requestType) {
    auto request = std::make_shared<BaseContext>();
    request->requestType = requestType;
    request->abilityContext = std::make_shared<FakeContext>(content);
    request->deferred = AsHandle<napi_deferred>(2);
    return request;
}

extern "C" {

#define WATCH(name, change)         \
    int __real_##name(void* lock);  \
    int __wrap_##name(void* lock) { \
        Watch(change);              \
        return __real_##name(lock); \
    }
WATCH(pthread_mutex_lock, +1)
WATCH(pthread_mutex_unlock, -1)
WATCH(pthread_rwlock_rdlock, +1)
WATCH(pthread_rwlock_wrlock, +1)
WATCH(pthread_rwlock_unlock, -1)

int __wrap_HiLogPrint(LogType /*type*/, LogLevel level, unsigned int domain, const char* tag,
                      const char* format, ...) {
    Enter("HiLogPrint");
    va_list arguments;
    va_start(arguments, format);
    const int status = StandIn::WriteLog(level, domain, tag, format, arguments);
    va_end(arguments);
    return status;
}

napi_status napi_get_uv_event_loop(napi_env /*env*/, uv_loop_t** loop) {
    *loop = AsHandle<uv_loop_t*>(3);
    return napi_ok;
}

int uv_queue_work(uv_loop_t* /*loop*/, uv_work_t* request, uv_work_cb /*run*/, uv_after_work_cb after) {
    if (gIsRefusing.exchange(false)) return UV_ENOMEM;
    std::lock_guard<Spin> guard(gSpin);
    gQueue.push_back({request, after});
    return 0;
}

napi_status napi_open_handle_scope(napi_env /*env*/, napi_handle_scope* scope) {
    *scope = AsHandle<napi_handle_scope>(4);
    return Note("napi_open_handle_scope", "open");
}

napi_status napi_create_reference(napi_env env, napi_value value, uint32_t /*count*/, napi_ref* reference) {
    Enter("napi_create_reference");
    gReferences.push_back({env, value});
    *reference = reinterpret_cast<napi_ref>(&gReferences.back());
    return napi_ok;
}

napi_status napi_delete_reference(napi_env env, napi_ref reference) {
    (void)Own(env, reference);
    return Note("napi_delete_reference", "delete");
}

napi_status napi_get_reference_value(napi_env env, napi_ref reference, napi_value* value) {
    Enter("napi_get_reference_value");
    *value = Own(env, reference).value;
    return napi_ok;
}

napi_status napi_strict_equals(napi_env /*env*/, napi_value left, napi_value right, bool* isSame) {
    Enter("napi_strict_equals");
    *isSame = left == right;
    return napi_ok;
}

#define MAKES(name, ...) \
    napi_status name(napi_env /*env*/, __VA_ARGS__) { return Make(#name, value); }
MAKES(napi_create_error, napi_value /*code*/, napi_value /*message*/, napi_value* value)
MAKES(napi_create_string_utf8, const char* /*text*/, size_t /*size*/, napi_value* value)
MAKES(napi_create_int32, int32_t /*number*/, napi_value* value)
MAKES(napi_create_object, napi_value* value)
MAKES(napi_get_undefined, napi_value* value)

#define NOTES(name, deed, ...) \
    napi_status name(napi_env /*env*/, __VA_ARGS__) { return Note(#name, deed); }
NOTES(napi_close_handle_scope, "close", napi_handle_scope /*scope*/)
NOTES(napi_resolve_deferred, "resolve", napi_deferred /*deferred*/, napi_value /*value*/)
NOTES(napi_reject_deferred, "reject", napi_deferred /*deferred*/, napi_value /*value*/)
NOTES(napi_throw, "throw", napi_value /*error*/)
NOTES(napi_call_function, "call", napi_value /*self*/, napi_value /*function*/, size_t /*count*/,
      const napi_value* /*args*/, napi_value* /*result*/)

napi_status napi_set_named_property(napi_env /*env*/, napi_value /*object*/, const char* /*name*/,
                                    napi_value /*value*/) {
    Enter("napi_set_named_property");
    return napi_ok;
}

napi_status napi_add_env_cleanup_hook(napi_env /*env*/, void (*hook)(void*), void* data) {
    Enter("napi_add_env_cleanup_hook");
    gHooks.emplace_back(hook, data);
    return napi_ok;
}

}  // extern "C"
