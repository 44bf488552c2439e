#include <set>
#include <utility>

#include "environment.h"

namespace StandIn {

namespace {

thread_local const void* gLatestSettler = nullptr;  // of the request now being started on this JS thread
thread_local bool gIsWindowMissing = false;
thread_local std::shared_ptr<RequestHold> gInherited;

struct Starts {
    std::mutex mutex;
    std::set<std::shared_ptr<RequestHold>> holds;
};

Starts& WaitingStarts()
{
    static Starts& starts = *new Starts();
    return starts;
}

}  // namespace

std::shared_ptr<RequestHold> Environment::HoldRequest(const std::shared_ptr<Environment>& environment)
{
    if (gInherited != nullptr) {
        return gInherited;
    }
    auto hold = std::make_shared<RequestHold>(LoopHold(environment));
    if (Current() == environment.get() && gLatestSettler != nullptr) {
        environment->unsettled_[gLatestSettler] = hold;
        gLatestSettler = nullptr;
    }
    return hold;
}

void Environment::NoteWindowMissing()
{
    gIsWindowMissing = true;
}

std::shared_ptr<RequestHold> Environment::InheritHold()
{
    Environment* current = Current();
    if (!std::exchange(gIsWindowMissing, false) || gLatestSettler == nullptr || current == nullptr) {
        return nullptr;
    }
    auto hold = HoldRequest(current->shared_from_this());
    Starts& starts = WaitingStarts();
    std::lock_guard<std::mutex> guard(starts.mutex);
    starts.holds.insert(hold);
    return hold;
}

void Environment::DropInheritedHolds()
{
    Starts& starts = WaitingStarts();
    std::lock_guard<std::mutex> guard(starts.mutex);
    for (const auto& hold : starts.holds) {
        hold->Drop();
    }
    starts.holds.clear();
}

void Environment::AdoptHold(std::shared_ptr<RequestHold> hold)
{
    gInherited = std::move(hold);
}

void Environment::ReturnHold()
{
    if (gInherited == nullptr) {
        return;
    }
    Starts& starts = WaitingStarts();
    std::lock_guard<std::mutex> guard(starts.mutex);
    starts.holds.erase(gInherited);
    gInherited.reset();
}

void Environment::NoteRequest(const void* settler)
{
    gLatestSettler = settler;
    gIsWindowMissing = false;
    if (Environment* current = Current()) {
        current->unsettled_.erase(settler);
    }
}

void Environment::NoteSettled(const void* settler)
{
    Environment* current = Current();
    if (current == nullptr || current->unsettled_.empty()) {
        return;
    }
    auto found = current->unsettled_.find(settler);
    if (found == current->unsettled_.end()) {
        return;
    }
    if (auto hold = found->second.lock()) {
        hold->Drop();
    }
    current->unsettled_.erase(found);
}

}  // namespace StandIn
