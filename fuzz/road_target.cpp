// SPDX-License-Identifier: MIT
// Frames through decoder and tracker to report and page, with what a host does between them: times of any
// size, a clock that moves, targets listed, killed and taken over, versions set. Every number lies in its
// documented range and every text is made.
//
// Input: steps, each a byte for its kind and what that kind takes.
#include <modes/adsb_target_report.h>
#include <modes/adsb_tracker.h>
#include <modes/cpr.h>
#include <modes/modes_decoder.h>

#include "harness/any_number.h"
#include "harness/any_report.h"
#include "harness/day.h"
#include "harness/page.h"
#include "harness/ranges.h"
#include "harness/require.h"
#include "harness/target.h"
#include "support/frames.h"
#include "support/steered_clock.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace quorvel::fuzz {

namespace {

using namespace modes;

using Target = std::shared_ptr<ADSBTarget>;

constexpr unsigned kMaximumSteps = 200;

class Road {
public:
    void walk(Input& input) {
        for (unsigned step = 0; step < kMaximumSteps && !input.empty(); ++step) takeStep(input);
        checkList();
        for (auto const& target : _tracker.allTargets()) checkToTheEnd(*target);
    }

private:
    using Step = void (Road::*)(Input&);

    void takeStep(Input& input) {
        static constexpr Step kSteps[] = {
            &Road::squitter,
            &Road::squitter,
            &Road::damagedSquitter,
            &Road::shortReply,
            &Road::longReply,
            &Road::allCall,
            &Road::otherSquitter,
            &Road::anyFrame,
            &Road::moveClock,
            &Road::killSilent,
            &Road::killOne,
            &Road::setVersion,
            &Road::setChecking,
            &Road::takeOver,
            &Road::takeOverAny,
            &Road::listSince,
            &Road::decodeAlone,
            &Road::setQuality,
            &Road::reset,
            &Road::cprFunctions,
        };
        (this->*kSteps[input.byte() % std::size(kSteps)])(input);
    }

    // Frames. They come from a few addresses, so that they meet, and carry times of any kind.

    static unsigned addressFrom(Input& input) {
        static constexpr unsigned kAddresses[] = {0x4840D6, 0x3C6586, 0x000001, 0xFFFFFF, 0};
        auto const choice = input.byte();
        if (choice < 250) return kAddresses[choice % std::size(kAddresses)];
        return input.number<std::uint32_t>() & 0xFFFFFF;
    }

    // Mostly a little later than before; now and then an odd time. 0 stands for the host's.
    unsigned long long timeFrom(Input& input) {
        auto const choice = input.byte();
        switch (choice) {
        case 255: return input.number<std::uint64_t>();
        case 254: return 0;
        case 253: _time -= input.number<std::uint16_t>(); break;
        case 252: _time += 1ULL << 32; break;
        case 251: _time += 10'000 + input.byte() % 3U - 1U; break; // the longest gap of two position frames
        default: _time += choice * 100U;
        }
        return _time;
    }

    void take(std::string const& frame, Input& input) {
        auto const time = timeFrom(input);
        auto const message = time == 0 ? _decoder.decode(ModeSMessage::DOWNLINK, frame)
                                       : _decoder.decode(ModeSMessage::DOWNLINK, frame.data(), frame.size(), time);
        if (!message) return;
        checkReply(*message);
        require(time == 0 || message->timeStamp() == time, "a reply has the time of its frame");
        message->setSignalAmplitude(input.byte());

        auto const target = _tracker.procModeSMsg(message);
        if (!target) return;
        require(target->icaoAddr() == message->icaoAddress(), "a reply goes to the target of its address");
        require(target->lastUpdate() == message->timeStamp(), "a target is as old as its last reply");
        checkTarget(*target);
    }

    static std::string squitterFrom(Input& input, unsigned format) {
        auto const capability = test::capability(input.byte() & 7U);
        auto const head = capability | addressFrom(input);
        return test::longFrame(format, head, padded(input.bytes(7), 7), 0);
    }

