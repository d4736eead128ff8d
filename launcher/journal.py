# SPDX-License-Identifier: Apache-2.0
"""Reads a log file while it is being written."""

import os
import re


class Journal:
    """Reads the lines of a file as they are written. The file may not exist yet."""

    def __init__(self, path):
        self.path = path
        self.lines = []
        self._offset = 0
        self._rest = b""

    def read(self):
        """Reads what was written since the last call, and returns all complete lines so far."""
        if os.path.exists(self.path):
            with open(self.path, "rb") as file:
                file.seek(self._offset)
                data = file.read()
            self._offset += len(data)
            *whole, self._rest = (self._rest + data).split(b"\n")
            self.lines += [line.decode("utf-8", "replace") for line in whole]
        return self.lines

    def mark(self):
        """The index after the last line so far: later lines start there."""
        return len(self.read())

    def find(self, pattern, after=0):
        """The first match of PATTERN in the lines from index AFTER on, or None."""
        expression = re.compile(pattern)
        for line in self.read()[after:]:
            found = expression.search(line)
            if found:
                return found
        return None

    def last(self, pattern):
        """The match of PATTERN in the last line that contains it, or None."""
        expression = re.compile(pattern)
        found = [expression.search(line) for line in self.read()]
        return next((match for match in reversed(found) if match), None)

    def count(self, pattern, after=0):
        expression = re.compile(pattern)
        return sum(1 for line in self.read()[after:] if expression.search(line))
