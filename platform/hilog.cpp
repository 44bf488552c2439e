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

int ReadPrintedLevel()
{
    const char* wanted = std::getenv("GAMEAPI_LOG");  // NOLINT(concurrency-mt-unsafe): once, while loading
    if (wanted == nullptr || *wanted == '\0') {
        return NOTHING_PRINTED;
    }
    const char* letter = std::strchr(LETTERS, *wanted);
    if (letter == nullptr || wanted[1] != '\0') {
        (void)std::fprintf(
            stderr, "GAMEAPI_LOG is \"%s\", so no log is printed: set it to D, I, W, E or F.\n", wanted);
        return NOTHING_PRINTED;
    }
    return LOG_DEBUG + static_cast<int>(letter - LETTERS);
}

/// Lines of this level and above are printed.
int PrintedLevel()
{
    static const int LEVEL = ReadPrintedLevel();
    return LEVEL;
}

// Asked once while the library is loaded, so that a wrong value is told of even if nothing is ever logged.
[[maybe_unused]] const int PRINTED_AT_LOAD = PrintedLevel();

void Print(const LogLine& line)
{
    char text[MAX_LINE_LENGTH + 128];
    const int64_t now = Clock::Get().NowMs();
    const int length = std::snprintf(text, sizeof(text), "%lld.%03lld %c %s: %s\n",
                                     static_cast<long long>(now / 1000), static_cast<long long>(now % 1000),
                                     LetterOf(line.level), line.tag.c_str(), line.message.c_str());
    const size_t size = std::min(static_cast<size_t>(std::max(length, 0)), sizeof(text) - 1);
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text, size);
}

}  // namespace

char LetterOf(LogLevel level)
{
    return LETTERS[std::clamp<int>(level, LOG_DEBUG, LOG_FATAL) - LOG_DEBUG];
}

LogStore& LogStore::Get()
{
    static LogStore& store = *new LogStore();
    return store;
}

/// Exclusive use of a slot. It takes so little that others wait for it without being put to sleep.
class LogStore::Turn
{
public:
    explicit Turn(Slot& slot) : slot_(slot)
    {
        while (slot_.isInUse.test_and_set(std::memory_order_acquire)) {
            std::this_thread::yield();
        }
    }
    ~Turn() { slot_.isInUse.clear(std::memory_order_release); }

private:
    Slot& slot_;
};

void LogStore::Append(const LogOrigin& origin, std::string_view packedArguments)
{
    const uint64_t number = next_++;
    Slot& slot = slots_[number % CAPACITY];
    const Turn turn(slot);
    if (slot.number > number) {
        return;  // overtaken by a whole round
    }
    slot.number = number;
    slot.origin = origin;
    slot.length = std::min(packedArguments.size(), sizeof(slot.bytes));
    std::memcpy(slot.bytes, packedArguments.data(), slot.length);
    slot.more.assign(packedArguments.substr(slot.length));
}

std::vector<LogLine> LogStore::Lines()
{
    const uint64_t end = next_;
    std::vector<LogLine> lines;
    for (uint64_t number = std::max<uint64_t>(first_, end - std::min(end, CAPACITY)); number < end;
         ++number) {
        Slot& slot = slots_[number % CAPACITY];
        const Turn turn(slot);
        if (slot.number == number) {
            lines.push_back(FormatLine(slot.origin, std::string(slot.bytes, slot.length) + slot.more));
        }
    }
    return lines;
}

}  // namespace StandIn

int HiLogWrite(LogLevel level, unsigned int domain, const char* tag, const char* format,
               const LogArgument* arguments, size_t count)
{
    if (tag == nullptr) {
        return -1;
    }
    const StandIn::LogOrigin origin = {level, domain, tag, format};
    const StandIn::PackedArguments packed(arguments, count);
    StandIn::LogStore::Get().Append(origin, packed.Bytes());
    if (level >= StandIn::PrintedLevel()) {
        StandIn::Print(StandIn::FormatLine(origin, packed.Bytes()));
    }
    return 0;
}
