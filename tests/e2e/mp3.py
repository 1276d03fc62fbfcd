# SPDX-License-Identifier: GPL-3.0-or-later
"""Creates MP3 files, and compares decoded WAV files with the samples of another decoder."""

import array
import contextlib
import math
import random
import subprocess
import sys
import tempfile
import wave

from sound import BYTES_PER_FRAME, FRAME_RATE, check_format, samples_of
from waiting import check, check_equal

PEAK = 12000  # of the tones: well below clipping
BYTES_AT_A_TIME = 1 << 20


def _encode(samples, path, *options):
    """Encodes stereo samples (an array of signed 16 bit numbers) into an MP3 file. The output is
    not a pipe, since the encoder returns to the beginning to write the tag."""
    path.parent.mkdir(parents=True, exist_ok=True)
    if sys.byteorder == "big":
        samples.byteswap()
    subprocess.run(
        ["lame", "--quiet", "-r", "-s", str(FRAME_RATE / 1000), "--bitwidth", "16",
         "--little-endian", "-b", "128", *options, "-", str(path)],
        input=samples.tobytes(), check=True, capture_output=True)


def tone(seconds, hertz):
    """A sine in the left channel and the same with half the amplitude in the right one."""
    turn = 2 * math.pi * hertz / FRAME_RATE
    samples = array.array("h")
    for n in range(int(seconds * FRAME_RATE)):
        value = PEAK * math.sin(turn * n)
        samples.extend((round(value), round(value / 2)))
    return samples


def make_mp3(path, seconds=2, hertz=440):
    """Creates an MP3 of a tone, with the tag that gives its length in samples."""
    _encode(tone(seconds, hertz), path)


def make_long_mp3(path, hours):
    """Creates a long MP3 fast, by repeating the frames of some seconds of noise. Noise takes a
    decoder the most time, and no two parts of these seconds are equal."""
    seconds = 20
    noise = array.array("h", random.Random(1).randbytes(seconds * FRAME_RATE * BYTES_PER_FRAME))
    # Without a tag that states a length, and without frames that depend on others: the frames can
    # be repeated.
    _encode(noise, path, "-t", "--nores")
    frames = path.read_bytes()
    with open(path, "ab") as target:
        for _ in range(hours * 3600 // seconds - 1):
            target.write(frames)


def check_decoded(wav, mp3, seconds, hertz):
    """Checks that the WAV holds the samples of another decoder, and the tone that was encoded."""
    samples = samples_of(wav)
    with tempfile.NamedTemporaryFile(suffix=".wav") as other:
        subprocess.run(["mpg123", "-q", "-w", other.name, str(mp3)], check=True,
                       capture_output=True)
        with wave.open(other.name, "rb") as source:
            expected = source.readframes(source.getnframes())
    check_equal(len(samples), len(expected), f"bytes of samples in {wav.name}")
    check(samples == expected, f"{wav.name} holds other samples than another decoder's")
    original = tone(seconds, hertz)
    decoded = array.array("h", samples)
    check_equal(len(decoded), len(original), f"samples of {wav.name}")
    error = sum((a - b) ** 2 for a, b in zip(original, decoded))
    # The encoding of a tone loses far less than a hundredth of its power.
    check(error * 100 < sum(a * a for a in original), f"{wav.name} does not hold the tone")


def check_beginning(wav, mp3, hours):
    """Checks the WAV of a long MP3 whose decoding was stopped in the middle: it holds another
    decoder's samples from the first one on, without a gap, but not all of them. Returns its length
    in seconds."""
    with wave.open(str(wav), "rb") as kept, contextlib.ExitStack() as ending:
        check_format(kept, wav.name)
        check(kept.getnframes() < hours * 3600 * FRAME_RATE, f"{wav.name} holds the whole file")
        other = subprocess.Popen(["mpg123", "-q", "-s", str(mp3)], stdout=subprocess.PIPE,
                                 stderr=subprocess.DEVNULL)
        ending.callback(other.wait)
        ending.callback(other.kill)
        ending.callback(other.stdout.close)
        at = 0
        while samples := kept.readframes(BYTES_AT_A_TIME // BYTES_PER_FRAME):
            check(samples == other.stdout.read(len(samples)),
                  f"{wav.name} differs from another decoder's in the {BYTES_AT_A_TIME} bytes "
                  f"after sample {at}")
            at += len(samples) // BYTES_PER_FRAME
    check_equal(at, kept.getnframes(), f"samples of {wav.name}")
    return at / FRAME_RATE
