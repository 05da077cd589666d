# SPDX-License-Identifier: MIT
# What `cmake --install` puts where, in components:
#   Runtime, AirspaceRuntime          a shared library
#   Development, AirspaceDevelopment  its headers, link name or static library, its part of the CMake package, pkg-config file
#   Program      the program with its man page, its completions and its part of the CMake package
# The conformance set, which tests/conformance makes, goes with AirspaceDevelopment.
# The licence belongs to whatever is installed: it goes with Runtime, as a static library's does with Development.
include(CMakePackageConfigHelpers)

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/trevallo")
set(pkgconfig_folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
# A pkg-config file finds its prefix from its own location, so that the installation can be moved.
file(RELATIVE_PATH pkgconfig_to_prefix "/prefix/${pkgconfig_folder}" "/prefix")

# install_package_part(COMPONENT PART): the targets of one find_package component, in a file of their own, since the
# other ones may not be installed
function(install_package_part component part)
    install(EXPORT trevallo-${part}-targets NAMESPACE trevallo:: DESTINATION "${package_folder}" COMPONENT ${component})
endfunction()

# install_library(TARGET PART HEADERS DESCRIPTION [REQUIRES ...] [REQUIRES_PRIVATE ...] [COMPONENTS prefix]): a library
# with its headers, include/HEADERS. What it requires are modules of pkg-config; the private ones matter to those who
# link a static library.
function(install_library target part headers description)
    cmake_parse_arguments(PARSE_ARGV 4 of "" "COMPONENTS" "REQUIRES;REQUIRES_PRIVATE")
    set(runtime ${of_COMPONENTS}Runtime)
    set(development ${of_COMPONENTS}Development)
    install(TARGETS ${target} EXPORT trevallo-${part}-targets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT ${runtime} NAMELINK_COMPONENT ${development}
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT ${development}
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT ${runtime})
    install_package_part(${development} ${part})
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/${headers}"
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT ${development} FILES_MATCHING PATTERN "*.h")

    get_target_property(version ${target} VERSION)
    get_target_property(name ${target} OUTPUT_NAME)
    string(JOIN ", " requires ${of_REQUIRES})
    if(NOT BUILD_SHARED_LIBS)
        set(cflags "-DTREVALLO_STATIC")
        string(JOIN ", " requires_private ${of_REQUIRES_PRIVATE})
    endif()
    configure_file("${PROJECT_SOURCE_DIR}/cmake/trevallo.pc.in" "${PROJECT_BINARY_DIR}/${name}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${name}.pc" DESTINATION "${pkgconfig_folder}" COMPONENT ${development})
endfunction()

install_library(trevallo library modes "${PROJECT_DESCRIPTION}")
if(TREVALLO_AIRSPACE)
    install_library(trevallo_airspace airspace airspace "Streams of 1090 MHz receivers and the aircraft in them"
        COMPONENTS Airspace REQUIRES trevallo REQUIRES_PRIVATE ${trevallo_compression_modules})
    set_target_properties(trevallo_airspace PROPERTIES INSTALL_RPATH "$ORIGIN")  # where the other library is
    if(NOT BUILD_SHARED_LIBS)
        set(static_compression_modules ${trevallo_compression_modules})
    endif()
endif()

if(BUILD_SHARED_LIBS)
    set(licensed_component Runtime)
else()
    set(licensed_component Development)
endif()
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE"
    DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT ${licensed_component})

configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/trevallo-config.cmake.in"
    "${PROJECT_BINARY_DIR}/trevallo-config.cmake" INSTALL_DESTINATION "${package_folder}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/trevallo-config-version.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/trevallo-config.cmake" "${PROJECT_BINARY_DIR}/trevallo-config-version.cmake"
    DESTINATION "${package_folder}" COMPONENT Development)

if(TREVALLO_APPS)
    if(BUILD_SHARED_LIBS)
        file(RELATIVE_PATH bin_to_lib "/prefix/${CMAKE_INSTALL_BINDIR}" "/prefix/${CMAKE_INSTALL_LIBDIR}")
        set_target_properties(trevallo_program PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_lib}")
    endif()
    set_target_properties(trevallo_program PROPERTIES EXPORT_NAME program)
    install(TARGETS trevallo_program EXPORT trevallo-program-targets
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT Program)
    install_package_part(Program program)

    configure_file("${PROJECT_SOURCE_DIR}/docs/trevallo.1.in" "${PROJECT_BINARY_DIR}/trevallo.1" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/trevallo.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT Program)
    install(FILES "${PROJECT_SOURCE_DIR}/packaging/completion/trevallo.bash"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT Program RENAME trevallo)
    install(FILES "${PROJECT_SOURCE_DIR}/packaging/completion/trevallo.zsh"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions" COMPONENT Program RENAME _trevallo)
endif()
