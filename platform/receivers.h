#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <utility>

namespace StandIn {

/// Those who get what happens, one per owner. They are called one at a time, in the order in which things happen, and
/// must not call back into this class. Thread-safe.
template <typename Item>
class Receivers {
public:
    using Receiver = std::function<void(const Item& item)>;

    void Add(const void* owner, Receiver receiver) {
        std::lock_guard<std::mutex> guard(mutex_);
        receivers_[owner] = std::move(receiver);
        isEmpty_ = false;
    }
    void Remove(const void* owner) {
        std::lock_guard<std::mutex> guard(mutex_);
        (void)receivers_.erase(owner);
        isEmpty_ = receivers_.empty();
    }
    void Clear() {
        std::lock_guard<std::mutex> guard(mutex_);
        receivers_.clear();
        isEmpty_ = true;
    }
    bool IsEmpty() const { return isEmpty_.load(std::memory_order_relaxed); }

    /// Passes on what `make` returns, which is called before any receiver. Returns whether there was one.
    template <typename Make>
    bool Send(const Make& make) {
        std::lock_guard<std::mutex> guard(mutex_);
        const Item& item = make();
        for (const auto& [owner, receiver] : receivers_) {
            receiver(item);
        }
        return !receivers_.empty();
    }

private:
    std::mutex mutex_;  // guards the receivers, which are called under it
    std::map<const void*, Receiver> receivers_;
    std::atomic<bool> isEmpty_{true};
};

}  // namespace StandIn
