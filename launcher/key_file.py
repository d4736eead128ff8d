# SPDX-License-Identifier: Apache-2.0
"""Key files, read and written by the very library with which the set reads and writes them."""

import ctypes
import functools
import os

_KEEP_COMMENTS = 1


class KeyFileError(Exception):
    """Why a key file cannot be read, in one line."""


class _Error(ctypes.Structure):
    _fields_ = [("domain", ctypes.c_uint32), ("code", ctypes.c_int), ("message", ctypes.c_char_p)]


@functools.lru_cache(maxsize=None)
def _glib():
    library = ctypes.CDLL("libglib-2.0.so.0")
    text, address = ctypes.c_char_p, ctypes.c_void_p
    for name, result, arguments in (
            ("g_key_file_new", address, []),
            ("g_key_file_unref", None, [address]),
            ("g_key_file_load_from_file", ctypes.c_int, [address, text, ctypes.c_int, address]),
            ("g_key_file_get_string", address, [address, text, text, address]),
            ("g_key_file_set_string", None, [address, text, text, text]),
            ("g_key_file_to_data", address, [address, address, address]),
            ("g_error_free", None, [address]),
            ("g_free", None, [address])):
        function = getattr(library, name)
        function.restype = result
        function.argtypes = arguments
    return library


class KeyFile:
    """The key file PATH, or an empty one without it."""

    def __init__(self, path=None):
        self._glib = _glib()
        self._file = self._glib.g_key_file_new()
        if path is not None:
            self._load(path)

    def __del__(self):
        self._glib.g_key_file_unref(self._file)

    def _load(self, path):
        failure = ctypes.POINTER(_Error)()
        if not self._glib.g_key_file_load_from_file(
                self._file, os.fsencode(path), _KEEP_COMMENTS, ctypes.byref(failure)):
            reason = " ".join(failure.contents.message.decode("utf-8", "replace").split())
            self._glib.g_error_free(failure)
            raise KeyFileError(f"{path}: {reason}")

    def get(self, group, key):
        """The value of KEY, or None where it is not given."""
        return self._taken(self._glib.g_key_file_get_string(
            self._file, group.encode(), key.encode(), None))

    def set(self, group, key, value):
        self._glib.g_key_file_set_string(self._file, group.encode(), key.encode(), value.encode())

    @property
    def text(self):
        """The whole file, with its comments."""
        return self._taken(self._glib.g_key_file_to_data(self._file, None, None))

    def _taken(self, address):
        if not address:
            return None
        text = ctypes.string_at(address).decode("utf-8", "surrogateescape")
        self._glib.g_free(address)
        return text
