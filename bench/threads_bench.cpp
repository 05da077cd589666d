// SPDX-License-Identifier: MIT
// Receivers side by side: each thread has a decoder and a tracker of its own. The time is what the slowest
// thread takes, waiting for the others included, but not the time in which the system lets other programs run
// in its stead.
#include "support/road.h"
#include "support/streams.h"

#include <benchmark/benchmark.h>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <barrier>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <new>
#include <stdexcept>
#include <thread>
#include <vector>

namespace quorvel::modes::bench {

namespace {

constexpr int kPasses = 10; // through the stream

struct Measurement {
    double seconds = 0;      // of the slowest thread
    std::int64_t frames = 0; // of all threads
};

// How long this thread has waited for a processor.
double queuedSeconds() {
    double ran = 0;
    double queued = 0;
    std::ifstream file("/proc/thread-self/schedstat"); // nanoseconds; nothing where there is no such file
    file >> ran >> queued;
    return 1e-9 * queued;
}

double wallSeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void take(std::string const& bytes, std::barrier<>& start, Measurement& measured) {
    Receiver().take(bytes, ModeSEncapsulation::Beast); // the thread has its memory from here on
    start.arrive_and_wait();
    auto const began = wallSeconds() - queuedSeconds();
    for (int pass = 0; pass < kPasses; ++pass) measured.frames += Receiver().take(bytes, ModeSEncapsulation::Beast);
    measured.seconds = wallSeconds() - queuedSeconds() - began;
}

Measurement takeOnThreads(std::string const& bytes, int count) {
    std::barrier start(count);
    std::vector<Measurement> measured(static_cast<std::size_t>(count));
    std::vector<std::thread> threads;
    for (auto& own : measured) threads.emplace_back([&] { take(bytes, start, own); });
    for (auto& thread : threads) thread.join();

    Measurement total;
    for (auto const& own : measured) {
        total.frames += own.frames;
        total.seconds = std::max(total.seconds, own.seconds);
    }
    return total;
}

// The same in a process of its own: once a process has had a second thread, shared pointers and memory cost
// more in it, which must not reach the other benchmarks.
Measurement takeInOtherProcess(std::string const& bytes, int threads) {
    auto* const shared = mmap(nullptr, sizeof(Measurement), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) throw std::bad_alloc();
    auto* const result = new (shared) Measurement;
    auto const child = fork();
    if (child == 0) {
        *result = takeOnThreads(bytes, threads);
        _exit(EXIT_SUCCESS);
    }
    int status = 0;
    bool const done = child > 0 && waitpid(child, &status, 0) == child && status == EXIT_SUCCESS;
    auto const measured = *result;
    munmap(shared, sizeof(Measurement));
    if (!done) throw std::runtime_error("the process with the threads failed");
    return measured;
}

void threads(benchmark::State& state) {
    auto const& bytes = stream("aircraft_200.beast");
    std::int64_t frames = 0;
    for (auto _ : state) {
        auto const measured = takeInOtherProcess(bytes, static_cast<int>(state.range(0)));
        state.SetIterationTime(measured.seconds);
        frames += measured.frames;
    }
    state.SetItemsProcessed(frames);
}
BENCHMARK(threads)->Arg(1)->Arg(2)->UseManualTime();

} // namespace

} // namespace quorvel::modes::bench
