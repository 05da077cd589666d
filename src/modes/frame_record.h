// SPDX-License-Identifier: MIT
#pragma once

#include <modes/modes_encapsulation.h>

#include "core/recycled.h"
#include "core/short_bytes.h"

#include <memory>
#include <string>
#include <string_view>

namespace quorvel::modes {

/// Name under which the stream encodings log.
inline std::string const kEncapsulationModule = "ModeSEncapsulation";

/// Makes and reads records without copies of their bytes in between.
struct RecordAccess {
    static std::shared_ptr<ModeSEncapsulation> make(unsigned long long timeStamp, std::string_view data) {
        auto record = makeRecycled<ModeSEncapsulation>();
        record->_timeStamp = timeStamp;
        assignBytes(record->_data, data.data(), data.size());
        return record;
    }

    static std::string const& data(ModeSEncapsulation const& record) { return record._data; }
};

} // namespace quorvel::modes
