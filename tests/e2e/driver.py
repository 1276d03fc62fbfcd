# SPDX-License-Identifier: GPL-3.0-or-later
"""A person in front of the program: a virtual screen with a window manager and a home of its own,
the program started in it, and hands (mouse, keys) and eyes (the accessibility tree, screenshots).

Nothing here asserts on time: what is waited for is a condition, with a bound that only a hang
reaches.
"""

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
import traceback

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]
PATIENCE = 60  # seconds until a condition counts as never coming; sanitizers make programs slow
# Longer than a desktop's double click, so that two clicks on one place stay two.
SECONDS_BETWEEN_CLICKS = 0.6


class Failure(Exception):
    """What a person would report: something that should have been seen was not."""


def wait_for(what, condition, patience=PATIENCE):
    """Polls until the condition returns something true, and returns that."""
    end = time.monotonic() + patience
    while True:
        seen = condition()
        if seen:
            return seen
        if time.monotonic() > end:
            raise Failure(f"waited for {what} in vain")
        time.sleep(0.05)


def check(holds, what):
    if not holds:
        raise Failure(what)


def check_equal(seen, expected, what):
    check(seen == expected, f"{what}: saw {seen!r}, expected {expected!r}")


def make_disc(folder, name="disc", **options):
    """An image by the project's script; options as the script's (tracks=3, signal="ramp"). Returns
    the sheet's path."""
    arguments = [f"--{key}={value}" for key, value in options.items()]
    maker = REPOSITORY / "tools" / "make_disc_image.py"
    made = subprocess.run([sys.executable, maker, folder, "--name", name, *arguments],
                          check=True, capture_output=True, text=True)
    return pathlib.Path(made.stdout.strip())


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

    def __init__(self, folder=None):
        self._own_folder = folder is None
        self.folder = pathlib.Path(folder or tempfile.mkdtemp(prefix="sonarith-e2e-")).absolute()
        self._atspi = None
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
        self.move_to("home")

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
            self._start("openbox", "--sm-disable")
            self._atspi = self._open_accessibility()
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
        self._start("Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x960x24",
                    "-nolisten", "tcp", pass_fds=(writing,))
        os.close(writing)
        with os.fdopen(reading) as numbers:
            number = numbers.readline().strip()
        check(number, "the virtual screen did not start")
        self.environment["DISPLAY"] = f":{number}"

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
        if self._own_folder:
            shutil.rmtree(self.folder, ignore_errors=True)

    # The program's surroundings.

    def move_to(self, name):
        """Gives the programs that start from now on another home, a new one, of that name."""
        self.home = self.folder / name
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

    def write_store(self, drive, destination, **settings):
        """The settings store with this disc in the drive and this folder (a path of the machine)
        as the destination, and no sound output."""
        escaped = ("C:" + str(destination).replace("/", "\\")).replace("\\", "\\\\")
        lines = ["[Devices]", f'Drive="{drive}"', "Output=none", "", "[Settings]",
                 f'DecodePath="{escaped}"', *(f"{key}={value}" for key, value in settings.items())]
        self.store.parent.mkdir(parents=True, exist_ok=True)
        self.store.write_text("\n".join(lines) + "\n", encoding="utf-8")

    def start(self, program):
        """Starts the program; its window need not be there yet."""
        with open(self.home / "program.log", "ab") as log:
            process = self._start(str(pathlib.Path(program).absolute()), stdout=log,
                                  stderr=log, cwd=self.home)
        self._programs.append(process)
        return Program(self, process)

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

    def click_at(self, x, y, times=1):
        place, when = self._last_click
        if place == (x, y):
            time.sleep(max(0.0, when + SECONDS_BETWEEN_CLICKS - time.monotonic()))
        self.xdotool("mousemove", x, y, "click", "--repeat", times, "--delay", 40, 1)
        self._last_click = ((x, y), time.monotonic())

    def press(self, *keys):
        """Keys one after the other, in xdotool's writing ("alt+a", "Return")."""
        self.xdotool("key", "--delay", 60, *keys)

    def type(self, text):
        self.xdotool("type", "--delay", 20, text)

    # Eyes.

    def screenshot(self, path):
        subprocess.run(["import", "-window", "root", str(path)], env=self.environment, check=True,
                       capture_output=True)

    def windows_of(self, pid):
        """The X windows on the screen that a process shows."""
        done = subprocess.run(["xdotool", "search", "--onlyvisible", "--all", "--pid", str(pid),
                               "--name", ""], env=self.environment, check=False,
                              capture_output=True, text=True)
        return done.stdout.split()

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


