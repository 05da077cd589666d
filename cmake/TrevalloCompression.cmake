# SPDX-License-Identifier: MIT
# zlib and zstd, by the names that pkg-config knows them by. The target is global: a project around this one links the
# static library as well.
set(trevallo_compression_modules zlib libzstd)
find_package(PkgConfig REQUIRED)
pkg_check_modules(trevallo_compression REQUIRED IMPORTED_TARGET GLOBAL ${trevallo_compression_modules})
