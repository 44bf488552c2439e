#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "hilog/log.h"

namespace StandIn {

inline constexpr size_t MAX_LINE_LENGTH = 4095;

/// A line as it is read.
struct LogLine {
    LogLevel level = LOG_DEBUG;
    unsigned int domain = 0;
    std::string tag;
    std::string message;
};

/// What all lines of one place in the code have in common. Tag and format are kept by address.
struct LogOrigin {
    LogLevel level = LOG_DEBUG;
    unsigned int domain = 0;
    const char* tag = "";
    const char* format = "";
};

/// The arguments of a log line, kept as they came: most lines are never read, so writing one does not format
/// it. Copies the texts that are no literals.
class KeptArguments {
public:
    /// Replaces what was kept. Texts are cut where the line would be in any case.
    void Keep(const LogArgument* arguments, size_t count);

    /// The arguments as they came; copied texts are in this object.
    std::vector<LogArgument> Arguments() const;

private:
    void KeepText(const char* text, size_t index);

    uint8_t count_ = 0;
    std::array<LogArgument::Kind, LOG_MAX_ARGUMENTS> kinds_{};
    std::array<LogArgument::Value, LOG_MAX_ARGUMENTS> values_{};
    std::string texts_;  // keeps its memory for the next line
};

/// The line that a format makes of its arguments.
LogLine FormatLine(const LogOrigin& origin, const KeptArguments& arguments);

}  // namespace StandIn
