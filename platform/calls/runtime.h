#pragma once

#include <node_api.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <thread>
#include <utility>

// What the module uses of the C++ runtime and of the process, as the stand-in device has it.

namespace StandIn {

/// Replaces `std::thread`. The new thread follows the device's clock.
class Thread {
public:
    template <typename Run, typename... Args>
    explicit Thread(Run&& run, Args&&... args)
        : thread_(Start(std::bind(std::forward<Run>(run), std::forward<Args>(args)...))) {}

    void detach();  // NOLINT(readability-identifier-naming): the name of std::thread

private:
    static std::thread Start(std::function<void()> run);

    std::thread thread_;
};

/// Sleeps for `span` of device time.
void SleepFor(std::chrono::nanoseconds span);

/// Selects the `new` that returns null if there is no memory, or if it is made to fail.
struct Nothrow {};

/// Replaces Node's `napi_module_register`, which would tie the record to the load that registered it and forget it with
/// that load's environment.
void RegisterModule(napi_module* record);

/// Replaces `_exit`.
[[noreturn]] void Exit(int status);

/// Replaces `abort`, and says why: the JSON library calls it, as it cannot throw in the module.
[[noreturn]] void Abort();

}  // namespace StandIn

void* operator new(std::size_t size, const StandIn::Nothrow& tag) noexcept;
