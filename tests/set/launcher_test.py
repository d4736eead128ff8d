# SPDX-License-Identifier: Apache-2.0
"""The launcher: its options, the folder of a set, a set in a window, and how everything ends."""

import json
import os
import re
import shutil
import signal
import subprocess
import types
import unittest
import unittest.mock

from set_case import (BUILD, DEADLINE, LOCALES, PRINTABLE, SOURCE, SetCase, contents, descendants, program_of, running,
                      with_variables)

from description import LARGEST_SIDE, SMALLEST_SIDE, Description
from folder import SetFolder
from processes import Child, SetError, WindowManager, XServer, wait_until
from remote import Camera, Remote
from speech_test import catalogue
from virtual_set import VirtualSet
from walks import SOUND_MOVE

CONTROL = os.path.join(BUILD, "platform", "host", "virtual-set-control")


class RunCase(SetCase):
    """The real ./run in a tree of its own, in which installing and building is only recorded."""

    TREE = "tree"

    def setUp(self):
        super().setUp()
        self.tree = os.path.join(self.private, self.TREE)
        self.notes = os.path.join(self.tree, "notes")
        self.set_folder = os.path.join(self.tree, "build", "set")
        os.makedirs(os.path.join(self.tree, "tools"))
        os.makedirs(os.path.join(self.tree, "build"))
        for name in ("run", "launcher", "platform", "daemon", "CMakePresets.json"):
            os.symlink(os.path.join(SOURCE, name), os.path.join(self.tree, name))
        os.symlink(BUILD, os.path.join(self.tree, "build", "virtual-set"))
        SetFolder.make_locale(LOCALES, "en_US.utf8")
        self.locales = os.path.join(self.tree, "build", "locales")
        os.symlink(LOCALES, self.locales)
        for name in ("install-packages", "build"):
            path = os.path.join(self.tree, "tools", name)
            self.rewrite(path, '#!/bin/sh\necho "${0##*/} $*" >>"${0%/tools/*}/notes"\n')
            os.chmod(path, 0o755)

    def run_command(self, *arguments):
        return [os.path.join(self.tree, "run"), *arguments]

    def run_with(self, *arguments, **environment):
        return subprocess.run(self.run_command(*arguments), capture_output=True, text=True,
                              timeout=DEADLINE, env=with_variables(environment), check=False)

    def assert_refused(self, *arguments, text="", **environment):
        self.assert_one_error_line(2, text, self.run_with(*arguments, **environment))
        self.assertEqual("", contents(self.notes), "something was installed or built")


