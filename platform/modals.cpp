#include "modals.h"

#include <algorithm>
#include <utility>

#include "ui_thread.h"

namespace StandIn {

Modal::Modal(int32_t id, int32_t generation, Opening opening)
    : id_(id),
      generation_(generation),
      want_(std::move(opening.want)),
      config_(std::move(opening.config)),
      callbacks_(std::move(opening.callbacks)),
      hold_(std::move(opening.hold)) {}

void Modal::Close() {
    isOpen_ = false;
    if (hold_ != nullptr) hold_->Drop();
}

void Modal::Forget() {
    Close();
    isForgotten_ = true;
}

Modals& Modals::Get() {
    static Modals& modals = *new Modals();
    return modals;
}

int32_t Modals::Open(Modal::Opening opening) {
    std::lock_guard<std::mutex> guard(mutex_);
    const int32_t id = firstId_ + static_cast<int32_t>(modals_.size());
    modals_.push_back(std::make_shared<Modal>(id, firstId_, std::move(opening)));
    Announce(modals_.back());
    PostAnswer(modals_.back());
    return id;
}

// Under the lock, so that everybody hears of the modals in the order of their ids.
void Modals::Announce(const std::shared_ptr<Modal>& modal) {
    for (const auto& [owner, watcher] : watchers_) {
        (void)watcher.receiver(watcher.ticket, modal);
    }
    ServeWaiters();
}

void Modals::ServeWaiters() {
    while (given_ < modals_.size() && !waiters_.empty()) {
        const Waiter waiter = std::move(waiters_.front());
        waiters_.pop_front();
        if (waiter.receiver(waiter.ticket, modals_[given_])) ++given_;
    }
}

void Modals::PostAnswer(const std::shared_ptr<Modal>& modal) {
    if (answer_ == nullptr) return;
    UiThread::Get().Post([modal, answer = answer_] {
        const Modal::Callbacks* callbacks = modal->GetCallbacks();
        if (callbacks != nullptr && callbacks->onReceive) {
            const LoopHold untilQueued = modal->HoldLoop();
            callbacks->onReceive(*answer);
        }
    });
}

void Modals::SetAnswer(std::shared_ptr<const OHOS::AAFwk::WantParams> answer) {
    std::lock_guard<std::mutex> guard(mutex_);
    answer_ = std::move(answer);
}

void Modals::Close(int32_t id) {
    if (auto modal = Find(id)) modal->Close();
}

std::shared_ptr<Modal> Modals::Find(int32_t id) {
    std::lock_guard<std::mutex> guard(mutex_);
    const int64_t index = int64_t{id} - firstId_;
    const bool isKnown = index >= 0 && index < static_cast<int64_t>(modals_.size());
    return isKnown ? modals_[index] : nullptr;
}

std::vector<int32_t> Modals::Ids() {
    std::lock_guard<std::mutex> guard(mutex_);
    std::vector<int32_t> ids;
    for (const auto& modal : modals_) {
        ids.push_back(modal->Id());
    }
    return ids;
}

void Modals::Reset() {
    std::vector<std::shared_ptr<Modal>> forgotten;
    {
        std::lock_guard<std::mutex> guard(mutex_);
        firstId_ += static_cast<int32_t>(modals_.size());
        forgotten.swap(modals_);
        given_ = 0;
        watchers_.clear();
        answer_.reset();
    }
    for (const auto& modal : forgotten) {
        modal->Forget();
    }
}

void Modals::Watch(const void* owner, Receiver receiver) {
    std::lock_guard<std::mutex> guard(mutex_);
    watchers_.try_emplace(owner, Watcher{++lastTicket_, std::move(receiver)});
}

void Modals::Unwatch(const void* owner) {
    std::lock_guard<std::mutex> guard(mutex_);
    watchers_.erase(owner);
}

bool Modals::IsWatched(uint64_t ticket) {
    std::lock_guard<std::mutex> guard(mutex_);
    return std::any_of(watchers_.begin(), watchers_.end(),
                       [ticket](const auto& entry) { return entry.second.ticket == ticket; });
}

uint64_t Modals::Await(const void* owner, Receiver receiver) {
    std::lock_guard<std::mutex> guard(mutex_);
    const uint64_t ticket = ++lastTicket_;
    waiters_.push_back({owner, ticket, std::move(receiver)});
    ServeWaiters();
    return ticket;
}

bool Modals::CancelWait(uint64_t ticket) {
    std::lock_guard<std::mutex> guard(mutex_);
    auto found = std::find_if(waiters_.begin(), waiters_.end(),
                              [ticket](const Waiter& waiter) { return waiter.ticket == ticket; });
    if (found == waiters_.end()) return false;
    waiters_.erase(found);
    return true;
}

void Modals::DropOwner(const void* owner) {
    std::lock_guard<std::mutex> guard(mutex_);
    watchers_.erase(owner);
    waiters_.erase(std::remove_if(waiters_.begin(), waiters_.end(),
                                  [owner](const Waiter& waiter) { return waiter.owner == owner; }),
                   waiters_.end());
}

}  // namespace StandIn
