#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace StandIn {

/// The calls of the module that can be made to fail.
enum class Call : size_t {
#define OWN(name) name,
#define OWN_AS(name, text) OWN(name)
#define REDIRECTED(name) OWN(name)
#define PASSED(name)
#include "calls/calls.def"
};

/// Fault injection into the module's calls. Thread-safe.
class Faults {
public:
    /// One function. Counts its calls since the first `Arm` after the last reset.
    struct Armed {
        const char* name = "";
        uint64_t made = 0;
        uint64_t failed = 0;  // of those, the injected failures
        uint64_t skip = 0;    // of the next calls, those that pass
        uint64_t times = 0;   // and those that fail then
    };

    /// Makes the next `times` calls of the function `name` fail, after `skip` calls that pass. False if there is no
    /// such function that can be made to fail.
    static bool Arm(const std::string& name, uint64_t skip, uint64_t times);
    static void Reset();
    /// All functions that can be made to fail, in the order of calls.def.
    static std::vector<Armed> All();

    /// Whether this call is to fail. Every function that can be made to fail checks this.
    static bool Trip(Call call) { return AreArmed() && TripArmed(call); }

    /// Whether `Arm` armed any function since the last reset.
    static bool AreArmed() { return areArmed_.load(std::memory_order_relaxed); }
    static const char* NameOf(Call call);

private:
    static bool TripArmed(Call call);

    static std::atomic<bool> areArmed_;  // set by the first `Arm` after a reset
};

}  // namespace StandIn
