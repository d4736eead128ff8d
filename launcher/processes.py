# SPDX-License-Identifier: Apache-2.0
"""Starts and ends the processes of a set. None outlives the launcher."""

import os
import select
import shutil
import signal
import socket
import struct
import subprocess
import time


class SetError(Exception):
    """What went wrong with a set, in one line."""


class ChoiceError(SetError):
    """What is wrong with the user's options or files, in one line."""


def wait_until(condition, seconds, what, pause=0.01):
    """Returns the first true answer of CONDITION, or raises SetError when SECONDS have passed."""
    deadline = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise SetError(f"{what} did not come within {seconds:.0f} s")
        time.sleep(pause)


def require(programs):
    """Raises SetError with the names of missing PROGRAMS, before one of them is needed."""
    missing = [name for name in programs if not shutil.which(name)]
    if missing:
        raise SetError(f"these programs are missing: {', '.join(missing)}")


def display_answers(display, seconds=10):
    """Whether an X server answers on DISPLAY."""
    try:
        asked = subprocess.run(["xdpyinfo", "-display", display], stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, timeout=seconds, check=False)
    except subprocess.TimeoutExpired:
        return False
    return asked.returncode == 0


class Child:
    """One started process. It has a session of its own, so that a Ctrl-C in the terminal reaches the
    launcher alone, which then ends its children in order."""

    def __init__(self, name, arguments, log=None, **options):
        self.name = name
        self.log = log
        if not shutil.which(arguments[0]):
            raise SetError(f"{name} could not be started: there is no program {arguments[0]}")
        output = open(log, "ab") if log else subprocess.DEVNULL
        try:
            # The server ends too if the launcher is killed.
            self.process = subprocess.Popen(
                ["setpriv", "--pdeathsig", "TERM", *arguments], stdin=subprocess.DEVNULL,
                stdout=output, stderr=output, start_new_session=True, **options)
        except OSError as error:
            raise SetError(f"{name} could not be started: {error}") from error
        finally:
            if log:
                output.close()

    @property
    def status(self):
        """None while it runs, then its exit status; negative: the signal that ended it."""
        return self.process.poll()

    def stop(self, grace=10):
        """Ends the process and all that it started, even processes that are stopped or ignore signals."""
        deadline = time.monotonic() + grace
        for number in (signal.SIGTERM, signal.SIGCONT):
            self._signal_group(number)
        while self._runs() and time.monotonic() < deadline:
            time.sleep(0.005)
        self._signal_group(signal.SIGKILL)
        return self.process.wait()

    def _signal_group(self, number):
        for process in self._group():
            try:
                os.kill(process, number)
            except ProcessLookupError:
                pass

    def _runs(self):
        return self.status is None or bool(self._group())

    def _group(self):
        """The processes of its session that have not ended. Zombies are ignored: PID 1 may not reap them."""
        found = []
        for name in os.listdir("/proc"):
            try:
                with open(f"/proc/{name}/stat", "rb") as file:
                    state, _, _, session = file.read().rsplit(b")", 1)[1].split()[:4]
            except (OSError, IndexError):
                continue
            if name.isdigit() and int(session) == self.process.pid and state != b"Z":
                found.append(int(name))
        return found


def _answer_of(child, descriptor, what, seconds=60):
    """The first line that CHILD writes to the pipe DESCRIPTOR."""
    deadline = time.monotonic() + seconds
    text = b""
    try:
        while b"\n" not in text:
            if not select.select([descriptor], [], [], max(0, deadline - time.monotonic()))[0]:
                raise SetError(f"{what} did not come within {seconds:.0f} s")
            received = os.read(descriptor, 4096)
            if not received:
                raise SetError(f"{child.name} ended with status {child.process.wait()} before it was ready; "
                               f"see {child.log}")
            text += received
    finally:
        os.close(descriptor)
    return text.split(b"\n")[0].decode()


