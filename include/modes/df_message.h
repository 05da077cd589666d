// SPDX-License-Identifier: MIT
#pragma once

#include <modes/modes_message.h>
#include <modes/modes_message_field.h>

namespace quorvel::modes {

/// A reply of one downlink format (ICAO Annex 10 Vol. IV, 3.1.2.3.2.1).
///
/// Each reply class has its fields as members, with a mutable and a const accessor for each; `fields()` lists
/// them in frame order. Formats whose parity is overlaid with the address (AP) take the address from there:
/// they cannot distinguish damaged frames from intact ones.
class TREVALLO_EXPORT DFMessage : public ModeSMessage {
public:
    /// The value is the number of the format. `DF24` stands for all codes from 24 to 31, which share their
    /// first two bits.
    enum DownlinkFormat : std::uint32_t {
        DF0 = 0,
        DF1,
        DF2,
        DF3,
        DF4,
        DF5,
        DF6,
        DF7,
        DF8,
        DF9,
        DF10,
        DF11,
        DF12,
        DF13,
        DF14,
        DF15,
        DF16,
        DF17,
        DF18,
        DF19,
        DF20,
        DF21,
        DF22,
        DF23,
        DF24,
    };

    /// A downlink reply of this format that is not decoded yet.
    explicit DFMessage(DownlinkFormat format);

    std::string description() const override;

    /// Checks that the frame is long enough and of this format ("DF format mismatch." in the log if it is
    /// not).
    bool decodeImpl() override;

    DownlinkFormat downlinkFormat() const { return _downlinkFormat; } ///< as of the class, whatever the frame
    std::string const& downlinkFormatName() const;                    ///< "DF-0" to "DF-24"

    /// Format of a frame whose first five bits are `code`.
    static DownlinkFormat downlinkFormatByCode(unsigned char code);

private:
    DownlinkFormat _downlinkFormat;
};

/// Short air-air surveillance (ICAO Annex 10 Vol. IV, 3.1.2.8.2), 56 bits: VS, AC, AP.
class TREVALLO_EXPORT DF0Message : public DFMessage {
public:
    DF0Message();
    unsigned char bits() const override;
    std::vector<ModeSMessageField const*> fields() const override;
    std::string description() const override;
    bool decodeImpl() override;

    /// The fields, to change and to read.
    ModeSMessageFieldVS& fieldVS() { return _fieldVS; }
    ModeSMessageFieldVS const& constFieldVS() const { return _fieldVS; }
    ModeSMessageFieldAC& fieldAC() { return _fieldAC; }
    ModeSMessageFieldAC const& constFieldAC() const { return _fieldAC; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    ModeSMessageFieldAP const& constFieldAP() const { return _fieldAP; }

private:
    template <class Reply> static auto layout(Reply& reply);

    ModeSMessageFieldVS _fieldVS;
    ModeSMessageFieldAC _fieldAC;
    ModeSMessageFieldAP _fieldAP;
};

/// Surveillance altitude reply (ICAO Annex 10 Vol. IV, 3.1.2.6.5), 56 bits: FS, AC, AP.
class TREVALLO_EXPORT DF4Message : public DFMessage {
public:
    DF4Message();
    unsigned char bits() const override;
    std::vector<ModeSMessageField const*> fields() const override;
    std::string description() const override;
    bool decodeImpl() override;

    /// The fields, to change and to read.
    ModeSMessageFieldFS& fieldFS() { return _fieldFS; }
    ModeSMessageFieldFS const& constFieldFS() const { return _fieldFS; }
    ModeSMessageFieldAC& fieldAC() { return _fieldAC; }
    ModeSMessageFieldAC const& constFieldAC() const { return _fieldAC; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    ModeSMessageFieldAP const& constFieldAP() const { return _fieldAP; }

private:
    template <class Reply> static auto layout(Reply& reply);

    ModeSMessageFieldFS _fieldFS;
    ModeSMessageFieldAC _fieldAC;
    ModeSMessageFieldAP _fieldAP;
};

/// Surveillance identity reply (ICAO Annex 10 Vol. IV, 3.1.2.6.7), 56 bits: FS, ID, AP.
class TREVALLO_EXPORT DF5Message : public DFMessage {
public:
    DF5Message();
    unsigned char bits() const override;
    std::vector<ModeSMessageField const*> fields() const override;
    std::string description() const override;
    bool decodeImpl() override;

