# SPDX-License-Identifier: Apache-2.0
"""A folder with a short and plain path, for sockets, that goes with the process that asked for it."""

import os
import subprocess


class PrivateFolder:
    """Exists from here to close(), or to the end of this process, however that ends, and to the end of
    those that were given HOLD: a process of its own session makes the folder and removes it, as soon as
    nobody is left at the other end of its pipe."""

    # What is being ended may still write there, so that a first attempt can fail.
    _KEEPER = """
        trap '' HUP INT TERM PIPE
        folder=$(mktemp -d /tmp/zolt-XXXXXXXX) || exit 1
        echo "$folder"
        cat >/dev/null
        for attempt in $(seq 100); do
            rm -rf -- "$folder" && exit 0
            sleep 0.1
        done
        exit 1
    """

    def __init__(self):
        self._keeper = subprocess.Popen(
            ["sh", "-c", self._KEEPER], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL, start_new_session=True, cwd="/")
        with self._keeper.stdout as answer:
            self.path = os.fsdecode(answer.readline()).rstrip("\n")
        if not self.path:
            raise OSError("no folder could be made in /tmp")

    @property
    def hold(self):
        """The descriptor that a process inherits which makes files and folders there. Removed before
        that process has ended, the folder would come back."""
        return self._keeper.stdin.fileno()

    def close(self):
        """Waits for all that hold the folder."""
        self._keeper.stdin.close()
        self._keeper.wait()
