// SPDX-License-Identifier: MIT
#include <modes/df_message.h>

#include "core/log_if_shown.h"
#include "core/names.h"
#include "core/wire.h"
#include "modes/layout.h"

#include <algorithm>

namespace quorvel::modes {

namespace {

std::string const kModule = "DFMessage";
std::string const kModuleDF17 = "DF17Message";
std::string const kModuleDF18 = "DF18Message";
std::string const kModuleDF19 = "DF19Message";

// Codes above 24 are all of format 24, so its name is the fallback.
NameTable const kFormatNames{
    {"DF-0", "DF-1", "DF-2", "DF-3", "DF-4", "DF-5", "DF-6", "DF-7", "DF-8", "DF-9", "DF-10", "DF-11", "DF-12", "DF-13",
        "DF-14", "DF-15", "DF-16", "DF-17", "DF-18", "DF-19", "DF-20", "DF-21", "DF-22", "DF-23"},
    "DF-24"};
static_assert(decltype(kFormatNames)::size() == DFMessage::DF24);

constexpr unsigned char kShortReplyBits = 8 * wire::kShortFrameBytes;
constexpr unsigned char kLongReplyBits = 8 * wire::kLongFrameBytes;

// "FS: AIR; AC: 18800"
template <class... Fields> std::string describe(Fields const&... fields) {
    std::string text;
    auto const append = [&text](auto const& field) {
        if (!text.empty()) text += "; ";
        text += field.name() + ": " + field.description();
    };
    (append(fields), ...);
    return text;
}

// Replies whose parity is overlaid with the address: any frame yields one, so none is ever found damaged.
template <class Reply, class Fields> bool decodeAddressParity(Reply& reply, Fields const& fields) {
    if (!reply.DFMessage::decodeImpl()) return false;
    bool const valid = fields.decode(reply.data());
    reply.setIcaoAddress(reply.fieldAP().setParity(reply.calculatedParity()));
    return valid;
}

// Replies with address and parity in clear. The fields keep what was decoded when the parity fails: the
// repair needs the parity that the frame should have.
template <class Reply, class Fields>
bool decodeExtendedSquitter(Reply& reply, Fields const& fields, std::string const& module) {
    bool const valid = fields.decode(reply.data());
    if (reply.fieldPI().setInterrogatorId(0) != reply.calculatedParity()) {
        logIfShown(Log::Info, module, "Parity check failed.");
        return false;
    }
    reply.setIcaoAddress(reply.constFieldAA().icaoAddress());
    return valid;
}

} // namespace

DFMessage::DFMessage(DownlinkFormat format) : ModeSMessage(DOWNLINK), _downlinkFormat(format) {}

std::string DFMessage::description() const { return "Mode-S " + downlinkFormatName() + " Message"; }

bool DFMessage::decodeImpl() {
    if (data().size() < size()) return false;
    if (data().empty() || downlinkFormatByCode(wire::formatCode(data())) != _downlinkFormat) {
        logIfShown(Log::Info, kModule, "DF format mismatch.");
        return false;
    }
    return true;
}

std::string const& DFMessage::downlinkFormatName() const { return kFormatNames[_downlinkFormat]; }

DFMessage::DownlinkFormat DFMessage::downlinkFormatByCode(unsigned char code) {
    return static_cast<DownlinkFormat>(std::min<unsigned>(code, DF24));
}

// DF0: short air-air surveillance

template <class Reply> auto DF0Message::layout(Reply& reply) {
    return Layout(At{reply._fieldVS, 5}, At{reply._fieldAC, 19}, At{reply._fieldAP, 32});
}

DF0Message::DF0Message() : DFMessage(DF0) {}
unsigned char DF0Message::bits() const { return kShortReplyBits; }
std::vector<ModeSMessageField const*> DF0Message::fields() const { return layout(*this).list(); }
std::string DF0Message::description() const { return describe(_fieldVS, _fieldAC); }
bool DF0Message::decodeImpl() { return decodeAddressParity(*this, layout(*this)); }

// DF4: surveillance altitude reply

template <class Reply> auto DF4Message::layout(Reply& reply) {
    return Layout(At{reply._fieldFS, 5}, At{reply._fieldAC, 19}, At{reply._fieldAP, 32});
}

DF4Message::DF4Message() : DFMessage(DF4) {}
unsigned char DF4Message::bits() const { return kShortReplyBits; }
std::vector<ModeSMessageField const*> DF4Message::fields() const { return layout(*this).list(); }
std::string DF4Message::description() const { return describe(_fieldFS, _fieldAC); }
bool DF4Message::decodeImpl() { return decodeAddressParity(*this, layout(*this)); }

// DF5: surveillance identity reply

template <class Reply> auto DF5Message::layout(Reply& reply) {
    return Layout(At{reply._fieldFS, 5}, At{reply._fieldID, 19}, At{reply._fieldAP, 32});
}

DF5Message::DF5Message() : DFMessage(DF5) {}
unsigned char DF5Message::bits() const { return kShortReplyBits; }
std::vector<ModeSMessageField const*> DF5Message::fields() const { return layout(*this).list(); }
std::string DF5Message::description() const { return describe(_fieldFS, _fieldID); }
bool DF5Message::decodeImpl() { return decodeAddressParity(*this, layout(*this)); }

// DF11: all-call reply

template <class Reply> auto DF11Message::layout(Reply& reply) {
    return Layout(At{reply._fieldCA, 5}, At{reply._fieldAA, 8}, At{reply._fieldPI, 32});
}

DF11Message::DF11Message() : DFMessage(DF11) {}
unsigned char DF11Message::bits() const { return kShortReplyBits; }
std::vector<ModeSMessageField const*> DF11Message::fields() const { return layout(*this).list(); }
std::string DF11Message::description() const { return describe(_fieldCA, _fieldAA, _fieldPI); }
bool DF11Message::decodeImpl() {
    if (!DFMessage::decodeImpl()) return false;
    bool const valid = layout(*this).decode(data());
    _fieldPI.setParity(calculatedParity());
    setIcaoAddress(_fieldAA.icaoAddress());
    return valid;
}

// DF16: long air-air surveillance

template <class Reply> auto DF16Message::layout(Reply& reply) {
    return Layout(At{reply._fieldVS, 5}, At{reply._fieldAC, 19}, At{reply._fieldMV, 32}, At{reply._fieldAP, 88});
}

DF16Message::DF16Message() : DFMessage(DF16) {}
unsigned char DF16Message::bits() const { return kLongReplyBits; }
std::vector<ModeSMessageField const*> DF16Message::fields() const { return layout(*this).list(); }
std::string DF16Message::description() const { return describe(_fieldVS, _fieldAC); }
bool DF16Message::decodeImpl() { return decodeAddressParity(*this, layout(*this)); }

// DF17: extended squitter

template <class Reply> auto DF17Message::layout(Reply& reply) {
    return Layout(At{reply._fieldCA, 5}, At{reply._fieldAA, 8}, At{reply._fieldME, 32}, At{reply._fieldPI, 88});
}

DF17Message::DF17Message() : DFMessage(DF17) {}
unsigned char DF17Message::bits() const { return kLongReplyBits; }
std::vector<ModeSMessageField const*> DF17Message::fields() const { return layout(*this).list(); }
std::string DF17Message::description() const { return describe(_fieldCA, _fieldAA, _fieldME); }
bool DF17Message::decodeImpl() {
    return DFMessage::decodeImpl() && decodeExtendedSquitter(*this, layout(*this), kModuleDF17);
}

// DF18: extended squitter of a device that is not a transponder

template <class Reply> auto DF18Message::layout(Reply& reply) {
    return Layout(At{reply._fieldCF, 5}, At{reply._fieldAA, 8}, At{reply._fieldME, 32}, At{reply._fieldPI, 88});
}

DF18Message::DF18Message() : DFMessage(DF18) {}
unsigned char DF18Message::bits() const { return kLongReplyBits; }
std::vector<ModeSMessageField const*> DF18Message::fields() const { return layout(*this).list(); }
std::string DF18Message::description() const { return describe(_fieldCF, _fieldAA, _fieldME); }
bool DF18Message::decodeImpl() {
    return DFMessage::decodeImpl() && decodeExtendedSquitter(*this, layout(*this), kModuleDF18);
}

// DF19: military extended squitter; what follows AF is civil, and laid out as in DF17, only when AF is 0

template <class Reply> auto DF19Message::layout(Reply& reply) {
    return Layout(At{reply._fieldAF, 5}, At{reply._fieldAA, 8}, At{reply._fieldME, 32}, At{reply._fieldPI, 88});
}

DF19Message::DF19Message() : DFMessage(DF19) {}
unsigned char DF19Message::bits() const { return kLongReplyBits; }
std::vector<ModeSMessageField const*> DF19Message::fields() const {
    if (!_fieldAF.valid() || _fieldAF.code() != 0) return {&_fieldAF};
    return layout(*this).list();
}
std::string DF19Message::description() const { return describe(_fieldAF, _fieldAA, _fieldME); }
bool DF19Message::decodeImpl() {
    if (!DFMessage::decodeImpl()) return false;
    bool const valid = Layout(At{_fieldAF, 5}).decode(data());
    if (!valid || _fieldAF.code() != 0) {
        logIfShown(Log::Info, kModuleDF19, "AF = %u, reserved for military applications.", _fieldAF.code());
        return valid;
    }
    return decodeExtendedSquitter(*this, layout(*this), kModuleDF19);
}

// DF20: Comm-B altitude reply

template <class Reply> auto DF20Message::layout(Reply& reply) {
    return Layout(At{reply._fieldFS, 5}, At{reply._fieldAC, 19}, At{reply._fieldMB, 32}, At{reply._fieldAP, 88});
}

DF20Message::DF20Message() : DFMessage(DF20) {}
unsigned char DF20Message::bits() const { return kLongReplyBits; }
std::vector<ModeSMessageField const*> DF20Message::fields() const { return layout(*this).list(); }
std::string DF20Message::description() const { return describe(_fieldFS, _fieldAC); }
bool DF20Message::decodeImpl() { return decodeAddressParity(*this, layout(*this)); }

// DF21: Comm-B identity reply

template <class Reply> auto DF21Message::layout(Reply& reply) {
    return Layout(At{reply._fieldFS, 5}, At{reply._fieldID, 19}, At{reply._fieldMB, 32}, At{reply._fieldAP, 88});
}

DF21Message::DF21Message() : DFMessage(DF21) {}
unsigned char DF21Message::bits() const { return kLongReplyBits; }
std::vector<ModeSMessageField const*> DF21Message::fields() const { return layout(*this).list(); }
std::string DF21Message::description() const { return describe(_fieldFS, _fieldID); }
bool DF21Message::decodeImpl() { return decodeAddressParity(*this, layout(*this)); }

} // namespace quorvel::modes
