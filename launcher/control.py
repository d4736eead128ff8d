# SPDX-License-Identifier: Apache-2.0
"""Sends control verbs to a running set, as virtual-set-control does, but without starting a program for each:
a test sends hundreds, and starting a program takes longer than the answer."""

import os
import re
import socket

from processes import SetError

_SOCKET = "control.sock"
_ESCAPES = {b"n": b"\n", b"t": b"\t", b"r": b"\r", b"b": b"\b", b"f": b"\f", b"v": b"\v"}


def ask(folder, *words):
    """Returns the answer of the set in FOLDER to a verb and its arguments; SetError if it refuses or has
    ended."""
    try:
        line = _exchange(folder, b"\t".join(_escaped(word) for word in words) + b"\n")
    except OSError as error:
        raise SetError(f"no set runs in {folder}: {error.strerror}") from error
    if not line.endswith(b"\n"):
        raise SetError(f"control {' '.join(words)}: the set ended before it answered")
    status, text = line.rstrip(b"\n").split(b" ", 1)
    answer = _unescaped(text).decode("utf-8", "replace")
    if status != b"0":
        raise SetError(f"control {' '.join(words)}: {answer}")
    return answer.strip()


def _exchange(folder, request):
    # The folder's path may be longer than a socket's path can be.
    directory = os.open(folder, os.O_PATH | os.O_DIRECTORY)
    try:
        with socket.socket(socket.AF_UNIX) as connection:
            connection.connect(f"/proc/self/fd/{directory}/{_SOCKET}")
            connection.sendall(request)
            line = b""
            while not line.endswith(b"\n"):
                received = connection.recv(65536)
                if not received:
                    break
                line += received
            return line
    finally:
        os.close(directory)


def _escaped(word):
    """WORD with the escapes of a C string, so that it contains neither tabs nor line ends."""
    return re.sub(rb"[\\\x00-\x1f\x7f]", lambda found: b"\\%03o" % found[0][0], os.fsencode(word))


def _unescaped(text):
    def plain(found):
        code = found[1]
        return bytes([int(code, 8) & 255]) if code[:1].isdigit() else _ESCAPES.get(code, code)

    return re.sub(rb"\\([0-7]{1,3}|.)", plain, text, flags=re.S)
