# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the program with disks and drives that respond late or never: its window stays usable, no
captured sample is lost if the disk responds again, and the program ends when the user closes the
window."""

import contextlib
import os
import pathlib
import subprocess
import sys
import time

from driver import make_disc, run
from program import Program
from scenes import MUSIC, close, start_in, start_track, start_with_disc, wavs_by_track
from sound import check_track, disc_samples
from waiting import check, check_equal, wait_for

LIBRARY = str(pathlib.Path(sys.argv[4]).absolute())
# The program is designed to respond within a tenth of a second and to end within a second. These
# limits are longer because of sanitizers and a busy machine.
SECONDS_TO_RESPOND = 3
SECONDS_TO_END = 6
# The limit for a search that waits for a folder that hangs. The program waits twelve seconds for
# such a folder, and only at the first access.
SECONDS_OF_A_WAIT = 25


@contextlib.contextmanager
def files_that_stall(desktop, folder):
    """Yields the path of a switch. While a file with this path exists, the programs started in this
    context hang when they open, read or write files or folders below `folder`
    (stalling_files.cpp)."""
    switch = desktop.home / "stalled"
    switch.unlink(missing_ok=True)
    before = dict(desktop.environment)
    options = before.get("ASAN_OPTIONS", "")
    desktop.environment.update({
        "LD_PRELOAD": LIBRARY, "STALLED_FOLDER": str(folder), "STALLED_WHILE": str(switch),
        # The sanitizer would otherwise refuse a library that is loaded before its own.
        "ASAN_OPTIONS": f"{options}:verify_asan_link_order=0".lstrip(":")})
    try:
        yield switch
    finally:
        switch.unlink(missing_ok=True)
        for key in ("LD_PRELOAD", "STALLED_FOLDER", "STALLED_WHILE", "ASAN_OPTIONS"):
            desktop.environment.pop(key)
        desktop.environment.update(before)


def seconds_until(what, condition):
    began = time.monotonic()
    wait_for(what, condition)
    return time.monotonic() - began


def notice(started):
    """The text of the notice bar; empty if the bar is hidden."""
    return " ".join(started.labels("Notice"))


def check_painted(desktop, started, when):
    """Checks that the program repaints its window: moves the window off the screen and back, and
    compares its contents with those before the move. The X server does not store contents that are
    off the screen."""
    window = started.main_window_id()
    before, after = (desktop.home / f"{name}.png" for name in ("before", "after"))
    place = [int(line.partition("=")[2]) for line in
             desktop.xdotool("getwindowgeometry", "--shell", window)
             if line.startswith(("X=", "Y="))]
    desktop.screenshot(before, window)

    def is_as_before():
        desktop.screenshot(after, window)
        return subprocess.run(["compare", "-metric", "AE", before, after, "null:"],
                              env=desktop.environment, check=False,
                              capture_output=True).returncode == 0

    desktop.xdotool("windowmove", window, 3000, 3000)
    time.sleep(0.3)
    desktop.xdotool("windowmove", window, *place)
    wait_for(f"the window's contents {when}", is_as_before, patience=SECONDS_TO_RESPOND)


def a_capture_to_a_stalling_destination_loses_no_sample(desktop, program):
    with files_that_stall(desktop, desktop.home / MUSIC) as switch:
        started, sheet, destination = start_with_disc(desktop, program, seconds=8)
        start_track(started, "Track  1 - 00:00:08")
        switch.touch()
        before = started.figures()[1]
        wait_for("the notice of the stall", lambda: "does not respond" in notice(started))
        check(started.figures()[1] > before, "the capture stopped while the disk stalled")
        switch.unlink()
        wait_for("the end of the capture",
                 lambda: started.is_enabled("Preferences", "push button"))
        wavs = wavs_by_track(destination)
        check_equal(list(wavs), [1], "tracks in the destination")
        check_track(wavs[1], disc_samples(sheet), 1, 8)
        close(started)


def a_hanging_destination_does_not_delay_cancel_or_the_end(desktop, program):
    with files_that_stall(desktop, desktop.home / MUSIC) as switch:
        started, _, _ = start_with_disc(desktop, program, seconds=30)
        start_track(started, "Track  1 - 00:00:30")
        switch.touch()
        wait_for("the notice of the stall", lambda: "does not respond" in notice(started))
        started.click("Cancel", "push button")
        seconds = seconds_until("the end of the action",
                                lambda: started.is_enabled("Preferences", "push button"))
        check(seconds < SECONDS_TO_RESPOND, f"Cancel took {seconds:.1f} s")
        started.close_window()
        seconds = seconds_until("the end of the program", lambda: not started.running)
        check(seconds < SECONDS_TO_END, f"the end of the program took {seconds:.1f} s")


def the_program_waits_for_a_slow_drive(desktop, program):
    discs = desktop.home / "slow discs"
    with files_that_stall(desktop, discs) as switch:
        sheet = make_disc(discs, tracks=2, seconds=4, signal="ramp")
        desktop.write_store(sheet, desktop.home / MUSIC)
        started = Program(desktop, program)
        started.wait_for_window()
        other = make_disc(discs, name="other", tracks=2, seconds=9, signal="ramp")
        os.replace(other, sheet)
        switch.touch()
        started.choose_menu("Action", "Refresh List")
        for second in (1, 7):
            time.sleep(second)
            check(started.running, "the program ended while it waited for the drive")
            check_painted(desktop, started, f"after a sleep of {second} s")
        switch.unlink()
        started.open_row("Available Tracks")
        wait_for("the other disc's tracks", lambda: started.group("Available Tracks") ==
                 [f"Track  {number} - 00:00:09" for number in (1, 2)])
        close(started)


def a_hanging_drive_does_not_delay_the_end(desktop, program):
    discs = desktop.home / "slow discs"
    with files_that_stall(desktop, discs) as switch:
        sheet = make_disc(discs, tracks=2, seconds=4, signal="ramp")
        desktop.write_store(sheet, desktop.home / MUSIC)
        started = Program(desktop, program)
        started.wait_for_window()
        os.utime(sheet)
        switch.touch()
        started.choose_menu("Action", "Refresh List")
        time.sleep(1)
        started.close_window()
        seconds = seconds_until("the end of the program", lambda: not started.running)
        check(seconds < SECONDS_TO_END, f"the end of the program took {seconds:.1f} s")


def a_search_continues_after_a_folder_that_hangs(desktop, program):
    music = desktop.home / MUSIC
    for folder in ("before", "hanging", "zlast"):
        (music / folder).mkdir(parents=True)
        for kind in ("wav", "mp3"):
            (music / folder / f"{folder}.{kind}").write_bytes(b"x" * 2000)
    with files_that_stall(desktop, music / "hanging") as switch:
        started = start_in(desktop, program, music)
        started.open_window("Search for Files", "File Finder")
        # The finder opens in the destination folder.
        wait_for("the folders", lambda: "hanging" in started.lines("Folder"))
        button = started.get("Search !", "push button")
        place = started.centre_of(button)
        switch.touch()
        # The first search waits for the folder that hangs; the second search skips it at once.
        for kind, most_seconds in (("wav", SECONDS_OF_A_WAIT), ("mp3", SECONDS_TO_RESPOND)):
            started.type_into("File Type", kind)
            def finds(kind=kind):
                return (button.get_name() == "Search !" and
                        [line.rpartition("\\")[2] for line in sorted(started.lines("Files found"))]
                        == [f"before.{kind}", f"zlast.{kind}"])
            desktop.click_at(*place)
            seconds = seconds_until("the files of the other folders", finds)
            check(seconds < most_seconds, f"the search took {seconds:.1f} s")
        switch.unlink()
        close(started)


if __name__ == "__main__":
    run(a_capture_to_a_stalling_destination_loses_no_sample,
        a_hanging_destination_does_not_delay_cancel_or_the_end, the_program_waits_for_a_slow_drive,
        a_hanging_drive_does_not_delay_the_end,
        a_search_continues_after_a_folder_that_hangs)
