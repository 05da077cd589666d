// SPDX-License-Identifier: MIT
// The benchmarks of trevallo. Each is named subject/case/size; time is given for one item where a benchmark
// counts items (frames, messages, rows), else for one call.
#include <modes/log.h>

#include <benchmark/benchmark.h>

int main(int count, char** arguments) {
    quorvel::modes::Log::setShowLevel(quorvel::modes::Log::Error);
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
