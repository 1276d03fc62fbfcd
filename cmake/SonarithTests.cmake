# SPDX-License-Identifier: GPL-3.0-or-later
# Adds tests to CTest. ./test selects them by name: "MODULE.tests", "e2e.SCRIPT",
# "fuzz.TARGET", "lint.CHECK".
set(SONARITH_PYTHON /usr/bin/python3) # Debian's Python: only it has the accessibility modules
set(SONARITH_TEST_TOOLS ${PROJECT_SOURCE_DIR}/tools/testing)

# Excluded under the thread sanitizer: the slowest tests that use only one thread.
if(SONARITH_SANITIZE STREQUAL "thread")
  set(SONARITH_EXCLUDED_TESTS
      SegmentDecoderTest.*
      SoundCardTest.RecordsATrackBitForBitWhateverTheJitterOfItsCalls)
endif()
list(JOIN SONARITH_EXCLUDED_TESTS ":" SONARITH_EXCLUDED_TESTS)

# sonarith_remembered_test(NAME INPUTS file... COMMAND argument...)
# Adds a test that is skipped once it has passed with the same command and content of the inputs.
# Results are in the build folder; ./test discards those of tests that are selected by name.
function(sonarith_remembered_test name)
  cmake_parse_arguments(PARSE_ARGV 1 T "" "" "INPUTS;COMMAND")
  add_test(NAME ${name}
           COMMAND ${SONARITH_PYTHON} ${SONARITH_TEST_TOOLS}/remembered.py
                   --verdicts ${CMAKE_BINARY_DIR}/verdicts --name ${name} --inputs ${T_INPUTS}
                   -- ${T_COMMAND})
  set_tests_properties(${name} PROPERTIES SKIP_RETURN_CODE 77)
endfunction()

# sonarith_unit_tests(MODULE FOLDERS folder...)
# Adds the test "MODULE.tests", which runs the tests of program MODULE_test in one process: one process
# per test would take longer than the tests. Its labels are "unit" and the folders below src/.
function(sonarith_unit_tests module)
  cmake_parse_arguments(PARSE_ARGV 1 T "" "" "FOLDERS")
  # The test programs create their data with the scripts in tools/.
  file(GLOB scripts CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/*.py)
  sonarith_remembered_test(
    ${module}.tests
    INPUTS $<TARGET_FILE:${module}_test> ${SONARITH_TEST_TOOLS}/unit_program.py ${scripts}
    COMMAND ${SONARITH_PYTHON} ${SONARITH_TEST_TOOLS}/unit_program.py
            $<TARGET_FILE:${module}_test> --exclude=${SONARITH_EXCLUDED_TESTS})
  set_tests_properties(${module}.tests PROPERTIES LABELS "unit;${T_FOLDERS}" TIMEOUT 1800)
endfunction()
