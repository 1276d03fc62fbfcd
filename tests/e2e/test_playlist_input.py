# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the playlist editor with the keyboard alone, and through the accessibility tree alone."""

from driver import run
from playlist_editor import (
    TAG_BYTES, TITLE, edited_file, header_lines, make_tagged, same_path, stored_list, tag_of,
    wait_for_list, wait_for_tag)
from scenes import close, music_folder, row_of, start_in
from sound_server import SoundServer
from waiting import check, check_equal, wait_for


def the_editor_is_operated_by_keyboard_alone(desktop, program):
    server = SoundServer(desktop)
    destination = music_folder(desktop)
    one, two = (desktop.home / "Else Where" / name for name in ("One.mp3", "Two.mp3"))
    make_tagged(one, "Morning", "The Larks", "Birds", "1999", "first take", 17, seconds=20)
    make_tagged(two, "Evening", "The Owls", "Birds", "2000", "second take", 3, seconds=2)
    started = start_in(desktop, program, destination, output="default")
    started.close_panel()
    desktop.activate(started.main_window_id())
    started.tab_to(TITLE, "push button")
    desktop.press("space")
    wait_for("the editor in front",
             lambda: desktop.active_window() == started.window_id(TITLE) is not None)
    window = started.window(TITLE)

    def focus(name, role):
        started.tab_to(name, role, within=window)

    def press_button(name, role="push button"):
        focus(name, role)
        desktop.press("space")

    def answer_dialog(path):
        wait_for("the file dialog", lambda: started.has_focus("File name:", "text"))
        desktop.press("ctrl+a")
        desktop.type(str(path))
        desktop.press("Return")

    for number, path in enumerate((one, two), start=1):
        press_button("...")
        answer_dialog(path)
        wait_for("the tag", lambda: started.text("HasTag") == "True")
        press_button("Add to PlayList")
        wait_for("the entry", lambda: len(stored_list(desktop)) == number)

    focus("PlayList", "list")
    desktop.press("Home")
    wait_for_tag(started, "The Larks", "Morning", "Birds", "1999", "first take", "17")
    desktop.press("Down")
    wait_for_tag(started, "The Owls", "Evening", "Birds", "2000", "second take", "3")
    wait_for("the header", lambda: started.lines("Header Info") == header_lines(seconds=2))

    check_equal(started.group("MP3 Files"), [], "files of the tree")
    press_button("Click on a file to add it to the Files List", "check box")
    focus("PlayList", "list")
    desktop.press("Up")
    wait_for("the file in the tree", lambda: started.group("MP3 Files") == ["one.mp3"])

    press_button("Play")
    server.wait_for_sound("playing")
    press_button("Stop")
    server.wait_for_silence("stopped")

    before = one.read_bytes()
    focus("Album", "text")
    desktop.press("ctrl+a")
    desktop.type("Nightingales")
    press_button(" Write tag")
    wait_for("the written tag", lambda: one.read_bytes() != before)
    check_equal(one.read_bytes()[-TAG_BYTES:],
                tag_of("The Larks", "Morning", "Nightingales", "1999", "first take", 17, b" "),
                "the tag")

    press_button("Rename File")
    other = one.with_name("Other Name.mp3")
    answer_dialog(other)
    wait_for("the renamed file", lambda: other.exists() and not one.exists())

    press_button("Delete  File")
    wait_for("the question", lambda: started.find("Yes", "push button"))
    started.tab_to("Yes", "push button")
    desktop.press("space")
    wait_for("the message", lambda: started.find("OK", "push button"))
    check(not other.exists(), "the file still exists")
    desktop.press("Return")
    wait_for("the list without the deleted file", lambda: len(stored_list(desktop)) == 1)
    focus("PlayList", "list")
    desktop.press("Home")
    wait_for_tag(started, "The Owls", "Evening", "Birds", "2000", "second take", "3")
    press_button("Delist")
    wait_for("the empty list", lambda: stored_list(desktop) == [])
    check(two.exists(), "delisting has deleted the file")
    close(started)


def the_editor_is_operated_through_the_accessibility_tree_alone(desktop, program):
    destination = music_folder(desktop)
    one, two = destination / "One.mp3", destination / "Two.mp3"
    make_tagged(one, "Morning", "The Larks", "Birds", "1999", "first take", 17)
    make_tagged(two, "Evening", "The Owls", "Birds", "2000", "second take", 3)
    started = start_in(desktop, program, destination)
    started.act(TITLE, "push button")
    window = wait_for("the editor", lambda: started.window(TITLE))

    for path in (one, two):
        started.set_text("Currently editing this file", row_of(path))
        started.act("Read header", "push button")
        wait_for("the tag", lambda: started.text("HasTag") == "True")
        started.act("Add to PlayList", "push button")
        wait_for("the entry", lambda: row_of(path) in stored_list(desktop))
    wait_for_list(desktop, started, one, two)

    started.select_line("PlayList", 0)
    wait_for_tag(started, "The Larks", "Morning", "Birds", "1999", "first take", "17")
    wait_for("the header", lambda: started.lines("Header Info") == header_lines(seconds=1))
    started.select_line("PlayList", 1)
    wait_for_tag(started, "The Owls", "Evening", "Birds", "2000", "second take", "3")

    for name in ("Play", "Stop"):
        started.act(name, "push button", within=window)
    started.act("Click on a file to add it to the Files List", "check box")
    wait_for("the ticked check box", lambda: started.is_checked(
        started.find("Click on a file to add it to the Files List", "check box")))

    before = two.read_bytes()
    started.set_text("Genre", "9")
    started.act(" Write tag", "push button")
    wait_for("the written tag", lambda: two.read_bytes() != before)
    check_equal(two.read_bytes()[-1], 9, "the genre")

    started.act("Delete  File", "push button")
    started.act("Yes", "push button")
    started.act("OK", "push button")
    wait_for_list(desktop, started, one)
    check(not two.exists(), "the file still exists")
    started.select_line("PlayList", 0)
    wait_for("the edited file", lambda: same_path(edited_file(started), one))
    started.act("Delist", "push button")
    wait_for_list(desktop, started)
    close(started)


if __name__ == "__main__":
    run(the_editor_is_operated_by_keyboard_alone,
        the_editor_is_operated_through_the_accessibility_tree_alone)
