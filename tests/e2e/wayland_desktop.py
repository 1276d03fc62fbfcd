# SPDX-License-Identifier: GPL-3.0-or-later
"""Starts a Wayland compositor, which needs no screen, and operates the program on it. No X server
is started, so all programs use Wayland."""

import json
import os
import shutil
import subprocess
import time

from desktop import (PIXELS_OF_A_DRAG, SCREEN, SECONDS_BETWEEN_CLICKS, SECONDS_BETWEEN_DRAG_STEPS,
                     Desktop)
from program import Program
from waiting import check, wait_for
from wayland_input import WaylandInput

# Windows are not tiled and have no frame, so that a window and its contents have the same position.
CONFIGURATION = f"""xwayland disable
output HEADLESS-1 resolution {SCREEN[0]}x{SCREEN[1]}
default_floating_border none
focus_follows_mouse no
for_window [app_id=".*"] floating enable
"""
# After the compositor has moved or resized a window, it shows the window's old picture until the
# program has responded, but for 0.2 s at most. A press on the old picture would drag the window, so
# the tests wait longer than 0.2 s.
SECONDS_OF_A_CHANGE = 0.5
# The compositor refuses to run as root.
ORDINARY_USER, ORDINARY_GROUP = "nobody", "nogroup"


class WaylandDesktop(Desktop):
    """The compositor as a Desktop. Windows are identified by the numbers that the compositor gives
    them."""

    def __init__(self):
        super().__init__()
        # Without this variable the program itself chooses Wayland, as on a user's desktop.
        self.environment.pop("QT_QPA_PLATFORM")
        self.environment["XDG_SESSION_TYPE"] = "wayland"
        self._input = None

    def _start_screen(self):
        # The compositor gets a folder of its own, because it may run as another user.
        folder = self.folder / "screen"
        folder.mkdir(mode=0o700)
        (folder / "config").write_text(CONFIGURATION)
        command = ["sway", "--config", str(folder / "config")]
        if os.geteuid() == 0:
            self.folder.chmod(0o711)
            shutil.chown(folder, ORDINARY_USER, ORDINARY_GROUP)
            command = ["setpriv", f"--reuid={ORDINARY_USER}", f"--regid={ORDINARY_GROUP}",
                       "--clear-groups", *command]
        own = {"XDG_RUNTIME_DIR": str(folder), "HOME": str(folder), "WLR_BACKENDS": "headless",
               "WLR_RENDERER": "pixman", "WLR_LIBINPUT_NO_DEVICES": "1", "LIBSEAT_BACKEND": "noop"}
        compositor = subprocess.Popen(
            command, env={**self.environment, **own}, stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=(self.folder / "sway.log").open("wb"))
        self._processes.append(compositor)

        def socket(pattern):
            check(compositor.poll() is None, "the compositor did not start:\n" +
                  (self.folder / "sway.log").read_text(errors="replace"))
            return next((path for path in folder.glob(pattern) if path.is_socket()), None)
        self.environment["WAYLAND_DISPLAY"] = str(
            wait_for("the compositor's display socket", lambda: socket("wayland-*")))
        self.environment["SWAYSOCK"] = str(
            wait_for("the compositor's command socket", lambda: socket("sway-ipc.*")))
        self._input = WaylandInput(self.environment["WAYLAND_DISPLAY"], SCREEN)

    def start_window_manager(self):
        pass  # the compositor is the window manager, too

    def _order(self, *words):
        done = subprocess.run(["swaymsg", "--raw", *map(str, words)], env=self.environment,
                              check=True, capture_output=True, text=True)
        return json.loads(done.stdout)

    def close(self):
        if self._input:
            self._input.close()
            self._input = None
        super().close()

    # Windows.

    def nodes(self):
        """The visible windows except popups. Each is a dictionary with (among others) id, pid,
        name, app_id, focused and rect."""
        found = []
        def walk(node):
            if node.get("pid") and node.get("visible"):
                found.append(node)
            for child in node["nodes"] + node["floating_nodes"]:
                walk(child)
        walk(self._order("-t", "get_tree"))
        return found

    def windows_of(self, pid):
        return [node["id"] for node in self.nodes() if node["pid"] == pid]

    def active_window(self):
        return next((node["id"] for node in self.nodes() if node["focused"]), None)

    def activate(self, window):
        self._order(f"[con_id={window}] focus")

    def place(self, window, x, y):
        self._order(f"[con_id={window}] move absolute position {x} {y}")
        time.sleep(SECONDS_OF_A_CHANGE)

    def resize(self, window, width, height):
        self._order(f"[con_id={window}] resize set {width} px {height} px")
        time.sleep(SECONDS_OF_A_CHANGE)

    def ask_to_close(self, window):
        self._order(f"[con_id={window}] kill")

    def screenshot(self, path, window="root"):
        options = []
        if window != "root":
            rect = next(node["rect"] for node in self.nodes() if node["id"] == window)
            options = ["-g", "{x},{y} {width}x{height}".format(**rect)]
        subprocess.run(["grim", *options, str(path)], env=self.environment, check=True,
                       capture_output=True)

    # User input.

    def xdotool(self, *arguments):
        raise AssertionError("there is no X server")

    def move_to_point(self, x, y):
        self._input.move(round(x), round(y))

    def button(self, down, number=1):
        self._input.button(down, number)

    def click_at(self, x, y, times=1, button=1):
        place, when = self._last_click
        if place == (x, y):
            time.sleep(max(0.0, when + SECONDS_BETWEEN_CLICKS - time.monotonic()))
        self.move_to_point(x, y)
        for _ in range(times):
            self.button(True, button)
            self.button(False, button)
            time.sleep(0.04)
        self._last_click = ((x, y), time.monotonic())

    def drag(self, start, end):
        aside = (start[0] + PIXELS_OF_A_DRAG, start[1])
        self.move_to_point(*start)
        self.button(True)
        for place in (aside, end):
            self.move_to_point(*place)
            time.sleep(SECONDS_BETWEEN_DRAG_STEPS)
        self.button(False)

    def press(self, *keys):
        for key in keys:
            self._input.press(key)
            time.sleep(0.06)

    def type(self, text):
        raise AssertionError("this desktop does not simulate the typing of texts")


