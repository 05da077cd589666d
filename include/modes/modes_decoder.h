// SPDX-License-Identifier: MIT
#pragma once

#include <modes/detail/address_map.h>
#include <modes/df_message.h>

#include <array>
#include <memory>
#include <string>

namespace quorvel::modes {

class ModeSEncapsulation;

/// Turns raw Mode S frames into reply messages, repairs damaged extended squitters and grades how far the
/// address of each reply can be trusted.
///
/// Source: parity and what is laid over it, ICAO Annex 10 Vol. IV, 3.1.2.3.2.1.3, 3.1.2.3.2.1.4
/// and 3.1.2.3.3; repair and grading are this library's own.
///
/// Only DF17 and DF18 carry address and parity in clear. Their addresses become known for ten minutes; a
/// reply whose address is hidden in its parity is believed when it yields a known address. An all-call reply
/// is also judged by its interrogator, which is trusted after ten replies none of which came later than a
/// minute after the one before. Freshness is measured on the host's clock, never by the time stamps of frames
/// (deliberate): a recording replays as if it were received now.
///
/// Memory: an address takes about 50 bytes while it is known. Addresses that were only looked up are not
/// kept, and those known no longer make room for new ones.
///
/// One decoder for each receiver, used from one thread at a time. Separate decoders share nothing but the
/// log.
class TREVALLO_EXPORT ModeSDecoder {
public:
    ModeSDecoder();

    /// Decodes one frame, first transmitted byte first. Returns an object of the reply class of its downlink
    /// format, with its confidence set; an empty pointer for an empty or too short frame, an uplink frame, a
    /// format without a class, and an extended squitter that cannot be repaired. Never throws for bad input.
    std::shared_ptr<ModeSMessage> decode(ModeSMessage::ModeSMsgType type, std::string const& data);
    std::shared_ptr<ModeSMessage> decode(ModeSMessage::ModeSMsgType type, char const* data,
                                         unsigned long long size);

    /// The same, and the message bears the receiver's time stamp (ms since 1970-01-01 00:00:00 UTC). A time
    /// stamp of 0 is none: the message keeps the host's time.
    std::shared_ptr<ModeSMessage> decode(ModeSMessage::ModeSMsgType type, std::string const& data,
                                         unsigned long long timeStamp);
    std::shared_ptr<ModeSMessage> decode(ModeSMessage::ModeSMsgType type, char const* data,
                                         unsigned long long size, unsigned long long timeStamp);

    /// The same with bytes and time stamp of a frame record; an empty pointer gives an empty result.
    std::shared_ptr<ModeSMessage> decode(ModeSMessage::ModeSMsgType type,
                                         std::shared_ptr<ModeSEncapsulation> const& frame);

private:
    /// Times are seconds of the host's clock.
    struct Interrogator {
        long long lastReply = 0; // s
        unsigned int replies = 0;
        bool known = false;
    };

    template <class Reply> std::shared_ptr<ModeSMessage> receive(std::string const& data);
    template <class Reply> ModeSMessage::Confidence gradeByAltitude(Reply const& reply);
    template <class Reply> ModeSMessage::Confidence gradeByIdentity(Reply const& reply);
    ModeSMessage::Confidence gradeAsConfirmed(ModeSMessage const& reply);

    ModeSMessage::Confidence grade(DF0Message const& reply);
    ModeSMessage::Confidence grade(DF4Message const& reply);
    ModeSMessage::Confidence grade(DF5Message const& reply);
    ModeSMessage::Confidence grade(DF11Message const& reply);
    ModeSMessage::Confidence grade(DF16Message const& reply);
    ModeSMessage::Confidence grade(DF17Message const& reply);
    ModeSMessage::Confidence grade(DF18Message const& reply);
    ModeSMessage::Confidence grade(DF19Message const& reply);
    ModeSMessage::Confidence grade(DF20Message const& reply);
    ModeSMessage::Confidence grade(DF21Message const& reply);

    bool isFresh(long long time, unsigned int timeout) const;
    long long* findFresh(unsigned int address);
    void confirm(unsigned int address);
    bool confirmIfKnown(unsigned int address);

    detail::AddressMap<long long> _addresses; // when each was last confirmed, s
    unsigned int _addressTimeout = 600;       // seconds
    std::array<Interrogator, ModeSMessageFieldPI::kInterrogatorIds> _interrogators;
    unsigned int _interrogatorTimeout = 60; // seconds
    unsigned int _interrogatorConfirmCount = 10;
    long long _now = 0; // s, of the frame being decoded
};

} // namespace quorvel::modes
