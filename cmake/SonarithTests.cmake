# SPDX-License-Identifier: GPL-3.0-or-later
# Functions that add tests to CTest. ./test selects the tests by their names: "MODULE.tests",
# "e2e.SCRIPT", "fuzz.TARGET", "lint.CHECK", "package.CHECK".
set(SONARITH_PYTHON /usr/bin/python3) # Debian's Python, since only it has the accessibility modules
set(SONARITH_TEST_TOOLS ${PROJECT_SOURCE_DIR}/tools/testing)

# These tests do not run under the thread sanitizer: they are slow and use only one thread.
if(SONARITH_SANITIZE STREQUAL "thread")
  set(SONARITH_EXCLUDED_TESTS
      SegmentDecoderTest.*
      SoundCardTest.RecordsATrackBitForBitHoweverIrregularlyTheCardIsCalled)
endif()
list(JOIN SONARITH_EXCLUDED_TESTS ":" SONARITH_EXCLUDED_TESTS)

# sonarith_remembered_test(NAME INPUTS file... COMMAND argument...) Adds a test that is skipped if
# it has already passed with the same command and the same content of the inputs. The stored results
# are in the build folder. ./test first deletes the results of the tests that its command line
# names, except lint tests.
function(sonarith_remembered_test name)
  cmake_parse_arguments(PARSE_ARGV 1 T "" "" "INPUTS;COMMAND")
  add_test(NAME ${name}
           COMMAND ${SONARITH_PYTHON} ${SONARITH_TEST_TOOLS}/remembered.py
                   --verdicts ${CMAKE_BINARY_DIR}/verdicts --name ${name} --inputs ${T_INPUTS}
                   -- ${T_COMMAND})
  set_tests_properties(${name} PROPERTIES SKIP_RETURN_CODE 77)
endfunction()

# sonarith_unit_tests(MODULE FOLDERS folder...) Adds the test "MODULE.tests", which runs all tests
# of the program MODULE_test in one process, because starting a process for each test would take
# longer than the tests. The labels of "MODULE.tests" are "unit" and the module's folders, relative
# to src/ or tests/.
function(sonarith_unit_tests module)
  cmake_parse_arguments(PARSE_ARGV 1 T "" "" "FOLDERS")
  # The scripts in tools/ are inputs, since the test programs create their data with them.
  file(GLOB scripts CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/*.py)
  sonarith_remembered_test(
    ${module}.tests
    INPUTS $<TARGET_FILE:${module}_test> ${SONARITH_TEST_TOOLS}/unit_program.py ${scripts}
    COMMAND ${SONARITH_PYTHON} ${SONARITH_TEST_TOOLS}/unit_program.py
            $<TARGET_FILE:${module}_test> --exclude=${SONARITH_EXCLUDED_TESTS})
  set_tests_properties(${module}.tests PROPERTIES LABELS "unit;${T_FOLDERS}" TIMEOUT 1800)
endfunction()