class Options(RunCase):
    def test_a_wrong_option_is_one_clear_line_and_status_two(self):
        for arguments in (["--fast"], ["--size"], ["--size", "1920"], ["--size", "0x0"],
                          ["--size", "big"], ["--size", "16385x1"], ["--size", "99999x99999"],
                          ["--language", "english"], ["--language"],
                          ["--scenario", "/nowhere/scenario.ini"], ["--set", "/nowhere/set.ini"],
                          ["--set", "/"], ["--out"], ["--out", ""], ["--build", "cathedral"],
                          ["--build", ".*"], ["--build", "base"], ["extra"], ["--control"],
                          ["--accept"], ["--gallery", "--headless"]):
            with self.subTest(arguments):
                self.assert_refused(*arguments)

    def test_only_a_preset_of_the_virtual_set_can_be_run(self):
        with open(os.path.join(SOURCE, "CMakePresets.json"), encoding="utf-8") as file:
            presets = {one["name"]: one for one in json.load(file)["configurePresets"]}

        def platform(name):
            preset = presets[name]
            given = preset.get("cacheVariables", {}).get("ZOLT_PLATFORM")
            return given or ("inherits" in preset and platform(preset["inherits"]))

        others = [name for name in presets if platform(name) != "host"]
        self.assertIn("television", others)
        for name in others:
            with self.subTest(name):
                self.assert_refused("--build", name)

    def test_an_option_without_an_effect_is_refused(self):
        screen = XServer(800, 600, os.path.join(self.private, "servers.log"))
        self.addCleanup(screen.stop)
        scenario = self.write("scenario.ini", "")
        for arguments in (["--hold", "--out", "there"], ["--hold", "--walk", "existing"],
                          ["--out", "there"], ["--scenario", scenario, "--out", "there"],
                          ["--walk", "list", "--log"], ["--out", "there", "--walk", "list"],
                          ["--log", "--control", "ping"], ["--size", "800x600", "--control", "ping"]):
            with self.subTest(arguments):
                self.assert_refused(*arguments, DISPLAY=screen.display)

    def test_what_is_missing_is_installed_and_built_before_the_folder_of_the_set_is_made(self):
        ended = self.run_with("--headless", "--language", "xx_YY")
        self.assertEqual(2, ended.returncode, ended.stderr)
        self.assertIn("xx_YY", ended.stderr)
        self.assertEqual("install-packages build run\n"
                         "build virtual-set zolt-hub zolt-daemon virtual-set-control theme catalogues\n",
                         contents(self.notes))

    def test_help_names_every_option(self):
        ended = self.run_with("--help")
        self.assertEqual(0, ended.returncode)
        for option in ("--headless", "--walk", "--out", "--hold", "--size", "--language", "--scenario",
                       "--set", "--log", "--control", "--build", "--help"):
            self.assertRegex(ended.stdout, rf"(?m)^  {option} ")

    def test_a_description_or_a_scenario_that_cannot_be_read_is_refused(self):
        for option, text in (("--set", "junk"), ("--set", "Width=1280"), ("--set", "[Screen\nWidth=1"),
                             ("--scenario", "junk"), ("--scenario", "[daemon]\ndelay=soon")):
            with self.subTest(option + text):
                self.assert_one_error_line(
                    2, "", self.launch("--headless", option, self.write("broken.ini", text + "\n")))

    def test_a_folder_that_cannot_be_written_is_refused(self):
        for out in (self.write("file", ""), "/proc/zolt"):
            self.assert_one_error_line(2, out, self.launch("--headless", "--out", out))

    def test_a_folder_that_is_not_of_a_set_is_not_changed(self):
        theirs = os.path.join(self.private, "set")
        os.makedirs(theirs)
        self.write("set/precious", "mine")
        self.assert_one_error_line(2, theirs, self.launch("--headless", "--out", self.private))
        self.assertEqual(["precious"], os.listdir(theirs))

    def test_a_log_or_a_document_that_is_not_from_a_walk_is_not_overwritten(self):
        for name in ("zolt.log", "registration.xml"):
            out = os.path.join(self.private, "of-" + name)
            os.makedirs(out)
            path = os.path.join(out, name)
            self.rewrite(path, "somebody's own")
            for _ in range(2):
                self.assert_one_error_line(2, path, self.launch("--headless", "--out", out))
                self.assertEqual("somebody's own", contents(path))

    def test_a_scenario_in_the_folder_that_a_walk_clears_is_refused(self):
        out = os.path.join(self.private, "out")
        SetFolder(os.path.join(out, "set"), BUILD).make()
        scenario = self.write("out/set/scenario.ini", "")
        self.assert_one_error_line(
            2, scenario, self.launch("--headless", "--out", out, "--scenario", scenario))
        self.assertTrue(os.path.exists(scenario))

    def test_programs_that_are_missing_are_named(self):
        tools = os.path.join(self.private, "bin")
        os.makedirs(tools)
        for name in ("setpriv", "dbus-daemon", "matchbox-window-manager", "xprop", "xdpyinfo",
                     "Xvfb"):
            os.symlink(shutil.which(name), os.path.join(tools, name))
        self.assert_one_error_line(1, "these programs are missing: localedef",
                                     self.launch("--headless", PATH=tools))

    def test_an_unknown_walk_is_refused_and_the_list_names_the_known_ones(self):
        self.assert_refused("--walk", "backwards", text="there is no walk backwards")
        listed = self.run_with("--walk", "list")
        self.assertEqual((0, ""), (listed.returncode, listed.stderr))
        self.assertRegex(listed.stdout, r"(?m)^existing +\S")
        self.assertEqual("", contents(self.notes))


