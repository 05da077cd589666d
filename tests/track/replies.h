// SPDX-License-Identifier: MIT
#pragma once

#include <modes/df_message.h>

#include "support/frames.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace quorvel::modes::test {

/// A decoded reply as the decoder of Mode S frames would hand it over.
template <class Reply>
std::shared_ptr<Reply> reply(
    std::string const& frame, unsigned long long time, ModeSMessage::Confidence confidence = ModeSMessage::HIGH) {
    auto message = std::make_shared<Reply>();
    EXPECT_TRUE(message->decode(frame));
    message->setTimeStamp(time);
    message->setConfidence(confidence);
    return message;
}

/// An extended squitter carrying a payload.
inline std::shared_ptr<DF17Message> squitterReply(
    unsigned address, std::string const& payload, unsigned long long time) {
    return reply<DF17Message>(squitter(address, payload), time);
}

/// A decoded ADS-B message, for handlers that are called with one.
template <class Message> std::shared_ptr<Message> adsbMessage(std::string const& payload, unsigned long long time) {
    auto message = std::make_shared<Message>();
    EXPECT_TRUE(message->decode(payload));
    message->setTimeStamp(time);
    return message;
}

} // namespace quorvel::modes::test
