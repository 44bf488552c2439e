#include "fake_node.h"

#include <dlfcn.h>

#include <atomic>
#include <thread>

#include "analytics.h"
#include "analytics/ha_utils.h"
#include "log.h"

namespace {

// Reported by TearDown, because GoogleTest takes locks when it records a failure.
std::atomic<const char*> gComplaint{nullptr};
thread_local int gHeld = 0;

std::vector<std::string> gDeeds;
std::vector<std::pair<void (*)(void*), void*>> gHooks;
struct Reference {
    napi_env env;
    napi_value value;
    std::thread::id thread = std::this_thread::get_id();
};
std::deque<Reference> gReferences;  // never freed within a test

// Called first in every function of this platform.
napi_status Enter(const char* call, const char* deed = nullptr) {
    if (gHeld > 0) gComplaint = call;
    if (deed != nullptr) gDeeds.emplace_back(deed);
    return napi_ok;
}

void Watch(int change) {
    if (change > 0 && gHeld > 0) gComplaint = "a lock is taken";
    gHeld += change;
}

napi_value ValueOf(napi_env env, napi_ref reference) {
    const auto& [owner, value, thread] = *reinterpret_cast<Reference*>(reference);
    EXPECT_EQ(owner, env) << "a reference is used in another environment than its own";
    EXPECT_EQ(thread, std::this_thread::get_id()) << "a reference is used on another thread than its own";
    return value;
}

}  // namespace

void FakeNodeTest::SetUp() {
    // Created before anything is watched, because the platform creates both under its own lock.
    (void)WithListeners([](GamePlayerEventCallback&) {});
    OHOS::Velmor::HaUtils::ReportEnd("", 0, 0);
    StandIn::EventStore::Get().Clear();
    StandIn::LogStore::Get().Clear();
    SaveEnvInfo(envInfo);
    gEnvInfo = envInfo;
    gComplaint = nullptr;
}

void FakeNodeTest::TearDown() {
    (void)RunHooks();
    const char* complaint = gComplaint;
    EXPECT_TRUE(HasFailure() || complaint == nullptr) << complaint << " with a lock held";
    DeleteEnvInfo(envInfo.get());
    (void)RunLoop();
    gEnvInfo = nullptr;
    gReferences.clear();
}

FakeNodeTest::Deeds FakeNodeTest::RunLoop() {
    while (!gQueue.empty()) {
        const auto [work, after] = gQueue.front();
        gQueue.pop_front();
        after(work, 0);
    }
    return std::exchange(gDeeds, {});
}

size_t FakeNodeTest::RunHooks() {
    const auto hooks = std::exchange(gHooks, {});
    for (const auto& [hook, data] : hooks) {
        hook(data);
    }
    return hooks.size();
}

void FakeNodeTest::On(napi_env env, size_t function, const char* type) {
    (void)WithListeners([&](GamePlayerEventCallback& listeners) {
        listeners.RegisterGameEventCallback(env, type, AsHandle(function), AsHandle(0));
    });
}

FakeNodeTest::Deeds FakeNodeTest::Off(napi_env env, size_t function, const char* type) {
    (void)WithListeners([&](GamePlayerEventCallback& listeners) {
        listeners.UnRegisterGameEventCallback(env, type, function == 0 ? nullptr : AsHandle(function));
    });
    return RunLoop();
}

OHOS::Ace::UIContent* FakeWindow::GetUIContent() {
    Enter("GetUIContent");
    whileFinding();
    return this;
}

int32_t FakeWindow::CreateModalUIExtension(const OHOS::AAFwk::Want& /*want*/, const Callbacks& callbacks,
                                           const OHOS::Ace::ModalUIExtensionConfig& /*config*/) {
    Enter("CreateModalUIExtension");
    opened.push_back(callbacks);
    const auto id = static_cast<int32_t>(opened.size());
    whileOpening();
    return id;
}

void FakeWindow::CloseModalUIExtension(int32_t sessionId) {
    Enter("CloseModalUIExtension");
    closed.push_back(sessionId);
    whileClosing();
}

