# SPDX-License-Identifier: Apache-2.0
"""Parses a running set's report of its screen: windows, widgets, rows and texts."""

import re

_LINE = re.compile(r'^(?P<indent> *)(?P<kind>[\w/]+) (?P<x>-?\d+),(?P<y>-?\d+) (?P<width>\d+)x(?P<height>\d+)'
                   r'(?P<flags>(?: (?:focusable|focus|selected))*)(?: "(?P<text>.*)")?$')
_PRESSED = ("button", "hoversel")


class Piece:
    """A window, a widget, a row of a list or a drawn text, with the pieces in it."""

    def __init__(self, found):
        self.kind = found["kind"]
        self.x, self.y = int(found["x"]), int(found["y"])
        self.width, self.height = int(found["width"]), int(found["height"])
        self.flags = frozenset(found["flags"].split())
        self.text = re.sub(r"\\(.)", lambda escaped: {"n": "\n"}.get(escaped[1], escaped[1]),
                           found["text"] or "")
        self.pieces = []

    def all(self, kind=None):
        """Itself and all pieces in it, of KIND if given, in drawing order."""
        if kind in (None, self.kind):
            yield self
        for piece in self.pieces:
            yield from piece.all(kind)

    @property
    def words(self):
        """The texts in it."""
        return [piece.text for piece in self.all("text")]

    @property
    def focused(self):
        return "focus" in self.flags

    @property
    def focusable(self):
        return "focusable" in self.flags


class Screen:
    """One report, as printed by "virtual-set-control look"."""

    def __init__(self, report):
        self.windows = []
        above = []  # the previous piece and those around it, outermost first
        for line in report.splitlines():
            found = _LINE.match(line)
            if not found:
                raise ValueError(f"no line of a screen's report: {line!r}")
            piece = Piece(found)
            depth = len(found["indent"]) // 2
            del above[depth:]
            (above[-1].pieces if above else self.windows).append(piece)
            above.append(piece)

    @property
    def window(self):
        """The window that has the keyboard, or the first."""
        return self.windows[0]

    @property
    def popup(self):
        """The popup of the current window, or None."""
        return self.popup_of(0)

    def popup_of(self, window):
        """The popup of the window with this index, or None."""
        found = list(self.windows[window].all("popup"))
        return found[-1] if found else None

    @property
    def top(self):
        """What a key reaches: the popup, or else the window."""
        return self.popup or self.window

    def buttons(self, piece=None):
        """The texts of the buttons and drop-downs of PIECE, by default of top, sorted by position. "*"
        follows the text of one that can take the focus, "!" that of the one that has it."""
        found = [each for kind in _PRESSED for each in (piece or self.top).all(kind)]
        return [" ".join(each.words) + ("*" if each.focusable else "") + ("!" if each.focused else "")
                for each in sorted(found, key=lambda each: (each.y, each.x))]

    @property
    def focus(self):
        """The text of what has the focus; for a list, of its focused row. None if nothing that can be pressed
        has it."""
        for each in self.window.all("genlist"):
            if each.focused:
                return next((row.text for row in each.all("row") if row.focused), None)
        for piece in self.window.all():
            if piece.focused and piece.kind in _PRESSED:
                return " ".join(piece.words)
            if piece.focused and piece.kind == "scroller":
                return "(scroller)"
        return None

    @property
    def rows(self):
        return [piece.text for piece in self.window.all("row")]
