// SPDX-License-Identifier: MIT
#include "inspect/tracked_lines.h"

#include "inspect/frame_text.h"
#include "inspect/json_members.h"
#include "inspect/position_finder.h"
#include <airspace/integrity.h>
#include <airspace/register_fields.h>

#include <string_view>
#include <utility>

namespace quorvel::inspect {

namespace {

using airspace::ExtendedSquitter;
using airspace::Message;

// What a line of a position needs besides the place.
struct PositionSource {
    std::uint64_t frame;
    std::uint8_t typeCode;
    std::optional<airspace::OperationalStatus> status; // the aircraft's last one before it
    airspace::NicSupplements supplements;
};

struct AircraftPositions {
    std::vector<PositionMessage> messages;
    std::vector<PositionSource> sources; // of the same size
    std::optional<airspace::OperationalStatus> status;
};

using AircraftKey = std::pair<airspace::AddressKind, std::uint32_t>;

airspace::NicSupplements supplementsOf(std::optional<airspace::OperationalStatus> const& status, bool nicSupplementB) {
    if (!status) return {};
    return {status->nicSupplementA.value_or(false), nicSupplementB, status->nicSupplementC.value_or(false)};
}

// Collects the position messages of one aircraft.
class PositionCollector {
public:
    PositionCollector(AircraftPositions& aircraft, std::uint64_t frame, double seconds)
        : _aircraft(aircraft), _frame(frame), _seconds(seconds) {}

    void take(ExtendedSquitter const& squitter) {
        if (auto const* status = std::get_if<airspace::OperationalStatus>(&squitter.content)) {
            _aircraft.status = *status;
        } else if (auto const* airborne = std::get_if<airspace::AirbornePosition>(&squitter.content)) {
            bool const hasSupplement = squitter.origin == airspace::SquitterOrigin::Aircraft;
            append(squitter, airborne->position, {}, hasSupplement && airborne->nicSupplementB);
        } else if (auto const* surface = std::get_if<airspace::SurfacePosition>(&squitter.content)) {
            append(squitter, surface->position, surface->speed ? surface->speed->upperKt : std::nullopt, false);
        }
    }

private:
    void append(ExtendedSquitter const& squitter, airspace::CompactPosition const& position,
        std::optional<double> speedKt, bool nicSupplementB) {
        _aircraft.messages.push_back({position, _seconds, speedKt});
        _aircraft.sources.push_back(
            {_frame, *squitter.typeCode, _aircraft.status, supplementsOf(_aircraft.status, nicSupplementB)});
    }

    AircraftPositions& _aircraft;
    std::uint64_t _frame;
    double _seconds;
};

void writeFrame(JsonMembers& members, std::uint64_t frame, std::uint32_t address) {
    members("i", frame);
    members("icao", hexText(address, 6));
}

void writeIntegrity(JsonMembers& members, PositionSource const& source) {
    if (!source.status) return;
    auto const integrity = airspace::navigationIntegrity(source.typeCode, source.status->version, source.supplements);
    members("version", source.status->version);
    airspace::visitField(members, "nic", integrity.nic);
    airspace::visitField(members, "rc", integrity.radiusMetres);
}

std::string positionLine(PositionSource const& source, std::uint32_t address, FoundPlace const& found) {
    std::string line;
    JsonMembers members(line);
    writeFrame(members, source.frame, address);
    members("latitude", found.place.latitude);
    members("longitude", found.place.longitude);
    members("src", std::string_view(found.isOfPair ? "pair" : "local"));
    writeIntegrity(members, source);
    members.finish();
    return line;
}

// A reply that fits several registers.
struct RegisterCase {
    std::uint64_t frame;
    std::uint32_t address;
    std::string mb;
    airspace::RegisterChoice before; // by what came before
    airspace::RegisterChoice after;

    // The register that one direction is sure of, and the other does not doubt.
    std::optional<airspace::Register> chosen() const {
        if (before.isUnsure && after.isUnsure) return std::nullopt;
        if (!before.isUnsure && !after.isUnsure && before.best != after.best) return std::nullopt;
        auto const best = before.isUnsure ? after.best : before.best;
        return airspace::fittingRegisters(mb).contains(*best) ? best : std::nullopt;
    }
};

std::string registerLine(RegisterCase const& one, airspace::Register number) {
    std::string line;
    JsonMembers members(line);
    writeFrame(members, one.frame, one.address);
    members("bds", airspace::nameOf(number).text());
    airspace::visitFields(members, airspace::readRegister(one.mb, number));
    members.finish();
    return line;
}

bool fitsSeveral(std::string_view mb) {
    auto const fitting = airspace::fittingRegisters(mb);
    return !fitting.isEmpty() && !fitting.only();
}

} // namespace

void TrackedLines::take(airspace::Frame const& frame, double seconds) { _frames.push_back({frame, seconds}); }

void TrackedLines::findPositions(LinesByFrame& lines) const {
    std::map<AircraftKey, AircraftPositions> aircraft;
    for (std::uint64_t i = 0; i < _frames.size(); ++i) {
        auto const message = airspace::read(_frames[i].frame);
        auto const* const squitter = std::get_if<ExtendedSquitter>(&message);
        if (squitter == nullptr || !squitter->isIntact()) continue;
        auto& sender = aircraft[{squitter->addressKind, squitter->address}];
        PositionCollector(sender, i, _frames[i].seconds).take(*squitter);
    }
    for (auto const& [key, sender] : aircraft) {
        auto const found = findPlaces(sender.messages, _receiver);
        for (std::size_t i = 0; i < found.size(); ++i) {
            if (found[i]) lines[sender.sources[i].frame] = positionLine(sender.sources[i], key.second, *found[i]);
        }
    }
}

void TrackedLines::findRegisters(LinesByFrame& lines) const {
    std::map<std::uint64_t, RegisterCase> cases;
    KnownStates before;
    for (std::uint64_t i = 0; i < _frames.size(); ++i) {
        auto const message = airspace::read(_frames[i].frame);
        auto const mb = airspace::registerBytes(message);
        if (fitsSeveral(mb)) {
            auto const address = airspace::headerOf(message)->address;
            auto const choice = airspace::chooseRegister(mb, before.at(address, _frames[i].seconds));
            cases.emplace(i, RegisterCase{i, address, std::string(mb), choice, {}});
        }
        before.take(message, _frames[i].seconds);
    }
    KnownStates after;
    for (std::uint64_t i = _frames.size(); i-- > 0;) {
        auto const seconds = _frames[i].seconds;
        if (auto const found = cases.find(i); found != cases.end()) {
            auto& one = found->second;
            one.after = airspace::chooseRegister(one.mb, after.at(one.address, seconds));
            auto const number = one.chosen();
            if (number && before.isHeard(one.address)) lines[i] = registerLine(one, *number);
        }
        after.take(airspace::read(_frames[i].frame), seconds);
    }
}

std::string TrackedLines::lines() const {
    LinesByFrame lines;
    findPositions(lines);
    findRegisters(lines);
    std::string text;
    for (auto const& [frame, line] : lines) text += line;
    return text;
}

} // namespace quorvel::inspect