class Bus(Child):
    """A private system bus that starts the set's daemon by activation."""

    CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:dir={folder}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{folder}/services</servicedir>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_destination="*" eavesdrop="false"/>
    <allow receive_sender="*"/>
  </policy>
</busconfig>
"""

    def __init__(self, folder, services, environment, log):
        """FOLDER must be private and have a short path, since a socket's path is limited. SERVICES: file name
        to text."""
        os.makedirs(f"{folder}/services", exist_ok=True)
        for name, text in services.items():
            with open(f"{folder}/services/{name}", "w", encoding="utf-8") as file:
                file.write(text)
        with open(f"{folder}/bus.conf", "w", encoding="utf-8") as file:
            file.write(self.CONFIGURATION.format(folder=folder))
        reading, writing = os.pipe()
        try:
            super().__init__("dbus-daemon", [
                "dbus-daemon", f"--config-file={folder}/bus.conf", "--nofork", "--nopidfile",
                "--nosyslog", f"--print-address={writing}",
            ], log=log, pass_fds=[writing], env=environment)
        finally:
            os.close(writing)
        self.address = _answer_of(self, reading, "the bus")


class XServer(Child):
    """An X server of its own: Xvfb without a display, Xephyr as one window on a display."""

    def __init__(self, width, height, log, nested=False):
        reading, writing = os.pipe()
        if nested:
            arguments = ["Xephyr", "-displayfd", str(writing), "-screen", f"{width}x{height}",
                         "-title", "Virtual set", "-no-host-grab", "-noreset", "-nolisten", "tcp"]
        else:
            arguments = ["Xvfb", "-displayfd", str(writing), "-screen", "0",
                         f"{width}x{height}x24", "-noreset", "-nolisten", "tcp"]
        try:
            super().__init__(arguments[0], arguments, log=log, pass_fds=[writing])
        finally:
            os.close(writing)
        self.display = ":" + _answer_of(self, reading, "the X server")

    def answers(self):
        """Whether it still serves. If it has ended, another server may already use the same display name."""
        return display_answers(self.display) and _listener_of(self.display) == self.process.pid


def _listener_of(display):
    """The process ID of the server of a display ":N"; None if there is none."""
    with socket.socket(socket.AF_UNIX) as asked:
        try:
            asked.connect("/tmp/.X11-unix/X" + display.removeprefix(":"))
        except OSError:
            return None
        credentials = asked.getsockopt(socket.SOL_SOCKET, socket.SO_PEERCRED, struct.calcsize("3i"))
        return struct.unpack("3i", credentials)[0]


class WindowManager(Child):
    """Makes each window of the program full-screen, the newest on top, as a television does."""

    def __init__(self, display, log):
        environment = dict(os.environ, DISPLAY=display)
        super().__init__("matchbox-window-manager", [
            "matchbox-window-manager", "-use_titlebar", "no", "-use_cursor", "no",
        ], log=log, env=environment)
        wait_until(lambda: self._is_up(environment), 60, "the window manager")

    def _is_up(self, environment):
        if self.status is not None:
            raise SetError(f"{self.name} ended with status {self.status} before it was ready")
        found = subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], env=environment,
                               capture_output=True, text=True, check=False)
        return "window id" in found.stdout


class Monitor:
    """An X server and its window manager. Several sets may use it one after the other."""

    def __init__(self, width, height, log=None, nested=False):
        self._manager = None
        self._server = XServer(width, height, log, nested)
        self.display = self._server.display
        try:
            self._manager = WindowManager(self.display, log)
        except BaseException:
            self.stop()
            raise

    @property
    def server_runs(self):
        return self._server.status is None

    @property
    def good(self):
        """Whether another set can use it."""
        return self.server_runs and self._manager.status is None

    def answers(self):
        """Whether the server still serves."""
        return self._server.answers()

    def stop(self):
        try:
            if self._manager:
                self._manager.stop()
        finally:
            self._server.stop()
