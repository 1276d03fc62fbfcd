# SPDX-License-Identifier: GPL-3.0-or-later
"""Another program with a window of its own, from which a file is dragged as from a file manager's."""

from waiting import check_equal, wait_for

# Where nothing of the program stands.
PLACE = (1040, 40)
MIDDLE = (PLACE[0] + 100, PLACE[1] + 60)


class FilesWindow:
    """The started stand-in for a file manager, and the one file in it."""

    def __init__(self, desktop, stand_in, path):
        self.desktop = desktop
        self._said = desktop.home / "files_window.log"
        with open(self._said, "wb") as log:
            self.process = desktop.launch(stand_in, str(path), log=log)
        self.window = wait_for("the other program's window",
                               lambda: next(iter(desktop.windows_of(self.process.pid)), None))
        desktop.xdotool("windowmove", "--sync", self.window, *PLACE)

    def said(self):
        return self._said.read_text().split()

    def activate(self):
        self.desktop.xdotool("windowactivate", "--sync", self.window)

    def hold_over(self, place):
        """Takes the file up and carries it to a place on the screen."""
        self.desktop.xdotool("mousemove", *MIDDLE, "mousedown", 1)
        self.desktop.move_slowly(MIDDLE, place)

    def let_go(self, expected):
        """Lets the file go, which then was "dropped" or "refused"."""
        self.desktop.xdotool("mouseup", 1)
        wait_for("the end of the drag", lambda: set(self.said()) & {"dropped", "refused"})
        check_equal(self.said()[-1], expected, "the end of the drag")

    def drop_on(self, place):
        self.hold_over(place)
        wait_for("a window that takes the file", lambda: "taken" in self.said())
        self.let_go("dropped")