class OddNames(RunCase):
    TREE = PRINTABLE

    def test_a_tree_and_an_out_with_every_printable_character_are_walked_and_controlled(self):
        out = os.path.join(self.private, "out " + PRINTABLE)
        process, output = self.begin(self.run_command("--walk", "unanswered", "--out", out), DISPLAY=None)
        wait_until(lambda: process.poll() is not None or "01-menu.png" in contents(output), DEADLINE,
                   "the first step")
        self.assertIsNone(process.poll(), contents(output))
        told = self.run_with("--out", out, "--control", "ping")
        self.assertEqual((0, ""), (told.returncode, told.stderr))
        self.assertEqual(0, process.wait(DEADLINE), contents(output))
        self.assertTrue(os.path.exists(os.path.join(out, "03-failed.png")))


class Laying(SetCase):
    """The folder of a set: its description, its locales, its environment."""

    def test_the_size_and_the_language_of_a_description_are_those_that_the_set_reads(self):
        for text, size, language in (
                ("", (1920, 1080), "en_US.utf8"),
                ("[Screen]\r\n  Height=720\n[Set]\n[Screen]\nWidth=1280", (1280, 720), "en_US.utf8"),
                ("[Screen]\nWidth=wide\nHeight=0\n[Unknown]\nkey=1\n", (1920, 1080), "en_US.utf8"),
                ("[Language]\nLanguage=ko_KR.utf8\n", (1920, 1080), "ko_KR.utf8")):
            with self.subTest(text):
                read = Description(BUILD, self.write("given.ini", text))
                self.assertEqual((size, language), (read.size, read.language))

    def test_the_limits_of_a_size_are_those_of_the_set(self):
        for value, good in ((SMALLEST_SIDE, True), (LARGEST_SIDE, True), (SMALLEST_SIDE - 1, False),
                            (LARGEST_SIDE + 1, False)):
            for key in ("Width", "Height"):
                read = Description(BUILD, self.write("given.ini", f"[Screen]\n{key}={value}\n"))
                self.assertEqual(good, value in read.size, f"{key}={value}")

    def test_comments_and_all_other_values_survive_a_change_by_the_options(self):
        folder = self.folder()
        self.rewrite(folder.file("set.ini"),
                     "# mine\n[Screen]\n# small\n  Width = 800\n[Set]\nModel=A\\sB\n")
        folder.make(size=(1280, 720), language="ko_KR")
        self.assertEqual(["# mine", "[Screen]", "# small", "Width=1280", "Height=720", "[Set]",
                          "Model=A\\sB", "[Language]", "Language=ko_KR.utf8"],
                         [line for line in contents(folder.file("set.ini")).splitlines() if line])

    def test_a_description_that_is_a_link_stays_one(self):
        folder = self.folder()
        theirs = self.write("theirs.ini", "[Set]\nModel=A\n")
        os.symlink(theirs, folder.file("set.ini"))
        folder.make(size=(1280, 720))
        self.assertIn("Width=1280", contents(theirs))
        self.assertTrue(os.path.islink(folder.file("set.ini")))

    def test_another_description_replaces_a_link_and_not_its_target(self):
        folder = self.folder()
        theirs = self.write("theirs.ini", "[Set]\nModel=A\n")
        os.symlink(theirs, folder.file("set.ini"))
        folder.make(description=self.write("given.ini", "[Set]\nModel=B\n"))
        self.assertEqual("[Set]\nModel=A\n", contents(theirs))
        self.assertEqual("[Set]\nModel=B\n", contents(folder.file("set.ini")))

    def test_a_bad_size_counts_as_absent_to_the_set_and_to_its_screen(self):
        walk = self.start(description=self.write("given.ini", "[Screen]\nWidth=wide\n  Height=720\n"))
        walk.start()
        self.assertEqual("1920", walk.set.control("get", "Screen", "Width"))
        self.assertEqual("720", walk.set.control("get", "Screen", "Height"))
        self.assertEqual(1920 * 720 * 3, len(walk.set.camera.look()))

    def test_the_description_of_an_earlier_walk_may_be_used_again(self):
        folder = self.folder(size=(1280, 720))
        folder.make(fresh=True, description=folder.file("set.ini"))
        self.assertEqual((1280, 720), folder.size)

    def test_a_locale_whose_build_was_interrupted_is_built_again(self):
        locales = os.path.join(self.private, "locales")
        os.makedirs(os.path.join(locales, "en_US.utf8.new", "half"))
        SetFolder.make_locale(locales, "en_US.utf8")
        self.assertTrue(os.path.exists(os.path.join(locales, "en_US.utf8", "LC_CTYPE")))
        self.assertFalse(os.path.exists(os.path.join(locales, "en_US.utf8", "half")))
        self.assertFalse(os.path.exists(os.path.join(locales, "en_US.utf8.new")))

    def test_a_locale_that_could_not_be_built_is_an_error(self):
        tools = os.path.join(self.private, "bin")
        os.makedirs(tools)
        self.write("bin/localedef", '#!/bin/sh\nfor last; do :; done\nmkdir "$last"\n'
                                    'echo "no space" >&2\nexit 4\n')
        os.chmod(os.path.join(tools, "localedef"), 0o755)
        self.set_variable("PATH", tools + os.pathsep + os.environ["PATH"])
        locales = os.path.join(self.private, "locales")
        os.makedirs(locales)
        with self.assertRaisesRegex(SetError, "en_US.utf8 could not be built: no space"):
            SetFolder.make_locale(locales, "en_US.utf8")
        self.assertFalse(os.path.exists(os.path.join(locales, "en_US.utf8")))

    def set_variable(self, name, value):
        """Sets a variable of the environment for this test."""
        before = os.environ.get(name)
        if before is None:
            self.addCleanup(os.environ.pop, name)
        else:
            self.addCleanup(os.environ.__setitem__, name, before)
        os.environ[name] = value

    def test_a_set_gets_only_the_documented_environment_variables(self):
        offered = {"VIRTUAL_SET_STALL_SECONDS": "7", "VIRTUAL_SET_SOUNDS": "/sounds",
                   "ELM_MODULES": "access_output>access/api", "CANBERRA_DRIVER": "null"}
        others = {"VIRTUAL_SET_FILE": "other.ini", "ELM_SCALE": "3"}
        for name, value in {**offered, **others, "VIRTUAL_SET_LOG": "journal",
                            "VIRTUAL_SET_DIR": "/nowhere"}.items():
            self.set_variable(name, value)
        folder = self.folder()
        seen = VirtualSet(folder, self.private).environment()
        self.assertEqual(offered, {name: seen.get(name) for name in offered})
        self.assertFalse(set(others) & set(seen))
        self.assertEqual(folder.path, seen["VIRTUAL_SET_DIR"])
        self.assertEqual(folder.file("zolt.log"), seen["VIRTUAL_SET_LOG"])
        page = contents(os.path.join(SOURCE, "platform", "host", "README.md"))
        handed_on = re.search(r"of these variables only\s(.*?)reach the program", page, re.S).group(1)
        self.assertEqual(set(offered), set(re.findall(r"`(\w+)`", handed_on)))


