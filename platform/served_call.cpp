#include "served_call.h"

#include <atomic>
#include <deque>
#include <mutex>
#include <utility>

#include "calls/call_records.h"
#include "forever.h"
#include "modals.h"

namespace StandIn {
namespace {

thread_local ServedCall* gServed = nullptr;
std::atomic<uint64_t> gCalls{0};

/// A method as the module defines it.
struct Method {
    napi_callback callback;
    const char* name;
    void* data;
};

/// All methods that were ever defined. Every environment defines the same ones.
struct Methods {
    std::mutex mutex;  // guards the methods; nothing is called under it
    std::deque<Method> methods;
};

const Method& Intern(const Method& method) {
    auto& all = Forever<Methods>();
    std::lock_guard<std::mutex> guard(all.mutex);
    for (const Method& known : all.methods) {
        if (known.callback == method.callback && known.name == method.name && known.data == method.data) return known;
    }
    return all.methods.emplace_back(method);
}

napi_value CallMethod(napi_env env, napi_callback_info info) {
    void* data = nullptr;
    (void)napi_get_cb_info(env, info, nullptr, nullptr, nullptr, &data);
    const auto& method = *static_cast<const Method*>(data);
    ServedCall call;
    call.number = ++gCalls;
    call.method = method.name;
    call.info = info;
    call.data = method.data;
    const ServedCallScope scope(std::move(call));
    napi_value result = method.callback(env, info);
    RecordEndOfCall(env);
    return result;
}

}  // namespace

ServedCallScope::ServedCallScope(ServedCall call) : call_(std::move(call)), outer_(std::exchange(gServed, &call_)) {}

ServedCallScope::~ServedCallScope() { gServed = outer_; }

ServedCall* Served() { return gServed; }

ServedCall ServedByNewThread() {
    ServedCall call;
    if (gServed != nullptr) {
        call.number = gServed->number;
        call.method = gServed->method;
        call.requestType = gServed->requestType;
    }
    call.occasion.isTimer = true;
    call.occasion.requestType = call.requestType.value_or(TypeOfRequest(call.method));
    return call;
}

void MarkEffect() {
    if (gServed != nullptr) gServed->hasEffect = true;
}

void ServeMethods(std::vector<napi_property_descriptor>& properties) {
    for (napi_property_descriptor& property : properties) {
        if (property.method == nullptr) continue;
        const char* name = property.utf8name != nullptr ? property.utf8name : "";
        property.data = const_cast<Method*>(&Intern({property.method, name, property.data}));
        property.method = CallMethod;
    }
}

}  // namespace StandIn
