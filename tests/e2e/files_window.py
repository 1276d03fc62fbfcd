# SPDX-License-Identifier: GPL-3.0-or-later
"""Drags a file from the window of drag_source, a test program that replaces a file manager."""

from waiting import check_equal, wait_for

# The upper left corner of drag_source's window on the screen: outside the windows of the program
# under test.
POSITION = (1040, 40)
MIDDLE = (POSITION[0] + 100, POSITION[1] + 60)


class FilesWindow:
    """A running drag_source with the file that can be dragged from its window."""

    def __init__(self, desktop, drag_source, path):
        self.desktop = desktop
        self._log = desktop.home / "files_window.log"
        with open(self._log, "wb") as log:
            self.process = desktop.launch(drag_source, str(path), log=log)
        self.window = wait_for("the window of drag_source",
                               lambda: next(iter(desktop.windows_of(self.process.pid)), None))
        desktop.place(self.window, *POSITION)

    def output(self):
        return self._log.read_text().split()

    def activate(self):
        self.desktop.activate(self.window)

    def hold_over(self, position):
        """Begins a drag of the file and moves the pointer to `position` on the screen."""
        self.desktop.move_to_point(*MIDDLE)
        self.desktop.button(True)
        self.desktop.move_slowly(MIDDLE, position)

    def drop(self, expected):
        """Ends the drag and checks its outcome: `expected` is "dropped" or "refused"."""
        self.desktop.button(False)
        wait_for("the end of the drag", lambda: set(self.output()) & {"dropped", "refused"})
        check_equal(self.output()[-1], expected, "the outcome of the drag")

    def drop_on(self, position):
        self.hold_over(position)
        wait_for("a window that accepts the file", lambda: "accepted" in self.output())
        self.drop("dropped")
