# SPDX-License-Identifier: MIT
# The aircraft database reads and writes its file through rapidcsv. An installed rapidcsv is used where there is one
# (CMake package, include path or -DRAPIDCSV_INCLUDE_DIR=...), else the replacement under compat/rapidcsv.
add_library(trevallo_rapidcsv INTERFACE)

find_package(rapidcsv CONFIG QUIET)
find_path(RAPIDCSV_INCLUDE_DIR rapidcsv.h DOC "Folder that holds rapidcsv.h")

if(TARGET rapidcsv::rapidcsv)
    target_link_libraries(trevallo_rapidcsv INTERFACE rapidcsv::rapidcsv)
    message(STATUS "trevallo: rapidcsv from its CMake package (${rapidcsv_DIR})")
elseif(RAPIDCSV_INCLUDE_DIR)
    target_include_directories(trevallo_rapidcsv SYSTEM INTERFACE "${RAPIDCSV_INCLUDE_DIR}")
    message(STATUS "trevallo: rapidcsv from ${RAPIDCSV_INCLUDE_DIR}")
else()
    target_include_directories(trevallo_rapidcsv INTERFACE "${PROJECT_SOURCE_DIR}/compat/rapidcsv")
    message(STATUS "trevallo: no rapidcsv installed, using the replacement in compat/rapidcsv")
endif()
