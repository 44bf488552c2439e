#ifndef PLATFORM_HILOG_H
#define PLATFORM_HILOG_H

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "log_line.h"

namespace StandIn {

/// 'D', 'I', 'W', 'E' or 'F'.
char LetterOf(LogLevel level);

/// The latest lines of the log, oldest forgotten first. Thread-safe; writers wait for each other only where
/// they write the same slot, which is once in a round of the ring.
class LogStore
{
public:
    static LogStore& Get();

    void Append(const LogOrigin& origin, std::string_view packedArguments);
    /// A copy of the lines, oldest first.
    std::vector<LogLine> Lines();
    void Clear() { first_ = next_.load(); }

private:
    static constexpr uint64_t CAPACITY = 8192;

    /// One line and its number. The bytes of its arguments are mostly few enough to lie in the slot, so that
    /// writing line after line walks straight through the memory.
    struct alignas(64) Slot {
        std::atomic_flag isInUse = ATOMIC_FLAG_INIT;
        uint64_t number = 0;
        LogOrigin origin;
        uint32_t length = 0;
        char bytes[44];
        std::string more;  // keeps its memory for the lines to come
    };

    class Turn;

    std::vector<Slot> slots_{CAPACITY};
    std::atomic<uint64_t> next_{1};   // the number of the next line
    std::atomic<uint64_t> first_{1};  // of the first since the last clear
};

}  // namespace StandIn

#endif