class Window(RunCase):
    """A set in a window on a user's display, which here is an X server of the test."""

    def setUp(self):
        super().setUp()
        servers = os.path.join(self.private, "servers.log")
        self.screen = XServer(1400, 900, servers)
        self.addCleanup(self.screen.stop)
        self.addCleanup(WindowManager(self.screen.display, servers).stop)
        self.camera = Camera(self.screen.display, 1400, 900)
        self.log = os.path.join(self.set_folder, "zolt.log")

    def open(self, *arguments):
        """A set in a window that shows its menu."""
        process, output = self.begin(self.run_command("--size", "1280x720", *arguments),
                                     DISPLAY=self.screen.display)
        wait_until(lambda: process.poll() is not None or "calling Resume" in contents(self.log), DEADLINE,
                   "the set")
        self.assertIsNone(process.poll(), contents(output))
        return process, output

    def test_the_keys_of_the_display_are_the_remote_control(self):
        process, output = self.open()
        self.assertIn("MainMenuUnregisteredScreen::MainMenuUnregisteredScreen(", contents(self.log))
        menu = wait_until(self.picture_of_a_menu, DEADLINE, "the menu in the window")
        Remote(self.screen.display).press("Down")
        wait_until(lambda: re.search(SOUND_MOVE, contents(self.log)), DEADLINE, "the sound of a move")
        wait_until(lambda: self.settled() != menu, DEADLINE, "the focus to move")
        Remote(self.screen.display).press("Escape")
        self.assertEqual(0, process.wait(DEADLINE), contents(output))
        self.assertIn("quitRequested", contents(self.log))
        self.assertIn("zolt-hub ended with status 0", contents(output))

    def settled(self):
        """A picture that does not change any more. The window follows the set's screen with a delay that
        cannot be asked for."""
        found = [b"", self.camera.look()]

        def stands():
            found.append(self.camera.look())
            return found[-1] == found[-2]

        wait_until(stands, DEADLINE, "a picture that stands", pause=0.1)
        return found[-1]

    def picture_of_a_menu(self):
        """What the display shows; None before there are texts, which are recognised by the many shades of
        their edges."""
        picture = self.settled()
        shades = {picture[place:place + 3] for place in range(0, len(picture), 3)}
        return picture if len(shades) > 30 else None

    def test_closing_the_window_ends_the_set(self):
        process, output = self.open()
        started = descendants(process.pid)
        subprocess.run(["xdotool", "search", "--name", "^Virtual set", "windowkill"], check=True,
                       env=with_variables({"DISPLAY": self.screen.display}))
        self.assertEqual(0, process.wait(DEADLINE), contents(output))
        self.assertIn("The set was switched off", contents(output))
        self.assertNotIn("starting it again", contents(output))
        wait_until(lambda: not set(started) & set(running()), 60, "the end of all that it started")

    def test_the_log_is_shown_while_the_set_runs_and_a_control_verb_reaches_it(self):
        process, output = self.open("--log")
        wait_until(lambda: "calling Resume" in contents(output), DEADLINE, "the log to be shown")
        told = self.run_with("--control", "ping")
        self.assertEqual((0, ""), (told.returncode, told.stderr))
        hub = next(one for one in descendants(process.pid) if program_of(one) == "zolt-hub")
        self.assertEqual(f"process {hub.number}", told.stdout.strip())
        self.assertEqual(0, self.run_with("--control", "pause").returncode)
        wait_until(lambda: "calling Pause" in contents(output), DEADLINE, "the new line to be shown")
        self.assertIsNone(process.poll())

    def test_a_running_set_changes_to_a_language_whose_locale_was_not_built_before(self):
        process, output = self.open_without("it_IT.utf8")
        self.assertEqual(0, self.run_with("--control", "resume").returncode)
        told = self.run_with("--control", "language", "it_IT.utf8")
        self.assertEqual((0, ""), (told.returncode, told.stderr))
        wait_until(lambda: catalogue("it")["SID_CANCEL"] in self.run_with("--control", "look").stdout,
                   DEADLINE, "the texts in the new language")
        self.assertIsNone(process.poll())
        self.assert_one_error_line(2, "xx_XX.utf8 is no language that this machine knows",
                                     self.run_with("--control", "language", "xx_XX.utf8"))

    def open_without(self, locale):
        """A set in a window, with the shared locales except LOCALE."""
        os.remove(self.locales)
        os.makedirs(self.locales)
        for name in os.listdir(LOCALES):
            if not name.startswith(locale):
                os.symlink(os.path.join(LOCALES, name), os.path.join(self.locales, name))
        return self.open()

    def test_without_a_display_a_walk_runs_and_a_control_verb_reaches_it(self):
        out = os.path.join(self.private, "out")
        process, output = self.begin(self.run_command("--out", out), DISPLAY=None)
        wait_until(lambda: process.poll() is not None or "01-menu.png" in contents(output), DEADLINE,
                   "the first step")
        self.assertIsNone(process.poll(), contents(output))
        self.assertEqual("There is no display, so the set runs headless", contents(output).splitlines()[0])
        told = self.run_with("--out", out, "--control", "ping")
        self.assertEqual((0, ""), (told.returncode, told.stderr))
        self.assertEqual(1, self.run_with("--control", "ping").returncode)


