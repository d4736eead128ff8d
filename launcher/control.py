# SPDX-License-Identifier: Apache-2.0
"""Asks a running set what virtual-set-control would ask it. A test asks hundreds of times, and to start a
program for each takes longer than the answers."""

import os
import re
import socket

from processes import SetError

_SOCKET = "control.sock"
_ESCAPES = {b"n": b"\n", b"t": b"\t", b"r": b"\r", b"b": b"\b", b"f": b"\f", b"v": b"\v"}


def ask(folder, *words):
    """What the set in FOLDER answers to a verb and its arguments; SetError when it refuses or is gone."""
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
    # A socket's path has few characters, and the folder's may have many.
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
    """WORD as the set reads it: as in a string of C, so that it has neither tabs nor ends of lines."""
    return re.sub(rb"[\\\x00-\x1f\x7f]", lambda found: b"\\%03o" % found[0][0], os.fsencode(word))


def _unescaped(text):
    def plain(found):
        code = found[1]
        return bytes([int(code, 8) & 255]) if code[:1].isdigit() else _ESCAPES.get(code, code)

    return re.sub(rb"\\([0-7]{1,3}|.)", plain, text, flags=re.S)
