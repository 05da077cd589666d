# SPDX-License-Identifier: MIT
# The Debian packages that CPack makes of the installed components: libtrevallo1, libtrevallo-dev and trevallo.
# They are built in the preset `package`: in the folders of /usr, where the program needs no path to the library.
set(debian_folder "${PROJECT_SOURCE_DIR}/packaging/debian")
set(made_folder "${PROJECT_BINARY_DIR}/debian")

# The revision of the packages stands in their changelog, whose newest entry is of this version of the library.
file(STRINGS "${debian_folder}/changelog" newest_entry LIMIT_COUNT 1)
if(NOT newest_entry MATCHES "^trevallo \\(${PROJECT_VERSION}-([^)]+)\\)")
    message(FATAL_ERROR "packaging/debian/changelog does not begin with an entry for ${PROJECT_VERSION}")
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE ${CMAKE_MATCH_1})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME trevallo)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL Runtime Development Program)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The trevallo authors <trevallo@quorvel.example>")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${PROJECT_HOMEPAGE_URL}")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/src")

set(about
"trevallo decodes the downlink formats of Mode S and the ADS-B messages of
versions 0, 1 and 2 that a receiver on 1090 MHz hears, repairs damaged
squitters, and keeps one target for each aircraft: identity, position,
altitude, speed and status, each with its validity and age.
.")

set(runtime_package libtrevallo${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    "${made_folder}/symbols" "${made_folder}/shlibs" "${made_folder}/triggers")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "decoder and tracker for aircraft transponder replies
${about}
This package has the shared library.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libtrevallo-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "${runtime_package} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "decoder and tracker for aircraft transponder replies - headers
${about}
This package has the headers, and what CMake and pkg-config need to find the
library.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME trevallo)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION hamradio)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "${runtime_package} (>= ${PROJECT_VERSION})")
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

file(WRITE "${made_folder}/shlibs" "libtrevallo ${PROJECT_VERSION_MAJOR} ${runtime_package} (>= ${PROJECT_VERSION})\n")
file(WRITE "${made_folder}/triggers" "activate-noawait ldconfig\n")

# The record of symbols holds where the standard integer types have the names that they have on 64-bit machines.
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(CPACK_TREVALLO_SYMBOLS_CHECK -c4)
endif()

# What Debian wants of the files beyond their places is done between installing and packing them.
set(CPACK_PRE_BUILD_SCRIPTS "${debian_folder}/finish.cmake")
set(CPACK_TREVALLO_DEBIAN_FOLDER "${debian_folder}")
set(CPACK_TREVALLO_MADE_FOLDER "${made_folder}")
include(CPack)
