#pragma once

namespace StandIn {

/// Keeps the library that contains `code` loaded until the process ends: threads of the module may run its code after
/// the last environment that loaded it has ended.
void StayLoaded(const void* code);

}  // namespace StandIn
