#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace TAVIK::GAME_PLAYER {

// Shared by the whole process. Callable from any thread.

/// The trace ID for all later requests of the process; empty until it is set.
void SetTraceId(const std::string& traceId);
std::string GetTraceId();

/// Milliseconds since the device booted.
int64_t GetCurrentTimestamp();

/// `length` bytes in base64 (RFC 4648, section 4: with padding, on one line). Returns an empty string and logs if there
/// is nothing to encode or memory runs out. `length` must fit into an int.
std::string Base64Encode(const uint8_t* data, size_t length);

/// Whether the caller is a system application. Logs if it is not.
bool IsSystemAppCalling();

}  // namespace TAVIK::GAME_PLAYER
