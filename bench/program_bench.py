#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures the real program on a virtual X server that this script starts:
  - the time from the program's start to its painted window, compared with the time for an empty Qt
    Widgets window in the same run of this script: on a quiet machine, and on one whose processors
    are busy;
  - the processor time of the idle program.

program_bench.py FOLDER_OF_THE_PROGRAMS

The folder contains the programs `sonarith` and `empty_window`.
"""
import contextlib
import ctypes
import os
import pathlib
import select
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

from limits import Limits

PAIRS = 41
BUSY_PAIRS = 21
START_LIMIT = 1.5  # times the start of an empty window
SCREEN_WIDTH, SCREEN_HEIGHT = 1024, 768
STRIP_DISTANCE = 150
REPORT_NON_EMPTY = 3  # XDamageReportNonEmpty (damagewire.h)
IDLE_SECONDS = 20
TICKS = os.sysconf("SC_CLK_TCK")


class XImage(ctypes.Structure):
    """The first fields of the structure XImage (Xlib.h). The last of these fields, bytes_per_line,
    is named "line" here."""

    _fields_ = [(name, ctypes.c_int) for name in ("width", "height", "xoffset", "format")] + [
        ("data", ctypes.POINTER(ctypes.c_ubyte)),
        *[(name, ctypes.c_int) for name in ("order", "unit", "bit_order", "pad", "depth", "line")],
    ]


class Screen:
    """A virtual X server with a black root window. This process waits for the server's report that
    the screen has changed. Polling the screen instead would compete with the measured program for
    the processor and the server."""

    def __init__(self):
        reader, writer = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0",
             f"{SCREEN_WIDTH}x{SCREEN_HEIGHT}x24", "-noreset"],
            pass_fds=[writer],
            stderr=subprocess.DEVNULL,
        )
        os.close(writer)
        with os.fdopen(reader) as line:
            self.name = ":" + line.readline().strip()
        self.xlib = ctypes.CDLL("libX11.so.6")
        self.xlib.XOpenDisplay.restype = ctypes.c_void_p
        self.xlib.XGetImage.restype = ctypes.POINTER(XImage)
        self.xlib.XDefaultRootWindow.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.xlib.XOpenDisplay(self.name.encode()))
        self.root = ctypes.c_ulong(self.xlib.XDefaultRootWindow(self.display))
        self.xdamage = ctypes.CDLL("libXdamage.so.1")
        numbers = ctypes.c_int(), ctypes.c_int()
        if not self.xdamage.XDamageQueryExtension(self.display, *map(ctypes.byref, numbers)):
            sys.exit("the X server does not report changes of the screen")
        self.xdamage.XDamageCreate.restype = ctypes.c_ulong
        self.changes = ctypes.c_ulong(
            self.xdamage.XDamageCreate(self.display, self.root, REPORT_NON_EMPTY))
        self.xlib.XFlush(self.display)

    def wait_for_change(self, seconds):
        """Waits until the screen has changed since the last call, for at most `seconds`."""
        if self.xlib.XPending(self.display) == 0:
            select.select([self.xlib.XConnectionNumber(self.display)], [], [], seconds)
        event = ctypes.create_string_buffer(24 * ctypes.sizeof(ctypes.c_long))  # an XEvent
        while self.xlib.XPending(self.display) > 0:
            self.xlib.XNextEvent(self.display, event)
        none = ctypes.c_ulong(0)
        self.xdamage.XDamageSubtract(self.display, self.changes, none, none)
        self.xlib.XFlush(self.display)

    def painted(self):
        """Reads some strips of the screen; returns whether a strip contains a pixel that is not
        black. A strip is one line of pixels; each measured window covers at least one strip.
        Reading the whole screen instead would slow the measured program down."""
        every = ctypes.c_ulong(0xFFFFFFFF)
        for y in range(STRIP_DISTANCE // 2, SCREEN_HEIGHT, STRIP_DISTANCE):
            image = self.xlib.XGetImage(self.display, self.root, 0, y, SCREEN_WIDTH, 1, every, 2)
            found = any(ctypes.string_at(image.contents.data, image.contents.line))
            self.xlib.XDestroyImage(image)
            if found:
                return True
        return False

    def close(self):
        self.server.kill()
        self.server.wait()


def surroundings(home, screen):
    """Creates the home of a new user, with an empty destination folder and no sound output. Returns
    the environment variables for the program."""
    store = home / ".config/sonarith"
    store.mkdir(parents=True)
    destination = home / "wav"
    destination.mkdir()
    logic = "C:" + str(destination).replace("/", "\\\\")
    (store / "Sonarith v2.0.ini").write_text(
        f"[Devices]\nOutput=none\n[Settings]\nDecodePath={logic}\n", encoding="utf-8"
    )
    runtime = home / "run"
    runtime.mkdir(mode=0o700)
    kept = {key: value for key, value in os.environ.items() if not key.startswith("XDG_")}
    return {**kept, "HOME": str(home), "DISPLAY": screen.name, "XDG_RUNTIME_DIR": str(runtime)}


def time_to_paint(screen, program, env):
    began = time.monotonic()
    running = subprocess.Popen([program], env=env, stderr=subprocess.DEVNULL)
    while not screen.painted():
        if running.poll() is not None or time.monotonic() - began > 60:
            sys.exit(f"{program} showed no window")
        screen.wait_for_change(1)
    elapsed = time.monotonic() - began
    running.kill()
    running.wait()
    while screen.painted():
        time.sleep(0.01)
    return elapsed


def compare_starts(name, pairs, screen, program, empty, env):
    times = [
        (time_to_paint(screen, program, env), time_to_paint(screen, empty, env))
        for _ in range(pairs + 1)
    ][1:]
    ratio = statistics.median(ours / theirs for ours, theirs in times)
    ours, theirs = (statistics.median(column) for column in zip(*times))
    print(f"{name}: {ours * 1000:.0f} ms against {theirs * 1000:.0f} ms for an empty window, "
          f"median ratio {ratio:.2f} (limit {START_LIMIT})")
    return ratio


@contextlib.contextmanager
def busy_processors():
    """Keeps all processors busy: runs one process with an endless loop for each processor."""
    busy = [subprocess.Popen([sys.executable, "-c", "while True: pass"])
            for _ in os.sched_getaffinity(0)]
    try:
        yield
    finally:
        for process in busy:
            process.kill()
            process.wait()


def processor_ticks(pid):
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    return int(fields[11]) + int(fields[12])


def idle_ticks(program, env):
    running = subprocess.Popen([program], env=env, stderr=subprocess.DEVNULL)
    time.sleep(5)
    before = processor_ticks(running.pid)
    time.sleep(IDLE_SECONDS)
    after = processor_ticks(running.pid)
    running.kill()
    running.wait()
    return after - before


def main():
    folder = pathlib.Path(sys.argv[1])
    home = pathlib.Path(tempfile.mkdtemp(prefix="program_bench."))
    screen = Screen()
    try:
        env = surroundings(home, screen)
        program, empty = str(folder / "sonarith"), str(folder / "empty_window")
        limits = Limits()
        for name, pairs, load in (
                ("start to paint", PAIRS, contextlib.nullcontext()),
                ("start to paint, processors busy", BUSY_PAIRS, busy_processors())):
            with load:
                limits.check(name, compare_starts(name, pairs, screen, program, empty, env),
                             START_LIMIT)
        ticks = idle_ticks(program, env)
        print(f"idle: {ticks} ticks of {1000 // TICKS} ms in {IDLE_SECONDS} s "
              "(limit: no measurable time)")
        limits.check("ticks while idle", ticks, 0)
    finally:
        screen.close()
        shutil.rmtree(home)
    limits.end()


if __name__ == "__main__":
    main()
