# SPDX-License-Identifier: GPL-3.0-or-later
"""Operates the player's panel by mouse and keyboard. Reads the meter's trace from the
screen, and the other contents from the accessibility tree."""

import re
import subprocess

from scenes import start_with_disc
from waiting import wait_for

TITLE = "CD Player"
SECONDS = 30  # length of each track


class PlayerPanel:
    """The player's panel of a running program."""

    def __init__(self, started):
        self.started = started

    # Display.

    def mode(self):
        return self.started.text("Mode")

    def position(self):
        """The track and the seconds that the display shows; None while it shows no position."""
        shown = re.fullmatch(r"\[(\d+)\] (\d+):(\d+)", self.started.text("Track and time") or "")
        return shown and (int(shown[1]), int(shown[2]) * 60 + int(shown[3]))

    def shows(self, text):
        return self.started.find(text, "label") is not None

    def wait_for_position(self, what, holds):
        wait_for(what, lambda: (shown := self.position()) and holds(*shown))
        return self.position()

    def switch_on(self):
        """Switches the player on and waits until it has read the disc in the drive."""
        self.started.click("Open CD Player", "radio button")
        wait_for("the disc", lambda: self.mode() == "Cd Ready" and
                 self.position() == (1, 0))

    def press(self, name):
        self.started.click(name, "push button")

    def is_enabled(self, name):
        return self.started.is_enabled(name, "push button")

    # Mixer.

    def switch(self, line, name):
        """Clicks on the button `name` ("Mute" or "Unmute") of `line` ("Master", "Wave" or "CD")."""
        self.started.click(name, "radio button", within=self.started.get(line, "panel"))

    def is_muted(self, line):
        within = self.started.get(line, "panel")
        return self.started.is_checked(self.started.find("Mute", "radio button", within))

    def slider(self, name):
        """The value that a screen reader reads: 0 at the bottom of the slider, 10 at the top."""
        return self.started.value(name, "slider")

    def set_to_lowest(self, name):
        """Moves the slider to its lowest value by keyboard. The panel must be the active window."""
        self.started.tab_to(name, "slider")
        self.started.desktop.press("Home")
        wait_for(f"{name} at its lowest", lambda: self.slider(name) == 0)
        wait_for(f"the number 0 of {name}", lambda: self.number(name) == "0")

    def number(self, name):
        return self.started.text(f"{name} level")

    # Meter.

    def bar_height(self):
        """The visible height of the meter's bar in pixels."""
        clip = self.started.extents("Level")
        bar = self.started.extents("Level bar")
        return clip.y + clip.height - max(clip.y, bar.y) if clip and bar else 0

    def trace_rows(self):
        """The pixel rows of the sound level meter that contain a part of its green trace, numbered
        from 0 at the top."""
        box = self.started.extents("Sound Level Meter")
        taken = subprocess.run(
            ["import", "-window", "root", "-crop", f"{box.width}x{box.height}+{box.x}+{box.y}",
             "+repage", "-depth", "8", "rgb:-"], env=self.started.desktop.environment, check=True,
            capture_output=True)
        line = 3 * box.width
        rows = [taken.stdout[at:at + line] for at in range(0, len(taken.stdout), line)]
        return [number for number, row in enumerate(rows) if _is_green(row)]


def _is_green(row):
    return any(row[at + 1] > row[at] + 60 for at in range(0, len(row) - 2, 3))


def start_playing(desktop, program, output="default", seconds=SECONDS):
    started, sheet, destination = start_with_disc(desktop, program, seconds, output)
    panel = PlayerPanel(started)
    panel.switch_on()
    panel.press("Play")
    panel.wait_for_position("track 1 at 1 s or later", lambda track, second: track == 1 and
                            second >= 1)
    return started, panel, sheet, destination
