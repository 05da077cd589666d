// SPDX-License-Identifier: MIT
#include <modes/modes_decoder.h>

#include <modes/modes_encapsulation.h>

#include "core/log_if_shown.h"
#include "core/recycled.h"
#include "core/text.h"
#include "core/wire.h"
#include "modes/frame_record.h"
#include "modes/trust.h"

#include <array>
#include <type_traits>

namespace quorvel::modes {

namespace {

std::string const kModule = "ModeSDecoder";

template <class Reply>
constexpr bool kIsRepaired = std::is_same_v<Reply, DF17Message> || std::is_same_v<Reply, DF18Message>;

// Inverts the damaged bits of an extended squitter, if there are no more than two of them, and says which.
bool repair(DFMessage const& reply, unsigned int parity, std::string& frame) {
    auto const* format = reply.downlinkFormatName().c_str();
    unsigned char first = 0;
    unsigned char second = 0;
    if (reply.fixError1Bit(frame, first, parity)) {
        logIfShown(Log::Info, kModule, "Fix 1 bit error in %s message at %u.", format, first);
        return true;
    }
    if (reply.fixError2Bits(frame, first, second, parity)) {
        logIfShown(Log::Info, kModule, "Fix 2 bits error in %s message at %u and %u.", format, first, second);
        return true;
    }
    logIfShown(Log::Info, kModule, "Unable to fix error in %s message.", format);
    return false;
}

// The second chance of a reply that did not decode: a damaged frame is repaired and decoded again. Damage of
// the five format bits makes a frame of another format out of the repaired one, which then fails.
template <class Reply> bool decodeRepaired(Reply& reply, std::string const& data) {
    std::string frame = data;
    if (!repair(reply, reply.constFieldPI().parity(), frame)) return false;
    if (reply.decode(frame)) return true;
    logIfShown(Log::Error, kModule, "Faild to decode %s message after CRC fixing.", reply.downlinkFormatName().c_str());
    return false;
}

// What each kind of reply is graded by.

template <class Reply>
concept HasAltitude = requires(Reply const& reply) {
    reply.constFieldAC();
};

template <class Reply>
concept HasIdentity = requires(Reply const& reply) {
    reply.constFieldID();
};

template <HasAltitude Reply> ModeSMessage::Confidence grade(Trust& trust, Reply const& reply, std::int64_t now) {
    return trust.gradeAltitude(reply.icaoAddress(), reply.constFieldAC().altitudeUnit() != 0, now);
}

template <HasIdentity Reply> ModeSMessage::Confidence grade(Trust& trust, Reply const& reply, std::int64_t now) {
    return trust.gradeIdentity(reply.icaoAddress(), reply.constFieldID().identity(), now);
}

ModeSMessage::Confidence grade(Trust& trust, DF11Message const& reply, std::int64_t now) {
    auto const& field = reply.constFieldPI();
    if (!field.interrogatorIdValid()) {
        logIfShown(Log::Info, kModule, "Invalid interrogator id, II = %u", field.interrogatorId());
    }
    return trust.gradeAllCall(reply.icaoAddress(), field.interrogatorId(), now);
}

ModeSMessage::Confidence grade(Trust& trust, DF17Message const& reply, std::int64_t now) {
    return trust.gradeSquitter(reply.icaoAddress(), now);
}

ModeSMessage::Confidence grade(Trust& trust, DF18Message const& reply, std::int64_t now) {
    return trust.gradeSquitter(reply.icaoAddress(), now);
}

ModeSMessage::Confidence grade(Trust& trust, DF19Message const& reply, std::int64_t now) {
    bool const isCivil = reply.constFieldAF().code() == 0;
    return isCivil ? trust.gradeSquitter(reply.icaoAddress(), now) : ModeSMessage::LOW;
}

template <class Reply> std::shared_ptr<ModeSMessage> receive(Trust& trust, std::string const& data) {
    auto reply = makeRecycled<Reply>();
    auto const now = static_cast<std::int64_t>(reply->timeStamp()) / 1000; // the clock's, for this frame
    if (!reply->decode(data)) {
        if constexpr (kIsRepaired<Reply>) {
            if (!decodeRepaired(*reply, data)) return {};
        } else {
            return {};
        }
    }
    reply->setConfidence(grade(trust, *reply, now));
    return reply;
}

using Receive = std::shared_ptr<ModeSMessage> (*)(Trust&, std::string const&);

constexpr auto kReceivers = [] {
    std::array<Receive, DFMessage::DF24 + 1> receivers{};
    receivers[DFMessage::DF0] = &receive<DF0Message>;
    receivers[DFMessage::DF4] = &receive<DF4Message>;
    receivers[DFMessage::DF5] = &receive<DF5Message>;
    receivers[DFMessage::DF11] = &receive<DF11Message>;
    receivers[DFMessage::DF16] = &receive<DF16Message>;
    receivers[DFMessage::DF17] = &receive<DF17Message>;
    receivers[DFMessage::DF18] = &receive<DF18Message>;
    receivers[DFMessage::DF19] = &receive<DF19Message>;
    receivers[DFMessage::DF20] = &receive<DF20Message>;
    receivers[DFMessage::DF21] = &receive<DF21Message>;
    return receivers;
}();

} // namespace

struct ModeSDecoder::Impl {
    Trust trust;
};

ModeSDecoder::ModeSDecoder() : _impl(std::make_unique<Impl>()) { logIfShown(Log::Info, kModule, "Initialized."); }

ModeSDecoder::ModeSDecoder(ModeSDecoder const& other) : _impl(std::make_unique<Impl>(*other._impl)) {}
ModeSDecoder::ModeSDecoder(ModeSDecoder&& other) noexcept = default;
ModeSDecoder& ModeSDecoder::operator=(ModeSDecoder const& other) { return *this = ModeSDecoder(other); }
ModeSDecoder& ModeSDecoder::operator=(ModeSDecoder&& other) noexcept = default;
ModeSDecoder::~ModeSDecoder() = default;

std::shared_ptr<ModeSMessage> ModeSDecoder::decode(ModeSMessage::ModeSMsgType type, std::string const& data) {
    if (data.empty()) return {};
    if (type != ModeSMessage::DOWNLINK) {
        logIfShown(Log::Debug, kModule, "Unsupported UF message detected.");
        return {};
    }
    auto const format = DFMessage::downlinkFormatByCode(wire::formatCode(data));
    auto const receiver = kReceivers[format];
    if (!receiver) {
        logIfShown(Log::Debug, kModule, "Undefined DF-%u message detected.", static_cast<unsigned>(format));
        return {};
    }
    return receiver(_impl->trust, data);
}

std::shared_ptr<ModeSMessage> ModeSDecoder::decode(
    ModeSMessage::ModeSMsgType type, char const* data, unsigned long long size) {
    return decode(type, bytesAt(data, size));
}

std::shared_ptr<ModeSMessage> ModeSDecoder::decode(
    ModeSMessage::ModeSMsgType type, std::string const& data, unsigned long long timeStamp) {
    auto message = decode(type, data);
    if (message && timeStamp != 0) {
        message->setTimeSource(ModeSMessage::EXTERNAL);
        message->setTimeStamp(timeStamp);
    }
    return message;
}

std::shared_ptr<ModeSMessage> ModeSDecoder::decode(
    ModeSMessage::ModeSMsgType type, char const* data, unsigned long long size, unsigned long long timeStamp) {
    return decode(type, bytesAt(data, size), timeStamp);
}

std::shared_ptr<ModeSMessage> ModeSDecoder::decode(
    ModeSMessage::ModeSMsgType type, std::shared_ptr<ModeSEncapsulation> const& frame) {
    if (!frame) return {};
    return decode(type, RecordAccess::data(*frame), frame->timeStamp());
}

} // namespace quorvel::modes
