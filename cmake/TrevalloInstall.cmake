# SPDX-License-Identifier: MIT
# What `cmake --install` puts where, in three components:
#   Runtime      the shared library
#   Development  headers, link name or static library, CMake package, pkg-config file
#   Program      the program with its man page, its completions and its part of the CMake package
# The licence belongs to whatever is installed: it goes with Runtime, as a static library's does with Development.
include(CMakePackageConfigHelpers)

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/trevallo")

# install_package_part(COMPONENT PART): the targets of one find_package component, in a file of their own, since the
# other one may not be installed
function(install_package_part component part)
    install(EXPORT trevallo-${part}-targets NAMESPACE trevallo:: DESTINATION "${package_folder}" COMPONENT ${component})
endfunction()

install(TARGETS trevallo EXPORT trevallo-library-targets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Runtime NAMELINK_COMPONENT Development
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Development
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT Runtime)
install_package_part(Development library)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/modes"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT Development FILES_MATCHING PATTERN "*.h")

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

# The pkg-config file finds its prefix from where it lies, so that the installation can be moved.
set(pkgconfig_folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH pkgconfig_to_prefix "/prefix/${pkgconfig_folder}" "/prefix")
if(NOT BUILD_SHARED_LIBS)
    set(pkgconfig_cflags "-DTREVALLO_STATIC")
endif()
configure_file("${PROJECT_SOURCE_DIR}/cmake/trevallo.pc.in" "${PROJECT_BINARY_DIR}/trevallo.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/trevallo.pc" DESTINATION "${pkgconfig_folder}" COMPONENT Development)

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
