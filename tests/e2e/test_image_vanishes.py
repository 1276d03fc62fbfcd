# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests what happens if the disc image's file of samples is deleted during a capture: the displayed
figures stop changing, and a click on Cancel saves the captured part. The program does not hang."""

import time

from driver import run
from scenes import close, start_track, start_with_disc, wavs_by_track
from sound import beginning_of_track, bytes_of, disc_samples
from waiting import check, check_equal, wait_for

SECONDS = 90


def the_figures_stop_and_cancel_saves_the_captured_part(desktop, program):
    started, sheet, destination = start_with_disc(desktop, program, SECONDS)
    samples = disc_samples(sheet)
    start_track(started, "Track  1 - 00:01:30")
    sheet.with_suffix(".bin").unlink()
    # The displayed figures (percentage, bytes, progress), and the time at which they last changed.
    last = [None, 0]

    def figures_are_unchanged():
        figures = started.figures()
        if figures != last[0]:
            last[:] = figures, time.monotonic()
        # While a disc is captured, the figures change many times in 5 seconds.
        return time.monotonic() - last[1] > 5

    wait_for("unchanged figures", figures_are_unchanged)
    percent, shown, _ = last[0]
    check(percent < 90, f"the figures stopped changing only at {percent} %")
    started.click("Cancel", "push button")
    found = wait_for("the WAV", lambda: wavs_by_track(destination))
    check_equal(list(found), [1], "tracks in the destination folder")
    kept, silence = beginning_of_track(found[1], samples, 1, SECONDS)
    check(kept >= bytes_of(1), "less than a second of the track was saved")
    check_equal(silence, 0, "bytes of silence after the captured part")
    check(shown >= kept, f"{kept} bytes were saved, but only {shown} had been shown")
    wait_for("the enabled commands", lambda: started.is_enabled("Preferences", "push button"))
    close(started)


if __name__ == "__main__":
    run(the_figures_stop_and_cancel_saves_the_captured_part)
