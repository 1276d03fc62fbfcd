# SPDX-License-Identifier: GPL-3.0-or-later
import contextlib
import io
import pathlib
import sys
import tempfile
import unittest
from unittest import mock

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import report
import run_stages
from stages import STAGES, Stage, UnknownName

BY_NAME = {stage.name: stage for stage in STAGES}
MODULES = {"platform": ["platform", "platform/text"], "mci": ["platform/linux/mci"],
           "form1": ["app"], "application": ["app"], "worktree": ["worktree"]}
SCRIPTS = {"decode": [], "close": []}


def asked(*words):
    return {stage.name: names for stage, names in run_stages.parse(list(words)).items()}


class Arguments(unittest.TestCase):
    def test_without_arguments_stages_run_in_order_unless_they_must_be_named(self):
        self.assertEqual(list(asked()), [stage.name for stage in STAGES if not stage.named_only])

    def test_arguments_after_a_stage_select_parts_of_that_stage(self):
        self.assertEqual(asked("unit", "worktree", "mci", "e2e", "decode", "lint"),
                         {"lint": [], "unit": ["worktree", "mci"], "e2e": ["decode"]})

    def test_a_repeated_stage_runs_once(self):
        self.assertEqual(asked("unit", "mci", "e2e", "unit", "form1"),
                         {"unit": ["mci", "form1"], "e2e": []})

    def test_a_name_before_the_first_stage_is_unknown(self):
        with self.assertRaisesRegex(UnknownName, "worktree(.|\n)*lint(.|\n)*e2e"):
            asked("worktree", "unit")

    def names_of(self, stage, word):
        there = MODULES if BY_NAME[stage].by_module else SCRIPTS
        with mock.patch.object(Stage, "names", lambda _: there):
            return BY_NAME[stage].names_of(word)

    def test_module_names_and_source_paths_select_modules(self):
        for word, names in (("worktree", ["worktree"]), ("platform", ["platform"]),
                            ("src/worktree/", ["worktree"]), ("app", ["form1", "application"]),
                            ("src/platform", ["platform", "mci"]), ("platform/linux", ["mci"]),
                            ("src/worktree/node_test.cpp", ["worktree"])):
            self.assertEqual(self.names_of("unit", word), names, word)

    def test_a_script_is_selected_by_its_name_its_file_name_or_its_path(self):
        for word in ("decode", "test_decode.py", "tests/e2e/test_decode.py"):
            self.assertEqual(self.names_of("e2e", word), ["decode"], word)

    def test_the_error_for_an_unknown_name_lists_the_known_names(self):
        for stage, word in (("unit", "work"), ("unit", "src/nothing"), ("e2e", "dec"),
                            ("unit", "")):
            with self.assertRaisesRegex(UnknownName, "close|worktree"):
                self.names_of(stage, word)


class Commands(unittest.TestCase):
    def test_only_the_selected_parts_are_built_and_run(self):
        unit = BY_NAME["unit"]
        self.assertEqual(unit.build_command(["ui", "mci"])[-3:],
                         ["--target", "ui_test", "mci_test"])
        self.assertEqual(unit.test_command(["ui", "mci"], pathlib.Path("x"))[-2:],
                         ["-R", r"^(ui|mci)\."])
        self.assertEqual(BY_NAME["e2e"].test_command(["close"], pathlib.Path("x"))[-2:],
                         ["-R", r"^e2e\.(close)$"])
        self.assertIsNone(BY_NAME["lint"].build_command([]))

    def test_every_stage_has_a_preset_and_only_lint_has_no_unity_build(self):
        presets = (run_stages.REPOSITORY / "CMakePresets.json").read_text()
        for stage in STAGES:
            self.assertIn(f'"name": "{stage.preset}"', presets)
            self.assertEqual(stage.unity, stage.name != "lint")


JUNIT = """<?xml version="1.0"?><testsuite name="x">
<testcase name="a.tests" status="run"><system-out>12 tests passed, 0 failed, in 1 s</system-out>
</testcase>
<testcase name="b.tests" status="run"><system-out>3 tests passed, 0 failed, in 1 s</system-out>
</testcase>
<testcase name="c.tests" status="notrun"><skipped message="SKIP_RETURN_CODE=77"/></testcase>
{}</testsuite>"""


