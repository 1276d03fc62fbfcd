# SPDX-License-Identifier: GPL-3.0-or-later
"""The preferences: which settings are stored and when, the destination, the free space, and the
guard that warns and stops when the disk fills up."""

import contextlib
import os
import subprocess

from driver import run
from program import Program
from scenes import check_box, close, start_in, start_track, start_with_disc, wavs_by_track
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
    wait_for(f"{key}={value} in the store, where {desktop.stored('Settings')} stands",
             lambda: desktop.stored("Settings").get(key.replace(" ", "%20")) == value)


def is_ticked(started, caption):
    return started.is_checked(started.find(caption, "check box"))


def ticks_are_stored_at_once(desktop, program):
    # The captions, and those of two boxes when they are not ticked.
    boxes = {
        TABS[0]: (("Warn me when hard drive space falls below", "HDWarning"),
                  ("Stop converting when hard drive space falls below ", "HDstopdecoding")),
        TABS[1]: (("Show File names as Full File Path", "show full path"),
                  ("Encode to MP3 after extracting", "encode after extracting"),
                  ("Delete WAV file after encoding", "Delete WAV"),
                  ("Minimize program during conversion", "minimize onstart"),
                  ("Mute", "mute button"))}
    unticked = {"Encode to MP3 after extracting": "Do not Encode after extracting",
                "Mute": "Play"}
    started = start_preferences(desktop, program)
    window = started.window(TITLE)
    expected = {}
    for tab, entries in boxes.items():
        open_tab(started, tab)
        for caption, key in entries:
            before = is_ticked(started, caption)
            started.click(caption, "check box", within=window)
            wait_for_stored(desktop, key, str(int(not before)))
            shown = caption if caption not in unticked or not before else unticked[caption]
            wait_for(f"the changed box {shown!r}",
                     lambda: is_ticked(started, shown) == (not before))
            # Deliberate: at the next start a box that is not ticked has its first caption again.
            expected[tab, caption] = not before
    close(started)

    again = restart(desktop, program)
    for (tab, caption), ticked in expected.items():
        open_tab(again, tab)
        check(again.find(caption, "check box"), f"there is no box {caption!r} at the next start")
        check_equal(is_ticked(again, caption), ticked, f"the tick of {caption!r} at the next start")
    close(again)


def limits_and_choices_are_stored(desktop, program):
    started = start_preferences(desktop, program)
    started.tab_to("Limit in MB", "text")
    desktop.press("ctrl+a")
    desktop.type("250")
    # Past the check box to the other limit.
    desktop.press("Tab", "Tab", "ctrl+a")
    desktop.type("120")
    started.tab_to("Set", "push button")
    desktop.press("space")
    wait_for_stored(desktop, "HDWarningNo", "250")
    wait_for_stored(desktop, "HDStopNo", "120")

    open_tab(started, TABS[1])
    before = desktop.stored("Settings")
    for shown, keys, chosen in (("Tape", ("Home",), "Low"), ("80", ("End",), "320"),
                                ("44.100Hz, 16bit Stereo, 172k/sec", ("Home",),
                                 "44.100Hz, 16bit Mono, 86k/sec")):
        started.click(shown, "combo box")
        desktop.press(*keys, "Return")
        started.get(chosen, "combo box")
    check_equal(desktop.stored("Settings"), before, "the store before the window is closed")
    started.close_other(TITLE)
    for key, value in (("Encoding quality", "0"), ("Encoding bitrate", "13"),
                       ("Audio format", "0")):
        wait_for_stored(desktop, key, value)
    close(started)

    again = restart(desktop, program)
    check_equal(again.text("Limit in MB"), "250", "the limit at the next start")
    open_tab(again, TABS[1])
    for chosen in ("Low", "320", "44.100Hz, 16bit Mono, 86k/sec"):
        again.get(chosen, "combo box")
    close(again)


def a_new_destination_is_created(desktop, program):
    (desktop.home / "Records").mkdir()
    started = start_preferences(desktop, program)
    window = started.window(TITLE)
    open_tab(started, TABS[2])
    check(started.find("Create", "push button") is None,
          "Create is shown before the user chooses a path")
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
    check_box(started, "Enter a name for the Destination directory")
    started.type_into("Name of the new directory", "New Ones")
    started.click("Create", "push button")
    wait_for("the new folder", lambda: (desktop.home / "Records" / "New Ones").is_dir())
    wait_for("the hidden choice", lambda: started.find("Create", "push button") is None)
    stored = wait_for("the stored path", lambda: desktop.stored("Settings").get("DecodePath"))
    wait_for_stored(desktop, "DecodePath", stored)
    check_equal(stored.lower(), "h:\\\\records\\\\new ones", "the stored path")
    close(started)

    again = restart(desktop, program)
    wait_for("the destination", lambda: "h:\\records\\new ones\\" in again.labels("Activity bar"))
    open_tab(again, TABS[2])
    check_equal(again.text("Destination path").lower(), "h:\\records\\new ones",
                "the path at the next start")
    close(again)


@contextlib.contextmanager
def small_disk(folder, megabytes):
    """Mounts a file system of that size in a folder; yields None if the user may not mount."""
    folder.mkdir()
    mounted = subprocess.run(
        ["mount", "-t", "tmpfs", "-o", f"size={megabytes * MEGABYTE}", "tmpfs", str(folder)],
        check=False, capture_output=True)
    if mounted.returncode != 0:
        print("  skipped: this user may not mount a file system", flush=True)
        yield None
        return
    try:
        yield folder
    finally:
        subprocess.run(["umount", "--lazy", str(folder)], check=True)


def free_megabytes(folder):
    disk = os.statvfs(folder)
    return disk.f_bavail * disk.f_frsize / MEGABYTE


def fill_until_free(folder, megabytes):
    """Fills a disk until `megabytes` are free."""
    missing = free_megabytes(folder) - megabytes
    with open(folder / "filler", "ab") as filler:
        filler.write(bytes(int(missing * MEGABYTE)))


def a_disk_that_fills_up_is_reported_and_ends_a_capture(desktop, program):
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

        for megabytes in (200, 150):
            fill_until_free(home, megabytes)
            started.click("Refresh data", "push button")
            wait_for(f"{megabytes} MB", lambda: shown() is not None and
                     abs(shown() - free_megabytes(home)) <= 1)
        started.close_other(TITLE)
        # The warning is in this bar, which is hidden at first.
        started.choose_menu("Preferences", "Toolbars", "CD Bar")

        start_track(started, "Track  2 - 00:01:00")
        check(started.find(LOW, "label") is None, "a warning with 150 MB free")
        fill_until_free(home, 80)
        wait_for("the warning", lambda: started.find(LOW, "label"))
        check(started.title.startswith("Extracting"), "the warning has stopped the capture")
        fill_until_free(home, 40)
        wait_for("the stop", lambda: not started.title.startswith("Extracting"))
        wait_for("the enabled commands", lambda: started.is_enabled(TITLE, "push button"))
        found = wavs_by_track(destination)
        check_equal(list(found), [2], "tracks in the destination folder")
        kept, _ = beginning_of_track(found[2], disc_samples(sheet), 2, seconds)
        check(kept >= bytes_of(1), "less than a second was kept")
        close(started)
        desktop.end_programs()


if __name__ == "__main__":
    run(ticks_are_stored_at_once, limits_and_choices_are_stored, a_new_destination_is_created,
        a_disk_that_fills_up_is_reported_and_ends_a_capture)
