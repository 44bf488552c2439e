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

/// A thread that the module starts: what it runs and what it serves, and its thread number on the clock.
struct StartedThread {
    void* (*run)(void*);
    void* argument;
    ServedCall call;
    uint64_t number;
};

void* RunThread(void* data) {
    const std::unique_ptr<StartedThread> started(static_cast<StartedThread*>(data));
    Clock::BeginThread(started->number);
    const ServedCallScope scope(std::move(started->call));
    void* result = started->run(started->argument);
    EndWindowWait(started->number);
    Clock::Get().Leave();
    return result;
}

}  // namespace
}  // namespace StandIn

extern "C" int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*),
                                     void* argument) {
    using namespace StandIn;
    MarkEffect();
    auto started =
        std::make_unique<StartedThread>(StartedThread{run, argument, ServedByNewThread(), Clock::Get().CountThread()});
    BeginWindowWait(started->number);
    const int error = pthread_create(thread, attributes, RunThread, started.get());
    if (error == 0) {
        (void)started.release();
    } else {
        EndWindowWait(started->number);
        Clock::Get().EndThread();
    }
    return error;
}

extern "C" int __wrap_nanosleep(const timespec* span, timespec* /*remaining*/) {
    StandIn::Clock::Get().Sleep(std::chrono::seconds(span->tv_sec) + std::chrono::nanoseconds(span->tv_nsec));
    return 0;
}
