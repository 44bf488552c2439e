#include "modals.h"

#include <algorithm>
#include <utility>

#include "forever.h"
#include "game_end.h"
#include "record_stream.h"
#include "say.h"

namespace StandIn {
namespace {

constexpr int32_t CODE_EVENT_ONLY = 9;  // raises an event and leaves the request waiting

/// Set once, so that it is read without a lock.
std::atomic<const std::vector<RequestMethod>*> gRequests{nullptr};

template <typename Predicate>
const RequestMethod* FindRequest(const Predicate& isWanted) {
    const auto* requests = gRequests.load();
    if (requests == nullptr) return nullptr;
    auto found = std::find_if(requests->begin(), requests->end(), isWanted);
    return found == requests->end() ? nullptr : &*found;
}

const RequestMethod* FindRequestOfType(int32_t type) {
    return FindRequest([type](const RequestMethod& request) { return request.type == type; });
}

constexpr const char* ANSWER_NAMES[] = {"result", "receive", "release", "error"};

DeviceRecord About(const char* kind, const Modal& modal) {
    return {kind,
            {{"modal", static_cast<double>(modal.id)},
             {"call", static_cast<double>(modal.opening.call)},
             {"method", NameOfRequest(modal.RequestType())}}};
}

void PublishAnswer(const Modal& modal, const Modal::Answer& answer) {
    DeviceRecord answered = About("answered", modal);
    answered.fields.emplace_back("how", std::string(ANSWER_NAMES[static_cast<size_t>(answer.kind)]));
    answered.fields.emplace_back("code", static_cast<double>(answer.code));
    answered.fields.emplace_back("parameters", answer.params);
    RecordStream::Publish(std::move(answered));
}

void PublishOpening(const Modal& modal) {
    DeviceRecord opened = About("opened", modal);
    opened.fields.emplace_back("parameters", modal.opening.want.GetParams());
    RecordStream::Publish(std::move(opened));
}

}  // namespace

void SetRequestMethods(std::vector<RequestMethod> requests) {
    auto made = std::make_unique<std::vector<RequestMethod>>(std::move(requests));
    const std::vector<RequestMethod>* none = nullptr;
    if (gRequests.compare_exchange_strong(none, made.get())) (void)made.release();
}

std::string NameOfRequest(int32_t requestType) {
    const RequestMethod* request = FindRequestOfType(requestType);
    return request != nullptr ? request->name : "request " + std::to_string(requestType);
}

int32_t TypeOfRequest(const char* method) {
    const RequestMethod* request =
        FindRequest([method](const RequestMethod& candidate) { return candidate.name == method; });
    return request != nullptr ? request->type : 0;
}

bool Modal::Answer::Settles() const {
    return kind != Kind::RELEASE && (kind == Kind::ERROR || code != CODE_EVENT_ONLY);
}

int32_t Modal::RequestType() const { return opening.want.GetParams().GetIntParam("requestType", 0); }

std::string Modal::Name() const { return "modal " + std::to_string(id) + " (" + NameOfRequest(RequestType()) + ")"; }

bool Modal::IsOpen() const { return isOpen_ && opening.environment != nullptr && !opening.environment->HasEnded(); }

void Modal::MarkAnswered(const Answer& answer) {
    if (answer.Settles()) isAnswered_ = true;
}

bool Modal::IsSilent() const {
    const RequestMethod* request = FindRequestOfType(RequestType());
    return isOpen_ && !isAnswered_ && (request == nullptr || !request->isPage);
}

bool Modal::IsOlderThan(double milliseconds) const {
    return std::chrono::steady_clock::now() - opened_ > std::chrono::duration<double, std::milli>(milliseconds);
}

void Modal::Close() {
    if (isOpen_.exchange(false) && RecordStream::HasSubscribers()) RecordStream::Publish(About("closed", *this));
}

void Modal::Forget() {
    Close();
    isForgotten_ = true;
}

std::string Modal::Give(const Answer& answer, std::function<void()> giveUp) const {
    if (isForgotten_) return Name() + " cannot answer: reset() made the device forget it.";
    if (GameEnd::HasArrived()) return Name() + " cannot answer: the game has ended, until reset() begins anew.";
    const bool isLate = !IsOpen() && answer.kind != Answer::Kind::RELEASE;
    if (RecordStream::HasSubscribers()) PublishAnswer(*this, answer);
    ServedCall call;
    call.number = opening.call;
    call.requestType = RequestType();
    call.occasion = {false, RequestType(), answer.code, id, std::move(giveUp)};
    const ServedCallScope scope(std::move(call));
    CallModule(answer);
    if (isLate && !scope.Get().hasEffect) {
        Say(Name() + " is closed and its request has ended: the answer " + std::to_string(answer.code) +
            " reaches nobody");
    }
    return {};
}

void Modal::CallModule(const Answer& answer) const {
    switch (answer.kind) {
        case Answer::Kind::RESULT: {
            Want want;
            want.SetParams(answer.params);
            return opening.callbacks.onResult(answer.code, want);
        }
        case Answer::Kind::RECEIVE:
            return opening.callbacks.onReceive(answer.params);
        case Answer::Kind::RELEASE:
            return opening.callbacks.onRelease(answer.code);
        case Answer::Kind::ERROR:
            return opening.callbacks.onError(answer.code, answer.params.GetStringParam("name"),
                                             answer.params.GetStringParam("message"));
    }
}

Modals& Modals::Get() { return Forever<Modals>(); }

int32_t Modals::Open(Modal::Opening opening) {
    std::lock_guard<std::mutex> guard(mutex_);
    const int32_t id = firstId_ + static_cast<int32_t>(modals_.size());
    const auto modal = modals_.emplace_back(std::make_shared<Modal>(id, generation_, std::move(opening)));
    if (modal->IsSilent()) unreported_.push_back(modal);
    free_.push_back(modal);
    if (RecordStream::HasSubscribers()) PublishOpening(*modal);
    // Under the lock, so that every receiver gets the modals in the order of their IDs.
    (void)openings_.Send([&modal]() -> const auto& { return modal; });
    return id;
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
        ids.push_back(modal->id);
    }
    return ids;
}

