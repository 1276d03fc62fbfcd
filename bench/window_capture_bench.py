#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures which share of one core the real program uses while it captures a track. The first
capture runs with a visible window and without a sound output, the second with a visible window and
a sound server. The third capture begins in the tray and continues with a visible window; its share
in the tray must not be larger than its share with the window.

window_capture_bench.py FOLDER_OF_THE_PROGRAMS
"""
import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests" / "e2e"))

from desktop import Desktop  # pylint: disable=wrong-import-position
from driver import make_disc  # pylint: disable=wrong-import-position
from limits import Limits  # pylint: disable=wrong-import-position
from processor_time import share  # pylint: disable=wrong-import-position
from program import Program  # pylint: disable=wrong-import-position
from scenes import (  # pylint: disable=wrong-import-position
    MUSIC, start_row, start_track, start_with_disc)
from sound_server import SoundServer  # pylint: disable=wrong-import-position
from test_tray import panel, wait_for_state  # pylint: disable=wrong-import-position

MEASURED_SECONDS = 40
SETTLING_SECONDS = 2
LIMIT_PERCENT = 3


def in_the_window(desktop, program, output):
    seconds = MEASURED_SECONDS + 10
    started, _, _ = start_with_disc(desktop, program, seconds, output)
    start_track(started, f"Track  1 - 00:00:{seconds}")
    measured = share(started.process.pid, MEASURED_SECONDS)
    desktop.end_programs()
    return measured


def window_against_tray(desktop, program):
    """Starts one capture in the tray, and restores the window during this capture. Returns the
    share with the window and the share in the tray."""
    sheet = make_disc(desktop.home / "discs", tracks=3, seconds=120, signal="ramp")
    desktop.write_store(sheet, desktop.home / MUSIC, **{"minimize%20onstart": 1})
    with panel(desktop) as host:
        started = Program(desktop, program)
        started.wait_for_window()
        started.open_row("Available Tracks")
        window = started.main_window_id()
        start_row(started, "Track  1 - 00:02:00")
        host.wait_for_icon()
        wait_for_state(desktop, window, "Withdrawn")
        time.sleep(SETTLING_SECONDS)
        tray = share(started.process.pid, MEASURED_SECONDS)
        host.choose("Restore Control panel")
        wait_for_state(desktop, window, "Normal")
        time.sleep(SETTLING_SECONDS)
        shown = share(started.process.pid, MEASURED_SECONDS)
        desktop.end_programs()
    return shown, tray


def main():
    program = pathlib.Path(sys.argv[1]) / "sonarith"
    limits = Limits()
    with Desktop() as desktop:
        for output in ("none", "default"):
            desktop.move_to(desktop.folder / output)
            if output == "default":
                SoundServer(desktop)
            measured = in_the_window(desktop, program, output)
            print(f"capture in the window, output {output}: {measured:.2f} % of one core "
                  f"(limit {LIMIT_PERCENT} %)", flush=True)
            limits.check(f"capture in the window, output {output}", measured, LIMIT_PERCENT)
        desktop.move_to(desktop.folder / "tray")
        window, tray = window_against_tray(desktop, program)
        print(f"capture in the tray: {tray:.2f} % of one core, in the window {window:.2f} %, "
              f"tray divided by window: {tray / window:.2f} (limit 1)")
        limits.check("capture in the tray", tray, LIMIT_PERCENT)
        limits.check("tray divided by window", tray / window, 1)
    limits.end()


if __name__ == "__main__":
    main()
