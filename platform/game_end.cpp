#include "game_end.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <utility>

#include "clock.h"
#include "environment.h"
#include "forever.h"
#include "modals.h"
#include "say.h"
#include "ui_thread.h"

namespace StandIn {
namespace {

// The exit status when the game ends on a JS thread, which no handler can prevent.
constexpr int STATUS_ON_JS_THREAD = 70;
constexpr long MAX_STATUS = 255;

std::atomic<bool> gHasArrived{false};

std::string Describe(const ServedCall& call) {
    const Occasion& why = call.occasion;
    const std::string request = *call.method != '\0' ? call.method : NameOfRequest(why.requestType);
    if (why.isTimer) return "the time to play that " + request + " began is over";
    return "modal " + std::to_string(why.modal) + " (" + request + ") answered " + std::to_string(why.code);
}

int ChooseStatus(int status) {
    const char* wanted = std::getenv("GAMEAPI_EXIT_STATUS");  // NOLINT(concurrency-mt-unsafe): never set here
    if (wanted == nullptr || *wanted == '\0') return status;
    char* end = nullptr;
    const long number = std::strtol(wanted, &end, 10);
    if (*end == '\0' && number >= 0 && number <= MAX_STATUS) return static_cast<int>(number);
    Say("GAMEAPI_EXIT_STATUS is \"" + std::string(wanted) + "\": set it to a number from 0 to 255");
    return status;
}

[[noreturn]] void EndProcess(int status, const ServedCall& why, const char* remark) {
    Say("the module ends the process with status " + std::to_string(status) + remark + ": " + Describe(why));
    std::_Exit(status);
}

}  // namespace

Receivers<Occasion>& GameEnd::Handlers() { return Forever<Receivers<Occasion>>(); }

bool GameEnd::HasArrived() { return gHasArrived; }

void GameEnd::Reset() {
    Handlers().Clear();
    gHasArrived = false;
}

// A second end, such as a timer's, only stops its own thread.
void GameEnd::Arrive(int status) {
    const ServedCall why = Served() != nullptr ? *Served() : ServedCall{};
    const bool isHandled = gHasArrived || !Handlers().IsEmpty();
    if (isHandled && Environment::Current() != nullptr) {
        EndProcess(STATUS_ON_JS_THREAD, why, ", as onExit cannot help on the JS thread that answers");
    }
    const bool isFirst = !gHasArrived.exchange(true);
    if (isFirst && !Handlers().Send([&why]() -> const Occasion& { return why.occasion; })) {
        EndProcess(ChooseStatus(status), why, "");
    }
    if (why.occasion.giveUp) why.occasion.giveUp();
    UiThread::Get().Abandon();
    Clock::Get().Leave();
    for (;;) {
        std::this_thread::sleep_for(std::chrono::hours(1));
    }
}

}  // namespace StandIn
