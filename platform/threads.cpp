#include <time.h>

#include <memory>
#include <thread>

#include "clock.h"
#include "request_hold.h"

// The module's std::thread and its sleeps, turned here by the linker.

namespace StandIn {
namespace {

/// What a thread of the module runs: its own work, between a birth and an end that the clock knows of.
class ClockedWork final : public std::thread::_State {
public:
    explicit ClockedWork(std::thread::_State_ptr work)
        : work_(std::move(work)), birth_(Clock::Get().Born()), hold_(RequestHold::Inherit()) {}

    void _M_run() override {
        Clock::Began(birth_);
        RequestHold::Adopt(std::move(hold_));
        work_->_M_run();
        work_.reset();
        RequestHold::Return();
        Clock::Get().Ended();
    }

private:
    std::thread::_State_ptr work_;
    uint64_t birth_;
    std::shared_ptr<RequestHold> hold_;
};

}  // namespace
}  // namespace StandIn

// std::thread::_M_start_thread(_State_ptr, void (*)()): a unique_ptr argument travels by address.
#define START_THREAD(prefix) \
    prefix##_ZNSt6thread15_M_start_threadESt10unique_ptrINS_6_StateESt14default_deleteIS1_EEPFvvE

extern "C" void START_THREAD()(std::thread* self, std::thread::_State_ptr* work, void (*depend)());

extern "C" void START_THREAD(__wrap_)(std::thread* self, std::thread::_State_ptr* work, void (*depend)()) {
    std::thread::_State_ptr clocked = std::make_unique<StandIn::ClockedWork>(std::move(*work));
    START_THREAD()(self, &clocked, depend);
}

extern "C" int __wrap_nanosleep(const timespec* span, timespec* /*remaining*/) {
    StandIn::Clock::Get().Sleep(std::chrono::seconds(span->tv_sec) + std::chrono::nanoseconds(span->tv_nsec));
    return 0;
}
