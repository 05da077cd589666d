// SPDX-License-Identifier: MIT
#include "files/stop_signals.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>

namespace quorvel::files {

namespace {

struct NamedSignal {
    int number;
    char const* name;
};

constexpr std::array<NamedSignal, 3> kSignals = {{{SIGINT, "SIGINT"}, {SIGTERM, "SIGTERM"}, {SIGHUP, "SIGHUP"}}};

volatile std::sig_atomic_t received = 0;

struct SavedAction {
    int signal;
    struct sigaction action;
};
std::vector<SavedAction> savedActions; // to be restored

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
    auto const* const named =
        std::find_if(kSignals.begin(), kSignals.end(), [&](NamedSignal const& each) { return each.number == signal; });
    return named == kSignals.end() ? std::string() : named->name;
}

StopSignals::StopSignals() {
    received = 0;
    struct sigaction action {};
    action.sa_handler = receive;
    action.sa_flags = 0; // a blocked read ends
    sigemptyset(&action.sa_mask);
    savedActions.clear();
    for (int const signal : stopSignals()) {
        struct sigaction previous {};
        sigaction(signal, &action, &previous);
        savedActions.push_back({signal, previous});
    }
}

StopSignals::~StopSignals() {
    for (auto const& [signal, action] : savedActions) sigaction(signal, &action, nullptr);
}

bool StopSignals::requested() { return received != 0; }

std::string StopSignals::name() { return nameOfSignal(received); }

// The signals are let in only while waiting, so that none can arrive between the check and the wait.
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

} // namespace quorvel::files
