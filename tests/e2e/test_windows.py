# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the positions at which the program places the main window and the player's panel. The
tests call desktop.place() where a user would move a window."""

from desktop import SCREEN
from driver import run
from player_panel import TITLE
from program import Program
from scenes import close
from waiting import check, check_equal, wait_for

LEFT_OF_CENTRE = 100  # pixels from the centre of the main window to the centre of the screen
MAIN, PANEL = "main window", "panel"


def start(desktop, program):
    desktop.write_store("", desktop.home / "My Music")
    started = Program(desktop, program)
    return started, started.wait_for_start()


def frames(desktop, started, main):
    panel = started.window_id(TITLE)
    return desktop.frame_of(main), panel and desktop.frame_of(panel)


def wait_until_side_by_side(desktop, started, main, when):
    """Waits until the panel is at the right edge of the main window, with the same top and height,
    frames included. Returns both rectangles."""
    seen = None
    def are_side_by_side():
        nonlocal seen
        seen = frames(desktop, started, main)
        return seen[1] and (seen[1].left, seen[1].top, seen[1].height) == (
            seen[0].right, seen[0].top, seen[0].height)
    try:
        wait_for(f"panel beside the main window {when}", are_side_by_side, patience=20)
    except Exception as failure:
        raise type(failure)(f"{failure}: {seen}") from failure
    return seen


def close_and_open_panel(started):
    started.choose_menu("Preferences", "CD Player", "Close")
    wait_for("the closing of the panel", lambda: started.window(TITLE) is None)
    started.choose_menu("Preferences", "CD Player", "Open")
    wait_for("the panel", lambda: started.window(TITLE))


def the_panel_is_placed_beside_the_main_window(desktop, program):
    started, main = start(desktop, program)
    at, panel = wait_until_side_by_side(desktop, started, main, "after a start")
    # The program computes the position in whole pixels, so the centre may differ by a pixel.
    for have, want, what in ((2 * at.left + at.width, SCREEN[0] - 2 * LEFT_OF_CENTRE, "horizontal"),
                             (2 * at.top + at.height, SCREEN[1], "vertical")):
        check(abs(have - want) <= 2,
              f"{what} centre of the main window: {have / 2}, not {want / 2}")

    close_and_open_panel(started)
    again = wait_until_side_by_side(desktop, started, main, "after the panel was opened again")
    check_equal(again, (at, panel), "the rectangles after the panel was opened again")

    desktop.xdotool("windowsize", "--sync", main, 420, 560)
    desktop.place(main, 40, 200)
    moved = wait_for("the move of the main window", lambda: (now := desktop.frame_of(main)) and
                     now.height > 560 and now.left != at.left and now)
    check_equal(desktop.frame_of(started.window_id(TITLE)), panel,
                "the panel after the main window was moved")
    close_and_open_panel(started)
    last = wait_until_side_by_side(desktop, started, main, "after the main window was moved")
    check_equal(last[0], moved, "the main window after the panel was opened again")
    close(started)


def the_panel_is_placed_beside_a_main_window_that_got_its_frame_later(desktop, program):
    desktop.stop_window_manager()
    try:
        started, main = start(desktop, program)
        bare, _ = wait_until_side_by_side(desktop, started, main, "without a window manager")
    finally:
        desktop.start_window_manager()
    wait_for("the frame", lambda: desktop.frame_of(main).height > bare.height)
    close_and_open_panel(started)
    wait_until_side_by_side(desktop, started, main, "with frames")
    close(started)


def windows_stay_where_the_user_put_them(desktop, program):
    started, main = start(desktop, program)
    wait_until_side_by_side(desktop, started, main, "after a start")
    panel = started.window_id(TITLE)
    for window, place in ((main, (30, 420)), (panel, (700, 60))):
        before = desktop.frame_of(window)
        desktop.place(window, *place)
        wait_for("the move of the window", lambda: desktop.frame_of(window) != before)
    placed = {MAIN: desktop.frame_of(main), PANEL: desktop.frame_of(panel)}
    # As a cube, the panel has another height, but the program does not move it.
    started.choose_menu("CD Menu", "Show as Cube")
    wait_for("the cube", lambda: desktop.frame_of(panel).height < placed[PANEL].height)
    check_equal(desktop.frame_of(panel)[:3], placed[PANEL][:3], "left, top and width of the cube")
    # Hiding a bar changes the contents of the main window, but not its position or size.
    started.choose_menu("Preferences", "Toolbars", "ToolBar")
    wait_for("the hiding of the tool bar",
             lambda: started.find("Preferences", "push button") is None)
    check_equal(desktop.frame_of(main), placed[MAIN], "the main window without the tool bar")
    close(started)


if __name__ == "__main__":
    run(the_panel_is_placed_beside_the_main_window,
        the_panel_is_placed_beside_a_main_window_that_got_its_frame_later,
        windows_stay_where_the_user_put_them)
