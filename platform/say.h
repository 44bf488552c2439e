#pragma once

#include <string>

namespace StandIn {

/// What the environment variable GAMEAPI_LOG asks for.
struct PrintedLines {
    int level;      // log lines of this level and above are printed
    bool isSilent;  // nothing else is
};
const PrintedLines& Printed();

/// Writes one line to stderr. Any thread.
void PrintLine(const std::string& line);

/// Prints a warning for testers to stderr, as a line "game device: TEXT", unless the environment variable GAMEAPI_LOG
/// is "off". Any thread.
void Say(const std::string& text);

}  // namespace StandIn
