# SPDX-License-Identifier: GPL-3.0-or-later
"""Operates the playlist editor, and creates and reads the files that its tests use."""

import subprocess
import tempfile
import wave

from mp3 import make_mp3
from scenes import row_of, start_in
from waiting import check, wait_for

TITLE = "Playlist Editor"
TAG_BYTES = 128
FIELDS = ("Artist", "Title", "Album", "Year", "Comment", "Genre")


def header_lines(seconds):
    """The twelve lines that the editor shows about the header of a file that make_mp3() has created
    with a length of `seconds`. The editor calculates the duration from the size of the file. The
    information frame, the encoder's padding and a tag together add less than a second to this
    duration. The editor rounds the duration down, so it shows `seconds`."""
    return ["Bitrate            128", "Frequency       44100", f"Duration          {seconds}",
            "MpegVersion   1", "MpegLayer      3", "Original           yes", "Emphasis        no",
            "CopyRight        no", "Mode               joint stereo", "Padding           no",
            "CRC                no", "Private             no"]


def tag_of(title, artist, album, year, comment, genre, filled_with=b"\0"):
    """The 128 bytes of an ID3v1 tag."""
    texts = ((title, 30), (artist, 30), (album, 30), (year, 4), (comment, 30))
    return b"TAG" + b"".join(text.encode("cp1252").ljust(length, filled_with)
                             for text, length in texts) + bytes([genre])


def make_tagged(path, *tag, seconds=1):
    make_mp3(path, seconds)
    with open(path, "ab") as target:
        target.write(tag_of(*tag))


def same_path(seen, path):
    return (seen or "").lower() == row_of(path)


def start_editor(desktop, program, destination):
    started = start_in(desktop, program, destination)
    started.open_window(TITLE, TITLE)
    return started


def browse(desktop, started, path):
    started.click("...", "push button")
    wait_for("the file dialog", lambda: started.has_focus("File name:", "text"))
    desktop.type(str(path))
    desktop.press("Return")
    wait_for("the edited file", lambda: same_path(edited_file(started), path))


def edited_file(started):
    return started.text("Currently editing this file")


def tag_shown(started):
    return tuple(started.text(field) for field in FIELDS)


def wait_for_tag(started, *values):
    wait_for(f"the tag {values}", lambda: tag_shown(started) == values)


def stored_list(desktop):
    section = desktop.stored("music")
    return [section.get(str(i), "").replace("\\\\", "\\").lower()
            for i in range(1, int(section.get("HowMany", 0)) + 1)]


def wait_for_list(desktop, started, *paths):
    rows = [row_of(path) for path in paths]
    wait_for(f"{len(rows)} lines", lambda: [line.lower() for line in started.lines("PlayList")] ==
             rows)
    wait_for("the stored list", lambda: stored_list(desktop) == rows)


def line_of(started, path):
    return next(line for line in started.lines("PlayList") if same_path(line, path))


def click_entry(started, path):
    started.click_line("PlayList", line_of(started, path))
    wait_for("the edited file", lambda: same_path(edited_file(started), path))


def decoded(path):
    """The samples of an MP3 file, decoded by mpg123 and not by the program."""
    with tempfile.NamedTemporaryFile(suffix=".wav") as other:
        subprocess.run(["mpg123", "-q", "-w", other.name, str(path)], check=True,
                       capture_output=True)
        with wave.open(other.name, "rb") as source:
            return source.readframes(source.getnframes())
