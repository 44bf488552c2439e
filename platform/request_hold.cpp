#include "request_hold.h"

#include <mutex>
#include <set>
#include <utility>

namespace StandIn {
namespace {

thread_local const void* gLatestSettler = nullptr;  // of the request now being started on this JS thread
thread_local bool gIsWindowMissing = false;
thread_local std::shared_ptr<RequestHold> gInherited;

struct Starts {
    std::mutex mutex;
    std::set<std::shared_ptr<RequestHold>> holds;
};

Starts& WaitingStarts() {
    static Starts& starts = *new Starts();
    return starts;
}

}  // namespace

RequestHold::RequestHold(std::shared_ptr<Environment> environment, const void* settler)
    : environment_(std::move(environment)), settler_(settler) {
    if (environment_ == nullptr) return;
    std::lock_guard<std::mutex> guard(environment_->mutex_);
    environment_->AddHold();
    if (settler_ != nullptr) {
        environment_->requests_[settler_] = this;
        environment_->requestCount_ = environment_->requests_.size();
    }
}

void RequestHold::Drop() {
    if (environment_ == nullptr) return;
    std::lock_guard<std::mutex> guard(environment_->mutex_);
    if (isDropped_.exchange(true)) return;
    auto found = environment_->requests_.find(settler_);
    if (found != environment_->requests_.end() && found->second == this) {
        environment_->requests_.erase(found);
        environment_->requestCount_ = environment_->requests_.size();
    }
    environment_->RemoveHold();
}

void RequestHold::NoteSettled(const void* settler) {
    if (gLatestSettler == settler) gLatestSettler = nullptr;
    Environment* current = Environment::Current();
    if (current == nullptr || current->requestCount_.load(std::memory_order_relaxed) == 0) return;
    std::lock_guard<std::mutex> guard(current->mutex_);
    auto found = current->requests_.find(settler);
    if (found == current->requests_.end()) return;
    found->second->isDropped_ = true;
    current->requests_.erase(found);
    current->requestCount_ = current->requests_.size();
    current->RemoveHold();
}

std::shared_ptr<RequestHold> RequestHold::Take(const std::shared_ptr<Environment>& environment) {
    if (gInherited != nullptr) return gInherited;
    const bool isOnJsThread = Environment::Current() == environment.get();
    return std::make_shared<RequestHold>(environment,
                                         isOnJsThread ? std::exchange(gLatestSettler, nullptr) : nullptr);
}

void RequestHold::NoteRequest(const void* settler) {
    gLatestSettler = settler;
    gIsWindowMissing = false;
}

void RequestHold::NoteWindowMissing() { gIsWindowMissing = true; }

std::shared_ptr<RequestHold> RequestHold::Inherit() {
    Environment* current = Environment::Current();
    if (!std::exchange(gIsWindowMissing, false) || gLatestSettler == nullptr || current == nullptr) {
        return nullptr;
    }
    auto hold = Take(current->shared_from_this());
    Starts& starts = WaitingStarts();
    std::lock_guard<std::mutex> guard(starts.mutex);
    starts.holds.insert(hold);
    return hold;
}

void RequestHold::Adopt(std::shared_ptr<RequestHold> hold) { gInherited = std::move(hold); }

void RequestHold::Return() {
    if (gInherited == nullptr) return;
    Starts& starts = WaitingStarts();
    std::lock_guard<std::mutex> guard(starts.mutex);
    starts.holds.erase(gInherited);
    gInherited.reset();
}

void RequestHold::DropInherited() {
    Starts& starts = WaitingStarts();
    std::lock_guard<std::mutex> guard(starts.mutex);
    for (const auto& hold : starts.holds) {
        hold->Drop();
    }
    starts.holds.clear();
}

}  // namespace StandIn
