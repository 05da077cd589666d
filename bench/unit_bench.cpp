// SPDX-License-Identifier: MIT
// The unit that costs are measured in, so that they mean the same on every machine: two shared objects, as
// large as a frame record and a message, made and released.
#include <benchmark/benchmark.h>

#include <array>
#include <memory>

namespace {

void unit(benchmark::State& state) {
    for (auto _ : state) {
        auto record = std::make_shared<std::array<char, 56>>();
        auto message = std::make_shared<std::array<char, 128>>();
        benchmark::DoNotOptimize(record);
        benchmark::DoNotOptimize(message);
    }
}
BENCHMARK(unit);

} // namespace
