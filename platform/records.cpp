#include "records.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "clock.h"
#include "faults.h"
#include "forever.h"
#include "served_call.h"
#include "watching.h"

namespace StandIn {
namespace {

constexpr char LETTERS[] = "DIWEF";
constexpr size_t MAX_LINE_LENGTH = 4095;
constexpr int NOTHING = LOG_FATAL + 1;
constexpr int NOT_EVEN_SAID = NOTHING + 1;

int ReadPrintedLevel() {
    const char* wanted = std::getenv("GAMEAPI_LOG");  // NOLINT(concurrency-mt-unsafe): once, while loading
    if (wanted == nullptr || *wanted == '\0') return NOTHING;
    if (std::strcmp(wanted, "off") == 0) return NOT_EVEN_SAID;
    const char* letter = std::strchr(LETTERS, *wanted);
    if (letter != nullptr && wanted[1] == '\0') return LOG_DEBUG + static_cast<int>(letter - LETTERS);
    (void)std::fprintf(
        stderr, "GAMEAPI_LOG is \"%s\", so no log is printed: set it to D, I, W, E, F or off.\n", wanted);
    return NOTHING;
}

// Lines of this level and above are printed. Read while the library is loaded, so that a wrong value is
// reported.
const int PRINTED_LEVEL = ReadPrintedLevel();

// One write per line, so that lines of different threads do not mix.
void WriteLine(const std::string& line) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
}

void Print(const LogLine& line) {
    char time[32];
    const int64_t now = Clock::Get().NowMs();
    (void)std::snprintf(time, sizeof(time), "%lld.%03d ", static_cast<long long>(now / 1000),
                        static_cast<int>(now % 1000));
    WriteLine(time + std::string(1, line.Letter()) + " " + line.tag + ": " + line.message + "\n");
}

// Kept out of `WriteLog`, which runs for every line of every game.
[[gnu::noinline]] void TellLine(const LogLine& line) {
    Watching::Tell(
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

template <typename Record, size_t CAPACITY>
Latest<Record, CAPACITY>& Latest<Record, CAPACITY>::Get() {
    return Forever<Latest>();
}
template LogStore& LogStore::Get();
template EventStore& EventStore::Get();
template ProcessorStore& ProcessorStore::Get();

char LogLine::Letter() const { return LETTERS[std::clamp<int>(level, LOG_DEBUG, LOG_FATAL) - LOG_DEBUG]; }

void Say(const std::string& text) {
    if (PRINTED_LEVEL != NOT_EVEN_SAID) WriteLine("game device: " + text + "\n");
}

int WriteLog(LogLevel level, unsigned int domain, const char* tag, const char* format, va_list arguments) {
    if (tag == nullptr) return -1;
    char message[MAX_LINE_LENGTH + 1];
    (void)std::vsnprintf(message, sizeof(message), WithoutMarks(format).c_str(), arguments);
    const size_t length = std::strlen(message);
    LogLine line{level, domain, tag, std::string(message, length)};
    if (level >= PRINTED_LEVEL) Print(line);
    if (Watching::IsOn()) TellLine(line);
    (void)LogStore::Get().Append(std::move(line));
    return static_cast<int>(length);
}

}  // namespace StandIn

int HiLogPrint(LogType /*type*/, LogLevel level, unsigned int domain, const char* tag, const char* format,
               ...) {
    va_list arguments;
    va_start(arguments, format);
    const int status = StandIn::WriteLog(level, domain, tag, format, arguments);
    va_end(arguments);
    return status;
}

namespace OHOS::HiviewDFX::HiAppEvent {

Event::Event(const std::string& domain, const std::string& name, EventType type)
    : domain_(domain), name_(name), type_(type) {}

#define ADD_PARAM(type) \
    void Event::AddParam(const std::string& key, type value) { params_.emplace_back(key, value); }
ADD_PARAM(bool)
ADD_PARAM(int32_t)
ADD_PARAM(int64_t)
ADD_PARAM(double)
ADD_PARAM(const std::string&)
ADD_PARAM(const std::vector<bool>&)
ADD_PARAM(const std::vector<int32_t>&)
ADD_PARAM(const std::vector<int64_t>&)
ADD_PARAM(const std::vector<double>&)
ADD_PARAM(const std::vector<std::string>&)

int Write(const Event& event) {
    if (StandIn::Faults::Trip(StandIn::Call::Write)) return -1;
    StandIn::MarkEffect();
    if (StandIn::Watching::IsOn()) StandIn::Watching::Tell({"reported", {{"event", event}}});
    (void)StandIn::EventStore::Get().Append(event);
    return 0;
}

int64_t AppEventProcessorMgr::AddProcessor(const ReportConfig& config) {
    if (StandIn::Faults::Trip(StandIn::Call::AddProcessor)) return -1;
    return static_cast<int64_t>(StandIn::ProcessorStore::Get().Append(config));
}

}  // namespace OHOS::HiviewDFX::HiAppEvent
