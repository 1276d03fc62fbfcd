# SPDX-License-Identifier: GPL-3.0-or-later
"""Steps that several scenarios share."""

from driver import make_disc
from program import Program
from sound import bytes_of
from waiting import check, check_equal, wait_for


# The name of the destination folder, which is in the home. The logic converts the path of this
# folder to lower case, and does not quote the path in the command that saves a capture. The name
# contains a blank and capitals, and the folder must be found nevertheless.
MUSIC = "My Music"


def start_with_disc(desktop, program, seconds, output="none", signal="ramp"):
    """Creates an image of a disc with three tracks, each `seconds` long. Starts the program with
    this disc in the drive, and expands the group "Available Tracks". Returns the program, the path
    of the disc image's sheet, and the destination folder."""
    sheet = make_disc(desktop.home / "discs", tracks=3, seconds=seconds, signal=signal)
    destination = desktop.home / MUSIC
    desktop.write_store(sheet, destination, output)
    started = Program(desktop, program)
    started.wait_for_window()
    started.open_row("Available Tracks")
    return started, sheet, destination


def music_folder(desktop):
    """Creates the destination folder and returns its path."""
    folder = desktop.home / MUSIC
    folder.mkdir()
    return folder


def start_in(desktop, program, destination, full_paths=False, output="none"):
    """Starts the program with a destination folder and a disc of two tracks. `full_paths`
    determines whether the tree shows the files of the folder with their paths."""
    sheet = make_disc(desktop.home / "discs", tracks=2, seconds=2, signal="ramp")
    desktop.write_store(sheet, destination, output, **{"show%20full%20path": int(full_paths)})
    started = Program(desktop, program)
    started.wait_for_window()
    return started


def go_to_row(desktop, started, name):
    """Makes `name` the current row of the tree by keys. The tree must have the keyboard focus."""
    row = started.rows().index(name)
    desktop.press("Home", *["Down"] * row)


def row_of(path):
    """The text of a row for a file in the music_folder() while the tree shows full paths: the path
    with a drive letter, in lower case. The home is drive H:."""
    below_home = path.parts[path.parts.index(MUSIC):]
    return "\\".join(["h:", *below_home]).lower()


def close_message_box(started, text):
    """Waits for a message box with this text and closes it with its OK button."""
    wait_for(f"the message box {text!r}", lambda: started.find(text, "label"))
    started.click("OK", "push button")
    wait_for(f"the closing of the message box {text!r}",
             lambda: started.find(text, "label") is None)


def start_row(started, row):
    """Selects a row and clicks the button "Start "."""
    started.click_row(row)
    wait_for("the next action", lambda: started.next_action() == f"Next Action:  Process  {row}")
    started.click("Start ", "push button")


def start_track(started, row):
    """Starts the extraction of a track, and waits until two seconds have been captured."""
    start_row(started, row)
    wait_for("two seconds of sound", lambda: (started.figures()[1] or 0) > bytes_of(2))


def wavs_by_track(destination):
    """The WAV files of the destination folder by track number. Fails if the folder contains
    anything else."""
    found = {}
    for path in sorted(destination.iterdir()):
        check(path.suffix == ".wav", f"unexpected file in the destination folder: {path.name}")
        number = int(path.stem.rpartition("-")[2])
        check(number not in found, f"two files of track {number}")
        found[number] = path
    return found


def close(started):
    """Closes the main window and checks that the program then ends with exit code 0."""
    started.close_window()
    check_equal(started.wait_for_end(), 0, "exit code")
