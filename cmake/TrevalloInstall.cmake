# What `cmake --install` puts where: headers, library, CMake package, pkg-config file, program, licence.
include(CMakePackageConfigHelpers)

install(TARGETS trevallo EXPORT trevallo-targets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/modes" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION "${CMAKE_INSTALL_DOCDIR}")

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/trevallo")
install(EXPORT trevallo-targets NAMESPACE trevallo:: DESTINATION "${package_folder}")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/trevallo-config.cmake.in"
    "${PROJECT_BINARY_DIR}/trevallo-config.cmake" INSTALL_DESTINATION "${package_folder}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/trevallo-config-version.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/trevallo-config.cmake" "${PROJECT_BINARY_DIR}/trevallo-config-version.cmake"
    DESTINATION "${package_folder}")

# The pkg-config file finds its prefix from where it lies, so that the installation can be moved.
set(pkgconfig_folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH pkgconfig_to_prefix "/prefix/${pkgconfig_folder}" "/prefix")
if(NOT BUILD_SHARED_LIBS)
    set(pkgconfig_cflags "-DTREVALLO_STATIC")
endif()
configure_file("${PROJECT_SOURCE_DIR}/cmake/trevallo.pc.in" "${PROJECT_BINARY_DIR}/trevallo.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/trevallo.pc" DESTINATION "${pkgconfig_folder}")

if(TREVALLO_APPS)
    file(RELATIVE_PATH bin_to_lib "/prefix/${CMAKE_INSTALL_BINDIR}" "/prefix/${CMAKE_INSTALL_LIBDIR}")
    set_target_properties(trevallo_program PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_lib}")
    install(TARGETS trevallo_program RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()
