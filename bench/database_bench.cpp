// SPDX-License-Identifier: MIT
// The aircraft database and its file.
#include "support/bench_frames.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace quorvel::modes::bench {

namespace {

class TemporaryFile {
public:
    TemporaryFile() {
        auto const descriptor = mkstemp(_path.data());
        if (descriptor < 0) throw std::system_error(errno, std::generic_category(), _path);
        close(descriptor);
    }
    ~TemporaryFile() { std::filesystem::remove(_path); }
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;

    std::string const& path() const { return _path; }

private:
    std::string _path = std::filesystem::temp_directory_path() / "trevallo-bench-XXXXXX";
};

AircraftDB database(std::int64_t rows) {
    AircraftDB result;
    for (std::int64_t i = 0; i < rows; ++i) {
        auto const aircraft = result.createAircraft(scatteredAddress(static_cast<std::size_t>(i) + 1));
        aircraft->setMopsVersion(static_cast<MOPSVersion>(i % MOPS_UNKNOWN));
        aircraft->setAirline({'A', static_cast<char>('A' + i % 26), static_cast<char>('A' + i / 26 % 26)});
    }
    return result;
}

void save(benchmark::State& state) {
    TemporaryFile const file;
    auto aircraft = database(state.range(0));
    for (auto _ : state) aircraft.save(file.path());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(save)->Name("database/save")->Arg(100'000);

void load(benchmark::State& state) {
    TemporaryFile const file;
    database(state.range(0)).save(file.path());
    for (auto _ : state) {
        AircraftDB aircraft;
        aircraft.load(file.path());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(load)->Name("database/load")->Arg(100'000);

} // namespace

} // namespace quorvel::modes::bench
