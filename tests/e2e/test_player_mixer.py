# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the mixer of the CD player: its sliders and its switches."""

import array
import math

from driver import make_disc, run
from player_panel import TITLE, PlayerPanel, start_playing
from program import Program
from scenes import close
from sound import FRAME_RATE
from sound_server import SoundServer
from waiting import check, check_equal, wait_for

SMALLEST_STEP = 10 / 50  # how far one key press moves a slider, on its scale from 0 to 10
KEYS = 6  # key presses; they move a slider by more than 1, so that the integer beside it changes
BASS_HZ, TREBLE_HZ = 60, 9000
TONE_FRAMES = FRAME_RATE // 5  # whole periods of both tones


def write_tones(sheet):
    """Replaces the samples of an image by the sum of a low and a high tone."""
    binary = sheet.with_suffix(".bin")
    period = array.array("h")
    for frame in range(TONE_FRAMES):
        value = round(sum(5000 * math.sin(2 * math.pi * hertz * frame / FRAME_RATE)
                          for hertz in (BASS_HZ, TREBLE_HZ)))
        period.extend((value, value))
    size = binary.stat().st_size
    binary.write_bytes((period.tobytes() * (size // len(period.tobytes()) + 1))[:size])


def tone_level(server, hertz):
    """The amplitude of a tone in the latest sound of the server; None if the
    server has not played enough."""
    heard = array.array("h", server.latest())[0::2][-TONE_FRAMES:]
    if len(heard) < TONE_FRAMES:
        return None
    turns = [2 * math.pi * hertz * frame / FRAME_RATE for frame in range(TONE_FRAMES)]
    real = sum(value * math.cos(turn) for value, turn in zip(heard, turns))
    imaginary = sum(value * math.sin(turn) for value, turn in zip(heard, turns))
    return 2 * math.hypot(real, imaginary) / TONE_FRAMES


def wait_for_levels(server, what, bass, treble):
    """Waits until the amplitudes of both tones are within the bounds `bass` and `treble`, each a
    pair of the lowest and the highest amplitude."""
    def heard():
        levels = [tone_level(server, hertz) for hertz in (BASS_HZ, TREBLE_HZ)]
        return None not in levels and all(low <= level <= high for level, (low, high) in
                                          zip(levels, (bass, treble)))
    wait_for(what, heard)


def each_slider_is_heard(desktop, program):
    server = SoundServer(desktop)
    sheet = make_disc(desktop.home / "discs", tracks=2, seconds=90)
    write_tones(sheet)
    desktop.write_store(sheet, desktop.home / "My Music", "default")
    started = Program(desktop, program)
    started.wait_for_window()
    panel = PlayerPanel(started)
    panel.switch_on()
    at_rest = wait_for("a flat trace", lambda: (rows := panel.trace_rows()) and len(rows) < 4 and
                       rows)
    panel.press("Play")
    full, soft, low = (4800, 5200), (3800, 4700), (900, 3000)
    wait_for_levels(server, "both tones as they are on the disc", full, full)
    wait_for("a trace at the tones' height", lambda: (rows := panel.trace_rows()) and
             rows[-1] < at_rest[0] - 10)
    started.activate(TITLE)
    for name in ("Master", "CD"):
        started.tab_to(name, "slider")
        desktop.press(*["Down"] * KEYS)
        wait_for_levels(server, f"{name} turned down a little", soft, soft)
        panel.set_to_lowest(name)
        server.wait_for_silence(f"{name} turned down")
        desktop.press("End")
        wait_for(f"the number 10 of {name}", lambda: panel.number(name) == "10")
        wait_for_levels(server, f"{name} at its loudest", full, full)
    for name, levels in (("Bass", (low, full)), ("Treble", (full, low))):
        panel.set_to_lowest(name)
        wait_for_levels(server, f"{name} turned down", *levels)
        desktop.press(*["Prior"] * 5)
        wait_for(f"the number 4 or 5 of {name}", lambda: panel.number(name) in ("4", "5"))
        wait_for_levels(server, f"{name} in its middle", full, full)
    panel.press("Stop")
    wait_for("the trace at rest", lambda: panel.trace_rows() == at_rest)
    close(started)


def lines_are_muted_and_unmuted(server, panel):
    for line in ("Master", "CD"):
        panel.switch(line, "Mute")
        server.wait_for_silence(f"{line} is muted")
        _, second = panel.position()
        panel.wait_for_position("a later second while the line is muted",
                                lambda _, shown: shown > second)
        check(not any(server.latest()), f"there is sound although {line} is muted")
        panel.switch(line, "Unmute")
        server.wait_for_sound(f"{line} is unmuted")
    panel.switch("Wave", "Mute")
    wait_for("the muted wave line", lambda: panel.is_muted("Wave"))
    _, second = panel.position()
    panel.wait_for_position("a later second while the wave line is muted",
                            lambda _, shown: shown > second)
    check(any(server.latest()), "muting the wave line has silenced the disc")


def sliders_are_moved_by_keys(desktop, started, panel):
    started.activate(TITLE)
    for name, before in (("Master", 10), ("CD", 10), ("Bass", 5), ("Treble", 5)):
        check_equal(panel.number(name), str(before), f"the number of {name}")
        value = panel.slider(name)
        started.tab_to(name, "slider")
        desktop.press(*["Down"] * KEYS)
        wait_for(f"{name} lower", lambda: panel.slider(name) < value - (KEYS - 0.5) * SMALLEST_STEP)
        expected = str(int(panel.slider(name)))
        wait_for(f"the number {expected} of {name}", lambda: panel.number(name) == expected)
        check(int(expected) < before, f"the number of {name} has not fallen")
        desktop.press(*["Up"] * KEYS)
        wait_for(f"{name} as before", lambda: panel.number(name) == str(before))


def the_mixer_is_operated_and_heard(desktop, program):
    server = SoundServer(desktop)
    started, panel, _, _ = start_playing(desktop, program)
    # The power switch unmutes "Master" and "CD".
    server.wait_for_sound("unmuted")
    lines_are_muted_and_unmuted(server, panel)
    sliders_are_moved_by_keys(desktop, started, panel)
    panel.set_to_lowest("Master")
    server.wait_for_silence("turned down")
    close(started)


if __name__ == "__main__":
    run(the_mixer_is_operated_and_heard, each_slider_is_heard)
