# SPDX-License-Identifier: GPL-3.0-or-later
"""Defines the stages of ./test: for each stage its build folder, the targets to build, and the
CTest tests to run. To add a stage, extend STAGES. To add a check that is a script, define a CTest
test that runs the script (`add_test`)."""

import dataclasses
import json
import os
import pathlib
import re
import subprocess

PROCESSORS = len(os.sched_getaffinity(0))


class UnknownName(Exception):
    """Raised for an unknown stage, or for a name that a stage does not have. The message lists the
    existing names."""


@dataclasses.dataclass(frozen=True)
class Stage:
    """A stage has names: the modules or tests that can be requested separately on the command
    line."""
    name: str
    about: str
    preset: str  # a preset of CMakePresets.json; the build folder is build/PRESET
    # The targets of the whole stage, and the pattern of the target that one requested name needs.
    # () and None if nothing is built.
    targets: tuple = ()
    target_of_name: str | None = None
    # CTest options that select the whole stage in its build folder.
    selection: tuple = ()
    # Whether the names are modules. If so, the CTest tests of a module are called MODULE.*;
    # otherwise the CTest test of a name is called STAGE.NAME.
    by_module: bool = False
    # The names that are run if none is requested; empty if all names are run then.
    default_names: tuple = ()
    jobs: int = PROCESSORS  # number of tests run at the same time
    # Runs in the background, at idle priority, unless it is the only requested stage.
    in_background: bool = False
    # The tests of the stage do not run the program, so the same inputs always have the same result.
    # Their cached results are used even if the stage is requested by name.
    checks_texts: bool = False
    # Compiles eight files of a module as one. Otherwise, the compiler would spend most of the time
    # on headers that these files share.
    unity: bool = True
    # Runs only if the command line names the stage: for a stage that takes long and is not possible
    # on every machine.
    named_only: bool = False

    @property
    def folder(self):
        return pathlib.Path("build") / self.preset

    def configure_command(self):
        unity = "ON" if self.unity else "OFF"
        return ["cmake", "--preset", self.preset, f"-DCMAKE_UNITY_BUILD={unity}",
                "-DCMAKE_UNITY_BUILD_BATCH_SIZE=8"]

    def build_command(self, names):
        """The build command; None if nothing has to be built."""
        chosen = names or self.default_names
        targets = self.targets
        if chosen and self.target_of_name:
            targets = [self.target_of_name.format(name) for name in chosen]
        if not targets:
            return None
        return ["cmake", "--build", "--preset", self.preset, "--parallel", str(PROCESSORS),
                "--target", *targets]

    def test_command(self, names, junit):
        return ["ctest", "--test-dir", str(self.folder), "-j", str(self.jobs), "--no-tests=error",
                "--output-on-failure", "--no-label-summary", "--test-output-truncation", "middle",
                "--output-junit", str(junit.absolute()),
                *self._selection_of(names or self.default_names)]

    def _selection_of(self, names):
        if not names:
            return self.selection
        one_of = "|".join(map(re.escape, names))
        return ["-R", rf"^({one_of})\." if self.by_module else rf"^{self.name}\.({one_of})$"]

    def names(self):
        """Reads the stage's names from its build folder, which must be configured. Returns a dict:
        name -> folders of the module, relative to src/ or tests/ (empty if the names are not
        modules)."""
        listed = subprocess.run(["ctest", "--test-dir", str(self.folder), "--show-only=json-v1"],
                                check=True, capture_output=True, text=True).stdout
        found = {}
        for test in json.loads(listed[listed.index("{"):])["tests"]:
            first, _, second = test["name"].partition(".")
            if self.by_module and second == "tests":
                labels = [entry["value"] for entry in test["properties"]
                          if entry["name"] == "LABELS"]
                found[first] = [label for label in sum(labels, []) if label != "unit"]
            elif not self.by_module and first == self.name:
                found[second] = []
        return found

    def names_of(self, word):
        """The names that an argument selects. The argument is a name, a folder or a file."""
        known = self.names()
        if word in known:
            return [word]
        path = word.removeprefix("./").removeprefix("src/").rstrip("/")
        if self.by_module:
            if pathlib.PurePath(path).suffix:
                path = str(pathlib.PurePath(path).parent)
            found = [name for name, folders in known.items()
                     if any(f"{folder}/".startswith(f"{path}/") for folder in folders)]
        else:
            stem = pathlib.PurePath(path).stem
            found = [stem.removeprefix("test_").removesuffix(f"_{self.name}")]
        if not found or any(name not in known for name in found):
            raise UnknownName(f"{self.name} has no {word!r}; it has: {' '.join(sorted(known))}")
        return found


# The stages in the order in which they start.
STAGES = (
    Stage("lint", "format, clang-tidy, the include check, and the tests of the test scripts",
          preset="lint", jobs=1, in_background=True, checks_texts=True,
          unity=False),
    Stage("tsan", "files, drives, sound card, interpreter and MP3 under the thread sanitizer",
          preset="tsan", by_module=True, target_of_name="{}_test",
          default_names=("waiting", "paths", "sound", "disc", "mci", "mp3")),
    Stage("core", "the logic alone, without Qt and devices: it builds, and its tests pass",
          preset="core", by_module=True, targets=("all",), target_of_name="{}_test"),
    Stage("fuzz", "a short run of each fuzz target",
          preset="fuzz", targets=("fuzzers",), target_of_name="{}_fuzz",
          selection=("-L", "^fuzz$")),
    Stage("unit",
          "the unit tests of all modules under the address and undefined-behaviour sanitizers",
          preset="asan", by_module=True, targets=("unit_tests",), target_of_name="{}_test",
          selection=("-LE", "^e2e$")),
    # More jobs than processors, since these tests mostly wait. Tests that disturb others or are
    # disturbed by them run alone (tests/e2e/CMakeLists.txt).
    Stage("e2e", "the real program in a real window",
          preset="asan", targets=("sonarith", "drag_source", "embedding_panel", "stalling_files"),
          selection=("-L", "^e2e$"),
          jobs=2 * PROCESSORS + 1),
    Stage("package",
          "the Debian package: built twice, compared, checked, installed (only if named)",
          preset="package-test", selection=("-R", r"^package\."), jobs=1, named_only=True),
)
