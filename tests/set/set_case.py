# SPDX-License-Identifier: Apache-2.0
"""What the tests of whole sets share: a private folder, sets in it, and queries of processes."""

import atexit
import collections
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCE = os.environ["ZOLT_SOURCE"]
BUILD = os.environ["ZOLT_BUILD"]
LAUNCHER = os.path.join(SOURCE, "launcher")
sys.path.insert(0, LAUNCHER)

from folder import SetFolder  # noqa: E402
from processes import Monitor  # noqa: E402
from virtual_set import VirtualSet  # noqa: E402
from walks import SOUND_MOVE, Walk  # noqa: E402

# Shared by all tests, since locales take seconds to build.
LOCALES = os.path.join(BUILD, "test-state", "locales")
DEADLINE = 240

# A folder may have any of these in its name.
PRINTABLE = "".join(map(chr, range(32, 127))).replace("/", "") + " é한"

# One process. Its start time distinguishes it from a later one with the same ID.
Process = collections.namedtuple("Process", "number start")


def running():
    """All processes that have not ended: Process to the IDs of its parent and its session."""
    found = {}
    for name in os.listdir("/proc"):
        if name.isdigit():
            try:
                with open(f"/proc/{name}/stat", "rb") as file:
                    fields = file.read().rsplit(b")", 1)[1].split()
            except OSError:
                continue
            if fields[0] != b"Z":
                found[Process(int(name), int(fields[19]))] = (int(fields[1]), int(fields[3]))
    return found


def descendants(number):
    """The running descendants of the process NUMBER. One whose parent has ended, such as a daemon that the
    bus started, is recognised by its session."""
    known = running()
    # The session of NUMBER contains other processes too, unless NUMBER leads it.
    others = {os.getsid(number)} - {number}
    found, last = set(), None
    while found != last:
        last = found
        parents = {number} | {one.number for one in found}
        sessions = ({number} | {known[one][1] for one in found}) - others
        found = {one for one, (parent, session) in known.items()
                 if one.number != number and (parent in parents or session in sessions)}
    return found


def program_of(process):
    """The name of the program that PROCESS runs; empty if it has just ended."""
    try:
        return os.path.basename(os.readlink(f"/proc/{process.number}/exe"))
    except OSError:
        return ""


def contents(path):
    """The text of a file; empty if it does not exist yet."""
    if not os.path.exists(path):
        return ""
    with open(path, encoding="utf-8", errors="replace") as file:
        return file.read()


def with_variables(changes):
    """The environment with CHANGES; None removes a variable."""
    return {name: value for name, value in {**os.environ, **changes}.items() if value is not None}


class Monitors:
    """The screens of this process's sets, by size. A test that does not test the servers of a screen reuses
    those of earlier tests."""

    _by_size = {}

    @classmethod
    def of(cls, size):
        monitor = cls._by_size.get(size)
        if not monitor or not monitor.good:
            monitor = cls._by_size[size] = Monitor(*size)
            atexit.register(monitor.stop)
        return monitor


class SetCase(unittest.TestCase):
    def setUp(self):
        self.private = tempfile.mkdtemp(prefix="zolt-test-")
        # All writers have ended by then, so removing it must succeed.
        self.addCleanup(shutil.rmtree, self.private)
        self.said = []

    def write(self, name, text):
        path = os.path.join(self.private, name)
        self.rewrite(path, text)
        return path

    def folder(self, **choices):
        folder = SetFolder(os.path.join(self.private, "set"), BUILD)
        folder.make(**choices)
        return folder

    @staticmethod
    def key_file(groups):
        return "".join(f"[{group}]\n" + "".join(f"{key}={value}\n" for key, value in values.items())
                       for group, values in groups.items())

    def start(self, scenario=None, **choices):
        """A Walk on a running set, which ends with the test."""
        path = scenario and self.write("scenario.ini", self.key_file(scenario))
        folder = self.folder(**choices)
        running_set = VirtualSet(folder, LOCALES, scenario=path, say=self.said.append,
                                 monitor=Monitors.of(folder.size))
        running_set.__enter__()
        self.addCleanup(running_set.close)
        return Walk(running_set, self.private, self.said.append)

    def to_search(self, walk):
        """From the first menu to the search in the local network."""
        self.assertEqual("MainMenuUnregisteredScreen", walk.start())
        walk.press("Down", SOUND_MOVE)
        walk.press("Return", r"Called .*displayShopsFromLANRequested")

    def configure(self, walk, key, value):
        """Changes a KEY of the set's configuration; None removes it."""
        path = walk.set.folder.file("config.xml")
        pattern = re.compile(rf'(<item name="{key}">)(.*?)(</item>)')
        text = contents(path)
        self.assertRegex(text, pattern)
        text = pattern.sub("" if value is None else rf"\g<1>{value}\g<3>", text)
        self.rewrite(path, text)

    @staticmethod
    def rewrite(path, text):
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)

    def launcher(self, *arguments):
        return ["/usr/bin/python3", "-B", os.path.join(LAUNCHER, "launch.py"), "--build", BUILD,
                "--state", os.path.join(self.private, "state"), "--locales", LOCALES, *arguments]

    def launch(self, *arguments, **environment):
        return subprocess.run(self.launcher(*arguments), env=with_variables(environment),
                              capture_output=True, text=True, timeout=DEADLINE, check=False)

    def begin(self, command, **environment):
        """Starts COMMAND, which runs until the end of the test; returns it and the file with its output."""
        output = os.path.join(self.private, "output")
        with open(output, "wb") as file:
            process = subprocess.Popen(command, stdout=file, stderr=file, stdin=subprocess.DEVNULL,
                                       env=with_variables(environment))
        self.addCleanup(self.end, process)
        return process, output

    @staticmethod
    def end(process):
        if process.poll() is None:
            process.terminate()
        try:
            process.wait(DEADLINE)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
            raise

    def assert_one_error_line(self, status, text, ended):
        self.assertEqual((status, ""), (ended.returncode, ended.stdout), ended.stderr)
        self.assertEqual(1, len(ended.stderr.splitlines()), ended.stderr)
        self.assertIn(text, ended.stderr)
