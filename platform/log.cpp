#include "log.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

#include "clock.h"
#include "forever.h"
#include "record_stream.h"
#include "say.h"

namespace StandIn {
namespace {

constexpr char LETTERS[] = "DIWEF";
constexpr size_t MAX_LINE_LENGTH = 4095;

void Print(const LogLine& line) {
    char time[32];
    const int64_t now = Clock::Get().NowMs();
    (void)std::snprintf(time, sizeof(time), "%lld.%03d ", static_cast<long long>(now / 1000),
                        static_cast<int>(now % 1000));
    PrintLine(time + std::string(1, line.Letter()) + " " + line.tag + ": " + line.message);
}

// Kept out of `WriteLog`, which runs for every line of every game.
[[gnu::noinline]] void PublishLine(const LogLine& line) {
    RecordStream::Publish(
        {"log", {{"level", std::string(1, line.Letter())}, {"tag", line.tag}, {"message", line.message}}});
}

std::string WithoutMarks(const char* format) {
    std::string plain;
    while (const char* percent = std::strchr(format, '%')) {
        plain.append(format, percent + 1);
        format = percent + 1;
        if (*format == '%') {
            plain += *format++;
            continue;
        }
        for (const char* mark : {"{public}", "{private}"}) {
            if (std::strncmp(format, mark, std::strlen(mark)) == 0) format += std::strlen(mark);
        }
    }
    return plain + format;
}

}  // namespace

template <>
LogStore& LogStore::Get() {
    return Forever<LogStore>();
}

char LogLine::Letter() const { return LETTERS[std::clamp<int>(level, LOG_DEBUG, LOG_FATAL) - LOG_DEBUG]; }

int WriteLog(LogLevel level, unsigned int domain, const char* tag, const char* format, va_list arguments) {
    if (tag == nullptr) return -1;
    char message[MAX_LINE_LENGTH + 1];
    (void)std::vsnprintf(message, sizeof(message), WithoutMarks(format).c_str(), arguments);
    const size_t length = std::strlen(message);
    LogLine line{level, domain, tag, std::string(message, length)};
    if (level >= Printed().level) Print(line);
    if (RecordStream::HasSubscribers()) PublishLine(line);
    (void)LogStore::Get().Append(std::move(line));
    return static_cast<int>(length);
}

}  // namespace StandIn

int HiLogPrint(LogType /*type*/, LogLevel level, unsigned int domain, const char* tag, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int status = StandIn::WriteLog(level, domain, tag, format, arguments);
    va_end(arguments);
    return status;
}
