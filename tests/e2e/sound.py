# SPDX-License-Identifier: GPL-3.0-or-later
"""Holds captured WAV files against the disc image they were captured from, sample by sample."""

import pathlib
import wave

from driver import check, check_equal

FRAME_RATE = 44100
BYTES_PER_FRAME = 4
MOST_LEAD_IN_FRAMES = FRAME_RATE * 50 // 1000
MOST_TAIL_FRAMES = FRAME_RATE * 150 // 1000


def captured(path):
    """The bytes of a WAV's samples, which have a disc's format."""
    with wave.open(str(path), "rb") as source:
        shape = (source.getnchannels(), source.getsampwidth(), source.getframerate())
        check_equal(shape, (2, 2, FRAME_RATE), f"the format of {path.name}")
        samples = source.readframes(source.getnframes())
    check_equal(len(samples), source.getnframes() * BYTES_PER_FRAME, f"the length of {path.name}")
    return samples


def disc_samples(sheet):
    """All samples of an image with one BINARY file."""
    return pathlib.Path(sheet).with_suffix(".bin").read_bytes()


def find_run(samples, run):
    """The frame at which the run begins, or -1; only whole frames count."""
    at = samples.find(run)
    while at > 0 and at % BYTES_PER_FRAME:
        at = samples.find(run, at + 1)
    return at // BYTES_PER_FRAME if at >= 0 else -1


def check_lead_in(samples, start, name):
    check(start <= MOST_LEAD_IN_FRAMES, f"{name}: {start} frames stand before the track")
    check(not any(samples[:start * BYTES_PER_FRAME]), f"{name}: no silence before the track")


def check_track(path, sheet, number, seconds):
    """The WAV is the whole track `number` of a disc of equal tracks: silence, the track as one
    run, and a short piece of what follows on the disc."""
    samples = captured(path)
    disc = disc_samples(sheet)
    length = seconds * FRAME_RATE * BYTES_PER_FRAME
    track = disc[(number - 1) * length:number * length]
    check_equal(len(track), length, f"the length of track {number} of the image")
    start = find_run(samples, track)
    check(start >= 0, f"{path.name} does not hold track {number} as one run")
    check_lead_in(samples, start, path.name)
    tail = samples[start * BYTES_PER_FRAME + length:]
    tail_frames = len(tail) // BYTES_PER_FRAME
    check(tail_frames <= MOST_TAIL_FRAMES, f"{path.name}: {tail_frames} frames after the track")
    follows = disc[number * length:] + bytes(len(tail))
    check(follows.startswith(tail), f"{path.name}: what follows the track is not the disc's")


def check_beginning(path, sheet, number, seconds):
    """The WAV is a track that was stopped in the middle: silence, then the track from its first
    sample on, without a gap to the WAV's end. Returns how many frames of the track there are."""
    samples = captured(path)
    disc = disc_samples(sheet)
    length = seconds * FRAME_RATE * BYTES_PER_FRAME
    track = disc[(number - 1) * length:number * length]
    start = find_run(samples, track[:FRAME_RATE // 10 * BYTES_PER_FRAME])
    check(start >= 0, f"{path.name} does not hold the beginning of track {number}")
    check_lead_in(samples, start, path.name)
    kept = samples[start * BYTES_PER_FRAME:]
    check(len(kept) < len(track), f"{path.name} was not stopped in the middle")
    check(track.startswith(kept), f"{path.name} differs from track {number}")
    return len(kept) // BYTES_PER_FRAME
