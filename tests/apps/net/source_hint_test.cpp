// SPDX-License-Identifier: MIT
#include "net/source_hint.h"

#include <gtest/gtest.h>

#include <string>

using quorvel::net::sourceHint;

namespace {

struct Case {
    std::string name; // as the user wrote it
    std::string meant;
};

std::string onNetwork(std::string const& meant) { return "a receiver on the network is named " + meant; }

} // namespace

TEST(SourceHint, NamesTheReceiverOnTheNetwork) {
    Case const cases[] = {
        {"192.168.1.20", "tcp://192.168.1.20:30005"},
        {"192.168.1.20:30002", "tcp://192.168.1.20:30002"},
        {"fe80::1", "tcp://[fe80::1]:30005"},
        {"::1", "tcp://[::1]:30005"},
        {"[::1]:30002", "tcp://[::1]:30002"},
        {"localhost", "tcp://localhost:30005"},
        {"raspberrypi", "tcp://raspberrypi:30005"},
        {"radar-2.local", "tcp://radar-2.local:30005"},
        {"receiver.example.org:30005", "tcp://receiver.example.org:30005"},
    };
    for (auto const& [name, meant] : cases) EXPECT_EQ(sourceHint(name), onNetwork(meant)) << name;
}

TEST(SourceHint, NamesBothWhatAPortAloneMayMean) {
    for (auto const* const name : {":30005", "30005"}) {
        EXPECT_EQ(sourceHint(name),
            "a receiver on this machine is named tcp://localhost:30005, a port for feeders listen://30005");
    }
}

TEST(SourceHint, AddsTheSlashesOfAScheme) {
    EXPECT_EQ(sourceHint("tcp:localhost:30005"), "it is written tcp://localhost:30005");
    EXPECT_EQ(sourceHint("tcp:/localhost:30005"), "it is written tcp://localhost:30005");
    EXPECT_EQ(sourceHint("listen:30004"), "it is written listen://30004");
    EXPECT_EQ(sourceHint("tcp:"), "it is written tcp://");
}

TEST(SourceHint, LeavesNamesOfFilesAlone) {
    for (auto const* const name : {"-", "", "sky.beast", "recordings/sky", "./sky", "2024-05-01.avr", "20240501",
             "sky 2", "sky-12:30.avr", "/dev/ttyUSB0", "folder/sky:30005", "1.2.3", "_"})
        EXPECT_EQ(sourceHint(name), "") << name;
}
