// SPDX-License-Identifier: MIT
#include "inspect/dissection.h"

#include "inspect/field_names.h"
#include "inspect/frame_text.h"

#include <modes/df_message.h>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace quorvel::host {

namespace {

using modes::ADSBMessage;
using modes::DF11Message;
using modes::DF17Message;
using modes::DF18Message;
using modes::DF19Message;
using modes::ModeSMessage;
using modes::ModeSMessageField;

constexpr std::size_t kModeACBytes = 2;
constexpr unsigned kFormatBits = 5;
constexpr unsigned kExtendedLengthFormat = 24; // and above: their first two bits are the format
constexpr unsigned kFirstLongFormat = 16;
constexpr unsigned kShortBits = 56;
constexpr unsigned kLongBits = 112;
constexpr unsigned kParityBits = 24;
constexpr unsigned kAddressDigits = 6;
constexpr unsigned kPayloadBytes = 7;
constexpr TimeMs kSilence = 60'000; // ms, after which no position can be made of a target's frames any more
// ms. To the tracker a half of a pair that never came is one received at time 0: no frame comes close to
// that.
constexpr TimeMs kFirstTime = 60'000;

// Capability, control or application field: what an extended squitter is used for.
unsigned long long useOf(std::string const& frame) { return bitsOf(frame, kFormatBits, 3); }

unsigned frameBits(unsigned format) { return format < kFirstLongFormat ? kShortBits : kLongBits; }

std::string parityMeaning(Overlay overlay, unsigned remainder) {
    switch (overlay) {
    case Overlay::Nothing: return remainder == 0 ? "right" : "wrong: bits are damaged";
    case Overlay::Interrogator:
        return isInterrogator(remainder) ? "right, of interrogator " + std::to_string(remainder)
                                         : "wrong: there is no such interrogator";
    case Overlay::Address: return "the remainder is the address: damage cannot be told";
    default: return "what is laid over it is not known";
    }
}

ParityView parityOf(std::string const& frame) {
    auto const bits = static_cast<unsigned>(8 * frame.size());
    auto const calculated =
        bits == kShortBits ? DF11Message().calculateParity(frame) : DF17Message().calculateParity(frame);
    ParityView parity{static_cast<unsigned>(bitsOf(frame, bits - kParityBits, kParityBits)), calculated, ""};
    parity.meaning = parityMeaning(overlayOf(frame), parity.remainder());
    return parity;
}

std::vector<unsigned> differingBits(std::string const& a, std::string const& b) {
    std::vector<unsigned> positions;
    for (unsigned bit = 0; bit < 8 * std::min(a.size(), b.size()); ++bit) {
        if (bitsOf(a, bit, 1) != bitsOf(b, bit, 1)) positions.push_back(bit + 1);
    }
    return positions;
}

// A reply that does not decode still keeps the fields that it was read as.
std::shared_ptr<ModeSMessage> readAsReceived(std::string const& frame, unsigned format) {
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

// Extended squitters answer no interrogator: their parity bears no identifier.
std::string meaningIn(ModeSMessage const& message, ModeSMessageField const& field, unsigned long long raw) {
    if (field.designator() == ModeSMessageField::AP)
        return "address " + hexText(message.icaoAddress(), kAddressDigits);
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
    for (auto const& part : sparePartsOf(format)) {
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
    std::stable_sort(fields.begin(), fields.end(),
                     [](FieldView const& a, FieldView const& b) { return a.firstBit < b.firstBit; });
}

std::string whyUndecoded(std::string const& frame, unsigned format) {
    if (titleOfFormat(format).starts_with("reserved") || format == kExtendedLengthFormat)
        return "the library does not decode this format";
    auto const bits = frameBits(format);
    if (8 * frame.size() < bits) {
        return "a frame of this format has " + std::to_string(bits) + " bits, this one has " +
               std::to_string(8 * frame.size());
    }
    return "it is damaged beyond repair: the fields are as received";
}

} // namespace

Dissector::Dissector(Versions versions) : _versions(std::move(versions)) {}

Dissection Dissector::dissect(std::string const& bytes, TimeMs time) {
    Dissection result;
    result.received = result.bytes = bytes;
    if (bytes.size() <= kModeACBytes) {
        result.formatName = "Mode A/C reply";
        result.problem = "Mode A/C replies are not decoded";
        return result;
    }
    auto const format = static_cast<unsigned>(bitsOf(bytes, 0, kFormatBits));
    result.format = std::min(format, kExtendedLengthFormat);
    result.formatName = titleOfFormat(*result.format);

    _now = time != 0 ? kFirstTime + time : std::max(_now, kFirstTime) + 1;
    auto message = _decoder.decode(ModeSMessage::DOWNLINK, bytes, _now);
    if (message) {
        result.bytes = message->data();
        result.confidence = message->confidence();
        if (message->icaoAddress() != 0) result.address = message->icaoAddress();
        result.position = track(message);
    } else {
        result.problem = whyUndecoded(bytes, *result.format);
        if (8 * bytes.size() >= frameBits(format)) message = readAsReceived(bytes, format);
    }
    auto const frame = result.bytes.substr(0, message ? message->size() : bytes.size());
    if (8 * frame.size() == frameBits(format)) result.parity = parityOf(frame);
    result.repairedBits = differingBits(bytes, result.bytes);
    result.fields = message ? fieldsOf(*message, frame, *result.format)
                            : std::vector<FieldView>{formatField(frame, *result.format)};
    if (message) result.description = message->description();
    if (result.problem.empty() && hasADSBPayload(frame)) result.payload = readPayload(frame);
    return result;
}

std::optional<PayloadView> Dissector::readPayload(std::string const& frame) const {
    auto const me = frame.substr(kPayloadFirstBit / 8, kPayloadBytes);
    auto const typeCode = static_cast<std::uint8_t>(bitsOf(me, 0, 5));
    auto const type = ADSBMessage::typeByCode(typeCode);
    PayloadView payload{typeCode, ADSBMessage::typeName(type), ADSBMessage::typeFullName(type), {}, {}};
    for (auto const version : _versions) {
        auto const message = _payloadDecoder.decode(version, me);
        if (!message) {
            payload.unread.push_back(version);
            continue;
        }
        auto fields = payloadFields(*message, frame);
        auto const same =
            std::find_if(payload.readings.begin(), payload.readings.end(), [&](auto const& other) {
                return other.description == message->description() && other.fields == fields;
            });
        if (same != payload.readings.end()) {
            same->versions.push_back(version);
        } else {
            payload.readings.push_back({{version}, message->description(), std::move(fields)});
        }
    }
    return payload;
}

// The position, if this message has completed a pair.
std::optional<PositionView> Dissector::track(std::shared_ptr<ModeSMessage> const& message) {
    dropSilentTargets();
    auto const target = _tracker.procModeSMsg(message);
    if (!target || !target->positionValid() || target->positionLastUpdate() != message->timeStamp())
        return std::nullopt;
    PositionView const position{target->latitude(), target->longitude()};
    bool const isOnGlobe = std::fabs(position.latitude) <= 90 && std::fabs(position.longitude) <= 180;
    return isOnGlobe ? std::optional(position) : std::nullopt;
}

void Dissector::dropSilentTargets() {
    if (_now >= _lastDrop && _now - _lastDrop < kSilence) return;
    if (_now > kSilence) _tracker.killTargets(_now - kSilence);
    _lastDrop = _now;
}

Overlay overlayOf(std::string const& frame) {
    switch (bitsOf(frame, 0, kFormatBits)) {
    case 17:
    case 18: return Overlay::Nothing;
    case 19: return useOf(frame) == 0 ? Overlay::Nothing : Overlay::Unknown;
    case 11: return Overlay::Interrogator;
    case 0:
    case 4:
    case 5:
    case 16:
    case 20:
    case 21: return Overlay::Address;
    default: return Overlay::Unknown;
    }
}

bool isInterrogator(unsigned remainder) { return remainder < modes::ModeSMessageFieldPI::kInterrogatorIds; }

bool hasADSBPayload(std::string const& frame) {
    auto const format = bitsOf(frame, 0, kFormatBits);
    auto const use = useOf(frame);
    return format == 17 || (format == 18 && (use == 0 || use == 1 || use == 6)) || (format == 19 && use == 0);
}

std::vector<FieldView> withGaps(std::vector<FieldView> fields, std::string const& frame, unsigned firstBit,
                                unsigned lastBit) {
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

} // namespace quorvel::host
