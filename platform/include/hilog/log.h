#ifndef PLATFORM_HILOG_LOG_H
#define PLATFORM_HILOG_LOG_H

#include <cstddef>
#include <cstdint>
#include <type_traits>

/// The system log. Callable from any thread.

enum LogType { LOG_CORE = 3 };

enum LogLevel { LOG_DEBUG = 3, LOG_INFO = 4, LOG_WARN = 5, LOG_ERROR = 6, LOG_FATAL = 7 };

/// One argument of a log line: a text, which may be null and ends with a NUL, or an integer as a variadic
/// call would pass it. Does not own the text.
class LogArgument
{
public:
    LogArgument(const char* text) : text_(text) {}

    template <typename Number,
              typename = std::enable_if_t<std::is_integral_v<Number> || std::is_enum_v<Number>>>
    LogArgument(Number number)
        : number_(static_cast<int64_t>(number)),
          size_(sizeof(Number) < sizeof(int) ? sizeof(int) : sizeof(Number))
    {
    }

    bool IsText() const { return size_ == 0; }
    const char* Text() const { return text_; }
    int64_t Number() const { return number_; }
    /// Of the number, in bytes: 4 or 8.
    uint8_t Size() const { return size_; }

private:
    union {
        const char* text_;
        int64_t number_;
    };
    uint8_t size_ = 0;
};

/// `HiLogPrint` with its arguments in an array.
int HiLogWrite(LogLevel level, unsigned int domain, const char* tag, const char* format,
               const LogArgument* arguments, size_t count);

/// Writes one line. `format` is a printf format whose conversions carry a privacy mark after the percent
/// sign, `%{public}d` or `%{private}s`, and whose arguments are texts and integers; `domain` is the 20-bit
/// service domain and `tag` the subject. Tag and format are kept by address until the line is forgotten, the
/// arguments are copied. A line is cut at 4095 bytes. Returns 0, or below 0 if the tag is null.
template <size_t SIZE, typename... Arguments>
int HiLogPrint(LogType /*type*/, LogLevel level, unsigned int domain, const char* tag,
               const char (&format)[SIZE], Arguments... arguments)
{
    const LogArgument list[] = {arguments..., 0};  // never empty
    return HiLogWrite(level, domain, tag, format, list, sizeof...(arguments));
}

#endif
