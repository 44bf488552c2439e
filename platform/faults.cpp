#include "faults.h"

#include <mutex>

namespace StandIn {
namespace {

/// Which of the next calls of one function fail, and its counts so far.
struct ArmedCall {
    Faults::Armed counts;
    uint64_t skip = 0;
    uint64_t times = 0;
};

std::mutex gMutex;  // guards the table

ArmedCall gCalls[] = {
#define OWN(name) {{#name}},
#define WRAPPED(name) OWN(name)
#define WRAPPED_AS(symbol, name, text) {{text}},
#include "wrap/calls.def"
};

}  // namespace

std::atomic<bool> Faults::areArmed_{false};

const char* Faults::NameOf(Call call) { return gCalls[static_cast<size_t>(call)].counts.name; }

bool Faults::Arm(const std::string& name, uint64_t skip, uint64_t times) {
    std::lock_guard<std::mutex> guard(gMutex);
    for (ArmedCall& call : gCalls) {
        if (name != call.counts.name) continue;
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
    for (ArmedCall& call : gCalls) {
        call = {{call.counts.name}};
    }
}

std::vector<Faults::Armed> Faults::All() {
    std::lock_guard<std::mutex> guard(gMutex);
    std::vector<Armed> all;
    for (const ArmedCall& call : gCalls) {
        all.push_back(call.counts);
    }
    return all;
}

bool Faults::TripArmed(Call call) {
    std::lock_guard<std::mutex> guard(gMutex);
    ArmedCall& armed = gCalls[static_cast<size_t>(call)];
    ++armed.counts.made;
    if (armed.times == 0) return false;
    if (armed.skip > 0) {
        --armed.skip;
        return false;
    }
    --armed.times;
    ++armed.counts.failed;
    return true;
}

}  // namespace StandIn
