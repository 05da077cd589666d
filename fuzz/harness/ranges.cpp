// SPDX-License-Identifier: MIT
#include "harness/ranges.h"

#include <modes/adsb_target.h>
#include <modes/adsb_target_report.h>
#include <modes/df_message.h>

#include "harness/require.h"

namespace quorvel::fuzz {

namespace {

using namespace modes;

constexpr unsigned kLargest24Bits = 0xFFFFFF;
constexpr std::size_t kMessageBytes = 7;

// Values of the fields of replies, by class.

void checkField(ModeSMessageFieldAA const& field) {
    requireWithin<unsigned>(field.icaoAddress(), 0, kLargest24Bits, "AA");
}

void checkField(ModeSMessageFieldAC const& field) {
    auto const step = static_cast<int>(field.altitudeResolution());
    require(step == 25 || step == 100, "altitude codes have steps of 25 or 100 ft");
    requireWithin(field.altitude(), -1000, 2047 * step - 1000, "AC");
    requireWithin<unsigned>(field.altitudeUnit(), 0, 1, "altitude unit");
}

void checkField(ModeSMessageFieldAF const& field) { requireWithin<unsigned>(field.code(), 0, 7, "AF"); }

void checkField(ModeSMessageFieldAP const& field) {
    requireWithin<unsigned>(field.addressParity(), 0, kLargest24Bits, "AP");
    require(field.icaoAddress() == (field.parity() ^ field.addressParity()), "an address is overlaid on the parity");
}

void checkField(ModeSMessageFieldCA const& field) { requireWithin<unsigned>(field.capability(), 0, 7, "CA"); }

void checkField(ModeSMessageFieldCF const& field) { requireWithin<unsigned>(field.code(), 0, 7, "CF"); }

void checkField(ModeSMessageFieldFS const& field) { requireWithin<unsigned>(field.flightStatus(), 0, 7, "FS"); }

void checkField(ModeSMessageFieldID const& field) {
    requireWithin<unsigned>(field.identity(), 0, 07777, "ID");
    require(field.description().size() == 4, "an identity has four digits");
}

void checkField(ModeSMessageFieldPI const& field) {
    requireWithin<unsigned>(field.parityInterrogatorId(), 0, kLargest24Bits, "PI");
    require(field.interrogatorIdValid() == (field.interrogatorId() < 80), "interrogators are below 80");
}

void checkField(ModeSMessageFieldVS const& field) { requireWithin<unsigned>(field.verticalStatus(), 0, 1, "VS"); }

template <class Message> void checkMessageField(Message const& field) {
    require(field.data().size() == kMessageBytes, "a message field has 7 bytes");
    require(field.dataHexString().size() == 2 * kMessageBytes, "two digits for each byte");
}

void checkField(ModeSMessageFieldMB const& field) { checkMessageField(field); }
void checkField(ModeSMessageFieldME const& field) { checkMessageField(field); }
void checkField(ModeSMessageFieldMV const& field) { checkMessageField(field); }

template <class... Field> void checkAsOneOf(ModeSMessageField const& field) {
    auto const checkedAs = [](auto const* known) {
        if (known) checkField(*known);
        return known != nullptr;
    };
    require((checkedAs(dynamic_cast<Field const*>(&field)) || ...), "a field is of a known class");
}

void checkAnyField(ModeSMessageField const& field) {
    require(field.valid(), "a field of a decoded reply is valid");
    require(!field.name().empty() && field.name() != "--", "a field has a name");
    require(!field.fullName().empty() && !field.description().empty(), "a field has texts");
    checkAsOneOf<ModeSMessageFieldAA, ModeSMessageFieldAC, ModeSMessageFieldAF, ModeSMessageFieldAP,
        ModeSMessageFieldCA, ModeSMessageFieldCF, ModeSMessageFieldFS, ModeSMessageFieldID, ModeSMessageFieldMB,
        ModeSMessageFieldME, ModeSMessageFieldMV, ModeSMessageFieldPI, ModeSMessageFieldVS>(field);
}

// Items of targets.

void checkIdentity(ADSBTarget const& target) {
    static std::string const letters = "?ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123456789";
    requireWithin<unsigned>(target.icaoAddr(), 0, kLargest24Bits, "address");
    requireWithin<unsigned>(target.trackId(), 1, 4095, "track number");
    auto const callsign = target.callsign();
    require(callsign.empty() || callsign.size() == 8, "a callsign has 8 characters");
    require(callsign.find_first_not_of(letters) == std::string::npos, "a callsign has characters of its table");
    requireWithin<unsigned>(target.emitterCategory(), 0, 7, "emitter category");
    requireWithin<unsigned>(target.squawk(), 0, 07777, "squawk");
    requireWithin<unsigned>(target.transponderCommCapability(), 0, 7, "capability");
    requireWithin<unsigned>(target.mopsVersion(), MOPS_V0, MOPS_UNKNOWN, "version");
}

void checkMotion(ADSBTarget const& target) {
    require(target.latitude() >= -90.0 && target.latitude() < 270.0, "a latitude is one of 60 zones");
    require(target.longitude() > -180.0 && target.longitude() <= 180.0, "a longitude is around the globe");
    requireWithin(target.altitudeBaro(), -1000, 203'700, "altitude");
    requireWithin(target.groundSpeed(), 0.0, 4 * 1446.0, "ground speed"); // 1022 * sqrt 2, supersonic
    require(target.heading() >= 0.0 && target.heading() < 360.0, "a heading is below 360 degrees");
    requireWithin(target.verticalRateBaro(), -510 * 64, 510 * 64, "vertical rate");
    requireWithin<unsigned>(target.groundStatus(), ADSBTarget::UNKNOWN, ADSBTarget::AIRBORNE, "ground status");
}

void checkQuality(ADSBTarget const& target) {
    requireWithin<unsigned>(target.nucp(), 0, 9, "NUCp");
    requireWithin<unsigned>(target.nucr(), 0, 3, "NUCr");
    requireWithin<unsigned>(target.nic(), 0, 11, "NIC");
    requireWithin<unsigned>(target.pic(), 0, 14, "PIC");
    requireWithin<unsigned>(target.nacp(), 0, 11, "NACp");
    requireWithin<unsigned>(target.sil(), 0, 2, "SIL");
    require(!target.nucrValid() || target.mopsVersion() == MOPS_V0, "NUCr is of version 0");
    require(!target.nicSupplementAValid() || target.mopsVersion() != MOPS_V0, "supplement A is of later versions");
    require(!target.nicSupplementBValid() || target.mopsVersion() >= MOPS_V2, "supplement B is of version 2");
    require(!target.nicSupplementCValid() || target.mopsVersion() >= MOPS_V2, "supplement C is of version 2");
}

void checkStatistics(ADSBTarget const& target) {
    unsigned replies = 0;
    unsigned messages = 0;
    for (unsigned format = 0; format <= DFMessage::DF24; ++format) {
        replies += target.statisticDfMsgCount(static_cast<DFMessage::DownlinkFormat>(format));
    }
    for (unsigned type = 0; type <= ADSBMessage::RESERVED; ++type) {
        messages += target.statisticADSBMsgCount(static_cast<ADSBMessage::ADSBMessageType>(type));
    }
    require(replies == target.statisticDfMsgCount(), "the sum counts every reply");
    require(messages == target.statisticDfMsgCount(DFMessage::DF17), "every counted squitter has a message");
    require(target.statisticADSBMsgCount(ADSBMessage::RESERVED) == 0, "reserved messages are none");
}

} // namespace

void checkReply(ModeSMessage const& reply) {
    require(reply.valid() && reply.modeSMsgType() == ModeSMessage::DOWNLINK, "a decoded reply is valid");
    requireWithin<unsigned>(reply.confidence(), ModeSMessage::NONE, ModeSMessage::HIGH, "confidence");
    requireWithin<unsigned>(reply.calculatedParity(), 0, kLargest24Bits, "parity");
    requireWithin<unsigned>(reply.icaoAddress(), 0, kLargest24Bits, "address");
    require(reply.data().size() >= reply.size() && reply.dataHexString().size() == 2 * reply.data().size(),
        "a reply holds its frame");
    require(reply.icaoAddressHexString().size() >= 2 && reply.calculatedParityHexString().size() >= 2,
        "numbers have two digits or more");
    require(!reply.description().empty(), "a reply is described");

    int end = 5; // of the format
    for (auto const* field : reply.fields()) {
        checkAnyField(*field);
        require(field->pos() >= end, "fields stand in the order of the frame");
        end = field->pos() + field->bits();
    }
    require(end <= reply.bits(), "fields lie in the frame");
}

void checkTarget(ADSBTarget const& target) {
    checkIdentity(target);
    checkMotion(target);
    checkQuality(target);
    checkStatistics(target);
}

void checkReport(ADSBTargetReport const& report, ADSBTarget const& target) {
    require(report.trackId() == target.trackId() && report.lastUpdate() == target.lastUpdate() &&
                report.icaoAddress() == target.icaoAddr() && report.callsign() == target.callsign() &&
                report.emitterCategory() == target.emitterCategory() && report.squawk() == target.squawk() &&
                report.mopsVersion() == target.mopsVersion(),
        "a report has its target's identity");
    require(report.latitude() == target.latitude() && report.longitude() == target.longitude() &&
                report.altitudeBaro() == target.altitudeBaro() && report.groundSpeed() == target.groundSpeed() &&
                report.heading() == target.heading() && report.verticalRateBaro() == target.verticalRateBaro() &&
                report.groundStatus() == (target.groundStatus() == ADSBTarget::ON_GROUND),
        "a report has its target's motion");
    require(report.nucp() == target.nucp() && report.nucr() == target.nucp() && report.nic() == target.nic() &&
                report.pic() == target.pic() && report.nacp() == target.nacp() && report.sil() == target.sil(),
        "a report has its target's quality, and NUCp for NUCr");
    require(report.positionValid() == target.positionValid() && report.squawkValid() == target.squawkValid() &&
                report.silValid() == target.silValid() && report.nucrValid() == target.nucrValid() &&
                report.callsignValid() == !target.callsign().empty(),
        "a report has its target's verdicts");
    require(report.valid() == (target.lastUpdate() != 0 && target.icaoAddrValid()), "a report knows if it is valid");
}

} // namespace quorvel::fuzz
