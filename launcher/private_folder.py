# SPDX-License-Identifier: Apache-2.0
"""A folder with a short, plain path for sockets, which is removed when the process that made it ends."""

import os
import subprocess


class PrivateFolder:
    """Exists until close() was called or this process has ended in any way, and all processes that inherited
    HOLD have ended. A helper process in a session of its own makes the folder, and removes it as soon as all
    write ends of its pipe are closed."""

    # Processes that are ending may still write there, so the first attempt can fail.
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
        """A descriptor for processes that make files in the folder to inherit. If the folder were removed
        before such a process ends, the process would create it again."""
        return self._keeper.stdin.fileno()

    def close(self):
        """Waits until no process holds the folder."""
        self._keeper.stdin.close()
        self._keeper.wait()
