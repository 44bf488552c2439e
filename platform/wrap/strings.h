#pragma once

#include <node_api.h>

namespace StandIn {

/// Sets whether the module reads strings as the device gives them, the default, or as Node does. Any thread.
void SetPlatformStrings(bool isLikePlatform);

// Where the strings come from that the served call reads, so that a warning can name them. On its JS thread.

/// `value` is a property of an object.
void KeepProperty(napi_value value, const char* name);
/// `value` is an element of the array that was kept last.
void KeepElement(napi_value value, uint32_t index);

}  // namespace StandIn
