#pragma once

namespace StandIn {

/// The library's only `T`, for sources alone: the users of a header might get another. Never destroyed,
/// because detached threads may use it while the process exits.
template <typename T>
T& Forever() {
    static T& object = *new T();
    return object;
}

}  // namespace StandIn
