// SPDX-License-Identifier: MIT
#pragma once

/// @namespace quorvel::modes
/// The whole library: stream framing, Mode S and ADS-B decoding, tracking, reports and the aircraft database.

#include <modes/adsb_airborne_position_message.h>
#include <modes/adsb_airborne_velocity_message.h>
#include <modes/adsb_aircraft_status_message.h>
#include <modes/adsb_aircraftdb.h>
#include <modes/adsb_decoder.h>
#include <modes/adsb_identity_message.h>
#include <modes/adsb_message.h>
#include <modes/adsb_message_field.h>
#include <modes/adsb_operational_status_message.h>
#include <modes/adsb_service_status.h>
#include <modes/adsb_surface_position_message.h>
#include <modes/adsb_target.h>
#include <modes/adsb_target_report.h>
#include <modes/adsb_target_status_message.h>
#include <modes/adsb_test_message.h>
#include <modes/adsb_tracker.h>
#include <modes/cpr.h>
#include <modes/df_message.h>
#include <modes/html_document.h>
#include <modes/log.h>
#include <modes/modes_decoder.h>
#include <modes/modes_encapsulation.h>
#include <modes/modes_message.h>
#include <modes/modes_message_field.h>
#include <modes/mops_version.h>
#include <modes/trevallo.h>
