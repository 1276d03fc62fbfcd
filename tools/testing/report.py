# SPDX-License-Identifier: GPL-3.0-or-later
"""Reads the results of a CTest run from its JUnit file."""

import dataclasses
import re
import xml.etree.ElementTree as ElementTree

SKIPPED_AS_CACHED = "SKIP_RETURN_CODE=77"
# The summary that unit_program.py prints, its line about one failed test, and the summary that
# tidy.py prints.
TESTS_OF_A_PROGRAM = re.compile(r"^(\d+) tests passed, (\d+) failed", re.MULTILINE)
FAILED_TEST = re.compile(r"^FAILED  (\S+?)(?:_test)?: (.+)$", re.MULTILINE)
SOURCES = re.compile(r"^(\d+) sources, (\d+) of them known to be clean", re.MULTILINE)
# How many lines of a failed test's output are shown: the beginning contains the first failure, and
# the end contains the names of the failed tests and the totals.
FIRST_LINES, LAST_LINES = 30, 30
MOST_COLUMNS = 200
# Characters that a program may print but XML does not allow.
NO_XML = re.compile(r"[\x00-\x08\x0b\x0c\x0e-\x1f]")


def shortened(text):
    """The first and the last lines of a failed test's output."""
    lines = [line[:MOST_COLUMNS] for line in text.rstrip().splitlines()]
    omitted = len(lines) - FIRST_LINES - LAST_LINES
    if omitted <= 0:
        return lines
    return [*lines[:FIRST_LINES], f"... {omitted} lines ...", *lines[-LAST_LINES:]]


@dataclasses.dataclass
class Report:
    passed: int = 0
    cached: int = 0
    failed: dict = dataclasses.field(default_factory=dict)  # test name: lines of its output
    programs: int = 0  # number of unit-test programs that ran and passed
    tests_of_programs: int = 0  # number of test cases that passed in these programs
    # The same results, but each test case of a unit-test program counts as one test: the number of
    # tests that passed, and the names of the tests that failed. A cached program counts as one
    # test.
    single_passed: int = 0
    single_failed: list = dataclasses.field(default_factory=list)
    sources: tuple = ()  # for lint: the number of all sources, and of the cached sources

    @property
    def total(self):
        return self.passed + self.cached + len(self.failed)

    def note(self):
        """A short summary."""
        parts = [f"{self.total} tests" if self.total != 1 else "1 test"]
        if self.programs:
            kind = "unit-test programs" if self.programs != 1 else "unit-test program"
            parts[0] += (f" ({self.programs} {kind} ran and passed, with {self.tests_of_programs} "
                         "test cases)")
        if self.sources:
            parts.append("{1} of {0} sources cached".format(*self.sources))
        if self.cached:
            parts.append(f"{self.cached} of {self.total} cached")
        if self.failed:
            parts.append(f"{len(self.failed)} of {self.total} FAILED")
        return ", ".join(parts)


def read(path):
    """Reads a JUnit file. Returns None if the file is missing or incomplete."""
    try:
        with open(path, encoding="utf-8", errors="replace") as file:
            root = ElementTree.fromstring(NO_XML.sub("?", file.read()))
    except (OSError, ElementTree.ParseError):
        return None
    report = Report()
    for case in root.iter("testcase"):
        output = case.findtext("system-out") or ""
        skipped = case.find("skipped")
        if case.get("status") == "run":
            report.passed += 1
            if match := TESTS_OF_A_PROGRAM.search(output):
                report.programs += 1
                report.tests_of_programs += int(match[1])
                report.single_passed += int(match[1])
                continue
            report.single_passed += 1
            if match := SOURCES.search(output):
                report.sources = (int(match[1]), int(match[2]))
        elif skipped is not None and skipped.get("message") == SKIPPED_AS_CACHED:
            report.cached += 1
            report.single_passed += 1
        else:
            report.failed[case.get("name")] = shortened(output)
            passed = TESTS_OF_A_PROGRAM.search(output)
            report.single_passed += int(passed[1]) if passed else 0
            report.single_failed += [".".join(match) for match in FAILED_TEST.findall(output)
                                     ] or [case.get("name")]
    return report
