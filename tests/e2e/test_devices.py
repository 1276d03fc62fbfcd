# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the Devices window: the choice of a disc image, an output and a recording source, and the
report about faulty images."""

from driver import make_disc, run
from program import Program
from scenes import close, start_with_disc, wavs_by_track
from sound import bytes_of, check_track, disc_samples
from waiting import check, check_equal, wait_for

EMPTY_DRIVE = ("The CD drive is empty. If you wish to use your CD as a source, please insert a "
               "music CD into the CD drive.")
BYTES_PER_SECTOR = 2352


def open_devices(started):
    started.choose_menu("Preferences", "Devices")
    wait_for("the Devices window", lambda: started.window("Devices"))


def report_of(started):
    return started.text("The disc") or ""


def a_chosen_image_is_read_and_the_choice_is_stored(desktop, program):
    started, _, destination = start_with_disc(desktop, program, seconds=2)
    other = make_disc(desktop.home / "discs", name="other", tracks=2, seconds=7)
    open_devices(started)
    started.click("Choose Disc Image...", "push button")
    wait_for("the file dialog", lambda: started.window("Choose Disc Image"))
    desktop.type(str(other))
    desktop.press("Return")
    wait_for("the image in the list of drives", lambda: started.find("Disc image: other.cue"))
    started.click("Close", "push button")
    wait_for("the closing of the Devices window", lambda: started.window("Devices") is None)
    expected = ["Track  1 - 00:00:07", "Track  2 - 00:00:07"]
    if not started.group("Available Tracks"):
        started.open_row("Available Tracks")
    check_equal(started.group("Available Tracks"), expected, "tracks of the chosen image")
    close(started)
    check(f"Drive={other}" in desktop.store.read_text(), "the choice is not stored")

    again = Program(desktop, program)
    again.wait_for_window()
    again.open_row("Available Tracks")
    check_equal(again.group("Available Tracks"), expected, "tracks at the next start")
    close(again)
    check_equal(wavs_by_track(destination), {}, "files in the destination folder")


def the_chosen_output_and_recording_source_are_stored(desktop, program):
    sheet = make_disc(desktop.home / "discs", tracks=2, seconds=2)
    desktop.write_store(sheet, desktop.home / "My Music")

    def stored():
        section = desktop.store.read_text().partition("[Devices]")[2].partition("[")[0]
        return [line for line in section.splitlines() if line.startswith(("Output=", "Source="))]

    def choose(former, key, entry, line):
        """Opens the combo box that shows `former`, selects another entry by the key `key`, and
        waits until `entry` is shown and `line` is in the store."""
        started.click(former, "combo box")
        desktop.press(key, "Return")
        started.get(entry, "combo box")
        wait_for(f"{line} in the store", lambda: line in stored())

    started = Program(desktop, program)
    started.wait_for_window()
    open_devices(started)
    choose("None", "Home", "Default sound device", "Output=default")
    choose("Compact disc", "Down", "All that is played", "Source=mix")
    close(started)
    check_equal(sorted(stored()), ["Output=default", "Source=mix"],
                "the store after the program's end")

    started = Program(desktop, program)
    started.wait_for_window()
    open_devices(started)
    choose("Default sound device", "End", "None", "Output=none")
    choose("All that is played", "Home", "Compact disc", "Source=")
    close(started)
    check_equal(sorted(stored()), ["Output=none", "Source="], "the store after the program's end")


def an_incomplete_sheet_counts_as_an_empty_drive(desktop, program):
    sheet = make_disc(desktop.home / "discs", name="torn", tracks=2, seconds=2)
    lines = sheet.read_text().splitlines()
    bad_line = next(i for i, line in enumerate(lines) if "INDEX" in line)
    lines[bad_line] = lines[bad_line][:-4]  # truncates the time mm:ss:ff to mm:s
    sheet.write_text("\n".join(lines[:bad_line + 1]))
    desktop.write_store(sheet, desktop.home / "My Music")
    started = Program(desktop, program)
    wait_for("the message box", lambda: started.find(EMPTY_DRIVE, "label"))
    started.click("OK", "push button")
    started.wait_for_window()
    check("Track" not in "".join(started.group("Available Tracks")),
          "tracks of an incomplete sheet are listed")
    open_devices(started)
    wait_for("the report", lambda: f"torn.cue, line {bad_line + 1}: " in report_of(started))
    close(started)


def a_truncated_image_is_reported_and_its_tracks_are_extracted(desktop, program):
    seconds = 3
    sheet = make_disc(desktop.home / "discs", name="short", tracks=3, seconds=seconds,
                      signal="ramp")
    samples = disc_samples(sheet)
    # The image's file of samples ends in the middle of track 2 and inside a sector. The extracted
    # track 2 must contain silence in place of the incomplete sector and of the missing sectors.
    whole_sectors = bytes_of(2 * seconds) * 3 // 4 // BYTES_PER_SECTOR
    sheet.with_suffix(".bin").write_bytes(samples[:whole_sectors * BYTES_PER_SECTOR + 1000])
    expected = samples[:whole_sectors * BYTES_PER_SECTOR].ljust(bytes_of(3 * seconds), b"\0")

    destination = desktop.home / "My Music"
    desktop.write_store(sheet, destination)
    started = Program(desktop, program)
    started.wait_for_window()
    open_devices(started)
    wait_for("the report", lambda: "short.cue, line 1" in report_of(started) and
             "track 2 is truncated" in report_of(started))
    started.click("Close", "push button")
    started.open_row("Available Tracks")
    for number in (2, 1):
        started.click_row(f"Track  {number} - 00:00:0{seconds}", times=2)
    wait_for("the selected tracks", lambda: len(started.group("Selected Tracks")) == 2)
    started.click_row("Selected Tracks")
    wait_for("the next action", lambda: "Selected Tracks" in started.next_action())
    started.click("Start ", "push button")
    wait_for("the start of the extraction",
             lambda: not started.is_enabled("Preferences", "push button"))
    wait_for("the end of the extraction", lambda: started.is_enabled("Preferences", "push button"))
    found = wavs_by_track(destination)
    check_equal(sorted(found), [1, 2], "tracks in the destination folder")
    for number, path in found.items():
        check_track(path, expected, number, seconds)
    close(started)


if __name__ == "__main__":
    run(a_chosen_image_is_read_and_the_choice_is_stored,
        the_chosen_output_and_recording_source_are_stored,
        an_incomplete_sheet_counts_as_an_empty_drive,
        a_truncated_image_is_reported_and_its_tracks_are_extracted)
