# SPDX-License-Identifier: MIT
# Inside another project the library adds only itself, without program, tests and examples.
foreach(target trevallo_program trevallo_core_tests trevallo_example_embed)
    if(TARGET ${target})
        message(FATAL_ERROR "${target} is built in a project that did not ask for it")
    endif()
endforeach()
if(NOT TARGET trevallo::trevallo)
    message(FATAL_ERROR "the library has not the name that its installation has")
endif()
if(NOT TREVALLO_AIRSPACE AND TARGET trevallo::airspace)
    message(FATAL_ERROR "trevallo-airspace is built in a project that did not ask for it")
endif()
