# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the extraction of tracks to WAV files: the selection of tracks, the numbers that the window
shows during a capture, the captured samples, and cancelling."""

import contextlib
import os
import subprocess
import sys

from driver import run
from scenes import close, start_track, start_with_disc, wavs_by_track
from sound import beginning_of_track, bytes_of, check_run, check_track, disc_samples
from waiting import check, check_equal, wait_for

SECONDS = 3
TRACKS = [f"Track  {number} - 00:00:0{SECONDS}" for number in (1, 2, 3)]


def wait_for_groups(started, selected, available):
    wait_for(f"{selected} selected and {available} available",
             lambda: (started.group("Selected Tracks"),
                      started.group("Available Tracks")) == (selected, available))


def watch_capture(started):
    """Reads the window until the captures of all tracks have ended. Returns the list of distinct
    captions that name a captured track, and the list of distinct tuples (percentage, bytes,
    progress), both in order of appearance."""
    captions, figures = [], []

    def ended():
        caption = started.title
        if caption.startswith("Extracting"):
            if caption not in captions:
                captions.append(caption)
            # The logic sets the three numbers one after the other, so some may be missing.
            seen = started.figures()
            if None not in seen and seen not in figures:
                figures.append(seen)
        return captions and caption == "Sonarith v2.0"

    wait_for("the end of all captures", ended, patience=150)
    return captions, figures


def check_moving(figures):
    percents, captured, progress = (set(column) for column in zip(*figures))
    for name, values in (("percentage", percents), ("bytes", captured), ("progress", progress)):
        check(len(values) >= 4, f"the {name} changed too rarely: {sorted(values)}")
    check(all(value <= 100 for value in progress), f"progress beyond 100: {sorted(progress)}")


def tracks_move_between_the_groups(desktop, program):
    started, _, _ = start_with_disc(desktop, program, seconds=SECONDS)
    wait_for_groups(started, [], TRACKS)
    started.click_row(TRACKS[1], times=2)
    wait_for_groups(started, [TRACKS[1]], [TRACKS[0], TRACKS[2]])
    # A track that is moved back is added at the end of the list.
    started.click_row(TRACKS[1], times=2)
    wait_for_groups(started, [], [TRACKS[0], TRACKS[2], TRACKS[1]])
    close(started)


def selected_tracks_become_wav_files(desktop, program):
    started, sheet, destination = start_with_disc(desktop, program, seconds=SECONDS)
    for track in (TRACKS[2], TRACKS[0]):
        started.click_row(track, times=2)
    wait_for("two selected tracks", lambda: sorted(started.group("Selected Tracks")) ==
             [TRACKS[0], TRACKS[2]])
    started.click_row("Selected Tracks")
    wait_for("the next action",
             lambda: started.next_action() == "Next Action:  Process  Selected Tracks")
    started.click("Start ", "push button")
    captions, figures = watch_capture(started)
    # The track that was selected last is captured first.
    check_equal(captions, ["Extracting Track 1", "Extracting Track 3"], "captions")
    check_moving(figures)
    wait_for("the enabled commands", lambda: started.is_enabled("Preferences", "push button"))
    check_equal(started.next_action(), "Next action:",
                "the line about the next action when all captures have ended")
    found = wavs_by_track(destination)
    check_equal(sorted(found), [1, 3], "tracks in the destination folder")
    for number, path in found.items():
        check_track(path, disc_samples(sheet), number, SECONDS)
    close(started)


@contextlib.contextmanager
def busy_machine():
    """Keeps all processors busy within this context."""
    others = [subprocess.Popen([sys.executable, "-c", "while True: pass"])
              for _ in range(os.cpu_count())]
    try:
        yield
    finally:
        for other in others:
            other.kill()
            other.wait()


def all_available_tracks_become_wav_files_on_a_busy_machine(desktop, program):
    started, sheet, destination = start_with_disc(desktop, program, seconds=2)
    started.click_row("Available Tracks")
    wait_for("the next action", lambda: "Available Tracks" in started.next_action())
    with busy_machine():
        started.click("Start ", "push button")
        captions, _ = watch_capture(started)
    check_equal(captions, [f"Extracting Track {number}" for number in (1, 2, 3)], "captions")
    found = wavs_by_track(destination)
    check_equal(sorted(found), [1, 2, 3], "tracks in the destination folder")
    for number, path in found.items():
        # How many frames a file contains before and after its track depends on the load of the
        # machine, so these numbers are not checked here.
        check_run(path, disc_samples(sheet), number, 2)
    close(started)


def cancelling_saves_the_captured_part(desktop, program):
    seconds = 60
    started, sheet, destination = start_with_disc(desktop, program, seconds=seconds)
    start_track(started, "Track  2 - 00:01:00")
    check(not started.is_enabled("Preferences", "push button"),
          "commands are enabled during the action")
    check_equal(wavs_by_track(destination), {}, "files before the end of the capture")
    started.click("Cancel", "push button")
    found = wait_for("the WAV", lambda: wavs_by_track(destination))
    check_equal(list(found), [2], "tracks in the destination folder")
    wait_for("the hiding of the Cancel button",
             lambda: started.find("Cancel", "push button") is None)
    kept, silence = beginning_of_track(found[2], disc_samples(sheet), 2, seconds)
    check(kept >= bytes_of(1), "less than a second was kept")
    check_equal(silence, 0, "bytes of silence after the captured part")
    row = wait_for("the WAV in the tree", lambda: started.group("WAV Files"))
    check_equal(len(row), 1, "rows of WAV files")
    check(row[0].endswith("\\" + found[2].name),
          f"the row {row[0]!r} does not end with the name of the file")
    wait_for("the cleared displays", lambda: started.title == "Sonarith v2.0" and
             started.next_action() == "Next action:")
    close(started)


if __name__ == "__main__":
    run(tracks_move_between_the_groups, selected_tracks_become_wav_files,
        all_available_tracks_become_wav_files_on_a_busy_machine, cancelling_saves_the_captured_part)
