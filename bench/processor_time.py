# SPDX-License-Identifier: GPL-3.0-or-later
"""The processor time of a running process, with the kernel's resolution of a nanosecond."""
import time


def processor_seconds(pid):
    """The processor time of all threads so far, from the process's clock (clock_getcpuclockid)."""
    return time.clock_gettime((~pid << 3) | 2)


def shares(pids, seconds):
    """The processor time of each process over the same seconds, in percent of one core."""
    began = time.monotonic()
    before = [processor_seconds(pid) for pid in pids]
    time.sleep(seconds)
    after = [processor_seconds(pid) for pid in pids]
    elapsed = time.monotonic() - began
    return [100 * (end - start) / elapsed for start, end in zip(before, after)]


def share(pid, seconds):
    return shares([pid], seconds)[0]
