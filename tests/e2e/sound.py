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
    """Checks that an open WAV file has the sample format of an audio CD."""
    shape = (wav.getnchannels(), wav.getsampwidth(), wav.getframerate())
    check_equal(shape, (2, 2, FRAME_RATE), f"the format of {name}")


def samples_of(path):
    """Checks the format of a WAV file and returns the bytes of its samples."""
    with wave.open(str(path), "rb") as source:
        check_format(source, path.name)
        samples = source.readframes(source.getnframes())
    check_equal(len(samples), source.getnframes() * BYTES_PER_FRAME, f"the length of {path.name}")
    return samples


def disc_samples(sheet):
    """The bytes of all samples of a disc image. Its sheet must use one BINARY file, which has the
    name of the sheet and the suffix .bin."""
    return pathlib.Path(sheet).with_suffix(".bin").read_bytes()


def bytes_of(seconds):
    return seconds * FRAME_RATE * BYTES_PER_FRAME


def track_samples(disc, number, seconds):
    """The bytes of one track of a disc whose tracks have equal lengths."""
    track = disc[bytes_of((number - 1) * seconds):bytes_of(number * seconds)]
    check_equal(len(track), bytes_of(seconds), f"the length of track {number} of the image")
    return track


def find_run(samples, run):
    """The number of the frame in `samples` at which the bytes `run` begin; -1 if they do not occur
    at the start of a frame."""
    at = samples.find(run)
    while at > 0 and at % BYTES_PER_FRAME:
        at = samples.find(run, at + 1)
    return at // BYTES_PER_FRAME if at >= 0 else -1


def check_silence(samples, start, name):
    check(not any(samples[:start * BYTES_PER_FRAME]), f"{name}: there is sound before the track")


def check_run(path, disc, number, seconds):
    """Checks that a WAV file contains silence, then the whole track `number` without a gap, then
    what follows on the disc. Silence may follow the end of the disc. `disc` contains the samples of
    a disc whose tracks have equal lengths. Returns the numbers of frames before and after the
    track."""
    samples = samples_of(path)
    track = track_samples(disc, number, seconds)
    start = find_run(samples, track)
    check(start >= 0, f"{path.name} does not contain all samples of track {number} in a row")
    check_silence(samples, start, path.name)
    tail = samples[start * BYTES_PER_FRAME + len(track):]
    follows = disc[bytes_of(number * seconds):] + bytes(len(tail))
    check(follows.startswith(tail),
          f"{path.name}: the samples after the track differ from those on the disc")
    return start, len(tail) // BYTES_PER_FRAME


def check_track(path, disc, number, seconds):
    """Checks the same as check_run(), and that few frames are before and after the track."""
    lead_in, tail = check_run(path, disc, number, seconds)
    check(lead_in <= MOST_LEAD_IN_FRAMES,
          f"{path.name}: {lead_in} frames before the track, limit {MOST_LEAD_IN_FRAMES}")
    check(tail <= MOST_TAIL_FRAMES,
          f"{path.name}: {tail} frames after the track, limit {MOST_TAIL_FRAMES}")


def beginning_of_track(path, disc, number, seconds):
    """Checks the WAV file of a track whose capture was stopped in the middle: silence, the track
    from its first sample on, then only silence. Returns the lengths in bytes of the captured part
    and of the silence after it."""
    samples = samples_of(path)
    track = track_samples(disc, number, seconds)
    start = find_run(samples, track[:bytes_of(1) // 10])
    check(start >= 0, f"{path.name} does not contain the beginning of track {number}")
    check_silence(samples, start, path.name)
    kept = samples[start * BYTES_PER_FRAME:]
    check(len(kept) < len(track), f"{path.name} is not shorter than the track")
    same = len(os.path.commonprefix([kept, track]))
    check(not any(kept[same:]), f"{path.name} differs from track {number} after {same} bytes")
    return same, len(kept) - same
