# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the files in the work tree: how they are added from the destination folder and by the file
dialog, and how they are dragged, renamed, removed from the list and deleted."""

from driver import run
from mp3 import make_mp3
from scenes import (close, close_message_box, go_to_row, music_folder, row_of, start_in,
                    start_row)
from sound import bytes_of
from waiting import check, check_equal, wait_for

NO_FILES = "No files in list."
NONE_SELECTED = "No files selected"
SHORTEST_FILE = 100  # bytes; the file dialog adds no shorter files


def make_wav(path):
    """Creates a file that the tree shows as a WAV file. These tests do not read its content."""
    path.write_bytes(b"RIFF".ljust(bytes_of(1), b"\0"))


def start_with_mp3s(desktop, program, *names, full_paths=False):
    """Starts the program with MP3 files of these names in its destination folder; their contents
    differ. Returns the program, the folder and the contents by name."""
    destination = music_folder(desktop)
    for i, name in enumerate(names):
        make_mp3(destination / name, seconds=0.5, hertz=300 + 50 * i)
    started = start_in(desktop, program, destination, full_paths)
    shown = sorted(row_of(destination / name) if full_paths else name for name in names)
    check_equal(sorted(started.group("MP3 Files")), shown, "MP3 files at the start")
    return started, destination, content_of(destination)


def content_of(folder):
    """The contents of the files in a folder, by name."""
    return {path.name: path.read_bytes() for path in folder.iterdir()}


def wait_for_groups(started, selected, available):
    wait_for(f"{selected} selected and {available} available",
             lambda: (started.group("Selected MP3 Files"),
                      sorted(started.group("MP3 Files"))) == (selected, sorted(available)))


def edit_label(desktop, started, row):
    """Opens the editor of a row's label by a click on the row."""
    started.click_row(row)
    wait_for("the next action", lambda: started.next_action() == f"Next Action:  Process  {row}")
    wait_for("the focus in the editor", lambda: started.has_focus("New name"))


def type_name(desktop, name):
    desktop.press("ctrl+a")
    desktop.type(name)
    desktop.press("Return")


def the_tree_shows_the_files_of_the_folder(desktop, program):
    destination = music_folder(desktop)
    make_wav(destination / "One.WAV")
    make_mp3(destination / "two.mp3", seconds=0.5)
    make_mp3(destination / "Deeper" / "Three.Mp3", seconds=0.5)
    (destination / "notes.txt").write_text("neither WAV nor MP3")
    started = start_in(desktop, program, destination, full_paths=True)
    wav, two, three = (row_of(destination / name)
                       for name in ("One.WAV", "two.mp3", "Deeper/Three.Mp3"))
    check_equal(started.group("WAV Files"), [wav], "WAV files at the start")
    check_equal(sorted(started.group("MP3 Files")), sorted([two, three]), "MP3 files at the start")
    check_equal(started.group("Selected MP3 Files"), [], "selected MP3 files at the start")
    check(not any("notes" in row for row in started.rows()), "the tree shows a text file")

    make_mp3(destination / "four.mp3", seconds=0.5)
    make_wav(destination / "five.wav")
    (destination / "two.mp3").unlink()
    started.choose_menu("Action", "Refresh List")
    new = [row_of(destination / name) for name in ("four.mp3", "five.wav")]
    # Deliberate: the first refresh does not change the groups of files. It removes the disc's
    # collection "CD Tracks", adds it again after the collections of the files, and adds all new
    # files to the disc's group "Available Tracks". A file that no longer exists keeps its row.
    wait_for("the new files", lambda: set(new) <= set(started.group("Available Tracks")))
    check_equal(started.group("WAV Files"), [wav], "WAV files after the refresh")
    check_equal(sorted(started.group("MP3 Files")), sorted([two, three]),
                "MP3 files after the refresh")
    check_equal(started.rows().count(new[0]), 1, "rows of the new MP3 file")
    close(started)


def files_are_found_in_a_home_with_a_dot_in_its_name(desktop, program):
    # The logic takes the extension from the first dot of the whole path. So the logic's paths begin
    # with the home's drive ("h:") and do not contain the home's name.
    desktop.move_to(desktop.home / "jane.doe")
    started, _, _ = start_with_mp3s(desktop, program, "One.mp3", full_paths=True)
    close(started)


def an_mp3_is_dragged_to_the_selected_files_and_back(desktop, program):
    started, destination, content = start_with_mp3s(desktop, program, "one.mp3", "two.mp3")
    started.drag_row("one.mp3", "Selected MP3 Files")
    wait_for_groups(started, ["one.mp3"], ["two.mp3"])
    started.drag_row("one.mp3", "MP3 Files")
    wait_for_groups(started, [], ["one.mp3", "two.mp3"])
    # The logic's list of selected files is empty, like the group.
    start_row(started, "Selected MP3 Files")
    close_message_box(started, NONE_SELECTED)
    check_equal(content_of(destination), content, "the files")
    close(started)


