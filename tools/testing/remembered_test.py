# SPDX-License-Identifier: GPL-3.0-or-later
import pathlib
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
CACHED = 77


class Remembered(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.input = self.folder / "program"
        self.input.write_text("one")
        self.runs = self.folder / "runs"

    def run_command(self, shell, inputs=None):
        command = ["sh", "-c", f"echo run >> {self.runs}; {shell}"]
        done = subprocess.run(
            [sys.executable, HERE / "remembered.py", "--verdicts", self.folder / "verdicts",
             "--name", "it", "--inputs", *(inputs or [self.input]), "--", *command], check=False,
            capture_output=True)
        return done.returncode

    def times_run(self):
        return len(self.runs.read_text().splitlines())

    def test_a_pass_is_not_repeated(self):
        self.assertEqual(self.run_command("true"), 0)
        self.assertEqual(self.run_command("true"), CACHED)
        self.assertEqual(self.times_run(), 1)

    def test_a_failed_command_is_run_again(self):
        self.assertEqual(self.run_command("exit 3"), 3)
        self.assertEqual(self.run_command("exit 3"), 3)
        self.assertEqual(self.times_run(), 2)

    def test_another_command_has_its_own_result(self):
        self.run_command("true")
        self.assertEqual(self.run_command("true "), 0)

    def test_a_changed_input_causes_a_run_and_the_pass_of_the_old_content_stays_cached(self):
        self.run_command("true")
        self.input.write_text("two")
        self.assertEqual(self.run_command("true"), 0)
        self.input.write_text("one")
        self.assertEqual(self.run_command("true"), CACHED)

    def test_a_run_during_which_an_input_changes_is_not_cached(self):
        shell = f"echo three > {self.input}"
        self.assertEqual(self.run_command(shell), 0)
        self.input.write_text("one")
        self.assertEqual(self.run_command(shell), 0)

    def test_a_run_with_a_missing_input_is_not_cached(self):
        missing = [self.input, self.folder / "missing"]
        self.assertEqual(self.run_command("true", missing), 0)
        self.assertEqual(self.run_command("true", missing), 0)

    def test_a_command_that_exits_with_code_77_has_failed(self):
        self.assertEqual(self.run_command(f"exit {CACHED}"), 1)

    def test_a_killed_command_has_failed(self):
        self.assertNotIn(self.run_command("kill -9 $$"), (0, CACHED))
        self.assertNotIn(self.run_command("kill -9 $$"), (0, CACHED))


if __name__ == "__main__":
    unittest.main()
