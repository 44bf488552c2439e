#include "log_line.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace StandIn {
namespace {

/// Past the privacy mark that `text` starts with, if any.
const char* SkipMark(const char* text) {
    for (const std::string_view mark : {"{public}", "{private}"}) {
        if (std::strncmp(text, mark.data(), mark.size()) == 0) return text + mark.size();
    }
    return text;
}

/// What a conversion makes of an argument. The argument's own type decides its length.
std::string Convert(const std::string& flags, char conversion, const LogArgument& argument) {
    char text[MAX_LINE_LENGTH + 1];
    if (argument.IsText()) {
        const char* shown = argument.value.text != nullptr ? argument.value.text : "(null)";
        (void)std::snprintf(text, sizeof(text), (flags + "s").c_str(), shown);
        return text;
    }
    const bool isUnsigned = std::strchr("uxXo", conversion) != nullptr;
    const bool isWide = argument.kind == LogArgument::Kind::INT64;
    const int64_t number =
        isUnsigned && !isWide ? static_cast<uint32_t>(argument.value.number) : argument.value.number;
    (void)std::snprintf(text, sizeof(text), (flags + "j" + (isUnsigned ? conversion : 'd')).c_str(), number);
    return text;
}

using Arguments = std::vector<LogArgument>;

/// The conversion that `format` starts with, behind its percent sign, of the argument `next`; both are behind
/// it then.
std::string ConvertNext(const char*& format, Arguments::const_iterator& next, const Arguments& arguments) {
    format = SkipMark(format);
    if (*format == '%') {
        ++format;
        return "%";
    }
    std::string flags = "%" + std::string(format, std::strspn(format, "-+ #0123456789."));
    format += flags.size() - 1;
    format += std::strspn(format, "hljzt");
    if (*format == '\0' || next == arguments.end()) return flags;
    return Convert(flags, *format++, *next++);
}

std::string Format(const char* format, const Arguments& arguments) {
    std::string message;
    auto next = arguments.begin();
    while (const char* percent = std::strchr(format, '%')) {
        message.append(format, percent);
        format = percent + 1;
        message += ConvertNext(format, next, arguments);
    }
    message += format;
    message.resize(std::min(message.size(), MAX_LINE_LENGTH));
    return message;
}

}  // namespace

void KeptArguments::Keep(const LogArgument* arguments, size_t count) {
    count_ = count;
    texts_.clear();
    for (size_t i = 0; i < count; ++i) {
        kinds_[i] = arguments[i].kind;
        values_[i] = arguments[i].value;
        if (arguments[i].kind == LogArgument::Kind::TEXT) KeepText(arguments[i].value.text, i);
    }
}

void KeptArguments::KeepText(const char* text, size_t index) {
    if (text == nullptr) {
        kinds_[index] = LogArgument::Kind::LITERAL;
        return;
    }
    texts_.append(text, strnlen(text, MAX_LINE_LENGTH));
    texts_.push_back('\0');
}

std::vector<LogArgument> KeptArguments::Arguments() const {
    std::vector<LogArgument> arguments;
    const char* text = texts_.c_str();
    for (size_t i = 0; i < count_; ++i) {
        LogArgument& argument = arguments.emplace_back(kinds_[i], values_[i]);
        if (argument.kind == LogArgument::Kind::TEXT) {
            argument.value.text = text;
            text += std::strlen(text) + 1;
        }
    }
    return arguments;
}

LogLine FormatLine(const LogOrigin& origin, const KeptArguments& arguments) {
    return {origin.level, origin.domain, origin.tag, Format(origin.format, arguments.Arguments())};
}

}  // namespace StandIn
