// SPDX-License-Identifier: MIT
#include "host/stop_signals.h"

#include <array>
#include <cerrno>
#include <poll.h>

namespace quorvel::host {

namespace {

constexpr std::array<int, 2> kSignals = {SIGINT, SIGTERM};

volatile std::sig_atomic_t received = 0;
std::array<struct sigaction, kSignals.size()> before; // what the signals did

extern "C" void receive(int signal) {
    received = signal;
    std::signal(signal, SIG_DFL); // the next one is meant
}

sigset_t stopSet() {
    sigset_t set;
    sigemptyset(&set);
    for (int const signal : kSignals) sigaddset(&set, signal);
    return set;
}

} // namespace

StopSignals::StopSignals() {
    received = 0;
    struct sigaction action {};
    action.sa_handler = receive;
    action.sa_flags = 0; // a blocked read ends
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &action, &before[i]);
}

StopSignals::~StopSignals() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &before[i], nullptr);
}

bool StopSignals::requested() { return received != 0; }

std::string StopSignals::name() {
    if (received == 0) return {};
    return received == SIGINT ? "SIGINT" : "SIGTERM";
}

// The signals are let in only while waiting, so that none can slip in between the look and the wait.
bool StopSignals::waitReadable(int file) {
    auto const stop = stopSet();
    sigset_t open;
    sigprocmask(SIG_BLOCK, &stop, &open);
    pollfd readable{file, POLLIN, 0};
    int ready = 0;
    do {
        ready = requested() ? -1 : ppoll(&readable, 1, nullptr, &open);
    } while (ready < 0 && errno == EINTR && !requested());
    sigprocmask(SIG_SETMASK, &open, nullptr);
    return !requested();
}

} // namespace quorvel::host
