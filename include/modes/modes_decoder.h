// SPDX-License-Identifier: MIT
#pragma once

#include <modes/df_message.h>
#include <modes/export.h>

#include <cstdint>
#include <memory>
#include <string>

namespace quorvel::modes {

class ModeSEncapsulation;

/// Turns raw Mode S frames into reply messages, repairs damaged extended squitters and grades how far the
/// address of each reply can be trusted.
///
/// Source: parity and its overlay, ICAO Annex 10 Vol. IV, 3.1.2.3.2.1.3, 3.1.2.3.2.1.4
/// and 3.1.2.3.3; repair and grading are this library's own.
///
/// Only DF17 and DF18 carry address and parity in clear. Their addresses become known for ten minutes; a
/// reply whose address is hidden in its parity is believed when it yields a known address. An all-call reply
/// is also judged by its interrogator, which is trusted after ten replies none of which came later than a
/// minute after the one before. Freshness is measured on the host's clock, never by the time stamps of frames
/// (deliberate): a recording replays as if it were received now.
///
/// Memory: an address takes about 50 bytes while it is known. Addresses that were only looked up are not
/// kept, and expired ones make room for new ones.
///
/// One decoder for each receiver, used from one thread at a time. Separate decoders share nothing but the
/// log.
class TREVALLO_EXPORT ModeSDecoder {
public:
    /// What is remembered of an interrogator: the replies to it whose addresses were believed.
    ///
    /// A new record is all zero.
    struct Interrogator {
        std::int64_t time = 0;     ///< when the last of these replies came, in seconds of the host's clock
        std::uint32_t counter = 0; ///< how many came without a pause of more than a minute
    };

    /// No address and no interrogator is known.
    ModeSDecoder();

    /// A copy knows what the original knows, and from then on they learn separately. A decoder that was moved
    /// from may only be destroyed or assigned to.
    ModeSDecoder(ModeSDecoder const& other);
    ModeSDecoder(ModeSDecoder&& other) noexcept;
    ModeSDecoder& operator=(ModeSDecoder const& other);
    ModeSDecoder& operator=(ModeSDecoder&& other) noexcept;

    ~ModeSDecoder();

    /// Decodes one frame, first transmitted byte first. Returns an object of the reply class of its downlink
    /// format, with its confidence set; an empty pointer for an empty or too short frame, an uplink frame, a
    /// format without a class, and an extended squitter that cannot be repaired. Never throws for bad input.
    std::shared_ptr<ModeSMessage> decode(ModeSMessage::ModeSMsgType type, std::string const& data);
    std::shared_ptr<ModeSMessage> decode(ModeSMessage::ModeSMsgType type, char const* data, unsigned long long size);

    /// The same, and the message has the receiver's time stamp (ms since 1970-01-01 00:00:00 UTC). A time
    /// stamp of 0 is none: the message keeps the host's time.
    std::shared_ptr<ModeSMessage> decode(
        ModeSMessage::ModeSMsgType type, std::string const& data, unsigned long long timeStamp);
    std::shared_ptr<ModeSMessage> decode(
        ModeSMessage::ModeSMsgType type, char const* data, unsigned long long size, unsigned long long timeStamp);

    /// The same with bytes and time stamp of a frame record; an empty pointer gives an empty result.
    std::shared_ptr<ModeSMessage> decode(
        ModeSMessage::ModeSMsgType type, std::shared_ptr<ModeSEncapsulation> const& frame);

private:
    struct TREVALLO_HIDDEN Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace quorvel::modes
