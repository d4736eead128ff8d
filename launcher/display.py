# SPDX-License-Identifier: Apache-2.0
"""One connection to an X display, kept while a set runs: starting a program for each key and each picture
would take longer than the rest of a walk."""

import ctypes
import functools

from processes import SetError, wait_until

_ALL_PLANES = ctypes.c_ulong(-1)
_Z_PIXMAP = 2


class _Image(ctypes.Structure):
    """The head of Xlib's XImage."""
    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("xoffset", ctypes.c_int),
                ("format", ctypes.c_int), ("data", ctypes.c_void_p), ("byte_order", ctypes.c_int),
                ("bitmap_unit", ctypes.c_int), ("bitmap_bit_order", ctypes.c_int),
                ("bitmap_pad", ctypes.c_int), ("depth", ctypes.c_int),
                ("bytes_per_line", ctypes.c_int), ("bits_per_pixel", ctypes.c_int)]


# Without these handlers Xlib ends the process when a server dies or refuses a request. With them the calls
# return an error.
_ON_ERROR = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(lambda *_: 0)
_LOST_HANDLER = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_void_p)


@functools.lru_cache(maxsize=None)
def _x11():
    library = ctypes.CDLL("libX11.so.6")
    integer, number, address, text = ctypes.c_int, ctypes.c_ulong, ctypes.c_void_p, ctypes.c_char_p
    pointer = ctypes.POINTER
    unsigned = ctypes.c_uint
    for name, result, arguments in (
            ("XOpenDisplay", address, [text]),
            ("XCloseDisplay", integer, [address]),
            ("XSetErrorHandler", address, [address]),
            ("XSetIOErrorHandler", address, [address]),
            ("XSetIOErrorExitHandler", None, [address, address, address]),
            ("XDefaultRootWindow", number, [address]),
            ("XSync", integer, [address, integer]),
            ("XAutoRepeatOn", integer, [address]),
            ("XAutoRepeatOff", integer, [address]),
            ("XGetImage", pointer(_Image),
             [address, number, integer, integer, unsigned, unsigned, number, integer]),
            ("XDestroyImage", integer, [pointer(_Image)]),
            ("XCreateSimpleWindow", number,
             [address, number, integer, integer, unsigned, unsigned, unsigned, number, number]),
            ("XDestroyWindow", integer, [address, number]),
            ("XResizeWindow", integer, [address, number, unsigned, unsigned]),
            ("XGetGeometry", integer,
             [address, number, pointer(number), pointer(integer), pointer(integer),
              pointer(unsigned), pointer(unsigned), pointer(unsigned), pointer(unsigned)])):
        function = getattr(library, name)
        function.restype = result
        function.argtypes = arguments
    library.XSetErrorHandler(_ON_ERROR)
    library.XSetIOErrorHandler(_ON_ERROR)
    return library


@functools.lru_cache(maxsize=None)
def _xdo():
    library = ctypes.CDLL("libxdo.so.3")
    library.xdo_new_with_opened_display.restype = ctypes.c_void_p
    library.xdo_new_with_opened_display.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
    library.xdo_free.argtypes = [ctypes.c_void_p]
    for name in ("", "_down", "_up"):
        send = getattr(library, "xdo_send_keysequence_window" + name)
        send.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_char_p, ctypes.c_uint]
    return library


class Display:
    """The display NAME, such as ":1". Every method raises SetError once the server has ended."""

    def __init__(self, name):
        self.name = name
        self._x11 = _x11()
        self._xdo = None  # freed with this object
        self._display = self._x11.XOpenDisplay(name.encode())  # closed with this object
        if not self._display:
            raise SetError(f"the display {name} does not answer")
        lost = self._lost = []
        self._on_lost = _LOST_HANDLER(lambda *_: lost.append(True))
        self._x11.XSetIOErrorExitHandler(self._display, self._on_lost, None)
        self._root = self._x11.XDefaultRootWindow(self._display)

    def __del__(self):
        self.close()

    def close(self):
        if self._xdo:
            _xdo().xdo_free(self._xdo)
        if self._display:
            self._x11.XCloseDisplay(self._display)
        self._xdo = self._display = None

    @property
    def _open(self):
        if not self._display:
            raise SetError(f"the display {self.name} is closed")
        return self._display

    def send_keys(self, way, keys):
        """Sends the key events chosen by WAY: "" for down and up, "_down", "_up"."""
        if not self._xdo:
            self._xdo = _xdo().xdo_new_with_opened_display(self._open, self.name.encode(), 0)
        for key in keys:
            if not self._xdo or getattr(_xdo(), "xdo_send_keysequence_window" + way)(
                    self._xdo, 0, key.encode(), 0):
                raise SetError(f"the key {key} could not be sent to the display {self.name}")
        self._finish()

    def repeat_keys(self, on):
        """Turns auto-repeat of held keys on or off."""
        (self._x11.XAutoRepeatOn if on else self._x11.XAutoRepeatOff)(self._open)
        self._finish()

    def _finish(self):
        """Waits until the server has handled all requests."""
        self._x11.XSync(self._open, 0)
        if self._lost:
            raise SetError(f"the display {self.name} does not answer any more")

    def pixels(self, width, height):
        """What the display shows now: blue, green, red and an unused byte of each pixel, row by row."""
        image = self._x11.XGetImage(self._open, self._root, 0, 0, width, height, _ALL_PLANES,
                                    _Z_PIXMAP)
        if not image:
            raise SetError(f"no picture of the display {self.name} could be taken")
        try:
            head = image.contents
            if (head.bits_per_pixel, head.bytes_per_line, head.byte_order) != (32, 4 * width, 0):
                raise SetError(f"the display {self.name} has pixels of an unknown form")
            return ctypes.string_at(head.data, head.bytes_per_line * height)
        finally:
            self._x11.XDestroyImage(image)

    def wait_for_window_manager(self, seconds=60):
        """Waits until the window manager has handled all earlier requests: it handles them in order, so this
        waits for one more, to resize a hidden window, which changes nothing on the screen."""
        window = self._x11.XCreateSimpleWindow(self._open, self._root, 0, 0, 1, 1, 0, 0, 0)
        try:
            self._x11.XResizeWindow(self._open, window, 2, 1)
            wait_until(lambda: self._width_of(window) == 2, seconds, "the window manager", pause=0.001)
        finally:
            self._x11.XDestroyWindow(self._open, window)
            self._x11.XSync(self._open, 0)

    def _width_of(self, window):
        root, place, side = ctypes.c_ulong(), ctypes.c_int(), ctypes.c_uint()
        width = ctypes.c_uint()
        if not self._x11.XGetGeometry(self._open, window, root, place, place, width, side, side, side):
            raise SetError(f"the display {self.name} does not answer")
        return width.value
