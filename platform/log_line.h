#ifndef PLATFORM_LOG_LINE_H
#define PLATFORM_LOG_LINE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "hilog/log.h"

namespace StandIn {

inline constexpr size_t MAX_LINE_LENGTH = 4095;
inline constexpr size_t MAX_ARGUMENTS = 16;

/// A line as it is read.
struct LogLine {
    LogLevel level = LOG_DEBUG;
    unsigned int domain = 0;
    std::string tag;
    std::string message;
};

/// What distinguishes one line from another of the same place in the code.
struct LogOrigin {
    LogLevel level = LOG_DEBUG;
    unsigned int domain = 0;
    const char* tag = "";
    const char* format = "";
};

/// The arguments of a log line in a row of bytes. Most lines are never read, so writing one does not format
/// it.
class PackedArguments
{
public:
    PackedArguments(const LogArgument* arguments, size_t count);

    std::string_view Bytes() const { return {bytes_, used_}; }

private:
    void Add(std::string_view text);
    void Add(const LogArgument& number);

    size_t used_ = 0;
    // All texts together fill no more than a line shows; each argument needs a mark, and a NUL or its number.
    char bytes_[MAX_LINE_LENGTH + MAX_ARGUMENTS * (1 + sizeof(int64_t))];
};

/// The line that a format makes of packed arguments.
LogLine FormatLine(const LogOrigin& origin, std::string_view packedArguments);

}  // namespace StandIn

#endif
