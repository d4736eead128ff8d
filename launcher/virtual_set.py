# SPDX-License-Identifier: Apache-2.0
"""A whole virtual set: bus, daemon, screen, window manager and program, in one folder."""

import contextlib
import os
import time

import control
from folder import SetFolder
from journal import Journal
from private_folder import PrivateFolder
from processes import Bus, Child, Monitor, SetError, wait_until
from remote import Camera, Remote

_ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), ".."))
RESTARTS = 3
RESTART_WINDOW = 60.0


class VirtualSet:
    """A set that runs between __enter__ and __exit__. FOLDER is complete; LOCALES is a folder that sets
    share. SCENARIO replaces the folder's own. MONITOR is a screen of the set's size that other sets use
    before and after it; without it the set starts its own. A test may end the bus."""

    _PASSED = ("PATH", "TERM", "USER", "LOGNAME", "PULSE_SERVER", "LD_LIBRARY_PATH", "ELM_MODULES",
               "CANBERRA_DRIVER", "VIRTUAL_SET_STALL_SECONDS", "VIRTUAL_SET_SOUNDS")

    def __init__(self, folder: SetFolder, locales, scenario=None, log=None, nested=False, say=print,
                 monitor=None):
        self.folder = folder
        self.log = Journal(log or folder.file("zolt.log"))
        self.daemon_log = Journal(folder.file("daemon.log"))
        self.restarts = []
        self._locales = locales
        self._scenario = scenario
        self._nested = nested
        self._say = say
        self._private = None
        self._shared_monitor = monitor
        self.bus = self.monitor = self.program = self.remote = self.camera = None

    def __enter__(self):
        try:
            self._start()
        except BaseException:
            self.close()
            raise
        return self

    def __exit__(self, *_):
        self.close()

    def _start(self):
        # A log outside the folder is the caller's to clear.
        for path in (self.folder.file("zolt.log"), self.folder.file("daemon.log")):
            if os.path.exists(path):
                os.remove(path)
        self.folder.make_locales(self._locales)
        # Sockets need short, plain paths; those of the build folder and TMPDIR may be neither.
        self._private = PrivateFolder()
        os.symlink(self._locales, self._locales_link)
        self.start_bus()
        width, height = self.folder.size
        servers = self.folder.file("servers.log")
        self.monitor = self._shared_monitor or Monitor(width, height, servers, self._nested)
        self.remote = Remote(self.monitor.display)
        self.camera = Camera(self.monitor.display, width, height)

    @property
    def _locales_link(self):
        # A colon separates the folders in LOCPATH, so the path in it must have none.
        return os.path.join(self.private, "locales")

    @property
    def private(self):
        """The folder of the sockets; None when the set does not run."""
        return self._private and self._private.path

    def start_bus(self):
        self.bus = Bus(self.private, {"org.tizen.GDBus.ZoltContent.service": self._service()},
                       self.environment(), self.folder.file("servers.log"))

    def _service(self):
        daemon = os.path.join(self.folder.build, "daemon", "zolt-daemon")
        template = os.path.join(_ROOT, "daemon", "org.tizen.GDBus.ZoltContent.service.in")
        with open(template, encoding="utf-8") as file:
            text = file.read()
        text = text.replace("@ZOLT_DAEMON@", self._quoted(daemon))
        scenario = f" --scenario {self._quoted(self._scenario)}" if self._scenario else ""
        return text.replace("@ZOLT_SET_DIR@", self._quoted(self.folder.path) + scenario)

    @staticmethod
    def _quoted(word):
        """WORD for the command line in a service file of the bus: quoted as for a shell, then with its
        backslashes doubled, as in any value of such a file."""
        return ("'" + word.replace("'", "'\"'\"'") + "'").replace("\\", "\\\\")

    def environment(self):
        """The environment of the set's processes. Settings of the user affect a set only through its
        description and the variables in platform/host/README.md."""
        environment = {name: value for name, value in os.environ.items()
                       if name in self._PASSED
                       or name.startswith(("ASAN_", "UBSAN_", "LSAN_", "TSAN_", "GCOV_"))}
        home = self.folder.file("home")
        environment.update({
            "HOME": home,
            "XDG_CONFIG_HOME": os.path.join(home, "config"),
            "XDG_CACHE_HOME": os.path.join(home, "cache"),
            "XDG_DATA_HOME": os.path.join(home, "data"),
            "XDG_RUNTIME_DIR": self._runtime_folder(),
            "LOCPATH": self._locales_link if self.private else self._locales,
            "FONTCONFIG_FILE": os.path.join(_ROOT, "platform", "host", "fonts.conf"),
            "EINA_LOG_LEVEL": "1",
            "EINA_LOG_BACKTRACE": "-1",
            # rest() forces a redraw, which must not wait for a drawing thread.
            "ECORE_EVAS_FORCE_SYNC_RENDER": "1",
            "ELM_DISPLAY": "x11",
            "ELM_ENGINE": "x11",
            "VIRTUAL_SET_DIR": self.folder.path,
            "VIRTUAL_SET_LOG": self.log.path,
        })
        if self.bus:
            environment["DBUS_SYSTEM_BUS_ADDRESS"] = self.bus.address
        if self.monitor:
            environment["DISPLAY"] = self.monitor.display
        return environment

    def _runtime_folder(self):
        # The user's sound server is found there.
        if self._nested and os.environ.get("XDG_RUNTIME_DIR"):
            return os.environ["XDG_RUNTIME_DIR"]
        return self.private

    @property
    def hub(self):
        return os.path.join(self.folder.build, "src", "gui", "zolt-hub")

    def start_program(self):
        self.program = Child("zolt-hub", [self.hub], log=self.folder.file("servers.log"),
                             cwd=self.folder.path, env=self.environment(),
                             pass_fds=[self._private.hold])

    def supervise(self, stay=lambda: True):
        """Runs the program, unless it runs already, until it ends with status 0. Restarts it after any other
        end, at most three times in a minute. Returns its exit status; None if its screen was closed or STAY
        returned false."""
        if not self.program:
            self.start_program()
        while True:
            status = self._wait_for_end(stay)
            # A program whose screen is closed may end before we notice, with any status.
            if status is None or not self.monitor.answers():
                return None
            if status == 0:
                return status
            now = time.monotonic()
            self.restarts = [then for then in self.restarts if now - then < RESTART_WINDOW]
            how = f"status {status}" if status > 0 else f"signal {-status}"
            if len(self.restarts) >= RESTARTS:
                self._say(f"zolt-hub ended with {how} for the fourth time in a minute; giving up")
                return status
            self.restarts.append(now)
            self._say(f"zolt-hub ended with {how}; starting it again")
            self.start_program()

    def _wait_for_end(self, stay):
        while self.program.status is None:
            if not stay() or not self.monitor.server_runs:
                self.program.stop()
                return None
            time.sleep(0.1)
        return self.program.status

    def control(self, *words):
        """Sends a control verb to the running set and returns the answer."""
        return control.ask(self.folder.path, *words)

    def rest(self):
        """Waits until the program has handled and drawn everything so far, and its newest window has the
        keyboard. Repeats, because drawing can schedule work for the next iteration of the main loop, which
        may draw again."""
        for wait in (self.remote.wait_for_window_manager, lambda: None):
            for _ in range(3):
                self.control("draw")
            wait()

    def wait_for_log(self, pattern, after=0, seconds=120, journal=None):
        """Waits for a line of the log. Fails at once if the program ends without it."""
        journal = journal or self.log
        return self.wait_while_running(lambda: journal.find(pattern, after), seconds,
                                       f"{pattern!r} in {os.path.basename(journal.path)}")

    def wait_while_running(self, condition, seconds, what):
        """Waits for CONDITION. Fails at once if the program ends without it."""
        def seen():
            found = condition()
            if not found and self.program.status is not None:
                found = condition()
                if not found:
                    raise SetError(f"zolt-hub ended with status {self.program.status} before {what}")
            return found

        return wait_until(seen, seconds, what)

    def wait_for_end(self, seconds=60):
        wait_until(lambda: self.program.status is not None, seconds, "the end of zolt-hub")
        return self.program.status

    def close(self):
        # In reverse order, and all of them even if a signal interrupts one.
        with contextlib.ExitStack() as steps:
            if self._private:
                steps.callback(self._private.close)
                self._private = None
            own_monitor = None if self._shared_monitor else self.monitor
            for child in (self.bus, own_monitor, self.program):
                if child:
                    steps.callback(child.stop)
            for connection in (self.camera, self.remote):
                if connection:
                    steps.callback(connection.close)