class WaylandProgram(Program):
    """A program under Wayland. The program does not know the positions of its windows, so this
    class corrects the positions in the accessibility tree by the positions that the compositor
    reports."""

    def node(self, title):
        """The visible window with this caption, as WaylandDesktop.nodes() returns it, or None."""
        return next((node for node in self.desktop.nodes()
                     if node["pid"] == self.process.pid and node["name"] == title), None)

    def wait_for_node(self, title):
        return wait_for(f"the window {title!r}", lambda: self.node(title))

    def window_id(self, title):
        node = self.node(title)
        return node and node["id"]

    def activate(self, title):
        window = self.wait_for_node(title)["id"]
        self.desktop.activate(window)
        return window

    def main_window_id(self):
        def look():
            return next((node["id"] for node in self.desktop.nodes()
                         if node["pid"] == self.process.pid and node["name"].startswith(
                             ("Sonarith v2.0", "Extracting Track", "Decoding "))), None)
        return wait_for("the main window", look)

    @property
    def title(self):
        main = self.main_window_id()
        return next(node["name"] for node in self.desktop.nodes() if node["id"] == main)

    def rectangle_of(self, element):
        top = element
        while (above := top.get_parent()) is not None and above.get_role_name() != "application":
            top = above
        box = super().rectangle_of(element)
        if (node := self.node(top.get_name())) is not None:
            believed = super().rectangle_of(top)
            box.x += node["rect"]["x"] - believed.x
            box.y += node["rect"]["y"] - believed.y
        return box

    def wait_for_window(self):
        def is_ready():
            check(self.running, "the program ended by itself with the exit code "
                  f"{self.process.returncode}")
            return "MP3 Files" in self.rows()
        wait_for("the main window and its tree", is_ready)
        panel = self.wait_for_node("CD Player")["id"]
        main = self.main_window_id()
        self.desktop.resize(main, 480, 720)
        self.desktop.place(main, 20, 20)
        self.desktop.place(panel, 560, 20)
        self.desktop.activate(main)
