// SPDX-License-Identifier: MIT
#include "inspect/dissection.h"

#include "inspect/field_names.h"
#include "inspect/frame_text.h"
#include "inspect/library_values.h"

#include <modes/df_message.h>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace quorvel::inspect {

namespace {

using modes::ADSBMessage;
using modes::DF11Message;
using modes::DF17Message;
using modes::DF18Message;
using modes::DF19Message;
using modes::ModeSMessage;
using modes::ModeSMessageField;

constexpr unsigned kFormatBits = 5;
constexpr unsigned kExtendedLengthFormat = 24; // and above: their first two bits are the format
constexpr unsigned kShortBits = 8 * airspace::kShortFrameBytes;
constexpr unsigned kParityBits = 24;
constexpr unsigned kTypeCodeBits = 5;
constexpr unsigned kAddressDigits = 6;
constexpr unsigned kPayloadBytes = (kPayloadLastBit - kPayloadFirstBit + 1) / 8;
constexpr airspace::TimeMs kSilence =
    60'000; // ms, after which no position can be made of an aircraft's frames any more
// ms. To the tracker a half of a pair that never came is one received at time 0: no frame comes close to
// that.
constexpr airspace::TimeMs kFirstTime = 60'000;

unsigned frameBits(unsigned format) {
    auto const firstByte = static_cast<char>(format << (8 - kFormatBits));
    return static_cast<unsigned>(8 * airspace::modeSFrameBytes(firstByte));
}

std::string parityMeaning(airspace::Overlay overlay, unsigned remainder) {
    switch (overlay) {
    case airspace::Overlay::Nothing: return remainder == 0 ? "right" : "wrong: bits are damaged";
    case airspace::Overlay::Interrogator:
        return isInterrogator(remainder) ? "right, of interrogator " + std::to_string(remainder)
                                         : "wrong: there is no such interrogator";
    case airspace::Overlay::Address: return "the remainder is the address: damage cannot be detected";
    default: return "what is overlaid on it is not known";
    }
}

// A reply that does not decode still keeps the fields that it was read as.
std::shared_ptr<ModeSMessage const> readAsReceived(std::string const& frame, unsigned format) {
    std::shared_ptr<ModeSMessage> message;
    if (format == 17) message = std::make_shared<DF17Message>();
    if (format == 18) message = std::make_shared<DF18Message>();
    if (format == 19) message = std::make_shared<DF19Message>();
    if (message) message->decode(frame);
    return message;
}

FieldView viewOf(std::string const& frame, unsigned firstBit, unsigned width) {
    auto const raw = bitsOf(frame, firstBit - 1, width);
    return {"-", "not decoded", firstBit, width, hexText(raw, (width + 3) / 4), std::to_string(raw), "", {}};
}

FieldView formatField(std::string const& frame, unsigned format) {
    auto view = viewOf(frame, 1, format < kExtendedLengthFormat ? kFormatBits : 2);
    view.name = "DF";
    view.title = "Downlink format";
    view.text = std::to_string(format);
    view.meaning = titleOfFormat(format);
    return view;
}

// Extended squitters answer no interrogator: their parity carries no identifier.
std::string meaningIn(ModeSMessage const& message, ModeSMessageField const& field, unsigned long long raw) {
    if (field.designator() == ModeSMessageField::AP) return "address " + hexText(message.icaoAddress(), kAddressDigits);
    bool const isAllCall = message.bits() == kShortBits;
    if (field.designator() == ModeSMessageField::PI && !isAllCall) return "";
    return meaningOf(field, raw);
}

std::vector<FieldView> fieldsOf(ModeSMessage const& message, std::string const& frame, unsigned format) {
    std::vector<FieldView> views{formatField(frame, format)};
    for (auto const* field : message.fields()) {
        auto& view = views.emplace_back(viewOf(frame, field->pos() + 1U, field->bits()));
        view.name = field->name();
        view.title = field->fullName();
        view.text = field->bits() == kParityBits ? view.raw : field->description();
        view.meaning = meaningIn(message, *field, bitsOf(frame, field->pos(), field->bits()));
    }
    for (auto const& part : spareFieldsOf(format)) {
        auto& view = views.emplace_back(viewOf(frame, part.firstBit, part.width));
        view.name = part.name;
        view.title = part.title;
    }
    return withGaps(std::move(views), frame, 1, frameBits(format));
}

std::vector<FieldView> payloadFields(ADSBMessage const& message, std::string const& frame) {
    std::vector<FieldView> views;
    for (auto const& field : message.fields()) {
        auto& view = views.emplace_back(viewOf(frame, kPayloadFirstBit + field.pos(), field.bits()));
        view.name = field.name();
        view.title = titleOf(field.designator());
        view.text = field.description();
        view.meaning = meaningOf(field, message.typeCode());
    }
    return views;
}

void sortByPosition(std::vector<FieldView>& fields) {
    std::stable_sort(
        fields.begin(), fields.end(), [](FieldView const& a, FieldView const& b) { return a.firstBit < b.firstBit; });
}

std::string whyUnreadable(std::string const& frame, unsigned format) {
    auto const bits = frameBits(format);
    if (8 * frame.size() < bits) {
        return "a frame of this format has " + std::to_string(bits) + " bits, this one has " +
               std::to_string(8 * frame.size());
    }
    return "it is damaged beyond repair: the fields are as received";
}

std::string whyUndecoded(std::string const& frame, unsigned format) {
    if (titleOfFormat(format).starts_with("reserved") || format == kExtendedLengthFormat)
        return "the library does not decode this format";
    return whyUnreadable(frame, format);
}

// The library reads no ADS-B messages of a traffic information service, and those of military squitters.
std::optional<std::uint8_t> payloadTypeOf(std::string const& frame, airspace::Reply const& reply) {
    if (auto const* squitter = std::get_if<airspace::ExtendedSquitter>(&reply.message))
        return squitter->origin != airspace::SquitterOrigin::TisB ? reply.typeCode : std::nullopt;
    auto const* const military = std::get_if<airspace::MilitarySquitter>(&reply.message);
    if (!military || military->application != 0 || !reply.isDecoded) return std::nullopt;
    return static_cast<std::uint8_t>(bitsOf(frame, kPayloadFirstBit - 1, kTypeCodeBits));
}

constexpr char const* kModeAcProblem = "Mode A/C replies are not decoded";

} // namespace

