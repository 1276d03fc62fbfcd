#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The processor time of the real program while it captures a track with its window open: the share
of one core, without a sound output and with a sound server.

window_capture_bench.py FOLDER_OF_THE_PROGRAMS
"""
import os
import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests" / "e2e"))

from desktop import Desktop  # pylint: disable=wrong-import-position
from program_bench import processor_ticks  # pylint: disable=wrong-import-position
from scenes import start_track, start_with_disc  # pylint: disable=wrong-import-position
from sound_server import SoundServer  # pylint: disable=wrong-import-position

TRACK_SECONDS = 50
MEASURED_SECONDS = 40
LIMIT_PERCENT = 3


def percent_of_a_core(pid):
    began, before = time.monotonic(), processor_ticks(pid)
    time.sleep(MEASURED_SECONDS)
    ticks = processor_ticks(pid) - before
    return 100 * ticks / os.sysconf("SC_CLK_TCK") / (time.monotonic() - began)


def main():
    program = pathlib.Path(sys.argv[1]) / "sonarith"
    with Desktop() as desktop:
        for output in ("none", "default"):
            desktop.move_to(desktop.folder / output)
            if output == "default":
                SoundServer(desktop)
            started, _, _ = start_with_disc(desktop, program, TRACK_SECONDS, output)
            start_track(started, f"Track  1 - 00:00:{TRACK_SECONDS}")
            share = percent_of_a_core(started.process.pid)
            desktop.end_programs()
            print(f"capture in the window, output {output}: {share:.2f} % of one core "
                  f"(limit {LIMIT_PERCENT} %)", flush=True)


if __name__ == "__main__":
    main()
