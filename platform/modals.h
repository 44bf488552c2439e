#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "environment.h"
#include "modal_ui_extension_config.h"
#include "receivers.h"

namespace StandIn {

/// A method whose requests open modals.
struct RequestMethod {
    int32_t type = 0;
    std::string name;
    bool isPage = false;  // nobody waits for its answer
};

/// All of them. Only the first call counts. Any thread.
void SetRequestMethods(std::vector<RequestMethod> requests);
/// The method whose requests have this type; "request N" if there is none. Any thread.
std::string NameOfRequest(int32_t requestType);
/// The request type of a method; 0 if it has none. Any thread.
int32_t TypeOfRequest(const char* method);

/// One modal UI extension. Kept after it is closed, because it may still answer. Thread-safe.
class Modal {
public:
    using Callbacks = OHOS::Ace::ModalUIExtensionCallbacks;
    using Config = OHOS::Ace::ModalUIExtensionConfig;
    using Want = OHOS::AAFwk::Want;

    struct Opening {
        Want want;
        Config config;
        Callbacks callbacks;
        std::shared_ptr<Environment> environment;  // of the window; empty if it has ended
        uint64_t call = 0;                         // the number of the call that opens it
    };

    /// An extension's answer.
    struct Answer {
        enum class Kind { RESULT, RECEIVE, RELEASE, ERROR };
        Kind kind = Kind::RESULT;
        int32_t code = 0;
        OHOS::AAFwk::WantParams params;  // of an error: its name and message

        /// Whether the module takes it as the result of its request, if the request has none yet.
        bool Settles() const;
    };

    Modal(int32_t modalId, int32_t modalGeneration, Opening how)
        : id(modalId), generation(modalGeneration), opening(std::move(how)) {}

    const int32_t id;
    const int32_t generation;  // the same for all modals opened between two resets, and for no others
    const Opening opening;

    /// Holds the loop of its environment. For code that may still answer it.
    LoopHold HoldLoop() const { return opening.environment == nullptr ? nullptr : opening.environment->Hold(); }
    int32_t RequestType() const;
    /// "modal 3 (getLocalPlayer)".
    std::string Name() const;

    /// True until the module closes it or its environment ends.
    bool IsOpen() const;
    /// Whether an answer was given that settles its request.
    bool IsAnswered() const { return isAnswered_; }
    void MarkAnswered(const Answer& answer);
    /// Whether the module has not closed it and the answer that its request expects is missing.
    bool IsSilent() const;
    bool IsOlderThan(double milliseconds) const;

    void Close();
    /// Closes it. From now on, no answer reaches the module.
    void Forget();

    /// Calls the module with `answer` on this thread. If that ends the game, `giveUp` runs on this thread. Returns why
    /// the module could not be called; empty if it was.
    std::string Give(const Answer& answer, std::function<void()> giveUp) const;

private:
    void CallModule(const Answer& answer) const;

    const std::chrono::steady_clock::time_point opened_ = std::chrono::steady_clock::now();
    std::atomic<bool> isOpen_{true};
    std::atomic<bool> isAnswered_{false};
    std::atomic<bool> isForgotten_{false};
};

/// All modals opened since the last reset, and those who get the new ones. Thread-safe.
class Modals {
public:
    static Modals& Get();

    /// Returns the modal's session ID: above 0, and never reused.
    int32_t Open(Modal::Opening opening);
    /// Ignores an unknown ID.
    void Close(int32_t id);
    /// Empty if no modal with this ID was opened since the last reset.
    std::shared_ptr<Modal> Find(int32_t id);
    /// Oldest first.
    std::vector<int32_t> Ids();
    /// Forgets all modals and begins a new generation.
    void Reset();

    /// Those who get every modal opened, also after a reset, on the thread that opens it. They must not call back into
    /// this class.
    Receivers<std::shared_ptr<Modal>>& Openings() { return openings_; }

    /// The oldest modal of `requestType` (0: of any) that is open, unanswered and not yet taken; empty if there is
    /// none.
    std::shared_ptr<Modal> Take(int32_t requestType);

    /// Reports the silent modals that are older than `age` milliseconds, each only once.
    void ReportSilent(double age);
    /// Reports the silent modals of an environment that ends, each only once.
    void ReportSilentOf(const Environment& environment);

private:
    std::mutex mutex_;     // guards what follows; receivers are called under it
    int32_t firstId_ = 1;  // the ID of the first of `modals_`; the IDs are consecutive
    int32_t generation_ = 1;
    std::vector<std::shared_ptr<Modal>> modals_;
    std::deque<std::shared_ptr<Modal>> free_;        // not taken yet; some may be closed or answered
    std::deque<std::shared_ptr<Modal>> unreported_;  // not reported yet; some may be closed or answered
    Receivers<std::shared_ptr<Modal>> openings_;
};

}  // namespace StandIn
