# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests tidy.py with the real clang-tidy, on sources of one or two lines."""

import contextlib
import io
import json
import os
import pathlib
import sys
import tempfile
import unittest
from unittest import mock

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import tidy
import verdicts

CONFIGURATION = """\
Checks: '-*,modernize-use-nullptr'
WarningsAsErrors: '*'
HeaderFilterRegex: '.*'
"""


class Tidy(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name).resolve()
        self.write(".clang-tidy", CONFIGURATION)
        self.write("src/a/used.h", "inline int* used() { return nullptr; }\n")
        self.write("src/b/source.cpp", '#include "a/used.h"\nint* f() { return used(); }\n')
        self.write("src/b/source_test.cpp", "int* p = 0;\n")
        self.write_commands("")

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        os.utime(path, (1, 1))  # long before each check

    def write_commands(self, flags):
        source = str(self.root / "src/b/source.cpp")
        self.write("build/compile_commands.json", json.dumps([
            {"directory": str(self.root), "file": source,
             "command": f"c++ -I{self.root}/src {flags} -c {source}"}]))

    def run_tidy(self):
        """Returns the exit code and the number of checked sources."""
        verdicts.hash_of.cache_clear()
        output = io.StringIO()
        with mock.patch.object(tidy, "REPOSITORY", self.root), \
             mock.patch.object(sys, "argv", ["tidy.py", str(self.root / "build")]), \
             contextlib.redirect_stdout(output):
            code = tidy.main()
        self.said = output.getvalue()
        return code, int(self.said.splitlines()[-1].split()[0])

    def check_once_and_cache(self):
        self.assertEqual(self.run_tidy(), (0, 1))
        self.assertEqual(self.run_tidy(), (0, 0))

    def test_a_clean_source_is_checked_once(self):
        self.check_once_and_cache()

    def test_a_complaint_is_repeated_in_each_run(self):
        self.write("src/b/source.cpp", "int* f() { return 0; }\n")
        for _ in range(2):
            self.assertEqual(self.run_tidy(), (1, 1))
            self.assertIn("modernize-use-nullptr", self.said)
            self.assertIn("FAILED  src/b/source.cpp", self.said)

    def test_a_source_that_does_not_compile_is_not_clean(self):
        self.write("src/b/source.cpp", '#include "a/missing.h"\n')
        for _ in range(2):
            self.assertEqual(self.run_tidy(), (1, 1))
            self.assertIn("missing.h", self.said)

    def test_a_changed_source_is_checked(self):
        self.check_once_and_cache()
        self.write("src/b/source.cpp", "int* f() { return 0; }\n")
        self.assertEqual(self.run_tidy(), (1, 1))

    def test_a_changed_header_causes_a_check_of_the_source_that_includes_it(self):
        self.check_once_and_cache()
        self.write("src/a/used.h", "inline int* used() { return 0; }\n")
        self.assertEqual(self.run_tidy(), (1, 1))

    def test_a_changed_configuration_causes_a_check(self):
        self.check_once_and_cache()
        self.write(".clang-tidy", CONFIGURATION + "# changed\n")
        self.assertEqual(self.run_tidy(), (0, 1))
        self.write("src/b/.clang-tidy", CONFIGURATION)
        self.assertEqual(self.run_tidy(), (0, 1))

    def test_a_changed_compile_command_causes_a_check(self):
        self.check_once_and_cache()
        self.write_commands("-DX")
        self.assertEqual(self.run_tidy(), (0, 1))

    def test_a_new_header_that_an_include_may_find_causes_a_check(self):
        self.check_once_and_cache()
        self.write("src/b/other.h", "")
        self.assertEqual(self.run_tidy(), (0, 0))
        self.write("src/b/a/used.h", "inline int* used() { return 0; }\n")
        self.assertEqual(self.run_tidy(), (1, 1))

    def test_another_version_of_clang_tidy_causes_a_check(self):
        self.check_once_and_cache()
        with mock.patch.object(tidy, "tool_identity", lambda: "another"):
            self.assertEqual(self.run_tidy(), (0, 1))

    def test_a_check_is_not_cached_if_a_header_changes_meanwhile(self):
        # The header gets a later time than the mocked start of the check (2.0), as if it were saved
        # during the check.
        os.utime(self.root / "src/a/used.h")
        with mock.patch.object(tidy.time, "time", lambda: 2.0):
            self.assertEqual(self.run_tidy(), (0, 1))
            self.assertEqual(self.run_tidy(), (0, 1))

    def test_a_source_without_a_compile_command_fails(self):
        self.write("src/b/new.cpp", "")
        output = io.StringIO()
        with mock.patch.object(tidy, "REPOSITORY", self.root), \
             mock.patch.object(sys, "argv", ["tidy.py", str(self.root / "build")]), \
             contextlib.redirect_stdout(output):
            self.assertEqual(tidy.main(), 1)
        self.assertIn("new.cpp", output.getvalue())


if __name__ == "__main__":
    unittest.main()
