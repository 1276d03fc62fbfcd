# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the program's tray icon, its tool tip and its menu. The tests start and end panels (tray
hosts), and check that the window stays reachable if no panel runs."""

import signal
import subprocess
import sys
import time

from driver import make_disc, run
from program import Program
from scenes import MUSIC, close, start_row, start_with_disc, wavs_by_track
from sound import beginning_of_track, disc_samples
from tray_host import TrayHost
from waiting import check, check_equal, wait_for

SECONDS = 60
FIRST = "Track  1 - 00:01:00"
ENTRIES = ["Stop Conversion", "Restore Control panel", "-", "Shutdown program"]
# Longer than several intervals of the timer that updates the tool tip.
SECONDS_OF_QUIET = 3.5


def panel(desktop, **options):
    return TrayHost(desktop.environment["DBUS_SESSION_BUS_ADDRESS"], **options)


def state_of(desktop, window):
    """The window's state: "Normal", "Iconic" (only in the task bar) or "Withdrawn" (hidden)."""
    asked = subprocess.run(["xprop", "-id", str(window), "WM_STATE"], env=desktop.environment,
                           check=True, capture_output=True, text=True)
    _, found, state = asked.stdout.partition("window state: ")
    return state.split()[0] if found else "Withdrawn"


def wait_for_state(desktop, window, state):
    wait_for(f"the window to be {state}", lambda: state_of(desktop, window) == state)


def minimize(started):
    """Chooses Minimize in the tree's popup menu. Returns the X window of the main window."""
    window = started.main_window_id()
    started.open_popup("Available Tracks")
    started.click("Minimize", "menu item")
    return window


def shown_besides(desktop, started, icons):
    """The visible X windows of the program except those of its icons."""
    return set(desktop.windows_of(started.process.pid)) - set(icons)


def choose_restore_by_keys(desktop, started, icons=()):
    """Chooses Restore in the icon's menu by keys: the menu has no owner window, so it is not in the
    accessibility tree."""
    wait_for("the menu", lambda: shown_besides(desktop, started, icons))
    desktop.press("Down", "Down", "Return")


def check_capture_is_saved(sheet, destination):
    found = wavs_by_track(destination)
    check_equal(list(found), [1], "tracks in the destination folder")
    beginning_of_track(found[1], disc_samples(sheet), 1, SECONDS)


def check_ends_by_signal(started):
    started.process.send_signal(signal.SIGTERM)
    check_equal(started.wait_for_end(), 0, "exit code")


def start_minimizing(desktop, program):
    """Starts the program with the setting that minimizes the window when an action starts. Then
    starts a capture."""
    sheet = make_disc(desktop.home / "discs", tracks=3, seconds=SECONDS, signal="ramp")
    destination = desktop.home / MUSIC
    desktop.write_store(sheet, destination, **{"minimize%20onstart": 1})
    started = Program(desktop, program)
    started.wait_for_window()
    started.open_row("Available Tracks")
    window = started.main_window_id()
    start_row(started, FIRST)
    return started, window, sheet, destination


def the_icon_has_a_tip_a_menu_and_pictures(desktop, program):
    with panel(desktop) as host:
        started, _, _ = start_with_disc(desktop, program, SECONDS)
        check_equal(host.icons(), [], "icons before the window is minimized")
        window = minimize(started)
        host.wait_for_icon()
        wait_for_state(desktop, window, "Withdrawn")
        wait_for("the main window's title in the tip", lambda: host.tip() == "Sonarith v2.0")
        check_equal(host.entries(), ENTRIES, "the menu")
        check_equal(host.read("Status"), "Active", "status")
        pictures = host.pictures()
        check_equal(sorted(pictures), [16, 22, 24, 32, 44, 48, 64], "sizes of the icon")
        for side, picture in pictures.items():
            opaque = sum(1 for alpha in picture[::4] if alpha == 255)
            check(0.1 < opaque / side ** 2 < 1,
                  f"the icon of {side} pixels lacks opaque or transparent pixels")
        before = len(host.signals())
        time.sleep(SECONDS_OF_QUIET)
        check_equal(host.signals()[before:], [], "signals for an unchanged tip")
        host.click("Activate")
        host.click("SecondaryActivate")
        check_equal(state_of(desktop, window), "Withdrawn",
                    "the window after a left and a middle click")
        check_equal(len(host.icons()), 1, "icons after a left and a middle click")
        host.choose("Restore Control panel")
        wait_for_state(desktop, window, "Normal")
        host.wait_for_no_icon()
        # Each minimizing adds a new icon, so the second icon is tested, too.
        minimize(started)
        host.wait_for_icon()
        wait_for_state(desktop, window, "Withdrawn")
        check_equal(host.entries(), ENTRIES, "the menu of the second icon")
        host.choose("Restore Control panel")
        wait_for_state(desktop, window, "Normal")
        close(started)


