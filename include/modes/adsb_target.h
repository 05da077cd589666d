// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message.h>
#include <modes/detail/cpr_frame.h>
#include <modes/detail/tracked.h>
#include <modes/df_message.h>
#include <modes/export.h>
#include <modes/mops_version.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>

namespace quorvel::modes {

class ADSBTargetReport;

/// Everything known about one aircraft, identified by its 24-bit ICAO address.
///
/// Every item keeps its value and the time of its last update (when a message last reported it); where
/// changes matter it also keeps the time of its last change (when the value last became different, or was
/// first reported). All times are milliseconds since 1970-01-01 00:00:00 UTC, 0 means never. Whether an item
/// is valid follows from these times; the rule differs from item to item and is given with each of them.
///
/// The last argument of a setter is the time of the message that carried the value. Where an item keeps the time of its
/// last change, the first report always counts as a change, even if it repeats the initial value; exceptions are noted.
///
/// The tracker makes the targets and writes into them; hosts read them, or take snapshots with `report()`. A
/// target that a host holds lives on after the tracker has dropped it. Not locked: used on the thread that
/// drives the tracker.
class TREVALLO_EXPORT ADSBTarget {
public:
    /// Where the aircraft says it is.
    enum GroundStatus : std::uint32_t {
        UNKNOWN = 0,   ///< never reported, or reported as not known
        ON_GROUND = 1, ///< the aircraft reports being on the ground
        AIRBORNE = 2,  ///< the aircraft reports being airborne
    };

    /// Everything but the address starts as zero, false or empty; the version of the MOPS as `MOPS_V0`,
    /// assumed.
    explicit ADSBTarget(unsigned int icaoAddr);

    /// Track number, 1 to 4095 when the tracker's own; 0 is none.
    unsigned int trackId() const { return _trackId; }
    bool trackIdValid() const { return _trackId != 0; }

    /// Time of the last reply of any kind.
    unsigned long long lastUpdate() const { return _lastUpdate; }

    /// 24-bit aircraft address; 0 is not valid.
    unsigned int icaoAddr() const { return _icaoAddr; }
    bool icaoAddrValid() const { return _icaoAddr != 0; }

    /// Callsign as sent, blanks and "?" for codes without a character included. Valid once changed.
    /// Source: identification message (RTCA DO-260B, 2.2.3.2.5).
    std::string callsign() const { return _callsign.value; }
    bool callsignValid() const { return _callsign.lastChange != 0; }
    unsigned long long callsignLastUpdate() const { return _callsign.lastUpdate; }
    unsigned long long callsignLastChange() const { return _callsign.lastChange; }

    /// Emitter category within its set, 0 to 7. Valid once changed. Source: identification message.
    unsigned char emitterCategory() const { return _emitterCategory.value; }
    bool emitterCategoryValid() const { return _emitterCategory.lastChange != 0; }
    unsigned long long emitterCategoryLastUpdate() const { return _emitterCategory.lastUpdate; }
    unsigned long long emitterCategoryLastChange() const { return _emitterCategory.lastChange; }

    /// Mode A code as a number, shown as four octal digits. Valid once updated.
    /// Source: identity field of DF5 and DF21 (ICAO Annex 10 Vol. IV, 3.1.2.6.7.1).
    unsigned int squawk() const { return _squawk.value; }
    bool squawkValid() const { return _squawk.lastUpdate != 0; }
    unsigned long long squawkLastUpdate() const { return _squawk.lastUpdate; }
    unsigned long long squawkLastChange() const { return _squawk.lastChange; }

    /// Position in degrees, north and east positive, decoded from a pair of CPR frames. Not checked for
    /// plausibility. Valid once updated. Source: airborne position messages.
    double latitude() const { return _position.value.latitude; }
    double longitude() const { return _position.value.longitude; }
    bool positionValid() const { return _position.lastUpdate != 0; }
    unsigned long long positionLastUpdate() const { return _position.lastUpdate; }

    /// Signal amplitude of the last extended squitter, as the host has set it. Valid once updated.
    unsigned char signalAmplitude() const { return _signalAmplitude.value; }
    bool signalAmplitudeValid() const { return _signalAmplitude.lastUpdate != 0; }
    unsigned long long signalAmplitudeLastUpdate() const { return _signalAmplitude.lastUpdate; }

    /// Barometric altitude in feet, from -1000 ft on. Valid once updated.
    /// Source: altitude code of DF0, 4, 16 and 20 (ICAO Annex 10 Vol. IV, 3.1.2.6.5.4), airborne positions.
    int altitudeBaro() const { return _altitudeBaro.value; }
    bool altitudeBaroValid() const { return _altitudeBaro.lastUpdate != 0; }
    unsigned long long altitudeBaroLastUpdate() const { return _altitudeBaro.lastUpdate; }

