# SPDX-License-Identifier: GPL-3.0-or-later
"""A virtual screen with a window manager, a message bus and the accessibility services, a home of
its own for the programs started on it, and a person's hands: mouse and keys."""

import atexit
import ctypes
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

from waiting import check, wait_for

# Longer than a desktop's double click, so that two clicks on one place stay two.
SECONDS_BETWEEN_CLICKS = 0.6
# As a hand needs them; the program is not the faster for it, and not the slower.
SECONDS_BETWEEN_DRAG_STEPS = 0.2
# More than a hand that trembles while it clicks.
PIXELS_OF_A_DRAG = 16


def _adopt_orphans():
    """What the services have started becomes this process's when they end."""
    set_child_subreaper = 36
    check(ctypes.CDLL(None).prctl(set_child_subreaper, 1, 0, 0, 0) == 0, "prctl failed")


def _end_adopted():
    children = pathlib.Path("/proc/thread-self/children")
    while pids := [int(pid) for pid in children.read_text().split()]:
        for pid in pids:
            # One that ended meanwhile is waited for all the same.
            os.kill(pid, signal.SIGKILL)
            os.waitpid(pid, 0)


class Desktop:
    """The virtual screen and its services. Use as a context; everything ends with it."""

    def __init__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="sonarith-e2e-"))
        self.atspi = None
        self._processes = []
        self._programs = []
        self._last_click = (None, 0.0)
        self.environment = {
            **{key: os.environ[key] for key in ("PATH",) if key in os.environ},
            # Reports of the sanitizers, if the program has any, are to end it as they do elsewhere.
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
        # A killed test, too, leaves nothing behind.
        signal.signal(signal.SIGTERM, lambda *_: sys.exit("ended from outside"))
        try:
            runtime = pathlib.Path(self.environment["XDG_RUNTIME_DIR"])
            runtime.mkdir(mode=0o700, exist_ok=True)
            self._start_screen()
            self._start_bus()
            self._start_window_manager()
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
        # Without a reset: else it would throw everybody out when its first client leaves.
        self._start("Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x960x24",
                    "-nolisten", "tcp", "-noreset", pass_fds=(writing,))
        os.close(writing)
        with os.fdopen(reading) as numbers:
            number = numbers.readline().strip()
        check(number, "the virtual screen did not start")
        self.environment["DISPLAY"] = f":{number}"

    def _start_window_manager(self):
        self._start("openbox", "--sm-disable")
        def manages():
            asked = subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"],
                                   env=self.environment, check=False, capture_output=True,
                                   text=True)
            return "window id" in asked.stdout
        wait_for("the window manager", manages)

    def _start_bus(self):
        bus = self._start("dbus-daemon", "--session", "--nofork", "--print-address=1",
                          stdout=subprocess.PIPE, text=True)
        address = bus.stdout.readline().strip()
        check(address, "the message bus did not start")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        self._start("/usr/libexec/at-spi-bus-launcher", "--launch-immediately")

    def _open_accessibility(self):
        # The library finds the bus through the environment, once for a process.
        for key in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"):
            os.environ[key] = self.environment[key]
        os.environ.pop("AT_SPI_BUS_ADDRESS", None)
        import gi
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi
        wait_for("the accessibility bus", lambda: subprocess.run(
            ["dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus",
             "org.a11y.Bus.GetAddress"], env=self.environment, capture_output=True,
            check=False).returncode == 0)
        Atspi.init()
        Atspi.set_timeout(20_000, 20_000)  # milliseconds; a slow program is no dead one
        # What is remembered would be a picture of a moment ago.
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

    # The program's surroundings.

    def move_to(self, home):
        """Gives the programs that start from now on another home."""
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
        """The values of a section of the store by their keys, both as the file writes them."""
        if not self.store.exists():
            return {}
        text = self.store.read_text(encoding="utf-8")
        lines = text.partition(f"[{section}]\n")[2].partition("\n[")[0].splitlines()
        return dict(line.partition("=")[::2] for line in lines if "=" in line)

    def write_store(self, drive, destination, output="none", **settings):
        """The settings store with this disc in the drive, this folder (a path of the machine) as
        the destination, and this sound output. The path is written as before the home had a drive
        letter."""
        escaped = ("C:" + str(destination).replace("/", "\\")).replace("\\", "\\\\")
        lines = ["[Devices]", f'Drive="{drive}"', f"Output={output}", "", "[Settings]",
                 f'DecodePath="{escaped}"', *(f"{key}={value}" for key, value in settings.items())]
        self.store.parent.mkdir(parents=True, exist_ok=True)
        self.store.write_text("\n".join(lines) + "\n", encoding="utf-8")

    def launch(self, program, *arguments, log=None):
        """Starts a program in this home; its process. What it says is kept, in the open file `log`
        if one is given."""
        with open(self.home / "program.log", "ab") as errors:
            process = self._start(str(pathlib.Path(program).absolute()), *arguments,
                                  stdout=log or errors, stderr=errors, cwd=self.home)
        self._programs.append(process)
        return process

    def end_programs(self):
        for process in self._programs:
            process.kill()
            process.wait()
        self._programs.clear()

    def program_output(self):
        log = self.home / "program.log"
        return log.read_text(errors="replace") if log.exists() else ""

    # Hands.

    def xdotool(self, *arguments):
        done = subprocess.run(["xdotool", *map(str, arguments)], env=self.environment, check=True,
                              capture_output=True, text=True)
        return done.stdout.split()

    def click_at(self, x, y, times=1, button=1):
        place, when = self._last_click
        if place == (x, y):
            time.sleep(max(0.0, when + SECONDS_BETWEEN_CLICKS - time.monotonic()))
        self.xdotool("mousemove", x, y, "click", "--repeat", times, "--delay", 40, button)
        self._last_click = ((x, y), time.monotonic())

    def drag(self, start, end):
        """With the left button from one place to the other: a little aside, as a hand begins, and
        then in one leap."""
        place, when = self._last_click
        if place == start:
            time.sleep(max(0.0, when + SECONDS_BETWEEN_CLICKS - time.monotonic()))
        aside = (start[0] + PIXELS_OF_A_DRAG, start[1])
        for step in (("mousemove", *start), ("mousedown", 1), ("mousemove", *aside),
                     ("mousemove", *end), ("mouseup", 1)):
            self.xdotool(*step)
            time.sleep(SECONDS_BETWEEN_DRAG_STEPS)

    def move_slowly(self, start, end, steps=8):
        """Moves the pointer, whatever is down, in so many steps: who drags something between
        programs has to be answered on the way."""
        for step in range(1, steps + 1):
            x, y = (round(a + (b - a) * step / steps) for a, b in zip(start, end))
            self.xdotool("mousemove", x, y)
            time.sleep(SECONDS_BETWEEN_DRAG_STEPS / 2)

    def press(self, *keys):
        """Keys one after the other, in xdotool's writing ("alt+a", "Return")."""
        self.xdotool("key", "--delay", 60, *keys)

    def type(self, text):
        self.xdotool("type", "--delay", 20, text)

    # Eyes.

    def screenshot(self, path, window="root"):
        subprocess.run(["import", "-frame", "-window", window, str(path)], env=self.environment,
                       check=True, capture_output=True)

    def windows_of(self, pid):
        """The X windows on the screen that a process shows."""
        done = subprocess.run(["xdotool", "search", "--onlyvisible", "--all", "--pid", str(pid),
                               "--name", ""], env=self.environment, check=False,
                              capture_output=True, text=True)
        return done.stdout.split()

    def owner_of(self, window):
        """The X window that a window belongs to and stands above; None for none."""
        done = subprocess.run(["xprop", "-id", str(window), "WM_TRANSIENT_FOR"], check=True,
                              env=self.environment, capture_output=True, text=True)
        number = done.stdout.partition("#")[2].strip()
        return str(int(number, 16)) if number else None

    def active_window(self):
        return next(iter(self.xdotool("getactivewindow")), None)

    def ask_to_close(self, window):
        """Asks the window manager to close a window, as its close button does."""
        x11 = ctypes.CDLL("libX11.so.6")
        x11.XOpenDisplay.restype = ctypes.c_void_p
        x11.XDefaultRootWindow.restype = ctypes.c_ulong
        x11.XInternAtom.restype = ctypes.c_ulong
        display = ctypes.c_void_p(x11.XOpenDisplay(self.environment["DISPLAY"].encode()))
        check(display.value, "no connection to the virtual screen")
        message = _ClientMessage(type=33, send_event=1, display=display.value, window=int(window),
                                 message_type=x11.XInternAtom(display, b"_NET_CLOSE_WINDOW", 0),
                                 format=32)
        message.data[1] = 2  # a person asks, not an application
        redirect_and_notify = (1 << 20) | (1 << 19)
        root = ctypes.c_ulong(x11.XDefaultRootWindow(display))
        x11.XSendEvent(display, root, 0, ctypes.c_long(redirect_and_notify), ctypes.byref(message))
        x11.XCloseDisplay(display)


class _ClientMessage(ctypes.Structure):
    """XClientMessageEvent, padded to the size of XEvent."""
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong),
                ("message_type", ctypes.c_ulong), ("format", ctypes.c_int),
                ("data", ctypes.c_long * 5), ("padding", ctypes.c_long * 24)]