class Reports(unittest.TestCase):
    def read(self, cases):
        with tempfile.NamedTemporaryFile("w", suffix=".xml") as file:
            file.write(JUNIT.format(cases))
            file.flush()
            return report.read(file.name)

    def test_passed_and_cached_tests_are_counted(self):
        found = self.read("")
        self.assertEqual((found.passed, found.cached, found.failed), (2, 1, {}))
        self.assertEqual(found.note(), "3 tests (2 unit-test programs ran and passed, with 15 test "
                         "cases), 1 of 3 cached")

    def test_cached_sources_are_counted(self):
        found = self.read('<testcase name="lint.tidy" status="run"><system-out>9 sources, 7 of '
                          'them known to be clean</system-out></testcase>')
        self.assertIn("7 of 9 sources cached", found.note())

    def test_the_first_and_last_lines_of_a_failed_test_are_reported(self):
        text = "\n".join(f"line {n}" for n in range(100)) + "\x1b"
        found = self.read(f'<testcase name="d" status="fail"><failure message=""/>'
                          f"<system-out>{text}</system-out></testcase>")
        self.assertEqual(list(found.failed), ["d"])
        self.assertEqual(found.failed["d"][0], "line 0")
        self.assertEqual(found.failed["d"][30:32], ["... 40 lines ...", "line 70"])
        self.assertEqual(found.failed["d"][-1], "line 99?")
        self.assertIn("1 of 4 FAILED", found.note())

    def test_a_test_that_could_not_be_run_counts_as_failed(self):
        found = self.read('<testcase name="d" status="notrun"><skipped message="Unable to find '
                          'executable"/><system-out>Unable</system-out></testcase>')
        self.assertEqual(list(found.failed), ["d"])

    def test_no_report_is_read_from_a_missing_file(self):
        self.assertIsNone(report.read("/nowhere"))


class Summary(unittest.TestCase):
    def evaluate(self, code, found, words=()):
        """Evaluates the stage "unit" as if ctest had exited with `code` and reported `found`.
        `words`: the arguments of ./test. Returns the exit code of ./test and the text of the
        summary."""
        stages = run_stages.parse(list(words))
        run = run_stages.Run(stages, whole=not words)
        output = io.StringIO()
        with mock.patch.object(report, "read", lambda _: found), contextlib.redirect_stdout(output):
            run._evaluate(BY_NAME["unit"], code, None, (1.0, 2.0))
            result = run.sum_up()
        return result, output.getvalue()

    def test_the_summary_distinguishes_passed_cached_and_failed_steps(self):
        code, text = self.evaluate(0, report.Report(passed=2, cached=1))
        self.assertEqual(code, 0)
        self.assertRegex(text, "passed +unit: tests .*1 of 3 cached")
        code, text = self.evaluate(0, report.Report(cached=3))
        self.assertRegex(text, "cached +unit: tests")
        code, text = self.evaluate(8, report.Report(passed=2, failed={"ui.tests": ["it broke"]}))
        self.assertEqual(code, 1)
        self.assertRegex(text, "FAILED +unit: tests")
        self.assertRegex(text, r"-- ui.tests\nit broke\n\n1 of 1 steps failed: ui.tests\n$")

    def test_the_summary_ends_with_the_totals_and_a_list_of_the_failed_tests(self):
        _, text = self.evaluate(0, report.Report(passed=1, single_passed=7))
        self.assertTrue(text.endswith("100% tests passed, 0 tests failed out of 7\n"))
        found = report.Report(failed={"ui.tests": []}, single_passed=199, single_failed=["ui.A.B"])
        _, text = self.evaluate(8, found)
        self.assertIn("99% tests passed, 1 tests failed out of 200\n", text)
        self.assertTrue(text.endswith("The following tests FAILED:\n\tui.A.B (Failed)\n"))

    def test_an_error_code_of_ctest_fails_the_stage(self):
        self.assertEqual(self.evaluate(8, report.Report(passed=2))[0], 1)

    def test_ctest_without_a_report_is_a_failure(self):
        code, text = self.evaluate(0, None)
        self.assertEqual(code, 1)
        self.assertIn("no report", text)

    def test_the_summary_lists_what_was_not_run(self):
        _, text = self.evaluate(0, report.Report(passed=1), ["unit", "mci"])
        self.assertIn("Not run: lint, tsan, core, fuzz, e2e, package, unit except mci\n", text)
        # A stage that runs only when it is named is listed, too.
        _, text = self.evaluate(0, report.Report(passed=1))
        self.assertIn("Not run: package\n", text)


if __name__ == "__main__":
    unittest.main()
