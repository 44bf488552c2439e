#pragma once

namespace StandIn {

/// The one `T` of the process. Never destroyed: detached threads may use it while the process exits.
template <typename T>
T& Forever() {
    static T& object = *new T();
    return object;
}

}  // namespace StandIn
