#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs clang-tidy on the given sources, or on all sources of the program if none is given, with
the compile commands of a build folder.

    tidy.py BUILD_FOLDER [SOURCE...]

A source without complaints (a clean source) is not checked again until something changes on which
its result depends: its text, a file that it includes, its compile command, a .clang-tidy file in
one of the folders above it, the tool, or the list of headers in src/ whose names equal the name of
an included file. This list is compared because an #include may find a new header of the same name
instead of the old one. A source with complaints is always checked again.
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
# -H lists each included file on a line of the error output. Before the path, the line has one dot
# for each level of inclusion.
OPTIONS = ["--quiet", "--extra-arg=-Wno-unknown-warning-option", "--extra-arg=-H"]
INCLUDED = re.compile(r"\.+ (.+)")
CHATTER = re.compile(r"\d+ warnings? (?:and \d+ errors? )?(?:generated|treated as errors?)\.?")


def tool_identity():
    """The version of the tool, the hash of its executable, and its options."""
    version = subprocess.run([TOOL, "--version"], check=True, capture_output=True, text=True).stdout
    return [version, verdicts.hash_of(os.path.realpath(shutil.which(TOOL))), OPTIONS]


class Sources:
    """Stores which sources are clean, and the state on which each result depends."""

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

    def _stored_in(self, source):
        return self._verdicts / (source.replace("/", "-").strip("-") + ".json")

    def _configurations(self, source):
        folders = [pathlib.Path(source).parent, *pathlib.Path(source).parents]
        return [str(folder / ".clang-tidy") for folder in folders if folder >= REPOSITORY]

    def state(self, source, files):
        """Everything on which the result for the source depends. `files` are the files that it
        includes."""
        used = sorted({source, *files})
        alike = sorted({header for file in used
                        for header in self._headers.get(os.path.basename(file), ())})
        return {"tool": self._tool, "command": self._commands[source], "headers alike": alike,
                "configuration": [[file, verdicts.hash_of(file)]
                                  for file in self._configurations(source)],
                "files": [[file, verdicts.hash_of(file)] for file in used]}

    def is_clean(self, source):
        kept = verdicts.read_json(self._stored_in(source))
        return kept is not None and kept == self.state(source, [file for file, _ in kept["files"]])

    def store_clean(self, source, files, began):
        """Stores that the source is clean, unless the source or one of `files`, which it includes,
        has changed since the time `began`."""
        try:
            if all(os.stat(file).st_mtime < began for file in (source, *files)):
                verdicts.write_json(self._stored_in(source), self.state(source, files))
        except OSError:
            pass  # a file was deleted during the check


def check_source(build, source):
    """Runs the tool on one source. Returns the complaints (None if there are none) and the included
    files."""
    done = subprocess.run([TOOL, "-p", build, *OPTIONS, source], check=False, capture_output=True,
                          text=True, errors="replace", preexec_fn=child.ends_with_parent)
    included, messages = set(), []
    for line in done.stderr.splitlines():
        if match := INCLUDED.fullmatch(line):
            included.add(os.path.realpath(match[1]))
        elif not CHATTER.fullmatch(line):
            messages.append(line)
    clean = done.returncode == 0 and not done.stdout.strip()
    text = "\n".join([done.stdout.rstrip(), *messages, f"{TOOL}: exit code {done.returncode}"])
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
    if not everything or (missing := sources.without_command(everything)):
        print(f"no compile command for {missing}" if everything else "no sources")
        return 1
    to_do = [source for source in everything if not sources.is_clean(source)]
    print(f"{len(everything)} sources, {len(everything) - len(to_do)} of them known to be clean",
          flush=True)
    failed = []
    verdicts.hash_of.cache_clear()  # the checks take minutes, during which files may change
    began = time.time()
    with concurrent.futures.ThreadPoolExecutor(len(os.sched_getaffinity(0))) as pool:
        running = {pool.submit(check_source, options.build, source): source for source in to_do}
        for done in concurrent.futures.as_completed(running):
            complaints, included = done.result()
            if complaints:
                failed.append(running[done])
                print(complaints, flush=True)
            else:
                sources.store_clean(running[done], included, began)
    for source in failed:
        print(f"FAILED  {os.path.relpath(source, REPOSITORY)}")
    print(f"{len(to_do)} checked, {len(failed)} not clean")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
