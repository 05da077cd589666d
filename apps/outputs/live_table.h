// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/output.h"

#include "outputs/live_view.h"
#include "terminal/terminal.h"

#include <memory>

namespace quorvel::outputs {

/// The aircraft in a table that fills the terminal and follows the keys. The caller polls it: a few times a
/// second, and when a key is pressed.
class LiveTable : public Output {
public:
    explicit LiveTable(std::unique_ptr<terminal::Terminal> terminal);

    void picture(Picture const& picture) override;

    /// Takes the keys and the size of the terminal into account.
    void poll();

    /// Whether the user wants to quit, or is gone.
    bool wantsToQuit() const { return _state.wantsToQuit || _terminal->hasHungUp(); }

    /// Becomes readable when a key is pressed.
    int keyFile() const { return _terminal->keyFile(); }

private:
    void show();

    std::unique_ptr<terminal::Terminal> _terminal;
    Picture _picture;
    ViewState _state;
};

} // namespace quorvel::outputs
