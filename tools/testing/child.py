# SPDX-License-Identifier: GPL-3.0-or-later
"""Functions that make a child process end when the script that started it ends."""

import ctypes
import os
import signal

_PR_SET_PDEATHSIG = 1
_libc = ctypes.CDLL(None)


def ends_with_parent():
    """For `preexec_fn`: the child receives SIGTERM when its parent ends, even if the parent was
    killed."""
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGTERM, 0, 0, 0)


def ends_with_parent_at_idle_priority():
    """Like ends_with_parent(), and makes the child use only idle processor time."""
    ends_with_parent()
    os.nice(19)
    try:
        os.sched_setscheduler(0, os.SCHED_IDLE, os.sched_param(0))
    except OSError:
        pass  # some containers forbid this; the nice value is still set
