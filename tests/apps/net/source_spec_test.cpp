// SPDX-License-Identifier: MIT
#include "net/source_spec.h"

#include "files/host_error.h"

#include <gtest/gtest.h>

using namespace quorvel;
using net::SourceSpec;

namespace {

std::string faultOf(std::string const& source) {
    try {
        net::parseSource(source);
    } catch (files::UsageError const& error) {
        return error.what();
    }
    return "";
}

} // namespace

TEST(SourceSpec, IsTakenApartByItsScheme) {
    auto const tcp = net::parseSource("tcp://[::1]:30005");
    EXPECT_EQ(tcp.kind, SourceSpec::Kind::Tcp);
    EXPECT_EQ(tcp.host, "::1");
    EXPECT_EQ(tcp.port, "30005");
    auto const listen = net::parseSource("listen://30004");
    EXPECT_EQ(listen.kind, SourceSpec::Kind::Listen);
    EXPECT_EQ(listen.host, "");
    EXPECT_EQ(listen.port, "30004");
    auto const serial = net::parseSource("serial:///dev/ttyUSB0?baud=115200");
    EXPECT_EQ(serial.kind, SourceSpec::Kind::Serial);
    EXPECT_EQ(serial.path, "/dev/ttyUSB0");
    EXPECT_EQ(serial.baud, 115200U);
    EXPECT_EQ(net::parseSource("serial:///dev/ttyUSB0").baud, SourceSpec::kDefaultBaud);
    auto const file = net::parseSource("file://sky.beast");
    EXPECT_EQ(file.kind, SourceSpec::Kind::File);
    EXPECT_EQ(file.path, "sky.beast");
}

TEST(SourceSpec, TakesSchemesInAnyCaseAndKeepsTheNameAsGiven) {
    auto const tcp = net::parseSource("TCP://Receiver:30005");
    EXPECT_EQ(tcp.kind, SourceSpec::Kind::Tcp);
    EXPECT_EQ(tcp.host, "Receiver");
    EXPECT_EQ(tcp.name, "TCP://Receiver:30005");
    EXPECT_EQ(net::parseSource("Listen://30004").kind, SourceSpec::Kind::Listen);
    EXPECT_EQ(net::parseSource("SERIAL:///dev/ttyUSB0").kind, SourceSpec::Kind::Serial);
    EXPECT_EQ(net::parseSource("File://sky.beast").path, "sky.beast");
}

TEST(SourceSpec, IsAFileWhenItHasNoScheme) {
    for (auto const* const name : {"-", "sky.beast", "missing/folder", "2024-05-01.avr.gz", "://x"}) {
        EXPECT_EQ(net::parseSource(name).kind, SourceSpec::Kind::File) << name;
        EXPECT_EQ(net::parseSource(name).path, name);
    }
}

TEST(SourceSpec, SaysWhatAMissingFileWasProbablyMeantToBe) {
    EXPECT_EQ(faultOf("192.168.1.20"),
        "there is no file 192.168.1.20: a receiver on the network is named tcp://192.168.1.20:30005");
}

TEST(SourceSpec, NamesNoPort) {
    for (std::string const source : {"tcp://receiver", "tcp://192.168.1.20", "TCP://[::1]"})
        EXPECT_EQ(faultOf(source), "cannot use " + source + ": it names no port, like " + source + ":30005");
}

TEST(SourceSpec, IsRefusedWithTheReason) {
    EXPECT_EQ(
        faultOf("tcp://:30005"), "cannot use the source tcp://:30005: it names no host, like tcp://localhost:30005");
    EXPECT_EQ(faultOf("tcp://receiver:65536"),
        "cannot use tcp://receiver:65536: it does not end with a port from 0 to 65535");
    EXPECT_EQ(faultOf("listen://"), "cannot use listen://: it does not end with a port from 0 to 65535");
    EXPECT_EQ(faultOf("serial:///dev/ttyUSB0?baud=9"), "cannot use the source serial:///dev/ttyUSB0?baud=9: a serial "
                                                       "receiver is named like serial:///dev/ttyUSB0?baud=3000000");
    EXPECT_EQ(faultOf("udp://receiver:1"), "cannot use the source udp://receiver:1: sources are files, -, "
                                           "tcp://HOST:PORT, listen://PORT and serial://DEVICE");
}