    /// Ground speed in knots. Valid once updated. Source: airborne velocity messages.
    double groundSpeed() const { return _groundSpeed.value; }
    bool groundSpeedValid() const { return _groundSpeed.lastUpdate != 0; }
    unsigned long long groundSpeedLastUpdate() const { return _groundSpeed.lastUpdate; }

    /// Track angle in degrees clockwise from true north. Valid from the first report on, whatever its time.
    /// Source: airborne velocity messages.
    double heading() const { return _heading.value; }
    bool headingValid() const { return _headingValid; }
    unsigned long long headingLastUpdate() const { return _heading.lastUpdate; }

    /// Barometric vertical rate in feet per minute, climbing is positive. Valid once updated.
    /// Source: airborne velocity messages.
    int verticalRateBaro() const { return _verticalRateBaro.value; }
    bool verticalRateBaroValid() const { return _verticalRateBaro.lastUpdate != 0; }
    unsigned long long verticalRateBaroLastUpdate() const { return _verticalRateBaro.lastUpdate; }

    /// Capability of the transponder, 0 to 7. Valid once updated.
    /// Source: CA field of all-call replies (ICAO Annex 10 Vol. IV, 3.1.2.5.2.2.1).
    unsigned char transponderCommCapability() const { return _transponderCommCapability.value; }
    bool transponderCommCapabilityValid() const { return _transponderCommCapability.lastUpdate != 0; }
    unsigned long long transponderCommCapabilityLastUpdate() const { return _transponderCommCapability.lastUpdate; }

    /// Whether the aircraft is on the ground. Valid once updated, and then possibly `UNKNOWN`.
    /// Source: flight status and vertical status fields; every airborne position message means airborne.
    GroundStatus groundStatus() const { return _groundStatus.value; }
    bool groundStatusValid() const { return _groundStatus.lastUpdate != 0; }
    unsigned long long groundStatusLastUpdate() const { return _groundStatus.lastUpdate; }
    unsigned long long groundStatusLastChange() const { return _groundStatus.lastChange; }

    /// Special position identification. Valid once updated.
    /// Source: flight status field (ICAO Annex 10 Vol. IV, 3.1.2.6.5.1), as the next.
    bool spiStatus() const { return _spi.value; }
    bool spiStatusValid() const { return _spi.lastUpdate != 0; }
    unsigned long long spiStatusLastUpdate() const { return _spi.lastUpdate; }
    unsigned long long spiStatusLastChange() const { return _spi.lastChange; }

    /// Alert: the Mode A code has changed, or is one of the emergency codes. Valid once updated.
    bool alertStatus() const { return _alert.value; }
    bool alertStatusValid() const { return _alert.lastUpdate != 0; }
    unsigned long long alertStatusLastUpdate() const { return _alert.lastUpdate; }
    unsigned long long alertStatusLastChange() const { return _alert.lastChange; }

    /// Version of the ADS-B MOPS that the aircraft is believed to follow, and whether that has been confirmed
    /// or is only assumed. The times are those of either.
    MOPSVersion mopsVersion() const { return _mopsVersion.value; }
    bool mopsVersionConfirmed() const { return _mopsVersionConfirmed; }
    bool mopsVersionAssumed() const { return !_mopsVersionConfirmed; }
    unsigned long long mopsVersionLastUpdate() const { return _mopsVersion.lastUpdate; }
    unsigned long long mopsVersionLastChange() const { return _mopsVersion.lastChange; }

    /// Navigation uncertainty category of the position, 0 (unknown) to 9. Valid once updated.
    /// Source: type code of position messages (RTCA DO-260B, appendix N), as NIC, PIC, NACp and SIL.
    unsigned char nucp() const { return _nucp.value; }
    bool nucpValid() const { return _nucp.lastUpdate != 0; }
    unsigned long long nucpLastUpdate() const { return _nucp.lastUpdate; }
    unsigned long long nucpLastChange() const { return _nucp.lastChange; }

    /// Navigation uncertainty category of the velocity. Valid once updated, for version 0 only.
    unsigned char nucr() const { return _nucr.value; }
    bool nucrValid() const { return _nucr.lastUpdate != 0 && _mopsVersion.value == MOPS_V0; }
    unsigned long long nucrLastUpdate() const { return _nucr.lastUpdate; }
    unsigned long long nucrLastChange() const { return _nucr.lastChange; }

