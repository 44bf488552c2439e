#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "environment.h"
#include "forever.h"
#include "modal_ui_extension_config.h"

namespace StandIn {

/// The method that makes requests of a type; "request N" for one that has none.
std::string NameOfRequest(int32_t requestType);
/// The request type of a method; 0 if it has none, or is null.
int32_t TypeOfRequest(const char* method);

/// The module does something that somebody may notice, on this thread.
void NoteEffect();

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
        std::shared_ptr<Environment> environment;  // of the window; empty: it has ended before
    };

    /// What an extension answers.
    struct Answer {
        enum class Kind { RESULT, RECEIVE, RELEASE, ERROR };
        Kind kind = Kind::RESULT;
        int32_t code = 0;
        std::function<void(const Callbacks& callbacks)> call;

        /// Whether the module takes it for the result of its request, unless that had one before.
        bool Settles() const;
    };

    Modal(int32_t id, int32_t generation, Opening opening);

    int32_t Id() const { return id_; }
    /// The same for all modals opened between two resets, and for no others.
    int32_t Generation() const { return generation_; }
    const Want& GetWant() const { return want_; }
    const Config& GetConfig() const { return config_; }
    const std::shared_ptr<Environment>& GetEnvironment() const { return environment_; }
    /// Of its environment; for those through whom it may be answered.
    LoopHold HoldLoop() const { return environment_ == nullptr ? nullptr : environment_->Hold(); }
    int32_t RequestType() const;
    /// "modal 3 (getLocalPlayer)".
    std::string Name() const;

    /// Until the module closes it, or its environment ends.
    bool IsOpen() const;
    /// Whether an answer was given that settles its request.
    bool IsAnswered() const { return isAnswered_; }
    void NoteAnswer(const Answer& answer);
    /// Whether its request is expected to be answered, and was not.
    bool IsSilent() const;
    bool IsOlderThan(std::chrono::milliseconds age) const;

    void Close() { isOpen_ = false; }
    /// Closes it, and no answer reaches the module any more.
    void Forget();

    /// Calls the module with `answer`, on this thread; `giveUp` runs here if that ends the game. Returns what
    /// keeps it from being called; empty if nothing does.
    std::string Give(const Answer& answer, std::function<void()> giveUp) const;

private:
    const int32_t id_;
    const int32_t generation_;
    const Want want_;
    const Config config_;
    const Callbacks callbacks_;
    const std::shared_ptr<Environment> environment_;
    const std::chrono::steady_clock::time_point opened_ = std::chrono::steady_clock::now();
    std::atomic<bool> isOpen_{true};
    std::atomic<bool> isAnswered_{false};
    std::atomic<bool> isForgotten_{false};
};

/// All modals opened since the last reset, and those who want to hear of new ones. Thread-safe.
class Modals {
public:
    /// Hears of a modal on the thread that opens it, one at a time; must not call back in here.
    using Receiver = std::function<void(const std::shared_ptr<Modal>& modal)>;

    static Modals& Get() { return Forever<Modals>(); }

    /// Returns the modal's session id: above 0 and never used again.
    int32_t Open(Modal::Opening opening);
    /// Leaves an unknown modal alone.
    void Close(int32_t id);
    /// Empty if no modal of this id was opened since the last reset.
    std::shared_ptr<Modal> Find(int32_t id);
    /// Oldest first.
    std::vector<int32_t> Ids();
    /// Forgets all modals. A new generation begins.
    void Reset();

    /// From now on `receiver` gets every modal opened, also after a reset. Returns the generation and the id
    /// of the next one.
    std::pair<int32_t, int32_t> Watch(const void* owner, Receiver receiver);
    void Unwatch(const void* owner);

    /// The oldest modal of `requestType` (0: of any) that is open, unanswered and not taken yet; empty if
    /// there is none.
    std::shared_ptr<Modal> Take(int32_t requestType);

    /// Says, once for each, which modals are silent for so long already.
    void TellSilent(std::chrono::milliseconds age);
    /// The same for those of an environment that ends.
    void TellSilent(const Environment& environment);

private:
    std::mutex mutex_;     // guards what follows; receivers are called under it
    int32_t firstId_ = 1;  // of modals_, which have consecutive ids
    int32_t generation_ = 1;
    std::vector<std::shared_ptr<Modal>> modals_;
    std::deque<std::shared_ptr<Modal>> free_;    // not taken yet; some may be closed or answered
    std::deque<std::shared_ptr<Modal>> untold_;  // of which nothing was said; some may be closed or answered
    std::map<const void*, Receiver> watchers_;
};

}  // namespace StandIn
