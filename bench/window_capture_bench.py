#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The processor time of the real program while it captures a track: the share of one core with its
window open, without a sound output and with a sound server; and in the tray, which may take no more
than the open window.

window_capture_bench.py FOLDER_OF_THE_PROGRAMS
"""
import pathlib
import statistics
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests" / "e2e"))

from desktop import Desktop  # pylint: disable=wrong-import-position
from scenes import start_track, start_with_disc  # pylint: disable=wrong-import-position
from sound_server import SoundServer  # pylint: disable=wrong-import-position
from test_tray import minimize, panel, wait_for_state  # pylint: disable=wrong-import-position

MEASURED_SECONDS = 40
PART_SECONDS = 5
LIMIT_PERCENT = 3


def processor_seconds(pid):
    """By the clock that the kernel keeps of a process (clock_getcpuclockid)."""
    return time.clock_gettime((~pid << 3) | 2)


def percent_of_a_core(pid, seconds):
    began, before = time.monotonic(), processor_seconds(pid)
    time.sleep(seconds)
    return 100 * (processor_seconds(pid) - before) / (time.monotonic() - began)


def in_the_window(desktop, program, output):
    seconds = MEASURED_SECONDS + 10
    started, _, _ = start_with_disc(desktop, program, seconds, output)
    start_track(started, f"Track  1 - 00:00:{seconds}")
    share = percent_of_a_core(started.process.pid, MEASURED_SECONDS)
    desktop.end_programs()
    return share


def window_against_tray(desktop, program):
    """The shares of a capture whose window is in sight and in the tray by turns."""
    shares = {"window": [], "tray": []}
    with panel(desktop) as host:
        started, _, _ = start_with_disc(desktop, program, 180)
        start_track(started, "Track  1 - 00:03:00")
        pid = started.process.pid
        for _ in range(MEASURED_SECONDS // PART_SECONDS):
            time.sleep(1)
            shares["window"].append(percent_of_a_core(pid, PART_SECONDS))
            window = minimize(started)
            host.wait_for_icon()
            wait_for_state(desktop, window, "Withdrawn")
            time.sleep(1)
            shares["tray"].append(percent_of_a_core(pid, PART_SECONDS))
            host.choose("Restore Control panel")
            wait_for_state(desktop, window, "Normal")
        desktop.end_programs()
    return [statistics.median(shares[place]) for place in ("window", "tray")]


def main():
    program = pathlib.Path(sys.argv[1]) / "sonarith"
    with Desktop() as desktop:
        for output in ("none", "default"):
            desktop.move_to(desktop.folder / output)
            if output == "default":
                SoundServer(desktop)
            share = in_the_window(desktop, program, output)
            print(f"capture in the window, output {output}: {share:.2f} % of one core "
                  f"(limit {LIMIT_PERCENT} %)", flush=True)
        desktop.move_to(desktop.folder / "tray")
        window, tray = window_against_tray(desktop, program)
        print(f"capture in the tray: {tray:.2f} % of one core, in the window {window:.2f} %, "
              f"{tray / window:.2f} times (limit 1)")


if __name__ == "__main__":
    main()
