# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the preferences: when each setting is stored, the choice of the destination folder, the
display of the free space, and the guard of the disk space. Below one limit of free space, the guard
shows a warning; below another limit, it stops a capture."""

import contextlib
import os
import subprocess

from driver import make_disc, run
from program import Program
from scenes import (close, close_message_box, start_in, start_track, start_with_disc,
                    wavs_by_track)
from sound import beginning_of_track, bytes_of, disc_samples
from waiting import check, check_equal, wait_for

TITLE = "Preferences"
TABS = ("Disk Space", "Audio, Misc.", "Destination Path")
LOW = "Low Drive space"
MEGABYTE = 1_000_000


def start_preferences(desktop, program):
    started = start_in(desktop, program, desktop.home / "My Music")
    started.open_window(TITLE, TITLE)
    return started


def restart(desktop, program):
    started = Program(desktop, program)
    started.wait_for_window()
    started.open_window(TITLE, TITLE)
    return started


def open_tab(started, name):
    started.click(name, "page tab")
    wait_for(f"the page {name!r}", lambda: started.find(name, "filler"))


def wait_for_stored(desktop, key, value):
    wait_for(f"{key}={value} in the store, which at first contained {desktop.stored('Settings')}",
             lambda: desktop.stored("Settings").get(key.replace(" ", "%20")) == value)


def is_ticked(started, caption):
    return started.is_checked(started.find(caption, "check box"))


# Captions of the check boxes by page, with the key under which the store keeps each box. UNTICKED:
# the new caption of each box whose caption changes when its tick is removed.
BOXES = {
    TABS[0]: (("Warn me when hard drive space falls below", "HDWarning"),
              ("Stop converting when hard drive space falls below ", "HDstopdecoding")),
    TABS[1]: (("Show File names as Full File Path", "show full path"),
              ("Encode to MP3 after extracting", "encode after extracting"),
              ("Delete WAV file after encoding", "Delete WAV"),
              ("Minimize program during conversion", "minimize onstart"),
              ("Mute", "mute button"))}
UNTICKED = {"Encode to MP3 after extracting": "Do not Encode after extracting", "Mute": "Play"}
TRAY = "Minimize program to Desktop Tray Now"


def next_page_by_keys(desktop, started, name):
    desktop.press("ctrl+Tab")
    wait_for(f"the page {name!r}", lambda: started.find(name, "filler"))


def press_by_keys(desktop, started, name, role):
    started.tab_to(name, role)
    desktop.press("space")


def check_boxes_are_stored_at_once(desktop, program, show_page, press):
    started = start_preferences(desktop, program)
    expected = {}
    for tab, entries in BOXES.items():
        if tab != TABS[0]:
            show_page(started, tab)
        for caption, key in entries:
            before = is_ticked(started, caption)
            press(started, caption, "check box")
            wait_for_stored(desktop, key, str(int(not before)))
            shown = caption if caption not in UNTICKED or not before else UNTICKED[caption]
            wait_for(f"the changed box {shown!r}",
                     lambda: is_ticked(started, shown) == (not before))
            # At the next start, every box has its original caption, ticked or not.
            expected[tab, caption] = not before
    # Ticking this box hides only the window of the preferences. There is no tray icon, since no
    # tray host runs.
    press(started, TRAY, "check box")
    wait_for("the hiding of the window", lambda: started.window(TITLE) is None)
    wait_for_stored(desktop, "desktop icon", "1")
    check(started.shows_enabled(started.find(TITLE, "push button")), "the main window is hidden")
    started.open_window(TITLE, TITLE)
    check(is_ticked(started, TRAY), "the box has lost its tick")
    press(started, TRAY, "check box")
    wait_for_stored(desktop, "desktop icon", "0")
    check(started.window(TITLE), "the window is hidden again")
    close(started)

    again = restart(desktop, program)
    for (tab, caption), ticked in expected.items():
        open_tab(again, tab)
        check(again.find(caption, "check box"), f"there is no box {caption!r} at the next start")
        check_equal(is_ticked(again, caption), ticked, f"the tick of {caption!r} at the next start")
    close(again)


def boxes_changed_by_mouse_are_stored_at_once(desktop, program):
    check_boxes_are_stored_at_once(
        desktop, program, open_tab,
        lambda started, name, role: started.click(name, role, within=started.window(TITLE)))


def boxes_changed_by_keys_are_stored_at_once(desktop, program):
    check_boxes_are_stored_at_once(
        desktop, program,
        lambda started, name: next_page_by_keys(desktop, started, name),
        lambda started, name, role: press_by_keys(desktop, started, name, role))


WARNING_LIMIT = "Warning limit in MB"
STOP_LIMIT = "Stop limit in MB"
# For each list: the entry that is selected at first, the key that selects another entry, and this
# other entry.
CHOICES = (("Tape", "Home", "Low"), ("80", "End", "320"),
           ("44.100Hz, 16bit Stereo, 172k/sec", "Home", "44.100Hz, 16bit Mono, 86k/sec"))


def choose_by_keys(desktop, started, shown, key, _):
    started.tab_to(shown, "combo box")
    desktop.press(key)


def choose_by_mouse(_, started, shown, __, chosen):
    started.click(shown, "combo box")
    started.click(chosen, "list item")


def limits_and_choices_are_kept(desktop, program, type_limit, press, choose):
    started = start_preferences(desktop, program)
    type_limit(started, WARNING_LIMIT, "250")
    # Deliberate: each key press stores the text that the box contained before the key.
    wait_for_stored(desktop, "HDWarningNo", "25")
    type_limit(started, STOP_LIMIT, "120")
    wait_for_stored(desktop, "HDStopNo", "12")
    press(started, "Set", "push button")
    wait_for_stored(desktop, "HDWarningNo", "250")
    wait_for_stored(desktop, "HDStopNo", "120")

    open_tab(started, TABS[1])
    before = desktop.stored("Settings")
    for shown, key, chosen in CHOICES:
        choose(desktop, started, shown, key, chosen)
        started.get(chosen, "combo box")
    check_equal(desktop.stored("Settings"), before, "the store before the window is closed")
    started.close_other(TITLE)
    for key, value in (("Encoding quality", "0"), ("Encoding bitrate", "13"),
                       ("Audio format", "0")):
        wait_for_stored(desktop, key, value)
    close(started)

    again = restart(desktop, program)
    check_equal(again.text(WARNING_LIMIT), "250", "the warning's limit at the next start")
    check_equal(again.text(STOP_LIMIT), "120", "the stop's limit at the next start")
    open_tab(again, TABS[1])
    for _, __, chosen in CHOICES:
        again.get(chosen, "combo box")
    close(again)


def limits_and_choices_set_by_keys_are_kept(desktop, program):
    def type_limit(started, name, text):
        started.tab_to(name, "text")
        desktop.press("ctrl+a")
        desktop.type(text)
    limits_and_choices_are_kept(
        desktop, program, type_limit,
        lambda started, name, role: press_by_keys(desktop, started, name, role), choose_by_keys)


def limits_and_choices_set_by_mouse_are_kept(desktop, program):
    limits_and_choices_are_kept(
        desktop, program, lambda started, name, text: started.type_into(name, text),
        lambda started, name, role: started.click(name, role), choose_by_mouse)


def a_new_destination_is_created(desktop, program):
    (desktop.home / "Records").mkdir()
    started = start_preferences(desktop, program)
    window = started.window(TITLE)
    open_tab(started, TABS[2])
    check(started.find("Create", "push button") is None,
          "the button Create is shown before the box is ticked")
    tick = "I'll select the destination path and directory"
    started.click(tick, "check box")
    started.get("Create", "push button")
    started.click("c:", "combo box", within=window)
    desktop.press("End", "Return")
    started.get("h:", "combo box")
    wait_for("the home's folders", lambda: "Records" in started.lines("Folder"))
    started.click_line("Folder", "Records", times=2)
    wait_for("the chosen folder",
             lambda: (started.text("Destination path") or "").lower() == "h:\\records")
    started.type_into("Name of the new directory", "")
    desktop.press("BackSpace")
    started.click("Create", "push button")
    close_message_box(started, "Enter a name for the Destination directory")
    started.type_into("Name of the new directory", "New Ones")
    started.click("Create", "push button")
    wait_for("the new folder", lambda: (desktop.home / "Records" / "New Ones").is_dir())
    wait_for("the hiding of the button Create",
             lambda: started.find("Create", "push button") is None)
    wait_for("the stored path",
             lambda: desktop.stored("Settings").get("DecodePath", "").lower() ==
             "h:\\\\records\\\\new ones")
    close(started)

    again = restart(desktop, program)
    wait_for("the destination", lambda: "h:\\records\\new ones\\" in again.labels("Activity bar"))
    open_tab(again, TABS[2])
    check_equal(again.text("Destination path").lower(), "h:\\records\\new ones",
                "the path at the next start")
    close(again)


def go_to_line(desktop, started, box, line):
    started.tab_to(box, "list")
    wait_for(f"the line {line!r}", lambda: line in started.lines(box))
    desktop.press("Home", *["Down"] * started.lines(box).index(line))


def a_new_destination_is_created_by_keys(desktop, program):
    (desktop.home / "Records").mkdir()
    # A folder whose name is not valid UTF-8. It is the only folder in Records.
    odd = os.fsencode(desktop.home / "Records") + b"/caf\xe9"
    os.mkdir(odd)
    started = start_preferences(desktop, program)
    for name in TABS[1:]:
        next_page_by_keys(desktop, started, name)
    press_by_keys(desktop, started, "I'll select the destination path and directory", "check box")
    started.get("Create", "push button")
    started.tab_to("c:", "combo box")
    desktop.press("End")
    started.get("h:", "combo box")
    go_to_line(desktop, started, "Folder", "Records")
    desktop.press("Return")
    wait_for("the chosen folder",
             lambda: (started.text("Destination path") or "").lower() == "h:\\records")
    wait_for("the folder in Records", lambda: len(started.lines("Folder")) == 3)
    desktop.press("End", "Return")
    wait_for("the odd folder",
             lambda: (started.text("Destination path") or "").lower().startswith(
                 "h:\\records\\caf"))
    started.tab_to("Name of the new directory", "text")
    desktop.press("ctrl+a")
    desktop.type('It is "new"')
    press_by_keys(desktop, started, "Create", "push button")
    wait_for("the new folder", lambda: os.path.isdir(odd + b'/It is "new"'))
    wait_for("the hiding of the button Create",
             lambda: started.find("Create", "push button") is None)
    close(started)
    os.rmdir(odd + b'/It is "new"')
    again = restart(desktop, program)
    check(os.path.isdir(odd + b'/It is "new"'), "the next start has not recreated the folder")
    check_equal(os.listdir(os.path.dirname(odd)), [b"caf\xe9"], "the folders in Records")
    close(again)


def start_with_destination(desktop, program, destination):
    """Starts the program with this destination folder, without waiting for its window."""
    sheet = make_disc(desktop.home / "discs", tracks=2, seconds=2, signal="ramp")
    desktop.write_store(sheet, destination)
    return Program(desktop, program)


def destinations_with_unusual_names_are_created(desktop, program):
    for name in ("My  Music", "añ日 Köln", "it's (new) & 100 %", "n" * 255):
        destination = desktop.home / "Records" / name
        started = start_with_destination(desktop, program, destination)
        started.wait_for_window()
        check(destination.is_dir(), f"the folder {name!r} was not created")
        close(started)


def check_destination_is_refused(desktop, program, destination):
    started = start_with_destination(desktop, program, destination)
    close_message_box(started,
                      "Error While Attempting to Create Directories on Destination Drive.")
    if destination.is_relative_to(desktop.home):
        path = "H:\\" + str(destination.relative_to(desktop.home))
    else:
        path = "C:" + str(destination).replace("/", "\\")
    close_message_box(started, f"Error in creating the path {path}"
                      "  Create a new Destination path using the selection controls")
    started.wait_for_window()
    started.open_window(TITLE, TITLE)
    close(started)


def destinations_that_cannot_be_created_are_reported(desktop, program):
    desktop.home.mkdir(exist_ok=True)
    taken = desktop.home / "taken"
    taken.write_text("a file", encoding="utf-8")
    check_destination_is_refused(desktop, program, taken)
    check_equal(taken.read_text(encoding="utf-8"), "a file", "the file at the destination")
    check_destination_is_refused(desktop, program, desktop.home / ("n" * 256))
    with small_disk(desktop.folder / "no room", 1) as disk:
        if disk is None:
            return
        for options in ("remount,nr_inodes=1", "remount,ro"):
            subprocess.run(["mount", "-o", options, str(disk)], check=True)
            check_destination_is_refused(desktop, program, disk / "new")


@contextlib.contextmanager
def small_disk(folder, megabytes):
    """Mounts a file system of this size on a new folder and yields the folder; yields None if this
    user has no permission to mount."""
    folder.mkdir()
    mounted = subprocess.run(
        ["mount", "-t", "tmpfs", "-o", f"size={megabytes * MEGABYTE}", "tmpfs", str(folder)],
        check=False, capture_output=True)
    if mounted.returncode != 0:
        print("  skipped: this user has no permission to mount a disk", flush=True)
        yield None
        return
    try:
        yield folder
    finally:
        subprocess.run(["umount", "--lazy", str(folder)], check=True)


def free_megabytes(folder):
    disk = os.statvfs(folder)
    return disk.f_bavail * disk.f_frsize / MEGABYTE


def leave_free(folder, megabytes):
    """Writes a file to a disk so that only this number of megabytes is free."""
    missing = free_megabytes(folder) - megabytes
    with open(folder / "filler", "ab") as filler:
        filler.write(bytes(int(missing * MEGABYTE)))


def a_disk_that_fills_causes_a_warning_and_stops_a_capture(desktop, program):
    with small_disk(desktop.folder / "small disk", 250) as home:
        if home is None:
            return
        desktop.move_to(home)
        seconds = 60
        started, sheet, destination = start_with_disc(desktop, program, seconds)
        started.open_window(TITLE, TITLE)

        def shown():
            lines = (started.text("Available space in hard drive(s)") or "").splitlines()
            line = next((line for line in lines if line.upper().startswith("H:\\")), "")
            return int(line.split()[2]) if line.endswith(" MB available") else None

        for megabytes, by_keys in ((200, False), (150, True)):
            leave_free(home, megabytes)
            if by_keys:
                press_by_keys(desktop, started, "Refresh data", "push button")
            else:
                started.click("Refresh data", "push button")
            wait_for(f"the line with {megabytes} MB available", lambda: shown() is not None and
                     abs(shown() - free_megabytes(home)) <= 1)
        started.close_other(TITLE)
        # The CD bar, in which the warning is shown, is hidden at first.
        started.choose_menu("Preferences", "Toolbars", "CD Bar")

        start_track(started, "Track  2 - 00:01:00")
        check(started.find(LOW, "label") is None, "a warning is shown although 150 MB are free")
        leave_free(home, 80)
        wait_for("the warning", lambda: started.find(LOW, "label"))
        check(started.title.startswith("Extracting"), "the warning has stopped the capture")
        leave_free(home, 40)
        wait_for("the stop of the capture", lambda: not started.title.startswith("Extracting"))
        wait_for("the enabled commands", lambda: started.is_enabled(TITLE, "push button"))
        found = wavs_by_track(destination)
        check_equal(list(found), [2], "tracks in the destination folder")
        kept, _ = beginning_of_track(found[2], disc_samples(sheet), 2, seconds)
        check(kept >= bytes_of(1), "less than a second was kept")
        close(started)
        desktop.end_programs()


if __name__ == "__main__":
    run(boxes_changed_by_mouse_are_stored_at_once,
        boxes_changed_by_keys_are_stored_at_once,
        limits_and_choices_set_by_keys_are_kept, limits_and_choices_set_by_mouse_are_kept,
        a_new_destination_is_created, a_new_destination_is_created_by_keys,
        destinations_with_unusual_names_are_created,
        destinations_that_cannot_be_created_are_reported,
        a_disk_that_fills_causes_a_warning_and_stops_a_capture)
