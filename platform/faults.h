#ifndef PLATFORM_FAULTS_H
#define PLATFORM_FAULTS_H

#include <atomic>
#include <cstdint>
#include <string>

namespace StandIn {

/// Calls of the module that are to fail on purpose. Thread-safe.
class Faults
{
public:
    /// Lets the next `times` calls of the function `call` fail, after `skip` good ones. False if no function
    /// of that name is known.
    static bool Arm(const std::string& call, uint64_t skip, uint64_t times);
    static void Reset();

    /// Asked by every function that can fail on purpose: whether this call is to. `call` is one of the names
    /// in calls.def.
    static bool Trip(const char* call) { return isArmed_.load(std::memory_order_relaxed) && TripArmed(call); }

private:
    static bool TripArmed(const char* call);

    static std::atomic<bool> isArmed_;
};

}  // namespace StandIn

#endif
