# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Writes the package's copyright file in Debian's machine-readable format, quoting the
# licence texts as they are: the project's LICENSE and, when the window is built, that of the
# icons npm brought in. Run with cmake -P; see CMakeLists.txt beside it for the variables.

# Indents a text as a field's continuation lines: one space, and " ." for an empty line.
function(continuation_lines text out)
  string(REGEX REPLACE "\n+$" "" text "${text}")
  string(REPLACE "\n" ";" lines "${text}")
  set(result "")
  foreach(line IN LISTS lines)
    if(line STREQUAL "")
      string(APPEND result " .\n")
    else()
      string(APPEND result " ${line}\n")
    endif()
  endforeach()
  set(${out} "${result}" PARENT_SCOPE)
endfunction()

file(READ "${PROJECT_LICENSE}" project_licence)
string(REGEX MATCH "Copyright \\(c\\) ([^\n]+)" _ "${project_licence}")
set(project_copyright "${CMAKE_MATCH_1}")
if(project_copyright STREQUAL "")
  message(FATAL_ERROR "no copyright line in ${PROJECT_LICENSE}")
endif()
continuation_lines("${project_licence}" project_text)

set(copyright "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: Lumenscribe
Upstream-Contact: ${MAKER_NAME} <${MAKER_URL}>
Source: ${MAKER_URL}

Files: *
Copyright: ${project_copyright}
License: Expat
${project_text}")

if(ICONS_LICENSE AND EXISTS "${ICONS_LICENSE}")
  file(READ "${ICONS_LICENSE}" icons_licence)
  string(REGEX MATCHALL "Copyright \\(c\\) [^\n]+" icon_copyrights "${icons_licence}")
  list(TRANSFORM icon_copyrights REPLACE "^Copyright \\(c\\) " "")
  list(JOIN icon_copyrights "\n           " icon_copyright)
  continuation_lines("${icons_licence}" icons_text)
  string(APPEND copyright "
Files: lucide-static/icons/*
Copyright: ${icon_copyright}
Comment: The window's icons, from the lucide-static npm package fetched at build time and
 compiled into /usr/bin/lumenscribe.
License: ISC and Expat
${icons_text}")
endif()

file(WRITE "${OUTPUT}" "${copyright}")
