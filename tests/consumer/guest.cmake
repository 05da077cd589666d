# SPDX-License-Identifier: MIT
# As a guest in another project the library brings itself alone, without program, tests and examples.
foreach(target trevallo_program trevallo_core_tests trevallo_example_embed)
    if(TARGET ${target})
        message(FATAL_ERROR "${target} is built in a project that did not ask for it")
    endif()
endforeach()
if(NOT TARGET trevallo::trevallo)
    message(FATAL_ERROR "the library has not the name that its installation has")
endif()
