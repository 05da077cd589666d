// SPDX-License-Identifier: MIT
#pragma once

#include "host/target_table.h"

#include <string>

namespace quorvel::host {

/// Writes one report page for each target (ADDRESS.html) and an index of them (index.html) into a folder,
/// which is made if it is not there. Throws HostError when something cannot be written.
void writePages(std::string const& folder, Targets const& targets, unsigned long long now);

/// The index: the table of targets, each address linked to its page.
std::string indexPage(TargetTable const& table);

} // namespace quorvel::host