    /// The fields, to change and to read.
    ModeSMessageFieldFS& fieldFS() { return _fieldFS; }
    ModeSMessageFieldFS const& constFieldFS() const { return _fieldFS; }
    ModeSMessageFieldID& fieldID() { return _fieldID; }
    ModeSMessageFieldID const& constFieldID() const { return _fieldID; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    ModeSMessageFieldAP const& constFieldAP() const { return _fieldAP; }

private:
    template <class Reply> static auto layout(Reply& reply);

    ModeSMessageFieldFS _fieldFS;
    ModeSMessageFieldID _fieldID;
    ModeSMessageFieldAP _fieldAP;
};

/// All-call reply (ICAO Annex 10 Vol. IV, 3.1.2.5.2.2), 56 bits: CA, AA, PI.
/// Its parity carries the interrogator identifier: it never fails on parity, the decoder judges the
/// identifier.
class TREVALLO_EXPORT DF11Message : public DFMessage {
public:
    DF11Message();
    unsigned char bits() const override;
    std::vector<ModeSMessageField const*> fields() const override;
    std::string description() const override;
    bool decodeImpl() override;

    /// The fields, to change and to read.
    ModeSMessageFieldCA& fieldCA() { return _fieldCA; }
    ModeSMessageFieldCA const& constFieldCA() const { return _fieldCA; }
    ModeSMessageFieldAA& fieldAA() { return _fieldAA; }
    ModeSMessageFieldAA const& constFieldAA() const { return _fieldAA; }
    ModeSMessageFieldPI& fieldPI() { return _fieldPI; }
    ModeSMessageFieldPI const& constFieldPI() const { return _fieldPI; }

private:
    template <class Reply> static auto layout(Reply& reply);

    ModeSMessageFieldCA _fieldCA;
    ModeSMessageFieldAA _fieldAA;
    ModeSMessageFieldPI _fieldPI;
};

/// Long air-air surveillance (ICAO Annex 10 Vol. IV, 3.1.2.8.3), 112 bits: VS, AC, MV, AP.
class TREVALLO_EXPORT DF16Message : public DFMessage {
public:
    DF16Message();
    unsigned char bits() const override;
    std::vector<ModeSMessageField const*> fields() const override;
    std::string description() const override;
    bool decodeImpl() override;

    /// The fields, to change and to read.
    ModeSMessageFieldVS& fieldVS() { return _fieldVS; }
    ModeSMessageFieldVS const& constFieldVS() const { return _fieldVS; }
    ModeSMessageFieldAC& fieldAC() { return _fieldAC; }
    ModeSMessageFieldAC const& constFieldAC() const { return _fieldAC; }
    ModeSMessageFieldMV& fieldMV() { return _fieldMV; }
    ModeSMessageFieldMV const& constFieldMV() const { return _fieldMV; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    ModeSMessageFieldAP const& constFieldAP() const { return _fieldAP; }

private:
    template <class Reply> static auto layout(Reply& reply);

    ModeSMessageFieldVS _fieldVS;
    ModeSMessageFieldAC _fieldAC;
    ModeSMessageFieldMV _fieldMV;
    ModeSMessageFieldAP _fieldAP;
};

/// Extended squitter (ICAO Annex 10 Vol. IV, 3.1.2.8.6), 112 bits: CA, AA, ME, PI.
/// Invalid, with address 0, when its parity fails; the PI field then still says what the parity should have
/// been.
class TREVALLO_EXPORT DF17Message : public DFMessage {
public:
    DF17Message();
    unsigned char bits() const override;
    std::vector<ModeSMessageField const*> fields() const override;
    std::string description() const override;
    bool decodeImpl() override;

    /// The fields, to change and to read.
    ModeSMessageFieldCA& fieldCA() { return _fieldCA; }
    ModeSMessageFieldCA const& constFieldCA() const { return _fieldCA; }
    ModeSMessageFieldAA& fieldAA() { return _fieldAA; }
    ModeSMessageFieldAA const& constFieldAA() const { return _fieldAA; }
    ModeSMessageFieldME& fieldME() { return _fieldME; }
    ModeSMessageFieldME const& constFieldME() const { return _fieldME; }
    ModeSMessageFieldPI& fieldPI() { return _fieldPI; }
    ModeSMessageFieldPI const& constFieldPI() const { return _fieldPI; }

private:
    template <class Reply> static auto layout(Reply& reply);

    ModeSMessageFieldCA _fieldCA;
    ModeSMessageFieldAA _fieldAA;
    ModeSMessageFieldME _fieldME;
    ModeSMessageFieldPI _fieldPI;
};

/// Extended squitter of a device that is not a transponder (ICAO Annex 10 Vol. IV, 3.1.2.8.7), 112 bits: CF, AA,
/// ME, PI. Parity as in DF17.
class TREVALLO_EXPORT DF18Message : public DFMessage {
public:
    DF18Message();
    unsigned char bits() const override;
    std::vector<ModeSMessageField const*> fields() const override;
    std::string description() const override;
    bool decodeImpl() override;

