# SPDX-License-Identifier: GPL-3.0-or-later
# How the released program is compiled: hardened as Debian hardens its own programs, with symbols for
# backtraces (which are in a package of their own), and without paths of the machine that built it, so
# that two builds of one commit are identical. Only for Release: the presets with sanitizers do not use
# these options.

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  add_compile_options(-g1 -fstack-protector-strong -fstack-clash-protection -fcf-protection
                      -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -Wformat -Werror=format-security
                      # The compiler tries the last one first: the build folder may be below the
                      # sources.
                      -ffile-prefix-map=${PROJECT_SOURCE_DIR}=/source
                      -ffile-prefix-map=${PROJECT_BINARY_DIR}=/build)
  add_link_options(-Wl,-z,relro -Wl,-z,now)
endif()