    static std::string padded(std::string bytes, std::size_t size) {
        bytes.resize(size);
        return bytes;
    }

    void squitter(Input& input) { take(squitterFrom(input, 17), input); }

    void otherSquitter(Input& input) { take(squitterFrom(input, 18 + input.byte() % 2U), input); }

    void damagedSquitter(Input& input) {
        auto frame = squitterFrom(input, 17 + input.byte() % 2U);
        for (unsigned bits = 1 + input.byte() % 3U; bits > 0; --bits) {
            frame = test::withBitsInverted(frame, {input.byte() % 112U});
        }
        take(frame, input);
    }

    void shortReply(Input& input) {
        static constexpr unsigned kFormats[] = {0, 4, 5};
        auto const format = kFormats[input.byte() % std::size(kFormats)];
        auto const head = input.number<std::uint32_t>() & 0x7FFFFFF;
        take(test::shortFrame(format, head, addressFrom(input)), input);
    }

    void longReply(Input& input) {
        static constexpr unsigned kFormats[] = {16, 20, 21};
        auto const format = kFormats[input.byte() % std::size(kFormats)];
        auto const head = input.number<std::uint32_t>() & 0x7FFFFFF;
        auto const address = addressFrom(input);
        take(test::longFrame(format, head, padded(input.bytes(7), 7), address), input);
    }

    void allCall(Input& input) {
        auto const capability = test::capability(input.byte() & 7U);
        auto const head = capability | addressFrom(input);
        take(test::shortFrame(11, head, input.byte() % 90U), input); // interrogators are below 80
    }

    void anyFrame(Input& input) {
        auto const choices = input.byte();
        auto const frame = input.bytes(choices % 20U);
        if ((choices & 0x80) == 0) return take(frame, input);
        require(!_decoder.decode(ModeSMessage::UPLINK, frame), "uplink frames are not decoded");
    }

    // What a host does.

    void moveClock(Input& input) { _clock.advanceSeconds(input.number<std::uint16_t>()); }

    void killSilent(Input& input) {
        auto const time = timeFrom(input);
        auto const killed = _tracker.killTargets(time);
        for (auto const& target : killed) {
            require(target->lastUpdate() <= time, "only silent targets are killed");
            require(!_tracker.findTarget(target->icaoAddr()), "a killed target is gone");
            checkToTheEnd(*target);
        }
        for (auto const& target : _tracker.allTargets()) {
            require(target->lastUpdate() > time, "silent targets are killed");
        }
    }

    void killOne(Input& input) {
        auto const address = addressFrom(input);
        auto const target = _tracker.findTarget(address);
        auto const number = input.byte() % 4U == 0 ? input.byte() : (target ? target->trackId() : 0U);
        auto const killed = _tracker.killTarget(number, address);
        bool const meant = target && target->trackId() == number;
        require(killed == (meant ? target : Target()), "a target is killed by its number and address");
        require(_tracker.findTarget(address) == (meant ? Target() : target), "and by nothing else");
    }

    void setVersion(Input& input) {
        auto const target = _tracker.findTarget(addressFrom(input));
        auto const version = static_cast<MOPSVersion>(input.byte() % (MOPS_UNKNOWN + 1U));
        auto const time = timeFrom(input);
        if (!target) return;
        target->setMOPSVersion(version, time);
        input.byte() % 2 == 0 ? target->setMOPSVersionConfirmed(time) : target->setMOPSVersionAssumed(time);
        require(target->mopsVersion() == version, "a version is as it was set");
        checkTarget(*target);
    }

    void setChecking(Input& input) {
        auto const choice = input.byte();
        bool const isUsual = choice < 200;
        auto const period = isUsual ? 4 : input.number<std::uint32_t>();
        auto const difference = isUsual ? 150 : input.number<std::uint32_t>();
        _tracker.setAltituteBaroChecking(choice % 2 == 0, period, difference);
    }

