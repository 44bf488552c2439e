#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace StandIn {

/// The calls of the module that can be made to fail.
enum class Call : size_t {
#define WRAPPED(name) name,
#define WRAPPED_AS(symbol, name, text) name,
#define OWN(name) name,
#include "wrap/calls.def"
#undef WRAPPED
#undef WRAPPED_AS
#undef OWN
};

/// Calls of the module that are to fail on purpose. Thread-safe.
class Faults {
public:
    /// What became of the calls of one function since the first `Arm` after the last reset.
    struct Record {
        const char* name = "";
        uint64_t made = 0;
        uint64_t failed = 0;  // of those, on purpose
    };

    /// Lets the next `times` calls of the function `name` fail, after `skip` good ones. False if no function
    /// of that name can.
    static bool Arm(const std::string& name, uint64_t skip, uint64_t times);
    static void Reset();
    /// All functions that can fail on purpose, in the order of calls.def.
    static std::vector<Record> Records();

    /// Asked by every function that can fail on purpose: whether this call is to.
    static bool Trip(Call call) { return IsWatching() && TripWatched(call); }

    /// Whether any call was told to fail since the last reset.
    static bool IsWatching() { return isWatching_.load(std::memory_order_relaxed); }

    static const char* NameOf(Call call);

private:
    static bool TripWatched(Call call);

    static std::atomic<bool> isWatching_;  // from the first `Arm` after a reset on
};

}  // namespace StandIn
