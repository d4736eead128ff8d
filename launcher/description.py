# SPDX-License-Identifier: Apache-2.0
"""Reads and changes the description file of a set, through the set's control program, which knows its
rules."""

import os
import subprocess

from processes import ChoiceError

# The limits of the virtual set, repeated here because a size is checked before the control program is built.
SMALLEST_SIDE = 1
LARGEST_SIDE = 16384


class Description:
    """The description in the file PATH; if there is no such file, each value has its default. BUILD is the
    build folder whose control program is used."""

    def __init__(self, build, path):
        self._program = os.path.join(build, "platform", "host", "virtual-set-control")
        self._path = path
        self._values = dict(line.split("=", 1) for line in self._ask("describe").splitlines())

    @property
    def size(self):
        return int(self._values["Screen Width"]), int(self._values["Screen Height"])

    @property
    def language(self):
        return self._values["Language Language"]

    def change(self, group, key, value):
        """Changes one value in the file."""
        self._ask("set", group, key, value)
        self._values[f"{group} {key}"] = value

    def _ask(self, *words):
        told = subprocess.run([self._program, "--description", self._path, *words], capture_output=True,
                              text=True, errors="surrogateescape", check=False)
        if told.returncode != 0:
            reason = " ".join(told.stderr.replace("virtual-set-control: ", "").split())
            raise ChoiceError(f"the description of the set cannot be used: {reason}")
        return told.stdout
