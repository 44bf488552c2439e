#pragma once

namespace StandIn {

/// This library's only `T`. Never destroyed, because detached threads may use it while the process exits. Not for
/// inline functions in headers, which can give each library its own.
template <typename T>
T& Forever() {
    static T& object = *new T();
    return object;
}

}  // namespace StandIn