    void setQuality(Input& input) {
        auto const target = _tracker.findTarget(addressFrom(input));
        auto const typeCode = input.byte();
        auto const flags = input.byte();
        auto const time = timeFrom(input);
        if (!target) return;
        target->setNICSupplementC((flags & 1) != 0, time);
        if ((flags & 2) != 0) target->resetQualityIndicators();
        if ((flags & 4) != 0) target->resetStatistic();
        target->updateQualityIndicators(typeCode, time);
        checkTarget(*target);
    }

    // The report of a target, taken over when the target may be gone.
    void takeOver(Input& input) {
        auto const target = _tracker.findTarget(addressFrom(input));
        if (target) _reports.push_back(target->report());
        if (_reports.empty()) return;
        auto const& report = _reports[input.byte() % _reports.size()];
        auto const updated = _tracker.procTargetReport(report);
        require((updated != nullptr) == report->valid(), "a valid report is taken over");
        _hasTakenOver = true;
        if (updated) checkTarget(*updated);
    }

    // Into a tracker of its own: what comes from elsewhere has no range.
    void takeOverAny(Input& input) {
        auto const report = anyReport(input);
        checkPageOfAnything(*report, input.bytes(input.byte() % 8U));
        auto const target = _elsewhere.procTargetReport(report);
        require((target != nullptr) == report->valid(), "a valid report is taken over");
        if (!target) return;
        require(target->icaoAddr() == report->icaoAddress(), "it goes to the target of its address");
        checkPageOfAnything(*target->report(), "");
    }

    void listSince(Input& input) {
        auto const since = timeFrom(input);
        auto const until = timeFrom(input);
        std::vector<Target> expected;
        for (auto const& target : _tracker.allTargets()) {
            if (since < target->lastUpdate() && target->lastUpdate() <= until) expected.push_back(target);
        }
        require(_tracker.allTargetsSince(since, until) == expected, "the targets of a span of time");
        require(_tracker.allTargetsSince(since).size() >= expected.size(), "and those after it");
    }

    void decodeAlone(Input& input) {
        auto const address = addressFrom(input);
        auto const message = _tracker.decodeADSBMsg(address, input.bytes(7));
        require(!message || message->valid(), "a payload decodes or not");
    }

    void reset(Input&) {
        _tracker.reset();
        _hasTakenOver = false;
        require(_tracker.allTargets().empty(), "nothing is left after a reset");
    }

    // They are offered to hosts too, who may ask anything.
    void cprFunctions(Input& input) {
        auto const latitude = anyNumber(input);
        auto const a = anyInteger(input);
        auto const b = anyInteger(input);
        requireWithin(cprNLFunction(latitude), 1, 59, "NL");
        require(cprNFunction(latitude, a) >= 1, "there is a longitude zone");
        require(cprDlonFunction(latitude, a) == 360.0 / cprNFunction(latitude, a), "zones share the globe");
        if (b > 0)
            requireWithin(cprModFunction(a, b), 0, b - 1, "remainder");
        else
            cprModFunction(a, b);
    }

    void checkList() {
        auto const targets = _tracker.allTargets();
        std::set<unsigned> numbers;
        for (std::size_t i = 0; i < targets.size(); ++i) {
            auto const address = targets[i]->icaoAddr();
            require(i == 0 || targets[i - 1]->icaoAddr() < address, "targets are in the order of addresses");
            require(_tracker.findTarget(address) == targets[i] && _tracker.findConstTarget(address) == targets[i],
                "a listed target is found");
            numbers.insert(targets[i]->trackId());
        }
        require(_hasTakenOver || numbers.size() == targets.size(), "every target has a number of its own");
    }

    static void checkToTheEnd(ADSBTarget const& target) {
        checkTarget(target);
        auto const report = target.report();
        checkReport(*report, target);
        checkPage(*report);
    }

    test::SteeredClock _clock{kNow};
    unsigned long long _time = kNow;
    ModeSDecoder _decoder;
    ADSBTracker _tracker;
    ADSBTracker _elsewhere;
    std::vector<std::shared_ptr<ADSBTargetReport>> _reports;
    bool _hasTakenOver = false;
};

} // namespace

void runTarget(Input input) { Road().walk(input); }

} // namespace quorvel::fuzz
