# SPDX-License-Identifier: GPL-3.0-or-later
"""Operates the program as users do, by mouse and keyboard and through the accessibility tree. Reads
the contents of its windows from this tree."""

import subprocess
import time

from gi.repository import GLib

from waiting import check, wait_for

MOST_LINES_WALKED = 200
# An element that has the same position after this time counts as not moving.
STILL_SECONDS = 0.05


class Program:
    """A running program: reads its windows and sends input to them."""

    def __init__(self, desktop, path):
        """Starts the program without waiting for its window."""
        self.desktop = desktop
        self.process = desktop.launch(path)
        self._atspi = desktop.atspi
        self._found = {}  # (name, role): the element that find() returned

    # The process.

    @property
    def running(self):
        return self.process.poll() is None

    def wait_for_end(self, what="the program's end"):
        wait_for(what, lambda: not self.running)
        return self.process.returncode

    def kill(self):
        self.process.kill()
        self.process.wait()

    # Contents of the windows. An element that is removed while it is read counts as missing.

    def _application(self):
        root = self._atspi.get_desktop(0)
        for i in range(root.get_child_count()):
            child = root.get_child_at_index(i)
            if child is not None and child.get_process_id() == self.process.pid:
                return child
        return None

    def _children(self, accessible):
        i, count = 0, accessible.get_child_count()
        while i < count:
            child = accessible.get_child_at_index(i)  # None if it was removed after the count
            if child is not None:
                yield child
            i += 1
            if i == count:
                count = accessible.get_child_count()  # children may have been added meanwhile

    def _walk(self, accessible, menus=False):
        """The element and the elements in it, without the contents of hidden elements and of long
        lists. Reading these contents would take too long: each property of an element takes a call
        to the program. With `menus`, the contents of hidden menus are included, because a visible
        popup menu can lie in a hidden menu. Use lines() for the lines of a long list."""
        yield accessible
        count = accessible.get_child_count()
        if count == 0:
            return
        if not self._shows(accessible):
            if not menus or accessible.get_role_name() not in ("menu item", "popup menu"):
                return
        elif count > MOST_LINES_WALKED and accessible.get_role_name() == "list":
            return
        for child in self._children(accessible):
            yield from self._walk(child, menus)

    def _tolerant(self, read, otherwise):
        while GLib.MainContext.default().iteration(False):
            pass
        try:
            return read()
        except GLib.Error:
            return otherwise

    def _shows(self, accessible):
        return accessible.get_state_set().contains(self._atspi.StateType.SHOWING)

    def top_windows(self):
        """The visible windows, including message boxes, each as its accessible element."""
        def read():
            application = self._application()
            return [] if application is None else [
                window for window in self._children(application) if self._shows(window)]
        return self._tolerant(read, [])

    def find(self, name, role=None, within=None):
        """The first visible element with this name, and with this role if given; None if there is
        none. Without `within`, first checks the element that an earlier call with this name and
        role returned."""
        def fits(element):
            return (element.get_name() == name and
                    (role is None or element.get_role_name() == role) and self._shows(element))
        def read():
            for window in [within] if within is not None else self.top_windows():
                for element in self._walk(window, menus=role in (None, "menu item")):
                    if fits(element):
                        return element
            return None
        if within is not None:
            return self._tolerant(read, None)
        known = self._found.get((name, role))
        if known is None or not self._tolerant(lambda: fits(known), False):
            known = self._found[name, role] = self._tolerant(read, None)
        return known

    def get(self, name, role=None, within=None):
        return wait_for(f"{role or 'element'} {name!r}", lambda: self.find(name, role, within))

    def window(self, title):
        def read():
            for window in self.top_windows():
                if window.get_name() == title:
                    return window
            return None
        return self._tolerant(read, None)

    @property
    def title(self):
        """The main window's caption."""
        return self._caption(self.main_window_id())

    def main_window_id(self):
        def read():
            for window in self.desktop.windows_of(self.process.pid):
                if self._caption(window).startswith(
                        ("Sonarith v2.0", "Extracting Track", "Decoding ")):
                    return window
            return None
        return wait_for("the main window", read)

    def window_id(self, title):
        """The visible X window with this caption; None if there is none."""
        return next((window for window in self.desktop.windows_of(self.process.pid)
                     if self._caption(window) == title), None)

    def _caption(self, window):
        """The caption of an X window; empty if the window no longer exists."""
        asked = subprocess.run(["xdotool", "getwindowname", window], check=False,
                               env=self.desktop.environment, capture_output=True, text=True)
        return asked.stdout.strip()

    def activate(self, title):
        """Activates a window and returns its X window."""
        window = wait_for(f"the window {title!r}", lambda: self.window_id(title))
        self.desktop.xdotool("windowactivate", "--sync", window)
        return window

    def extents(self, name, role=None):
        """The position and size of an element on the screen (x, y, width, height); None if there is
        no such element."""
        def read():
            element = self.find(name, role)
            return element and self.rectangle_of(element)
        return self._tolerant(read, None)

    def shows(self, element):
        return self._has_state(element, self._atspi.StateType.SHOWING)

    def is_checked(self, element):
        return self._has_state(element, self._atspi.StateType.CHECKED)

    def tab_to(self, name, role=None, most=40, within=None):
        """Presses the tab key until the element `name` of the active window has the focus. If
        `within` is set, searches for the element only inside it."""
        for _ in range(most):
            if self.has_focus(name, role, within):
                return
            self.desktop.press("Tab")
        check(self.has_focus(name, role, within),
              f"the tab key does not reach {role or 'element'} {name!r}")

    def _label_elements(self, bar):
        found = self.find(bar)
        return [] if found is None else [
            element for element in self._walk(found)
            if element.get_role_name() == "label" and self._shows(element)]

    def labels(self, bar):
        """The texts of the visible labels in a bar, in their order in the bar."""
        return self._tolerant(
            lambda: [element.get_name() for element in self._label_elements(bar)], [])

    def watch_labels(self, bar):
        """Finds the labels in a bar once, and returns a function that reads their current texts.
        The returned function is a hundred times as fast as labels(). It is for texts that are shown
        only for half a second."""
        elements = wait_for(f"the labels of {bar!r}", lambda: self._tolerant(
            lambda: self._label_elements(bar), []))
        return lambda: [element.get_name() for element in elements]

    def text(self, name, role="text"):
        """The content of a text field; None if there is no such field."""
        def read():
            field = self.find(name, role)
            return None if field is None else field.get_text(0, field.get_character_count())
        return self._tolerant(read, None)

    def lines(self, name):
        """The lines of a list box, from the first to the last."""
        def read():
            box = self.find(name, "list")
            return [] if box is None else [line.get_name() for line in self._children(box)]
        return self._tolerant(read, [])

    def click_line(self, box, line, button=1, times=1):
        """Clicks on a line of a list box; `button` is 1 (left) or 3 (right)."""
        def centre():
            within = self.find(box, "list")
            element = within and self.find(line, within=within)
            return element and self._tolerant(lambda: self.centre_of(element), None)
        self.desktop.click_at(*wait_for(f"the line {line!r} of {box!r}", centre), times, button)

    def open_window(self, button, title):
        """Clicks on a button of the main window to open another window. Returns the X window that
        was opened."""
        self.click(button, "push button")
        wait_for(f"the window {title!r}", lambda: self.window(title))
        return self.activate(title)

    def close_other(self, title):
        """Closes a window that is not the main window, as the window's close button does."""
        self.desktop.ask_to_close(wait_for(f"the window {title!r}",
                                           lambda: self.window_id(title)))
        wait_for(f"the closing of the window {title!r}", lambda: self.window(title) is None)

    def type_into(self, name, text):
        """Replaces the content of a text field."""
        self.click(name, "text")
        wait_for(f"the focus in {name!r}", lambda: self.has_focus(name, "text"))
        self.desktop.press("ctrl+a")
        self.desktop.type(text)

    def choose_from_popup(self, open_it, entry):
        """Calls `open_it` to open a popup menu, and clicks on an entry."""
        open_it()
        self.click(entry, "menu item")

    def value(self, name, role=None):
        def read():
            element = self.find(name, role)
            return None if element is None else element.get_current_value()
        return self._tolerant(read, None)

    def _has_state(self, element, state):
        return element is not None and self._tolerant(
            lambda: element.get_state_set().contains(state), False)

    def shows_enabled(self, element):
        return self._has_state(element, self._atspi.StateType.ENABLED)

    def is_enabled(self, name, role=None):
        return self.shows_enabled(self.find(name, role))

    def has_focus(self, name, role=None, within=None):
        return self._has_state(self.find(name, role, within), self._atspi.StateType.FOCUSED)

    # User input.

    def rectangle_of(self, element):
        """The position and size of an accessible element on the screen: x, y, width, height."""
        return element.get_extents(self._atspi.CoordType.SCREEN)

    def centre_of(self, element):
        box = self.rectangle_of(element)
        return box.x + box.width // 2, box.y + box.height // 2

    def _settled_centre(self, name, role=None, within=None):
        """Waits until an element exists and no longer moves. Returns its centre."""
        def read():
            element = self.find(name, role, within)
            return element and self._tolerant(lambda: self.centre_of(element), None)
        def settled():
            first = read()
            time.sleep(STILL_SECONDS)
            return first if first is not None and first == read() else None
        return wait_for(f"{role or 'element'} {name!r} to stop moving", settled)

    def click(self, name, role=None, times=1, within=None):
        """Waits until an element exists and no longer moves, then clicks on its centre."""
        self.desktop.click_at(*self._settled_centre(name, role, within), times)

    def choose_menu(self, *names):
        """Clicks on a menu of the menu bar, then on an entry of each menu that opens."""
        for name in names:
            self.click(name, "menu item")

    # Input through the accessibility tree, as assistive tools send it.

    def act(self, name, role, within=None):
        """Presses a button or toggles a check box."""
        element = self.get(name, role, within)
        actions = [element.get_action_name(i) for i in range(element.get_n_actions())]
        wanted = next((i for i, action in enumerate(actions)
                       if action in ("Press", "Toggle")), None)
        check(wanted is not None, f"{role} {name!r} has only the actions {actions}")
        check(element.do_action(wanted), f"{role} {name!r} refused its action")

    def set_text(self, name, text):
        """Replaces the content of a text field."""
        check(self.get(name, "text").set_text_contents(text), f"{name!r} refused the text")

    def select_line(self, box, index):
        """Selects a line of a list box."""
        check(self.get(box, "list").add_row_selection(index), f"{box!r} refused the selection")

    # The parts of the main window.

    def next_action(self):
        return (self.labels("Activity bar") or [""])[0]

    def figures(self):
        """The percentage, the number of captured bytes, and the value of the progress bar. Each is
        an int, or None if it is not displayed. "100 %" (the end of a decoding) counts as None."""
        labels = self.labels("Status bar")
        percent, captured = labels[1:3] if len(labels) == 3 else ("", "")
        progress = self.value("Progress")
        return (int(percent[:-1]) if percent[:-1].lstrip("-").isdigit() else None,
                int(captured.split()[0]) if captured.endswith(" Bytes") else None,
                None if progress is None else int(progress))

    def rows(self):
        """The texts of the work tree's rows that no collapsed row hides, from top to bottom."""
        def read():
            tree = self.find("Work tree")
            return [] if tree is None else [row.get_name() for row in self._children(tree)
                                            if row.get_role_name() == "table cell"]
        return self._tolerant(read, [])

    def group(self, name):
        """The texts of the rows below a group's row, up to the next row that is a heading."""
        rows = self.rows()
        if name not in rows:
            return []
        below = rows[rows.index(name) + 1:]
        headings = ("Tracks", "Folder", "Files")
        end = next((i for i, row in enumerate(below) if row.endswith(headings)), len(below))
        return below[:end]

    def wait_for_start(self):
        """Waits until the main window shows a filled tree and the player's panel is open. Returns
        the main window's X window."""
        def is_ready():
            check(self.running, "the program ended unexpectedly with the exit code "
                  f"{self.process.returncode}")
            return "MP3 Files" in self.rows()
        wait_for("the main window and its tree", is_ready)
        wait_for("the player's panel", lambda: self.window("CD Player"))
        return self.main_window_id()

    def wait_for_window(self):
        """Waits for the start. Then enlarges the main window so that it shows all rows of a small
        disc, and moves it to a position where the panel does not cover it."""
        main = self.wait_for_start()
        self.desktop.xdotool("windowsize", "--sync", main, 480, 720)
        self.desktop.xdotool("windowmove", main, 20, 20)
        self.desktop.xdotool("windowactivate", "--sync", main)

    def close_panel(self):
        """Closes the player's panel: some scenarios count windows or need the keyboard focus."""
        self.desktop.ask_to_close(self.window_id("CD Player"))
        wait_for("the closing of the panel", lambda: self.window("CD Player") is None)

    def open_row(self, name):
        """Expands a row of the tree by a click on the arrow before the row."""
        before = len(self.rows())
        def extents():
            row = self.find(name, "table cell")
            return row and self._tolerant(lambda: self.rectangle_of(row), None)
        box = wait_for(f"row {name!r}", extents)
        half_an_indent = 8  # pixels
        self.desktop.click_at(box.x - half_an_indent, box.y + box.height // 2)
        wait_for(f"the rows below {name!r}", lambda: len(self.rows()) > before)

    def click_row(self, name, times=1):
        self.click(name, "table cell", times)

    def drag_row(self, name, target):
        """Drags a row of the tree onto another row in one step, so that the pointer passes over no
        row between them."""
        self.desktop.drag(self._settled_centre(name, "table cell"),
                          self._settled_centre(target, "table cell"))

    def open_popup(self, name):
        """Opens the popup menu of a row by a right click."""
        self.desktop.click_at(*self._settled_centre(name, "table cell"), button=3)
        wait_for("the popup menu", lambda: self.find("Remove from List", "menu item"))

    def close_window(self):
        self.desktop.ask_to_close(self.main_window_id())
