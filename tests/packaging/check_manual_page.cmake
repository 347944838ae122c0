# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Fails when man and groff have anything to say about the page PAGE (as lintian asks them),
# or when it renders to nothing.
find_program(MAN man REQUIRED)
execute_process(
  COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C.UTF-8 MANWIDTH=80
          ${MAN} --warnings -E UTF-8 -l -Tutf8 -Z ${PAGE}
  RESULT_VARIABLE status OUTPUT_VARIABLE rendered ERROR_VARIABLE complaints)
if(NOT status EQUAL 0 OR NOT complaints STREQUAL "")
  message(FATAL_ERROR "man -l ${PAGE} exited with ${status}:\n${complaints}")
endif()
string(LENGTH "${rendered}" length)
if(length LESS 1000)
  message(FATAL_ERROR "${PAGE} renders to ${length} bytes only")
endif()
