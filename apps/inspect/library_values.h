// SPDX-License-Identifier: MIT
#pragma once

#include "inspect/named_value.h"
#include <modes/adsb_message.h>
#include <modes/modes_message.h>

namespace quorvel::inspect {

/// Adds what the core library reads in a reply, under the names of the standards' values.
void addLibraryValues(modes::ModeSMessage const& reply, NamedValues& values);

/// The same of the payload of an extended squitter.
void addLibraryValues(modes::ADSBMessage const& message, NamedValues& values);

/// Whether a value of the library is another one than that of the standards, and not merely written otherwise.
bool isOther(Value const& ofLibrary, Value const& ofStandard);

} // namespace quorvel::inspect
