// The benchmarks that need no JS. Each is named "<work> module" or "<work> floor", and takes its size as argument.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <shared_mutex>
#include <string>
#include <vector>

#include "common/env_registry.h"
#include "common/velmor_log.h"
#include "common/velmor_util.h"
#include "floors/base64.h"
#include "napi/native_api.h"

using namespace TAVIK::GAME_PLAYER;

namespace {

template <std::string (*ENCODE)(const uint8_t*, size_t)>
void Encode(benchmark::State& state) {
    std::vector<uint8_t> bytes(state.range(0));
    std::generate(bytes.begin(), bytes.end(), [next = 0U]() mutable { return static_cast<uint8_t>(next += 7); });
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

void BringToLife(const benchmark::State& state) {
    gAlive.reserve(state.range(0));
    for (int64_t i = 0; i < state.range(0); ++i) {
        auto* env = reinterpret_cast<napi_env>(gAlive.data() + i);  // only has to differ from the others
        gAlive.push_back(std::make_shared<EnvInfo>(env));
        gFloorRegistry.infos.push_back(gAlive.back().get());
        SaveEnvInfo(gAlive.back());
    }
}

void EndAll(const benchmark::State& /*state*/) {
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

/// Looks up each environment in turn. The threads wait for each other before and after the loop.
template <bool (*IS_VALID)(const EnvInfo*)>
void AskForAll(benchmark::State& state) {
    size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(IS_VALID(gAlive[next].get()));
        next = next + 1 < gAlive.size() ? next + 1 : 0;
    }
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
                         "[%{public}s(%{public}s:%{public}d)]end %{public}s, code %{public}d", "", __FUNCTION__,
                         __LINE__, text.c_str(), 401);
    }
}

using benchmark::internal::Benchmark;

void IconSizes(Benchmark* work) { work->RangeMultiplier(32)->Range(1 << 10, 1 << 24); }

void Environments(Benchmark* work) {
    work->RangeMultiplier(8)->Range(1, 64)->Threads(2)->Setup(BringToLife)->Teardown(EndAll);
}

void TextSizes(Benchmark* work) { work->Arg(32)->Arg(256); }

BENCHMARK(Encode<Base64Encode>)->Name("Base64Encode module")->Apply(IconSizes);
BENCHMARK(Encode<Floors::EncodeBase64>)->Name("Base64Encode floor")->Apply(IconSizes);
BENCHMARK(AskForAll<IsValidEnv>)->Name("IsValidEnv module")->Apply(Environments);
BENCHMARK(AskForAll<IsValidInFloor>)->Name("IsValidEnv floor")->Apply(Environments);
BENCHMARK(LogInModule)->Name("log line module")->Apply(TextSizes);
BENCHMARK(LogInFloor)->Name("log line floor")->Apply(TextSizes);

}  // namespace

BENCHMARK_MAIN();
