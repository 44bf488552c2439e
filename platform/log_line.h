#ifndef PLATFORM_LOG_LINE_H
#define PLATFORM_LOG_LINE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

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

/// The arguments of a log line in a row of bytes. Most lines are never read, so writing one does not format
/// it. Few bytes lie in the object itself.
class PackedArguments
{
public:
    /// Replaces what was packed. Texts are cut where the line would be in any case.
    void Pack(const LogArgument* arguments, size_t count);

    std::string Bytes() const { return std::string(first_.data(), firstSize_) + more_; }

private:
    static constexpr size_t MAX_COUNT = 16;

    void Put(char mark, const void* data, size_t size);

    std::string more_;  // keeps its memory for the next line
    uint32_t firstSize_ = 0;
    std::array<char, 60> first_{};
};

/// The line that a format makes of its arguments.
LogLine FormatLine(const LogOrigin& origin, const PackedArguments& packed);

}  // namespace StandIn

#endif