Dissector::Dissector(Versions versions) : _versions(std::move(versions)) { _sky.setTimeout(kSilence); }

Dissection Dissector::dissect(std::string const& bytes, airspace::TimeMs time) {
    Dissection result;
    result.received = result.bytes = bytes;
    if (bytes.size() <= airspace::kModeAcFrameBytes) {
        result.formatName = "Mode A/C reply";
        result.problem = kModeAcProblem;
        return result;
    }
    _now = time != 0 ? kFirstTime + time : std::max(_now, kFirstTime) + 1;
    if (time == 0) _sky.ignoreSpeeds();
    dropSilent();
    auto const reply = _sky.take(airspace::Frame::of(bytes, _now));
    auto message = _sky.message();
    auto const format = *reply.format;
    result.format = format;
    result.formatName = titleOfFormat(format);
    if (reply.isDecoded) {
        result.bytes = message->data();
        result.confidence = reply.confidence;
        if (reply.address != 0) result.address = reply.address;
        result.position = positionOf(reply);
    } else {
        result.problem = whyUndecoded(bytes, format);
        if (8 * bytes.size() >= frameBits(format)) message = readAsReceived(bytes, format);
    }
    auto const frame = result.bytes.substr(0, message ? message->size() : bytes.size());
    // the library leaves extended length messages alone
    auto const overlay = format == kExtendedLengthFormat ? airspace::Overlay::Unknown : reply.overlay;
    result.parity = parityOf(frame, format, overlay);
    result.repairedBits.assign(reply.repairedBits.begin(), reply.repairedBits.begin() + reply.repairs);
    result.fields = message ? fieldsOf(*message, frame, format) : std::vector<FieldView>{formatField(frame, format)};
    if (message) result.description = message->description();
    if (reply.isDecoded) addLibraryValues(*message, result.values);
    if (auto const type = payloadTypeOf(frame, reply)) result.payload = readPayload(frame, *type, result.values);
    return result;
}

