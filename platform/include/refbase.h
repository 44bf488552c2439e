#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

namespace OHOS {

/// Base of objects that count their own holders; the last `sptr` to go deletes the object.
/// Counting is thread-safe, the object's own members are not guarded.
class RefBase {
public:
    RefBase() = default;
    RefBase(const RefBase&) = delete;
    RefBase& operator=(const RefBase&) = delete;
    virtual ~RefBase() = default;

    void IncStrongRef(const void* /*holder*/) { holders_.fetch_add(1, std::memory_order_relaxed); }

    void DecStrongRef(const void* /*holder*/) {
        if (holders_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
    }

private:
    std::atomic<int32_t> holders_{0};
};

/// One counted hold on a `RefBase`, or none.
template <typename T>
class sptr {  // NOLINT(readability-identifier-naming): the platform's own spelling
public:
    sptr() = default;
    // As on the platform: NOLINTNEXTLINE(google-explicit-constructor)
    sptr(T* object) : object_(object) {
        if (object_ != nullptr) object_->IncStrongRef(this);
    }
    sptr(const sptr& other) : sptr(other.object_) {}
    sptr(sptr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ~sptr() {
        if (object_ != nullptr) object_->DecStrongRef(this);
    }
    sptr& operator=(sptr other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    bool operator==(std::nullptr_t) const { return object_ == nullptr; }
    bool operator!=(std::nullptr_t) const { return object_ != nullptr; }
    T* GetRefPtr() const { return object_; }

private:
    T* object_ = nullptr;
};

}  // namespace OHOS
