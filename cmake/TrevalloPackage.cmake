# SPDX-License-Identifier: MIT
# The Debian packages that CPack makes of the installed components: for each library one of it and one of its headers,
# and the program's.
# They are built in the preset `package`: in the folders of /usr, where the program needs no path to the library.
set(debian_folder "${PROJECT_SOURCE_DIR}/packaging/debian")
set(made_folder "${PROJECT_BINARY_DIR}/debian")

# The revision of the packages stands in their changelog, whose newest entry is of this version of the library.
file(STRINGS "${debian_folder}/changelog" newest_entry LIMIT_COUNT 1)
if(NOT newest_entry MATCHES "^trevallo \\(${PROJECT_VERSION}-([^)]+)\\)")
    message(FATAL_ERROR "packaging/debian/changelog does not start with an entry for ${PROJECT_VERSION}")
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE ${CMAKE_MATCH_1})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME trevallo)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL Program)  # and those of the libraries
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The trevallo authors <trevallo@quorvel.example>")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${PROJECT_HOMEPAGE_URL}")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/src" "${PROJECT_BINARY_DIR}/src/airspace")

set(about
"trevallo decodes the downlink formats of Mode S and the ADS-B messages of
versions 0, 1 and 2 that a receiver on 1090 MHz hears, repairs damaged
squitters, and keeps one target for each aircraft: identity, position,
altitude, speed and status, each with its validity and age.
.")

# library_packages(TARGET PREFIX SUMMARY ABOUT [DEPENDS LIBRARY]): the packages of a shared library and of its headers,
# made of the components PREFIXRuntime and PREFIXDevelopment. The symbols of the library come from the record of its
# interface. LIBRARY is another library of these packages, which it is built on.
macro(library_packages target prefix summary about)
    cmake_parse_arguments(of "" "DEPENDS" "" ${ARGN})
    get_target_property(library ${target} OUTPUT_NAME)
    get_target_property(soversion ${target} SOVERSION)
    set(package lib${library}${soversion})
    set(version "${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")
    list(APPEND CPACK_COMPONENTS_ALL ${prefix}Runtime ${prefix}Development)
    list(APPEND library_depends "${package} (>= ${PROJECT_VERSION})")

    string(TOUPPER ${prefix}Runtime key)
    set(CPACK_TREVALLO_${key}_LIBRARY ${library})
    set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${package})
    set(CPACK_DEBIAN_${key}_PACKAGE_SECTION libs)
    set(CPACK_DEBIAN_${key}_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_${key}_PACKAGE_CONTROL_EXTRA
        "${made_folder}/${package}/symbols" "${made_folder}/${package}/shlibs" "${made_folder}/${package}/triggers")
    set(CPACK_DEBIAN_${key}_DESCRIPTION "${summary}\n${about}\nThis package has the shared library.")
    file(WRITE "${made_folder}/${package}/shlibs" "lib${library} ${soversion} ${package} (>= ${PROJECT_VERSION})\n")
    file(WRITE "${made_folder}/${package}/triggers" "activate-noawait ldconfig\n")

    string(TOUPPER ${prefix}Development headers_key)
    set(CPACK_DEBIAN_${headers_key}_PACKAGE_NAME lib${library}-dev)
    set(CPACK_DEBIAN_${headers_key}_PACKAGE_SECTION libdevel)
    set(CPACK_DEBIAN_${headers_key}_PACKAGE_DEPENDS "${package} (= ${version})")
    set(CPACK_DEBIAN_${headers_key}_DESCRIPTION "${summary} - headers\n${about}
This package has the headers, and what CMake and pkg-config need to find the
library.")

    if(of_DEPENDS)
        get_target_property(soversion ${of_DEPENDS} SOVERSION)
        set(CPACK_DEBIAN_${key}_PACKAGE_DEPENDS "lib${of_DEPENDS}${soversion} (>= ${PROJECT_VERSION})")
        string(APPEND CPACK_DEBIAN_${headers_key}_PACKAGE_DEPENDS ", lib${of_DEPENDS}-dev (= ${version})")
    endif()
endmacro()

library_packages(trevallo "" "decoder and tracker for aircraft transponder replies" "${about}")
library_packages(trevallo_airspace Airspace "streams of 1090 MHz receivers and the aircraft in them"
"trevallo-airspace reads the streams of 1090 MHz receivers, whatever their
encoding, compression and clock, gives each frame its time, and keeps the
aircraft that are heard, with false ones and impossible positions left out.
It is built on trevallo, which decodes and tracks.
." DEPENDS trevallo)
string(APPEND CPACK_DEBIAN_AIRSPACEDEVELOPMENT_DESCRIPTION
" It also has a set of frames with what they say by the standards, to
test decoders of any kind with.")
list(JOIN library_depends ", " library_depends)

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME trevallo)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION hamradio)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "${library_depends}")
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "tracker of the aircraft that a 1090 MHz receiver hears
${about}
This package has the program, which reads what a receiver has heard, and makes
the streams of simulated receivers.")

file(READ "${PROJECT_SOURCE_DIR}/LICENSE" license)
string(REGEX MATCH "Copyright \\(c\\) ([^\n]*)\n\n(.*)\n$" license "${license}")
set(copyright "${CMAKE_MATCH_1}")
string(REPLACE "\n\n" "\n.\n" license "${CMAKE_MATCH_2}")
string(REPLACE "\n" "\n " license " ${license}")
configure_file("${debian_folder}/copyright.in" "${made_folder}/copyright" @ONLY)

# The records hold where the standard integer types are those of 64-bit machines.
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(CPACK_TREVALLO_SYMBOLS_CHECK -c4)
endif()

# What Debian wants of the files beyond their places is done between installing and packing them.
set(CPACK_PRE_BUILD_SCRIPTS "${debian_folder}/finish.cmake")
set(CPACK_TREVALLO_DEBIAN_FOLDER "${debian_folder}")
set(CPACK_TREVALLO_RECORDS "${PROJECT_SOURCE_DIR}/tests/abi")
set(CPACK_TREVALLO_MADE_FOLDER "${made_folder}")
include(CPack)
