// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quorvel::modes {
class ADSBTargetReport;
}

namespace quorvel::fuzz {

/// The report's page: whole, with four tables and every element closed in its place. The texts in it must
/// hold no marks.
void checkPage(modes::ADSBTargetReport const& report);

/// The page of a report whose texts may be anything: it starts and ends as a page, and so do the other texts
/// of the report have their form.
void checkPageOfAnything(modes::ADSBTargetReport const& report, std::string const& style);

} // namespace quorvel::fuzz
