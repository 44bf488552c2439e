#include "game_end.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "clock.h"
#include "environment.h"
#include "modals.h"
#include "records.h"
#include "ui_thread.h"
#include "wrap/call_site.h"

namespace StandIn {
namespace {

// There is no way back from an end that the JS thread itself asks for.
constexpr int STATUS_ON_JS_THREAD = 70;

struct Ending {
    std::mutex mutex;  // guards the handlers, which are called under it
    std::map<const void*, GameEnd::Handler> handlers;
    std::atomic<bool> hasArrived{false};
};

Ending& TheEnding() {
    static Ending& ending = *new Ending();
    return ending;
}

thread_local Occasion* gOccasion = nullptr;

std::string Describe(const Occasion& why) {
    const std::string request = NameOfRequest(why.requestType);
    if (why.isTimer) return "the time to play that " + request + " began is over";
    return "modal " + std::to_string(why.modal) + " (" + request + ") answered " + std::to_string(why.code);
}

int ChooseStatus(int status) {
    const char* wanted = std::getenv("GAMEAPI_EXIT_STATUS");  // NOLINT(concurrency-mt-unsafe): never set here
    return wanted != nullptr && *wanted != '\0' ? std::atoi(wanted) & 0xff : status;
}

[[noreturn]] void EndProcess(int status, const Occasion& why, const char* remark) {
    Say("the module ends the process with status " + std::to_string(status) + remark + ": " + Describe(why));
    _exit(status);
}

// Whether anybody was told.
bool TellHandlers(const Occasion& why) {
    Ending& ending = TheEnding();
    std::lock_guard<std::mutex> guard(ending.mutex);
    bool isTold = false;
    for (const auto& [owner, handler] : ending.handlers) {
        isTold = handler(why) || isTold;
    }
    return isTold;
}

bool IsHandled() {
    Ending& ending = TheEnding();
    std::lock_guard<std::mutex> guard(ending.mutex);
    return !ending.handlers.empty();
}

[[noreturn]] void Park() {
    Clock::Get().Leave();
    for (;;) {
        (void)pause();
    }
}

}  // namespace

OccasionScope::OccasionScope(Occasion occasion)
    : occasion_(std::move(occasion)), outer_(std::exchange(gOccasion, &occasion_)) {}

OccasionScope::~OccasionScope() { gOccasion = outer_; }

Occasion InheritOccasion() {
    Occasion inherited;
    inherited.isTimer = true;
    inherited.requestType = gOccasion != nullptr ? gOccasion->requestType : TypeOfRequest(LastMethod());
    return inherited;
}

void GameEnd::Handle(const void* owner, Handler handler) {
    Ending& ending = TheEnding();
    std::lock_guard<std::mutex> guard(ending.mutex);
    ending.handlers[owner] = std::move(handler);
}

void GameEnd::Unhandle(const void* owner) {
    Ending& ending = TheEnding();
    std::lock_guard<std::mutex> guard(ending.mutex);
    ending.handlers.erase(owner);
}

bool GameEnd::HasArrived() { return TheEnding().hasArrived; }

void GameEnd::Reset() {
    Ending& ending = TheEnding();
    std::lock_guard<std::mutex> guard(ending.mutex);
    ending.handlers.clear();
    ending.hasArrived = false;
}

// A second end, as that of a timer, finds the game ended and only stops its thread.
void GameEnd::Arrive(int status) {
    const Occasion why = gOccasion != nullptr ? *gOccasion : Occasion{};
    if (!IsHandled() && !HasArrived()) EndProcess(ChooseStatus(status), why, "");
    if (Environment::Current() != nullptr) {
        EndProcess(STATUS_ON_JS_THREAD, why, ", as onExit cannot help on the JS thread that answers");
    }
    if (!TheEnding().hasArrived.exchange(true) && !TellHandlers(why)) {
        EndProcess(ChooseStatus(status), why, "");
    }
    if (why.giveUp) why.giveUp();
    UiThread::Get().Abandon();
    Park();
}

}  // namespace StandIn

// The module's call, turned here by the linker.
extern "C" [[noreturn]] void __wrap__exit(int status) { StandIn::GameEnd::Arrive(status); }
