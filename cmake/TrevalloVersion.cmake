# SPDX-License-Identifier: MIT
# trevallo_version(VARIABLE HEADER): the version in a header, for the code and the build alike.
function(trevallo_version variable header)
    file(STRINGS "${header}" lines REGEX "constexpr int kVersion")
    string(REGEX REPLACE "[^0-9]*([0-9]+)[^0-9]+([0-9]+)[^0-9]+([0-9]+)[^0-9]*" "\\1.\\2.\\3" version "${lines}")
    set(${variable} "${version}" PARENT_SCOPE)
endfunction()
