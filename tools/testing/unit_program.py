#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs all tests of a GoogleTest program in one process, and shows only the output of failed tests.

    unit_program.py PROGRAM [--exclude FILTER] [--hangs-after SECONDS]

Starting one process for each test would take longer than running the tests. A test that crashes,
hangs or ends the process does not affect the others: it counts as failed, and the program runs
again for the tests that have not run yet. The program runs at most MOST_RUNS times.
"""

import argparse
import collections
import dataclasses
import os
import re
import signal
import subprocess
import sys
import tempfile
import threading
import time

import child

RUN = re.compile(r"\[ RUN      \] (\S+)")
OK = re.compile(r"\[       OK \] (\S+) \(")
SKIPPED = re.compile(r"\[  SKIPPED \] (\S+) \(")
FAILED = re.compile(r"\[  FAILED  \] (\S+?)(?:, where | \()")
END = re.compile(r"\[==========\] (\d+) tests? from \d+ test (?:suites?|cases?) ran\.")

# A test can pass although the thread sanitizer has reported a race in it, since the sanitizer only
# prints the report.
SANITIZER = re.compile(r"(?:ERROR|WARNING): \w+Sanitizer")
# Lines that are dropped if they are printed while no test runs: headings, notes, empty lines, and
# the lines of the final summary that are marked as PASSED or FAILED.
CHATTER = re.compile(r"\[[-=]{10}\] |\[  (?:PASSED|FAILED)  \] |Note: |Running main\(\) |\s*$")

# The maximum number of runs, so that a program is not run once for each of many tests that crash.
MOST_RUNS = 10
# Extra time until the first test begins: a busy machine may start the program slowly.
SECONDS_FOR_THE_START = 60
# After the program has ended, processes that it has left behind may keep its output open for this
# time.
SECONDS_FOR_ORPHANS = 2
LINES_OUTSIDE_TESTS = 60


@dataclasses.dataclass
class Outcome:
    """The results after one or more runs of the program."""
    passed: int = 0
    skipped: list = dataclasses.field(default_factory=list)
    failed: dict = dataclasses.field(default_factory=dict)  # lines of the output by test name
    started: list = dataclasses.field(default_factory=list)


class Watchdog:
    """Kills a process group if, for too long, no test begins and the program does not end. Also
    kills the group if other processes keep the output open for SECONDS_FOR_ORPHANS after the
    program has ended."""

    def __init__(self, process, hangs_after):
        self.fired = False
        self._process = process
        self._hangs_after = hangs_after
        self._deadline = time.monotonic() + SECONDS_FOR_THE_START + hangs_after
        self._stop = threading.Event()
        self._thread = threading.Thread(target=self._watch, daemon=True)
        self._thread.start()

    def restart(self):
        self._deadline = time.monotonic() + self._hangs_after

    def stop(self):
        self._stop.set()
        self._thread.join()

    def _watch(self):
        while not self._stop.wait(0.2):
            if self._process.poll() is not None:
                if not self._stop.wait(SECONDS_FOR_ORPHANS):
                    self._kill()
                return
            if time.monotonic() > self._deadline:
                self.fired = True
                self._kill()
                return

    def _kill(self):
        try:
            os.killpg(self._process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass


def explain(process, watchdog, hangs_after):
    if watchdog.fired:
        return f"hung: killed after at least {hangs_after:g} s"
    code = process.returncode
    if code < 0:
        return f"ended the process: {signal.Signals(-code).name}"
    return f"ended the process with exit code {code}"


def reported(lines):
    return any(SANITIZER.search(line) for line in lines)


def run_once(program, filter_text, hangs_after, outcome):
    """Runs the tests that the filter selects. Returns False if a test ended the program (crash,
    hang or exit). That test counts as failed."""
    current, finished = None, False
    lines, outside = [], collections.deque(maxlen=LINES_OUTSIDE_TESTS)
    failed_before = len(outcome.failed)
    with tempfile.NamedTemporaryFile("w", suffix=".flags") as flags:
        flags.write(f"--gtest_filter={filter_text}\n--gtest_color=no\n")
        flags.flush()
        process = subprocess.Popen(
            [program, f"--gtest_flagfile={flags.name}"], stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
            start_new_session=True, preexec_fn=child.ends_with_parent)
        watchdog = Watchdog(process, hangs_after)
        for line in process.stdout:
            if match := RUN.search(line):
                current, lines = match[1], []
                outcome.started.append(current)
                watchdog.restart()
            elif match := END.search(line):
                finished, current = True, None
            elif (match := OK.search(line)) and match[1] == current:
                if reported(lines):
                    outcome.failed[current] = lines
                else:
                    outcome.passed += 1
                current = None
            elif (match := SKIPPED.search(line)) and match[1] == current:
                outcome.skipped.append(current)
                current = None
            elif (match := FAILED.search(line)) and match[1] == current:
                outcome.failed[current] = lines
                current = None
            elif current:
                lines.append(line)
            elif not CHATTER.match(line):
                outside.append(line)
        process.wait()
        watchdog.stop()
    why = explain(process, watchdog, hangs_after)
    if current:
        outcome.failed[current] = [*lines, f"{current} {why}\n"]
        return False
    known = len(outcome.failed) > failed_before and not reported(outside)
    if not finished or (process.returncode != 0 and not known):
        outcome.failed["outside of any test"] = [*outside, f"{program} {why}\n"]
    return True


def run_all(program, exclude, hangs_after):
    outcome = Outcome()
    for _ in range(MOST_RUNS):
        excluded = [text for text in (exclude, *outcome.started) if text]
        filter_text = "*" + ("-" + ":".join(excluded) if excluded else "")
        if run_once(program, filter_text, hangs_after, outcome):
            return outcome
    outcome.failed["the rest"] = [
        f"{MOST_RUNS} tests ended the program; further tests, if there are any, were not run\n"]
    return outcome


def report(name, outcome, seconds):
    for test, lines in outcome.failed.items():
        print(f"---- {name}: {test}")
        print("".join(lines), end="")
    if outcome.skipped:
        print(f"{len(outcome.skipped)} tests were skipped: {' '.join(outcome.skipped)}")
    for test in outcome.failed:
        print(f"FAILED  {name}: {test}")
    print(f"{outcome.passed} tests passed, {len(outcome.failed)} failed, in {seconds:.1f} s")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program")
    parser.add_argument("--exclude", default="")
    parser.add_argument("--hangs-after", type=float, default=300)
    options = parser.parse_args()
    began = time.monotonic()
    outcome = run_all(options.program, options.exclude, options.hangs_after)
    if not outcome.started and not outcome.failed:
        outcome.failed["no test"] = [f"{options.program} has no tests to run\n"]
    report(os.path.basename(options.program), outcome, time.monotonic() - began)
    return 1 if outcome.failed else 0


if __name__ == "__main__":
    sys.exit(main())
