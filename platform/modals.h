#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "modal_ui_extension_config.h"
#include "request_hold.h"

namespace StandIn {

/// One modal UI extension, kept after it is closed: a closed one may answer late. Thread-safe.
class Modal {
public:
    using Callbacks = OHOS::Ace::ModalUIExtensionCallbacks;
    using Config = OHOS::Ace::ModalUIExtensionConfig;
    using Want = OHOS::AAFwk::Want;

    struct Opening {
        Want want;
        Config config;
        Callbacks callbacks;
        std::shared_ptr<RequestHold> hold;  // empty: holds no loop
    };

    Modal(int32_t id, int32_t generation, Opening opening);

    int32_t Id() const { return id_; }
    /// The same for all modals opened between two resets, and for no others.
    int32_t Generation() const { return generation_; }
    const Want& GetWant() const { return want_; }
    const Config& GetConfig() const { return config_; }
    bool IsOpen() const { return isOpen_; }

    /// As long as this object lives; null once the modal was forgotten.
    const Callbacks* GetCallbacks() const { return isForgotten_ ? nullptr : &callbacks_; }

    /// Holds the loop that the open modal holds; none once it is closed or its request is answered.
    LoopHold HoldLoop() const { return hold_ == nullptr ? LoopHold() : hold_->Share(); }

    /// Closes the modal and lets go of its request's loop. Harmless if it is closed.
    void Close();
    /// Closes it, and no answer reaches the module any more.
    void Forget();

private:
    const int32_t id_;
    const int32_t generation_;
    const Want want_;
    const Config config_;
    const Callbacks callbacks_;
    const std::shared_ptr<RequestHold> hold_;
    std::atomic<bool> isOpen_{true};
    std::atomic<bool> isForgotten_{false};
};

/// All modals opened since the last reset, and those who want to hear of new ones. Thread-safe.
class Modals {
public:
    /// Passes a modal on to whoever registered it under `ticket`; false if that environment has ended. Called
    /// on the opening thread, one at a time; must not call back in here.
    using Receiver = std::function<bool(uint64_t ticket, const std::shared_ptr<Modal>& modal)>;

    static Modals& Get();

    /// Returns the modal's session id: above 0 and never used again.
    int32_t Open(Modal::Opening opening);
    /// Leaves an unknown modal alone.
    void Close(int32_t id);
    /// Empty if no modal of this id was opened since the last reset.
    std::shared_ptr<Modal> Find(int32_t id);
    /// Oldest first.
    std::vector<int32_t> Ids();
    /// Forgets all modals, watchers and the answer, not those who wait for a modal.
    void Reset();

    /// From now on `receiver` gets every modal opened. One watch per owner: a second one changes nothing.
    void Watch(const void* owner, Receiver receiver);
    void Unwatch(const void* owner);
    /// Whether the watch under `ticket` still stands, for modals that are on their way to it.
    bool IsWatched(uint64_t ticket);

    /// `receiver` gets one modal, at once or when it opens: the oldest that no one has waited for yet.
    /// Returns its ticket. Who waits longest is served first.
    uint64_t Await(const void* owner, Receiver receiver);
    /// False if the modal is already on its way.
    bool CancelWait(uint64_t ticket);

    /// Ends all watching and waiting of `owner`.
    void DropOwner(const void* owner);

    /// From now on every modal opened sends `answer` at once, on the UI thread; with null none does.
    void SetAnswer(std::shared_ptr<const OHOS::AAFwk::WantParams> answer);

private:
    struct Watcher {
        uint64_t ticket;
        Receiver receiver;
    };
    struct Waiter {
        const void* owner;
        uint64_t ticket;
        Receiver receiver;
    };

    void Announce(const std::shared_ptr<Modal>& modal);
    void ServeWaiters();
    void PostAnswer(const std::shared_ptr<Modal>& modal);

    std::mutex mutex_;
    int32_t firstId_ = 1;  // of modals_, which have consecutive ids
    std::vector<std::shared_ptr<Modal>> modals_;
    size_t given_ = 0;  // how many of modals_ have been given to a waiter
    uint64_t lastTicket_ = 0;
    std::map<const void*, Watcher> watchers_;
    std::deque<Waiter> waiters_;
    std::shared_ptr<const OHOS::AAFwk::WantParams> answer_;
};

}  // namespace StandIn
