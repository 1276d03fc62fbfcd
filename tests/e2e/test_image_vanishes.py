# SPDX-License-Identifier: GPL-3.0-or-later
"""The disc image is removed while it plays: nothing hangs, and what was captured is kept."""

import time

from driver import run
from scenes import close, start_track, start_with_disc, wavs_by_track
from sound import beginning_of_track, bytes_of, disc_samples
from waiting import check, check_equal, wait_for

SECONDS = 90


def the_position_stops_and_the_sound_is_kept(desktop, program):
    started, sheet, destination = start_with_disc(desktop, program, SECONDS)
    samples = disc_samples(sheet)
    start_track(started, "Track  1 - 00:01:30")
    sheet.with_suffix(".bin").unlink()
    standing = [None, 0]  # the figures, and when they were first seen

    def figures_stand():
        figures = started.figures()
        if figures != standing[0]:
            standing[:] = figures, time.monotonic()
        # A disc that plays moves them many times in that.
        return time.monotonic() - standing[1] > 5

    wait_for("the standing figures", figures_stand)
    percent, shown, _ = standing[0]
    check(percent < 90, f"the track went on to {percent} %")
    started.click("Cancel", "push button")
    found = wait_for("the WAV", lambda: wavs_by_track(destination))
    check_equal(list(found), [1], "tracks in the destination folder")
    kept, silence = beginning_of_track(found[1], samples, 1, SECONDS)
    check(kept >= bytes_of(1), "less than a second was kept")
    check_equal(silence, 0, "bytes of silence behind what was captured")
    check(shown >= kept, f"{shown} bytes were shown of {kept}")
    wait_for("the open commands", lambda: started.is_enabled("Preferences", "push button"))
    close(started)


if __name__ == "__main__":
    run(the_position_stops_and_the_sound_is_kept)