    /// The fields, to change and to read.
    ModeSMessageFieldCF& fieldCF() { return _fieldCF; }
    ModeSMessageFieldCF const& constFieldCF() const { return _fieldCF; }
    ModeSMessageFieldAA& fieldAA() { return _fieldAA; }
    ModeSMessageFieldAA const& constFieldAA() const { return _fieldAA; }
    ModeSMessageFieldME& fieldME() { return _fieldME; }
    ModeSMessageFieldME const& constFieldME() const { return _fieldME; }
    ModeSMessageFieldPI& fieldPI() { return _fieldPI; }
    ModeSMessageFieldPI const& constFieldPI() const { return _fieldPI; }

private:
    template <class Reply> static auto layout(Reply& reply);

    ModeSMessageFieldCF _fieldCF;
    ModeSMessageFieldAA _fieldAA;
    ModeSMessageFieldME _fieldME;
    ModeSMessageFieldPI _fieldPI;
};

/// Military extended squitter (ICAO Annex 10 Vol. IV, 3.1.2.8.8), 112 bits: AF, AA, ME, PI.
/// Only AF is decoded when its code is not 0: what follows is reserved for military use, and the reply is
/// valid without an address. With code 0 it is read as DF17.
class TREVALLO_EXPORT DF19Message : public DFMessage {
public:
    DF19Message();
    unsigned char bits() const override;
    std::vector<ModeSMessageField const*> fields() const override;
    std::string description() const override;
    bool decodeImpl() override;

    /// The fields, to change and to read.
    ModeSMessageFieldAF& fieldAF() { return _fieldAF; }
    ModeSMessageFieldAF const& constFieldAF() const { return _fieldAF; }
    ModeSMessageFieldAA& fieldAA() { return _fieldAA; }
    ModeSMessageFieldAA const& constFieldAA() const { return _fieldAA; }
    ModeSMessageFieldME& fieldME() { return _fieldME; }
    ModeSMessageFieldME const& constFieldME() const { return _fieldME; }
    ModeSMessageFieldPI& fieldPI() { return _fieldPI; }
    ModeSMessageFieldPI const& constFieldPI() const { return _fieldPI; }

private:
    template <class Reply> static auto layout(Reply& reply);

    ModeSMessageFieldAF _fieldAF;
    ModeSMessageFieldAA _fieldAA;
    ModeSMessageFieldME _fieldME;
    ModeSMessageFieldPI _fieldPI;
};

/// Comm-B altitude reply (ICAO Annex 10 Vol. IV, 3.1.2.6.6), 112 bits: FS, AC, MB, AP.
class TREVALLO_EXPORT DF20Message : public DFMessage {
public:
    DF20Message();
    unsigned char bits() const override;
    std::vector<ModeSMessageField const*> fields() const override;
    std::string description() const override;
    bool decodeImpl() override;

    /// The fields, to change and to read.
    ModeSMessageFieldFS& fieldFS() { return _fieldFS; }
    ModeSMessageFieldFS const& constFieldFS() const { return _fieldFS; }
    ModeSMessageFieldAC& fieldAC() { return _fieldAC; }
    ModeSMessageFieldAC const& constFieldAC() const { return _fieldAC; }
    ModeSMessageFieldMB& fieldMB() { return _fieldMB; }
    ModeSMessageFieldMB const& constFieldMB() const { return _fieldMB; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    ModeSMessageFieldAP const& constFieldAP() const { return _fieldAP; }

private:
    template <class Reply> static auto layout(Reply& reply);

    ModeSMessageFieldFS _fieldFS;
    ModeSMessageFieldAC _fieldAC;
    ModeSMessageFieldMB _fieldMB;
    ModeSMessageFieldAP _fieldAP;
};

/// Comm-B identity reply (ICAO Annex 10 Vol. IV, 3.1.2.6.8), 112 bits: FS, ID, MB, AP.
class TREVALLO_EXPORT DF21Message : public DFMessage {
public:
    DF21Message();
    unsigned char bits() const override;
    std::vector<ModeSMessageField const*> fields() const override;
    std::string description() const override;
    bool decodeImpl() override;

    /// The fields, to change and to read.
    ModeSMessageFieldFS& fieldFS() { return _fieldFS; }
    ModeSMessageFieldFS const& constFieldFS() const { return _fieldFS; }
    ModeSMessageFieldID& fieldID() { return _fieldID; }
    ModeSMessageFieldID const& constFieldID() const { return _fieldID; }
    ModeSMessageFieldMB& fieldMB() { return _fieldMB; }
    ModeSMessageFieldMB const& constFieldMB() const { return _fieldMB; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    ModeSMessageFieldAP const& constFieldAP() const { return _fieldAP; }

private:
    template <class Reply> static auto layout(Reply& reply);

    ModeSMessageFieldFS _fieldFS;
    ModeSMessageFieldID _fieldID;
    ModeSMessageFieldMB _fieldMB;
    ModeSMessageFieldAP _fieldAP;
};

} // namespace quorvel::modes
