# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the file finder in small folders, in a folder tree with a hundred thousand files and on the
whole machine: searching, stopping a search, the lists, the popup menu of the found files, and
closing the window during a search."""

import os

from driver import run
from mp3 import make_mp3
from scenes import close, music_folder, start_in
from waiting import check, check_equal, wait_for

BUTTON = "Search for Files"
TITLE = "File Finder"
SEARCH, STOP = "Search !", "Stop!"
QUESTION = "Are you sure you want to delete this file?"


def start_finder(desktop, program):
    """Starts the program, opens the finder and chooses the drive of the home."""
    destination = desktop.home / "My Music"
    if not destination.exists():
        music_folder(desktop)
    started = start_in(desktop, program, destination)
    open_finder(desktop, started)
    return started


def open_finder(desktop, started):
    started.open_window(BUTTON, TITLE)
    choose_home(desktop, started)


def choose_folder(started, name):
    started.click_line("Folder", name, times=2)


def choose_home(desktop, started):
    """Selects the drive of the home. When the finder is first opened, it shows the destination
    folder; when it is opened again, it shows the program's folder."""
    if "h:\\" in wait_for("a folder", lambda: started.lines("Folder")):
        choose_folder(started, "h:\\")
        wait_for("the home's folders", lambda: "discs" in started.lines("Folder"))
    else:
        choose_home_by_drive(desktop, started)


def choose_home_by_drive(desktop, started):
    started.click("c:", "combo box", within=started.window(TITLE))
    desktop.press("End", "Return")
    wait_for("the home's folders", lambda: "discs" in started.lines("Folder"))


def search_for(started, extension, name=None):
    started.type_into("File Type", extension)
    if name is not None:
        started.type_into("File Name (optional)", name)
    started.click(SEARCH, "push button")


def wait_for_result(started, what, expected):
    """Waits until the search has ended and the finder shows the expected files. A test cannot wait
    for the end alone: before a search, the buttons and boxes look the same as after it."""
    wait_for(f"{what}: {expected}", lambda: started.find(SEARCH, "push button") and
             started.is_enabled("File Type", "text") and found(started) == expected)


def summary(started):
    """The numbers of folders and files that the finder shows after a search; None if it shows
    none."""
    words = next((text for text in started.labels(TITLE) if text.startswith("Directories: ")), "")
    parts = words.split()
    return (int(parts[1]), int(parts[3])) if len(parts) == 4 else None


def as_found(path, home):
    """The path of a file in the home as the finder shows it, converted to lower case."""
    return "\\".join(["h:", *path.relative_to(home).parts]).lower()


def found(started):
    """The found files, in lower case and sorted."""
    return sorted(line.lower() for line in started.lines("Files found"))


def make_files(desktop, *names):
    for name in names:
        path = desktop.home / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(b"x" * 2000)
    return [desktop.home / name for name in names]


def folders_below(folder):
    """The number of folders below a folder, without those whose names begin with a dot."""
    count = 0
    for entry in folder.iterdir():
        if entry.is_dir() and not entry.name.startswith("."):
            count += 1 + folders_below(entry)
    return count


def files_are_found_by_extension_and_name(desktop, program):
    mp3s = make_files(desktop, "a/One.mp3", "a/deep/Two.MP3", "b/Three.mp3")
    make_files(desktop, "a/One.wav", "b/notes.txt", ".hidden/Four.mp3")
    started = start_finder(desktop, program)
    folders = folders_below(desktop.home)
    search_for(started, "mp3")
    wait_for_result(started, "files found", sorted(as_found(path, desktop.home) for path in mp3s))
    check_equal(summary(started), (folders, len(mp3s)), "the summary")
    check("h:\\a\\deep\\" in [line.lower() for line in started.lines("Folders searched")],
          "a folder is missing in the list of searched folders")
    check_equal(started.text("File Type"), ".mp3", "the extension after the search")

    search_for(started, ".wav")
    wait_for_result(started, "WAV files found", ["h:\\a\\one.wav"])
    search_for(started, ".mp3", "three")
    wait_for_result(started, "files of that name found", ["h:\\b\\three.mp3"])
    search_for(started, ".ogg", "")
    wait_for_result(started, "files found by a search without a match", [])
    check_equal(summary(started), (folders, 0), "the summary of a search without a match")
    close(started)


