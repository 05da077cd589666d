// SPDX-License-Identifier: MIT
#pragma once

#include "simulate/bit_writer.h"

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

namespace quorvel::simulate {

/// The 56 bits of a register or of a squitter's message, numbered as the standards number them: from 1, the first and
/// the last bit of a field included. What is not written is 0.
class PayloadWriter {
public:
    /// A whole number; bits that do not fit are left out.
    PayloadWriter& code(unsigned first, unsigned last, std::uint64_t value) {
        auto const mask = (std::uint64_t{1} << (last - first + 1)) - 1;
        _bits |= (value & mask) << (56 - last);
        return *this;
    }

    PayloadWriter& flag(unsigned position, bool value) { return code(position, position, value ? 1 : 0); }

    /// A number of steps behind its status bit; a negative one in two's complement, also of turns. Without a value, or
    /// out of its range, all bits are 0.
    PayloadWriter& steps(unsigned status, unsigned last, std::optional<double> value, double step) {
        return guarded(status, last, value, step, 0.0, std::ldexp(1.0, static_cast<int>(last - status)));
    }
    PayloadWriter& signedSteps(unsigned status, unsigned last, std::optional<double> value, double step) {
        double const limit = std::ldexp(1.0, static_cast<int>(last - status) - 1);
        return guarded(status, last, value, step, -limit, limit);
    }

    /// A number of steps whose code 1 is 0 and whose code 0 is no value; the highest code stands for all above.
    PayloadWriter& stepsFromOne(unsigned first, unsigned last, std::optional<double> value, double step) {
        if (!value) return *this;
        auto const highest = std::ldexp(1.0, static_cast<int>(last - first + 1)) - 1;
        return code(first, last, static_cast<std::uint64_t>(std::fmin(std::round(*value / step) + 1, highest)));
    }

    /// The same behind its sign.
    PayloadWriter& signedStepsFromOne(unsigned sign, unsigned last, std::optional<double> value, double step) {
        if (!value) return *this;
        return flag(sign, *value < 0).stepsFromOne(sign + 1, last, std::fabs(*value), step);
    }

    std::uint64_t bits() const { return _bits; }
    std::string bytes() const { return BitWriter().put(_bits, 56).bytes(); }

private:
    PayloadWriter& guarded(
        unsigned status, unsigned last, std::optional<double> value, double step, double low, double high) {
        if (!value) return *this;
        double const count = std::round(*value / step);
        if (count < low || count >= high) return *this;
        return flag(status, true).code(status + 1, last, static_cast<std::uint64_t>(static_cast<std::int64_t>(count)));
    }

    std::uint64_t _bits = 0;
};

} // namespace quorvel::simulate
