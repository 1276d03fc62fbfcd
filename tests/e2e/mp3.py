# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes MP3 files at test time, and holds decoded WAV files against another decoder's samples."""

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

PEAK = 12000  # of the tones; well below clipping
BYTES_AT_A_TIME = 1 << 20


def _encode(samples, path, *options):
    """Stereo samples (an array of signed 16 bit numbers) as an MP3. Into a file, since the encoder
    goes back to its beginning for the tag."""
    path.parent.mkdir(parents=True, exist_ok=True)
    if sys.byteorder == "big":
        samples.byteswap()
    subprocess.run(
        ["lame", "--quiet", "-r", "-s", str(FRAME_RATE / 1000), "--bitwidth", "16",
         "--little-endian", "-b", "128", *options, "-", str(path)],
        input=samples.tobytes(), check=True, capture_output=True)


def tone(seconds, hertz):
    """A sine in the left channel and one of half the loudness in the right one."""
    turn = 2 * math.pi * hertz / FRAME_RATE
    samples = array.array("h")
    for n in range(int(seconds * FRAME_RATE)):
        value = PEAK * math.sin(turn * n)
        samples.extend((round(value), round(value / 2)))
    return samples


def make_mp3(path, seconds=2, hertz=440):
    """An MP3 of a tone, with the tag that tells its length to the sample."""
    _encode(tone(seconds, hertz), path)


def make_long_mp3(path, hours):
    """An MP3 of noise, made fast: the frames of some seconds again and again. Noise, since it takes
    a decoder the longest, and since no two places in it are alike."""
    seconds = 20
    noise = array.array("h", random.Random(1).randbytes(seconds * FRAME_RATE * BYTES_PER_FRAME))
    # No tag that tells a length, and each frame for itself, so that they can be strung together.
    _encode(noise, path, "-t", "--nores")
    frames = path.read_bytes()
    with open(path, "ab") as target:
        for _ in range(hours * 3600 // seconds - 1):
            target.write(frames)


def check_decoded(wav, mp3, seconds, hertz):
    """The WAV holds the same samples as another decoder's, and the tone that was encoded."""
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
    # A tone survives the encoding with far less than a hundredth of its power lost.
    check(error * 100 < sum(a * a for a in original), f"{wav.name} does not hold the tone")


def check_beginning(wav, mp3, hours):
    """The WAV of a long MP3 that was stopped in the middle: another decoder's samples from the
    first one on, without a hole, and not all of them. Returns the seconds that are there."""
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
