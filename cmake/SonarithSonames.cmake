# SPDX-License-Identifier: GPL-3.0-or-later
# Reads the names (SONAME) of the libraries that the program loads when it first calls one of their
# functions, and writes the names to a header. The libraries are those of the machine that builds
# the program: the program is compiled with their headers, and the Debian package depends on the
# packages that contain these libraries. SONARITH_SONAMES lists the names.

find_program(SONARITH_READELF NAMES readelf llvm-readelf REQUIRED)
set(SONARITH_SONAMES)
set(SONARITH_SONAME_LINES)
foreach(library IN ITEMS cdio cdio_cdda cdio_paranoia asound sndfile mpg123 speexdsp)
  find_library(SONARITH_LATE_${library} ${library} HINTS ${LATE_LIBRARY_DIRS} REQUIRED)
  execute_process(COMMAND ${SONARITH_READELF} -d ${SONARITH_LATE_${library}}
                  OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
  if(NOT dynamic MATCHES "SONAME[^[]*\\[([^]]+)\\]")
    message(FATAL_ERROR "${SONARITH_LATE_${library}} has no SONAME")
  endif()
  set(soname ${CMAKE_MATCH_1})
  list(APPEND SONARITH_SONAMES ${soname})
  string(REGEX REPLACE "^cdio_" "" name ${library})
  string(APPEND SONARITH_SONAME_LINES
         "inline constexpr const char* ${name} = \"${soname}\";\n")
endforeach()
configure_file(${CMAKE_CURRENT_LIST_DIR}/sonames.h.in
               ${PROJECT_BINARY_DIR}/generated/platform/linux/late/sonames.h @ONLY)
