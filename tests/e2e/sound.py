# SPDX-License-Identifier: GPL-3.0-or-later
"""Compares captured WAV files with the disc image, sample by sample."""

import os
import pathlib
import wave

from waiting import check, check_equal

FRAME_RATE = 44100
BYTES_PER_FRAME = 4
MOST_LEAD_IN_FRAMES = FRAME_RATE * 50 // 1000
MOST_TAIL_FRAMES = FRAME_RATE * 150 // 1000


def check_format(wav, name):
    """Checks that an open WAV has the format of a disc."""
    shape = (wav.getnchannels(), wav.getsampwidth(), wav.getframerate())
    check_equal(shape, (2, 2, FRAME_RATE), f"the format of {name}")


def samples_of(path):
    """The bytes of a WAV's samples; checks its format."""
    with wave.open(str(path), "rb") as source:
        check_format(source, path.name)
        samples = source.readframes(source.getnframes())
    check_equal(len(samples), source.getnframes() * BYTES_PER_FRAME, f"the length of {path.name}")
    return samples


def disc_samples(sheet):
    """The bytes of all samples of an image with one BINARY file."""
    return pathlib.Path(sheet).with_suffix(".bin").read_bytes()


def bytes_of(seconds):
    return seconds * FRAME_RATE * BYTES_PER_FRAME


def track_samples(disc, number, seconds):
    """The bytes of one track of a disc whose tracks have equal lengths."""
    track = disc[bytes_of((number - 1) * seconds):bytes_of(number * seconds)]
    check_equal(len(track), bytes_of(seconds), f"the length of track {number} of the image")
    return track


def find_run(samples, run):
    """The frame of `samples` at which `run` begins, or -1; it must begin at a whole frame."""
    at = samples.find(run)
    while at > 0 and at % BYTES_PER_FRAME:
        at = samples.find(run, at + 1)
    return at // BYTES_PER_FRAME if at >= 0 else -1


def check_silence(samples, start, name):
    check(not any(samples[:start * BYTES_PER_FRAME]), f"{name}: no silence before the track")


def check_run(path, disc, number, seconds):
    """Checks that the WAV holds the whole track `number` of a disc of equal tracks, whose samples
    are `disc`: silence, the track without a gap, and the samples that follow on the disc. Returns
    the number of frames before and after the track."""
    samples = samples_of(path)
    track = track_samples(disc, number, seconds)
    start = find_run(samples, track)
    check(start >= 0, f"{path.name} does not hold track {number} without a gap")
    check_silence(samples, start, path.name)
    tail = samples[start * BYTES_PER_FRAME + len(track):]
    follows = disc[bytes_of(number * seconds):] + bytes(len(tail))
    check(follows.startswith(tail),
          f"{path.name}: the samples after the track differ from the disc's")
    return start, len(tail) // BYTES_PER_FRAME


def check_track(path, disc, number, seconds):
    """As check_run, and bounds the number of frames before and after the track."""
    lead_in, tail = check_run(path, disc, number, seconds)
    check(lead_in <= MOST_LEAD_IN_FRAMES, f"{path.name}: {lead_in} frames before the track")
    check(tail <= MOST_TAIL_FRAMES, f"{path.name}: {tail} frames after the track")


def beginning_of_track(path, disc, number, seconds):
    """Checks the WAV of a track that was stopped in the middle: silence, the track from its first
    sample on, then only silence. Returns how many bytes of the track and of the silence after it
    there are."""
    samples = samples_of(path)
    track = track_samples(disc, number, seconds)
    start = find_run(samples, track[:bytes_of(1) // 10])
    check(start >= 0, f"{path.name} does not hold the beginning of track {number}")
    check_silence(samples, start, path.name)
    kept = samples[start * BYTES_PER_FRAME:]
    check(len(kept) < len(track), f"{path.name} was not stopped in the middle")
    same = len(os.path.commonprefix([kept, track]))
    check(not any(kept[same:]), f"{path.name} differs from track {number} after {same} bytes")
    return same, len(kept) - same
