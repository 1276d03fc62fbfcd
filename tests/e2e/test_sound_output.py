# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests that a capture is audible if the disc's line is not muted, and that a sound output that
fails does not change what is captured."""

from driver import run
from scenes import close, start_track, start_with_disc, wavs_by_track
from sound import bytes_of, check_run, disc_samples, find_run, track_samples
from sound_server import SoundServer
from waiting import check, check_equal, wait_for

SECONDS = 8
FIRST = f"Track  1 - 00:00:0{SECONDS}"


def capture_first_track(desktop, program, output, meanwhile):
    """Captures the first track of the disc while `output` is the chosen sound output, and calls
    `meanwhile` during the capture. Checks that the WAV file contains the whole track, and returns
    the track's samples."""
    started, sheet, destination = start_with_disc(desktop, program, SECONDS, output)
    start_track(started, FIRST)
    meanwhile(started)
    wait_for("the end of the capture", lambda: started.title == "Sonarith v2.0")
    found = wavs_by_track(destination)
    check_equal(list(found), [1], "tracks in the destination folder")
    check_run(found[1], disc_samples(sheet), 1, SECONDS)
    close(started)
    return track_samples(disc_samples(sheet), 1, SECONDS)


def an_unmuted_capture_is_audible(desktop, program):
    server = SoundServer(desktop)
    def open_the_line(started):
        # Starting an action switches the player off, which mutes the disc's line.
        started.click("Unmute", "radio button", within=started.get("CD", "panel"))
    track = capture_first_track(desktop, program, "default", open_the_line)
    # On a busy machine the output may pause, so only a part of the track is looked for.
    played = server.played()
    part = track[bytes_of(SECONDS - 2):bytes_of(SECONDS - 1)]
    check(find_run(played, part) >= 0, "a second near the end of the track was not played")
    check(find_run(played, track[:bytes_of(1)]) < 0,
          "the track was audible while its line was muted")


def a_killed_sound_server_does_not_harm_a_capture(desktop, program):
    server = SoundServer(desktop)
    capture_first_track(desktop, program, "default", lambda _: server.kill())


def a_hanging_sound_server_does_not_harm_a_capture(desktop, program):
    server = SoundServer(desktop)
    capture_first_track(desktop, program, "default", lambda _: server.hang())


def a_missing_sound_device_does_not_harm_a_capture(desktop, program):
    capture_first_track(desktop, program, "no-such-device", lambda _: None)


if __name__ == "__main__":
    run(an_unmuted_capture_is_audible, a_killed_sound_server_does_not_harm_a_capture,
        a_hanging_sound_server_does_not_harm_a_capture,
        a_missing_sound_device_does_not_harm_a_capture)
