# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the playlist editor: it reads a file's header and tag, writes tags, stores the list, and
renames, deletes and plays files."""

from driver import run
from mp3 import make_mp3
from playlist_editor import (
    TAG_BYTES, TITLE, browse, click_entry, decoded, edited_file, header_lines, make_tagged,
    same_path, start_editor, tag_of, wait_for_list, wait_for_tag)
from program import Program
from scenes import close, music_folder, row_of, start_in
from sound import bytes_of, find_run
from sound_server import SoundServer
from waiting import check, check_equal, wait_for


def the_editor_reads_files_and_stores_the_list(desktop, program):
    destination = music_folder(desktop)
    one, two = destination / "One.mp3", destination / "Two.mp3"
    make_tagged(one, "Morning", "The Larks", "Birds", "1999", "first take", 17)
    make_mp3(two, seconds=2)
    started = start_editor(desktop, program, destination)
    browse(desktop, started, one)
    wait_for_tag(started, "The Larks", "Morning", "Birds", "1999", "first take", "17")
    check_equal(started.text("HasTag"), "True", "whether there is a tag")
    check_equal(started.text("Length"), f"{one.stat().st_size} bytes", "the length")
    check_equal(started.lines("Header Info"), header_lines(seconds=1), "header lines")

    started.click("Add to PlayList", "push button")
    wait_for_list(desktop, started, one)
    check_equal(edited_file(started), "", "the edited file after it was added")
    browse(desktop, started, two)
    wait_for("no tag", lambda: started.text("HasTag") == "False")
    started.click("Add to PlayList", "push button")
    wait_for_list(desktop, started, one, two)

    click_entry(started, one)
    wait_for_tag(started, "The Larks", "Morning", "Birds", "1999", "first take", "17")
    wait_for("the header", lambda: started.lines("Header Info") == header_lines(seconds=1))
    click_entry(started, two)
    wait_for("no tag", lambda: started.text("HasTag") == "False" and
             started.text("Title") == "" and
             started.text("Length") == f"{two.stat().st_size} bytes")
    wait_for("the header", lambda: started.lines("Header Info") == header_lines(seconds=2))
    close(started)

    again = Program(desktop, program)
    again.wait_for_window()
    again.open_window(TITLE, TITLE)
    wait_for_list(desktop, again, one, two)
    # The Tab key moves the focus to the list, and Home selects its first entry.
    again.tab_to("PlayList", "list")
    desktop.press("Home")
    wait_for_tag(again, "The Larks", "Morning", "Birds", "1999", "first take", "17")
    click_entry(again, two)
    again.click("Delist", "push button")
    wait_for_list(desktop, again, one)
    check(two.exists(), "delisting has deleted the file")
    close(again)


def the_editor_writes_a_tag(desktop, program):
    destination = music_folder(desktop)
    path = destination / "One.mp3"
    make_tagged(path, "Morning", "The Larks", "Birds", "1999", "first take", 17)
    before = path.read_bytes()
    started = start_editor(desktop, program, destination)
    browse(desktop, started, path)
    wait_for_tag(started, "The Larks", "Morning", "Birds", "1999", "first take", "17")
    for field, text in (("Album", "Nightingales"), ("Year", "2001"), ("Genre", "9")):
        started.type_into(field, text)
    started.click(" Write tag", "push button")
    wait_for("the written tag", lambda: path.read_bytes() != before)
    after = path.read_bytes()
    check_equal(len(after), len(before), "the length of the file")
    check(after[:-TAG_BYTES] == before[:-TAG_BYTES], "bytes before the tag were changed")
    # Deliberate: the box "Artist" is written to the tag's title, and "Title" to the tag's artist.
    written = tag_of("The Larks", "Morning", "Nightingales", "2001", "first take", 9, b" ")
    check_equal(after[-TAG_BYTES:], written, "the tag")
    started.click("Read header", "push button")
    wait_for_tag(started, "Morning", "The Larks", "Nightingales", "2001", "first take", "9")
    close(started)


def the_editor_renames_and_deletes_files(desktop, program):
    destination = music_folder(desktop)
    one, two = destination / "One.mp3", destination / "Two.mp3"
    for path in (one, two):
        make_mp3(path, seconds=1)
    started = start_editor(desktop, program, destination)
    for path in (one, two):
        browse(desktop, started, path)
        started.click("Add to PlayList", "push button")
        wait_for("the entry", lambda: any(same_path(line, path)
                                          for line in started.lines("PlayList")))
    wait_for_list(desktop, started, one, two)

    click_entry(started, one)
    content = one.read_bytes()
    started.click("Rename File", "push button")
    wait_for("the file dialog", lambda: started.has_focus("File name:", "text"))
    desktop.press("ctrl+a")
    other = destination / "Other Name.mp3"
    desktop.type(str(other))
    desktop.press("Return")
    wait_for("the renamed file", lambda: other.exists() and not one.exists())
    check(other.read_bytes() == content, "the renamed file has another content")
    wait_for("the new name in the list", lambda: [
        line.lower() for line in started.lines("PlayList")] == [row_of(other), row_of(two)])

    click_entry(started, two)
    for answer in ("No", "Yes"):
        started.click("Delete  File", "push button")
        wait_for("the question", lambda: started.find(
            "Are you sure you want to delete this file?", "label"))
        check(two.exists(), "the file was deleted before the user confirmed")
        started.click(answer, "push button")
        wait_for("the closing of the question", lambda: started.find(
            "Are you sure you want to delete this file?", "label") is None)
    wait_for("the message", lambda: started.find("OK", "push button"))
    check(not two.exists(), "the file still exists")
    started.click("OK", "push button")
    wait_for_list(desktop, started, other)
    check_equal(edited_file(started), "", "the edited file after it was deleted")
    close(started)


def clicking_an_entry_adds_the_file_to_the_work_tree_if_the_box_is_ticked(desktop, program):
    destination = music_folder(desktop)
    elsewhere = desktop.home / "Else Where"
    path = elsewhere / "One.mp3"
    make_mp3(path, seconds=1)
    started = start_editor(desktop, program, destination)
    started.click("...", "push button")
    wait_for("the file dialog", lambda: started.has_focus("File name:", "text"))
    desktop.type(str(path))
    desktop.press("Return")
    wait_for("the edited file", lambda: (edited_file(started) or "").lower().endswith("one.mp3"))
    started.click("Add to PlayList", "push button")
    line = wait_for("the entry", lambda: started.lines("PlayList"))[0]
    check_equal(started.group("MP3 Files"), [], "files of the tree")
    started.click_line("PlayList", line)
    wait_for("the edited file", lambda: edited_file(started))
    check_equal(started.group("MP3 Files"), [],
                "files of the tree after a click while the box is not ticked")
    started.click("Click on a file to add it to the Files List", "check box")
    started.click_line("PlayList", line)
    wait_for("the file in the tree", lambda: started.group("MP3 Files") == ["one.mp3"])
    close(started)


def the_editor_plays_and_stops_an_entry(desktop, program):
    server = SoundServer(desktop)
    destination = music_folder(desktop)
    path = destination / "One.mp3"
    make_mp3(path, seconds=20)
    started = start_in(desktop, program, destination, output="default")
    started.open_window(TITLE, TITLE)
    browse(desktop, started, path)
    started.click("Add to PlayList", "push button")
    wait_for_list(desktop, started, path)
    click_entry(started, path)
    check(not any(server.latest()), "there is sound before the file plays")
    window = started.window(TITLE)
    started.click("Play", "push button", within=window)
    part = decoded(path)[bytes_of(1):bytes_of(1) + bytes_of(1) // 4]
    wait_for("the file in the output", lambda: find_run(server.played(), part) >= 0)
    started.click("Stop", "push button", within=window)
    server.wait_for_silence("stopped")
    # After a stop, Play starts at the beginning.
    start = server.position()
    started.click("Play", "push button", within=window)
    wait_for("the file from its beginning", lambda: find_run(server.played()[start:], part) >= 0)
    started.close_other(TITLE)
    server.wait_for_silence("closed")
    close(started)


if __name__ == "__main__":
    run(the_editor_reads_files_and_stores_the_list, the_editor_writes_a_tag,
        the_editor_renames_and_deletes_files,
        clicking_an_entry_adds_the_file_to_the_work_tree_if_the_box_is_ticked,
        the_editor_plays_and_stops_an_entry)
