#include "faults.h"

#include <cstring>
#include <mutex>

namespace StandIn {
namespace {

/// One function that can fail on purpose, its standing order, and its calls so far.
struct Watched {
    const char* call;
    uint64_t skip;
    uint64_t times;
    uint64_t made;
    uint64_t failed;
};

std::mutex gMutex;

Watched gWatched[] = {
#define WATCHED(name) {name, 0, 0, 0, 0},
#define WRAPPED(name) WATCHED(#name)
#define WRAPPED_AS(name, symbol) WATCHED(name)
#define OWN(name) WATCHED(#name)
#include "calls.def"
#undef WATCHED
#undef WRAPPED
#undef WRAPPED_AS
#undef OWN
};

Watched* Find(const char* call) {
    for (Watched& watched : gWatched) {
        if (std::strcmp(watched.call, call) == 0) return &watched;
    }
    return nullptr;
}

}  // namespace

std::atomic<bool> Faults::isWatching_{false};

bool Faults::Arm(const std::string& call, uint64_t skip, uint64_t times) {
    std::lock_guard<std::mutex> guard(gMutex);
    Watched* watched = Find(call.c_str());
    if (watched == nullptr) return false;
    watched->skip = skip;
    watched->times = times;
    isWatching_ = true;
    return true;
}

void Faults::Reset() {
    std::lock_guard<std::mutex> guard(gMutex);
    isWatching_ = false;
    for (Watched& watched : gWatched) {
        watched = {watched.call, 0, 0, 0, 0};
    }
}

std::vector<Faults::Record> Faults::Records() {
    std::lock_guard<std::mutex> guard(gMutex);
    std::vector<Record> records;
    for (const Watched& watched : gWatched) {
        records.push_back({watched.call, watched.made, watched.failed});
    }
    return records;
}

bool Faults::TripWatched(const char* call) {
    std::lock_guard<std::mutex> guard(gMutex);
    Watched* watched = Find(call);
    if (watched == nullptr) return false;
    ++watched->made;
    if (watched->times == 0) return false;
    if (watched->skip > 0) {
        --watched->skip;
        return false;
    }
    --watched->times;
    ++watched->failed;
    return true;
}

}  // namespace StandIn
