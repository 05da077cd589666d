// SPDX-License-Identifier: MIT
#include <modes/modes_decoder.h>

#include <modes/log.h>
#include <modes/modes_encapsulation.h>

#include "core/recycled.h"
#include "core/text.h"
#include "modes/frame_record.h"

#include <array>
#include <type_traits>

namespace quorvel::modes {

namespace {

std::string const kModule = "ModeSDecoder";

constexpr unsigned int kIdentities = 4096; // codes of four octal digits

template <class Reply>
constexpr bool kIsRepaired = std::is_same_v<Reply, DF17Message> || std::is_same_v<Reply, DF18Message>;

// Inverts the damaged bits of an extended squitter, if there are no more than two of them, and says which.
bool repair(DFMessage const& reply, unsigned int parity, std::string& frame) {
    auto const* format = reply.downlinkFormatName().c_str();
    unsigned char first = 0;
    unsigned char second = 0;
    if (reply.fixError1Bit(frame, first, parity)) {
        Log::log(Log::Info, kModule, "Fix 1 bit error in %s message at %u.", format, first);
        return true;
    }
    if (reply.fixError2Bits(frame, first, second, parity)) {
        Log::log(Log::Info, kModule, "Fix 2 bits error in %s message at %u and %u.", format, first, second);
        return true;
    }
    Log::log(Log::Info, kModule, "Unable to fix error in %s message.", format);
    return false;
}

// The second chance of a reply that did not decode: a damaged frame is repaired and decoded again. Damage of
// the five format bits makes a frame of another format out of the repaired one, which then fails.
template <class Reply> bool decodeRepaired(Reply& reply, std::string const& data) {
    std::string frame = data;
    if (!repair(reply, reply.constFieldPI().parity(), frame)) return false;
    if (reply.decode(frame)) return true;
    Log::log(Log::Error, kModule, "Faild to decode %s message after CRC fixing.",
             reply.downlinkFormatName().c_str());
    return false;
}

} // namespace

ModeSDecoder::ModeSDecoder() { Log::log(Log::Info, kModule, "Initialized."); }

std::shared_ptr<ModeSMessage> ModeSDecoder::decode(ModeSMessage::ModeSMsgType type, std::string const& data) {
    using Receive = std::shared_ptr<ModeSMessage> (ModeSDecoder::*)(std::string const&);
    static constexpr auto kReceivers = [] {
        std::array<Receive, DFMessage::DF24 + 1> receivers{};
        receivers[DFMessage::DF0] = &ModeSDecoder::receive<DF0Message>;
        receivers[DFMessage::DF4] = &ModeSDecoder::receive<DF4Message>;
        receivers[DFMessage::DF5] = &ModeSDecoder::receive<DF5Message>;
        receivers[DFMessage::DF11] = &ModeSDecoder::receive<DF11Message>;
        receivers[DFMessage::DF16] = &ModeSDecoder::receive<DF16Message>;
        receivers[DFMessage::DF17] = &ModeSDecoder::receive<DF17Message>;
        receivers[DFMessage::DF18] = &ModeSDecoder::receive<DF18Message>;
        receivers[DFMessage::DF19] = &ModeSDecoder::receive<DF19Message>;
        receivers[DFMessage::DF20] = &ModeSDecoder::receive<DF20Message>;
        receivers[DFMessage::DF21] = &ModeSDecoder::receive<DF21Message>;
        return receivers;
    }();

    if (data.empty()) return {};
    if (type != ModeSMessage::DOWNLINK) {
        Log::log(Log::Debug, kModule, "Unsupported UF message detected.");
        return {};
    }
    auto const format = DFMessage::downlinkFormatByCode(static_cast<unsigned char>(data[0]) >> 3);
    auto const receiver = kReceivers[format];
    if (!receiver) {
        Log::log(Log::Debug, kModule, "Undefined DF-%u message detected.", static_cast<unsigned>(format));
        return {};
    }
    return (this->*receiver)(data);
}

std::shared_ptr<ModeSMessage> ModeSDecoder::decode(ModeSMessage::ModeSMsgType type, char const* data,
                                                   unsigned long long size) {
    return decode(type, bytesAt(data, size));
}

std::shared_ptr<ModeSMessage> ModeSDecoder::decode(ModeSMessage::ModeSMsgType type, std::string const& data,
                                                   unsigned long long timeStamp) {
    auto message = decode(type, data);
    if (message && timeStamp != 0) {
        message->setTimeSource(ModeSMessage::EXTERNAL);
        message->setTimeStamp(timeStamp);
    }
    return message;
}

std::shared_ptr<ModeSMessage> ModeSDecoder::decode(ModeSMessage::ModeSMsgType type, char const* data,
                                                   unsigned long long size, unsigned long long timeStamp) {
    return decode(type, bytesAt(data, size), timeStamp);
}

std::shared_ptr<ModeSMessage> ModeSDecoder::decode(ModeSMessage::ModeSMsgType type,
                                                   std::shared_ptr<ModeSEncapsulation> const& frame) {
    if (!frame) return {};
    return decode(type, RecordAccess::data(*frame), frame->timeStamp());
}

template <class Reply> std::shared_ptr<ModeSMessage> ModeSDecoder::receive(std::string const& data) {
    auto reply = makeRecycled<Reply>();
    _now = static_cast<long long>(reply->timeStamp()) / 1000; // the clock's reading for this frame
    if (!reply->decode(data)) {
        if constexpr (kIsRepaired<Reply>) {
            if (!decodeRepaired(*reply, data)) return {};
        } else {
            return {};
        }
    }
    reply->setConfidence(grade(*reply));
    return reply;
}

// A metric altitude is not to be trusted, but the reply is as good a sign of its aircraft as any other.
template <class Reply> ModeSMessage::Confidence ModeSDecoder::gradeByAltitude(Reply const& reply) {
    auto const confidence = confirmIfKnown(reply.icaoAddress()) ? ModeSMessage::HIGH : ModeSMessage::LOW;
    return reply.constFieldAC().altitudeUnit() != 0 ? ModeSMessage::NONE : confidence;
}

template <class Reply> ModeSMessage::Confidence ModeSDecoder::gradeByIdentity(Reply const& reply) {
    if (confirmIfKnown(reply.icaoAddress())) return ModeSMessage::HIGH;
    return reply.constFieldID().identity() < kIdentities ? ModeSMessage::LOW : ModeSMessage::NONE;
}

ModeSMessage::Confidence ModeSDecoder::gradeAsConfirmed(ModeSMessage const& reply) {
    confirm(reply.icaoAddress());
    return ModeSMessage::HIGH;
}

ModeSMessage::Confidence ModeSDecoder::grade(DF0Message const& reply) { return gradeByAltitude(reply); }
ModeSMessage::Confidence ModeSDecoder::grade(DF4Message const& reply) { return gradeByAltitude(reply); }
ModeSMessage::Confidence ModeSDecoder::grade(DF16Message const& reply) { return gradeByAltitude(reply); }
ModeSMessage::Confidence ModeSDecoder::grade(DF20Message const& reply) { return gradeByAltitude(reply); }
ModeSMessage::Confidence ModeSDecoder::grade(DF5Message const& reply) { return gradeByIdentity(reply); }
ModeSMessage::Confidence ModeSDecoder::grade(DF21Message const& reply) { return gradeByIdentity(reply); }
ModeSMessage::Confidence ModeSDecoder::grade(DF17Message const& reply) { return gradeAsConfirmed(reply); }
ModeSMessage::Confidence ModeSDecoder::grade(DF18Message const& reply) { return gradeAsConfirmed(reply); }

ModeSMessage::Confidence ModeSDecoder::grade(DF19Message const& reply) {
    return reply.constFieldAF().code() == 0 ? gradeAsConfirmed(reply) : ModeSMessage::LOW;
}

// An all-call reply carries its address in clear but no proof of being intact. It is believed when both the
// address and the interrogator that it answers have been heard of.
ModeSMessage::Confidence ModeSDecoder::grade(DF11Message const& reply) {
    auto const& field = reply.constFieldPI();
    if (!field.interrogatorIdValid()) {
        Log::log(Log::Info, kModule, "Invalid interrogator id, II = %u", field.interrogatorId());
        return ModeSMessage::NONE;
    }

    auto& interrogator = _interrogators[field.interrogatorId()];
    bool const isCurrent = interrogator.known && isFresh(interrogator.lastReply, _interrogatorTimeout);
    bool const isKnown = confirmIfKnown(reply.icaoAddress());
    if (!isKnown) {
        if (!isCurrent || interrogator.replies < _interrogatorConfirmCount) return ModeSMessage::NONE;
        confirm(reply.icaoAddress());
    }
    if (!isCurrent) {
        interrogator = {_now, 1, true};
        return ModeSMessage::LOW;
    }
    interrogator.lastReply = _now;
    ++interrogator.replies;
    bool const isTrusted =
        !isKnown || field.interrogatorId() == 0 || interrogator.replies >= _interrogatorConfirmCount;
    return isTrusted ? ModeSMessage::HIGH : ModeSMessage::MEDIUM;
}

bool ModeSDecoder::isFresh(long long time, unsigned int timeout) const { return time + timeout >= _now; }

// When the address was last confirmed, null when that was too long ago or never.
long long* ModeSDecoder::findFresh(unsigned int address) {
    auto* confirmed = _addresses.find(address);
    return confirmed && isFresh(*confirmed, _addressTimeout) ? confirmed : nullptr;
}

// Anyone can send squitters with any address. What is stale makes room before the memory grows.
void ModeSDecoder::confirm(unsigned int address) {
    if (auto* confirmed = _addresses.find(address)) {
        *confirmed = _now;
        return;
    }
    if (_addresses.isFull()) {
        _addresses.eraseIf([this](long long confirmed) { return !isFresh(confirmed, _addressTimeout); });
    }
    _addresses[address] = _now;
}

bool ModeSDecoder::confirmIfKnown(unsigned int address) {
    auto* confirmed = findFresh(address);
    if (confirmed) *confirmed = _now;
    return confirmed != nullptr;
}

} // namespace quorvel::modes
