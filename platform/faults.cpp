#include "faults.h"

#include <mutex>

namespace StandIn {
namespace {

/// Which of the next calls of one function fail, and its counts so far.
struct Watched {
    Faults::Record record;
    uint64_t skip = 0;
    uint64_t times = 0;
};

std::mutex gMutex;  // guards the table

Watched gWatched[] = {
#define OWN(name) {{#name}},
#define WRAPPED(name) OWN(name)
#define WRAPPED_AS(symbol, name, text) {{text}},
#include "wrap/calls.def"
};

}  // namespace

std::atomic<bool> Faults::isWatching_{false};

const char* Faults::NameOf(Call call) { return gWatched[static_cast<size_t>(call)].record.name; }

bool Faults::Arm(const std::string& name, uint64_t skip, uint64_t times) {
    std::lock_guard<std::mutex> guard(gMutex);
    for (Watched& watched : gWatched) {
        if (name != watched.record.name) continue;
        watched.skip = skip;
        watched.times = times;
        isWatching_ = true;
        return true;
    }
    return false;
}

void Faults::Reset() {
    std::lock_guard<std::mutex> guard(gMutex);
    isWatching_ = false;
    for (Watched& watched : gWatched) {
        watched = {{watched.record.name}};
    }
}

std::vector<Faults::Record> Faults::Records() {
    std::lock_guard<std::mutex> guard(gMutex);
    std::vector<Record> records;
    for (const Watched& watched : gWatched) {
        records.push_back(watched.record);
    }
    return records;
}

bool Faults::TripWatched(Call call) {
    std::lock_guard<std::mutex> guard(gMutex);
    Watched& watched = gWatched[static_cast<size_t>(call)];
    ++watched.record.made;
    if (watched.times == 0) return false;
    if (watched.skip > 0) {
        --watched.skip;
        return false;
    }
    --watched.times;
    ++watched.record.failed;
    return true;
}

}  // namespace StandIn
