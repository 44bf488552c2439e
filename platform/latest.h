#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <utility>

namespace StandIn {

/// The latest entries of one kind; the oldest are dropped first. Thread-safe.
template <typename Entry, size_t CAPACITY>
class Latest {
public:
    static Latest& Get();

    /// Returns its index among the entries that are kept.
    size_t Append(Entry entry) {
        std::lock_guard<std::mutex> guard(mutex_);
        if (entries_.size() == CAPACITY) entries_.pop_front();
        entries_.push_back(std::move(entry));
        return entries_.size() - 1;
    }
    /// A copy of the entries, oldest first.
    std::deque<Entry> All() {
        std::lock_guard<std::mutex> guard(mutex_);
        return entries_;
    }
    void Clear() {
        std::lock_guard<std::mutex> guard(mutex_);
        entries_.clear();
    }

private:
    std::mutex mutex_;  // guards the entries
    std::deque<Entry> entries_;
};

}  // namespace StandIn
