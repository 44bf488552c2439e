#include "faults.h"

#include <map>
#include <mutex>

namespace StandIn {

namespace {

struct Fault {
    uint64_t skip = 0;
    uint64_t times = 0;
};

struct Armed {
    std::mutex mutex;
    std::map<std::string, Fault> faults;
};

Armed& State()
{
    static Armed& state = *new Armed();
    return state;
}

constexpr const char* CALLS[] = {
#define WRAPPED(name) #name,
#define OWN(name) #name,
#include "calls.def"
#undef WRAPPED
#undef OWN
};

bool IsKnown(const std::string& call)
{
    for (const char* known : CALLS) {
        if (call == known) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::atomic<bool> Faults::isArmed_{false};

bool Faults::Arm(const std::string& call, uint64_t skip, uint64_t times)
{
    if (!IsKnown(call)) {
        return false;
    }
    Armed& state = State();
    std::lock_guard<std::mutex> guard(state.mutex);
    state.faults[call] = {skip, times};
    isArmed_ = true;
    return true;
}

void Faults::Reset()
{
    Armed& state = State();
    std::lock_guard<std::mutex> guard(state.mutex);
    state.faults.clear();
    isArmed_ = false;
}

bool Faults::TripArmed(const char* call)
{
    Armed& state = State();
    std::lock_guard<std::mutex> guard(state.mutex);
    auto found = state.faults.find(call);
    if (found == state.faults.end()) {
        return false;
    }
    Fault& fault = found->second;
    if (fault.skip > 0) {
        --fault.skip;
        return false;
    }
    if (--fault.times == 0) {
        state.faults.erase(found);
        isArmed_ = !state.faults.empty();
    }
    return true;
}

}  // namespace StandIn
