#include "faults.h"

#include <iterator>
#include <mutex>

namespace StandIn {
namespace {

std::mutex gMutex;  // guards the table

Faults::Armed gCalls[] = {
#define OWN(name) {#name},
#define OWN_AS(name, text) {text},
#define REDIRECTED(name) OWN(name)
#define PASSED(name)
#include "calls/calls.def"
};

}  // namespace

std::atomic<bool> Faults::areArmed_{false};

const char* Faults::NameOf(Call call) { return gCalls[static_cast<size_t>(call)].name; }

bool Faults::Arm(const std::string& name, uint64_t skip, uint64_t times) {
    std::lock_guard<std::mutex> guard(gMutex);
    for (Armed& call : gCalls) {
        if (name != call.name) continue;
        call.skip = skip;
        call.times = times;
        areArmed_ = true;
        return true;
    }
    return false;
}

void Faults::Reset() {
    std::lock_guard<std::mutex> guard(gMutex);
    areArmed_ = false;
    for (Armed& call : gCalls) {
        call = {call.name};
    }
}

std::vector<Faults::Armed> Faults::All() {
    std::lock_guard<std::mutex> guard(gMutex);
    return {std::begin(gCalls), std::end(gCalls)};
}

bool Faults::TripArmed(Call call) {
    std::lock_guard<std::mutex> guard(gMutex);
    Armed& armed = gCalls[static_cast<size_t>(call)];
    ++armed.made;
    if (armed.times == 0) return false;
    if (armed.skip > 0) {
        --armed.skip;
        return false;
    }
    --armed.times;
    ++armed.failed;
    return true;
}

}  // namespace StandIn
