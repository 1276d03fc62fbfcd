#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the program on a virtual screen and takes pictures of its windows. Stores the pictures in
docs/pictures/, for README.md and the metainfo file. Stores copies for the help pages, at most
PAGE_WIDTH pixels wide, in share/help/pictures/.

    pictures.py PROGRAM"""

import pathlib
import subprocess
import sys
import time

from desktop import Desktop
from driver import REPOSITORY, make_disc
from mp3 import make_mp3
from player_panel import TITLE as PANEL
from player_panel import PlayerPanel
from program import Program
from scenes import close, go_to_row
from sound import bytes_of
from waiting import wait_for

DOCUMENTS = REPOSITORY / "docs/pictures"
HELP_PAGES = REPOSITORY / "share/help/pictures"
PAGE_WIDTH = 540  # pixels; a picture of this width fits into the help window's text
SECONDS = 95  # length of each track
TRACKS = 5
SONGS = {"morning song": ("Morning Song", 523), "by the river": ("By the River", 440),
         "evening song": ("Evening Song", 392)}


def tag(title):
    """The 128 bytes of an ID3v1 tag: title, artist, album, year, comment and genre."""
    texts = ((title, 30), ("Demo Orchestra", 30), ("Demonstration", 30), ("2026", 4), ("", 30))
    return b"TAG" + b"".join(text.encode().ljust(length, b"\0") for text, length in texts) + b"\x20"


class Camera:
    def __init__(self, desktop, started):
        self.desktop, self.started = desktop, started

    def take(self, name, window, for_help_page=True):
        # Some controls change while the pointer is above them, so the pointer is moved away.
        self.desktop.xdotool("mousemove", 1270, 950)
        time.sleep(1)
        picture = DOCUMENTS / f"{name}.png"
        self.desktop.screenshot(picture, window)
        # Time stamps and comments are removed from the file, so that an unchanged window has an
        # unchanged file.
        strip = ("-strip", "-define", "png:exclude-chunks=date,time")
        subprocess.run(["convert", picture, *strip, picture], check=True)
        if for_help_page:
            subprocess.run(["convert", picture, "-resize", f"{PAGE_WIDTH}x>", *strip,
                            HELP_PAGES / picture.name], check=True)


def prepare(desktop):
    """Creates a disc image, three MP3 files, a WAV file and a settings store in the home folder.
    Returns the folder of the MP3 files."""
    music = desktop.home / "Music"
    for name, (title, hertz) in SONGS.items():
        path = music / f"{name}.mp3"
        make_mp3(path, seconds=3, hertz=hertz)
        with open(path, "ab") as target:
            target.write(tag(title))
    (music / "old take.wav").write_bytes(b"RIFF")
    sheet = make_disc(desktop.home / "discs", name="Demo Disc", tracks=TRACKS, seconds=SECONDS,
                      signal="music")
    desktop.write_store(sheet, music, **{"show%20full%20path": 0})
    return music


def row(number):
    return f"Track  {number} - 00:01:35"


def main_window(camera):
    started = camera.started
    for group in ("MP3 Files", "Available Tracks"):
        go_to_row(camera.desktop, started, group)
        camera.desktop.press("Right")
        wait_for(f"the rows of {group!r}", lambda: started.group(group))
    for number in (5, 2):
        started.click_row(row(number), times=2)
        wait_for("the selected track", lambda: row(number) in started.group("Selected Tracks"))
    started.click_row("Selected Tracks")
    wait_for("the next action", lambda: started.next_action().endswith("Selected Tracks"))
    camera.take("main", started.main_window_id())


def player(camera):
    started = camera.started
    started.activate(PANEL)
    panel = PlayerPanel(started)
    panel.switch_on()
    panel.press("Play")
    panel.wait_for_position("four seconds of music", lambda _track, seconds: seconds >= 4)
    camera.take("player", started.window_id(PANEL))
    panel.press("Stop")


def devices(camera):
    started = camera.started
    started.choose_menu("Preferences", "Devices")
    wait_for("the Devices window", lambda: started.window_id("Devices"))
    camera.take("devices", started.window_id("Devices"))
    camera.desktop.press("Escape")
    wait_for("the closing of the Devices window", lambda: started.window("Devices") is None)


def preferences(camera):
    started = camera.started
    started.open_window("Preferences", "Preferences")
    for tab, name in (("Disk Space", "space"), ("Audio, Misc.", "audio"),
                      ("Destination Path", "destination")):
        started.click(tab, "page tab")
        wait_for(f"the page {tab!r}", lambda: started.find(tab, "filler"))
        camera.take(f"preferences-{name}", started.window_id("Preferences"))
    started.close_other("Preferences")


def finder(camera):
    started = camera.started
    window = started.open_window("Search for Files", "File Finder")
    started.type_into("File Type", ".mp3")
    started.click("Search !", "push button")
    wait_for("the found files", lambda: len(started.lines("Files found")) >= len(SONGS) and
             started.find("Search !", "push button"))
    camera.take("finder", window)
    started.close_other("File Finder")


def playlist(camera, music):
    started = camera.started
    window = started.open_window("Playlist Editor", "Playlist Editor")
    for name in reversed(SONGS):
        started.click("...", "push button")
        wait_for("the file dialog", lambda: started.has_focus("File name:", "text"))
        camera.desktop.type(str(music / f"{name}.mp3"))
        camera.desktop.press("Return")
        wait_for("the chosen file",
                 lambda: (started.text("Currently editing this file") or "").endswith(
                     f"{name}.mp3"))
        started.click("Add to PlayList", "push button")
    camera.take("playlist", window)
    started.close_other("Playlist Editor")


def help_window(camera):
    started = camera.started
    started.click("Help", "push button")
    wait_for("the help window", lambda: started.window_id("Sonarith Help"))
    camera.take("help", started.window_id("Sonarith Help"), for_help_page=False)
    camera.desktop.press("Escape")
    wait_for("the closing of the help window", lambda: started.window("Sonarith Help") is None)


def extracting(camera):
    started = camera.started
    started.click_row("Selected Tracks")
    started.click("Start ", "push button")
    wait_for("eight seconds of sound", lambda: (started.figures()[1] or 0) > bytes_of(8))
    camera.take("extracting", started.main_window_id())
    started.click("Cancel", "push button")
    wait_for("the end of the capture", lambda: started.is_enabled("Preferences", "push button"))


def main():
    program = pathlib.Path(sys.argv[1]).absolute()
    for folder in (DOCUMENTS, HELP_PAGES):
        folder.mkdir(exist_ok=True)
    with Desktop() as desktop:
        music = prepare(desktop)
        started = Program(desktop, program)
        started.wait_for_window()
        desktop.xdotool("windowmove", wait_for("the panel", lambda: started.window_id(PANEL)),
                        560, 20)
        desktop.xdotool("windowsize", "--sync", started.main_window_id(), 480, 560)
        camera = Camera(desktop, started)
        try:
            main_window(camera)
            help_window(camera)
            player(camera)
            devices(camera)
            preferences(camera)
            finder(camera)
            playlist(camera, music)
            extracting(camera)
        except Exception:
            desktop.screenshot(pathlib.Path.cwd() / "failed.png")
            raise
        close(started)


if __name__ == "__main__":
    main()
