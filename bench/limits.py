# SPDX-License-Identifier: GPL-3.0-or-later
"""Compares the results of a benchmark with their limits."""
import sys


class Limits:
    def __init__(self):
        self._exceeded = False

    def check(self, what, value, limit):
        """The limit is the largest permitted value, in the unit of the value. A larger value, or
        one that is not a number, is reported on the standard error output."""
        if not value <= limit:
            print(f"over the limit: {what}: {value:.4g}, limit {limit:.4g}", file=sys.stderr)
            self._exceeded = True

    def end(self):
        """Ends the benchmark. The exit code is 1 if a result was over its limit."""
        sys.exit(1 if self._exceeded else 0)
