#include "hilog.h"

#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "clock.h"

namespace StandIn {

namespace {

constexpr size_t LINE_SIZE = 4096;  // the end of the text included
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

/// Past the privacy mark that `text` starts with, if any.
const char* SkipMark(const char* text)
{
    if (*text != '{') {
        return text;
    }
    for (const std::string_view mark : {"{public}", "{private}"}) {
        if (std::strncmp(text, mark.data(), mark.size()) == 0) {
            return text + mark.size();
        }
    }
    return text;
}

/// Copies `format` without its privacy marks, from one percent sign to the next; false if it is too long.
bool StripMarks(const char* format, char (&plain)[LINE_SIZE])
{
    size_t used = 0;
    for (;;) {
        const char* percent = std::strchr(format, '%');
        const size_t length = percent == nullptr ? std::strlen(format) : percent - format;
        if (used + length + 3 > LINE_SIZE) {
            return false;
        }
        std::memcpy(plain + used, format, length);
        used += length;
        if (percent == nullptr) {
            plain[used] = '\0';
            return true;
        }
        plain[used++] = '%';
        format = SkipMark(percent + 1);
        if (*format == '%') {
            plain[used++] = *format++;
        }
    }
}

void Print(LogLevel level, std::string_view tag, std::string_view message)
{
    char line[LINE_SIZE + 128];
    const int64_t now = Clock::Get().NowMs();
    const int length =
        std::snprintf(line, sizeof(line), "%lld.%03lld %c %.*s: %.*s\n", static_cast<long long>(now / 1000),
                      static_cast<long long>(now % 1000), LetterOf(level), static_cast<int>(tag.size()),
                      tag.data(), static_cast<int>(message.size()), message.data());
    const size_t size = std::min(static_cast<size_t>(std::max(length, 0)), sizeof(line) - 1);
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line, size);
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

void LogStore::Append(LogLevel level, unsigned int domain, std::string_view tag, std::string_view message)
{
    std::lock_guard<std::mutex> guard(mutex_);
    const size_t slot = written_++ % CAPACITY;
    LogLine& line = slot < slots_.size() ? slots_[slot] : slots_.emplace_back();
    line.level = level;
    line.domain = domain;
    line.tag.assign(tag);
    line.message.assign(message);
}

std::vector<LogLine> LogStore::Lines()
{
    std::lock_guard<std::mutex> guard(mutex_);
    std::vector<LogLine> lines;
    for (size_t i = written_ - std::min(written_, CAPACITY); i < written_; ++i) {
        lines.push_back(slots_[i % CAPACITY]);
    }
    return lines;
}

void LogStore::Clear()
{
    std::lock_guard<std::mutex> guard(mutex_);
    written_ = 0;
}

}  // namespace StandIn

extern "C" int HiLogPrint(LogType /*type*/, LogLevel level, unsigned int domain, const char* tag,
                          const char* format, ...)
{
    char plain[StandIn::LINE_SIZE];
    char line[StandIn::LINE_SIZE];
    if (tag == nullptr || format == nullptr || !StandIn::StripMarks(format, plain)) {
        return -1;
    }
    va_list arguments;
    va_start(arguments, format);
    const int whole = std::vsnprintf(line, sizeof(line), plain, arguments);
    va_end(arguments);
    if (whole < 0) {
        return whole;
    }
    const std::string_view message(line, std::min<size_t>(whole, sizeof(line) - 1));
    const std::string_view shortTag(tag, strnlen(tag, 31));
    StandIn::LogStore::Get().Append(level, domain, shortTag, message);
    if (level >= StandIn::PrintedLevel()) {
        StandIn::Print(level, shortTag, message);
    }
    return static_cast<int>(message.size());
}