    /// Navigation integrity category, 0 (unknown) to 11. Valid once updated.
    unsigned char nic() const { return _nic.value; }
    bool nicValid() const { return _nic.lastUpdate != 0; }
    unsigned long long nicLastUpdate() const { return _nic.lastUpdate; }
    unsigned long long nicLastChange() const { return _nic.lastChange; }

    /// NIC supplement A. Valid once updated, for every version but 0 (`MOPS_UNKNOWN` counts; the version is
    /// compared as a signed number). Source: operational status messages.
    bool nicSupplementA() const { return _nicSupplementA.value; }
    bool nicSupplementAValid() const {
        return _nicSupplementA.lastUpdate != 0 && static_cast<int>(_mopsVersion.value) > 0;
    }
    unsigned long long nicSuppALastUpdate() const { return _nicSupplementA.lastUpdate; }

    /// NIC supplements B and C. Valid once updated, from version 2 on (`MOPS_UNKNOWN` counts).
    /// Source: airborne position messages of version 2 (B); hosts (C).
    bool nicSupplementB() const { return _nicSupplementB.value; }
    bool nicSupplementBValid() const { return _nicSupplementB.lastUpdate != 0 && _mopsVersion.value >= MOPS_V2; }
    unsigned long long nicSuppBLastUpdate() const { return _nicSupplementB.lastUpdate; }
    bool nicSupplementC() const { return _nicSupplementC.value; }
    bool nicSupplementCValid() const { return _nicSupplementC.lastUpdate != 0 && _mopsVersion.value >= MOPS_V2; }
    unsigned long long nicSuppCLastUpdate() const { return _nicSupplementC.lastUpdate; }

    /// Position integrity category, 0 (unknown) to 14. Valid once updated.
    unsigned char pic() const { return _pic.value; }
    bool picValid() const { return _pic.lastUpdate != 0; }
    unsigned long long picLastUpdate() const { return _pic.lastUpdate; }
    unsigned long long picLastChange() const { return _pic.lastChange; }

    /// Navigation accuracy category of the position, 0 (unknown) to 11. Valid once changed.
    unsigned char nacp() const { return _nacp.value; }
    bool nacpValid() const { return _nacp.lastChange != 0; }
    unsigned long long nacpLastUpdate() const { return _nacp.lastUpdate; }
    unsigned long long nacpLastChange() const { return _nacp.lastChange; }

    /// Surveillance (source) integrity level, 0 (unknown) to 3. Valid once changed.
    unsigned char sil() const { return _sil.value; }
    bool silValid() const { return _sil.lastChange != 0; }
    unsigned long long silLastUpdate() const { return _sil.lastUpdate; }
    unsigned long long silLastChange() const { return _sil.lastChange; }

    /// Replies counted so far, by downlink format or by ADS-B message type; the form without an argument is
    /// the sum over all downlink formats. 0 for a format or type that does not exist. Valid once updated.
    unsigned int statisticDfMsgCount(DFMessage::DownlinkFormat format) const;
    unsigned int statisticDfMsgCount() const;
    unsigned int statisticADSBMsgCount(ADSBMessage::ADSBMessageType type) const;
    unsigned long long statisticLastUpdate() const { return _statisticLastUpdate; }
    bool statisticValid() const { return _statisticLastUpdate != 0; }

    /// Time of the last reply of any kind.
    void setLastUpdate(unsigned long long time);

    /// A change of the text is logged at `Info` once there was one. The second form gives the time of the
    /// last change instead of determining it.
    void setCallsign(std::string const& callsign, unsigned long long time);
    void setCallsign(std::string const& callsign, unsigned long long time, unsigned long long change);

    /// A different category is logged at `Debug`, the first one other than 0 included. Second form as above.
    void setEmitterCategory(unsigned char category, unsigned long long time);
    void setEmitterCategory(unsigned char category, unsigned long long time, unsigned long long change);

    /// A change is logged at `Info` once there was a code other than 0.
    void setSquawk(unsigned int squawk, unsigned long long time);

    /// Value and time of an item without a time of its last change. Nothing is checked. A heading is valid
    /// from then on, whatever its time.
    void setPosition(double latitude, double longitude, unsigned long long time);
    void setSignalAmplitude(unsigned char amplitude, unsigned long long time);
    void setAltitudeBaro(int altitude, unsigned long long time);
    void setGroundSpeed(double groundSpeed, unsigned long long time);
    void setHeading(double heading, unsigned long long time);
    void setVerticalRateBaro(int verticalRate, unsigned long long time);

    /// Only a different status is a change: a first report of `UNKNOWN` is none. Not logged.
    void setGroundStatus(GroundStatus status, unsigned long long time);

    /// A different status is logged at `Info`, the first `true` included.
    void setSpi(bool spi, unsigned long long time);
    void setAlert(bool alert, unsigned long long time);

