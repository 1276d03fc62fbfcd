# SPDX-License-Identifier: GPL-3.0-or-later
"""What several scenarios begin or end with."""

from driver import make_disc
from program import Program
from sound import bytes_of
from waiting import check, check_equal, wait_for


# The destination in a home. A blank and capitals, since the logic lower-cases the path and names it
# unquoted.
MUSIC = "My Music"


def start_with_disc(desktop, program, seconds, output="none"):
    """The program with a disc of three tracks of that length in the drive, its tracks shown and
    this sound output; returns it, the sheet and the destination."""
    sheet = make_disc(desktop.home / "discs", tracks=3, seconds=seconds, signal="ramp")
    destination = desktop.home / MUSIC
    desktop.write_store(sheet, destination, output)
    started = Program(desktop, program)
    started.wait_for_window()
    started.open_row("Available Tracks")
    return started, sheet, destination


def music_folder(desktop):
    """The destination, empty."""
    folder = desktop.home / MUSIC
    folder.mkdir()
    return folder


def start_in(desktop, program, destination, full_paths=False, output="none"):
    """The program with this destination folder, whose files the tree shows by their paths or by
    their names alone, and with a disc that nothing is done with."""
    sheet = make_disc(desktop.home / "discs", tracks=2, seconds=2, signal="ramp")
    desktop.write_store(sheet, destination, output, **{"show%20full%20path": int(full_paths)})
    started = Program(desktop, program)
    started.wait_for_window()
    return started


def go_to_row(desktop, started, name):
    """Moves through the tree by arrow keys until the row has the keyboard."""
    place = started.rows().index(name)
    desktop.press("Home", *["Down"] * place)


def row_of(path):
    """The row of a file in a music_folder() where the tree shows paths: the logic's path in lower
    case. The home is its H:."""
    below_home = path.parts[path.parts.index(MUSIC):]
    return "\\".join(["h:", *below_home]).lower()


def check_box(started, text):
    """A message box says so; it is closed by its button."""
    wait_for(f"the message box {text!r}", lambda: started.find(text, "label"))
    started.click("OK", "push button")
    wait_for("the closed message box", lambda: started.find(text, "label") is None)


def start_row(started, row):
    """Selects a row and starts what it stands for."""
    started.click_row(row)
    wait_for("the next action", lambda: started.next_action() == f"Next Action:  Process  {row}")
    started.click("Start ", "push button")


def start_track(started, row):
    """Starts a single track, and waits until two seconds of it have been captured."""
    start_row(started, row)
    wait_for("two seconds of sound", lambda: (started.figures()[1] or 0) > bytes_of(2))


def wavs_by_track(destination):
    """The WAVs of the destination folder by their track numbers; nothing else may be there."""
    found = {}
    for path in sorted(destination.iterdir()):
        check(path.suffix == ".wav", f"{path.name} stands in the destination folder")
        number = int(path.stem.rpartition("-")[2])
        check(number not in found, f"two files of track {number}")
        found[number] = path
    return found


def close(started):
    """Closes the main window; the program ends by itself, and well."""
    started.close_window()
    check_equal(started.wait_for_end(), 0, "exit code")
