# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the program together with another program on the screen: a disc image is dragged from the
other program's window, and a message box opens while that window is active."""

import sys

from driver import make_disc, run
from files_window import FilesWindow
from program import Program
from scenes import close, start_with_disc, start_track
from waiting import check, check_equal, wait_for

DRAG_SOURCE = sys.argv[2]
EMPTY_DRIVE = ("The CD drive is empty. If you wish to use your CD as a source, please insert a "
               "music CD into the CD drive.")


def centre_of_tree(started):
    return started.centre_of(started.get("Work tree"))


def dropping_an_image_selects_it(desktop, program):
    started, _, _ = start_with_disc(desktop, program, seconds=2)
    other = make_disc(desktop.home / "Other Discs", name="ot her", tracks=2, seconds=7)
    FilesWindow(desktop, DRAG_SOURCE, other).drop_on(centre_of_tree(started))
    expected = ["Track  1 - 00:00:07", "Track  2 - 00:00:07"]

    def tracks():
        if "Available Tracks" in started.rows() and not started.group("Available Tracks"):
            started.open_row("Available Tracks")
        return started.group("Available Tracks")

    wait_for("the tracks of the dropped image", lambda: tracks() == expected)
    check(f'Drive="{other}"' in desktop.store.read_text() or
          f"Drive={other}" in desktop.store.read_text(), "the choice is not stored")
    check(started.window("Devices") is None, "the Devices window opened")
    close(started)


def the_window_refuses_an_image_during_a_capture(desktop, program):
    seconds = 60
    started, sheet, _ = start_with_disc(desktop, program, seconds)
    other = make_disc(desktop.home / "other", tracks=2, seconds=7)
    files = FilesWindow(desktop, DRAG_SOURCE, other)
    started.desktop.xdotool("windowactivate", "--sync", started.main_window_id())
    start_track(started, "Track  1 - 00:01:00")
    files.hold_over(centre_of_tree(started))
    files.drop("refused")
    check("accepted" not in files.output(), "the window offered to accept the image")
    check(str(sheet) in desktop.store.read_text(), "the drive was changed")
    check(started.window("Devices") is None, "the Devices window opened")
    started.click("Cancel", "push button")
    wait_for("the end of the capture", lambda: started.is_enabled("Preferences", "push button"))
    close(started)


def a_message_box_opens_above_its_window_while_another_program_is_active(desktop, program):
    started, _, _ = start_with_disc(desktop, program, seconds=2)
    started.close_panel()
    torn = desktop.home / "torn.cue"
    torn.write_text("FILE")
    main = started.main_window_id()
    files = FilesWindow(desktop, DRAG_SOURCE, torn)
    files.activate()
    files.drop_on(centre_of_tree(started))
    wait_for("the message box", lambda: started.find(EMPTY_DRIVE, "label"))
    box = wait_for("the X window of the message box", lambda: next(
        (window for window in desktop.windows_of(started.process.pid) if window != main), None))
    check_equal(desktop.owner_of(box), main, "the owner of the message box")
    # A click on the button "Exit" of the main window, which the message box blocks, activates the
    # program again and has no other effect.
    files.activate()
    place = started.centre_of(started.get("Exit", "push button"))
    desktop.click_at(*place)
    wait_for("the box in front", lambda: desktop.active_window() == box)
    check(started.running, "the click on the blocked main window ended the program")
    started.click("OK", "push button")
    wait_for("the closing of the message box", lambda: started.find(EMPTY_DRIVE, "label") is None)
    close(started)


if __name__ == "__main__":
    run(dropping_an_image_selects_it, the_window_refuses_an_image_during_a_capture,
        a_message_box_opens_above_its_window_while_another_program_is_active)
