#include "say.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "hilog/log.h"

namespace StandIn {
namespace {

constexpr char LETTERS[] = "DIWEF";
constexpr int NOTHING = LOG_FATAL + 1;

PrintedLines ReadPrinted() {
    const char* wanted = std::getenv("GAMEAPI_LOG");  // NOLINT(concurrency-mt-unsafe): once, while loading
    if (wanted == nullptr || *wanted == '\0') return {NOTHING, false};
    if (std::strcmp(wanted, "off") == 0) return {NOTHING, true};
    const char* letter = std::strchr(LETTERS, *wanted);
    if (letter != nullptr && wanted[1] == '\0') return {LOG_DEBUG + static_cast<int>(letter - LETTERS), false};
    (void)std::fprintf(stderr, "GAMEAPI_LOG is \"%s\", so no log is printed: set it to D, I, W, E, F or off.\n",
                       wanted);
    return {NOTHING, false};
}

// Read while the library is loaded, so that a wrong value is reported.
const PrintedLines PRINTED = ReadPrinted();

}  // namespace

const PrintedLines& Printed() { return PRINTED; }

// One write per line, so that lines of different threads do not mix.
void PrintLine(const std::string& line) {
    const std::string whole = line + "\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, whole.data(), whole.size());
}

void Say(const std::string& text) {
    if (!PRINTED.isSilent) PrintLine("game device: " + text);
}

}  // namespace StandIn
