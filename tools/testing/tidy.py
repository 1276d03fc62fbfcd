#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""clang-tidy over the product's sources, each for itself, with the commands of a build folder.

    tidy.py BUILD_FOLDER [SOURCE...]

A source that was clean is not looked at again until something changes that its verdict depends on:
its text or that of a file it includes, its compile command, a .clang-tidy above it, the tool, or
the headers of src/ that an #include in it could mean instead. What was not clean is always looked
at.
"""

import argparse
import collections
import concurrent.futures
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time

import child
import verdicts

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]
TOOL = "clang-tidy-14"
# -H lists each included file on the error output, one line each, after as many dots as it is deep.
OPTIONS = ["--quiet", "--extra-arg=-Wno-unknown-warning-option", "--extra-arg=-H"]
INCLUDED = re.compile(r"\.+ (.+)")
CHATTER = re.compile(r"\d+ warnings? (?:and \d+ errors? )?(?:generated|treated as errors?)\.?")


def tool_identity():
    """The tool's version and its program's content."""
    version = subprocess.run([TOOL, "--version"], check=True, capture_output=True, text=True).stdout
    return [version, verdicts.hash_of(os.path.realpath(shutil.which(TOOL))), OPTIONS]


class Sources:
    """The product's sources, and what verdicts on them depend on."""

    def __init__(self, build):
        self._tool = tool_identity()
        self._verdicts = pathlib.Path(build) / "verdicts" / "tidy"
        self._headers = collections.defaultdict(list)
        for header in sorted((REPOSITORY / "src").rglob("*.h")):
            self._headers[header.name].append(str(header))
        commands = json.loads((pathlib.Path(build) / "compile_commands.json").read_text())
        self._commands = {entry["file"]: entry["command"] for entry in commands}

    def without_command(self, sources):
        return [source for source in sources if source not in self._commands]

    def _kept_in(self, source):
        return self._verdicts / (source.replace("/", "-").strip("-") + ".json")

    def _configurations(self, source):
        folders = [pathlib.Path(source).parent, *pathlib.Path(source).parents]
        return [str(folder / ".clang-tidy") for folder in folders if folder >= REPOSITORY]

    def state(self, source, files):
        """All that a verdict on the source depends on, given the files that it includes."""
        used = sorted({source, *files})
        alike = sorted({header for file in used
                        for header in self._headers.get(os.path.basename(file), ())})
        return {"tool": self._tool, "command": self._commands[source], "headers alike": alike,
                "configuration": [[file, verdicts.hash_of(file)]
                                  for file in self._configurations(source)],
                "files": [[file, verdicts.hash_of(file)] for file in used]}

    def is_clean(self, source):
        kept = verdicts.read_json(self._kept_in(source))
        return kept is not None and kept == self.state(source, [file for file, _ in kept["files"]])

    def remember_clean(self, source, files, began):
        """Unless one of the files is younger than the look at them."""
        try:
            if all(os.stat(file).st_mtime < began for file in (source, *files)):
                verdicts.write_json(self._kept_in(source), self.state(source, files))
        except OSError:
            pass  # a file has gone meanwhile


def look_at(build, source):
    """Runs the tool on one source. Returns its complaints, None for none, and the files read."""
    done = subprocess.run([TOOL, "-p", build, *OPTIONS, source], check=False, capture_output=True,
                          text=True, errors="replace", preexec_fn=child.ends_with_parent)
    included, said = set(), []
    for line in done.stderr.splitlines():
        if match := INCLUDED.fullmatch(line):
            included.add(os.path.realpath(match[1]))
        elif not CHATTER.fullmatch(line):
            said.append(line)
    clean = done.returncode == 0 and not done.stdout.strip()
    text = "\n".join([done.stdout.rstrip(), *said, f"{TOOL}: exit code {done.returncode}"])
    return None if clean else text, included


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("build")
    parser.add_argument("sources", nargs="*")
    options = parser.parse_args()
    named = [str(pathlib.Path(source).resolve()) for source in options.sources]
    everything = named or sorted(str(path) for path in (REPOSITORY / "src").rglob("*.cpp")
                                 if not path.name.endswith("_test.cpp"))
    sources = Sources(options.build)
    if not everything or (strange := sources.without_command(everything)):
        print(f"no sources, or no compile command for {strange}" if everything else "no sources")
        return 1
    to_do = [source for source in everything if not sources.is_clean(source)]
    print(f"{len(everything)} sources, {len(everything) - len(to_do)} of them known to be clean",
          flush=True)
    failed = []
    verdicts.hash_of.cache_clear()  # what follows takes minutes, in which files may change
    began = time.time()
    with concurrent.futures.ThreadPoolExecutor(len(os.sched_getaffinity(0))) as pool:
        looks = {pool.submit(look_at, options.build, source): source for source in to_do}
        for look in concurrent.futures.as_completed(looks):
            complaints, included = look.result()
            if complaints:
                failed.append(looks[look])
                print(complaints, flush=True)
            else:
                sources.remember_clean(looks[look], included, began)
    for source in failed:
        print(f"FAILED  {os.path.relpath(source, REPOSITORY)}")
    print(f"{len(to_do)} looked at, {len(failed)} not clean")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
