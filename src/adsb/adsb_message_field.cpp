// SPDX-License-Identifier: MIT
#include <modes/adsb_message_field.h>

#include "core/names.h"

namespace quorvel::modes {

namespace {

NameTable const kNames{
    {
        "TYPE", "TYPE_CODE", "EMT_SET", "EMT_CAT",                                              // all, identification
        "CHAR_1", "CHAR_2", "CHAR_3", "CHAR_4", "CHAR_5", "CHAR_6", "CHAR_7", "CHAR_8",         // identification
        "MOV_CODE", "GND_SPD", "HDG_STATE", "HDG",                                              // surface position
        "SAF", "NIC_SUPP_B", "ALT_SRC", "ALT_RES", "ALT",                                       // airborne position
        "T", "CPR_FMT", "CPR_LAT", "CPR_LON",                                                   // both positions
        "SUB_TYPE", "NUC_R", "DIR_EW", "DIR_NS", "VEL_EW", "VEL_NS", "VR_SRC", "VR_SIGN", "VR", // airborne velocity
        "SUB_TYPE", "DATA",                                                                     // test
        "SUB_TYPE", "EMG_STATE", "MODE_A",                                                      // aircraft status
        "SUB_TYPE", "NAC_P", "NIC_BARO", "SIL", "SIL_SUPP",                                     // target state
        "SUB_TYPE", "VER_NUM", "NIC_SUPP_A",                                                    // operational status
    },
    "--"};
static_assert(decltype(kNames)::size() == ADSBMessageField::UNKNOWN);

// The only full name that differs from the name. There are longer texts for some others ("Single Antena
// Flag", "NIC Supplement-B", "Unknown field"), which hosts deliberately do not get to see.
std::string const kTypeFullName = "Type";

std::string const kNoDescription = "NO_DESCRIPTION";

} // namespace

ADSBMessageField::ADSBMessageField(
    Designator designator, std::uint8_t pos, std::uint8_t bits, std::string const& description)
    : _designator(designator)
    , _pos(pos)
    , _bits(bits)
    , _valid(designator != UNKNOWN && bits != 0)
    , _description(description) {}

std::string const& ADSBMessageField::designatorName(Designator designator) { return kNames[designator]; }

std::string const& ADSBMessageField::designatorFullName(Designator designator) {
    return designator == TYPE ? kTypeFullName : designatorName(designator);
}

std::string const& ADSBMessageField::description() const {
    return _description.empty() ? kNoDescription : _description;
}

} // namespace quorvel::modes