class Program:
    """The started program as it is seen and handled."""

    def __init__(self, desktop, process):
        self.desktop = desktop
        self.process = process
        self._atspi = desktop._atspi

    # Its process.

    @property
    def running(self):
        return self.process.poll() is None

    def wait_for_end(self, what="the program's end"):
        wait_for(what, lambda: not self.running)
        return self.process.returncode

    def kill(self):
        self.process.kill()
        self.process.wait()

    # Eyes. Whatever vanishes while it is looked at counts as not there.

    def _application(self):
        root = self._atspi.get_desktop(0)
        for i in range(root.get_child_count()):
            child = root.get_child_at_index(i)
            if child is not None and child.get_process_id() == self.process.pid:
                return child
        return None

    def _children(self, accessible):
        # By turns with the count: rows come and go meanwhile.
        i = 0
        while i < accessible.get_child_count():
            child = accessible.get_child_at_index(i)
            if child is not None:
                yield child
            i += 1

    def _walk(self, accessible):
        yield accessible
        for child in self._children(accessible):
            yield from self._walk(child)

    def _tolerant(self, look, otherwise):
        from gi.repository import GLib
        while GLib.MainContext.default().iteration(False):
            pass
        try:
            return look()
        except GLib.Error:
            return otherwise

    def _shows(self, accessible):
        return accessible.get_state_set().contains(self._atspi.StateType.SHOWING)

    def top_windows(self):
        """The accessible windows on the screen, main window and boxes alike."""
        def look():
            application = self._application()
            return [] if application is None else [
                window for window in self._children(application) if self._shows(window)]
        return self._tolerant(look, [])

    def find(self, name, role=None, within=None):
        """The first element on the screen of that name (and role name), or None."""
        def look():
            for window in [within] if within is not None else self.top_windows():
                for element in self._walk(window):
                    if (element.get_name() == name and
                            (role is None or element.get_role_name() == role) and
                            self._shows(element)):
                        return element
            return None
        return self._tolerant(look, None)

    def get(self, name, role=None, within=None):
        return wait_for(f"{role or 'element'} {name!r}", lambda: self.find(name, role, within))

    def window(self, title):
        def look():
            for window in self.top_windows():
                if window.get_name() == title:
                    return window
            return None
        return self._tolerant(look, None)

    @property
    def title(self):
        """The main window's caption."""
        done = self.desktop.xdotool("getwindowname", self.main_window_id())
        return " ".join(done)

    def main_window_id(self):
        def look():
            for window in self.desktop.windows_of(self.process.pid):
                name = subprocess.run(["xdotool", "getwindowname", window], check=False,
                                      env=self.desktop.environment, capture_output=True, text=True)
                if name.stdout.strip().startswith(("Sonarith v2.0", "Extracting Track")):
                    return window
            return None
        return wait_for("the main window", look)

    def labels(self, bar):
        """The texts of the labels in a bar, from the first to the last."""
        def look():
            found = self.find(bar)
            if found is None:
                return []
            return [element.get_name() for element in self._walk(found)
                    if element.get_role_name() == "label" and self._shows(element)]
        return self._tolerant(look, [])

    def text(self, name, role="text"):
        """What stands in a text field."""
        def look():
            field = self.find(name, role)
            return None if field is None else field.get_text(0, field.get_character_count())
        return self._tolerant(look, None)

    def value(self, name):
        def look():
            element = self.find(name)
            return None if element is None else element.get_current_value()
        return self._tolerant(look, None)

    def is_enabled(self, name, role=None):
        element = self.find(name, role)
        return element is not None and self._tolerant(
            lambda: element.get_state_set().contains(self._atspi.StateType.ENABLED), False)

    # Hands.

    def place_of(self, element):
        box = element.get_extents(self._atspi.CoordType.SCREEN)
        return box.x + box.width // 2, box.y + box.height // 2

    def click(self, name, role=None, times=1, within=None):
        """Clicks in an element's middle with the mouse, once it is there and stands still."""
        def look():
            element = self.find(name, role, within)
            return element and self._tolerant(lambda: self.place_of(element), None)
        def settled():
            first = look()
            return first if first is not None and first == look() else None
        x, y = wait_for(f"{role or 'element'} {name!r} to click", settled)
        self.desktop.click_at(x, y, times)

    def choose_menu(self, *names):
        """A menu and its entries, from heading to entry, with the mouse."""
        for name in names:
            self.click(name, "menu item")

    # The main window's parts.

    def next_action(self):
        return (self.labels("Activity bar") or [""])[0]

    def figures(self):
        """Percentage, bytes captured and progress bar, as (int, int, int); None where one shows
        no number."""
        labels = self.labels("Status bar")
        percent, captured = labels[1:3] if len(labels) == 3 else ("", "")
        progress = self.value("Progress")
        return (int(percent[:-1]) if percent[:-1].lstrip("-").isdigit() else None,
                int(captured.split()[0]) if captured.endswith(" Bytes") else None,
                None if progress is None else int(progress))

    def rows(self):
        """The texts of the work tree's rows that are open, from top to bottom."""
        def look():
            tree = self.find("Work tree")
            return [] if tree is None else [row.get_name() for row in self._children(tree)]
        return self._tolerant(look, [])

    def group(self, name):
        """The rows below a group's row, down to the next group or collection."""
        rows = self.rows()
        if name not in rows:
            return []
        below = rows[rows.index(name) + 1:]
        headings = ("Tracks", "Folder", "Files")
        end = next((i for i, row in enumerate(below) if row.endswith(headings)), len(below))
        return below[:end]

    def wait_for_window(self):
        """Until the main window stands with its tree filled."""
        wait_for("the main window and its tree", lambda: "MP3 Files" in self.rows())

    def close_window(self):
        self.desktop.ask_to_close(self.main_window_id())


def run(*scenarios):
    """A test script's main part: plays each scenario(desktop, program path) with a home of its own
    on one screen, and ends with 0 if all held. Of a failed one a screenshot stays."""
    program = pathlib.Path(sys.argv[1]).absolute()
    check(program.is_file(), f"there is no program {program}")
    failed = []
    with Desktop() as desktop:
        for scenario in scenarios:
            name = scenario.__name__
            print(f"{name} ...", flush=True)
            desktop.move_to(name)
            try:
                scenario(desktop, program)
            except Exception:  # whatever went wrong, the other scenarios are of interest
                failed.append(name)
                traceback.print_exc()
                picture = pathlib.Path.cwd() / f"{name}.png"
                desktop.screenshot(picture)
                print(f"The screen: {picture}", desktop.program_output(), sep="\n", flush=True)
            finally:
                desktop.end_programs()
    print(f"{len(scenarios) - len(failed)} of {len(scenarios)} scenarios held.")
    sys.exit(1 if failed else 0)
