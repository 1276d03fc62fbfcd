# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests unit_program.py with small programs that print the same lines as GoogleTest."""

import pathlib
import subprocess
import sys
import tempfile
import textwrap
import unittest

HERE = pathlib.Path(__file__).resolve().parent

# The source of a program, as a template for str.format(). `tests` contains the Python code of each
# test, by name; in this code `line` prints a line, and `good` and `bad` print that the test has
# passed or failed. The code `at_end` runs before the program prints its last lines, and the code
# `after_end` runs after that.
PROGRAM = """
#!{python}
import os, sys, time
flags = open(sys.argv[1].partition("=")[2]).read()
excluded = flags.split("-", 3)[-1].split()[0].split(":") if "*-" in flags else []
line = lambda text: print(text, flush=True)
failed = []
def bad(name):
    failed.append(name)
    line(f"[  FAILED  ] {{name}} (1 ms)")
def good(name):
    line(f"[       OK ] {{name}} (1 ms)")
tests = {tests!r}
count = 0
for name, does in tests.items():
    if name in excluded:
        continue
    count += 1
    line(f"[ RUN      ] {{name}}")
    exec(does)
{at_end}
line(f"[==========] {{count}} tests from 1 test suite ran. (1 ms total)")
for name in failed:
    line(f"[  FAILED  ] {{name}}")
{after_end}
sys.exit(1 if failed else 0)
"""
GOOD = "line('some output'); good(name)"


class UnitProgram(unittest.TestCase):
    def run_with(self, tests, *options, at_end="", after_end=""):
        """Inserts `tests`, `at_end` and `after_end` into the template PROGRAM, and runs
        unit_program.py with `options` on the program. Returns the exit code and the output of
        unit_program.py."""
        with tempfile.TemporaryDirectory() as folder:
            program = pathlib.Path(folder) / "it_test"
            program.write_text(textwrap.dedent(PROGRAM).lstrip().format(
                python=sys.executable, tests=tests, at_end=at_end, after_end=after_end))
            program.chmod(0o755)
            done = subprocess.run([sys.executable, HERE / "unit_program.py", program, *options],
                                  check=False, capture_output=True, text=True, timeout=600)
        return done.returncode, done.stdout + done.stderr

    def test_passed_tests_are_counted_and_not_shown(self):
        code, output = self.run_with({"A.a": GOOD, "A.b": GOOD})
        self.assertEqual(code, 0)
        self.assertRegex(output, "^2 tests passed, 0 failed")
        self.assertNotIn("some output", output)

    def test_failed_tests_are_shown_with_their_names(self):
        code, output = self.run_with({"A.a": GOOD, "A.b": "line('x.cpp:3: Failure'); bad(name)"})
        self.assertEqual(code, 1)
        self.assertIn("x.cpp:3: Failure", output)
        self.assertIn("FAILED  it_test: A.b\n1 tests passed, 1 failed", output)
        self.assertNotIn("some output", output)

    def test_a_parameter_after_the_name_is_ignored(self):
        fails = ("line(f'[  FAILED  ] {name}, where GetParam() = (1, 2) (3 ms)'); "
                 "failed.append(name)")
        code, output = self.run_with({"A/B.c/0": fails})
        self.assertEqual(code, 1)
        self.assertIn("FAILED  it_test: A/B.c/0\n0 tests passed, 1 failed", output)

    def test_a_crash_fails_one_test_and_the_others_run(self):
        code, output = self.run_with({"A.a": GOOD, "A.b": "line('last words'); os.abort()",
                                      "A.c": GOOD})
        self.assertEqual(code, 1)
        self.assertIn("last words", output)
        self.assertIn("A.b ended the process: SIGABRT", output)
        self.assertIn("FAILED  it_test: A.b\n2 tests passed, 1 failed", output)

    def test_an_early_exit_with_success_is_a_failure(self):
        code, output = self.run_with({"A.a": "os._exit(0)", "A.b": GOOD})
        self.assertEqual(code, 1)
        self.assertIn("FAILED  it_test: A.a\n1 tests passed, 1 failed", output)

    def test_a_hang_fails_one_test_and_the_others_run(self):
        code, output = self.run_with({"A.a": "time.sleep(100)", "A.b": GOOD}, "--hangs-after", "5")
        self.assertEqual(code, 1)
        self.assertIn("A.a hung", output)
        self.assertIn("FAILED  it_test: A.a\n1 tests passed, 1 failed", output)

    def test_a_race_reported_in_a_passing_test_fails_the_test(self):
        races = "line('WARNING: ThreadSanitizer: data race (pid=1)'); good(name)"
        code, output = self.run_with({"A.a": GOOD, "A.b": races}, after_end="sys.exit(66)")
        self.assertEqual(code, 1)
        self.assertIn("data race", output)
        self.assertIn("FAILED  it_test: A.b\n1 tests passed, 1 failed", output)

    def test_leaks_are_shown_in_addition_to_failures(self):
        leaks = "line('ERROR: LeakSanitizer: detected memory leaks'); sys.exit(1)"
        code, output = self.run_with({"A.a": "bad(name)"}, after_end=leaks)
        self.assertEqual(code, 1)
        self.assertIn("LeakSanitizer", output)
        self.assertIn("0 tests passed, 2 failed", output)

    def test_a_leak_report_after_the_last_test_fails_the_program(self):
        code, output = self.run_with({"A.a": GOOD}, after_end="line('leaks'); sys.exit(23)")
        self.assertEqual(code, 1)
        self.assertIn("leaks", output)
        self.assertIn("exit code 23", output)

    def test_a_crash_after_the_last_test_fails_the_program(self):
        code, output = self.run_with({"A.a": GOOD}, at_end="os.abort()")
        self.assertEqual(code, 1)
        self.assertIn("SIGABRT", output)

    def test_after_ten_crashes_the_other_tests_are_not_run(self):
        code, output = self.run_with({f"A.t{n}": "os.abort()" for n in range(30)})
        self.assertEqual(code, 1)
        self.assertIn("10 tests ended the program", output)

    def test_a_program_without_tests_fails(self):
        self.assertEqual(self.run_with({})[0], 1)

    def test_a_program_that_ends_before_its_first_test_is_reported_once(self):
        code, output = self.run_with({}, at_end="os.abort()")
        self.assertEqual(code, 1)
        self.assertIn("SIGABRT", output)
        self.assertIn("0 tests passed, 1 failed", output)

    def test_excluded_tests_are_not_run(self):
        code, output = self.run_with({"A.a": GOOD, "A.b": "bad(name)"}, "--exclude=A.b")
        self.assertEqual(code, 0)
        self.assertIn("1 tests passed", output)

    def test_skipped_tests_are_listed(self):
        skips = "line(f'[  SKIPPED ] {name} (0 ms)')"
        code, output = self.run_with({"A.a": GOOD, "A.b": skips})
        self.assertEqual(code, 0)
        self.assertIn("tests were skipped: A.b", output)

    def test_a_remaining_child_process_does_not_delay_the_end(self):
        leaves = "os.fork() or time.sleep(1000); good(name)"
        self.assertEqual(self.run_with({"A.a": leaves})[0], 0)


if __name__ == "__main__":
    unittest.main()
