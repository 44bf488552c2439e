// The benchmarks that need no JS. Each is named "<work> module", "<work> floor" or "<work> bare", and takes
// its size as argument.

#include <benchmark/benchmark.h>
#include <sched.h>

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <vector>

#include "bench/floors/base64.h"
#include "common/env_registry.h"
#include "common/velmor_log.h"
#include "common/velmor_util.h"
#include "napi/native_api.h"

using namespace TAVIK::GAME_PLAYER;

// Replaces Node's function. The module's constructor calls it before main.
extern "C" void napi_module_register(napi_module* /*record*/) {}

namespace {

template <std::string (*ENCODE)(const uint8_t*, size_t)>
void Encode(benchmark::State& state) {
    std::vector<uint8_t> bytes(state.range(0));
    std::generate(bytes.begin(), bytes.end(),
                  [next = 0U]() mutable { return static_cast<uint8_t>(next += 7); });
    for (auto _ : state) {
        benchmark::DoNotOptimize(ENCODE(bytes.data(), bytes.size()));
    }
}

struct FloorRegistry {
    std::shared_mutex mutex;
    std::vector<const EnvInfo*> infos;
};

FloorRegistry& gFloorRegistry = *new FloorRegistry();
std::vector<std::shared_ptr<EnvInfo>>& gAlive = *new std::vector<std::shared_ptr<EnvInfo>>();

void BringToLife(int64_t count) {
    for (int64_t i = 0; i < count; ++i) {
        gAlive.push_back(std::make_shared<EnvInfo>(nullptr));
        gFloorRegistry.infos.push_back(gAlive.back().get());
        SaveEnvInfo(gAlive.back());
    }
}

void EndAll() {
    for (const auto& info : gAlive) {
        DeleteEnvInfo(info.get());
    }
    gFloorRegistry.infos.clear();
    gAlive.clear();
}

bool IsValidInFloor(const EnvInfo* info) {
    std::shared_lock<std::shared_mutex> guard(gFloorRegistry.mutex);
    const auto& infos = gFloorRegistry.infos;
    return std::find(infos.begin(), infos.end(), info) != infos.end();
}

std::vector<int> AllowedCores() {
    cpu_set_t set;
    CPU_ZERO(&set);
    (void)sched_getaffinity(0, sizeof(set), &set);
    std::vector<int> cores;
    for (int core = 0; core < CPU_SETSIZE; ++core) {
        if (CPU_ISSET(core, &set)) cores.push_back(core);
    }
    return cores;
}

/// Binds this thread to its own core, if there are enough cores: unbound threads may share one.
void TakeCore(int thread) {
    static const std::vector<int> ALLOWED = AllowedCores();
    cpu_set_t own;
    CPU_ZERO(&own);
    CPU_SET(ALLOWED[thread % ALLOWED.size()], &own);
    (void)sched_setaffinity(0, sizeof(own), &own);
}

/// Looks up each environment in turn. The threads wait for each other before and after the loop.
template <bool (*IS_VALID)(const EnvInfo*)>
void AskForAll(benchmark::State& state) {
    TakeCore(state.thread_index());
    if (state.thread_index() == 0) BringToLife(state.range(0));
    size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(IS_VALID(gAlive[next].get()));
        next = next + 1 < gAlive.size() ? next + 1 : 0;
    }
    if (state.thread_index() == 0) EndAll();
}

void LogInModule(benchmark::State& state) {
    const std::string text(state.range(0), 'x');
    for (auto _ : state) {
        GAME_LOGI("end %{public}s, code %{public}d", text.c_str(), 401);
    }
}

void LogInFloor(benchmark::State& state) {
    const std::string text(state.range(0), 'x');
    for (auto _ : state) {
        (void)HiLogPrint(LOG_CORE, LOG_INFO, LOG_DOMAIN, LOG_TAG,
                         "[%{public}s(%{public}s:%{public}d)]end %{public}s, code %{public}d", "",
                         __FUNCTION__, __LINE__, text.c_str(), 401);
    }
}

struct BareLog {
    std::mutex mutex;
    size_t written = 0;
    std::vector<std::array<char, 512>> lines{8192};
};

BareLog& gBareLog = *new BareLog();

void LogBare(benchmark::State& state) {
    const std::string text(state.range(0), 'x');
    for (auto _ : state) {
        std::lock_guard<std::mutex> guard(gBareLog.mutex);
        auto& line = gBareLog.lines[gBareLog.written++ % gBareLog.lines.size()];
        (void)std::snprintf(line.data(), line.size(), "[%s(%s:%d)]end %s, code %d", "", __FUNCTION__,
                            __LINE__, text.c_str(), 401);
    }
}

using benchmark::internal::Benchmark;

void IconSizes(Benchmark* work) { work->ArgsProduct({{1 << 10, 1 << 15, 1 << 20, 1 << 24}}); }

void Environments(Benchmark* work) { work->ArgsProduct({{1, 8, 64}})->Threads(2); }

void TextSizes(Benchmark* work) { work->ArgsProduct({{32, 256}}); }

BENCHMARK(Encode<Base64Encode>)->Name("Base64Encode module")->Apply(IconSizes);
BENCHMARK(Encode<Floors::EncodeBase64>)->Name("Base64Encode floor")->Apply(IconSizes);
BENCHMARK(AskForAll<IsValidEnv>)->Name("IsValidEnv module")->Apply(Environments);
BENCHMARK(AskForAll<IsValidInFloor>)->Name("IsValidEnv floor")->Apply(Environments);
BENCHMARK(LogInModule)->Name("log line module")->Apply(TextSizes);
BENCHMARK(LogInFloor)->Name("log line floor")->Apply(TextSizes);
BENCHMARK(LogBare)->Name("log line bare")->Apply(TextSizes);

}  // namespace

BENCHMARK_MAIN();
