// SPDX-License-Identifier: MIT
#pragma once

#include <modes/detail/report_item.h>
#include <modes/export.h>
#include <modes/mops_version.h>

#include <string>

namespace quorvel::modes {

/// What was known about one aircraft at one moment: an independent copy, made by `ADSBTarget::report()`.
///
/// Source: of each item, the same as of the item of `ADSBTarget`.
///
/// Each item has its value, and where the target keeps them, whether it is valid, when it was last reported
/// and when it last changed. Times are milliseconds since 1970-01-01 00:00:00 UTC; 0 means never. A new
/// report is empty: every value zero or empty, nothing valid, version 0. Setters store what they are given;
/// those that also judge its validity say so.
class TREVALLO_EXPORT ADSBTargetReport {
public:
    /// Number of the track, 1 to 4095.
    unsigned int trackId() const { return _trackId.value; }
    bool trackIdValid() const { return _trackId.valid; }
    void setTrackId(unsigned int const& id) { _trackId.value = id; }
    void setTrackIdValid(bool valid) { _trackId.valid = valid; }

    /// When the aircraft was last heard.
    unsigned long long lastUpdate() const { return _lastUpdate; }
    void setLastUpdate(unsigned long long const& time) { _lastUpdate = time; }

    /// Aircraft address, 24 bits.
    unsigned int icaoAddress() const { return _icaoAddress.value; }
    bool icaoAddressValid() const { return _icaoAddress.valid; }
    void setIcaoAddress(unsigned int const& address) { _icaoAddress.value = address; }
    void setIcaoAddressValid(bool valid) { _icaoAddress.valid = valid; }

    /// Callsign, eight characters as sent. Setting it makes it valid unless it is empty.
    std::string callsign() const { return _callsign.value; }
    bool callsignValid() const { return _callsign.valid; }
    unsigned long long callsignLastUpdate() const { return _callsign.lastUpdate; }
    unsigned long long callsignLastChange() const { return _callsign.lastChange; }
    void setCallsign(std::string const& callsign) { _callsign.set(callsign, !callsign.empty()); }
    void setCallsignValid(bool valid) { _callsign.valid = valid; }
    void setCallsignLastUpdate(unsigned long long const& time) { _callsign.lastUpdate = time; }
    void setCallsignLastChange(unsigned long long const& time) { _callsign.lastChange = time; }

    /// Emitter category, 0 to 7. Setting it makes it valid.
    unsigned char emitterCategory() const { return _emitterCategory.value; }
    bool emitterCategoryValid() const { return _emitterCategory.valid; }
    unsigned long long emitterCategoryLastUpdate() const { return _emitterCategory.lastUpdate; }
    unsigned long long emitterCategoryLastChange() const { return _emitterCategory.lastChange; }
    void setEmitterCategory(unsigned char const& category) { _emitterCategory.set(category, true); }
    void setEmitterCategoryValid(bool valid) { _emitterCategory.valid = valid; }
    void setEmitterCategoryLastUpdate(unsigned long long const& time) { _emitterCategory.lastUpdate = time; }
    void setEmitterCategoryLastChange(unsigned long long const& time) { _emitterCategory.lastChange = time; }

    /// Mode A code as a number, 0 to 07777. Setting it makes it valid from 1 to 07777; a code of 0 is
    /// deliberately not.
    unsigned int squawk() const { return _squawk.value; }
    bool squawkValid() const { return _squawk.valid; }
    unsigned long long squawkLastUpdate() const { return _squawk.lastUpdate; }
    unsigned long long squawkLastChange() const { return _squawk.lastChange; }
    void setSquawk(unsigned int const& code) { _squawk.set(code, 1 <= code && code <= 07777); }
    void setSquawkValid(bool valid) { _squawk.valid = valid; }
    void setSquawkLastUpdate(unsigned long long const& time) { _squawk.lastUpdate = time; }
    void setSquawkLastChange(unsigned long long const& time) { _squawk.lastChange = time; }

    /// Position in degrees, north and east positive. Setting it makes it valid within +-90 and +-180 degrees.
    double latitude() const { return _position.value.latitude; }
    double longitude() const { return _position.value.longitude; }
    bool positionValid() const { return _position.valid; }
    unsigned long long positionLastUpdate() const { return _position.lastUpdate; }
    void setPosition(double latitude, double longitude);
    void setPositionValid(bool valid) { _position.valid = valid; }
    void setPositionLastUpdate(unsigned long long const& time) { _position.lastUpdate = time; }