class Ending(SetCase):
    def hold(self):
        """A set that ./run keeps running until it is stopped, and all processes that it has started."""
        state = os.path.join(self.private, "state")
        folder = os.path.join(state, "set")
        process, output = self.begin(self.launcher("--hold"))
        wait_until(lambda: process.poll() is not None or
                   "calling Resume" in contents(os.path.join(folder, "zolt.log")) and
                   " start " in contents(os.path.join(folder, "daemon.log")), DEADLINE, "the set")
        self.assertIsNone(process.poll(), contents(output))
        held = types.SimpleNamespace(process=process, state=state, output=output, folder=folder,
                                     started=descendants(process.pid))
        for name in ("Xvfb", "matchbox-window-manager", "zolt-hub", "zolt-daemon"):
            self.one(held, name)
        bus = contents(f"/proc/{self.one(held, 'dbus-daemon')}/cmdline")
        held.private = re.search(r"--config-file=(/tmp/zolt-\w+)/bus.conf", bus).group(1)
        self.assertTrue(os.path.isdir(held.private))
        return held

    def one(self, held, name):
        """The process ID of the only process of the set that runs the program NAME."""
        found = [one.number for one in held.started if program_of(one) == name]
        self.assertEqual(1, len(found), name)
        return found[0]

    def assert_all_gone(self, held):
        def left():
            return [(one.number, program_of(one)) for one in set(held.started) & set(running())]

        wait_until(lambda: not left(), 60, f"the end of {left()}")
        wait_until(lambda: not os.path.exists(held.private), 60, f"{held.private} to go")

    def test_everything_ends_with_each_way_of_asking_the_launcher_to_end(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(number):
                held = self.hold()
                held.process.send_signal(number)
                self.assertEqual(128 + number, held.process.wait(DEADLINE))
                self.assert_all_gone(held)
                shutil.rmtree(held.state)

    def test_the_private_folder_waits_for_the_program(self):
        held = self.hold()
        keeper = {os.readlink(f"/proc/{one.number}/fd/0") for one in held.started if program_of(one) == "cat"}
        self.assertEqual(1, len(keeper))
        program = f"/proc/{self.one(held, 'zolt-hub')}/fd"
        self.assertIn(keeper.pop(), {os.readlink(f"{program}/{number}") for number in os.listdir(program)})

    def test_everything_ends_with_a_launcher_that_is_killed(self):
        held = self.hold()
        held.process.kill()
        held.process.wait(DEADLINE)
        self.assert_all_gone(held)

    def test_a_daemon_that_is_stopped_ends_with_the_set(self):
        held = self.hold()
        os.kill(self.one(held, "zolt-daemon"), signal.SIGSTOP)
        held.process.terminate()
        self.assertEqual(143, held.process.wait(DEADLINE))
        self.assert_all_gone(held)

    def test_a_server_that_cannot_be_started_is_reported(self):
        with self.assertRaisesRegex(SetError, "^ghost could not be started: there is no program /nowhere$"):
            Child("ghost", ["/nowhere"])

    def test_a_second_set_in_the_same_folder_is_refused_and_the_first_goes_on(self):
        held = self.hold()
        self.assert_one_error_line(1, "another set is on in " + held.folder, self.launch("--hold"))
        subprocess.run([CONTROL, "--set", held.folder, "ping"], check=True, stdout=subprocess.DEVNULL)

    def test_a_screen_that_is_closed_ends_the_set(self):
        held = self.hold()
        os.kill(self.one(held, "Xvfb"), signal.SIGTERM)
        self.assertEqual(0, held.process.wait(DEADLINE))
        self.assertIn("The set was switched off", contents(held.output))
        self.assertNotIn("starting it again", contents(held.output))
        self.assert_all_gone(held)

    def test_a_screen_that_is_closed_ends_the_set_even_if_the_program_ends_first(self):
        closed = VirtualSet(self.folder(), self.private, say=self.said.append)
        closed.monitor = types.SimpleNamespace(answers=lambda: False, server_runs=True)
        for status in (0, 1, -signal.SIGABRT):
            closed.program = types.SimpleNamespace(status=status)
            self.assertIsNone(closed.supervise())
        self.assertEqual([], self.said)

    def test_a_server_without_clients_keeps_running(self):
        log = os.path.join(self.private, "servers.log")
        outer = XServer(400, 300, log)
        self.addCleanup(outer.stop)
        with unittest.mock.patch.dict(os.environ, {"DISPLAY": outer.display}):
            inner = XServer(320, 180, log, nested=True)
        self.addCleanup(inner.stop)
        for server in (outer, inner):
            # A restarted server would have lost this.
            asked = ["xprop", "-display", server.display, "-root"]
            subprocess.run([*asked, "-f", "PROBE", "8s", "-set", "PROBE", "kept"], check=True)
            told = subprocess.run([*asked, "PROBE"], check=True, capture_output=True, text=True)
            self.assertEqual('PROBE(STRING) = "kept"', told.stdout.strip())

    def test_a_server_that_is_gone_does_not_answer_when_another_has_taken_its_name(self):
        log = os.path.join(self.private, "servers.log")
        first = XServer(320, 180, log)
        self.addCleanup(first.stop)
        self.assertTrue(first.answers())
        first.stop()
        self.assertFalse(first.answers())
        second = XServer(320, 180, log)
        self.addCleanup(second.stop)
        first.display = second.display
        self.assertTrue(second.answers())
        self.assertFalse(first.answers())

    def test_a_program_that_ends_with_status_zero_ends_the_set(self):
        held = self.hold()
        subprocess.run([CONTROL, "--set", held.folder, "quit"], check=True)
        self.assertEqual(0, held.process.wait(DEADLINE))
        self.assert_all_gone(held)

    def test_a_program_that_dies_is_started_again_three_times_in_a_minute(self):
        held = self.hold()
        log = os.path.join(held.folder, "zolt.log")
        for life in range(1, 5):
            wait_until(lambda: contents(log).count("calling Resume") >= life, DEADLINE, f"life {life}")
            held.started = descendants(held.process.pid)
            os.kill(self.one(held, "zolt-hub"), signal.SIGKILL)
        self.assertEqual(137, held.process.wait(DEADLINE))
        said = contents(held.output)
        self.assertEqual(3, said.count("zolt-hub ended with signal 9; starting it again"))
        self.assertIn("for the fourth time in a minute", said)
        self.assert_all_gone(held)


if __name__ == "__main__":
    unittest.main(verbosity=2)
