# SPDX-License-Identifier: MIT
# Writes OUTPUT, a header with the short hash of the revision in SOURCE; "0000000" outside a git checkout.
# Run at build time; the file is touched only when the hash changes.
execute_process(COMMAND git -C "${SOURCE}" rev-parse --short=7 HEAD
    OUTPUT_VARIABLE hash ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE failed)
execute_process(COMMAND git -C "${SOURCE}" rev-parse --show-prefix
    OUTPUT_VARIABLE prefix ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE)
if(failed OR NOT hash OR prefix)  # a folder inside another checkout is not ours
    set(hash 0000000)
endif()
string(SUBSTRING "${hash}" 0 7 hash)  # git lengthens an ambiguous hash
set(text "#pragma once\n\n#define TREVALLO_BUILD_ID \"${hash}\"\n")
if(EXISTS "${OUTPUT}")
    file(READ "${OUTPUT}" old)
endif()
if(NOT text STREQUAL "${old}")
    file(WRITE "${OUTPUT}" "${text}")
endif()
