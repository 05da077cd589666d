# SPDX-License-Identifier: MIT
# Read by CMake right after project(), for the many small builds of the mutation check: what every source reads from
# the standard library and from the test framework is compiled once.
function(precompile_what_never_changes)
    set(standard <algorithm> <array> <atomic> <chrono> <cmath> <cstdint> <fstream> <functional> <initializer_list>
        <iostream> <iterator> <memory> <optional> <sstream> <string> <string_view> <type_traits> <typeinfo>
        <unordered_map> <utility> <vector>)
    target_precompile_headers(trevallo_objects PRIVATE ${standard})
    set(first "")
    foreach(folder core modes adsb track report vectors airspace end_to_end)
        set(tests trevallo_${folder}_tests)
        if(first)
            target_precompile_headers(${tests} REUSE_FROM ${first})
        else()
            target_precompile_headers(${tests} PRIVATE ${standard} <gmock/gmock.h> <gtest/gtest.h>)
            set(first ${tests})
        endif()
    endforeach()
endfunction()
cmake_language(DEFER CALL precompile_what_never_changes)
