# SPDX-License-Identifier: MIT
# Run by CPack between installing the files and packing them: gives each package what Debian wants of it.
cmake_minimum_required(VERSION 3.22)

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(staged "${CPACK_TEMPORARY_INSTALL_DIRECTORY}")

foreach(component ${CPACK_COMPONENTS_ALL})
    string(TOUPPER ${component} key)
    set(all_documents "${staged}/${component}/usr/share/doc")
    set(documents "${all_documents}/${CPACK_DEBIAN_${key}_PACKAGE_NAME}")
    file(REMOVE_RECURSE "${all_documents}")  # the licence is in the copyright file
    file(COPY "${CPACK_TREVALLO_MADE_FOLDER}/copyright" DESTINATION "${documents}")
    configure_file("${CPACK_TREVALLO_DEBIAN_FOLDER}/changelog" "${documents}/changelog.Debian" COPYONLY)
    run(gzip -9n "${documents}/changelog.Debian")
endforeach()

set(shared "${staged}/Program/usr/share")
run(gzip -9n "${shared}/man/man1/trevallo.1")
file(RENAME "${shared}/zsh/site-functions" "${shared}/zsh/vendor-completions")

# write_symbols(OUTPUT RECORD SONAME PACKAGE): the symbols of a library as dpkg-gensymbols reads them, from its ABI
# record. Weak ones are the data of classes: a compiler that sees the whole library may omit what nothing in it needs.
function(write_symbols output record soname package)
    file(STRINGS "${record}" symbols REGEX "<elf-symbol ")
    set(lines "${soname} ${package} #MINVER#\n")
    foreach(symbol IN LISTS symbols)
        if(NOT symbol MATCHES " name='([^']+)'.* binding='([^']+)'.* since='([^']+)'")
            message(FATAL_ERROR "${record} has a symbol of no version: ${symbol}")
        endif()
        set(tag "")
        if(CMAKE_MATCH_2 STREQUAL "weak-binding")
            set(tag "(optional)")
        endif()
        string(APPEND lines " ${tag}${CMAKE_MATCH_1}@Base ${CMAKE_MATCH_3}\n")
    endforeach()
    file(WRITE "${output}" "${lines}")
endfunction()

# Which version of a library a program needs follows from the symbols that it uses.
foreach(component ${CPACK_COMPONENTS_ALL})
    string(TOUPPER ${component} key)
    set(library "${CPACK_TREVALLO_${key}_LIBRARY}")
    if(NOT library)
        continue()
    endif()
    set(package "${CPACK_DEBIAN_${key}_PACKAGE_NAME}")
    set(made "${CPACK_TREVALLO_MADE_FOLDER}/${package}")
    file(GLOB_RECURSE file "${staged}/${component}/usr/lib/lib${library}.so.*.*")
    string(REGEX REPLACE ".*/(lib.*\\.so\\.[0-9]+)\\..*" "\\1" soname "${file}")
    write_symbols("${made}/recorded" "${CPACK_TREVALLO_RECORDS}/${library}.abi" ${soname} ${package})
    run(dpkg-gensymbols -p${package} -v${CPACK_PACKAGE_VERSION} -e${file} -I${made}/recorded -O${made}/symbols
        ${CPACK_TREVALLO_SYMBOLS_CHECK})
endforeach()
