# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests that the program saves a running capture and ends with exit code 0 when its window is
closed, its exit button is pressed or it receives a signal."""

import signal

from driver import run
from scenes import close, start_track, start_with_disc, wavs_by_track
from sound import beginning_of_track, disc_samples
from waiting import check_equal, wait_for

SECONDS = 60
FIRST = "Track  1 - 00:01:00"


def check_capture_is_saved(sheet, destination):
    found = wavs_by_track(destination)
    check_equal(list(found), [1], "tracks in the destination folder")
    beginning_of_track(found[1], disc_samples(sheet), 1, SECONDS)


def closing_saves_a_running_capture(desktop, program):
    started, sheet, destination = start_with_disc(desktop, program, SECONDS)
    start_track(started, FIRST)
    close(started)
    check_capture_is_saved(sheet, destination)


def the_exit_button_saves_a_running_capture(desktop, program):
    started, sheet, destination = start_with_disc(desktop, program, SECONDS)
    start_track(started, FIRST)
    started.click("Exit", "push button")
    check_equal(started.wait_for_end(), 0, "exit code")
    check_capture_is_saved(sheet, destination)


def a_signal_saves_a_running_capture(desktop, program):
    started, sheet, destination = start_with_disc(desktop, program, SECONDS)
    start_track(started, FIRST)
    started.process.send_signal(signal.SIGTERM)
    check_equal(started.wait_for_end(), 0, "exit code")
    check_capture_is_saved(sheet, destination)


def closing_while_a_message_box_is_open_ends_the_program(desktop, program):
    started, _, _ = start_with_disc(desktop, program, seconds=2)
    started.click_row("Selected Tracks")
    started.click("Start ", "push button")
    wait_for("the message box",
             lambda: started.find("You must select tracks to record.", "label"))
    close(started)


def closing_with_other_windows_open_ends_the_program(desktop, program):
    started, _, _ = start_with_disc(desktop, program, seconds=2)
    started.choose_menu("Preferences", "Devices")
    wait_for("the Devices window", lambda: started.window("Devices"))
    close(started)


if __name__ == "__main__":
    run(closing_saves_a_running_capture, the_exit_button_saves_a_running_capture,
        a_signal_saves_a_running_capture, closing_while_a_message_box_is_open_ends_the_program,
        closing_with_other_windows_open_ends_the_program)
