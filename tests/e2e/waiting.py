# SPDX-License-Identifier: GPL-3.0-or-later
"""Waits for conditions and checks values. Raises a Failure if a wait times out or a check fails.

The default timeout is so long that only a hang reaches it; it does not test the speed.
"""

import time

PATIENCE = 60  # seconds until a wait fails; sanitizers make programs slow


class Failure(Exception):
    """A failed check or a wait that timed out, with its description."""


def wait_for(what, condition, patience=PATIENCE):
    """Polls until `condition()` returns a true value, and returns this value. After `patience`
    seconds, raises a Failure. Its text begins with `what`, the description of the condition."""
    end = time.monotonic() + patience
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise Failure(f"{what}: not within {patience} s")
        time.sleep(0.05)


def check(holds, what):
    if not holds:
        raise Failure(what)


def check_equal(value, expected, what):
    check(value == expected, f"{what}: {value!r} instead of {expected!r}")
