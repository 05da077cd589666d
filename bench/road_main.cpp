// SPDX-License-Identifier: MIT
// The road of one stream through the library, as a program: for counting instructions and for profiles.
//
//   trevallo_road STREAM [PASSES]    STREAM is the name of a Beast stream among those of the benchmarks
//
// Prints how many frames a pass has and which compiler built it, as JSON.
#include "support/road.h"
#include "support/streams.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

using namespace quorvel::modes;

// All that is counted happens in here; the counter finds it by its name.
extern "C" [[gnu::noinline]] std::int64_t trevallo_road_pass(std::string const& bytes) {
    bench::Receiver receiver;
    return receiver.take(bytes, ModeSEncapsulation::Beast);
}

int main(int count, char** arguments) try {
    if (count < 2) {
        std::fprintf(stderr, "trevallo_road STREAM [PASSES]\n");
        return 2;
    }
    Log::setShowLevel(Log::Error);
    auto const& bytes = bench::stream(arguments[1]);
    std::int64_t frames = 0;
    for (long passes = count > 2 ? std::strtol(arguments[2], nullptr, 10) : 1; passes > 0; --passes) {
        frames = trevallo_road_pass(bytes);
    }
#ifdef __clang__
    constexpr char compiler[] = __VERSION__;
#else
    constexpr char compiler[] = "GCC " __VERSION__;
#endif
    std::printf("{\"frames\": %lld, \"compiler\": \"%s\"}\n", static_cast<long long>(frames), compiler);
    return 0;
} catch (std::exception const& exception) {
    std::fprintf(stderr, "trevallo_road: %s\n", exception.what());
    return 1;
}
