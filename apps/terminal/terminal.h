// SPDX-License-Identifier: MIT
#pragma once

#include "terminal/keys.h"
#include "terminal/screen.h"

#include <termios.h>

#include <string>
#include <vector>

namespace quorvel::terminal {

/// A terminal that shows whole screens and gives the keys that are pressed; everything is put back as it was
/// at the end. Keys are read from the terminal itself, so that standard input may be a stream of frames.
class Terminal {
public:
    /// Whether standard output is a terminal that can show whole screens.
    static bool isAvailable();

    /// Whether the user wants colours: not when the variable NO_COLOR is set.
    static bool wantsColours();

    /// Throws HostError when the device cannot be used.
    explicit Terminal(std::string const& device = "/dev/tty", bool colours = wantsColours());
    ~Terminal();
    Terminal(Terminal const&) = delete;
    Terminal& operator=(Terminal const&) = delete;

    struct Size {
        int columns = 80;
        int rows = 24;
    };
    Size size() const;

    /// The keys pressed since the last call. Does not wait.
    std::vector<Key> keys();

    /// Whether the terminal was closed, as the last look at its keys has shown.
    bool hasHungUp() const { return _hasHungUp; }

    /// Becomes readable when a key is pressed.
    int keyFile() const { return _input; }

    /// Writes the lines that differ from those shown.
    void show(Screen const& screen);

    /// Treats the terminal's content as lost: the next screen is written as a whole.
    void forget() { _shown.clear(); }

private:
    void write(std::string const& bytes) const;

    int _input = -1;  // reads without waiting; opened separately, so that other reads are not affected
    int _output = -1; // waits
    bool _colours;
    termios _before{};
    bool _hasHungUp = false;
    std::string _pending; // bytes of keys that are not whole
    Screen _shown;
    std::size_t _shownColumns = 0;
};

} // namespace quorvel::terminal
