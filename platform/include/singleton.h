#pragma once

#include <memory>
#include <mutex>
#include <new>

namespace OHOS {

/// Lazily creates the only instance of `T`. Callable from any thread. The instance is never destroyed, because detached
/// threads may still use it while the process exits.
template <typename T>
class DelayedSingleton {
public:
    DelayedSingleton() = delete;

    /// The shared instance; empty only if it could not be allocated.
    static std::shared_ptr<T> GetInstance() {
        static Holder& holder = *new Holder();
        std::lock_guard<std::mutex> guard(holder.mutex);
        if (holder.instance == nullptr) holder.instance.reset(new (std::nothrow) T());
        return holder.instance;
    }

private:
    struct Holder {
        std::mutex mutex;
        std::shared_ptr<T> instance;
    };
};

}  // namespace OHOS
