// SPDX-License-Identifier: MIT
#include "host/counters.h"

#include <algorithm>
#include <functional>

namespace quorvel::host {

namespace {

using Count = Counters::Count;

struct Single {
    Count Counters::*count;
    std::string_view name;
    std::string_view help;
};

constexpr Single kFraming[] = {
    {&Counters::bytes, "bytes", "Bytes read."},
    {&Counters::skippedBytes, "skipped_bytes", "Bytes that belong to no frame."},
    {&Counters::overlongLines, "overlong_lines", "Lines too long to be frames."},
    {&Counters::badLines, "bad_lines", "Lines that are no frames."},
    {&Counters::brokenFrames, "broken_frames",
     "Frames that another one, or the end of the stream, cut short."},
    {&Counters::statusFrames, "status_frames", "Beast frames of type 4, the receiver's own status."},
    {&Counters::modeAcFrames, "mode_ac_frames", "Mode A/C replies, which are not decoded."},
    {&Counters::frames, "frames", "Mode S frames."},
};

constexpr Single kTracking[] = {
    {&Counters::undecoded, "undecoded", "Frames of no known format, or damaged beyond repair."},
    {&Counters::repaired, "repaired", "Replies decoded after the repair of damaged bits."},
    {&Counters::repairedRefused, "repaired_refused", "Repaired replies not given to the tracker."},
    {&Counters::tracked, "tracked", "Replies given to a target."},
    {&Counters::targetsMade, "targets_made", "Targets that appeared."},
    {&Counters::targetsDropped, "targets_dropped",
     "Targets dropped because they fell silent, or time was set back."},
    {&Counters::targetsMadeRoom, "targets_made_room",
     "Of these, dropped early because all track numbers were in use."},
    {&Counters::tableFull, "table_full", "Replies lost because all track numbers were in use."},
    {&Counters::positions, "positions", "Positions shown."},
    {&Counters::positionsOutOfRange, "positions_out_of_range",
     "Positions refused: farther than the receiver can hear."},
    {&Counters::positionsTooFast, "positions_too_fast",
     "Positions refused: the jump would need an impossible speed."},
    {&Counters::positionsImpossible, "positions_impossible", "Positions refused: not on the globe."},
    {&Counters::positionsBelieved, "positions_believed", "Jumps believed after three refusals in a row."},
    {&Counters::timeJumps, "time_jumps", "Time stamps that jumped, after which time was anchored anew."},
    {&Counters::timeBackwards, "time_backwards", "Frames whose time was before that of the frame before."},
    {&Counters::reconnections, "reconnections", "Connections to sources made again."},
    {&Counters::outputDropped, "output_dropped",
     "Items that a reader of an output was too slow for, or not there for."},
};

constexpr std::string_view kFormats[] = {"0",  "1",  "2",  "3",  "4",  "5",  "6",  "7",  "8",  "9",  "10",
                                         "11", "12", "13", "14", "15", "16", "17", "18", "19", "20", "21",
                                         "22", "23", "24", "25", "26", "27", "28", "29", "30", "31"};
constexpr std::string_view kConfidences[] = {"none", "low", "medium", "high"};

template <class Counts> void add(Counts& sum, Counts const& more) {
    std::transform(sum.begin(), sum.end(), more.begin(), sum.begin(), std::plus<>());
}

} // namespace

Counters& Counters::operator+=(Counters const& other) {
    for (auto const& single : kFraming) this->*single.count += other.*single.count;
    for (auto const& single : kTracking) this->*single.count += other.*single.count;
    add(byFormat, other.byFormat);
    add(byConfidence, other.byConfidence);
    return *this;
}

std::vector<CounterText> listed(Counters const& counters) {
    std::vector<CounterText> texts;
    for (auto const& single : kFraming)
        texts.push_back({single.name, "", "", single.help, counters.*single.count});
    for (std::size_t i = 0; i < counters.byFormat.size(); ++i) {
        if (counters.byFormat[i] == 0) continue;
        texts.push_back({"frames_by_format", "format", kFormats[i], "Mode S frames by downlink format.",
                         counters.byFormat[i]});
    }
    for (std::size_t i = 0; i < counters.byConfidence.size(); ++i) {
        texts.push_back({"replies_by_confidence", "confidence", kConfidences[i],
                         "Decoded replies by how far their address can be trusted.",
                         counters.byConfidence[i]});
    }
    for (auto const& single : kTracking)
        texts.push_back({single.name, "", "", single.help, counters.*single.count});
    return texts;
}

} // namespace quorvel::host
