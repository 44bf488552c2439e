#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace TAVIK::GAME_PLAYER {

// What the whole process shares. Callable from any thread.

/// The identifier that ties a game's requests together; one for the whole process, empty until it is set.
void SetTraceId(const std::string& traceId);
std::string GetTraceId();

/// Milliseconds since the device booted.
int64_t GetCurrentTimestamp();

/// `length` bytes in base64 (RFC 4648, section 4: with padding, on one line). Empty, and logged, if there is
/// nothing to encode or memory runs out. `length` must fit an int.
std::string Base64Encode(const uint8_t* data, size_t length);

/// Whether the caller is a system application; if not, that is logged.
bool IsSystemAppCalling();

}  // namespace TAVIK::GAME_PLAYER
