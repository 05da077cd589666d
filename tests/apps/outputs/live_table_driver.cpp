// SPDX-License-Identifier: MIT
// live_table_driver RECORDING: shows what a recording left in the live table, until a key ends it.
#include "host/frame_reader.h"
#include "host/host_error.h"
#include "host/receiver.h"
#include "outputs/live_table.h"

#include <modes/log.h>

#include <poll.h>

#include <exception>
#include <iostream>

using namespace quorvel;

namespace {

host::Picture lastPicture(std::string const& recording) {
    host::FrameReader reader(recording, {});
    host::Receiver receiver({}, nullptr);
    for (auto frames = reader.read(); !frames.empty(); frames = reader.read()) {
        for (auto const& frame : frames) receiver.take(frame);
    }
    host::Picture picture;
    picture.now = reader.clock().now();
    picture.aircraft = receiver.aircraft(picture.now);
    picture.counters = reader.counters();
    picture.counters += receiver.counters();
    picture.sources.push_back({"recording", "ended", picture.now, picture.now, false, {}});
    return picture;
}

void show(host::Picture const& picture) {
    constexpr int kLookAgainMs = 50; // for the size of the terminal
    host::LiveTable table(std::make_unique<host::Terminal>());
    table.picture(picture);
    while (!table.wantsToQuit()) {
        pollfd keys{table.keyFile(), POLLIN, 0};
        if (::poll(&keys, 1, kLookAgainMs) < 0) return;
        table.poll();
    }
}

} // namespace

int main(int count, char** arguments) try {
    if (count != 2) throw host::HostError("usage: live_table_driver RECORDING");
    modes::Log::setShowLevel(modes::Log::Error);
    show(lastPicture(arguments[1]));
    return 0;
} catch (std::exception const& error) {
    std::cerr << error.what() << "\n";
    return 1;
}
