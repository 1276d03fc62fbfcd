# SPDX-License-Identifier: GPL-3.0-or-later
"""Beside another program: a disc image is dragged from its window, and questions are asked while it
is in front."""

import sys

from driver import make_disc, run
from files_window import FilesWindow
from program import Program
from scenes import close, start_with_disc, start_track
from waiting import check, check_equal, wait_for

STAND_IN = sys.argv[2]
EMPTY_DRIVE = ("The CD drive is empty. If you wish to use your CD as a source, please insert a "
               "music CD into the CD drive.")


def tree_of(started):
    return started.place_of(started.get("Work tree"))


def an_image_is_dropped_on_the_window(desktop, program):
    started, _, _ = start_with_disc(desktop, program, seconds=2)
    other = make_disc(desktop.home / "Other Discs", name="ot her", tracks=2, seconds=7)
    FilesWindow(desktop, STAND_IN, other).drop_on(tree_of(started))
    expected = ["Track  1 - 00:00:07", "Track  2 - 00:00:07"]

    def tracks():
        if "Available Tracks" in started.rows() and not started.group("Available Tracks"):
            started.open_row("Available Tracks")
        return started.group("Available Tracks")

    wait_for("the tracks of the dropped image", lambda: tracks() == expected)
    check(f'Drive="{other}"' in desktop.store.read_text() or
          f"Drive={other}" in desktop.store.read_text(), "the choice is not stored")
    check(started.window("Devices") is None, "a window came that nobody asked for")
    close(started)


def an_image_is_refused_while_the_drive_is_in_use(desktop, program):
    seconds = 60
    started, sheet, _ = start_with_disc(desktop, program, seconds)
    other = make_disc(desktop.home / "other", tracks=2, seconds=7)
    files = FilesWindow(desktop, STAND_IN, other)
    started.desktop.xdotool("windowactivate", "--sync", started.main_window_id())
    start_track(started, "Track  1 - 00:01:00")
    files.hold_over(tree_of(started))
    files.let_go("refused")
    check("taken" not in files.said(), "the window offered to take the image")
    check(str(sheet) in desktop.store.read_text(), "the drive was changed")
    check(started.window("Devices") is None, "a window came that nobody asked for")
    started.click("Cancel", "push button")
    wait_for("the end", lambda: started.is_enabled("Preferences", "push button"))
    close(started)


def a_question_stands_above_the_window_though_another_program_is_in_front(desktop, program):
    started, _, _ = start_with_disc(desktop, program, seconds=2)
    started.close_panel()
    torn = desktop.home / "torn.cue"
    torn.write_text("FILE")
    main = started.main_window_id()
    files = FilesWindow(desktop, STAND_IN, torn)
    files.activate()
    files.drop_on(tree_of(started))
    wait_for("the message box", lambda: started.find(EMPTY_DRIVE, "label"))
    box = wait_for("its window", lambda: next(
        (window for window in desktop.windows_of(started.process.pid) if window != main), None))
    check_equal(desktop.owner_of(box), main, "the window that the box belongs to")
    # Back in the program by a press on its main window, beside the box.
    files.activate()
    place = started.place_of(started.get("Exit", "push button"))
    desktop.click_at(*place)
    wait_for("the box in front", lambda: desktop.active_window() == box)
    check(started.running, "a press reached the window below the question")
    started.click("OK", "push button")
    wait_for("the closed message box", lambda: started.find(EMPTY_DRIVE, "label") is None)
    close(started)


if __name__ == "__main__":
    run(an_image_is_dropped_on_the_window, an_image_is_refused_while_the_drive_is_in_use,
        a_question_stands_above_the_window_though_another_program_is_in_front)