    /// A different version resets the quality indicators, see `resetQualityIndicators()`. Whether the version
    /// is confirmed stays as it was.
    void setMOPSVersion(MOPSVersion const& version, unsigned long long time);

    /// The version is from now on confirmed, or assumed. Becoming so is a change of the item.
    void setMOPSVersionConfirmed(unsigned long long time);
    void setMOPSVersionAssumed(unsigned long long time);

    /// `setNUCr` does nothing unless the version is `MOPS_V0`.
    void setNUCp(unsigned char nucp, unsigned long long time);
    void setNUCr(unsigned char nucr, unsigned long long time);
    void setNIC(unsigned char nic, unsigned long long time);
    void setNICSupplementA(bool supplement, unsigned long long time);
    void setNICSupplementB(bool supplement, unsigned long long time);
    void setNICSupplementC(bool supplement, unsigned long long time);
    void setPIC(unsigned char pic, unsigned long long time);
    void setNACp(unsigned char nacp, unsigned long long time);
    void setSIL(unsigned char sil, unsigned long long time);

    /// NUCp, NIC, PIC, NACp and SIL go back to 0, never updated and never changed; an item that held 0 keeps
    /// the time of its last change (so that NACp and SIL may stay valid). NUCr and the NIC supplements stay.
    void resetQualityIndicators();

    /// Derives the quality indicators from the type code of a position message, the version and the NIC
    /// supplements: NUCp, NIC and PIC, for version 0 also NACp and SIL. Type codes outside 5 to 21 give 0. An
    /// unknown version resets them instead. Source: RTCA DO-260B, appendix N.
    void updateQualityIndicators(unsigned char typeCode, unsigned long long time);

    /// Counts one reply. A format or type that does not exist is not counted, but stamps the time.
    void increaseStatistic(DFMessage::DownlinkFormat format, unsigned long long time);
    void increaseStatistic(ADSBMessage::ADSBMessageType type, unsigned long long time);

    /// All counts and their time go back to 0.
    void resetStatistic();

    /// Decodes the stored even and odd CPR frame into the position, globally unambiguous; the newer frame's
    /// place is taken, the odd one's if they are equally old. Leaves everything as it was when the two lie in
    /// different longitude zones. Source: ICAO Doc 9871, C.2.6.7.
    void decodeCPRPosition();

    /// A snapshot of all items but the statistics and the transponder's capability. Its callsign is valid
    /// when not empty, its ground status is true on the ground only, and its NUCr is the target's NUCp with
    /// the validity and times of NUCr (deliberate). Never empty.
    std::shared_ptr<ADSBTargetReport> report() const;

private:
    friend class ADSBTracker;

    struct Position {
        double latitude;
        double longitude;
    };

    // In groups that are read and written together: a target is in no near cache when its next reply comes.

    // every reply
    unsigned long long _lastUpdate = 0;
    unsigned int _icaoAddr;
    unsigned int _trackId = 0;
    detail::Updated<unsigned char> _signalAmplitude;
    detail::Tracked<MOPSVersion> _mopsVersion;
    bool _mopsVersionConfirmed = false;
    bool _headingValid = false;
    unsigned long long _statisticLastUpdate = 0;
    std::array<unsigned int, 9> _adsbCounts{}; // by ADS-B message type
    std::array<unsigned int, 25> _dfCounts{};  // by downlink format

    // altitude and positions
    detail::Updated<int> _altitudeBaro;
    detail::Tracked<GroundStatus> _groundStatus;
    detail::CPRFrame _oddFrame;
    detail::CPRFrame _evenFrame;
    detail::Updated<Position> _position;
    detail::Tracked<unsigned char> _nucp;
    detail::Tracked<unsigned char> _nic;
    detail::Tracked<unsigned char> _pic;
    detail::Updated<bool> _nicSupplementA;
    detail::Updated<bool> _nicSupplementB;
    detail::Updated<bool> _nicSupplementC;
    detail::Tracked<unsigned char> _nacp;
    detail::Tracked<unsigned char> _sil;

    // velocities
    detail::Updated<double> _groundSpeed;
    detail::Updated<double> _heading;
    detail::Updated<int> _verticalRateBaro;
    detail::Tracked<unsigned char> _nucr;

    // surveillance and identity
    detail::Tracked<bool> _spi;
    detail::Tracked<bool> _alert;
    detail::Tracked<unsigned int> _squawk;
    detail::Updated<unsigned char> _transponderCommCapability;
    detail::Tracked<unsigned char> _emitterCategory;
    detail::Tracked<std::string> _callsign;
};

} // namespace quorvel::modes
