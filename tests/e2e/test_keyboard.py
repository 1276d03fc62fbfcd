# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests that by keyboard alone the user can select and extract tracks, cancel a capture and use the
menus."""

from driver import make_disc, run
from program import Program
from scenes import go_to_row, wavs_by_track
from sound import bytes_of, check_track, disc_samples
from waiting import check, check_equal, wait_for

SECONDS = 2
TRACKS = [f"Track  {number} - 00:00:0{SECONDS}" for number in (1, 2, 3)]


def start_with_focus_in_tree(desktop, program, **disc):
    sheet = make_disc(desktop.home / "discs", seconds=SECONDS, signal="ramp", **disc)
    destination = desktop.home / "My Music"
    desktop.write_store(sheet, destination)
    started = Program(desktop, program)
    started.wait_for_window()
    wait_for("the focus in the tree", lambda: started.has_focus("Work tree"))
    return started, sheet, destination


def keys_select_and_start_tracks(desktop, program):
    started, sheet, destination = start_with_focus_in_tree(desktop, program, tracks=3)
    go_to_row(desktop, started, "Available Tracks")
    desktop.press("Right")
    wait_for("the opened group", lambda: started.group("Available Tracks") == TRACKS)
    go_to_row(desktop, started, TRACKS[1])
    desktop.press("ctrl+Return")
    wait_for("the selected track", lambda: started.group("Selected Tracks") == [TRACKS[1]])
    go_to_row(desktop, started, "Selected Tracks")
    desktop.press("Return")
    wait_for("the next action",
             lambda: started.next_action() == "Next Action:  Process  Selected Tracks")
    desktop.press("alt+s")
    wait_for("a second of sound", lambda: (started.figures()[1] or 0) > bytes_of(1))
    wait_for("the end of the capture", lambda: started.is_enabled("Preferences", "push button"))
    found = wavs_by_track(destination)
    check_equal(list(found), [2], "tracks in the destination folder")
    check_track(found[2], disc_samples(sheet), 2, SECONDS)
    desktop.press("alt+F4")
    check_equal(started.wait_for_end(), 0, "exit code")


def keys_in_menus_refresh_the_list_and_end_the_program(desktop, program):
    started, sheet, _ = start_with_focus_in_tree(desktop, program, tracks=2)
    go_to_row(desktop, started, "Available Tracks")
    desktop.press("Right")
    wait_for("the tracks", lambda: started.group("Available Tracks") == TRACKS[:2])
    check_equal(make_disc(sheet.parent, seconds=SECONDS, signal="ramp", tracks=3), sheet,
                "the path of the image that replaces the first image")
    desktop.press("alt+a")
    wait_for("the menu", lambda: started.find("Refresh List", "menu item"))
    desktop.press("r")
    # The refresh removes the collection "CD Tracks" and adds it again as the last collection, with
    # its groups collapsed.
    wait_for("the collapsed group at the end", lambda: started.rows() and
             started.rows()[-1] == "Available Tracks")
    go_to_row(desktop, started, "Available Tracks")
    desktop.press("Right")
    wait_for("the new tracks", lambda: started.group("Available Tracks") == TRACKS)
    desktop.press("F10")
    wait_for("the focus in the menu bar", lambda: started.has_focus("File"))
    desktop.press("Down")
    wait_for("the menu", lambda: started.find("Exit", "menu item"))
    desktop.press("e")
    check_equal(started.wait_for_end(), 0, "exit code")


def a_key_cancels_a_capture(desktop, program):
    started, _, destination = start_with_focus_in_tree(desktop, program, tracks=3)
    go_to_row(desktop, started, "Available Tracks")
    desktop.press("Return", "alt+s")
    wait_for("captured sound", lambda: (started.figures()[1] or 0) > 0)
    check(started.find("Cancel", "push button"), "the Cancel button is not shown")
    desktop.press("alt+c")
    wait_for("the end of the capture", lambda: started.is_enabled("Preferences", "push button"))
    check_equal(list(wavs_by_track(destination)), [1], "tracks in the destination folder")
    desktop.press("alt+F4")
    check_equal(started.wait_for_end(), 0, "exit code")


if __name__ == "__main__":
    run(keys_select_and_start_tracks, keys_in_menus_refresh_the_list_and_end_the_program,
        a_key_cancels_a_capture)
