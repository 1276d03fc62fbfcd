# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the CD player: its display, transport, sound, menus and sizes, and how it behaves during
other work of the program."""

import time

from driver import make_disc, run
from player_panel import SECONDS, TITLE, PlayerPanel, start_playing
from scenes import close, start_row, start_with_disc, wavs_by_track
from sound import FRAME_RATE, bytes_of, check_run, disc_samples, find_run, track_samples
from sound_server import SoundServer
from waiting import check, check_equal, wait_for

TRANSPORT = ("Previous Track", "Play", "Pause", "Stop", "Next Track")


def part_of_track(sheet, number, second):
    """A quarter of a second of a track, starting at `second`."""
    track = track_samples(disc_samples(sheet), number, SECONDS)
    start = bytes_of(second)
    return track[start:start + bytes_of(1) // 4]


def wait_for_played(server, part, what, start=0):
    wait_for(f"{what} in the sound server", lambda: find_run(server.played()[start:], part) >= 0)


def a_disc_is_played_and_heard(desktop, program):
    server = SoundServer(desktop)
    started, sheet, _ = start_with_disc(desktop, program, SECONDS, "default")
    panel = PlayerPanel(started)
    check_equal(panel.mode(), "OFF", "the mode before the player is switched on")
    check(not any(panel.is_enabled(name) for name in TRANSPORT),
          "a transport button is enabled while the player is off")
    panel.switch_on()
    check(panel.shows(f"Track time: 00:{SECONDS}:00"), "the length of the track is not shown")
    check(all(panel.is_enabled(name) for name in (*TRANSPORT, "Eject")),
          "a transport button or Eject is disabled while the player is on")
    check(not any(server.latest()), "there is sound before the disc plays")
    low = panel.bar_height()

    panel.press("Play")
    panel.wait_for_position("two seconds", lambda track, second: track == 1 and second >= 2)
    wait_for_played(server, part_of_track(sheet, 1, 0), "the first track's beginning")
    wait_for("the meter's bar to rise", lambda: panel.bar_height() > low + 5)
    check(not panel.is_enabled("Eject"), "the button Eject is enabled while the disc plays")

    panel.press("Pause")
    server.wait_for_silence("paused")
    paused = panel.position()
    wait_for("the meter's bar to sink", lambda: panel.bar_height() == low)
    check(not any(server.latest()), "there is sound while the player pauses")
    check_equal(panel.position(), paused, "the position in a pause")
    panel.press("Play")
    wait_for("the mode \"Playing\"", lambda: panel.mode() == "Playing")
    server.wait_for_sound("playing after the pause")
    # At first the display still shows the second in which the disc was paused.
    panel.wait_for_position("a later second than that of the pause",
                            lambda track, second: track == 1 and second > paused[1])

    start = server.position()
    panel.press("Next Track")
    panel.wait_for_position("the second track", lambda track, second: track == 2 and second >= 1)
    wait_for_played(server, part_of_track(sheet, 2, 0), "the second track's beginning", start)
    start = server.position()
    panel.press("Previous Track")
    # Within a track, "Previous Track" skips to the beginning of the track.
    wait_for_played(server, part_of_track(sheet, 2, 0),
                    "the second track's beginning for the second time", start)

    panel.press("Stop")
    server.wait_for_silence("stopped")
    check_equal(panel.position(), (2, 0), "the position after the stop")
    # At the beginning of a track, "Previous Track" skips to the track before.
    panel.press("Previous Track")
    panel.wait_for_position("the first track", lambda track, second: (track, second) == (1, 0))
    check(not any(server.latest()), "there is sound after a skip while the player is stopped")
    close(started)


def height_of(desktop, window):
    for line in desktop.xdotool("getwindowgeometry", "--shell", window):
        if line.startswith("HEIGHT="):
            return int(line.partition("=")[2])
    return None


def the_menus_resize_and_close_the_panel(desktop, program):
    started, _, _ = start_with_disc(desktop, program, SECONDS)
    panel = PlayerPanel(started)
    window = started.activate(TITLE)
    # Chooses the first entry of "CD Menu" by keyboard.
    desktop.press("alt+c")
    wait_for("the menu", lambda: started.find("CD On", "menu item"))
    desktop.press("c")
    wait_for("the disc", lambda: panel.mode() == "Cd Ready")
    full = height_of(desktop, window)
    started.choose_menu("CD Menu", "Show as Cube")
    wait_for("the cube", lambda: height_of(desktop, window) < full)
    wait_for("the display of the cube", lambda: panel.position() == (1, 0))

    def choose(entry):
        place = started.centre_of(started.get("Level meter"))
        started.choose_from_popup(lambda: desktop.click_at(*place, button=3), entry)

    choose("Play CD")
    panel.wait_for_position("playing", lambda track, second: second >= 1)
    choose("CD Off")
    wait_for("the mode \"OFF\"", lambda: panel.mode() == "OFF")
    check(not panel.is_enabled("Play"), "the button Play is enabled while the player is off")
    choose("Close CD Player")
    wait_for("the closing of the panel", lambda: started.window(TITLE) is None)

    started.choose_menu("Preferences", "CD Player", "Open")
    wait_for("the panel", lambda: started.window(TITLE))
    panel.switch_on()
    started.choose_menu("Preferences", "CD Player", "Close")
    wait_for("the closing of the panel", lambda: started.window(TITLE) is None)
    started.choose_menu("Preferences", "CD Player", "Open")
    wait_for("the panel", lambda: started.window(TITLE))
    check_equal(panel.mode(), "OFF", "the mode of a panel that was opened again")
    close(started)


def settled_extents(started, name, role):
    """Returns a function that reads the extents of the element. That function returns None while
    the element moves."""
    def read():
        first = started.extents(name, role)
        time.sleep(0.3)
        last = started.extents(name, role)
        same = first and last and (first.x, first.y) == (last.x, last.y)
        return last if same else None
    return read


def check_pointer_is_free(desktop, started, name, role):
    """Checks that the panel no longer follows the pointer."""
    before = wait_for("a panel at rest", settled_extents(started, name, role))
    desktop.move_to_point(before.x + 200, before.y + 200)
    after = wait_for("a panel at rest", settled_extents(started, name, role))
    check_equal((after.x, after.y), (before.x, before.y),
                f"the position of {name!r} after the drag")


def the_panel_is_dragged_by_its_display(desktop, program):
    started, panel, _, _ = start_playing(desktop, program, output="none")
    started.activate(TITLE)
    # A text of the display, the display's background, the meter and the meter's trace.
    for name, role in (("Track and time", "text"), ("Display", None), ("Level meter", None),
                       ("Sound Level Meter", None)):
        before = wait_for("a panel at rest", settled_extents(started, name, role))
        # The drag starts at the left edge of the element, because other widgets cover the middle
        # of some elements.
        grip = (before.x + 3, before.y + before.height // 2)
        desktop.drag(grip, (grip[0] - 60, grip[1] + 45))
        def moved():
            now = started.extents(name, role)
            return now and abs(now.x - before.x + 60) < 30 and abs(now.y - before.y - 45) < 30
        wait_for(f"the move of the panel, dragged by {name!r}", moved)
        check_pointer_is_free(desktop, started, name, role)
    _, second = panel.position()
    panel.wait_for_position("a later second of the track", lambda _, shown: shown > second)
    close(started)


def the_panel_is_operated_by_keyboard(desktop, program):
    started, _, _ = start_with_disc(desktop, program, SECONDS)
    panel = PlayerPanel(started)
    started.activate(TITLE)

    def press(name, role="push button"):
        started.tab_to(name, role)
        desktop.press("space")

    press("Open CD Player", "radio button")
    wait_for("the disc", lambda: panel.mode() == "Cd Ready" and panel.position() == (1, 0))
    press("Play")
    panel.wait_for_position("a second of the first track",
                            lambda track, second: track == 1 and second >= 1)
    press("Next Track")
    panel.wait_for_position("the second track", lambda track, _: track == 2)
    press("Pause")
    press("Play")
    wait_for("the mode \"Playing\"", lambda: panel.mode() == "Playing")
    press("Stop")
    track, _ = panel.wait_for_position("a track's beginning", lambda _, second: second == 0)
    press("Previous Track")
    panel.wait_for_position("the track before", lambda shown, _: shown == track - 1)
    # The menu key opens the popup menu; arrow keys select an entry.
    desktop.press("Menu")
    wait_for("the popup menu", lambda: started.find("mnuStopPlay", "menu item"))
    desktop.press("Down", "Down", "Return")  # "Play CD"
    panel.wait_for_position("playing", lambda _, second: second >= 1)
    press("Stop")
    wait_for("the enabled button Eject", lambda: panel.is_enabled("Eject"))
    press("Eject")
    wait_for("the empty drive", lambda: panel.mode() == "No CD")
    # The power switch is a group of two buttons: an arrow key selects the other button.
    started.tab_to("Open CD Player", "radio button")
    desktop.press("Down")
    wait_for("the mode \"OFF\"", lambda: panel.mode() == "OFF")
    close(started)


def removal_and_return_of_the_playing_disc_are_detected(desktop, program):
    server = SoundServer(desktop)
    started, panel, sheet, _ = start_playing(desktop, program)
    server.wait_for_sound("playing")
    kept = sheet.rename(sheet.with_name("away.cue"))
    wait_for("the empty drive", lambda: panel.mode() == "No CD")
    check(not any(panel.is_enabled(name) for name in TRANSPORT),
          "a transport button is enabled without a disc")
    check(panel.position() is not None, "the display shows no position")
    server.wait_for_silence("without a disc")
    kept.rename(sheet)
    wait_for("the disc", lambda: panel.mode() == "Cd Ready" and panel.position() == (1, 0))
    panel.press("Play")
    server.wait_for_sound("playing again")
    close(started)


def an_ejected_disc_is_detected(desktop, program):
    started, panel, _, _ = start_playing(desktop, program, output="none")
    panel.press("Stop")
    wait_for("the enabled button Eject", lambda: panel.is_enabled("Eject"))
    panel.press("Eject")
    wait_for("the empty drive", lambda: panel.mode() == "No CD")
    check(not any(panel.is_enabled(name) for name in TRANSPORT),
          "a transport button is enabled without a disc")
    started.click("CD Player Off", "radio button")
    wait_for("the mode \"OFF\"", lambda: panel.mode() == "OFF")
    check_equal(panel.position(), None, "the position while the player is off")
    close(started)


def a_capture_switches_the_player_off_and_is_silent(desktop, program):
    server = SoundServer(desktop)
    seconds = 3
    started, sheet, destination = start_with_disc(desktop, program, seconds, "default")
    panel = PlayerPanel(started)
    panel.switch_on()
    panel.press("Play")
    server.wait_for_sound("playing")
    start_row(started, f"Track  3 - 00:00:0{seconds}")
    wait_for("the capture", lambda: started.title == "Extracting Track 3")
    start = server.position()
    wait_for("the mode \"OFF\"", lambda: panel.mode() == "OFF")
    check(not panel.is_enabled("Play"), "the button Play is enabled during a capture")
    wait_for("the end of the capture", lambda: started.title == "Sonarith v2.0")
    found = wavs_by_track(destination)
    check_equal(list(found), [3], "tracks in the destination folder")
    check_run(found[3], disc_samples(sheet), 3, seconds)
    track = track_samples(disc_samples(sheet), 3, seconds)
    for second in range(seconds):
        part = track[bytes_of(second):bytes_of(second) + FRAME_RATE]
        check(find_run(server.played()[start:], part) < 0, "the capture was heard")
    close(started)


def another_disc_replaces_the_playing_disc(desktop, program):
    started, panel, sheet, _ = start_playing(desktop, program, output="none")
    # Replaces the image that plays.
    make_disc(sheet.parent, tracks=2, seconds=9, signal="ramp")
    wait_for("the other disc", lambda: panel.shows("Track time: 00:09:00"))

    # Another image is chosen in the Devices window. The player stays on.
    panel.press("Play")
    panel.wait_for_position("playing", lambda _, second: second >= 1)
    other = make_disc(desktop.home / "discs", name="other", tracks=2, seconds=7)
    started.choose_menu("Preferences", "Devices")
    started.click("Choose Disc Image...", "push button")
    wait_for("the file dialog", lambda: started.window("Choose Disc Image"))
    desktop.type(str(other))
    desktop.press("Return")
    wait_for("the length of the new disc", lambda: panel.shows("Track time: 00:07:00"))
    check_equal((panel.mode(), panel.position()), ("Cd Ready", (1, 0)),
                "the display of the new disc")
    started.click("Close", "push button")
    wait_for("the closing of the Devices window", lambda: started.window("Devices") is None)
    panel.press("Next Track")
    panel.wait_for_position("the second track of the new disc", lambda track, _: track == 2)
    close(started)


if __name__ == "__main__":
    run(a_disc_is_played_and_heard, the_menus_resize_and_close_the_panel,
        the_panel_is_dragged_by_its_display, the_panel_is_operated_by_keyboard,
        an_ejected_disc_is_detected, a_capture_switches_the_player_off_and_is_silent,
        another_disc_replaces_the_playing_disc, removal_and_return_of_the_playing_disc_are_detected)