extern "C" {

// Whether code of this program is there: the module's, or a test's. The platform is in a library.
bool IsInThisProgram(const void* address) {
    Dl_info own{};
    Dl_info found{};
    return dladdr(&gComplaint, &own) != 0 && dladdr(address, &found) != 0 && own.dli_fbase == found.dli_fbase;
}

// Replaces the C library's function in the whole process.
#define WATCH(kind, name, change)                                                              \
    int name(pthread_##kind##_t* lock) noexcept {                                              \
        static const auto real = reinterpret_cast<decltype(&(name))>(dlsym(RTLD_NEXT, #name)); \
        if (IsInThisProgram(__builtin_return_address(0))) Watch(change);                       \
        return real(lock);                                                                     \
    }
WATCH(mutex, pthread_mutex_lock, +1)
WATCH(mutex, pthread_mutex_unlock, -1)
WATCH(rwlock, pthread_rwlock_rdlock, +1)
WATCH(rwlock, pthread_rwlock_wrlock, +1)
WATCH(rwlock, pthread_rwlock_unlock, -1)

int HiLogPrint(LogType /*type*/, LogLevel level, unsigned int domain, const char* tag, const char* format, ...) {
    Enter("HiLogPrint");
    va_list arguments;
    va_start(arguments, format);
    const int status = StandIn::WriteLog(level, domain, tag, format, arguments);
    va_end(arguments);
    return status;
}

int uv_queue_work(uv_loop_t* /*loop*/, uv_work_t* work, uv_work_cb /*run*/, uv_after_work_cb after) {
    if (std::exchange(gIsRefusing, false)) return UV_ENOMEM;
    gQueue.emplace_back(work, after);
    return 0;
}

napi_status napi_get_uv_event_loop(napi_env /*env*/, uv_loop_t** loop) {
    *loop = AsHandle<uv_loop_t*>(3);
    return napi_ok;
}

napi_status napi_open_handle_scope(napi_env /*env*/, napi_handle_scope* scope) {
    *scope = AsHandle<napi_handle_scope>(4);
    return Enter("napi_open_handle_scope", "open");
}

napi_status napi_create_reference(napi_env env, napi_value value, uint32_t /*count*/, napi_ref* reference) {
    gReferences.push_back({env, value});
    *reference = reinterpret_cast<napi_ref>(&gReferences.back());
    return Enter("napi_create_reference");
}

napi_status napi_delete_reference(napi_env env, napi_ref reference) {
    (void)ValueOf(env, reference);
    return Enter("napi_delete_reference", "delete");
}

napi_status napi_get_reference_value(napi_env env, napi_ref reference, napi_value* value) {
    *value = ValueOf(env, reference);
    return Enter("napi_get_reference_value");
}

napi_status napi_strict_equals(napi_env /*env*/, napi_value left, napi_value right, bool* isSame) {
    *isSame = left == right;
    return Enter("napi_strict_equals");
}

napi_status napi_add_env_cleanup_hook(napi_env /*env*/, void (*hook)(void*), void* data) {
    gHooks.emplace_back(hook, data);
    return Enter("napi_add_env_cleanup_hook");
}

napi_status napi_define_properties(napi_env /*env*/, napi_value /*object*/, size_t count,
                                   const napi_property_descriptor* properties) {
    gMethods.assign(properties, properties + count);
    return Enter("napi_define_properties");
}

napi_status napi_create_error(napi_env /*env*/, napi_value /*code*/, napi_value /*message*/, napi_value* value) {
    gWhileCreatingAnError();
    *value = AsHandle(1);
    return Enter("napi_create_error");
}

// Calls that create a value, and calls that are recorded as a deed or only watched.
#define MAKES(name, ...)                              \
    napi_status name(napi_env /*env*/, __VA_ARGS__) { \
        *value = AsHandle(1);                         \
        return Enter(#name);                          \
    }
MAKES(napi_create_string_utf8, const char* /*text*/, size_t /*size*/, napi_value* value)
MAKES(napi_create_int32, int32_t /*number*/, napi_value* value)
MAKES(napi_create_object, napi_value* value)
MAKES(napi_get_undefined, napi_value* value)

#define RECORDS(name, deed, ...) \
    napi_status name(napi_env /*env*/, __VA_ARGS__) { return Enter(#name, deed); }
RECORDS(napi_close_handle_scope, "close", napi_handle_scope /*scope*/)
RECORDS(napi_resolve_deferred, "resolve", napi_deferred /*deferred*/, napi_value /*value*/)
RECORDS(napi_reject_deferred, "reject", napi_deferred /*deferred*/, napi_value /*value*/)
RECORDS(napi_throw, "throw", napi_value /*error*/)
RECORDS(napi_set_named_property, nullptr, napi_value /*object*/, const char* /*name*/, napi_value /*value*/)
RECORDS(napi_call_function, "call", napi_value /*self*/, napi_value /*function*/, size_t /*count*/,
        const napi_value* /*args*/, napi_value* /*result*/)

}  // extern "C"
