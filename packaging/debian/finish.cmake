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
    file(REMOVE_RECURSE "${all_documents}")  # the licence stands in the copyright file
    file(COPY "${CPACK_TREVALLO_MADE_FOLDER}/copyright" DESTINATION "${documents}")
    configure_file("${CPACK_TREVALLO_DEBIAN_FOLDER}/changelog" "${documents}/changelog.Debian" COPYONLY)
    run(gzip -9n "${documents}/changelog.Debian")
endforeach()

set(shared "${staged}/Program/usr/share")
run(gzip -9n "${shared}/man/man1/trevallo.1")
file(RENAME "${shared}/zsh/site-functions" "${shared}/zsh/vendor-completions")

# Which version of the library a program needs follows from the symbols that it uses.
file(GLOB_RECURSE library "${staged}/Runtime/usr/lib/libtrevallo.so.${CPACK_PACKAGE_VERSION}")
run(dpkg-gensymbols -p${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} -v${CPACK_PACKAGE_VERSION} -e${library}
    -I${CPACK_TREVALLO_DEBIAN_FOLDER}/libtrevallo1.symbols -O${CPACK_TREVALLO_MADE_FOLDER}/symbols
    ${CPACK_TREVALLO_SYMBOLS_CHECK})
