# SPDX-License-Identifier: GPL-3.0-or-later
"""Starts a virtual screen, a window manager, a message bus and the accessibility services. Starts
programs on this screen, with a separate home folder. Simulates mouse and keyboard input."""

import atexit
import contextlib
import ctypes
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import typing

from waiting import check, wait_for

# The size of the virtual screen in pixels.
SCREEN = (1280, 960)
# Longer than the double-click interval, so that two clicks at one position are no double click.
SECONDS_BETWEEN_CLICKS = 0.6
# The time that a user needs between two steps of a drag.
SECONDS_BETWEEN_DRAG_STEPS = 0.2
# A distance so long that the program treats the movement as a drag, and not as a click with an
# unsteady hand.
PIXELS_OF_A_DRAG = 16


def _adopt_orphans():
    """Makes this process inherit the children of the services when the services end."""
    set_child_subreaper = 36
    check(ctypes.CDLL(None).prctl(set_child_subreaper, 1, 0, 0, 0) == 0, "prctl failed")


def _end_adopted():
    """Kills the children that this process has inherited."""
    children = pathlib.Path("/proc/thread-self/children")
    while pids := [int(pid) for pid in children.read_text().split()]:
        for pid in pids:
            # A child that has already ended must be waited for, too.
            os.kill(pid, signal.SIGKILL)
            os.waitpid(pid, 0)


class Frame(typing.NamedTuple):
    """The rectangle of a window on the screen, including the window's frame, in pixels."""
    left: int
    top: int
    width: int
    height: int

    @property
    def right(self):
        return self.left + self.width