    /// Signal level in the receiver's own unit. Setting it makes it valid unless it is 0.
    unsigned char signalAmplitude() const { return _signalAmplitude.value; }
    bool signalAmplitudeValid() const { return _signalAmplitude.valid; }
    unsigned long long signalAmplitudeLastUpdate() const { return _signalAmplitude.lastUpdate; }
    void setSignalAmplitude(unsigned char const& amplitude) { _signalAmplitude.set(amplitude, amplitude != 0); }
    void setSignalAmplitudeValid(bool valid) { _signalAmplitude.valid = valid; }
    void setSignalAmplitudeLastUpdate(unsigned long long const& time) { _signalAmplitude.lastUpdate = time; }

    /// Barometric altitude in feet. Setting it makes it valid.
    int altitudeBaro() const { return _altitudeBaro.value; }
    bool altitudeBaroValid() const { return _altitudeBaro.valid; }
    unsigned long long altitudeBaroLastUpdate() const { return _altitudeBaro.lastUpdate; }
    void setAltitudeBaro(int altitude) { _altitudeBaro.set(altitude, true); }
    void setAltitudeBaroValid(bool valid) { _altitudeBaro.valid = valid; }
    void setAltitudeBaroLastUpdate(unsigned long long const& time) { _altitudeBaro.lastUpdate = time; }

    /// Ground speed in knots. Setting it makes it valid.
    double groundSpeed() const { return _groundSpeed.value; }
    bool groundSpeedValid() const { return _groundSpeed.valid; }
    unsigned long long groundSpeedLastUpdate() const { return _groundSpeed.lastUpdate; }
    void setGroundSpeed(double speed) { _groundSpeed.set(speed, true); }
    void setGroundSpeedValid(bool valid) { _groundSpeed.valid = valid; }
    void setGroundSpeedLastUpdate(unsigned long long const& time) { _groundSpeed.lastUpdate = time; }

    /// Track over ground in degrees clockwise from true north, [0, 360). Setting it makes it valid.
    double heading() const { return _heading.value; }
    bool headingValid() const { return _heading.valid; }
    unsigned long long headingLastUpdate() const { return _heading.lastUpdate; }
    void setHeading(double heading) { _heading.set(heading, true); }
    void setHeadingValid(bool valid) { _heading.valid = valid; }
    void setHeadingLastUpdate(unsigned long long const& time) { _heading.lastUpdate = time; }

    /// Barometric vertical rate in feet per minute, positive climbing. Setting it makes it valid.
    int verticalRateBaro() const { return _verticalRateBaro.value; }
    bool verticalRateBaroValid() const { return _verticalRateBaro.valid; }
    unsigned long long verticalRateBaroLastUpdate() const { return _verticalRateBaro.lastUpdate; }
    void setVerticalRateBaro(int rate) { _verticalRateBaro.set(rate, true); }
    void setVerticalRateBaroValid(bool valid) { _verticalRateBaro.valid = valid; }
    void setVerticalRateBaroLastUpdate(unsigned long long const& time) { _verticalRateBaro.lastUpdate = time; }

    /// Whether the aircraft is on the ground. Setting it makes it valid.
    bool groundStatus() const { return _groundStatus.value; }
    bool groundStatusValid() const { return _groundStatus.valid; }
    unsigned long long groundStatusLastUpdate() const { return _groundStatus.lastUpdate; }
    unsigned long long groundStatusLastChange() const { return _groundStatus.lastChange; }
    void setGroundStatus(bool onGround) { _groundStatus.set(onGround, true); }
    void setGroundStatusValid(bool valid) { _groundStatus.valid = valid; }
    void setGroundStatusLastUpdate(unsigned long long const& time) { _groundStatus.lastUpdate = time; }
    void setGroundStatusLastChange(unsigned long long const& time) { _groundStatus.lastChange = time; }

    /// Special position identification ("ident").
    bool spiStatus() const { return _spiStatus.value; }
    bool spiStatusValid() const { return _spiStatus.valid; }
    unsigned long long spiStatusLastUpdate() const { return _spiStatus.lastUpdate; }
    unsigned long long spiStatusLastChange() const { return _spiStatus.lastChange; }
    void setSpiStatus(bool spi) { _spiStatus.value = spi; }
    void setSpiStatusValid(bool valid) { _spiStatus.valid = valid; }
    void setSpiStatusLastUpdate(unsigned long long const& time) { _spiStatus.lastUpdate = time; }
    void setSpiStatusLastChange(unsigned long long const& time) { _spiStatus.lastChange = time; }

