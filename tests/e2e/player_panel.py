# SPDX-License-Identifier: GPL-3.0-or-later
"""Operates the player's panel as a user does: through the accessibility tree and the mouse."""

import re

from waiting import wait_for

TITLE = "CD Player"


class PlayerPanel:
    """The player's panel of a running program."""

    def __init__(self, started):
        self.started = started

    # Display.

    def mode(self):
        return self.started.text("Mode")

    def position(self):
        """(track, seconds) of the display; None while it shows no position."""
        shown = re.fullmatch(r"\[(\d+)\] (\d+):(\d+)", self.started.text("Track and time") or "")
        return shown and (int(shown[1]), int(shown[2]) * 60 + int(shown[3]))

    def shows(self, text):
        return self.started.find(text, "label") is not None

    def wait_for_position(self, what, holds):
        wait_for(what, lambda: (shown := self.position()) and holds(*shown))
        return self.position()

    def switch_on(self):
        """Switches the player on; a disc must be in the drive."""
        self.started.click("Open CD Player", "radio button")
        wait_for("the disc", lambda: self.mode() == "Cd Ready" and
                 self.position() == (1, 0))

    def press(self, name):
        self.started.click(name, "push button")

    def is_open(self, name):
        return self.started.is_enabled(name, "push button")

    # Mixer.

    def switch(self, line, name):
        """Mutes or unmutes a line ("Master", "Wave", "CD")."""
        self.started.click(name, "radio button", within=self.started.get(line, "panel"))

    def is_muted(self, line):
        within = self.started.get(line, "panel")
        return self.started.is_checked(self.started.find("Mute", "radio button", within))

    def slider(self, name):
        return int(self.started.value(name, "slider"))

    def number(self, name):
        return self.started.text(f"{name} level")

    # Meter.

    def bar_height(self):
        """The visible height of the bar in pixels."""
        clip = self.started.extents("Level")
        bar = self.started.extents("Level bar")
        return clip.y + clip.height - max(clip.y, bar.y) if clip and bar else 0
