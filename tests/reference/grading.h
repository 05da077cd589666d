// SPDX-License-Identifier: MIT
#pragma once

#include <modes/modes_message.h>

#include <map>

namespace quorvel::modes::reference {

// How far the address of a reply can be trusted, by the plain rules: nothing is ever forgotten, and what was
// never stored is as good as stale.
class Grading {
public:
    void setNow(long long seconds) { _now = seconds; }

    ModeSMessage::Confidence squitter(unsigned address) {
        _addresses[address] = _now;
        return ModeSMessage::HIGH;
    }

    ModeSMessage::Confidence hiddenAddress(unsigned address) {
        if (!isKnown(address)) return ModeSMessage::LOW;
        _addresses[address] = _now;
        return ModeSMessage::HIGH;
    }

    ModeSMessage::Confidence allCall(unsigned address, unsigned interrogator) {
        if (interrogator >= 80) return ModeSMessage::NONE;
        bool const isCurrent =
            _interrogators.count(interrogator) != 0 && _interrogators[interrogator].time + 60 >= _now;
        auto const replies = _interrogators.count(interrogator) != 0 ? _interrogators[interrogator].replies : 0;
        if (isKnown(address) && isCurrent) {
            _addresses[address] = _now;
            _interrogators[interrogator] = {_now, replies + 1};
            return interrogator == 0 || replies + 1 >= 10 ? ModeSMessage::HIGH : ModeSMessage::MEDIUM;
        }
        if (isKnown(address)) {
            _addresses[address] = _now;
            _interrogators[interrogator] = {_now, 1};
            return ModeSMessage::LOW;
        }
        if (isCurrent && replies >= 10) {
            _addresses[address] = _now;
            _interrogators[interrogator] = {_now, replies + 1};
            return ModeSMessage::HIGH;
        }
        return ModeSMessage::NONE;
    }

private:
    struct Interrogator {
        long long time = 0;
        unsigned replies = 0;
    };

    bool isKnown(unsigned address) const {
        auto const found = _addresses.find(address);
        return found != _addresses.end() && found->second + 600 >= _now;
    }

    long long _now = 0;
    std::map<unsigned, long long> _addresses;
    std::map<unsigned, Interrogator> _interrogators;
};

} // namespace quorvel::modes::reference