    /// Alert: the Mode A code changed, or is one of the emergency codes.
    bool alertStatus() const { return _alertStatus.value; }
    bool alertStatusValid() const { return _alertStatus.valid; }
    unsigned long long alertStatusLastUpdate() const { return _alertStatus.lastUpdate; }
    unsigned long long alertStatusLastChange() const { return _alertStatus.lastChange; }
    void setAlertStatus(bool alert) { _alertStatus.value = alert; }
    void setAlertStatusValid(bool valid) { _alertStatus.valid = valid; }
    void setAlertStatusLastUpdate(unsigned long long const& time) { _alertStatus.lastUpdate = time; }
    void setAlertStatusLastChange(unsigned long long const& time) { _alertStatus.lastChange = time; }

    /// ADS-B version that the aircraft is believed to follow, and whether that is confirmed.
    MOPSVersion mopsVersion() const { return _mopsVersion.value; }
    bool mopsVersionConfirmed() const { return _mopsVersion.valid; }
    unsigned long long mopsVersionLastUpdate() const { return _mopsVersion.lastUpdate; }
    unsigned long long mopsVersionLastChange() const { return _mopsVersion.lastChange; }
    void setMopsVersion(MOPSVersion const& version) { _mopsVersion.value = version; }
    void setMopsVersionConfirmed(bool confirmed) { _mopsVersion.valid = confirmed; }
    void setMopsVersionLastUpdate(unsigned long long const& time) { _mopsVersion.lastUpdate = time; }
    void setMopsVersionLastChange(unsigned long long const& time) { _mopsVersion.lastChange = time; }

    /// Navigation uncertainty category for position, 0 to 9.
    unsigned char nucp() const { return _nucp.value; }
    bool nucpValid() const { return _nucp.valid; }
    unsigned long long nucpLastUpdate() const { return _nucp.lastUpdate; }
    unsigned long long nucpLastChange() const { return _nucp.lastChange; }
    void setNUCp(unsigned char nucp) { _nucp.value = nucp; }
    void setNUCpValid(bool valid) { _nucp.valid = valid; }
    void setNUCpLastUpdate(unsigned long long const& time) { _nucp.lastUpdate = time; }
    void setNUCpLastChange(unsigned long long const& time) { _nucp.lastChange = time; }

    /// Navigation uncertainty category for velocity. A target's report deliberately carries the NUCp here.
    unsigned char nucr() const { return _nucr.value; }
    bool nucrValid() const { return _nucr.valid; }
    unsigned long long nucrLastUpdate() const { return _nucr.lastUpdate; }
    unsigned long long nucrLastChange() const { return _nucr.lastChange; }
    void setNUCr(unsigned char const& nucr) { _nucr.value = nucr; }
    void setNUCrValid(bool valid) { _nucr.valid = valid; }
    void setNUCrLastUpdate(unsigned long long const& time) { _nucr.lastUpdate = time; }
    void setNUCrLastChange(unsigned long long const& time) { _nucr.lastChange = time; }

    /// Navigation integrity category, 0 to 11.
    unsigned char nic() const { return _nic.value; }
    bool nicValid() const { return _nic.valid; }
    unsigned long long nicLastUpdate() const { return _nic.lastUpdate; }
    unsigned long long nicLastChange() const { return _nic.lastChange; }
    void setNIC(unsigned char nic) { _nic.value = nic; }
    void setNICValid(bool valid) { _nic.valid = valid; }
    void setNICLastUpdate(unsigned long long const& time) { _nic.lastUpdate = time; }
    void setNICLastChange(unsigned long long const& time) { _nic.lastChange = time; }

    /// NIC supplements A, B and C.
    bool nicSuppA() const { return _nicSuppA.value; }
    bool nicSuppAValid() const { return _nicSuppA.valid; }
    unsigned long long nicSuppALastUpdate() const { return _nicSuppA.lastUpdate; }
    void setNICSuppA(bool supplement) { _nicSuppA.value = supplement; }
    void setNICSuppAValid(bool valid) { _nicSuppA.valid = valid; }
    void setNICSuppALastUpdate(unsigned long long const& time) { _nicSuppA.lastUpdate = time; }
    bool nicSuppB() const { return _nicSuppB.value; }
    bool nicSuppBValid() const { return _nicSuppB.valid; }
    unsigned long long nicSuppBLastUpdate() const { return _nicSuppB.lastUpdate; }
    void setNICSuppB(bool supplement) { _nicSuppB.value = supplement; }
    void setNICSuppBValid(bool valid) { _nicSuppB.valid = valid; }
    void setNICSuppBLastUpdate(unsigned long long const& time) { _nicSuppB.lastUpdate = time; }
    bool nicSuppC() const { return _nicSuppC.value; }
    bool nicSuppCValid() const { return _nicSuppC.valid; }
    unsigned long long nicSuppCLastUpdate() const { return _nicSuppC.lastUpdate; }
    void setNICSuppC(bool supplement) { _nicSuppC.value = supplement; }
    void setNICSuppCValid(bool valid) { _nicSuppC.valid = valid; }
    void setNICSuppCLastUpdate(unsigned long long const& time) { _nicSuppC.lastUpdate = time; }