def choose_machine(desktop, started):
    """Selects the root of the machine. A search there takes so long that it does not end before the
    test stops it or closes the finder."""
    started.click("h:", "combo box", within=started.window(TITLE))
    desktop.press("Home", "Return")
    wait_for("the machine's drive", lambda: "C:\\" in started.lines("Folder"))
    choose_folder(started, "C:\\")
    wait_for("the folders of the machine", lambda: "usr" in started.lines("Folder"))


class LongSearch:
    """A search in the chosen folder. The elements of the window are looked up before the search
    starts, since the busy program is slow to return them."""

    def __init__(self, desktop, started, extension):
        self._desktop = desktop
        self._started = started
        started.type_into("File Type", extension)
        self.lists = [started.get(name, "list") for name in ("Files found", "Folders searched")]
        self.wanted = started.get("File Type", "text")
        self.labels = started.watch_labels(TITLE)
        self.button = started.get(SEARCH, "push button")
        self._centre = started.centre_of(self.button)
        self.press_button()
        wait_for("the search", lambda: self.button.get_name() == STOP)

    def press_button(self):
        self._desktop.click_at(*self._centre)

    def files_found(self):
        return self.lists[0].get_child_count()

    def centre_of_first_line(self):
        """The text and the centre of the first line of the found files. Their list must not be
        scrolled."""
        line = self.lists[0].get_child_at_index(0)
        return line.get_name(), self._started.centre_of(line)


def a_search_with_hidden_lists_is_stopped(desktop, program):
    started = start_finder(desktop, program)
    started.click("Hide lists when searching", "check box")
    choose_machine(desktop, started)
    search = LongSearch(desktop, started, "so")
    wait_for("the hiding of the lists", lambda: not any(map(started.shows, search.lists)))
    check(not started.shows_enabled(search.wanted), "the file type can be edited during the search")
    seen = set()

    def folders_change():
        seen.update(text for text in search.labels() if text.startswith("Searching . . . "))
        return len(seen) >= 3

    wait_for("changing folder names", folders_change)
    search.press_button()
    wait_for("the end of the search", lambda: search.button.get_name() == SEARCH and
             started.shows_enabled(search.wanted))
    wait_for("the shown lists", lambda: all(map(started.shows, search.lists)))
    _, files = wait_for("the summary", lambda: summary(started))
    check_equal(files, search.files_found(), "the number of files found")
    # The next search works as usual.
    choose_home_by_drive(desktop, started)
    choose_folder(started, "discs")
    wait_for("the small folder", lambda: ".config" not in started.lines("Folder"))
    search_for(started, "cue")
    wait_for_result(started, "sheets found", ["h:\\discs\\disc.cue"])
    close(started)


def the_popup_selects_removes_and_deletes_found_files(desktop, program):
    names = ("One.mp3", "Two.mp3", "Three.mp3")
    for name in names:
        make_mp3(desktop.home / "found" / name, seconds=0.5)
    one, two, three = (as_found(desktop.home / "found" / name, desktop.home) for name in names)
    started = start_finder(desktop, program)
    search_for(started, "mp3")
    wait_for_result(started, "files found", sorted([one, two, three]))

    def choose(file, entry):
        line = next(line for line in started.lines("Files found") if line.lower() == file)
        started.click_line("Files found", line)
        started.choose_from_popup(lambda: started.click_line("Files found", line, button=3), entry)

    choose(one, "Select for Conversion")
    wait_for("the file in the tree", lambda: started.group("MP3 Files") == ["one.mp3"])
    choose(two, "Remove File from list")
    wait_for("the shorter list", lambda: found(started) == sorted([one, three]))
    check((desktop.home / "found" / "Two.mp3").exists(),
          "removing a file from the list has deleted it")
    for answer in ("No", "Yes"):
        check((desktop.home / "found" / "Three.mp3").exists(),
              "the file was deleted before the user confirmed")
        choose(three, "Delete File")
        wait_for("the question", lambda: started.find(QUESTION, "label"))
        started.click(answer, "push button")
        wait_for("the closing of the question", lambda: started.find(QUESTION, "label") is None)
    wait_for("the shorter list", lambda: found(started) == [one])
    check_equal(sorted(path.name for path in (desktop.home / "found").iterdir()),
                ["One.mp3", "Two.mp3"], "the files")
    choose(one, "Close Window")
    wait_for("the closing of the finder", lambda: started.window(TITLE) is None)
    close(started)


