// SPDX-License-Identifier: MIT
#include "host/stop_signals.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>

namespace quorvel::host {

namespace {

struct Named {
    int number;
    char const* name;
};

constexpr std::array<Named, 3> kSignals = {{{SIGINT, "SIGINT"}, {SIGTERM, "SIGTERM"}, {SIGHUP, "SIGHUP"}}};

volatile std::sig_atomic_t received = 0;

struct Before {
    int signal;
    struct sigaction action;
};
std::vector<Before> before; // what the signals did

extern "C" void receive(int signal) {
    received = signal;
    std::signal(signal, signal == SIGHUP ? SIG_IGN : SIG_DFL); // the next one is meant
}

sigset_t stopSet() {
    sigset_t set;
    sigemptyset(&set);
    for (auto const& signal : kSignals) sigaddset(&set, signal.number);
    return set;
}

bool isIgnored(int signal) {
    struct sigaction action {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

} // namespace

std::vector<int> stopSignals() {
    std::vector<int> signals;
    for (auto const& [number, name] : kSignals) {
        if (number != SIGHUP || !isIgnored(number)) signals.push_back(number);
    }
    return signals;
}

std::string nameOfSignal(int signal) {
    auto const* const named = std::find_if(kSignals.begin(), kSignals.end(),
                                           [&](Named const& each) { return each.number == signal; });
    return named == kSignals.end() ? std::string() : named->name;
}

StopSignals::StopSignals() {
    received = 0;
    struct sigaction action {};
    action.sa_handler = receive;
    action.sa_flags = 0; // a blocked read ends
    sigemptyset(&action.sa_mask);
    before.clear();
    for (int const signal : stopSignals()) {
        struct sigaction previous {};
        sigaction(signal, &action, &previous);
        before.push_back({signal, previous});
    }
}

StopSignals::~StopSignals() {
    for (auto const& [signal, action] : before) sigaction(signal, &action, nullptr);
}

bool StopSignals::requested() { return received != 0; }

std::string StopSignals::name() { return nameOfSignal(received); }

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
