#include "log_line.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace StandIn {

namespace {

constexpr char TEXT_MARK = 's';  // a number's mark is its size

/// Takes packed arguments apart.
class Unpacker
{
public:
    explicit Unpacker(std::string_view bytes) : rest_(bytes) {}

    bool IsAtEnd() const { return rest_.empty(); }

    /// A text stays in the packed bytes.
    LogArgument Next()
    {
        const char mark = rest_.front();
        rest_.remove_prefix(1);
        if (mark == TEXT_MARK) {
            const char* text = rest_.data();
            rest_.remove_prefix(std::strlen(text) + 1);
            return text;
        }
        int64_t number = 0;
        std::memcpy(&number, rest_.data(), sizeof(number));
        rest_.remove_prefix(sizeof(number) + 1);
        return mark == sizeof(int32_t) ? LogArgument(static_cast<int32_t>(number)) : LogArgument(number);
    }

private:
    std::string_view rest_;
};

/// Past the privacy mark that `text` starts with, if any.
const char* SkipMark(const char* text)
{
    for (const std::string_view mark : {"{public}", "{private}"}) {
        if (std::strncmp(text, mark.data(), mark.size()) == 0) {
            return text + mark.size();
        }
    }
    return text;
}

/// What a conversion makes of an argument. The argument's own type decides its length.
std::string Convert(const std::string& flags, char conversion, const LogArgument& argument)
{
    char text[MAX_LINE_LENGTH + 1];
    if (argument.IsText()) {
        (void)std::snprintf(text, sizeof(text), (flags + "s").c_str(), argument.Text());
        return text;
    }
    const bool isUnsigned = std::strchr("uxXo", conversion) != nullptr;
    const bool isWide = argument.Size() == sizeof(int64_t);
    const int64_t number =
        isUnsigned && !isWide ? static_cast<uint32_t>(argument.Number()) : argument.Number();
    (void)std::snprintf(text, sizeof(text), (flags + "j" + (isUnsigned ? conversion : 'd')).c_str(), number);
    return text;
}

/// The conversion that `format` starts with, behind its percent sign; `format` is behind it then.
std::string ConvertNext(const char*& format, Unpacker& arguments)
{
    format = SkipMark(format);
    if (*format == '%') {
        ++format;
        return "%";
    }
    std::string flags = "%" + std::string(format, std::strspn(format, "-+ #0123456789."));
    format += flags.size() - 1;
    format += std::strspn(format, "hljzt");
    if (*format == '\0' || arguments.IsAtEnd()) {
        return flags;
    }
    return Convert(flags, *format++, arguments.Next());
}

std::string Format(const char* format, Unpacker& arguments)
{
    std::string message;
    while (const char* percent = std::strchr(format, '%')) {
        message.append(format, percent);
        format = percent + 1;
        message += ConvertNext(format, arguments);
    }
    message += format;
    message.resize(std::min(message.size(), MAX_LINE_LENGTH));
    return message;
}

}  // namespace

void PackedArguments::Pack(const LogArgument* arguments, size_t count)
{
    firstSize_ = 0;
    more_.clear();
    size_t room = MAX_LINE_LENGTH;
    for (size_t i = 0; i < std::min(count, MAX_COUNT); ++i) {
        const LogArgument& argument = arguments[i];
        if (argument.IsText()) {
            const char* text = argument.Text() != nullptr ? argument.Text() : "(null)";
            const size_t length = strnlen(text, room);
            room -= length;
            Put(TEXT_MARK, text, length);
        } else {
            const int64_t number = argument.Number();
            Put(static_cast<char>(argument.Size()), &number, sizeof(number));
        }
    }
}

// In one piece, and once one did not fit, all others behind it.
void PackedArguments::Put(char mark, const void* data, size_t size)
{
    if (more_.empty() && size + 2 <= first_.size() - firstSize_) {
        char* place = first_.data() + firstSize_;
        place[0] = mark;
        std::memcpy(place + 1, data, size);
        place[1 + size] = '\0';
        firstSize_ += size + 2;
        return;
    }
    more_ += mark;
    more_.append(static_cast<const char*>(data), size);
    more_ += '\0';
}

LogLine FormatLine(const LogOrigin& origin, const PackedArguments& packed)
{
    const std::string bytes = packed.Bytes();
    Unpacker arguments(bytes);
    return {origin.level, origin.domain, origin.tag, Format(origin.format, arguments)};
}

}  // namespace StandIn
