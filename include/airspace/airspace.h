// SPDX-License-Identifier: MIT
#pragma once

/// @namespace quorvel::airspace
/// What a host needs around the core: the streams of real receivers, and a sky of aircraft.

#include <airspace/address.h>
#include <airspace/aircraft.h>
#include <airspace/altitude_code.h>
#include <airspace/callsign.h>
#include <airspace/comm_b.h>
#include <airspace/compact_position.h>
#include <airspace/core_sky.h>
#include <airspace/counts.h>
#include <airspace/decompressor.h>
#include <airspace/emitter_category.h>
#include <airspace/encoding.h>
#include <airspace/extended_squitter.h>
#include <airspace/frame.h>
#include <airspace/integrity.h>
#include <airspace/message.h>
#include <airspace/message_fields.h>
#include <airspace/operational_status.h>
#include <airspace/place.h>
#include <airspace/register_choice.h>
#include <airspace/register_fields.h>
#include <airspace/reply.h>
#include <airspace/resolution_advisory.h>
#include <airspace/sky.h>
#include <airspace/sky_options.h>
#include <airspace/squawk.h>
#include <airspace/stream.h>
#include <airspace/target_state.h>
#include <airspace/velocity.h>
