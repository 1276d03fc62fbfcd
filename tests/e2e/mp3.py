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

PEAK = 12000  # amplitude of the tones, well below clipping
BYTES_AT_A_TIME = 1 << 20


def _encode(samples, path, *options):
    """Encodes stereo samples (an array of signed 16-bit numbers) into an MP3 file. The output must
    not be a pipe: after the last sample, the encoder seeks back and writes its information frame at
    the beginning of the file."""
    path.parent.mkdir(parents=True, exist_ok=True)
    if sys.byteorder == "big":
        samples.byteswap()
    subprocess.run(
        ["lame", "--quiet", "-r", "-s", str(FRAME_RATE / 1000), "--bitwidth", "16",
         "--little-endian", "-b", "128", *options, "-", str(path)],
        input=samples.tobytes(), check=True, capture_output=True)


def tone(seconds, hertz):
    """Samples of a sine wave in both channels; the right channel has half the amplitude."""
    turn = 2 * math.pi * hertz / FRAME_RATE
    samples = array.array("h")
    for n in range(int(seconds * FRAME_RATE)):
        value = PEAK * math.sin(turn * n)
        samples.extend((round(value), round(value / 2)))
    return samples


def make_mp3(path, seconds=2, hertz=440):
    """Creates an MP3 file of a tone. Its information frame states the length in samples."""
    _encode(tone(seconds, hertz), path)


def make_long_mp3(path, hours):
    """Creates a long MP3 file quickly, by repeating the frames of 20 seconds of noise. Of all
    sounds, noise takes a decoder the most time. No two parts of these 20 seconds are equal, so
    check_beginning() detects missing or exchanged parts."""
    seconds = 20
    noise = array.array("h", random.Random(1).randbytes(seconds * FRAME_RATE * BYTES_PER_FRAME))
    # The options omit the information frame ("-t") and the bit reservoir ("--nores"), so that the
    # frames can be repeated.
    _encode(noise, path, "-t", "--nores")
    frames = path.read_bytes()
    with open(path, "ab") as target:
        for _ in range(hours * 3600 // seconds - 1):
            target.write(frames)


def check_decoded(wav, mp3, seconds, hertz):
    """Checks that the WAV file contains the samples that another decoder produces from the MP3
    file, and that these samples are nearly those of the encoded tone."""
    samples = samples_of(wav)
    with tempfile.NamedTemporaryFile(suffix=".wav") as other:
        subprocess.run(["mpg123", "-q", "-w", other.name, str(mp3)], check=True,
                       capture_output=True)
        with wave.open(other.name, "rb") as source:
            expected = source.readframes(source.getnframes())
    check_equal(len(samples), len(expected), f"bytes of samples in {wav.name}")
    check(samples == expected, f"{wav.name} differs from the output of another decoder")
    original = tone(seconds, hertz)
    decoded = array.array("h", samples)
    check_equal(len(decoded), len(original), f"samples of {wav.name}")
    error = sum((a - b) ** 2 for a, b in zip(original, decoded))
    # The error of the encoding has far less than a hundredth of the tone's power.
    check(error * 100 < sum(a * a for a in original),
          f"{wav.name} does not contain the encoded tone")


def check_beginning(wav, mp3, hours):
    """Checks the WAV file of a long MP3 file whose decoding was stopped in the middle. The WAV file
    must contain the first samples of another decoder's output, and its playing time must be shorter
    than that of the MP3 file. Returns the playing time of the WAV file in seconds."""
    with wave.open(str(wav), "rb") as kept, contextlib.ExitStack() as ending:
        check_format(kept, wav.name)
        check(kept.getnframes() < hours * 3600 * FRAME_RATE,
              f"the playing time of {wav.name} is not shorter than that of the MP3 file")
        other = subprocess.Popen(["mpg123", "-q", "-s", str(mp3)], stdout=subprocess.PIPE,
                                 stderr=subprocess.DEVNULL)
        ending.callback(other.wait)
        ending.callback(other.kill)
        ending.callback(other.stdout.close)
        at = 0
        while samples := kept.readframes(BYTES_AT_A_TIME // BYTES_PER_FRAME):
            check(samples == other.stdout.read(len(samples)),
                  f"{wav.name} differs from the output of another decoder; the first difference is "
                  f"at most {BYTES_AT_A_TIME} bytes after frame {at} of the WAV file")
            at += len(samples) // BYTES_PER_FRAME
    check_equal(at, kept.getnframes(), f"frames read from {wav.name}")
    return at / FRAME_RATE
