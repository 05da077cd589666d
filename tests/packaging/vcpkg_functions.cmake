# SPDX-License-Identifier: MIT
# The functions of vcpkg that the port uses, as far as they can be had without vcpkg: the port is configured with its
# options, and what is installed is a build that exists (BUILT).

function(vcpkg_check_features)
    cmake_parse_arguments(arg "" OUT_FEATURE_OPTIONS FEATURES ${ARGN})
    set(options)
    while(arg_FEATURES)
        list(POP_FRONT arg_FEATURES feature option)
        if(feature IN_LIST FEATURES)
            list(APPEND options -D${option}=ON)
        else()
            list(APPEND options -D${option}=OFF)
        endif()
    endwhile()
    set(${arg_OUT_FEATURE_OPTIONS} ${options} PARENT_SCOPE)
endfunction()

function(vcpkg_find_acquire_program)
    find_program(PKGCONFIG pkg-config REQUIRED)
endfunction()

function(vcpkg_cmake_configure)
    cmake_parse_arguments(arg "" SOURCE_PATH "OPTIONS;OPTIONS_DEBUG" ${ARGN})
    execute_process(COMMAND ${CMAKE_COMMAND} -S ${arg_SOURCE_PATH} -B ${CURRENT_BUILDTREES_DIR} -G Ninja ${arg_OPTIONS_DEBUG}
            ${arg_OPTIONS}
        COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET ERROR_VARIABLE complaints)
    if(complaints)
        message(FATAL_ERROR "the port's options are not those of the build: ${complaints}")
    endif()
endfunction()

function(vcpkg_cmake_install)
    execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILT} --prefix ${CURRENT_PACKAGES_DIR}
        COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
endfunction()

function(expect_file file)
    if(NOT EXISTS "${CURRENT_PACKAGES_DIR}/${file}")
        message(FATAL_ERROR "the port expects ${file}, which is not installed")
    endif()
endfunction()

function(vcpkg_cmake_config_fixup)
    cmake_parse_arguments(arg "" "PACKAGE_NAME;CONFIG_PATH" "" ${ARGN})
    expect_file("${arg_CONFIG_PATH}/${arg_PACKAGE_NAME}-config.cmake")
    file(MAKE_DIRECTORY "${CURRENT_PACKAGES_DIR}/share")
    file(RENAME "${CURRENT_PACKAGES_DIR}/${arg_CONFIG_PATH}" "${CURRENT_PACKAGES_DIR}/share/${arg_PACKAGE_NAME}")
endfunction()

function(vcpkg_fixup_pkgconfig)
    expect_file(lib/pkgconfig/${PORT}.pc)
endfunction()

function(vcpkg_copy_tools)
    cmake_parse_arguments(arg AUTO_CLEAN "" TOOL_NAMES ${ARGN})
    foreach(tool ${arg_TOOL_NAMES})
        expect_file(bin/${tool})
        file(COPY "${CURRENT_PACKAGES_DIR}/bin/${tool}" DESTINATION "${CURRENT_PACKAGES_DIR}/tools/${PORT}")
    endforeach()
    file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/bin")
endfunction()

function(vcpkg_install_copyright)
    cmake_parse_arguments(arg "" "" FILE_LIST ${ARGN})
    file(COPY_FILE "${arg_FILE_LIST}" "${CURRENT_PACKAGES_DIR}/share/${PORT}/copyright")
endfunction()