class Desktop:
    """The virtual screen and its services. Use as a context manager: the end of the context kills
    the services and all programs that were started on the screen."""

    def __init__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="sonarith-e2e-"))
        self.atspi = None
        self._processes = []
        self._programs = []
        self._window_manager = None
        self._bus = None
        self._last_click = (None, 0.0)
        self.environment = {
            **{key: os.environ[key] for key in ("PATH",) if key in os.environ},
            # These options make a sanitizer's report end the program, as in other tests.
            **{key: value for key, value in os.environ.items() if key.endswith("SAN_OPTIONS")},
            "LANG": "C.UTF-8",
            "XDG_RUNTIME_DIR": str(self.folder / "runtime"),
            "QT_QPA_PLATFORM": "xcb",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
        }
        self.move_to(self.folder / "home")

    def __enter__(self):
        atexit.register(self.close)
        _adopt_orphans()
        # A test that is ended by SIGTERM must clean up, too.
        signal.signal(signal.SIGTERM, lambda *_: sys.exit("ended from outside"))
        try:
            runtime = pathlib.Path(self.environment["XDG_RUNTIME_DIR"])
            runtime.mkdir(mode=0o700, exist_ok=True)
            self._start_screen()
            self._start_bus()
            self.start_window_manager()
            self.atspi = self._open_accessibility()
        except BaseException:
            self.close()
            raise
        return self

    def __exit__(self, *_):
        self.close()

    # Services.

    def _start(self, *command, **options):
        process = subprocess.Popen(command, env=self.environment, stdin=subprocess.DEVNULL,
                                   **{"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL,
                                      **options})
        self._processes.append(process)
        return process

    def _start_screen(self):
        reading, writing = os.pipe()
        # "-noreset": otherwise the server would reset itself when its last client disconnects.
        self._start("Xvfb", "-displayfd", str(writing), "-screen", "0",
                    "{}x{}x24".format(*SCREEN),
                    "-nolisten", "tcp", "-noreset", pass_fds=(writing,))
        os.close(writing)
        with os.fdopen(reading) as numbers:
            number = numbers.readline().strip()
        check(number, "the virtual screen did not start")
        self.environment["DISPLAY"] = f":{number}"

    def stop_window_manager(self):
        """Kills the window manager, so that the windows on the screen lose their frames."""
        self._window_manager.kill()
        self._window_manager.wait()

    def start_window_manager(self):
        self._window_manager = self._start("openbox", "--sm-disable")
        def manages():
            done = subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"],
                                   env=self.environment, check=False, capture_output=True,
                                   text=True)
            return "window id" in done.stdout
        wait_for("the window manager", manages)

    def _start_bus(self):
        # The bus's socket is in the runtime folder and not directly in /tmp: the package test runs
        # the program under chroot, where the program cannot see this machine's /tmp. In that test,
        # self.folder, and so the runtime folder, is inside the new root (clean_root.py).
        place = pathlib.Path(self.environment["XDG_RUNTIME_DIR"]) / "bus"
        self._bus = self._start("dbus-daemon", "--session", "--nofork", "--print-address=1",
                                f"--address=unix:path={place}", stdout=subprocess.PIPE, text=True)
        address = self._bus.stdout.readline().strip()
        check(address, "the message bus did not start")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        self._start("/usr/libexec/at-spi-bus-launcher", "--launch-immediately")

    @contextlib.contextmanager
    def hanging_bus(self):
        """In this context, the message bus accepts connections and messages but replies to none.
        The accessibility services have a bus of their own, which does not hang."""
        self._bus.send_signal(signal.SIGSTOP)
        try:
            yield
        finally:
            self._bus.send_signal(signal.SIGCONT)

    def _open_accessibility(self):
        # The accessibility library reads the bus address from this process's environment, and only
        # once.
        for key in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR", "AT_SPI_BUS_ADDRESS"):
            os.environ.pop(key, None)
            if key in self.environment:
                os.environ[key] = self.environment[key]
        import gi
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi
        wait_for("the accessibility bus", lambda: subprocess.run(
            ["dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus",
             "org.a11y.Bus.GetAddress"], env=self.environment, capture_output=True,
            check=False).returncode == 0)
        Atspi.init()
        Atspi.set_timeout(20_000, 20_000)  # milliseconds, long enough for a slow program
        # Values are not cached, since a cached value may be outdated.
        Atspi.get_desktop(0).set_cache_mask(Atspi.Cache.NONE)
        return Atspi

    def close(self):
        for process in reversed(self._processes):
            process.kill()
            process.wait()
            if process.stdout:
                process.stdout.close()
        self._processes.clear()
        _end_adopted()
        shutil.rmtree(self.folder, ignore_errors=True)

    # Programs and their environment.

    def move_to(self, home):
        """Sets the home folder of the programs that are started from now on."""
        self.home = pathlib.Path(home).absolute()
        self.environment.update({
            "HOME": str(self.home),
            "XDG_CONFIG_HOME": str(self.home / ".config"),
            "XDG_DATA_HOME": str(self.home / ".local/share"),
            "XDG_CACHE_HOME": str(self.home / ".cache"),
        })
        self.home.mkdir(parents=True, exist_ok=True)

    @property
    def store(self):
        return pathlib.Path(self.environment["XDG_CONFIG_HOME"]) / "sonarith" / "Sonarith v2.0.ini"

    def stored(self, section):
        """The keys and values of a section of the settings store, escaped as in the file."""
        if not self.store.exists():
            return {}
        text = self.store.read_text(encoding="utf-8")
        lines = text.partition(f"[{section}]\n")[2].partition("\n[")[0].splitlines()
        return dict(line.partition("=")[::2] for line in lines if "=" in line)

    def write_store(self, drive, destination, output="none", **settings):
        """Writes a settings store that selects a disc image, a destination folder and a sound
        output. `destination` is a machine path. It is stored as a path on drive C:, as in older
        versions, in which the home folder had no drive letter of its own."""
        escaped = ("C:" + str(destination).replace("/", "\\")).replace("\\", "\\\\")
        lines = ["[Devices]", f'Drive="{drive}"', f"Output={output}", "", "[Settings]",
                 f'DecodePath="{escaped}"', *(f"{key}={value}" for key, value in settings.items())]
        self.store.parent.mkdir(parents=True, exist_ok=True)
        self.store.write_text("\n".join(lines) + "\n", encoding="utf-8")

    def launch(self, program, *arguments, log=None):
        """Starts a program in the home folder and returns its process. The program's standard
        output is written to the open file `log`, if given, and otherwise to program.log. Its
        standard error is always written to program.log."""
        with open(self.home / "program.log", "ab") as errors:
            process = self._start(str(pathlib.Path(program).absolute()), *arguments,
                                  stdout=log or errors, stderr=errors, cwd=self.home)
        self._programs.append(process)
        return process

    def end_programs(self):
        """Kills the programs that launch() has started."""
        for process in self._programs:
            process.kill()
            process.wait()
        self._programs.clear()

    def program_output(self):
        log = self.home / "program.log"
        return log.read_text(errors="replace") if log.exists() else ""

    # User input.

    def xdotool(self, *arguments):
        done = subprocess.run(["xdotool", *map(str, arguments)], env=self.environment, check=True,
                              capture_output=True, text=True)
        return done.stdout.split()

    def move_to_point(self, x, y):
        self.xdotool("mousemove", x, y)

    def button(self, down, number=1):
        self.xdotool("mousedown" if down else "mouseup", number)

    def click_at(self, x, y, times=1, button=1):
        place, when = self._last_click
        if place == (x, y):
            time.sleep(max(0.0, when + SECONDS_BETWEEN_CLICKS - time.monotonic()))
        self.xdotool("mousemove", x, y, "click", "--repeat", times, "--delay", 40, button)
        self._last_click = ((x, y), time.monotonic())

    def drag(self, start, end):
        """Drags with the left button from one position to another. The pointer first moves a few
        pixels, so that the program detects a drag, and then to `end` in one step."""
        place, when = self._last_click
        if place == start:
            time.sleep(max(0.0, when + SECONDS_BETWEEN_CLICKS - time.monotonic()))
        aside = (start[0] + PIXELS_OF_A_DRAG, start[1])
        for step in (("mousemove", *start), ("mousedown", 1), ("mousemove", *aside),
                     ("mousemove", *end), ("mouseup", 1)):
            self.xdotool(*step)
            time.sleep(SECONDS_BETWEEN_DRAG_STEPS)

    def move_slowly(self, start, end, steps=8):
        """Moves the pointer in several steps, with a pause after each step: during a drag between
        two programs, the window below the pointer must acknowledge each step."""
        for step in range(1, steps + 1):
            x, y = (round(a + (b - a) * step / steps) for a, b in zip(start, end))
            self.move_to_point(x, y)
            time.sleep(SECONDS_BETWEEN_DRAG_STEPS / 2)

    def press(self, *keys):
        """Presses keys one after the other. The names of the keys are those of xdotool ("alt+a",
        "Return")."""
        self.xdotool("key", "--delay", 60, *keys)

    def type(self, text):
        self.xdotool("type", "--delay", 20, text)

    # Screen and windows.

    def screenshot(self, path, window="root"):
        subprocess.run(["import", "-frame", "-window", window, str(path)], env=self.environment,
                       check=True, capture_output=True)

    def windows_of(self, pid):
        """The visible X windows of a process."""
        done = subprocess.run(["xdotool", "search", "--onlyvisible", "--all", "--pid", str(pid),
                               "--name", ""], env=self.environment, check=False,
                              capture_output=True, text=True)
        return done.stdout.split()

    def _window_in_property(self, name, *window):
        """Reads a property that contains the number of an X window. Returns that window, or None if
        the property is missing or zero."""
        done = subprocess.run(["xprop", *window, name], env=self.environment, check=True,
                              capture_output=True, text=True)
        number = int(done.stdout.partition("#")[2].strip() or "0", 16)
        return str(number) if number else None

    def owner_of(self, window):
        """The X window that owns the given window (a window stays above its owner); None if there
        is no owner."""
        return self._window_in_property("WM_TRANSIENT_FOR", "-id", str(window))

    def frame_of(self, window):
        """The rectangle of a window on the screen, including its frame."""
        def lines(*command):
            done = subprocess.run([command[0], "-id", str(window), *command[1:]],
                                  env=self.environment, check=True, capture_output=True, text=True)
            return done.stdout.splitlines()
        values = dict(line.strip().split(":", 1) for line in lines("xwininfo")
                      if line.count(":") == 1)
        x, y, width, height = (int(values[key]) for key in (
            "Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        found = re.findall(r"\d+", "".join(lines("xprop", "_NET_FRAME_EXTENTS")).partition("=")[2])
        left, right, top, bottom = map(int, found or (0, 0, 0, 0))
        return Frame(x - left, y - top, width + left + right, height + top + bottom)

    def place(self, window, x, y):
        """Moves a window's upper left corner to a position on the screen."""
        self.xdotool("windowmove", "--sync", window, x, y)

    def activate(self, window):
        """Gives a window the keyboard focus."""
        self.xdotool("windowactivate", "--sync", window)

    def active_window(self):
        """The X window with the keyboard focus. None if no window has the focus: that is so for a
        moment while the focus moves to another window. xdotool fails in that moment."""
        return self._window_in_property("_NET_ACTIVE_WINDOW", "-root")

    def ask_to_close(self, window):
        """Makes the window manager ask a window to close, as a click on its close button does."""
        x11 = ctypes.CDLL("libX11.so.6")
        x11.XOpenDisplay.restype = ctypes.c_void_p
        x11.XDefaultRootWindow.restype = ctypes.c_ulong
        x11.XInternAtom.restype = ctypes.c_ulong
        display = ctypes.c_void_p(x11.XOpenDisplay(self.environment["DISPLAY"].encode()))
        check(display.value, "no connection to the virtual screen")
        message = _ClientMessage(type=33, send_event=1, display=display.value, window=int(window),
                                 message_type=x11.XInternAtom(display, b"_NET_CLOSE_WINDOW", 0),
                                 format=32)
        message.data[1] = 2  # the source of the request: a user, not an application
        redirect_and_notify = (1 << 20) | (1 << 19)
        root = ctypes.c_ulong(x11.XDefaultRootWindow(display))
        x11.XSendEvent(display, root, 0, ctypes.c_long(redirect_and_notify), ctypes.byref(message))
        x11.XCloseDisplay(display)


class _ClientMessage(ctypes.Structure):
    """XClientMessageEvent, padded to at least the size of XEvent."""
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong),
                ("message_type", ctypes.c_ulong), ("format", ctypes.c_int),
                ("data", ctypes.c_long * 5), ("padding", ctypes.c_long * 24)]
