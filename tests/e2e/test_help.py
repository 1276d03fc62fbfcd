# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the help window. F1 opens the page about the window in which it is pressed. The help button
and the menu entry open the page about the main window. Pages, links and search can be used by
keyboard. Also tests that a help file beside the program is used instead of the pages."""

import pathlib
import re
import shutil

from driver import REPOSITORY, run
from program import Program
from scenes import close, music_folder, start_in
from waiting import check, check_equal, wait_for

HELP = "Sonarith Help"
PAGES = REPOSITORY / "share/help"
# The pages in the order of the table of contents.
FILES = ("first", "main", "player", "preferences", "playlist", "finder", "devices", "surprises",
         "keyboard")


def title_of(name):
    return re.search("<h1>(.*)</h1>", (PAGES / f"{name}.html").read_text(encoding="utf-8"))[1]


def start(desktop, program):
    return start_in(desktop, program, music_folder(desktop))


def shown_title(started):
    """The first line of the page that is shown; None if there is no help window."""
    if not started.window(HELP):
        return None
    text = started.text("Help text", role=None)
    return text and text.split("\n")[0]


def wait_for_page(started, name):
    wait_for(f"the page {title_of(name)!r}", lambda: shown_title(started) == title_of(name))


def close_help(desktop, started):
    desktop.press("Escape")
    wait_for("the closing of the help window", lambda: started.window(HELP) is None)


def f1_opens_the_page_of_each_window(desktop, program):
    started = start(desktop, program)

    def press_f1(name, title):
        started.activate(title)
        desktop.press("F1")
        wait_for_page(started, name)
        close_help(desktop, started)

    press_f1("player", "CD Player")
    press_f1("main", started.title)
    for button, title, name in (("Preferences", "Preferences", "preferences"),
                                ("Search for Files", "File Finder", "finder"),
                                ("Playlist Editor", "Playlist Editor", "playlist")):
        started.open_window(button, title)
        press_f1(name, title)
        started.close_other(title)
    started.choose_menu("Preferences", "Devices")
    wait_for("the Devices window", lambda: started.window("Devices"))
    press_f1("devices", "Devices")
    close(started)


def button_and_menu_entry_open_the_main_windows_page(desktop, program):
    started = start(desktop, program)
    started.click("Help", "push button")
    wait_for_page(started, "main")
    close_help(desktop, started)
    started.choose_menu("Help", "Help File")
    wait_for_page(started, "main")
    close_help(desktop, started)
    close(started)


def pages_are_read_by_keyboard(desktop, program):
    started = start(desktop, program)
    started.click("Help", "push button")
    wait_for_page(started, "main")
    wait_for("the focus in the text", lambda: started.has_focus("Help text"))
    desktop.press("alt+Home")
    wait_for_page(started, FILES[0])
    # Follows the first link of the first page.
    desktop.press("Tab", "Return")
    wait_for_page(started, "devices")
    desktop.press("alt+Left")
    wait_for_page(started, FILES[0])
    desktop.press("alt+Right")
    wait_for_page(started, "devices")
    check_equal(started.lines("Contents"), [title_of(name) for name in FILES], "the contents")
    desktop.press("ctrl+f")
    wait_for("the focus in the search", lambda: started.has_focus("Search in all pages"))
    desktop.type("bit for bit")
    desktop.press("Return")
    wait_for_page(started, "surprises")
    desktop.press("ctrl+f")
    desktop.type("no such words")
    desktop.press("Return")
    wait_for("the search's result", lambda: started.find("Not found", "label"))
    started.tab_to("Contents", "list")
    desktop.press("Home")
    for name in FILES:
        wait_for_page(started, name)
        desktop.press("Down")
    # Qt prints a message for each file that a page refers to and that is missing.
    for words in ("No document for", "Cannot open", "QImage", "QTextBrowser"):
        check(words not in desktop.program_output(), desktop.program_output())
    close_help(desktop, started)
    close(started)


def a_help_file_beside_the_program_is_preferred(desktop, program):
    beside = desktop.home / "app"
    beside.mkdir()
    own = pathlib.Path(shutil.copy(program, beside / program.name))
    (beside / "sonarith.chm").write_bytes(b"help")
    viewer = beside / "xdg-open"
    viewer.write_text('#!/bin/sh\necho "$1" >> "$HOME/viewed"\n')
    viewer.chmod(0o755)
    before = desktop.environment["PATH"]
    desktop.environment["PATH"] = f"{beside}:{before}"
    try:
        started = start(desktop, own)
        started.click("Help", "push button")
        viewed = desktop.home / "viewed"
        wait_for("the viewer", lambda: viewed.exists() and viewed.read_text())
        check(viewed.read_text().strip().endswith("/app/sonarith.chm"), viewed.read_text())
        check(started.window(HELP) is None, "the program's own pages are shown, too")
        close(started)
    finally:
        desktop.environment["PATH"] = before


if __name__ == "__main__":
    run(f1_opens_the_page_of_each_window, button_and_menu_entry_open_the_main_windows_page,
        pages_are_read_by_keyboard, a_help_file_beside_the_program_is_preferred)
