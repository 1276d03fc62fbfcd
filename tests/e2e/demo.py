#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Extracts a track on a virtual screen with simulated user input. Stores the WAV file and
screenshots.

    demo.py PROGRAM OUTPUT_FOLDER

Exits with 0 if every step succeeded.
"""

import pathlib
import shutil
import signal
import sys

from desktop import Desktop
from driver import make_disc
from program import Program
from scenes import close
from sound import bytes_of, check_track, disc_samples
from waiting import Failure, check_equal, wait_for

SECONDS = 6  # length of each track: long enough to show how the displayed numbers change
MOST_SECONDS = 240  # for the whole demonstration, even on a slow machine


def too_long(*_):
    raise Failure(f"the demonstration took longer than {MOST_SECONDS} seconds")


class Album:
    """Takes numbered screenshots of the main window."""

    def __init__(self, folder, program):
        self.folder = folder
        self.program = program
        self.pictures = []

    def add(self, name):
        picture = self.folder / f"{len(self.pictures) + 1}-{name}.png"
        self.program.desktop.screenshot(picture, self.program.main_window_id())
        self.pictures.append(picture)


def choose_first_track(program):
    track = f"Track  1 - 00:00:0{SECONDS}"
    program.open_row("Available Tracks")
    print(f'A double click moves "{track}" to the selected tracks.')
    program.click_row(track, times=2)
    wait_for("the selected track", lambda: program.group("Selected Tracks") == [track])
    program.click_row("Selected Tracks")
    action = "Next Action:  Process  Selected Tracks"
    wait_for("the next action", lambda: program.next_action() == action)
    print(f'A click on "Selected Tracks": the window says "{program.next_action()}".')


def watch(program, album):
    print('A click on "Start ".')
    program.click("Start ", "push button")
    wait_for("half of the track", lambda: (program.figures()[1] or 0) > bytes_of(SECONDS) // 2)
    percent, captured, _ = program.figures()
    album.add("middle")
    print(f'In the middle: "{program.title}", {percent}%, {captured} Bytes.')
    wait_for("the end of the capture",
             lambda: program.is_enabled("Preferences", "push button"))


def play(desktop, program_path, output):
    disc = make_disc(output / "disc", name="demo", tracks=3, seconds=SECONDS, signal="music")
    destination = output / "WAVFiles"
    shutil.rmtree(destination, ignore_errors=True)  # files of an earlier demonstration
    desktop.move_to(output / "home")
    desktop.write_store(disc, destination)
    program = Program(desktop, program_path)
    program.wait_for_window()
    album = Album(output, program)
    choose_first_track(program)
    album.add("start")
    watch(program, album)
    album.add("end")
    wavs = sorted(destination.iterdir())
    check_equal(len(wavs), 1, "files in the destination folder")
    check_track(wavs[0], disc_samples(disc), 1, SECONDS)
    print("The WAV contains the track's samples bit for bit and without gaps.")
    close(program)
    print("The window is closed, and the program has ended.")
    print(f"WAV:         {wavs[0]}")
    for picture in album.pictures:
        print(f"Screenshot:  {picture}")


def main():
    program_path, output = (pathlib.Path(argument).absolute() for argument in sys.argv[1:])
    output.mkdir(parents=True, exist_ok=True)
    signal.signal(signal.SIGALRM, too_long)
    signal.alarm(MOST_SECONDS)
    with Desktop() as desktop:
        try:
            play(desktop, program_path, output)
        except Failure as failure:
            desktop.screenshot(output / "failed.png")
            print(f"The demonstration failed: {failure} (the screen: {output}/failed.png)",
                  desktop.program_output(), sep="\n", file=sys.stderr)
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
