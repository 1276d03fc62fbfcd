# SPDX-License-Identifier: GPL-3.0-or-later
"""Records which checks have passed, in files of a build folder. The class Verdicts stores each pass
under a key, a hash of everything on which the result depends. write_json() and read_json() are for
checks that store their passes in another form. Failures are not stored, so a failed check is always
run again.

After the stored files are deleted, every check runs again.
"""

import functools
import hashlib
import json
import os
import pathlib
import re
import time

# An installed, upgraded or removed package may change the result of a test.
PACKAGES = pathlib.Path("/var/lib/dpkg/status")
# Environment variables on which the result of a check may depend.
READ_BY_TESTS = re.compile(r"LANG|LC_\w+|TZ|QT_\w+|XDG_\w+|ALSA_\w+|PULSE_\w+|\w*SAN_OPTIONS|"
                           r"DISPLAY|WAYLAND_DISPLAY|HOME|PATH|USER")


@functools.lru_cache(maxsize=None)
def hash_of(path):
    """The hash of a file's content; None if the file cannot be read. The result is cached until
    hash_of.cache_clear()."""
    try:
        with open(path, "rb") as file:
            return hashlib.file_digest(file, "sha256").hexdigest()
    except OSError:
        return None


def key_of_command(command, inputs):
    """The key of a command, its input files, the installed packages, the environment and the user.
    None if an input is missing; the command's result must then not be stored."""
    hashes = {str(path): hash_of(path) for path in inputs}
    if None in hashes.values():
        return None
    environment = {name: value for name, value in os.environ.items()
                   if READ_BY_TESTS.fullmatch(name)}
    everything = [command, hashes, hash_of(PACKAGES), environment, os.getuid()]
    return hashlib.sha256(json.dumps(everything, sort_keys=True).encode()).hexdigest()


class Verdicts:
    """The stored passes of one check: one file for each key, in `folder`/`name`."""

    def __init__(self, folder, name):
        self._folder = pathlib.Path(folder) / name

    def passed(self, key):
        """The time at which the check passed with this key, and its duration; None if it has not
        passed with this key."""
        try:
            return json.loads((self._folder / key).read_text(encoding="utf-8"))
        except (OSError, ValueError):
            return None

    def remember(self, key, seconds):
        self._folder.mkdir(parents=True, exist_ok=True)
        when = time.strftime("%Y-%m-%d %H:%M:%S")
        _replace(self._folder / key, json.dumps({"when": when, "seconds": round(seconds, 1)}))


def _replace(path, text):
    """Replaces a file in one step, so that after a kill either the old or the new file exists."""
    temporary = path.with_name(f".{path.name}.{os.getpid()}")
    temporary.write_text(text, encoding="utf-8")
    temporary.replace(path)


def write_json(path, value):
    path.parent.mkdir(parents=True, exist_ok=True)
    _replace(path, json.dumps(value))


def read_json(path):
    """The value in a file; None if the file is missing or invalid."""
    try:
        return json.loads(path.read_text(encoding="utf-8"))
    except (OSError, ValueError):
        return None
