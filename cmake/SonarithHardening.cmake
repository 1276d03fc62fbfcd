# SPDX-License-Identifier: GPL-3.0-or-later
# Sets the compiler and linker options of the released program:
# - Debian's default hardening and more;
# - debug symbols for backtraces; the symbols become a package of their own;
# - no paths of the machine that builds the program, so that two builds of one commit are identical.
# Only for Release: the presets with sanitizers do not use these options.

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  add_compile_options(-g1 -fstack-protector-strong -fstack-clash-protection -fcf-protection
                      -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -Wformat -Werror=format-security
                      # Of the -ffile-prefix-map options, the compiler applies the last that matches
                      # a path. So the option for the build folder, which may be below the sources,
                      # is the last.
                      -ffile-prefix-map=${PROJECT_SOURCE_DIR}=/source
                      -ffile-prefix-map=${PROJECT_BINARY_DIR}=/build)
  add_link_options(-Wl,-z,relro -Wl,-z,now)
endif()