    /// Position integrity category, 0 to 14.
    unsigned char pic() const { return _pic.value; }
    bool picValid() const { return _pic.valid; }
    unsigned long long picLastUpdate() const { return _pic.lastUpdate; }
    unsigned long long picLastChange() const { return _pic.lastChange; }
    void setPIC(unsigned char const& pic) { _pic.value = pic; }
    void setPICValid(bool valid) { _pic.valid = valid; }
    void setPICLastUpdate(unsigned long long const& time) { _pic.lastUpdate = time; }
    void setPICLastChange(unsigned long long const& time) { _pic.lastChange = time; }

    /// Navigation accuracy category for position, 0 to 11.
    unsigned char nacp() const { return _nacp.value; }
    bool nacpValid() const { return _nacp.valid; }
    unsigned long long nacpLastUpdate() const { return _nacp.lastUpdate; }
    unsigned long long nacpLastChange() const { return _nacp.lastChange; }
    void setNACp(unsigned char const& nacp) { _nacp.value = nacp; }
    void setNACpValid(bool valid) { _nacp.valid = valid; }
    void setNACpLastUpdate(unsigned long long const& time) { _nacp.lastUpdate = time; }
    void setNACpLastChange(unsigned long long const& time) { _nacp.lastChange = time; }

    /// Source integrity level, 0 to 3.
    unsigned char sil() const { return _sil.value; }
    bool silValid() const { return _sil.valid; }
    unsigned long long silLastUpdate() const { return _sil.lastUpdate; }
    unsigned long long silLastChange() const { return _sil.lastChange; }
    void setSIL(unsigned char const& sil) { _sil.value = sil; }
    void setSILValid(bool valid) { _sil.valid = valid; }
    void setSILLastUpdate(unsigned long long const& time) { _sil.lastUpdate = time; }
    void setSILLastChange(unsigned long long const& time) { _sil.lastChange = time; }

    /// Whether the report is of an aircraft: it was heard, and its address is known.
    bool valid() const { return _lastUpdate != 0 && _icaoAddress.valid; }

    /// The address in upper-case digits, right-aligned with blanks in six characters; empty when it is not
    /// valid.
    std::string icaoAddressString() const;

    /// The Mode A code as at least four octal digits, valid or not.
    std::string squawkString() const;

    /// Degrees, minutes and seconds with the hemisphere: "513000N", "0002530W". Seconds are rounded without a carry, so
    /// they may read 60; 0 degrees is "S" and "W" (both deliberate). Empty unless the number of degrees is finite.
    std::string latitudeString() const;
    std::string longitudeString() const;
    std::string positionString() const; ///< latitude and longitude, nothing between them

    static std::string boolToString(bool value); ///< "TRUE" or "FALSE"

    /// UTC as "2024-05-01T12:34:56.789Z"; empty for 0 and for times past the calendar of the platform.
    static std::string timeToString(unsigned long long time);

    /// The report as a whole HTML page of four tables of class "general_table". The style sheet is put into
    /// the page as it is; texts are not escaped.
    std::string toHtml(std::string const& style) const;

private:
    struct Position {
        double latitude = 0.0;
        double longitude = 0.0;
    };

    detail::ReportItem<unsigned int> _trackId;
    unsigned long long _lastUpdate = 0;
    detail::ReportItem<unsigned int> _icaoAddress;
    detail::ReportItem<std::string> _callsign;
    detail::ReportItem<unsigned char> _emitterCategory;
    detail::ReportItem<unsigned int> _squawk;
    detail::ReportItem<Position> _position;
    detail::ReportItem<unsigned char> _signalAmplitude;
    detail::ReportItem<int> _altitudeBaro;
    detail::ReportItem<double> _groundSpeed;
    detail::ReportItem<double> _heading;
    detail::ReportItem<int> _verticalRateBaro;
    detail::ReportItem<bool> _groundStatus;
    detail::ReportItem<bool> _spiStatus;
    detail::ReportItem<bool> _alertStatus;
    detail::ReportItem<MOPSVersion> _mopsVersion;
    detail::ReportItem<unsigned char> _nucp;
    detail::ReportItem<unsigned char> _nucr;
    detail::ReportItem<unsigned char> _nic;
    detail::ReportItem<bool> _nicSuppA;
    detail::ReportItem<bool> _nicSuppB;
    detail::ReportItem<bool> _nicSuppC;
    detail::ReportItem<unsigned char> _pic;
    detail::ReportItem<unsigned char> _nacp;
    detail::ReportItem<unsigned char> _sil;
};

} // namespace quorvel::modes
