# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests the decoding of one MP3 file, of the selected MP3 files and of all MP3 files to WAV files,
and that cancelling a decoding or closing the program keeps the decoded part."""

from driver import run
from mp3 import check_beginning, check_decoded, make_long_mp3, make_mp3
from scenes import close, music_folder, row_of, start_in, start_row
from waiting import check, check_equal, wait_for

SECONDS = 2
HERTZ = {"first": 440, "second": 550, "third": 660}
# The playing time of "long.mp3" in hours. Its decoding takes so long that a click on Cancel is
# handled before the decoding ends.
LONG_HOURS = 3


def start_with_tones(desktop, program, full_paths=False):
    """Starts the program with three short MP3 files in its destination folder. Returns the program
    and the folder."""
    destination = music_folder(desktop)
    for name, hertz in HERTZ.items():
        make_mp3(destination / f"{name}.mp3", SECONDS, hertz)
    started = start_in(desktop, program, destination, full_paths)
    check_equal(len(started.group("MP3 Files")), len(HERTZ), "MP3 files at the start")
    return started, destination


def start_with_long_file(desktop, program):
    destination = music_folder(desktop)
    make_long_mp3(destination / "long.mp3", LONG_HOURS)
    make_mp3(destination / "short.mp3", SECONDS)
    return start_in(desktop, program, destination), destination


def wavs(destination):
    return sorted(path.stem for path in destination.glob("*.wav"))


def check_wavs(destination, names):
    """Checks that the folder contains only the three MP3 files and the WAV files with these names,
    and checks the samples of the WAV files."""
    check_equal(wavs(destination), sorted(names), "WAV files of the folder")
    check_equal(len(list(destination.iterdir())), len(HERTZ) + len(names), "files of the folder")
    for name in names:
        check_decoded(destination / f"{name}.wav", destination / f"{name}.mp3", SECONDS,
                      HERTZ[name])


def watch_decoding(started, row):
    """Starts the action of a row and reads the window until the decoding has ended. Returns three
    lists, each without repetitions and in order of appearance:
    - the captions of the window while the activity bar showed "Decoding ...";
    - the texts of the activity bar during this time, each state as a tuple of its label texts;
    - the texts of the status bar without its first label, each state as a tuple."""
    captions, actions, status = [], [], []
    were_disabled = False
    window = started.get("Sonarith v2.0", "frame")
    commands = started.get("Preferences", "push button")
    activity_bar = started.watch_labels("Activity bar")
    status_bar = started.watch_labels("Status bar")

    def add(seen, to):
        if seen not in to:
            to.append(seen)

    def read():
        return window.get_name(), activity_bar(), status_bar()[1:]

    def ended():
        nonlocal were_disabled
        are_enabled = started.shows_enabled(commands)
        were_disabled = were_disabled or not are_enabled
        seen = read()
        if seen != read():
            return False  # the program is changing the texts at this moment
        caption, bar, figures = seen
        if bar[0].startswith("Decoding "):
            add(caption, captions)
            add(tuple(bar), actions)
        add(tuple(figures), status)
        return were_disabled and are_enabled

    start_row(started, row)
    wait_for("the end of the decoding", ended, patience=150)
    return captions, actions, status


def wait_for_cleared_displays(started):
    """Waits until the texts of the action are cleared, some seconds after its end."""
    wait_for("the cleared displays", lambda: started.title == "Sonarith v2.0" and
             started.next_action() == "Next action:")


def destination_line(destination, name):
    """The activity bar's text for a target file."""
    return f"{row_of(destination)}\\{name}.wav"


