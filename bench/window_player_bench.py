#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures the processor time of the real program with the CD player, as a share of one core.

Without a sound output, the script measures three states: the player switched off, switched on but
not playing, and playing a disc image. While the player is on, each round measures with the panel
visible and then with the panel hidden. With a sound server, the player plays a disc image and is
compared with aplay (the peer), which plays the same sound into the same server.

window_player_bench.py FOLDER_OF_THE_PROGRAMS
"""
import pathlib
import statistics
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests" / "e2e"))

from desktop import Desktop  # pylint: disable=wrong-import-position
from limits import Limits  # pylint: disable=wrong-import-position
from player_panel import TITLE, PlayerPanel  # pylint: disable=wrong-import-position
from processor_time import processor_seconds, share, shares  # pylint: disable=wrong-import-position
from scenes import close, start_with_disc  # pylint: disable=wrong-import-position
from sound import bytes_of, disc_samples  # pylint: disable=wrong-import-position
from sound_server import SoundServer  # pylint: disable=wrong-import-position
from waiting import wait_for  # pylint: disable=wrong-import-position

TRACK_SECONDS = 400
# As with real sound, the level of this signal, and so the meter's bar, changes from tick to tick.
SIGNAL = "music"
SLICE_SECONDS = 6
ROUNDS = 7
# All limits are percentages of one core. LIMIT_OFF is 10 ms (the unit in which a task manager
# counts) in 10 seconds.
LIMIT_OFF = 0.1
LIMIT_PLAYING = 4
LIMIT_METER = 1
LIMIT_SILENT = 0.5


def share_of(started):
    return share(started.process.pid, SLICE_SECONDS)


def show_panel(desktop, window, visible):
    """Restores or minimizes the panel through the window manager, as a user does. This does not
    switch the player off."""
    desktop.xdotool(*(("windowactivate", "--sync", window) if visible else
                      ("windowminimize", "--sync", window)))
    time.sleep(1)


def report(what, values, remark):
    """Prints the measurements and returns their median."""
    median = statistics.median(values)
    print(f"{what}: median {median:.2f} %, of {', '.join(f'{value:.2f}' for value in values)} "
          f"({remark})", flush=True)
    return median


def compare(limits, what, values, limit, remark=""):
    limits.check(what, report(what, values, f"limit {limit:.2f} %{remark}"), limit)


def play(panel):
    panel.switch_on()
    panel.press("Play")
    panel.wait_for_position("playing", lambda _, second: second >= 1)


def without_server(desktop, program, limits):
    started, _, _ = start_with_disc(desktop, program, TRACK_SECONDS, "none", SIGNAL)
    panel = PlayerPanel(started)
    window = started.activate(TITLE)
    compare(limits, "off, panel visible", [share_of(started) for _ in range(ROUNDS)], LIMIT_OFF,
            ": no measurable time")
    panel.switch_on()
    time.sleep(1)
    silent, silent_hidden = [], []
    for _ in range(ROUNDS):
        silent.append(share_of(started))
        show_panel(desktop, window, False)
        silent_hidden.append(share_of(started))
        show_panel(desktop, window, True)
    report("on, nothing playing, panel visible", silent,
           "no limit: this share is the sum of the next two, which have limits")
    compare(limits, "on, nothing playing, panel hidden", silent_hidden, LIMIT_SILENT)
    compare(limits, "the panel's own share in silence",
            [a - b for a, b in zip(silent, silent_hidden)], LIMIT_METER)
    panel.press("Play")
    panel.wait_for_position("playing", lambda _, second: second >= 1)
    seen, hidden = [], []
    for _ in range(ROUNDS):
        seen.append(share_of(started))
        show_panel(desktop, window, False)
        hidden.append(share_of(started))
        show_panel(desktop, window, True)
    compare(limits, "playing, output none, panel visible", seen, LIMIT_PLAYING)
    compare(limits, "playing, output none, panel hidden", hidden, LIMIT_PLAYING)
    compare(limits, "the panel's own share while playing", [a - b for a, b in zip(seen, hidden)],
            LIMIT_METER)
    close(started)


def with_server(desktop, program, limits):
    server = SoundServer(desktop)
    started, sheet, _ = start_with_disc(desktop, program, TRACK_SECONDS, "default", SIGNAL)
    panel = PlayerPanel(started)
    play(panel)
    server.wait_for_sound("the disc")
    raw = desktop.home / "same.raw"
    raw.write_bytes(disc_samples(sheet)[:bytes_of(TRACK_SECONDS)])
    peer = desktop.launch("/usr/bin/aplay", "-q", "-t", "raw", "-f", "cd", raw)
    wait_for("the peer", lambda: processor_seconds(peer.pid) > 0.01)
    pairs = [shares([started.process.pid, peer.pid], 2 * SLICE_SECONDS) for _ in range(ROUNDS)]
    ours, theirs = zip(*pairs)
    compare(limits, "playing into the sound server", ours, 1.5 * statistics.median(theirs) + 2,
            ": 1.5 times aplay's median, plus 2 percentage points")
    report("aplay with the same sound", theirs, "no limit, because aplay is the peer")
    close(started)


def main():
    program = pathlib.Path(sys.argv[1]) / "sonarith"
    limits = Limits()
    with Desktop() as desktop:
        for part in (without_server, with_server):
            desktop.move_to(desktop.folder / part.__name__)
            part(desktop, program, limits)
            desktop.end_programs()
    limits.end()


if __name__ == "__main__":
    main()
