# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the program under a Wayland compositor, without an X server: an extraction, the windows and
dialogs, drag and drop, and the tray."""

import sys

from driver import make_disc, run
from files_window import FilesWindow
from scenes import MUSIC, close, go_to_row, start_row, wavs_by_track
from sound import check_track, disc_samples
from tray_host import TrayHost
from waiting import check, check_equal, wait_for
from wayland_desktop import WaylandDesktop, WaylandProgram

DRAG_SOURCE = sys.argv[2]
SECONDS = 4
FIRST = f"Track  1 - 00:00:0{SECONDS}"
DESKTOP_FILE = "org.sonarith.sonarith"
MAIN, PANEL, HELP = "Sonarith v2.0", "CD Player", "Sonarith Help"


def start(desktop, program):
    sheet = make_disc(desktop.home / "discs", tracks=3, seconds=SECONDS, signal="ramp")
    destination = desktop.home / MUSIC
    desktop.write_store(sheet, destination)
    started = WaylandProgram(desktop, program)
    started.wait_for_window()
    started.open_row("Available Tracks")
    return started, sheet, destination


def a_track_is_extracted(desktop, program):
    started, sheet, destination = start(desktop, program)
    start_row(started, FIRST)
    wait_for("the title of the capture", lambda: started.title.startswith("Extracting Track"))
    wait_for("the end of the capture", lambda: started.is_enabled("Preferences", "push button"))
    check_track(wavs_by_track(destination)[1], disc_samples(sheet), 1, SECONDS)
    close(started)


def every_window_opens_and_names_the_desktop_file(desktop, program):
    started, _, _ = start(desktop, program)

    def check_window(title):
        check_equal(started.wait_for_node(title)["app_id"], DESKTOP_FILE,
                    f"the app_id of the window {title!r}")
        started.activate(title)

    def wait_until_closed(title):
        wait_for(f"the closing of the window {title!r}", lambda: started.node(title) is None)
        started.activate(MAIN)

    check_window(MAIN)
    check_window(PANEL)
    started.activate(MAIN)
    for button, title in (("Preferences", "Preferences"), ("Search for Files", "File Finder"),
                          ("Playlist Editor", "Playlist Editor")):
        started.click(button, "push button")
        check_window(title)
        desktop.ask_to_close(started.window_id(title))
        wait_until_closed(title)
    started.click("Help", "push button")
    check_window(HELP)
    desktop.press("Escape")
    wait_until_closed(HELP)
    # The following windows are opened by the last or the first entry of a menu.
    desktop.press("alt+p", "Up", "Return")
    check_window("Devices")
    desktop.press("Escape")
    wait_until_closed("Devices")
    desktop.press("alt+f", "Return")
    check_window("Select WAV or MP3 file")
    desktop.press("Escape")
    wait_until_closed("Select WAV or MP3 file")
    desktop.press("alt+h", "Up", "Return")
    wait_for("the about box", lambda: started.find("OK", "push button"))
    desktop.press("Escape")
    wait_for("the closing of the about box", lambda: started.find("OK", "push button") is None)
    close(started)


def the_panel_is_dragged(desktop, program):
    started, _, _ = start(desktop, program)
    started.activate(PANEL)
    display = started.centre_of(started.get("Level meter"))
    before = started.node(PANEL)["rect"]
    desktop.drag(display, (display[0] + 200, display[1] + 120))
    wait_for("the panel at its new place",
             lambda: started.node(PANEL)["rect"]["x"] > before["x"] + 100)
    check(started.node(PANEL)["rect"]["y"] > before["y"] + 60, "the panel did not move down")
    close(started)


def a_row_is_dragged_to_another_group(desktop, program):
    started, _, _ = start(desktop, program)
    started.drag_row(FIRST, "Selected Tracks")
    wait_for("the dragged track among the selected",
             lambda: FIRST in started.group("Selected Tracks"))
    close(started)


def minimizing_hides_the_window_in_the_tray(desktop, program):
    with TrayHost(desktop.environment["DBUS_SESSION_BUS_ADDRESS"]) as host:
        started, _, _ = start(desktop, program)
        go_to_row(desktop, started, "Available Tracks")
        desktop.press("Menu")
        # "Minimize" is directly above the last entry, "Exit".
        desktop.press("Up", "Up", "Return")
        host.wait_for_icon()
        wait_for("the hiding of the window", lambda: started.node(MAIN) is None)
        host.choose("Restore Control panel")
        started.wait_for_node(MAIN)
        host.wait_for_no_icon()
        close(started)


def a_disc_image_is_dropped_on_the_window(desktop, program):
    started, _, _ = start(desktop, program)
    other = make_disc(desktop.home / "other", tracks=2, seconds=7)
    files = FilesWindow(desktop, DRAG_SOURCE, other)
    files.drop_on(started.centre_of(started.get("Work tree")))

    def tracks():
        if "Available Tracks" in started.rows() and not started.group("Available Tracks"):
            started.open_row("Available Tracks")
        return started.group("Available Tracks")

    wait_for("the tracks of the dropped disc image",
             lambda: tracks() == ["Track  1 - 00:00:07", "Track  2 - 00:00:07"])
    close(started)


if __name__ == "__main__":
    run(a_track_is_extracted, every_window_opens_and_names_the_desktop_file, the_panel_is_dragged,
        a_row_is_dragged_to_another_group, minimizing_hides_the_window_in_the_tray,
        a_disc_image_is_dropped_on_the_window, desktop=WaylandDesktop)