def one_mp3_becomes_a_wav_file(desktop, program):
    started, destination = start_with_tones(desktop, program, full_paths=True)
    row = row_of(destination / "second.mp3")
    captions, actions, status = watch_decoding(started, row)
    check_equal(captions, ["Decoding second.mp3"], "captions")
    check_equal([(action, line.lower()) for action, line in actions],
                [(f"Decoding  {row}", destination_line(destination, "second"))],
                "lines of the activity bar")
    check("100 %" in [percent for percent, _ in status], f"100 % was never shown: {status}")
    wait_for("the WAV in the tree", lambda: started.group("WAV Files") ==
             [row_of(destination / "second.wav")])
    check_wavs(destination, ["second"])
    check(started.find("Cancel", "push button") is None, "the Cancel button is still shown")
    wait_for_cleared_displays(started)
    close(started)


def all_mp3s_become_wav_files(desktop, program):
    started, destination = start_with_tones(desktop, program)
    (destination / "third.mp3").unlink()
    started.open_popup("third.mp3")
    # The file no longer exists. The command must still remove the file's row from the tree, and the
    # file's entry from the program's list of MP3 files.
    started.click("Remove and Delete File", "menu item")
    wait_for("two MP3 files", lambda: sorted(started.group("MP3 Files")) ==
             ["first.mp3", "second.mp3"])
    (destination / "second.wav").write_bytes(b"an older file of that name" * 100)
    order = [row.removesuffix(".mp3") for row in started.group("MP3 Files")]
    captions, actions, _ = watch_decoding(started, "MP3 Files")
    check_equal(captions, [f"Decoding {name}.mp3" for name in order], "captions")
    check_equal([(action, line.lower()) for action, line in actions],
                [(f"Decoding #{number} of 2 files", destination_line(destination, name))
                 for number, name in enumerate(order, 1)], "lines of the activity bar")
    wait_for("the WAVs in the tree", lambda: sorted(started.group("WAV Files")) ==
             ["first.wav", "second.wav"])
    check_equal(sorted(path.name for path in destination.iterdir()),
                ["first.mp3", "first.wav", "second.mp3", "second.wav"], "files of the folder")
    for name in order:
        check_decoded(destination / f"{name}.wav", destination / f"{name}.mp3", SECONDS,
                      HERTZ[name])
    close(started)


def selected_mp3s_become_wav_files(desktop, program):
    started, destination = start_with_tones(desktop, program)
    for name in ("third.mp3", "first.mp3"):
        started.drag_row(name, "Selected MP3 Files")
        wait_for(f"{name} among the selected",
                 lambda: name in started.group("Selected MP3 Files"))
    check_equal(started.group("MP3 Files"), ["second.mp3"], "MP3 files that are not selected")
    captions, actions, status = watch_decoding(started, "Selected MP3 Files")
    # The file that was selected last is decoded first.
    check_equal(captions, ["Decoding first.mp3", "Decoding third.mp3"], "captions")
    check_equal([action for action, _ in actions],
                ["Decoding #1 of 2 files", "Decoding #2 of 2 files"], "lines of the activity bar")
    check_wavs(destination, ["first", "third"])
    size = (destination / "third.wav").stat().st_size
    wait_for("the size of the last WAV", lambda: started.labels("Status bar")[2] ==
             f"{size} bytes" or status[-1][1] == f"{size} bytes")
    wait_for("the WAVs in the tree", lambda: started.group("WAV Files") ==
             ["first.wav", "third.wav"])
    close(started)


def a_broken_mp3_is_skipped_and_its_older_wav_is_kept(desktop, program):
    started, destination = start_with_tones(desktop, program)
    (destination / "first.mp3").write_bytes(bytes(5000))
    older = b"an older one of that name" * 100
    (destination / "first.wav").write_bytes(older)
    _, actions, _ = watch_decoding(started, "MP3 Files")
    check_equal([action for action, _ in actions],
                [f"Decoding #{number} of 3 files" for number in (1, 2, 3)],
                "lines of the activity bar")
    check_equal(wavs(destination), ["first", "second", "third"], "WAV files of the folder")
    check(older == (destination / "first.wav").read_bytes(), "the older WAV was changed")
    for name in ("second", "third"):
        check_decoded(destination / f"{name}.wav", destination / f"{name}.mp3", SECONDS,
                      HERTZ[name])
    close(started)


