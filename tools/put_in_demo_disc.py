#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Selects the image of a small demo disc as the drive in the settings store, and changes nothing
else in the store. Creates the image if it does not exist. Does nothing if the machine has an
optical drive or the user has chosen a drive."""
import glob
import os
import pathlib
import subprocess
import sys

HOME = pathlib.Path.home()
STORE = (
    pathlib.Path(os.environ.get("XDG_CONFIG_HOME") or HOME / ".config")
    / "sonarith"
    / "Sonarith v2.0.ini"
)
DISC = (
    pathlib.Path(os.environ.get("XDG_DATA_HOME") or HOME / ".local/share")
    / "sonarith"
    / "demo-disc"
)


def with_drive(lines, drive):
    """The lines of the store after `drive` is selected; None if the store already selects a
    drive."""
    section = None
    for number, line in enumerate(lines):
        text = line.strip()
        if text.startswith("["):
            section = text
        elif section == "[Devices]" and text.split("=", 1)[0].strip() == "Drive":
            if text.partition("=")[2].strip() not in ("", '""'):
                return None
            return lines[:number] + [f"Drive={drive}"] + lines[number + 1 :]
    for number, line in enumerate(lines):
        if line.strip() == "[Devices]":
            return lines[: number + 1] + [f"Drive={drive}"] + lines[number + 1 :]
    return ["[Devices]", f"Drive={drive}", *([""] if lines else []), *lines]


def main():
    if glob.glob("/dev/sr*"):
        return 0
    # "surrogateescape" preserves bytes of stored paths that are not valid UTF-8.
    text = STORE.read_text(encoding="utf-8", errors="surrogateescape") if STORE.exists() else ""
    cue = DISC / "demo.cue"
    # In the store, backslashes must be escaped.
    lines = with_drive(text.splitlines(), str(cue).replace("\\", "\\\\"))
    if lines is None:
        return 0
    if not cue.exists():
        DISC.mkdir(parents=True, exist_ok=True)
        maker = pathlib.Path(__file__).with_name("make_disc_image.py")
        command = [sys.executable, str(maker), str(DISC), "--name", "demo", "--tracks", "4"]
        subprocess.run([*command, "--seconds", "20", "--signal", "music"], check=True)
    STORE.parent.mkdir(parents=True, exist_ok=True)
    new = STORE.with_name(STORE.name + ".new")
    new.write_text("\n".join(lines) + "\n", encoding="utf-8", errors="surrogateescape")
    os.replace(new, STORE)
    print(f"No optical drive found: the program uses the image of a demo disc ({cue}).")
    return 0


if __name__ == "__main__":
    sys.exit(main())