def closing_ends_the_search(desktop, program):
    make_files(desktop, "small/One.wav")
    started = start_finder(desktop, program)
    choose_machine(desktop, started)
    LongSearch(desktop, started, "so")
    desktop.press("Escape")
    wait_for("the closing of the finder", lambda: started.window(TITLE) is None)
    # The reopened finder shows no files and no summary, and it can search a small folder.
    started.open_window(BUTTON, TITLE)
    check_equal((found(started), summary(started)), ([], None),
                "the files and the summary of the reopened finder")
    started.get(SEARCH, "push button")
    choose_home(desktop, started)
    choose_folder(started, "small")
    wait_for("the small folder", lambda: "discs" not in started.lines("Folder"))
    search_for(started, "wav")
    wait_for_result(started, "files found", ["h:\\small\\one.wav"])
    close(started)


def make_large_tree(folder, folders=5000, files_each=20):
    """Creates empty files in many folders. Half of the files have names of WAV files. Returns the
    number of files with names of WAV files."""
    names = [f"Track {i}{'.wav' if i % 2 == 0 else '.MP3'}" for i in range(files_each)]
    folder.mkdir()
    for number in range(folders):
        if number % 50 == 0:
            artist = folder / f"Artist {number // 50}"
            album = artist
        else:
            album = artist / f"Album {number}"
        album.mkdir()
        opened = os.open(album, os.O_RDONLY | os.O_DIRECTORY)
        for name in names:
            os.close(os.open(name, os.O_CREAT | os.O_WRONLY, 0o600, dir_fd=opened))
        os.close(opened)
    return folders * files_each // 2


def after_the_search_of_a_large_tree_the_finder_can_be_used_and_closed(desktop, program):
    wavs = make_large_tree(desktop.home / "large")
    started = start_finder(desktop, program)
    choose_folder(started, "large")
    wait_for("the large folder", lambda: "Artist 0" in started.lines("Folder"))
    search = LongSearch(desktop, started, "wav")
    wait_for("the end of the search", lambda: search.button.get_name() == SEARCH and
             search.files_found() == wavs)
    # Deliberate: more files are found than the summary's counter of files can hold, so this counter
    # stays at 0.
    check_equal(summary(started), (folders_below(desktop.home / "large"), 0), "the summary")
    first, centre = search.centre_of_first_line()
    desktop.click_at(*centre)
    started.choose_from_popup(lambda: desktop.click_at(*centre, button=3), "Remove File from list")
    wait_for("the shorter list", lambda: search.files_found() == wavs - 1)
    check(search.centre_of_first_line()[0] != first, "a line that was not clicked was removed")
    # Starts another search and closes the finder at once.
    search.press_button()
    desktop.press("Escape")
    wait_for("the closing of the finder", lambda: started.window(TITLE) is None)
    close(started)


if __name__ == "__main__":
    run(files_are_found_by_extension_and_name, a_search_with_hidden_lists_is_stopped,
        the_popup_selects_removes_and_deletes_found_files, closing_ends_the_search,
        after_the_search_of_a_large_tree_the_finder_can_be_used_and_closed)
