#include <pthread.h>
#include <time.h>

#include <list>
#include <memory>
#include <utility>

#include "clock.h"
#include "device_context.h"
#include "served_call.h"

// The linker redirects the module's thread creation and sleeps here.

namespace StandIn {
namespace {

/// A thread that the module starts: what it runs and what it serves, and its birth number on the clock.
struct Birth {
    void* (*run)(void*);
    void* argument;
    ServedCall call;
    uint64_t number;
};

void* RunBorn(void* data) {
    const std::unique_ptr<Birth> birth(static_cast<Birth*>(data));
    Clock::Began(birth->number);
    const ServedCallScope scope(std::move(birth->call));
    void* result = birth->run(birth->argument);
    EndWindowWait(birth->number);
    Clock::Get().Leave();
    return result;
}

}  // namespace
}  // namespace StandIn

extern "C" int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*),
                                     void* argument) {
    using namespace StandIn;
    MarkEffect();
    auto birth = std::make_unique<Birth>(Birth{run, argument, ServedByNewThread(), Clock::Get().Born()});
    BeginWindowWait(birth->number);
    const int error = pthread_create(thread, attributes, RunBorn, birth.get());
    if (error == 0) {
        (void)birth.release();
    } else {
        EndWindowWait(birth->number);
        Clock::Get().Ended();
    }
    return error;
}

extern "C" int __wrap_nanosleep(const timespec* span, timespec* /*remaining*/) {
    StandIn::Clock::Get().Sleep(std::chrono::seconds(span->tv_sec) + std::chrono::nanoseconds(span->tv_nsec));
    return 0;
}
