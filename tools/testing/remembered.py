#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the command of a test, unless the test has already passed with the same command and inputs.

    remembered.py --verdicts FOLDER --name NAME [--inputs FILE...] -- COMMAND...

Exits with the exit code of the command, or with 1 if that code is 77. Exits with 77 if the command
was not run: CTest then reports the test as skipped, and the script ./test reports it as cached.
This script, child.py and verdicts.py count as inputs, too.
"""

import argparse
import subprocess
import sys
import time

import child
import verdicts

CACHED = 77


def parse(arguments):
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--verdicts", required=True)
    parser.add_argument("--name", required=True)
    parser.add_argument("--inputs", nargs="*", default=[])
    split = arguments.index("--")
    options = parser.parse_args(arguments[:split])
    options.command = arguments[split + 1:]
    return options


def main():
    options = parse(sys.argv[1:])
    inputs = [*options.inputs, __file__, child.__file__, verdicts.__file__]
    kept = verdicts.Verdicts(options.verdicts, options.name)
    key = verdicts.key_of_command(options.command, inputs)
    before = key and kept.passed(key)
    if before:
        print(f"cached: passed on {before['when']} in {before['seconds']} s with the same command "
              "and inputs")
        return CACHED
    began = time.monotonic()
    result = subprocess.run(options.command, preexec_fn=child.ends_with_parent, check=False)
    if result.returncode == 0 and key:
        # If an input has changed during the run, it is unknown which content has passed.
        verdicts.hash_of.cache_clear()
        if verdicts.key_of_command(options.command, inputs) == key:
            kept.remember(key, time.monotonic() - began)
    return 1 if result.returncode == CACHED else result.returncode


if __name__ == "__main__":
    code = main()
    sys.exit(code if code >= 0 else 128 - code)
