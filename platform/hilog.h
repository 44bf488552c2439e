#ifndef PLATFORM_HILOG_H
#define PLATFORM_HILOG_H

#include <array>
#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "log_line.h"

namespace StandIn {

/// 'D', 'I', 'W', 'E' or 'F'.
char LetterOf(LogLevel level);

/// The latest lines of the log, oldest forgotten first. Thread-safe.
class LogStore
{
public:
    static LogStore& Get();

    void Append(const LogOrigin& origin, std::string_view packedArguments);
    /// A copy of the lines, oldest first.
    std::vector<LogLine> Lines();
    void Clear();

private:
    static constexpr size_t CAPACITY = 8192;

    class Turn;

    /// The bytes of a line's arguments are mostly few enough to lie in its slot, so that writing line after
    /// line walks straight through the memory.
    struct alignas(64) Slot {
        LogOrigin origin;
        uint32_t length = 0;
        std::array<char, 60> bytes{};
        std::string more;  // keeps its memory for the lines to come
    };

    std::vector<Slot> Kept();

    std::atomic_flag isTaken_ = ATOMIC_FLAG_INIT;
    std::vector<Slot> slots_{CAPACITY};  // a ring
    size_t written_ = 0;                 // lines since the last clear
};

}  // namespace StandIn

#endif
