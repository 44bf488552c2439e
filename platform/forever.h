#pragma once

namespace StandIn {

/// The only `T` of the process. Never destroyed, because detached threads may use it while the process exits.
template <typename T>
T& Forever() {
    static T& object = *new T();
    return object;
}

}  // namespace StandIn