def closing_ends_a_wait_for_a_vanished_file(desktop, program):
    started, destination = start_with_tones(desktop, program)
    (destination / "first.mp3").unlink()
    start_row(started, "first.mp3")
    wait_for("the start of the decoding", lambda: started.next_action() == "Decoding  first.mp3" and
             not started.is_enabled("Preferences", "push button"))
    check(started.find("Cancel", "push button") is None, "the Cancel button is shown")
    close(started)
    check_equal(wavs(destination), [], "WAV files of the folder")


def wait_for_moving_figures(started):
    """Waits until the percentage and the progress bar have shown three values each, and checks that
    all of them are below 100."""
    percents, progress = set(), set()

    def moved():
        percent, _, bar = started.figures()
        if percent is not None:
            percents.add(percent)
            progress.add(bar)
        return len(percents) >= 3 and len(progress) >= 3

    wait_for("changing percentages and progress", moved)
    check(max(percents | progress) < 100,
          f"the decoding has already ended: {sorted(percents)}")


def check_decoded_part(destination):
    """Checks that "long.wav" is the only new file and that it contains at least the first minute of
    "long.mp3"."""
    check_equal(sorted(path.name for path in destination.iterdir()),
                ["long.mp3", "long.wav", "short.mp3"], "files of the folder")
    kept = check_beginning(destination / "long.wav", destination / "long.mp3", LONG_HOURS)
    check(kept >= 60, f"only {kept} seconds were kept")


def cancelling_keeps_the_decoded_part(desktop, program):
    started, destination = start_with_long_file(desktop, program)
    check(started.find("Cancel", "push button") is None,
          "the Cancel button is shown while no action runs")
    start_row(started, "long.mp3")
    wait_for_moving_figures(started)
    check(not started.is_enabled("Preferences", "push button"),
          "commands are enabled during the action")
    check_equal(wavs(destination), [], "WAV files before the end")
    started.click("Cancel", "push button")
    wait_for("the WAV in the tree", lambda: started.group("WAV Files") == ["long.wav"])
    wait_for("the hiding of the Cancel button",
             lambda: started.find("Cancel", "push button") is None)
    wait_for("the enabled commands", lambda: started.is_enabled("Preferences", "push button"))
    check_decoded_part(destination)
    # The next file is decoded as usual. Its decoding is started only after the texts of the first
    # action were cleared, because the clearing would remove the texts of the second action, too.
    wait_for_cleared_displays(started)
    watch_decoding(started, "short.mp3")
    check_decoded(destination / "short.wav", destination / "short.mp3", SECONDS, 440)
    close(started)


def cancelling_the_first_of_two_files_skips_the_second(desktop, program):
    started, destination = start_with_long_file(desktop, program)
    for name in ("short.mp3", "long.mp3"):
        started.drag_row(name, "Selected MP3 Files")
        wait_for(f"{name} among the selected",
                 lambda: name in started.group("Selected MP3 Files"))
    start_row(started, "Selected MP3 Files")
    wait_for("the first file", lambda: started.next_action() == "Decoding #1 of 2 files")
    wait_for_moving_figures(started)
    started.click("Cancel", "push button")
    wait_for("the WAV in the tree", lambda: started.group("WAV Files") == ["long.wav"])
    wait_for_cleared_displays(started)
    check_decoded_part(destination)
    close(started)


def closing_keeps_the_decoded_part(desktop, program):
    started, destination = start_with_long_file(desktop, program)
    start_row(started, "long.mp3")
    wait_for_moving_figures(started)
    close(started)
    check_decoded_part(destination)


if __name__ == "__main__":
    run(one_mp3_becomes_a_wav_file, all_mp3s_become_wav_files, selected_mp3s_become_wav_files,
        a_broken_mp3_is_skipped_and_its_older_wav_is_kept,
        closing_ends_a_wait_for_a_vanished_file, cancelling_keeps_the_decoded_part,
        cancelling_the_first_of_two_files_skips_the_second, closing_keeps_the_decoded_part)
