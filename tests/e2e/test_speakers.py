# SPDX-License-Identifier: GPL-3.0-or-later
"""What is captured is heard, and no trouble with the speakers is heard of in what is captured."""

from driver import run
from scenes import close, start_track, start_with_disc, wavs_by_track
from sound import bytes_of, check_run, disc_samples, find_run, track_samples
from speakers import Speakers
from waiting import check, check_equal, wait_for

SECONDS = 5
FIRST = f"Track  1 - 00:00:0{SECONDS}"


def capture_first_track(desktop, program, output, meanwhile):
    """Captures the track through that output, with something happening in the middle; it is there
    from its first sample to its last."""
    started, sheet, destination = start_with_disc(desktop, program, SECONDS, output)
    start_track(started, FIRST)
    meanwhile()
    wait_for("the end of the capture", lambda: started.title == "Sonarith v2.0")
    found = wavs_by_track(destination)
    check_equal(list(found), [1], "tracks in the destination folder")
    check_run(found[1], disc_samples(sheet), 1, SECONDS)
    close(started)
    return track_samples(disc_samples(sheet), 1, SECONDS)


def what_is_captured_is_heard(desktop, program):
    speakers = Speakers(desktop)
    track = capture_first_track(desktop, program, "default", lambda: None)
    # A busy machine may let the speakers wait; what they play is the disc's, sample for sample.
    part = track[:bytes_of(1)]
    check(find_run(speakers.heard(), part) >= 0, "the track's first second was not heard")


def unplugged_speakers_harm_no_capture(desktop, program):
    speakers = Speakers(desktop)
    capture_first_track(desktop, program, "default", speakers.unplug)


def hanging_speakers_harm_no_capture(desktop, program):
    speakers = Speakers(desktop)
    capture_first_track(desktop, program, "default", speakers.hang)


def missing_speakers_harm_no_capture(desktop, program):
    capture_first_track(desktop, program, "no-such-device", lambda: None)


if __name__ == "__main__":
    run(what_is_captured_is_heard, unplugged_speakers_harm_no_capture,
        hanging_speakers_harm_no_capture, missing_speakers_harm_no_capture)