def dragging_all_mp3s_to_the_selected_files_empties_the_list_of_available_files(desktop, program):
    started, destination, content = start_with_mp3s(desktop, program, "one.mp3", "two.mp3",
                                                    full_paths=True)
    rows = [row_of(destination / name) for name in ("one.mp3", "two.mp3")]
    for row in rows:
        started.drag_row(row, "Selected MP3 Files")
        wait_for(f"{row} among the selected", lambda: row in started.group("Selected MP3 Files"))
    wait_for_groups(started, rows, [])
    start_row(started, "MP3 Files")
    close_message_box(started, NO_FILES)
    check_equal(content_of(destination), content, "the files")
    close(started)


def two_mp3s_are_selected_by_keys_alone(desktop, program):
    started, destination, content = start_with_mp3s(desktop, program, "one.mp3", "two.mp3",
                                                    "three.mp3")
    wait_for("the focus in the tree", lambda: started.has_focus("Work tree"))
    for selected, available in ((["one.mp3"], ["two.mp3", "three.mp3"]),
                                (["one.mp3", "two.mp3"], ["three.mp3"])):
        go_to_row(desktop, started, selected[-1])
        desktop.press("ctrl+x")
        go_to_row(desktop, started, "Selected MP3 Files")
        desktop.press("Return")
        wait_for_groups(started, selected, available)
    # The file stays in its group if Escape cancels the cut, and if it is pasted into this group.
    for last_keys in (("Escape",), ("ctrl+v",)):
        go_to_row(desktop, started, "three.mp3")
        desktop.press("ctrl+x")
        go_to_row(desktop, started, "MP3 Files")
        desktop.press(*last_keys)
    go_to_row(desktop, started, "MP3 Files")
    desktop.press("Return")
    wait_for("the next action",
             lambda: started.next_action() == "Next Action:  Process  MP3 Files")
    wait_for_groups(started, ["one.mp3", "two.mp3"], ["three.mp3"])
    # The logic's list matches the group "MP3 Files": only one file is decoded.
    desktop.press("alt+s")
    wait_for("the WAV in the tree", lambda: started.group("WAV Files") == ["three.wav"])
    wait_for("the end of the decoding", lambda: started.is_enabled("Preferences", "push button"))
    check_equal(sorted(content_of(destination)), sorted([*content, "three.wav"]), "the files")
    close(started)


def neither_an_mp3_dragged_to_the_tracks_nor_a_dragged_group_moves(desktop, program):
    started, destination, content = start_with_mp3s(desktop, program, "one.mp3", "two.mp3")
    before = started.rows()
    started.drag_row("one.mp3", "Selected Tracks")
    started.drag_row("MP3 Files", "Selected MP3 Files")
    # When the effect of the next drag is visible, the two drags before it have been handled, too.
    started.drag_row("two.mp3", "Selected MP3 Files")
    wait_for_groups(started, ["two.mp3"], ["one.mp3"])
    started.drag_row("two.mp3", "MP3 Files")
    wait_for_groups(started, [], ["one.mp3", "two.mp3"])
    check_equal(sorted(started.rows()), sorted(before), "rows of the tree")
    check_equal(content_of(destination), content, "the files")
    close(started)


def editing_a_label_renames_the_file(desktop, program):
    started, destination, content = start_with_mp3s(desktop, program, "one.mp3", "two.mp3")
    edit_label(desktop, started, "one.mp3")
    type_name(desktop, "The First.mp3")
    wait_for("the new label", lambda: "The First.mp3" in started.group("MP3 Files"))
    check_equal(content_of(destination),
                {"The First.mp3": content["one.mp3"], "two.mp3": content["two.mp3"]}, "the files")
    close(started)


def keys_rename_a_file(desktop, program):
    started, destination, content = start_with_mp3s(desktop, program, "one.mp3", "two.mp3")
    go_to_row(desktop, started, "two.mp3")
    desktop.press("F2")
    wait_for("the focus in the editor", lambda: started.has_focus("New name"))
    desktop.press("ctrl+a")
    desktop.type("unwanted.mp3")
    desktop.press("Escape")
    wait_for("the focus in the tree", lambda: started.has_focus("Work tree"))
    check("two.mp3" in started.group("MP3 Files"), "a cancelled edit changed the label")
    desktop.press("F2")
    wait_for("the focus in the editor", lambda: started.has_focus("New name"))
    type_name(desktop, "second.mp3")
    wait_for_groups(started, [], ["one.mp3", "second.mp3"])
    check_equal(content_of(destination),
                {"one.mp3": content["one.mp3"], "second.mp3": content["two.mp3"]}, "the files")
    close(started)


def a_refused_rename_opens_the_editor_again(desktop, program):
    started, destination, content = start_with_mp3s(desktop, program, "one.mp3", "two.mp3")
    edit_label(desktop, started, "one.mp3")
    type_name(desktop, "two.mp3")
    wait_for("the editor to open again", lambda: started.text("New name") == "one.mp3")
    check_equal(content_of(destination), content, "the files after the refusal")
    check_equal(sorted(started.group("MP3 Files")), ["one.mp3", "two.mp3"],
                "the labels after the refusal")
    # The editor is open again, so the user can type another name without a click.
    type_name(desktop, "three.mp3")
    wait_for_groups(started, [], ["three.mp3", "two.mp3"])
    check_equal(content_of(destination),
                {"three.mp3": content["one.mp3"], "two.mp3": content["two.mp3"]}, "the files")
    close(started)


