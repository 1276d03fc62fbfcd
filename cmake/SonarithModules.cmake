# SPDX-License-Identifier: GPL-3.0-or-later
# Defines how folders of src/ and tests/ become libraries and test programs. A module is a set of
# folders. Its library consists of all *.cpp except *_test.cpp, its test program of all *_test.cpp.

add_library(sonarith_flags INTERFACE)
target_include_directories(sonarith_flags INTERFACE ${PROJECT_SOURCE_DIR}/src)
# -Wno-restrict: GCC 12 reports impossible overlapping copies in std::string (its bug 105651).
target_compile_options(sonarith_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                                $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict> -Werror)
if(SONARITH_SANITIZE)
  target_compile_options(sonarith_flags INTERFACE -fsanitize=${SONARITH_SANITIZE}
                                                  -fno-omit-frame-pointer
                                                  -fno-sanitize-recover=all)
  # GCC 12 reports false out-of-bounds accesses in instrumented std::string code.
  target_compile_options(
    sonarith_flags INTERFACE "$<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds;-Wno-stringop-overflow>")
  target_link_options(sonarith_flags INTERFACE -fsanitize=${SONARITH_SANITIZE})
endif()

# sonarith_module(NAME FILES pattern... [DEPENDS target...] [EXCLUDE pattern...])
# Creates library sonarith_NAME and, if tests are enabled, the program NAME_test.
function(sonarith_module name)
  cmake_parse_arguments(PARSE_ARGV 1 M "" "" "FILES;DEPENDS;EXCLUDE")
  file(GLOB files CONFIGURE_DEPENDS ${M_FILES})
  if(M_EXCLUDE)
    file(GLOB excluded CONFIGURE_DEPENDS ${M_EXCLUDE})
    list(REMOVE_ITEM files ${excluded})
  endif()
  set(tests ${files})
  list(FILTER tests INCLUDE REGEX "_test\\.cpp$")
  list(FILTER files EXCLUDE REGEX "_test\\.cpp$")
  if(files)
    add_library(sonarith_${name} STATIC ${files})
    target_link_libraries(sonarith_${name} PUBLIC sonarith_flags ${M_DEPENDS})
  else()
    add_library(sonarith_${name} INTERFACE)
    target_link_libraries(sonarith_${name} INTERFACE sonarith_flags ${M_DEPENDS})
  endif()
  if(SONARITH_TESTS AND tests)
    add_executable(${name}_test ${tests})
    target_include_directories(${name}_test PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    # With this path the tests find files of the source tree, such as the help pages.
    target_compile_definitions(${name}_test PRIVATE SONARITH_SOURCES="${PROJECT_SOURCE_DIR}")
    target_link_libraries(${name}_test PRIVATE sonarith_${name} GTest::gmock_main)
    # Optimizing the code that the sanitizers add to a test would take half of its build time.
    target_compile_options(${name}_test PRIVATE -O0)
    list(TRANSFORM M_FILES REPLACE "/[^/]*$" "" OUTPUT_VARIABLE folders)
    list(REMOVE_DUPLICATES folders)
    sonarith_unit_tests(${name} FOLDERS ${folders})
    add_dependencies(unit_tests ${name}_test)
  endif()
endfunction()
if(SONARITH_TESTS)
  add_custom_target(unit_tests)
endif()
