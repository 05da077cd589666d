// SPDX-License-Identifier: MIT
// live_table_driver RECORDING: shows what a recording left in the live table, until a key ends it.
#include "files/host_error.h"
#include "outputs/live_table.h"
#include "run/frame_reader.h"
#include <airspace/sky.h>

#include <modes/log.h>

#include <poll.h>

#include <exception>
#include <iostream>
#include <utility>

using namespace quorvel;

namespace {

outputs::Picture lastPicture(std::string const& recording) {
    run::FrameReader reader(recording, {});
    airspace::Sky sky;
    for (auto frames = reader.read(); !frames.empty(); frames = reader.read()) {
        for (auto const& frame : frames) sky.take(frame);
    }
    outputs::Picture picture;
    picture.now = reader.stream().now();
    for (auto& aircraft : sky.aircraft(picture.now)) picture.aircraft.push_back({std::move(aircraft), "", {}, {}});
    picture.counters = reader.stream().counts();
    picture.counters += sky.counts();
    picture.sources.push_back({"recording", "ended", picture.now, picture.now, false, {}});
    return picture;
}

void show(outputs::Picture const& picture) {
    constexpr int kLookAgainMs = 50; // for the size of the terminal
    outputs::LiveTable table(std::make_unique<terminal::Terminal>());
    table.picture(picture);
    while (!table.wantsToQuit()) {
        pollfd keys{table.keyFile(), POLLIN, 0};
        if (::poll(&keys, 1, kLookAgainMs) < 0) return;
        table.poll();
    }
}

} // namespace

int main(int count, char** arguments) try {
    if (count != 2) throw files::HostError("usage: live_table_driver RECORDING");
    modes::Log::setShowLevel(modes::Log::Error);
    show(lastPicture(arguments[1]));
    return 0;
} catch (std::exception const& error) {
    std::cerr << error.what() << "\n";
    return 1;
}
