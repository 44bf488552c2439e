#include "clock.h"

#include <algorithm>
#include <limits>

#include "forever.h"
#include "time_service_client.h"

namespace StandIn {
namespace {

// Threads count from 1; 0 means that this thread is not one of the module's.
thread_local uint64_t gThread = 0;

}  // namespace

Clock& Clock::Get() { return Forever<Clock>(); }

// The steady clock counts from the machine's boot.
Clock::Clock() : originReal_(Steady::now()), origin_(originReal_.time_since_epoch()) {}

Clock::Nanoseconds Clock::Now() const {
    using Fraction = std::chrono::duration<double, std::nano>;
    Fraction sinceOrigin = Fraction(Steady::now() - originReal_) * rate_;
    return origin_ + std::chrono::duration_cast<Nanoseconds>(sinceOrigin);
}

void Clock::SetOrigin(Nanoseconds now, double rate) {
    origin_ = now;
    originReal_ = Steady::now();
    rate_ = rate;
    for (auto& [order, sleeper] : sleepers_) {
        sleeper->changed.notify_one();
    }
    settled_.notify_all();
}

void Clock::SetRate(double rate) {
    std::lock_guard<std::mutex> guard(mutex_);
    SetOrigin(Now(), rate);
}

double Clock::Rate() {
    std::lock_guard<std::mutex> guard(mutex_);
    return rate_;
}

int64_t Clock::NowMs() {
    std::lock_guard<std::mutex> guard(mutex_);
    return std::chrono::duration_cast<std::chrono::milliseconds>(Now()).count();
}

bool Clock::Advance(Nanoseconds distance) {
    std::unique_lock<std::mutex> lock(mutex_);
    const Nanoseconds target = Now() + distance;
    while (rate_ == 0) {
        settled_.wait(lock, [this] { return running_ == 0 || rate_ != 0; });
        auto first = sleepers_.begin();
        if (first == sleepers_.end() || first->first.first > target) {
            SetOrigin(target, rate_);
            return true;
        }
        origin_ = std::max(origin_, first->first.first);
        Wake(first);
    }
    return false;
}

void Clock::AwaitSettled(std::unique_lock<std::mutex>& lock) {
    settled_.wait(lock, [this] { return running_ == 0; });
}

size_t Clock::Sleepers() {
    std::unique_lock<std::mutex> lock(mutex_);
    AwaitSettled(lock);
    return sleepers_.size();
}

double Clock::NextMs() {
    using Milliseconds = std::chrono::duration<double, std::milli>;
    std::unique_lock<std::mutex> lock(mutex_);
    AwaitSettled(lock);
    if (sleepers_.empty()) return std::numeric_limits<double>::infinity();
    return Milliseconds(sleepers_.begin()->first.first - Now()).count();
}

void Clock::Reset() {
    std::unique_lock<std::mutex> lock(mutex_);
    AwaitSettled(lock);
    for (auto& [order, sleeper] : sleepers_) {
        sleeper->isForgotten = true;
        sleeper->changed.notify_one();
    }
    sleepers_.clear();
    SetOrigin(Now(), 1);
}

void Clock::Sleep(Nanoseconds span) {
    std::unique_lock<std::mutex> lock(mutex_);
    Sleeper self;
    self.isCounted = gThread != 0;
    const Order order{Now() + span, self.isCounted ? gThread : ++threads_};
    sleepers_.emplace(order, &self);
    if (self.isCounted && --running_ == 0) settled_.notify_all();
    while (!self.isAwake) {
        WaitForChange(self, order, lock);
    }
}

void Clock::WaitForChange(Sleeper& self, const Order& order, std::unique_lock<std::mutex>& lock) {
    if (rate_ == 0 || self.isForgotten) {
        self.changed.wait(lock);
        return;
    }
    const Nanoseconds left = order.first - Now();
    if (left <= Nanoseconds(0)) {
        Wake(sleepers_.find(order));
        return;
    }
    using Fraction = std::chrono::duration<double, std::nano>;
    (void)self.changed.wait_for(lock, std::chrono::duration_cast<Nanoseconds>(Fraction(left) / rate_));
}

void Clock::Wake(std::map<Order, Sleeper*>::iterator which) {
    Sleeper& sleeper = *which->second;
    sleepers_.erase(which);
    sleeper.isAwake = true;
    running_ += sleeper.isCounted ? 1 : 0;
    sleeper.changed.notify_one();
}

uint64_t Clock::CountThread() {
    std::lock_guard<std::mutex> guard(mutex_);
    ++running_;
    return ++threads_;
}

void Clock::BeginThread(uint64_t thread) { gThread = thread; }

void Clock::EndThread() {
    std::lock_guard<std::mutex> guard(mutex_);
    if (--running_ == 0) settled_.notify_all();
}

void Clock::Leave() {
    if (std::exchange(gThread, 0) != 0) EndThread();
}

}  // namespace StandIn

namespace OHOS::MiscServices {

sptr<TimeServiceClient> TimeServiceClient::GetInstance() {
    struct Held {
        sptr<TimeServiceClient> client = std::make_shared<TimeServiceClient>();
    };
    return StandIn::Forever<Held>().client;
}

int64_t TimeServiceClient::GetBootTimeMs() { return StandIn::Clock::Get().NowMs(); }

}  // namespace OHOS::MiscServices
