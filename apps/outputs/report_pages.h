// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/output.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace quorvel::outputs {

/// A folder with a report page for each aircraft (ADDRESS.html) and an index of them (index.html).
///
/// The index is replaced with each picture, and reloads until the end; a page when its aircraft was heard; each as a
/// whole. Where several sources hear an aircraft, its page is that of the one that heard it last. Pages of aircraft
/// that are gone go too; whatever else is in the folder stays.
class ReportPages : public Output {
public:
    /// Makes the folder. Throws HostError.
    explicit ReportPages(std::string folder);

    void picture(Picture const& picture) override;
    void finish(Picture const& last) override;

private:
    using State = std::pair<airspace::TimeMs, std::uint64_t>; // last update and number of messages
    using Pages = std::map<std::string, State>;

    void write(Picture const& picture, bool continues);
    std::string path(std::string const& name) const;
    void removeAllBut(Pages const& pages) const;

    std::string _folder;
    Pages _pages; // written by this object, with the state that they show
};

/// Names of the files of pages.
using PageNames = std::set<std::string>;

/// The index: the table of aircraft, the addresses that have one of these pages linked to it. With `reloads`, browsers load it again every few
/// seconds.
std::string indexPage(Picture const& picture, PageNames const& pages, bool reloads = false);

} // namespace quorvel::outputs
