// SPDX-License-Identifier: MIT
#pragma once

#include <modes/export.h>

#include <cstdint>

namespace quorvel::modes {

/// What a host says about its surveillance service: who it is and how it reports targets. The library only
/// keeps it.
class TREVALLO_EXPORT ADSBServiceStatus {
public:
    /// When a service reports its targets.
    enum ReportMode : std::uint32_t {
        PERIODIC = 0, ///< every target once per report period
        ON_UPDATE = 1 ///< a target whenever a reply has updated it
    };

    /// System area code and system identification code of the ground station, 0 to 255.
    unsigned char sac() const { return _sac; }
    void setSac(unsigned char const& sac) { _sac = sac; }
    unsigned char sic() const { return _sic; }
    void setSic(unsigned char const& sic) { _sic = sic; }

    /// Number of the service, 1 at the start.
    unsigned char serviceId() const { return _serviceId; }
    void setServiceId(unsigned char const& serviceId) { _serviceId = serviceId; }

    /// When targets are reported, `PERIODIC` at the start.
    ReportMode reportMode() const { return _reportMode; }
    void setReportMode(ReportMode const& reportMode) { _reportMode = reportMode; }

    /// Report period in milliseconds, 1000 at the start.
    unsigned short reportPeriod() const { return _reportPeriod; }
    void setReportPeriod(unsigned short const& reportPeriod) { _reportPeriod = reportPeriod; }

private:
    unsigned char _sac = 0;
    unsigned char _sic = 0;
    unsigned char _serviceId = 1;
    ReportMode _reportMode = PERIODIC;
    unsigned short _reportPeriod = 1000;
};

} // namespace quorvel::modes