def the_program_draws_the_menu_for_a_panel_without_menus(desktop, program):
    with panel(desktop) as host:
        started, _, _ = start_with_disc(desktop, program, SECONDS)
        window = minimize(started)
        host.wait_for_icon()
        host.click("ContextMenu")
        choose_restore_by_keys(desktop, started)
        wait_for_state(desktop, window, "Normal")
        close(started)


def the_tip_shows_the_action_and_the_menu_stops_the_action(desktop, program):
    with panel(desktop) as host:
        started, window, sheet, destination = start_minimizing(desktop, program)
        host.wait_for_icon()
        wait_for("the action in the tip", lambda: host.tip().startswith("Extracting Track"))
        wait_for_state(desktop, window, "Withdrawn")
        check("NewToolTip" in host.signals(), "the panel received no signal of a new tool tip")
        # The tip shows the main window's title, which does not change while a track is captured.
        before = len(host.signals())
        tip = host.tip()
        time.sleep(SECONDS_OF_QUIET)
        check_equal((host.tip(), host.signals()[before:]), (tip, []),
                    "the tip and its signals during the action")
        host.choose("Stop Conversion")
        wait_for_state(desktop, window, "Normal")
        host.wait_for_no_icon()
        wait_for("the end of the capture", lambda: started.is_enabled("Preferences", "push button"))
        check_capture_is_saved(sheet, destination)
        close(started)


def shutdown_saves_a_running_capture(desktop, program):
    with panel(desktop) as host:
        started, _, sheet, destination = start_minimizing(desktop, program)
        wait_for("the action in the tip", lambda: host.tip().startswith("Extracting Track"))
        time.sleep(2)
        host.choose("Shutdown program")
        check_equal(started.wait_for_end(), 0, "exit code")
        check_capture_is_saved(sheet, destination)
        host.wait_for_no_icon()


def without_a_panel_the_window_is_only_iconified(desktop, program):
    started, _, _ = start_with_disc(desktop, program, SECONDS)
    window = minimize(started)
    wait_for_state(desktop, window, "Iconic")
    with panel(desktop) as host:
        # A panel that starts later shows the icon and does not change the window.
        host.wait_for_icon()
        check_equal(host.entries(), ENTRIES, "the menu")
        check_equal(state_of(desktop, window), "Iconic", "the window after a panel has started")
        host.choose("Restore Control panel")
        wait_for_state(desktop, window, "Normal")
        host.wait_for_no_icon()
    close(started)


def the_end_of_a_panel_iconifies_the_window(desktop, program):
    started, _, _ = start_with_disc(desktop, program, SECONDS)
    with panel(desktop) as first:
        window = minimize(started)
        first.wait_for_icon()
        wait_for_state(desktop, window, "Withdrawn")
        first.die()
        wait_for_state(desktop, window, "Iconic")
    with panel(desktop) as second:
        second.wait_for_icon()
        check_equal(second.entries(), ENTRIES, "the menu in the second panel")
        second.choose("Restore Control panel")
        wait_for_state(desktop, window, "Normal")
    close(started)


def a_second_panel_takes_over_when_the_first_ends(desktop, program):
    started, _, _ = start_with_disc(desktop, program, SECONDS)
    with panel(desktop) as first, panel(desktop, is_queued=True) as second:
        window = minimize(started)
        first.wait_for_icon()
        wait_for_state(desktop, window, "Withdrawn")
        check_equal(second.icons(), [], "icons in the second panel before the first ends")
        first.die()
        # Panels accept icons under a bus name. The first panel owned this name, and the second
        # panel was queued for it. When the first panel ended, the bus gave the name to the second
        # panel at once, so the name always has an owner.
        second.wait_for_icon()
        check_equal(len(second.icons()), 1, "icons in the second panel")
        check_equal(second.entries(), ENTRIES, "the menu in the second panel")
        second.choose("Restore Control panel")
        wait_for_state(desktop, window, "Normal")
        second.wait_for_no_icon()
    close(started)


def start_minimizing_by_keys(desktop, program):
    """Like start_minimizing(), but by keys: the program runs without the desktop's session bus
    here, so its accessibility tree cannot be read."""
    sheet = make_disc(desktop.home / "discs", tracks=3, seconds=SECONDS, signal="ramp")
    desktop.write_store(sheet, desktop.home / MUSIC, **{"minimize%20onstart": 1})
    started = Program(desktop, program)
    window = started.main_window_id()
    def has_focus():
        # The CD player's window opens after the main window and takes the focus.
        desktop.xdotool("windowactivate", window)
        time.sleep(0.5)
        return desktop.active_window() == window
    wait_for("the focus", has_focus)
    def is_capturing():
        # The keys are pressed repeatedly, because the tree may still be without rows at first.
        desktop.press("Home", "Down", "Down", "Return", "alt+s")
        time.sleep(1)
        return "Extracting" in desktop.xdotool("getwindowname", window)
    wait_for("the capture", is_capturing)
    return started, window


def with_bus(desktop, address, scenario):
    former = desktop.environment["DBUS_SESSION_BUS_ADDRESS"]
    desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = address
    try:
        scenario()
    finally:
        desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = former


