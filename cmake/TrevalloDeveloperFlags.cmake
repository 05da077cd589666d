# SPDX-License-Identifier: MIT
# Flags that only developers of trevallo build with: never exported, never forced on a user's build.
add_library(trevallo_developer_flags INTERFACE)

if(TREVALLO_STRICT)
    target_compile_options(trevallo_developer_flags INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Werror)
endif()

if(TREVALLO_SANITIZE)
    set(sanitize -fsanitize=${TREVALLO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(trevallo_developer_flags INTERFACE ${sanitize})
    target_link_options(trevallo_developer_flags INTERFACE ${sanitize})
endif()

if(TREVALLO_FUZZ)
    # the fuzzers themselves are linked with libFuzzer in fuzz/
    target_compile_options(trevallo_developer_flags INTERFACE -fsanitize=fuzzer-no-link)
    target_compile_definitions(trevallo_developer_flags INTERFACE _GLIBCXX_ASSERTIONS)
endif()

if(TREVALLO_COVERAGE)
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        set(coverage -fprofile-instr-generate -fcoverage-mapping)
    else()
        # counted atomically: counters that several threads raise at once can come out negative, and no report can be made
        set(coverage --coverage -fprofile-abs-path -fprofile-update=atomic)
    endif()
    target_compile_options(trevallo_developer_flags INTERFACE ${coverage})
    target_link_options(trevallo_developer_flags INTERFACE ${coverage})
endif()
