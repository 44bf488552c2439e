#include "watching.h"

#include <map>
#include <mutex>

#include "clock.h"
#include "forever.h"

namespace StandIn {
namespace {

struct Watchers {
    std::mutex mutex;  // guards the receivers, which are called under it
    std::map<const void*, Watching::Receiver> receivers;
};

}  // namespace

std::atomic<bool> Watching::isOn_{false};

void Watching::Begin(const void* owner, Receiver receiver) {
    auto& watchers = Forever<Watchers>();
    std::lock_guard<std::mutex> guard(watchers.mutex);
    watchers.receivers[owner] = std::move(receiver);
    isOn_ = true;
}

void Watching::End(const void* owner) {
    auto& watchers = Forever<Watchers>();
    std::lock_guard<std::mutex> guard(watchers.mutex);
    (void)watchers.receivers.erase(owner);
    isOn_ = !watchers.receivers.empty();
}

// The time is read under the lock, so that it never goes back from one happening to the next.
void Watching::Tell(Happening happening) {
    auto& watchers = Forever<Watchers>();
    std::lock_guard<std::mutex> guard(watchers.mutex);
    happening.time = Clock::Get().NowMs();
    for (const auto& [owner, receiver] : watchers.receivers) {
        receiver(happening);
    }
}

}  // namespace StandIn
