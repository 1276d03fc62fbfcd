# SPDX-License-Identifier: GPL-3.0-or-later
"""What is captured is heard if the disc's line is open, and trouble with the speakers leaves no trace
in what is captured."""

from driver import run
from scenes import close, start_track, start_with_disc, wavs_by_track
from sound import bytes_of, check_run, disc_samples, find_run, track_samples
from speakers import Speakers
from waiting import check, check_equal, wait_for

SECONDS = 8
FIRST = f"Track  1 - 00:00:0{SECONDS}"


def capture_first_track(desktop, program, output, meanwhile):
    """Captures the track through that output, with something happening in the middle; it is there
    from its first sample to its last."""
    started, sheet, destination = start_with_disc(desktop, program, SECONDS, output)
    start_track(started, FIRST)
    meanwhile(started)
    wait_for("the end of the capture", lambda: started.title == "Sonarith v2.0")
    found = wavs_by_track(destination)
    check_equal(list(found), [1], "tracks in the destination folder")
    check_run(found[1], disc_samples(sheet), 1, SECONDS)
    close(started)
    return track_samples(disc_samples(sheet), 1, SECONDS)


def what_is_captured_is_heard(desktop, program):
    speakers = Speakers(desktop)
    def open_the_line(started):
        # An action switches the player off, and with it the disc's line.
        started.click("Unmute", "radio button", within=started.get("CD", "panel"))
    track = capture_first_track(desktop, program, "default", open_the_line)
    # A busy machine may let the speakers wait; what they play is the disc's, sample for sample.
    heard = speakers.heard()
    part = track[bytes_of(SECONDS - 2):bytes_of(SECONDS - 1)]
    check(find_run(heard, part) >= 0, "the track's last second but one was not heard")
    check(find_run(heard, track[:bytes_of(1)]) < 0, "the track was heard while it was muted")


def unplugged_speakers_harm_no_capture(desktop, program):
    speakers = Speakers(desktop)
    capture_first_track(desktop, program, "default", lambda _: speakers.unplug())


def hanging_speakers_harm_no_capture(desktop, program):
    speakers = Speakers(desktop)
    capture_first_track(desktop, program, "default", lambda _: speakers.hang())


def missing_speakers_harm_no_capture(desktop, program):
    capture_first_track(desktop, program, "no-such-device", lambda _: None)


if __name__ == "__main__":
    run(what_is_captured_is_heard, unplugged_speakers_harm_no_capture,
        hanging_speakers_harm_no_capture, missing_speakers_harm_no_capture)
