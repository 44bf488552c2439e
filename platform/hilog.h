#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

#include "log_line.h"

namespace StandIn {

/// 'D', 'I', 'W', 'E' or 'F'.
char LetterOf(LogLevel level);

/// The latest lines of the log, oldest forgotten first. Thread-safe.
class LogStore {
public:
    static LogStore& Get();

    void Append(const LogOrigin& origin, const LogArgument* arguments, size_t count);
    /// A copy of the lines, oldest first.
    std::vector<LogLine> Lines();
    void Clear();

private:
    static constexpr size_t CAPACITY = 8192;

    class Turn;

    /// Of two cache lines, one slot behind another: the memory is written straight through.
    struct alignas(64) Slot {
        LogOrigin origin;
        KeptArguments arguments;
    };

    std::vector<Slot> Kept();

    std::atomic_flag isTaken_ = ATOMIC_FLAG_INIT;
    std::vector<Slot> slots_{CAPACITY};  // a ring
    size_t written_ = 0;                 // lines since the last clear
};

}  // namespace StandIn
