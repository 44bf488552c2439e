#include "hilog.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "clock.h"

namespace StandIn {
namespace {

constexpr char LETTERS[] = "DIWEF";
constexpr int NOTHING_PRINTED = LOG_FATAL + 1;

int ReadPrintedLevel() {
    const char* wanted = std::getenv("GAMEAPI_LOG");  // NOLINT(concurrency-mt-unsafe): once, while loading
    if (wanted == nullptr || *wanted == '\0') return NOTHING_PRINTED;
    const char* letter = std::strchr(LETTERS, *wanted);
    if (letter == nullptr || wanted[1] != '\0') {
        (void)std::fprintf(
            stderr, "GAMEAPI_LOG is \"%s\", so no log is printed: set it to D, I, W, E or F.\n", wanted);
        return NOTHING_PRINTED;
    }
    return LOG_DEBUG + static_cast<int>(letter - LETTERS);
}

/// Lines of this level and above are printed.
int PrintedLevel() {
    static const int LEVEL = ReadPrintedLevel();
    return LEVEL;
}

// Asked once while the library is loaded, so that a wrong value is told of even if nothing is ever logged.
[[maybe_unused]] const int PRINTED_AT_LOAD = PrintedLevel();

void Print(const LogLine& line) {
    char text[MAX_LINE_LENGTH + 128];
    const int64_t now = Clock::Get().NowMs();
    const int length = std::snprintf(text, sizeof(text), "%lld.%03lld %c %s: %s\n",
                                     static_cast<long long>(now / 1000), static_cast<long long>(now % 1000),
                                     LetterOf(line.level), line.tag.c_str(), line.message.c_str());
    const size_t size = std::min(static_cast<size_t>(std::max(length, 0)), sizeof(text) - 1);
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text, size);
}

}  // namespace

char LetterOf(LogLevel level) { return LETTERS[std::clamp<int>(level, LOG_DEBUG, LOG_FATAL) - LOG_DEBUG]; }

LogStore& LogStore::Get() {
    static LogStore& store = *new LogStore();
    return store;
}

/// Exclusive use of the store. A line takes some ten nanoseconds, so those who wait are not put to sleep.
class LogStore::Turn {
public:
    explicit Turn(LogStore& store) : store_(store) {
        while (store_.isTaken_.test_and_set(std::memory_order_acquire)) {
            std::this_thread::yield();
        }
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn() { store_.isTaken_.clear(std::memory_order_release); }

private:
    LogStore& store_;
};

void LogStore::Append(const LogOrigin& origin, const LogArgument* arguments, size_t count) {
    const Turn turn(*this);
    Slot& slot = slots_[written_++ % CAPACITY];
    slot.origin = origin;
    slot.arguments.Keep(arguments, count);
}

std::vector<LogLine> LogStore::Lines() {
    std::vector<LogLine> lines;
    for (const Slot& slot : Kept()) {
        lines.push_back(FormatLine(slot.origin, slot.arguments));
    }
    return lines;
}

std::vector<LogStore::Slot> LogStore::Kept() {
    std::vector<Slot> kept;
    kept.reserve(CAPACITY);
    const Turn turn(*this);
    for (size_t i = written_ - std::min(written_, CAPACITY); i < written_; ++i) {
        kept.push_back(slots_[i % CAPACITY]);
    }
    return kept;
}

void LogStore::Clear() {
    const Turn turn(*this);
    written_ = 0;
}

}  // namespace StandIn

int HiLogWrite(LogLevel level, unsigned int domain, const char* tag, const char* format,
               const LogArgument* arguments, size_t count) {
    if (tag == nullptr) return -1;
    const StandIn::LogOrigin origin = {level, domain, tag, format};
    StandIn::LogStore::Get().Append(origin, arguments, count);
    if (level >= StandIn::PrintedLevel()) {
        StandIn::KeptArguments kept;
        kept.Keep(arguments, count);
        StandIn::Print(StandIn::FormatLine(origin, kept));
    }
    return 0;
}
