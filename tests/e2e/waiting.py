# SPDX-License-Identifier: GPL-3.0-or-later
"""Waiting for what should be seen, and saying what was not.

Nothing here asserts on time: what is waited for is a condition, with a bound that only a hang
reaches.
"""

import time

PATIENCE = 60  # seconds until a condition counts as never coming; sanitizers make programs slow


class Failure(Exception):
    """What a person would report: something that should have been seen was not."""


def wait_for(what, condition, patience=PATIENCE):
    """Polls until the condition returns something true, and returns that."""
    end = time.monotonic() + patience
    while True:
        seen = condition()
        if seen:
            return seen
        if time.monotonic() > end:
            raise Failure(f"waited for {what} in vain")
        time.sleep(0.05)


def check(holds, what):
    if not holds:
        raise Failure(what)


def check_equal(seen, expected, what):
    check(seen == expected, f"{what}: saw {seen!r}, expected {expected!r}")
