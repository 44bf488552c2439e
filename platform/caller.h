#pragma once

namespace StandIn {

/// Makes this process one of a system application, or of an ordinary one again. Thread-safe.
void SetSystemApp(bool isSystem);

}  // namespace StandIn
