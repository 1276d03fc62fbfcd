#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the stages of ./test that are named on the command line; without arguments, all stages
except those that run only if they are named. Prints a summary: what passed, what failed, what was
cached and what was not run. Exits with 0 if all passed, 1 if something failed, or 2 if a name is
unknown."""

import atexit
import collections
import dataclasses
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import sys
import time

import child
import report
from stages import STAGES, UnknownName

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]
MOST_LINES_OF_A_BUILD = 40


@dataclasses.dataclass
class Step:
    """The result of one step of a stage."""
    title: str
    outcome: str  # passed, cached, FAILED or not run
    seconds: float = 0
    cpu_seconds: float = 0
    note: str = ""


class Clock:
    """Measures the time since its creation: the wall-clock time, and the processor time of the
    child processes that have ended."""

    def __init__(self):
        self._began = time.monotonic()
        self._cpu_began = self._cpu()

    @staticmethod
    def _cpu():
        used = resource.getrusage(resource.RUSAGE_CHILDREN)
        return used.ru_utime + used.ru_stime

    def read(self):
        return time.monotonic() - self._began, self._cpu() - self._cpu_began


def usage():
    width = max(len(stage.name) for stage in STAGES)
    lines = ["./test                         all stages that are not marked \"only if named\"",
             "./test STAGE [NAME...] ...     these stages; with names, only these parts of a stage",
             "", "Stages:"]
    lines += [f"  {stage.name:{width}}  {stage.about}" for stage in STAGES]
    lines += ["", "Names are modules or folders below src/ (unit, tsan, core), scripts (e2e),",
              "targets (fuzz) and checks (lint, package). Without arguments, tests that have",
              "passed are not repeated while their inputs are unchanged; they count as cached."]
    return "\n".join(lines)


def parse(words):
    """The names that follow each stage on the command line, by stage. Without arguments: all
    stages that are not marked "only if named", each with an empty list."""
    by_name = {stage.name: stage for stage in STAGES}
    if not words:
        return {stage: [] for stage in STAGES if not stage.named_only}
    if words[0] not in by_name:
        raise UnknownName(f"unknown stage {words[0]!r}\n\n{usage()}")
    requested = {}
    for word in words:
        if word in by_name:
            current = requested.setdefault(by_name[word], [])
        else:
            current.append(word)
    return {stage: requested[stage] for stage in STAGES if stage in requested}


def relay(command):
    """Runs a command and shows its output. Returns the exit code and at most MOST_LINES_OF_A_BUILD
    lines of the output. These lines begin at the first error. If there is no error, they are the
    last lines."""
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, text=True, errors="replace")
    last, errors = collections.deque(maxlen=MOST_LINES_OF_A_BUILD), []
    for line in process.stdout:
        print(line, end="", flush=True)
        last.append(line.rstrip())
        is_error = line.startswith("FAILED: ") or "error:" in line
        if (errors or is_error) and len(errors) < MOST_LINES_OF_A_BUILD:
            errors.append(line.rstrip())
    return process.wait(), errors or list(last)


class Run:
    """Runs the requested stages and stores the results of their steps."""

    def __init__(self, requested, whole):
        """`requested`: the names by stage; no names mean the whole stage. `whole`: whether ./test
        was started without arguments."""
        self._requested = requested
        self._whole = whole
        self._configured = set()
        self._background = {}
        self.steps = []
        self.failures = []
        self.single_passed = 0
        self.single_failed = []

    def go(self):
        background = [stage for stage in self._requested
                  if stage.in_background and len(self._requested) > 1]
        for stage in background:
            self._start_in_background(stage)
        for stage in self._requested:
            if stage not in background:
                self._run(stage)
        for stage in self._background:
            self._join(stage)

    # One stage.

    def configure(self, stage):
        """Configures the stage's build folder. Returns whether this succeeded."""
        if stage.preset in self._configured:
            return True
        done = subprocess.run(stage.configure_command(), check=False, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, errors="replace")
        if done.returncode == 0:
            self._configured.add(stage.preset)
            return True
        print(done.stdout, flush=True)
        self._failed(f"{stage.name}: configure", done.stdout.splitlines()[-MOST_LINES_OF_A_BUILD:])
        self._skip(stage, "it could not be configured")
        return False

    def _run(self, stage):
        names = self._requested[stage]
        if not self.configure(stage):
            return
        build = stage.build_command(names)
        if build:
            title, clock = f"{stage.name}: build", Clock()
            print(f"\n== {title}", flush=True)
            code, lines = relay(build)
            if code != 0:
                self._failed(title, lines, clock.read())
                self._skip(stage, "its build failed")
                return
            self.steps.append(Step(title, "passed", *clock.read()))
        command, junit = self._prepare_tests(stage)
        clock = Clock()
        print(f"\n== {stage.name}: tests", flush=True)
        code = subprocess.run(command, stdin=subprocess.DEVNULL, check=False).returncode
        self._evaluate(stage, code, junit, clock.read())

    def _prepare_tests(self, stage):
        """Prepares a run of the stage's tests. Returns the command, and the path of the JUnit file
        that the command will write."""
        junit = stage.folder / f"report-{stage.name}.xml"
        junit.unlink(missing_ok=True)
        if not self._whole and not stage.checks_texts:
            self._delete_verdicts(stage)
        return stage.test_command(self._requested[stage], junit), junit

    def _delete_verdicts(self, stage):
        """Deletes the cached results of the requested tests of the stage, so that they run
        again."""
        names = self._requested[stage] or stage.default_names or stage.names()
        for name in names:
            test = f"{name}.tests" if stage.by_module else f"{stage.name}.{name}"
            shutil.rmtree(stage.folder / "verdicts" / test, ignore_errors=True)

    def _evaluate(self, stage, code, junit, times):
        """Reads the results of a stage's tests. `times`: wall-clock and processor time in
        seconds."""
        title = f"{stage.name}: tests"
        found = report.read(junit)
        if found is None:
            self._failed(title, [f"ctest ended with exit code {code} and wrote no report"], times)
            return
        self.single_passed += found.single_passed
        self.single_failed += found.single_failed
        if found.failed or code != 0:
            self._failed(title, [], times, found.note())
            for test, lines in found.failed.items():
                self.failures.append((test, lines))
            return
        outcome = "cached" if found.cached == found.total else "passed"
        self.steps.append(Step(title, outcome, *times, found.note()))

    def _failed(self, title, lines, times=(0, 0), note=""):
        self.steps.append(Step(title, "FAILED", *times, note))
        if lines:
            self.failures.append((title, lines))

    def _skip(self, stage, why):
        self.steps.append(Step(f"{stage.name}: tests", "not run", note=why))

    # Stages in the background.

    def _start_in_background(self, stage):
        if not self.configure(stage):
            return
        command, junit = self._prepare_tests(stage)
        log = stage.folder / f"output-{stage.name}.txt"
        with open(log, "wb") as output:
            process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=output,
                                       stderr=subprocess.STDOUT, start_new_session=True,
                                       preexec_fn=child.ends_with_parent_at_idle_priority)
        atexit.register(end_group, process)
        self._background[stage] = (process, junit, log, time.time())
        print(f"== {stage.name}: tests, in the background", flush=True)

    def _join(self, stage):
        process, junit, log, began = self._background[stage]
        print(f"\n== {stage.name}: tests", flush=True)
        clock = Clock()
        code = process.wait()
        _, cpu_seconds = clock.read()
        print(log.read_text(encoding="utf-8", errors="replace"), end="", flush=True)
        # The tests in the background may have ended long before this call.
        ended = junit.stat().st_mtime if junit.exists() else time.time()
        self._evaluate(stage, code, junit, (ended - began, cpu_seconds))

    # The summary.

    def not_run(self):
        """The stages and parts of stages that were not requested, as a text; empty if there are
        none."""
        left = [stage.name for stage in STAGES if stage not in self._requested]
        left += [f"{stage.name} except {' '.join(names)}"
                 for stage, names in self._requested.items() if names]
        return ", ".join(left)

    def sum_up(self):
        """Prints the summary and the output of failed steps; returns the exit code."""
        print("\nSummary")
        for step in self.steps:
            times = f"{step.seconds:6.0f} s {step.cpu_seconds:6.0f} s CPU"
            print(f"  {step.outcome:8}{step.title:16}{times}  {step.note}".rstrip())
        if self.not_run():
            print(f"Not run: {self.not_run()}")
        failed = [step for step in self.steps if step.outcome == "FAILED"]
        if not failed:
            print(f"All {len(self.steps)} steps passed.")
            self._count_single_tests()
            return 0
        for what, lines in self.failures:
            print(f"\n-- {what}", *lines, sep="\n")
        print(f"\n{len(failed)} of {len(self.steps)} steps failed:",
              ", ".join(what for what, _ in self.failures) or failed[0].title)
        self._count_single_tests()
        return 1

    def _count_single_tests(self):
        """Prints the totals of all stages in the form of CTest's last lines. Each unit test counts
        as one test, and so does a cached unit-test program."""
        failed = len(self.single_failed)
        total = self.single_passed + failed
        if not total:
            return
        print("\nAll stages, each unit test counted separately:")
        percent = 100 * self.single_passed // total
        print(f"{percent}% tests passed, {failed} tests failed out of {total}")
        if failed:
            print("\nThe following tests FAILED:")
            for test in self.single_failed:
                print(f"\t{test} (Failed)")


def end_group(process):
    if process.poll() is None:
        os.killpg(process.pid, signal.SIGTERM)


def resolved(requested, run):
    """The names of modules, scripts, targets or checks that the arguments after each stage select.
    None if a build folder could not be configured."""
    names = {}
    for stage, words in requested.items():
        names[stage] = []
        if words and not run.configure(stage):
            return None
        for word in words:
            names[stage] += [name for name in stage.names_of(word) if name not in names[stage]]
    return names


def main():
    os.chdir(REPOSITORY)
    # SIGTERM must run the functions of atexit: they end the stages in the background.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    words = sys.argv[1:]
    if set(words) & {"-h", "--help", "help"}:
        print(usage())
        return 0
    try:
        requested = parse(words)
        run = Run(requested, whole=not words)
        names = resolved(requested, run)
    except UnknownName as unknown:
        print(unknown, file=sys.stderr)
        return 2
    if names is not None:
        requested.update(names)
        run.go()
    return run.sum_up()


if __name__ == "__main__":
    sys.exit(main())
