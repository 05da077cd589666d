# SPDX-License-Identifier: MIT
# How the libraries are built: each is made of one set of objects, compiled once, which the tests link directly, so that
# they reach what the library hides.

# What is built for use is the same file wherever it is built: it names no folders.
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    set(trevallo_folderless
        "$<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.;-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>")
endif()

# trevallo_library_objects(TARGET [BUILDING]): objects of shared libraries, which hide whatever is not marked for export.
# BUILDING is the definition that marks it.
function(trevallo_library_objects target)
    add_library(${target} OBJECT)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
    # Positions and speeds are the same to the last bit on every machine: no fused multiply and add.
    if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
        target_compile_options(${target} PRIVATE -ffp-contract=off)
    endif()
    # On 32-bit machines, dates after 2038 have to be asked for.
    if(CMAKE_SIZEOF_VOID_P EQUAL 4)
        target_compile_definitions(${target} PRIVATE _TIME_BITS=64 _FILE_OFFSET_BITS=64)
    endif()
    # A library calls its own functions directly, not by way of a table that a host could redirect.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(${target} PRIVATE -fno-semantic-interposition)
    endif()
    target_compile_options(${target} PRIVATE "${trevallo_folderless}")
    if(TREVALLO_LTO)
        set_target_properties(${target} PROPERTIES
            INTERPROCEDURAL_OPTIMIZATION_RELEASE ON INTERPROCEDURAL_OPTIMIZATION_RELWITHDEBINFO ON)
    endif()
    target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}/include" "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${target} PUBLIC $<BUILD_INTERFACE:trevallo_developer_flags>)
    if(BUILD_SHARED_LIBS)
        target_compile_definitions(${target} PRIVATE ${ARGN})
    else()
        target_compile_definitions(${target} PUBLIC TREVALLO_STATIC)
    endif()
endfunction()

# trevallo_library(TARGET NAME VERSION MAP): how a library is linked, libNAME; MAP says what the shared one exports.
function(trevallo_library target name version map)
    target_compile_features(${target} PUBLIC cxx_std_17)
    if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT TREVALLO_SANITIZE)
        target_link_options(${target} PRIVATE
            LINKER:--no-undefined LINKER:-Bsymbolic-functions "LINKER:--version-script=${map}")
        set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${map}")
    endif()
    target_include_directories(${target} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:trevallo_developer_flags>)
    target_link_options(${target} PRIVATE "${trevallo_folderless}")  # code is made while linking, too
    string(REGEX MATCH "^[0-9]+" major "${version}")
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME ${name} VERSION ${version} SOVERSION ${major} LINKER_LANGUAGE CXX
        BUILD_RPATH_USE_ORIGIN ON)  # or the one names the folder in which the other was built
    if(NOT BUILD_SHARED_LIBS)
        target_compile_definitions(${target} PUBLIC TREVALLO_STATIC)
    endif()
endfunction()
