# SPDX-License-Identifier: Apache-2.0
"""The remote control and the screenshots of a set."""

import struct
import zlib

from display import Display
from processes import SetError


class Remote:
    """Presses keys on an X display, as the keyboard of that display would."""

    def __init__(self, display):
        self._display = Display(display)
        self._held = []

    def press(self, *keys):
        """Presses and releases KEYS, X keysym names such as Down or Return, one right after the other."""
        self._display.send_keys("", keys)

    def down(self, key):
        """Presses KEY and holds it."""
        self._held.append(key)
        self._display.send_keys("_down", [key])

    def up(self, key):
        """Releases KEY."""
        if key in self._held:
            self._held.remove(key)
        self._display.send_keys("_up", [key])

    def repeat(self, on):
        """Turns auto-repeat of held keys on or off."""
        self._display.repeat_keys(on)

    def wait_for_window_manager(self):
        """Waits until windows opened or closed so far have got or lost the keyboard focus."""
        self._display.wait_for_window_manager()

    def close(self):
        """Restores the keyboard for the next set on this display."""
        try:
            for key in self._held:
                self._display.send_keys("_up", [key])
            self._display.repeat_keys(True)
        except SetError:
            pass  # the display has ended, so there is no next set
        self._display.close()


class Camera:
    """Takes pictures of an X display."""

    def __init__(self, display, width, height):
        self._display = Display(display)
        self.width = width
        self.height = height

    def look(self):
        """What the screen shows now: red, green and blue of each pixel, row by row."""
        pixels = self._display.pixels(self.width, self.height)
        picture = bytearray(len(pixels) // 4 * 3)
        for place in range(3):
            picture[place::3] = pixels[2 - place::4]
        return bytes(picture)

    def save(self, picture, path):
        """Writes PICTURE as a PNG file."""
        row = 3 * self.width
        rows = b"".join(b"\0" + picture[start:start + row] for start in range(0, len(picture), row))
        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n")
            for kind, data in ((b"IHDR", struct.pack(">IIBBBBB", self.width, self.height, 8, 2, 0, 0, 0)),
                               (b"IDAT", zlib.compress(rows, 6)), (b"IEND", b"")):
                file.write(struct.pack(">I", len(data)) + kind + data +
                           struct.pack(">I", zlib.crc32(kind + data)))

    def close(self):
        self._display.close()
