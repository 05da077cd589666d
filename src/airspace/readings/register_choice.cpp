// SPDX-License-Identifier: MIT
#include <airspace/register_choice.h>

#include "airspace/readings/register_evidence.h"
#include "airspace/readings/register_fit.h"

#include <array>
#include <bit>
#include <cmath>

namespace quorvel::airspace {

namespace {

double likelihoodRatio(double evidence) {
    constexpr double negligible = -20.0;
    if (evidence == 0.0) return 1.0; // that of the best
    return evidence < negligible ? 0.0 : std::exp(evidence);
}

} // namespace

RegisterChoice chooseRegister(std::string_view bytes, KnownState const& known) {
    constexpr double sure = 0.99;
    RegisterChoice choice;
    if (bytes.size() != RegisterBits::kBytes) return choice;
    RegisterBits const mb(bytes);
    std::array<double, kRegisters.size()> evidence; // of those that fit
    std::size_t count = 0;
    double best = 0.0;
    for (auto places = allFittingRegisters(mb); places != 0; places &= places - 1) { // without the lowest bit
        auto const place = static_cast<std::size_t>(std::countr_zero(places));
        evidence[count] = evidenceFor(place, mb, known);
        if (!choice.best || evidence[count] > best) {
            best = evidence[count];
            choice.best = kRegisters[place];
        }
        ++count;
    }
    if (!choice.best) return choice;
    auto likelihoods = likelihoodRatio(evidenceForOthers(mb) - best);
    for (std::size_t i = 0; i < count; ++i) likelihoods += likelihoodRatio(evidence[i] - best);
    choice.score = 1.0 / likelihoods;
    choice.isUnsure = choice.score < sure;
    return choice;
}

} // namespace quorvel::airspace