PayloadView Dissector::readPayload(std::string const& frame, std::uint8_t typeCode, NamedValues& values) const {
    auto const me = frame.substr(kPayloadFirstBit / 8, kPayloadBytes);
    auto const type = ADSBMessage::typeByCode(typeCode);
    PayloadView payload{typeCode, ADSBMessage::typeName(type), ADSBMessage::typeFullName(type), {}, {}};
    for (auto const version : _versions) {
        auto const message = _payloadDecoder.decode(version, me);
        if (!message) {
            payload.unread.push_back(version);
            continue;
        }
        addLibraryValues(*message, values);
        auto fields = payloadFields(*message, frame);
        auto const same = std::find_if(payload.readings.begin(), payload.readings.end(),
            [&](auto const& other) { return other.description == message->description() && other.fields == fields; });
        if (same != payload.readings.end()) {
            same->versions.push_back(version);
        } else {
            payload.readings.push_back({{version}, message->description(), std::move(fields)});
        }
    }
    return payload;
}

// The position, if this frame has completed a pair, or repeats one that has.
std::optional<airspace::Place> Dissector::positionOf(airspace::Reply const& reply) const {
    auto const* squitter = std::get_if<airspace::ExtendedSquitter>(&reply.message);
    bool const isPosition = squitter && std::holds_alternative<airspace::AirbornePosition>(squitter->content);
    auto const aircraft = reply.isTracked && isPosition ? _sky.find(reply.address, _now) : std::nullopt;
    if (!aircraft || !aircraft->position.value || aircraft->position.updated != _now) return std::nullopt;
    return aircraft->position.value;
}

void Dissector::dropSilent() {
    if (_now >= _lastDrop && _now - _lastDrop < kSilence) return;
    _sky.dropSilent(_now);
    _lastDrop = _now;
}

Versions versionsOf(std::optional<unsigned> version) {
    if (version) return {static_cast<modes::MOPSVersion>(*version)};
    return {modes::MOPS_V0, modes::MOPS_V1, modes::MOPS_V2};
}

std::optional<ParityView> parityOf(std::string const& bytes, unsigned format, airspace::Overlay overlay) {
    auto const bits = frameBits(format);
    if (8 * bytes.size() != bits) return std::nullopt;
    auto const calculated =
        bits == kShortBits ? DF11Message().calculateParity(bytes) : DF17Message().calculateParity(bytes);
    ParityView parity{static_cast<unsigned>(bitsOf(bytes, bits - kParityBits, kParityBits)), calculated, ""};
    parity.meaning = parityMeaning(overlay, parity.remainder());
    return parity;
}

std::string problemOf(std::string const& bytes, airspace::Reply const& reply) {
    if (!reply.format) return kModeAcProblem;
    if (std::holds_alternative<airspace::OtherReply>(reply.message))
        return "this format is " + std::string(titleOfFormat(*reply.format));
    if (reply.isDecoded || std::holds_alternative<airspace::ExtendedLengthReply>(reply.message)) return "";
    return whyUnreadable(bytes, *reply.format);
}

bool isInterrogator(unsigned remainder) { return remainder < modes::ModeSMessageFieldPI::kInterrogatorIds; }

std::vector<FieldView> withGaps(
    std::vector<FieldView> fields, std::string const& frame, unsigned firstBit, unsigned lastBit) {
    std::vector<bool> covered(lastBit + 2);
    for (auto const& field : fields) {
        for (unsigned bit = 0; bit < field.width; ++bit) covered.at(field.firstBit + bit) = true;
    }
    covered[lastBit + 1] = true;
    for (unsigned bit = firstBit; bit <= lastBit; ++bit) {
        auto const start = bit;
        while (!covered[bit]) ++bit;
        if (bit > start) fields.push_back(viewOf(frame, start, bit - start));
    }
    sortByPosition(fields);
    return fields;
}

std::vector<FieldView> mergedFields(PayloadView const& payload) {
    std::vector<FieldView> merged;
    for (auto const& reading : payload.readings) {
        for (auto const& field : reading.fields) {
            auto const same = std::find_if(merged.begin(), merged.end(), [&](FieldView const& other) {
                return std::tie(other.name, other.firstBit, other.width, other.text) ==
                       std::tie(field.name, field.firstBit, field.width, field.text);
            });
            auto& place = same != merged.end() ? *same : merged.emplace_back(field);
            place.versions.insert(place.versions.end(), reading.versions.begin(), reading.versions.end());
        }
    }
    for (auto& field : merged) std::sort(field.versions.begin(), field.versions.end());
    sortByPosition(merged);
    return merged;
}

std::string nameOf(ModeSMessage::Confidence confidence) {
    constexpr char const* kNames[] = {"none", "low", "medium", "high"};
    return kNames[confidence];
}

} // namespace quorvel::inspect
