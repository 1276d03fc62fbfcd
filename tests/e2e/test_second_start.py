# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests that only one instance of the program runs for each user, and that a killed program leaves
no incomplete file except hidden ones, which the next recording deletes."""

from driver import run
from program import Program
from scenes import close, start_track, start_with_disc, wavs_by_track
from sound import beginning_of_track, bytes_of, disc_samples
from waiting import check, check_equal, wait_for


def a_second_start_ends_without_a_window(desktop, program):
    first, _, _ = start_with_disc(desktop, program, seconds=2)
    second = Program(desktop, program)
    seen = []

    def ended():
        seen.extend(desktop.windows_of(second.process.pid))
        return not second.running

    wait_for("the second program's end", ended)
    check_equal(second.process.returncode, 0, "exit code of the second start")
    check_equal(seen, [], "windows of the second start")
    check(first.running, "the second start ended the first program")
    close(first)
    third = Program(desktop, program)
    third.wait_for_window()
    close(third)


def names_in(folder):
    return {path.name for path in folder.iterdir()}


def leftovers(folder):
    """The hidden files that a killed process leaves on a file system that does not support unnamed
    files (O_TMPFILE). The next recording deletes them."""
    return {name for name in names_in(folder) if name.startswith(".sonarith-")}


def a_killed_program_leaves_no_incomplete_file(desktop, program):
    seconds = 60
    killed, sheet, destination = start_with_disc(desktop, program, seconds)
    store = desktop.store.read_bytes()
    start_track(killed, "Track  1 - 00:01:00")
    killed.kill()
    check_equal(names_in(destination) - leftovers(destination), set(),
                "files of the killed program")
    check_equal(desktop.store.read_bytes(), store, "the settings store after the kill")

    next_one = Program(desktop, program)
    next_one.wait_for_window()
    next_one.open_row("Available Tracks")
    start_track(next_one, "Track  1 - 00:01:00")
    next_one.click("Cancel", "push button")
    found = wait_for("the WAV", lambda: wavs_by_track(destination))
    kept, _ = beginning_of_track(found[1], disc_samples(sheet), 1, seconds)
    check(kept >= bytes_of(1), "less than a second was kept")
    check_equal(leftovers(destination), set(), "hidden files after the next recording")
    close(next_one)


if __name__ == "__main__":
    run(a_second_start_ends_without_a_window, a_killed_program_leaves_no_incomplete_file)
