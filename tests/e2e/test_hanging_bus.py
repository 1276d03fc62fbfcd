# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the program with a session bus that does not reply: the program's window opens and stays
usable, and the program ends in time."""

import signal
import time

from driver import make_disc, run
from program import Program
from scenes import MUSIC, close, start_with_disc
from test_tray import minimize, panel, wait_for_state
from waiting import check, wait_for

SECONDS = 60
# At its start, the program waits three seconds for the bus. After a request to end, the program is
# designed to end within a second. These limits are longer because of sanitizers and a busy machine.
SECONDS_TO_OPEN = 15
SECONDS_TO_END = 6


def the_window_opens_and_can_be_closed(desktop, program):
    desktop.write_store(make_disc(desktop.home / "discs", seconds=SECONDS), desktop.home / MUSIC)
    with desktop.hanging_bus():
        began = time.monotonic()
        started = Program(desktop, program)
        # The program uses no bus in this run, so its accessibility tree cannot be read.
        started.main_window_id()
        seconds = time.monotonic() - began
        check(seconds < SECONDS_TO_OPEN, f"the main window opened after {seconds:.1f} s")
        started.close_window()
        wait_for("the end of the program", lambda: not started.running, patience=SECONDS_TO_END)


def activate(desktop, started, window):
    """Opens the minimized window again."""
    desktop.xdotool("windowactivate", window)
    wait_for("the window", lambda: window in desktop.windows_of(started.process.pid))
    wait_for("the focus", lambda: desktop.active_window() == window)
    time.sleep(0.5)  # until clicks reach the window instead of the background


def hide(desktop, host, started):
    """Hides the main window behind its icon in the panel. Returns the window's X window."""
    window = minimize(started)
    host.wait_for_icon()
    wait_for_state(desktop, window, "Withdrawn")
    return window


def an_icon_is_shown_after_the_hang(desktop, program):
    with panel(desktop) as host:
        started, _, _ = start_with_disc(desktop, program, SECONDS)
        with desktop.hanging_bus():
            window = minimize(started)
            wait_for_state(desktop, window, "Iconic")
            activate(desktop, started, window)
            started.open_popup("Available Tracks")
            desktop.press("Escape")
        host.wait_for_icon()
        host.choose("Restore Control panel")
        host.wait_for_no_icon()
        close(started)


def the_window_can_be_closed_after_the_panel_has_ended(desktop, program):
    with panel(desktop) as host:
        started, _, _ = start_with_disc(desktop, program, SECONDS)
        window = hide(desktop, host, started)
        host.die()
        wait_for_state(desktop, window, "Iconic")
        activate(desktop, started, window)
        with desktop.hanging_bus():
            started.close_window()
            wait_for("the end of the program", lambda: not started.running,
                     patience=SECONDS_TO_END)


def a_signal_ends_the_hidden_program(desktop, program):
    with panel(desktop) as host:
        started, _, _ = start_with_disc(desktop, program, SECONDS)
        hide(desktop, host, started)
        with desktop.hanging_bus():
            started.process.send_signal(signal.SIGTERM)
            wait_for("the end of the program", lambda: not started.running,
                     patience=SECONDS_TO_END)


if __name__ == "__main__":
    run(the_window_opens_and_can_be_closed, an_icon_is_shown_after_the_hang,
        the_window_can_be_closed_after_the_panel_has_ended, a_signal_ends_the_hidden_program)
