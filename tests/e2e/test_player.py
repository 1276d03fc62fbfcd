# SPDX-License-Identifier: GPL-3.0-or-later
"""The player's panel plays a disc: display, transport, sound, mixer, the panel's shapes, and
playing during other actions of the program."""

from driver import make_disc, run
from player_panel import TITLE, PlayerPanel
from scenes import close, start_row, start_with_disc, wavs_by_track
from sound import FRAME_RATE, bytes_of, check_run, disc_samples, find_run, track_samples
from sound_server import SoundServer
from waiting import check, check_equal, wait_for

SECONDS = 30
TRANSPORT = ("Previous Track", "Play", "Pause", "Stop", "Next Track")
SMALLEST_STEP = 65535 // 50  # the least change of a slider by one key press
KEYS = 6  # that many steps change the number beside the slider


def part_of_track(sheet, number, second):
    """A quarter of a second of a track."""
    track = track_samples(disc_samples(sheet), number, SECONDS)
    start = bytes_of(second)
    return track[start:start + bytes_of(1) // 4]


def start_playing(desktop, program, output="default", seconds=SECONDS):
    started, sheet, destination = start_with_disc(desktop, program, seconds, output)
    panel = PlayerPanel(started)
    panel.switch_on()
    panel.press("Play")
    panel.wait_for_position("a second of the first track", lambda track, second: track == 1 and
                            second >= 1)
    return started, panel, sheet, destination


def wait_for_played(server, part, what, start=0):
    wait_for(f"{what} in the output", lambda: find_run(server.played()[start:], part) >= 0)


def the_player_plays_a_disc(desktop, program):
    server = SoundServer(desktop)
    started, sheet, _ = start_with_disc(desktop, program, SECONDS, "default")
    panel = PlayerPanel(started)
    check_equal(panel.mode(), "OFF", "the mode before")
    check(not any(panel.is_open(name) for name in TRANSPORT),
          "buttons are enabled while the player is off")
    panel.switch_on()
    check(panel.shows(f"Track time: 00:{SECONDS}:00"), "the length of the track is not shown")
    check(all(panel.is_open(name) for name in (*TRANSPORT, "Eject")),
          "buttons are disabled with a disc")
    check(not any(server.latest()), "sound before the player plays")
    low = panel.bar_height()

    panel.press("Play")
    panel.wait_for_position("two seconds", lambda track, second: track == 1 and second >= 2)
    wait_for_played(server, part_of_track(sheet, 1, 0), "the first track's beginning")
    wait_for("the bar to rise", lambda: panel.bar_height() > low + 5)
    check(not panel.is_open("Eject"), "Eject is enabled while the player plays")

    panel.press("Pause")
    server.wait_for_silence("paused")
    paused = panel.position()
    wait_for("the bar to sink", lambda: panel.bar_height() == low)
    check(not any(server.latest()), "sound during a pause")
    check_equal(panel.position(), paused, "the position in a pause")
    panel.press("Play")
    wait_for("the mode", lambda: panel.mode() == "Playing")
    server.wait_for_sound("going on")
    # It continues in the second at which it paused.
    panel.wait_for_position("moving on", lambda track, second: track == 1 and second > paused[1])

    start = server.position()
    panel.press("Next Track")
    panel.wait_for_position("the second track", lambda track, second: track == 2 and second >= 1)
    wait_for_played(server, part_of_track(sheet, 2, 0), "the second track's beginning", start)
    start = server.position()
    panel.press("Previous Track")
    # Within a track, the button goes to the beginning of the track.
    wait_for_played(server, part_of_track(sheet, 2, 0), "the second track again", start)

    panel.press("Stop")
    server.wait_for_silence("stopped")
    check_equal(panel.position(), (2, 0), "the position after the stop")
    # At the beginning of a track, the button goes to the previous track.
    panel.press("Previous Track")
    panel.wait_for_position("the first track", lambda track, second: (track, second) == (1, 0))
    check(not any(server.latest()), "sound after a skip while the player is stopped")
    close(started)


def check_mute_of_each_line(server, panel):
    for line in ("Master", "CD"):
        panel.switch(line, "Mute")
        server.wait_for_silence(f"{line} is muted")
        _, second = panel.position()
        panel.wait_for_position("playing on while muted", lambda _, shown: shown > second)
        check(not any(server.latest()), f"sound although {line} is muted")
        panel.switch(line, "Unmute")
        server.wait_for_sound(f"{line} is unmuted")
    panel.switch("Wave", "Mute")
    wait_for("the muted wave line", lambda: panel.is_muted("Wave"))
    _, second = panel.position()
    panel.wait_for_position("going on", lambda _, shown: shown > second)
    check(any(server.latest()), "muting the wave line has muted the disc")


def check_sliders(desktop, started, panel):
    started.activate(TITLE)
    for name, before in (("Master", 10), ("CD", 10), ("Bass", 5), ("Treble", 5)):
        check_equal(panel.number(name), str(before), f"the number of {name}")
        value = panel.slider(name)
        started.tab_to(name, "slider")
        # The scale is inverted: the least value is the loudest.
        desktop.press(*["Down"] * KEYS)
        wait_for(f"{name} lower", lambda: panel.slider(name) >= value + KEYS * SMALLEST_STEP)
        expected = str((65535 - panel.slider(name)) // 6553)
        wait_for(f"the number {expected} of {name}", lambda: panel.number(name) == expected)
        check(int(expected) < before, f"the number of {name} is not lower")
        desktop.press(*["Up"] * KEYS)
        wait_for(f"{name} as before", lambda: panel.number(name) == str(before))


def the_mixer_changes_the_sound(desktop, program):
    server = SoundServer(desktop)
    started, panel, _, _ = start_playing(desktop, program)
    # The power switch unmutes both lines.
    server.wait_for_sound("unmuted")
    check_mute_of_each_line(server, panel)
    check_sliders(desktop, started, panel)
    started.tab_to("Master", "slider")
    desktop.press("End")
    wait_for("the lowest level", lambda: panel.slider("Master") == 65535)
    wait_for("its number", lambda: panel.number("Master") == "0")
    server.wait_for_silence("turned down")
    close(started)


def height_of(desktop, window):
    for line in desktop.xdotool("getwindowgeometry", "--shell", window):
        if line.startswith("HEIGHT="):
            return int(line.partition("=")[2])
    return None


def the_menus_change_the_shape_and_close_the_panel(desktop, program):
    started, _, _ = start_with_disc(desktop, program, SECONDS)
    panel = PlayerPanel(started)
    window = started.activate(TITLE)
    # Chooses the first entry of the menu by keys.
    desktop.press("alt+c")
    wait_for("the menu", lambda: started.find("CD On", "menu item"))
    desktop.press("c")
    wait_for("the disc", lambda: panel.mode() == "Cd Ready")
    full = height_of(desktop, window)
    started.choose_menu("CD Menu", "Show as Cube")
    wait_for("the cube", lambda: height_of(desktop, window) < full)
    wait_for("the display of the cube", lambda: panel.position() == (1, 0))

    def choose(mnemonic):
        place = started.centre_of(started.get("Level meter"))
        started.choose_from_popup(lambda: desktop.click_at(*place, button=3), mnemonic)

    choose("p")  # "Play CD"
    panel.wait_for_position("playing", lambda track, second: second >= 1)
    choose("o")  # "CD Off"
    wait_for("the switched-off player", lambda: panel.mode() == "OFF")
    check(not panel.is_open("Play"), "Play is enabled while the player is off")
    choose("l")  # "Close CD Player"
    wait_for("the closed panel", lambda: started.window(TITLE) is None)

    started.choose_menu("Preferences", "CD Player", "Open")
    wait_for("the panel", lambda: started.window(TITLE))
    panel.switch_on()
    started.choose_menu("Preferences", "CD Player", "Close")
    wait_for("the closed panel", lambda: started.window(TITLE) is None)
    started.choose_menu("Preferences", "CD Player", "Open")
    wait_for("the panel", lambda: started.window(TITLE))
    check_equal(panel.mode(), "OFF", "the mode of a panel that was opened again")
    close(started)


def ejecting_shows_an_empty_drive(desktop, program):
    started, panel, _, _ = start_playing(desktop, program, output="none")
    panel.press("Stop")
    wait_for("the open button", lambda: panel.is_open("Eject"))
    panel.press("Eject")
    wait_for("the empty drive", lambda: panel.mode() == "No CD")
    check(not any(panel.is_open(name) for name in TRANSPORT), "buttons are open without a disc")
    started.click("CD Player Off", "radio button")
    wait_for("the switched-off player", lambda: panel.mode() == "OFF")
    check_equal(panel.position(), None, "the position while it is off")
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
    wait_for("the switched-off player", lambda: panel.mode() == "OFF")
    check(not panel.is_open("Play"), "Play is enabled during a capture")
    wait_for("the end of the capture", lambda: started.title == "Sonarith v2.0")
    found = wavs_by_track(destination)
    check_equal(list(found), [3], "tracks in the destination folder")
    check_run(found[3], disc_samples(sheet), 3, seconds)
    track = track_samples(disc_samples(sheet), 3, seconds)
    for second in range(seconds):
        part = track[bytes_of(second):bytes_of(second) + FRAME_RATE]
        check(find_run(server.played()[start:], part) < 0, "the capture was audible")
    close(started)


def the_player_shows_another_disc_that_replaces_the_playing_one(desktop, program):
    started, panel, sheet, _ = start_playing(desktop, program, output="none")
    # Replaces the image that is playing.
    make_disc(sheet.parent, tracks=2, seconds=9, signal="ramp")
    wait_for("the other disc", lambda: panel.shows("Track time: 00:09:00"))

    # An image chosen in the Devices window: the main window reads it, which closes the device that
    # it shares with the player.
    other = make_disc(desktop.home / "discs", name="other", tracks=2, seconds=7)
    started.choose_menu("Preferences", "Devices")
    started.click("Choose Disc Image...", "push button")
    wait_for("the file dialog", lambda: started.window("Choose Disc Image"))
    desktop.type(str(other))
    desktop.press("Return")
    wait_for("the player without its disc", lambda: panel.mode() == "No CD")
    check(not any(panel.is_open(name) for name in TRANSPORT), "buttons are open without a disc")
    started.click("Close", "push button")
    wait_for("the closed Devices window", lambda: started.window("Devices") is None)
    started.click("CD Player Off", "radio button")
    panel.switch_on()
    check(panel.shows("Track time: 00:07:00"), "the length is not the new disc's")
    panel.press("Next Track")
    panel.wait_for_position("its second track", lambda track, _: track == 2)
    close(started)


if __name__ == "__main__":
    run(the_player_plays_a_disc, the_mixer_changes_the_sound,
        the_menus_change_the_shape_and_close_the_panel, ejecting_shows_an_empty_drive,
        a_capture_switches_the_player_off_and_is_silent,
        the_player_shows_another_disc_that_replaces_the_playing_one)