void Modals::Reset() {
    std::vector<std::shared_ptr<Modal>> forgotten;
    {
        std::lock_guard<std::mutex> guard(mutex_);
        firstId_ += static_cast<int32_t>(modals_.size());
        forgotten.swap(modals_);
        free_.clear();
        unreported_.clear();
        ++generation_;
    }
    for (const auto& modal : forgotten) {
        modal->Forget();
    }
}

std::shared_ptr<Modal> Modals::Take(int32_t requestType) {
    std::lock_guard<std::mutex> guard(mutex_);
    auto isGone = [](const auto& modal) { return !modal->IsOpen() || modal->IsAnswered(); };
    free_.erase(std::remove_if(free_.begin(), free_.end(), isGone), free_.end());
    auto found = std::find_if(free_.begin(), free_.end(), [requestType](const auto& modal) {
        return requestType == 0 || requestType == modal->RequestType();
    });
    if (found == free_.end()) return nullptr;
    auto taken = *found;
    free_.erase(found);
    return taken;
}

void Modals::ReportSilent(double age) {
    std::lock_guard<std::mutex> guard(mutex_);
    for (; !unreported_.empty() && unreported_.front()->IsOlderThan(age); unreported_.pop_front()) {
        if (unreported_.front()->IsSilent()) Say(unreported_.front()->Name() + " has no answer");
    }
}

void Modals::ReportSilentOf(const Environment& environment) {
    std::lock_guard<std::mutex> guard(mutex_);
    auto isOfThis = [&environment](const auto& modal) { return modal->opening.environment.get() == &environment; };
    auto first = std::stable_partition(unreported_.begin(), unreported_.end(), std::not_fn(isOfThis));
    for (auto modal = first; modal != unreported_.end(); ++modal) {
        if ((*modal)->IsSilent()) Say((*modal)->Name() + " has no answer");
    }
    unreported_.erase(first, unreported_.end());
}

}  // namespace StandIn
