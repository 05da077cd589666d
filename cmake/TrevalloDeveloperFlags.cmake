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

if(TREVALLO_COVERAGE)
    target_compile_options(trevallo_developer_flags INTERFACE --coverage -fprofile-abs-path)
    target_link_options(trevallo_developer_flags INTERFACE --coverage)
endif()
