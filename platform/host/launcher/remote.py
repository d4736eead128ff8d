# SPDX-License-Identifier: Apache-2.0
"""The remote control and the camera in front of a set: keys in, pictures out."""

import os
import subprocess
import time

from processes import SetError


class Remote:
    """Presses keys on an X display, as the keyboard of that display would."""

    def __init__(self, display):
        self._environment = dict(os.environ, DISPLAY=display)

    def press(self, key):
        """Presses and releases KEY, an X keysym name such as Down or Return."""
        pressed = subprocess.run(["xdotool", "key", "--clearmodifiers", key], capture_output=True,
                                 env=self._environment, text=True, check=False)
        if pressed.returncode != 0:
            raise SetError(f"the key {key} could not be pressed: {pressed.stderr.strip()}")


class Camera:
    """Takes pictures of an X display."""

    def __init__(self, display, width, height):
        self._environment = dict(os.environ, DISPLAY=display)
        self._size = (width, height)

    def look(self):
        """What the screen shows at this moment: red, green and blue of each pixel, row by row."""
        taken = subprocess.run(["import", "-silent", "-window", "root", "-depth", "8", "rgb:-"],
                               env=self._environment, capture_output=True, check=False)
        if taken.returncode != 0:
            raise SetError(f"no picture could be taken: {taken.stderr.decode().strip()}")
        return taken.stdout

    def settled(self, seconds=3.0):
        """A picture in which nothing moves any more; after SECONDS one of a screen that does not rest,
        such as one with a turning circle."""
        deadline = time.monotonic() + seconds
        last = self.look()
        while time.monotonic() < deadline:
            picture = self.look()
            if picture == last and any(picture):
                return picture
            last = picture
        return last

    def save(self, picture, path):
        width, height = self._size
        kept = subprocess.run(["convert", "-size", f"{width}x{height}", "-depth", "8", "rgb:-",
                               "-define", "png:compression-level=6", path],
                              input=picture, capture_output=True, check=False)
        if kept.returncode != 0:
            raise SetError(f"the picture {path} could not be kept: {kept.stderr.decode().strip()}")
