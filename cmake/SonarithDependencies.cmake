# SPDX-License-Identifier: GPL-3.0-or-later
# The libraries that are called; docs/architecture.md says why these. Found here, at the top, so that
# sources, tests and benchmarks see them alike.

find_package(PkgConfig REQUIRED)
pkg_check_modules(UTF8PROC REQUIRED IMPORTED_TARGET libutf8proc)
if(SONARITH_DEVICES)
  find_package(Threads REQUIRED)
  # Their headers: they are loaded when they are first called.
  pkg_check_modules(LATE REQUIRED libcdio libcdio_paranoia libcdio_cdda alsa sndfile libmpg123
                    samplerate)
endif()
if(SONARITH_DESKTOP)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets DBus)
  pkg_check_modules(FONTCONFIG REQUIRED IMPORTED_TARGET fontconfig)
  pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
  if(SONARITH_TESTS)
    find_package(Qt6 6.4 REQUIRED COMPONENTS DBus Test)
  endif()
endif()
if(SONARITH_TESTS)
  find_package(GTest REQUIRED)
endif()
