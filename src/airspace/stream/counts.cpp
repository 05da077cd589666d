// SPDX-License-Identifier: MIT
#include <airspace/counts.h>

#include <algorithm>
#include <functional>

namespace quorvel::airspace {

namespace {

using Count = Counts::Count;

struct Single {
    Count Counts::*count;
    std::string_view name;
    std::string_view help;
};

constexpr Single kFraming[] = {
    {&Counts::bytes, "bytes", "Bytes read."},
    {&Counts::skippedBytes, "skipped_bytes", "Bytes that belong to no frame."},
    {&Counts::overlongLines, "overlong_lines", "Lines too long to be frames."},
    {&Counts::badLines, "bad_lines", "Lines that are not frames."},
    {&Counts::brokenFrames, "broken_frames", "Frames that another one, or the end of the stream, cut short."},
    {&Counts::statusFrames, "status_frames", "Beast records about the receiver itself: status, position, identity."},
    {&Counts::modeAcFrames, "mode_ac_frames", "Mode A/C replies, which are not decoded."},
    {&Counts::frames, "frames", "Mode S frames."},
};

constexpr Single kTracking[] = {
    {&Counts::undecoded, "undecoded", "Frames of no known format, or damaged beyond repair."},
    {&Counts::repaired, "repaired", "Replies decoded after the repair of damaged bits."},
    {&Counts::repairedRefused, "repaired_refused", "Repaired replies not given to the tracker."},
    {&Counts::tracked, "tracked", "Replies given to a target."},
    {&Counts::targetsMade, "targets_made", "Targets that appeared."},
    {&Counts::targetsDropped, "targets_dropped", "Targets dropped because they fell silent, or time was set back."},
    {&Counts::targetsMadeRoom, "targets_made_room", "Of these, dropped early because there was no room for others."},
    {&Counts::tableFull, "table_full", "Replies lost because there was no room for their aircraft."},
    {&Counts::positions, "positions", "Positions shown."},
    {&Counts::positionsOutOfRange, "positions_out_of_range", "Positions refused: farther than the receiver can hear."},
    {&Counts::positionsTooFast, "positions_too_fast", "Positions refused: the jump would need an impossible speed."},
    {&Counts::positionsImpossible, "positions_impossible", "Positions refused: not on the globe."},
    {&Counts::positionsAmbiguous, "positions_ambiguous",
        "Positions refused: by the last one elsewhere than by the pair of messages."},
    {&Counts::positionsRepaired, "positions_repaired", "Positions left out because their messages were repaired."},
    {&Counts::positionsBelieved, "positions_believed", "Jumps believed after three refusals in a row."},
    {&Counts::timeJumps, "time_jumps", "Time stamps that jumped, after which the clock was synchronised again."},
    {&Counts::timeBackwards, "time_backwards", "Frames whose time was before that of the frame before."},
};

constexpr std::string_view kFormats[] = {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12", "13", "14",
    "15", "16", "17", "18", "19", "20", "21", "22", "23", "24", "25", "26", "27", "28", "29", "30", "31"};
constexpr std::string_view kConfidences[] = {"none", "low", "medium", "high"};

template <class Counts> void add(Counts& sum, Counts const& more) {
    std::transform(sum.begin(), sum.end(), more.begin(), sum.begin(), std::plus<>());
}

} // namespace

Counts& Counts::operator+=(Counts const& other) {
    for (auto const& single : kFraming) this->*single.count += other.*single.count;
    for (auto const& single : kTracking) this->*single.count += other.*single.count;
    add(byFormat, other.byFormat);
    add(byConfidence, other.byConfidence);
    return *this;
}

std::vector<CountText> listed(Counts const& counts) {
    std::vector<CountText> texts;
    for (auto const& single : kFraming) texts.push_back({single.name, "", "", single.help, counts.*single.count});
    for (std::size_t i = 0; i < counts.byFormat.size(); ++i) {
        if (counts.byFormat[i] == 0) continue;
        texts.push_back(
            {"frames_by_format", "format", kFormats[i], "Mode S frames by downlink format.", counts.byFormat[i]});
    }
    for (std::size_t i = 0; i < counts.byConfidence.size(); ++i) {
        texts.push_back({"replies_by_confidence", "confidence", kConfidences[i],
            "Decoded replies by how far their address can be trusted.", counts.byConfidence[i]});
    }
    for (auto const& single : kTracking) texts.push_back({single.name, "", "", single.help, counts.*single.count});
    return texts;
}

} // namespace quorvel::airspace
