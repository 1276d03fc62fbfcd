#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Creates a disc image for tests and demonstrations; equal arguments produce equal bytes.

    make_disc_image.py OUTDIR [--name demo] [--tracks 3] [--seconds 4] [--sectors N] [--pause N]
                       [--layout cue|cue-multi|motorola|wave|toc] [--signal ramp|music] [--data N]

Prints the path of the created cue sheet or TOC file. With --signal ramp, frame n of the disc
(frame 0 is at INDEX 01 of track 1) contains the low 16 bits of n in the left channel, and the high
16 bits of n, exclusive-or 0x5a5a, in the right channel. With --pause N, a pause of N sectors
precedes each track except the first, and is stored in the image in addition to the length of the
track. The sheet lists the pause in the track after it (with INDEX 00 or START); the disc's time
line counts the pause as part of the track before it. With --data N, a data track of N sectors
follows the audio tracks, as on an enhanced disc.
"""

import argparse
import array
import math
import pathlib
import sys
import wave

SECTORS_PER_SECOND = 75
FRAMES_PER_SECTOR = 588
FRAME_RATE = SECTORS_PER_SECOND * FRAMES_PER_SECTOR
BYTES_PER_SECTOR = 2352
RAMP_MARK = 0x5A5A

# The frequencies in hertz of four chords. They are whole numbers, so that all sine waves of a chord
# are at zero after one second, and the next chord begins without a click. Each track plays the
# chords in this order, but starts one chord later than the track before.
CHORDS = ((262, 330, 392, 523), (220, 262, 330, 440), (175, 262, 349, 440), (196, 247, 294, 392))
PEAK = 0.6 * 32767


def interleaved(left, right):
    """Interleaves the samples of both channels to an array of signed 16-bit numbers."""
    samples = array.array("h", bytes(4 * len(left)))
    samples[0::2] = left
    samples[1::2] = right
    return samples


def signed(values):
    """Converts unsigned 16-bit numbers to signed numbers with the same bits."""
    return array.array("h", array.array("H", values).tobytes())


def ramp(first, frames):
    numbers = range(first, first + frames)
    return interleaved(signed(n & 0xFFFF for n in numbers),
                       signed(((n >> 16) & 0xFFFF) ^ RAMP_MARK for n in numbers))


def chord_second(chord):
    """One second of a chord for each channel. In the right channel, the higher notes are louder
    than in the left channel."""
    turn = 2 * math.pi / FRAME_RATE
    channels = []
    for weights in ((0.4, 0.3, 0.2, 0.1), (0.25, 0.25, 0.25, 0.25)):
        channels.append([sum(w * math.sin(turn * f * n) for f, w in zip(chord, weights))
                         for n in range(FRAME_RATE)])
    return channels


def music(track, frames):
    """The samples of a track: one decaying chord per second. The whole track fades in and out."""
    seconds = {chord: chord_second(chord) for chord in CHORDS}
    fade = min(FRAME_RATE // 2, frames // 2) or 1
    decay = [min(n / 400, 1.0) * math.exp(-2.0 * n / FRAME_RATE) for n in range(FRAME_RATE)]
    left = array.array("h")
    right = array.array("h")
    for start in range(0, frames, FRAME_RATE):
        chord = seconds[CHORDS[(track + start // FRAME_RATE) % len(CHORDS)]]
        for n in range(min(FRAME_RATE, frames - start)):
            place = start + n
            level = PEAK * decay[n] * min(1.0, place / fade, (frames - place) / fade)
            left.append(int(level * chord[0][n]))
            right.append(int(level * chord[1][n]))
    return interleaved(left, right)


def ordered(samples, order):
    """The bytes of the samples; `order` is the byte order, "little" or "big"."""
    if sys.byteorder != order:
        samples = array.array("h", samples)
        samples.byteswap()
    return samples.tobytes()


def msf(sectors):
    return "%02d:%02d:%02d" % (sectors // 75 // 60, sectors // 75 % 60, sectors % 75)


def write_wave(path, samples):
    with wave.open(str(path), "wb") as target:
        target.setnchannels(2)
        target.setsampwidth(2)
        target.setframerate(FRAME_RATE)
        target.writeframes(ordered(samples, "little"))


def make_parts(options):
    """For each track, the length of its pause in sectors, and the samples of the pause and the
    track."""
    parts = []
    at = 0
    for number in range(1, options.tracks + 1):
        pause = options.pause if number > 1 else 0
        frames = [pause * FRAMES_PER_SECTOR, options.sectors * FRAMES_PER_SECTOR]
        if options.signal == "ramp":
            samples = ramp(at, sum(frames))
        else:
            samples = array.array("h", bytes(4 * frames[0])) + music(number - 1, frames[1])
        parts.append((pause, samples))
        at += sum(frames)
    return parts


def cue_track(number, mode, pause, start):
    lines = ["  TRACK %02d %s" % (number, mode)]
    if pause:
        lines.append("    INDEX 00 " + msf(start))
    lines.append("    INDEX 01 " + msf(start + pause))
    return lines


def data_sectors(options):
    return bytes(options.data * BYTES_PER_SECTOR)


def write_single_cue(options, folder, parts):
    order, kind = ("big", "MOTOROLA") if options.layout == "motorola" else ("little", "BINARY")
    lines = ['FILE "%s.bin" %s' % (options.name, kind)]
    start = 0
    with open(folder / (options.name + ".bin"), "wb") as target:
        for number, (pause, samples) in enumerate(parts, 1):
            lines += cue_track(number, "AUDIO", pause, start)
            target.write(ordered(samples, order))
            start += pause + options.sectors
        target.write(data_sectors(options))
    if options.data:
        lines.append("REM SESSION 02")
        lines += cue_track(len(parts) + 1, "MODE2/2352", 0, start)
    return lines


def write_multi_cue(options, folder, parts):
    as_wave = options.layout == "wave"
    lines = []
    for number, (pause, samples) in enumerate(parts, 1):
        name = "%s-%02d.%s" % (options.name, number, "wav" if as_wave else "bin")
        lines.append('FILE "%s" %s' % (name, "WAVE" if as_wave else "BINARY"))
        lines += cue_track(number, "AUDIO", pause, 0)
        if as_wave:
            write_wave(folder / name, samples)
        else:
            (folder / name).write_bytes(ordered(samples, "little"))
    if options.data:
        name = "%s-%02d.bin" % (options.name, len(parts) + 1)
        lines += ["REM SESSION 02", 'FILE "%s" BINARY' % name]
        lines += cue_track(len(parts) + 1, "MODE2/2352", 0, 0)
        (folder / name).write_bytes(data_sectors(options))
    return lines


def write_toc(options, folder, parts):
    name = options.name + ".bin"
    lines = ["CD_ROM_XA" if options.data else "CD_DA"]
    start = 0
    with open(folder / name, "wb") as target:
        for pause, samples in parts:
            length = pause + options.sectors
            lines += ["", "TRACK AUDIO", "TWO_CHANNEL_AUDIO",
                      'FILE "%s" %s %s' % (name, msf(start) if start else "0", msf(length))]
            if pause:
                lines.append("START " + msf(pause))
            target.write(ordered(samples, "big"))
            start += length
        target.write(data_sectors(options))
    if options.data:
        lines += ["", "TRACK MODE2_RAW",
                  'DATAFILE "%s" #%d %s' % (name, start * BYTES_PER_SECTOR, msf(options.data))]
    return lines


def arguments():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("outdir", type=pathlib.Path)
    parser.add_argument("--name", default="demo")
    parser.add_argument("--tracks", type=int, default=3, choices=range(1, 100), metavar="1..99")
    parser.add_argument("--seconds", type=float, default=4, help="length of each track")
    parser.add_argument("--sectors", type=int,
                        help="length of each track in sectors, instead of --seconds")
    parser.add_argument("--pause", type=int, default=0, metavar="SECTORS")
    parser.add_argument("--data", type=int, default=0, metavar="SECTORS")
    parser.add_argument("--layout", default="cue",
                        choices=("cue", "cue-multi", "motorola", "wave", "toc"))
    parser.add_argument("--signal", default="music", choices=("ramp", "music"))
    options = parser.parse_args()
    if options.sectors is None:
        options.sectors = round(options.seconds * SECTORS_PER_SECOND)
    if options.sectors < 1 or options.pause < 0 or options.data < 0:
        parser.error("a track needs at least one sector, and no length may be negative")
    return options


def main():
    options = arguments()
    options.outdir.mkdir(parents=True, exist_ok=True)
    writers = {"cue-multi": write_multi_cue, "wave": write_multi_cue, "toc": write_toc}
    write = writers.get(options.layout, write_single_cue)
    lines = write(options, options.outdir, make_parts(options))
    ending = ".toc" if options.layout == "toc" else ".cue"
    sheet = options.outdir / (options.name + ending)
    sheet.write_text("\n".join(lines) + "\n", encoding="utf-8")
    print(sheet)


if __name__ == "__main__":
    main()