def removing_from_the_list_keeps_the_file(desktop, program):
    started, destination, content = start_with_mp3s(desktop, program, "one.mp3", "two.mp3",
                                                    full_paths=True)
    one, two = (row_of(destination / name) for name in ("one.mp3", "two.mp3"))
    started.open_popup(one)
    started.click("Remove from List", "menu item")
    wait_for_groups(started, [], [two])
    # The other file is removed by keys.
    wait_for("the focus in the tree", lambda: started.has_focus("Work tree"))
    go_to_row(desktop, started, two)
    desktop.press("Menu")
    wait_for("the popup menu", lambda: started.find("Remove from List", "menu item"))
    desktop.press("r")
    wait_for_groups(started, [], [])
    start_row(started, "MP3 Files")
    close_message_box(started, NO_FILES)
    check_equal(content_of(destination), content, "the files")
    close(started)


def remove_and_delete_deletes_a_renamed_file(desktop, program):
    started, destination, content = start_with_mp3s(desktop, program, "one.mp3", "two.mp3")
    # The file is renamed first, to test that the list then contains its new name.
    edit_label(desktop, started, "one.mp3")
    type_name(desktop, "other.mp3")
    wait_for_groups(started, [], ["other.mp3", "two.mp3"])
    started.open_popup("other.mp3")
    started.click("Remove and Delete File", "menu item")
    wait_for_groups(started, [], ["two.mp3"])
    wait_for("the deletion", lambda: not (destination / "other.mp3").exists())
    check_equal(content_of(destination), {"two.mp3": content["two.mp3"]}, "the files")
    close(started)


def the_popup_menu_enables_only_commands_that_apply_to_its_row(desktop, program):
    started, _, _ = start_with_mp3s(desktop, program, "one.mp3")
    commands = ("Start!", "Remove from List", "Remove and Delete File")
    for row, enabled in (("one.mp3", commands), ("MP3 Files Folder", ()),
                               ("MP3 Files", commands[:1])):
        started.open_popup(row)
        seen = tuple(name for name in commands if started.is_enabled(name, "menu item"))
        check_equal(seen, enabled, f"enabled commands of {row}")
        desktop.press("Escape")
        wait_for("the closing of the menu",
                 lambda: not started.find("Remove from List", "menu item"))
    close(started)


def files_are_added_by_the_file_dialog(desktop, program):
    started, _, _ = start_with_mp3s(desktop, program, "one.mp3")
    elsewhere = desktop.home / "Else Where"
    elsewhere.mkdir()
    (elsewhere / "Short.mp3").write_bytes(bytes(SHORTEST_FILE - 1))
    make_mp3(elsewhere / "Added.mp3", seconds=0.5)
    make_wav(elsewhere / "Sound.wav")

    def choose(*keys, path=None):
        started.choose_menu("File", "Open")
        title = "Select WAV or MP3 file"
        # The test waits for the focus, since the dialog is visible before it has the focus.
        wait_for("the file dialog", lambda: started.has_focus("File name:", "text"))
        if path:
            desktop.type(str(path))
        desktop.press(*keys)
        wait_for("the closing of the file dialog", lambda: started.window(title) is None)

    choose("Escape")
    choose("Return", path=elsewhere / "Short.mp3")
    choose("Return", path=elsewhere / "Added.mp3")
    wait_for_groups(started, [], ["one.mp3", "added.mp3"])
    choose("Return", path=elsewhere / "Sound.wav")
    wait_for("the WAV file", lambda: started.group("WAV Files") == ["sound.wav"])
    # Deliberate: after a cancelled dialog the logic tries to add the file of the previous choice
    # again. The tree already contains this file, so nothing is added.
    choose("Escape")
    choose("Return", path=elsewhere / "Added.mp3")
    wait_for_groups(started, [], ["one.mp3", "added.mp3"])
    check_equal(started.group("WAV Files"), ["sound.wav"], "WAV files")
    close(started)


if __name__ == "__main__":
    run(the_tree_shows_the_files_of_the_folder, files_are_found_in_a_home_with_a_dot_in_its_name,
        an_mp3_is_dragged_to_the_selected_files_and_back,
        dragging_all_mp3s_to_the_selected_files_empties_the_list_of_available_files,
        two_mp3s_are_selected_by_keys_alone,
        neither_an_mp3_dragged_to_the_tracks_nor_a_dragged_group_moves,
        editing_a_label_renames_the_file, keys_rename_a_file,
        a_refused_rename_opens_the_editor_again, removing_from_the_list_keeps_the_file,
        remove_and_delete_deletes_a_renamed_file,
        the_popup_menu_enables_only_commands_that_apply_to_its_row,
        files_are_added_by_the_file_dialog)
