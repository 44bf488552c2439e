#include "record_stream.h"

#include <map>
#include <mutex>

#include "clock.h"
#include "forever.h"

namespace StandIn {
namespace {

struct Subscribers {
    std::mutex mutex;  // guards the receivers, which are called under it
    std::map<const void*, RecordStream::Receiver> receivers;
};

}  // namespace

std::atomic<bool> RecordStream::hasSubscribers_{false};

void RecordStream::Subscribe(const void* owner, Receiver receiver) {
    auto& subscribers = Forever<Subscribers>();
    std::lock_guard<std::mutex> guard(subscribers.mutex);
    subscribers.receivers[owner] = std::move(receiver);
    hasSubscribers_ = true;
}

void RecordStream::Unsubscribe(const void* owner) {
    auto& subscribers = Forever<Subscribers>();
    std::lock_guard<std::mutex> guard(subscribers.mutex);
    (void)subscribers.receivers.erase(owner);
    hasSubscribers_ = !subscribers.receivers.empty();
}

void RecordStream::Reset() {
    auto& subscribers = Forever<Subscribers>();
    std::lock_guard<std::mutex> guard(subscribers.mutex);
    subscribers.receivers.clear();
    hasSubscribers_ = false;
}

// The time is read under the lock, so that it never goes back from one record to the next.
void RecordStream::Publish(DeviceRecord record) {
    auto& subscribers = Forever<Subscribers>();
    std::lock_guard<std::mutex> guard(subscribers.mutex);
    record.time = Clock::Get().NowMs();
    for (const auto& [owner, receiver] : subscribers.receivers) {
        receiver(record);
    }
}

}  // namespace StandIn
