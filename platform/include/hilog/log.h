#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

/// The system log. Callable from any thread.

enum LogType { LOG_CORE = 3 };

enum LogLevel { LOG_DEBUG = 3, LOG_INFO = 4, LOG_WARN = 5, LOG_ERROR = 6, LOG_FATAL = 7 };

/// One argument of a log line: a literal, another text, or an integer as a variadic call would pass it. Texts
/// end with a NUL, may be null, and stay the caller's.
struct LogArgument {
    enum class Kind : uint8_t { LITERAL, TEXT, INT32, INT64 };
    union Value {
        const char* text;
        int64_t number;
    };

    /// A text that lives as long as the process: a literal, or `__FUNCTION__`. Other constant arrays of
    /// characters must not be given.
    template <size_t SIZE>
    LogArgument(const char (&literal)[SIZE]) : kind(Kind::LITERAL) {
        value.text = literal;
    }

    template <size_t SIZE>
    LogArgument(char (&text)[SIZE]) : kind(Kind::TEXT) {
        value.text = text;
    }

    template <typename Text, std::enable_if_t<std::is_pointer_v<Text>, int> = 0>
    LogArgument(const Text& text) : kind(Kind::TEXT) {
        value.text = text;
    }

    template <typename Number,
              std::enable_if_t<std::is_integral_v<Number> || std::is_enum_v<Number>, int> = 0>
    LogArgument(Number number) : kind(sizeof(Number) > sizeof(int32_t) ? Kind::INT64 : Kind::INT32) {
        value.number = static_cast<int64_t>(number);
    }

    LogArgument(Kind ofKind, Value ofValue) : value(ofValue), kind(ofKind) {}

    bool IsText() const { return kind == Kind::LITERAL || kind == Kind::TEXT; }

    Value value{};
    Kind kind;
};

/// How many arguments a line may have.
inline constexpr size_t LOG_MAX_ARGUMENTS = 8;

/// `HiLogPrint` with its arguments in an array.
int HiLogWrite(LogLevel level, unsigned int domain, const char* tag, const char* format,
               const LogArgument* arguments, size_t count);

/// Writes one line. `format` is a printf format whose conversions carry a privacy mark after the percent
/// sign, `%{public}d` or `%{private}s`, and whose arguments are texts and integers; `domain` is the 20-bit
/// service domain and `tag` the subject. Tag, format and literals are kept by address until the line is
/// forgotten, other arguments are copied. A line is cut at 4095 bytes. Returns 0, or below 0 if the tag is
/// null.
template <size_t SIZE, typename... Arguments>
int HiLogPrint(LogType /*type*/, LogLevel level, unsigned int domain, const char* tag,
               const char (&format)[SIZE], Arguments&&... arguments) {
    static_assert(sizeof...(Arguments) <= LOG_MAX_ARGUMENTS);
    const LogArgument list[] = {arguments..., 0};  // never empty
    return HiLogWrite(level, domain, tag, format, list, sizeof...(arguments));
}
