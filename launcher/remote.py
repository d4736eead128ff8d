# SPDX-License-Identifier: Apache-2.0
"""The remote control and the camera in front of a set: keys in, pictures out."""

import ctypes
import functools
import os
import subprocess
import time

from processes import SetError


class Remote:
    """Presses keys on an X display, as the keyboard of that display would."""

    def __init__(self, display):
        self._environment = dict(os.environ, DISPLAY=display)

    def press(self, *keys):
        """Presses and releases KEYS, X keysym names such as Down or Return, one right after the other."""
        self._tool("key", "--clearmodifiers", "--delay", "0", *keys)

    def down(self, key):
        """Presses KEY and holds it."""
        self._tool("keydown", key)

    def up(self, key):
        """Releases KEY."""
        self._tool("keyup", key)

    def repeat(self, wanted):
        """Whether a key that is held comes again and again."""
        display = self._x11.XOpenDisplay(self._environment["DISPLAY"].encode())
        if not display:
            raise SetError(f"the display {self._environment['DISPLAY']} does not answer")
        (self._x11.XAutoRepeatOn if wanted else self._x11.XAutoRepeatOff)(ctypes.c_void_p(display))
        self._x11.XCloseDisplay(ctypes.c_void_p(display))

    def _tool(self, *words):
        pressed = subprocess.run(["xdotool", *words], capture_output=True, env=self._environment,
                                 text=True, check=False)
        if pressed.returncode != 0:
            raise SetError(f"xdotool {' '.join(words)} failed: {pressed.stderr.strip()}")

    @functools.cached_property
    def _x11(self):
        library = ctypes.CDLL("libX11.so.6")
        library.XOpenDisplay.restype = ctypes.c_void_p
        return library


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
