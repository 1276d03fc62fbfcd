# SPDX-License-Identifier: GPL-3.0-or-later
# Finds the libraries that the program uses; docs/architecture.md states the reasons for each.
# Included at the top level, so that sources, tests and benchmarks use the same libraries.

find_package(PkgConfig REQUIRED)
pkg_check_modules(UTF8PROC REQUIRED IMPORTED_TARGET libutf8proc)
if(SONARITH_DEVICES)
  find_package(Threads REQUIRED)
  # The program is not linked to these libraries: it loads a library at the first call of one of the
  # library's functions. The build needs the libraries for their headers and their names
  # (SonarithSonames.cmake).
  pkg_check_modules(LATE REQUIRED libcdio libcdio_paranoia libcdio_cdda alsa sndfile libmpg123
                    speexdsp)
  include(${CMAKE_CURRENT_LIST_DIR}/SonarithSonames.cmake)
endif()
if(SONARITH_DESKTOP)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets DBus)
  pkg_check_modules(FONTCONFIG REQUIRED IMPORTED_TARGET fontconfig)
  pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
  pkg_check_modules(SYSTEMD REQUIRED IMPORTED_TARGET libsystemd)
  if(SONARITH_TESTS)
    find_package(Qt6 6.4 REQUIRED COMPONENTS DBus Test)
  endif()
endif()
if(SONARITH_TESTS)
  find_package(GTest REQUIRED)
endif()