def without_a_bus_the_window_is_only_iconified(desktop, program):
    def scenario():
        started, window = start_minimizing_by_keys(desktop, program)
        wait_for_state(desktop, window, "Iconic")
        check_ends_by_signal(started)
    with_bus(desktop, f"unix:path={desktop.home}/none", scenario)


def the_end_of_the_bus_iconifies_the_window(desktop, program):
    with subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                          env=desktop.environment, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, text=True) as bus:
        address = bus.stdout.readline().strip()
        def scenario():
            with TrayHost(address) as host:
                started, window = start_minimizing_by_keys(desktop, program)
                host.wait_for_icon()
                wait_for_state(desktop, window, "Withdrawn")
                bus.kill()
                wait_for_state(desktop, window, "Iconic")
                time.sleep(SECONDS_OF_QUIET)
                check(started.running, "the program ended with the bus")
                check_ends_by_signal(started)
        try:
            with_bus(desktop, address, scenario)
        finally:
            bus.kill()


class EmbeddingPanel:
    """A panel that uses the older of the two protocols for tray icons: it embeds the windows of the
    icons in a corner of the screen (embedding_panel.cpp)."""

    FIRST_ICON = (12, 12)

    def __init__(self, desktop):
        self._log = desktop.home / "panel.log"
        with open(self._log, "wb") as log:
            self.process = desktop.launch(sys.argv[3], log=log)
        wait_for("the embedding panel", lambda: "ready" in self.lines())

    def lines(self):
        return self._log.read_text().splitlines()

    def icons(self):
        docked, left = ({line.split()[1] for line in self.lines() if line.startswith(verb)}
                        for verb in ("docked", "left"))
        return docked - left

    def die(self):
        self.process.kill()
        self.process.wait()


def an_embedded_icon_opens_its_menu(desktop, program):
    host = EmbeddingPanel(desktop)
    started, _, _ = start_with_disc(desktop, program, SECONDS)
    started.close_panel()
    for _ in range(2):
        window = minimize(started)
        icons = wait_for("the icon in the panel", host.icons)
        wait_for_state(desktop, window, "Withdrawn")
        desktop.click_at(*host.FIRST_ICON)
        time.sleep(1)
        check_equal(shown_besides(desktop, started, icons), set(), "windows after a left click")
        desktop.click_at(*host.FIRST_ICON, button=3)
        choose_restore_by_keys(desktop, started, icons)
        wait_for_state(desktop, window, "Normal")
        wait_for("an empty panel", lambda: not host.icons())
    close(started)


def the_end_of_an_embedding_panel_iconifies_the_window(desktop, program):
    first = EmbeddingPanel(desktop)
    started, _, _ = start_with_disc(desktop, program, SECONDS)
    started.close_panel()
    window = minimize(started)
    wait_for("the icon in the panel", first.icons)
    wait_for_state(desktop, window, "Withdrawn")
    first.die()
    wait_for_state(desktop, window, "Iconic")
    second = EmbeddingPanel(desktop)
    icons = wait_for("the icon in the second panel", second.icons)
    desktop.click_at(*second.FIRST_ICON, button=3)
    choose_restore_by_keys(desktop, started, icons)
    wait_for_state(desktop, window, "Normal")
    close(started)


def a_common_panel_program_embeds_the_icon(desktop, program):
    desktop.launch("/usr/bin/trayer", "--edge", "top", "--align", "left", "--height", "24")
    started, _, _ = start_with_disc(desktop, program, SECONDS)
    started.close_panel()
    window = minimize(started)
    wait_for_state(desktop, window, "Withdrawn")
    icon, = wait_for("the icon", lambda: desktop.windows_of(started.process.pid))
    def centre():
        values = dict(line.split("=") for line in
                      desktop.xdotool("getwindowgeometry", "--shell", icon))
        return (int(values["X"]) + int(values["WIDTH"]) // 2,
                int(values["Y"]) + int(values["HEIGHT"]) // 2)
    def stays():
        first = centre()
        time.sleep(0.5)
        return centre() == first
    wait_for("the icon to stop moving", stays)
    desktop.click_at(*centre(), button=3)
    choose_restore_by_keys(desktop, started, [icon])
    wait_for_state(desktop, window, "Normal")
    close(started)


if __name__ == "__main__":
    run(the_icon_has_a_tip_a_menu_and_pictures,
        the_program_draws_the_menu_for_a_panel_without_menus,
        the_tip_shows_the_action_and_the_menu_stops_the_action,
        shutdown_saves_a_running_capture,
        without_a_panel_the_window_is_only_iconified, the_end_of_a_panel_iconifies_the_window,
        a_second_panel_takes_over_when_the_first_ends, without_a_bus_the_window_is_only_iconified,
        the_end_of_the_bus_iconifies_the_window,
        an_embedded_icon_opens_its_menu, the_end_of_an_embedding_panel_iconifies_the_window,
        a_common_panel_program_embeds_the_icon)
