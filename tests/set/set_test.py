# SPDX-License-Identifier: Apache-2.0
"""Whole sets, driven as a person drives them: real keys, a real bus, the real daemon, pictures."""

import glob
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import types
import unittest
import xml.etree.ElementTree as ElementTree

SOURCE = os.environ["ZOLT_SOURCE"]
BUILD = os.environ["ZOLT_BUILD"]
LAUNCHER = os.path.join(SOURCE, "platform", "host", "launcher")
sys.path.insert(0, LAUNCHER)

from folder import SetFolder  # noqa: E402
from journal import Journal  # noqa: E402
from processes import Child, wait_until  # noqa: E402
from virtual_set import VirtualSet  # noqa: E402
from walks import SOUND_MOVE, Walk, received_document  # noqa: E402

DEADLINE = 240


def processes_of(marker):
    """Processes whose environment or command line names MARKER, without this one."""
    found = []
    for name in os.listdir("/proc"):
        if not name.isdigit() or int(name) == os.getpid():
            continue
        try:
            with open(f"/proc/{name}/environ", "rb") as file:
                text = file.read()
            with open(f"/proc/{name}/cmdline", "rb") as file:
                text += file.read()
            with open(f"/proc/{name}/stat", "rb") as file:
                state = file.read().rsplit(b")", 1)[1].split()[0]
        except OSError:
            continue
        if marker.encode() in text and state != b"Z":
            found.append(int(name))
    return found


def contents(path):
    """The text of a file; of one that is not there yet, nothing."""
    if not os.path.exists(path):
        return ""
    with open(path, encoding="utf-8", errors="replace") as file:
        return file.read()


class SetCase(unittest.TestCase):
    def setUp(self):
        self.private = tempfile.mkdtemp(prefix="zolt-test-")
        self.addCleanup(shutil.rmtree, self.private, ignore_errors=True)
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
        """A running set with a person in front of it; it ends with the test."""
        path = scenario and self.write("scenario.ini", self.key_file(scenario))
        running_set = VirtualSet(self.folder(**choices), os.path.join(BUILD, "test-state"),
                                 scenario=path, say=self.said.append)
        running_set.__enter__()
        self.addCleanup(running_set.close)
        return Walk(running_set, self.private, self.said.append)

    def to_search(self, walk):
        """From the first menu to the search in the local network."""
        self.assertEqual("MainMenuUnregisteredScreen", walk.start())
        walk.press("Down", SOUND_MOVE)
        walk.press("Return", r"Called .*displayShopsFromLANRequested")

    def configure(self, walk, key, value):
        """Changes a KEY of the set's configuration; None takes it away."""
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

    def launch(self, *arguments, **environment):
        return subprocess.run(
            ["/usr/bin/python3", "-B", os.path.join(LAUNCHER, "launch.py"), "--build", BUILD,
             "--state", os.path.join(self.private, "state"), *arguments],
            env={**os.environ, **environment}, capture_output=True, text=True, timeout=DEADLINE,
            check=False)

    def assert_told_in_one_line(self, status, text, ended):
        self.assertEqual((status, ""), (ended.returncode, ended.stdout), ended.stderr)
        self.assertEqual(1, len(ended.stderr.splitlines()), ended.stderr)
        self.assertIn(text, ended.stderr)


class Walking(SetCase):
    CALLS = ["requestShopInfoList", "getShopInfoList", "getRegisteredShopInfo",
             "requestRegistrationShopInfo", "applicationCancelled"]

    def calls(self, path):
        return re.findall(r" call (\w+)", contents(path))

    def walk(self, *arguments):
        out = os.path.join(self.private, "out")
        ended = self.launch("--headless", "--out", out, *arguments)
        self.assertEqual(0, ended.returncode, ended.stdout + ended.stderr)
        return out, ended.stdout

    def test_an_existing_registration_is_walked_from_the_first_menu_to_the_completion_popup(self):
        out, said = self.walk()
        pictures = sorted(glob.glob(os.path.join(out, "*.png")))
        self.assertEqual(pictures[0], os.path.join(out, "01-menu.png"))
        self.assertTrue(pictures[-1].endswith("-completed.png"))
        numbers = [int(os.path.basename(path)[:2]) for path in pictures]
        self.assertEqual(list(range(1, len(pictures) + 1)), numbers)
        self.assertIn(f"existing: {len(pictures)} steps", said)
        log = contents(os.path.join(out, "zolt.log"))
        self.assert_in_order(log, [
            "ZOLT GUI application: Initializing", "ZOLT GUI application: Starting",
            "increasing Vconf", "Compilation timestamp:", "Version:", "AppName:",
            "Language set successfully to [en_US.utf8]", "calling Resume",
            "displayShopsFromLANRequested", "Controller::callbackManager called (Event: 0; Reason: 2)",
            "ShopListScreen::ShopListScreen", "No Shop is selected now so deactivate OK button",
            "selectionPopupItemSelectionCb", "Selected Region: ", "nextSelectionScreenRequested",
            "registrationConfirmationScreenRequested", "shopRegistrationRequested",
            "Controller::callbackManager called (Event: 0; Reason: 3)", "showCompletionPopup",
            "quitRequested", "calling Terminate", "Decreasing Vconf",
            "ZOLT GUI application: Closing", "Vconf is already changed"])
        self.assertNotIn("Exception", log)

    def assert_in_order(self, log, texts):
        place = 0
        for text in texts:
            found = log.find(text, place)
            self.assertGreaterEqual(found, 0, f"{text!r} does not follow")
            place = found + len(text)

    def test_the_daemon_sees_each_call_in_order_with_the_document_that_the_screen_showed(self):
        out, _ = self.walk()
        journal = os.path.join(out, "set", "daemon.log")
        seen = self.calls(journal)
        self.assertEqual("requestShopInfoList", seen[0])
        self.assertEqual("getShopInfoList", seen[1])
        levels = seen.count("getRegisteredShopInfo")
        self.assertGreaterEqual(levels, 2)
        self.assertEqual(["requestShopInfoList", "getShopInfoList"] +
                         ["getRegisteredShopInfo"] * levels +
                         ["requestRegistrationShopInfo", "applicationCancelled"], seen)
        document = ElementTree.parse(os.path.join(out, "registration.xml")).getroot()
        self.assertEqual("rsp", document.tag)
        codes = [entry.get("code") for entry in document.iter("sub_list")]
        self.assertGreaterEqual(len(codes), 2)
        for parent, child in zip(codes, codes[1:]):
            self.assertEqual(parent, child[:-2])
        self.assertEqual("N", document.findall("list")[-1].get("is_sub"))
        kept = contents(os.path.join(out, "set", "data", "registered.xml")).strip()
        self.assertEqual(kept, contents(os.path.join(out, "registration.xml")).strip())

    def test_a_smaller_set_in_arabic_is_walked_in_mirror_image(self):
        out, _ = self.walk("--size", "1280x720", "--language", "ar_EG")
        size = subprocess.run(["identify", "-format", "%wx%h", os.path.join(out, "01-menu.png")],
                              capture_output=True, text=True, check=True).stdout
        self.assertEqual("1280x720", size)
        self.assertIn("Language set successfully to [ar_EG.utf8]",
                      contents(os.path.join(out, "zolt.log")))

    def test_a_display_that_does_not_answer_is_told_and_the_set_runs_headless(self):
        out = os.path.join(self.private, "out")
        scenario = self.write("scenario.ini", self.key_file({"daemon": {"shops": "one-shop"}}))
        photo = self.write("01-photo.png", "somebody's own")
        os.makedirs(out)
        os.rename(photo, os.path.join(out, "01-photo.png"))
        ended = self.launch("--out", out, "--scenario", scenario, DISPLAY="nowhere:7")
        self.assertEqual(0, ended.returncode, ended.stdout + ended.stderr)
        self.assertEqual("The display nowhere:7 does not answer, so the set runs headless",
                         ended.stdout.splitlines()[0])
        self.assertEqual("somebody's own", contents(os.path.join(out, "01-photo.png")))

    def test_what_an_earlier_walk_left_goes_and_what_else_lies_there_stays(self):
        out = os.path.join(self.private, "out")
        SetFolder(os.path.join(out, "set"), BUILD).make()
        for name in ("99-left.png", "registration.xml", "zolt.log", "notes.txt"):
            self.rewrite(os.path.join(out, name), "old")
        scenario = self.write("scenario.ini", self.key_file({"daemon": {"found-in-lan": "false"}}))
        self.launch("--headless", "--out", out, "--scenario", scenario, "--patience", "15")
        self.assertEqual("old", contents(os.path.join(out, "notes.txt")))
        for name in ("99-left.png", "registration.xml"):
            self.assertFalse(os.path.exists(os.path.join(out, name)), name)

    def test_paths_with_blanks_quotes_and_backslashes_are_walked(self):
        odd = os.path.join(self.private, """it's an "odd" \\ place""")
        os.makedirs(odd)
        build = os.path.join(odd, "build")
        os.symlink(BUILD, build)
        scenario = os.path.join(odd, "scenario.ini")
        self.rewrite(scenario, self.key_file({"daemon": {"shops": "one-shop"}}))
        self.walk("--build", build, "--scenario", scenario, "--out", os.path.join(odd, "out"))

    def test_the_document_is_told_as_the_daemon_received_it(self):
        journal = self.write("daemon.log", "TIME call requestRegistrationShopInfo <a b='\\\\n'>\\n\\r</a>\n")
        running_set = types.SimpleNamespace(daemon_log=Journal(journal))
        self.assertEqual("<a b='\\n'>\n\r</a>", received_document(running_set))

    def test_every_list_that_ships_can_be_walked(self):
        for name in ("scripts", "places", "one-shop"):
            with self.subTest(name):
                scenario = self.write("scenario.ini", self.key_file({"daemon": {"shops": name}}))
                self.walk("--scenario", scenario)

    def test_a_walk_that_cannot_be_gone_fails_and_says_where(self):
        scenario = self.write("scenario.ini", self.key_file({"daemon": {"found-in-lan": "false"}}))
        ended = self.launch("--headless", "--out", os.path.join(self.private, "out"),
                            "--scenario", scenario, "--walk", "existing", "--patience", "15")
        self.assertEqual(1, ended.returncode)
        self.assertIn("existing: FAILED after", ended.stdout)


class Options(SetCase):
    def run_with(self, *arguments):
        return subprocess.run([os.path.join(SOURCE, "run"), *arguments], capture_output=True,
                              text=True, timeout=DEADLINE, check=False)

    def assert_refused(self, *arguments):
        ended = self.run_with(*arguments)
        self.assertEqual(2, ended.returncode, arguments)
        self.assertEqual("", ended.stdout)
        self.assertEqual(1, len(ended.stderr.strip().splitlines()), ended.stderr)

    def test_a_wrong_option_is_one_clear_line_and_status_two(self):
        for arguments in (["--fast"], ["--size"], ["--size", "1920"], ["--size", "0x0"],
                          ["--size", "big"], ["--language", "english"], ["--language"],
                          ["--scenario", "/nowhere/scenario.ini"], ["--set", "/nowhere/set.ini"],
                          ["--set", "/"], ["--out"], ["--out", ""], ["--build", "cathedral"],
                          ["--build", ".*"], ["--build", "base"], ["--build", "set"], ["extra"]):
            with self.subTest(arguments):
                self.assert_refused(*arguments)

    def test_help_names_every_option(self):
        ended = self.run_with("--help")
        self.assertEqual(0, ended.returncode)
        for option in ("--headless", "--out", "--size", "--language", "--scenario", "--set", "--help"):
            self.assertIn(option, ended.stdout)

    def test_a_language_that_no_locale_speaks_is_refused(self):
        ended = self.launch("--headless", "--language", "xx_YY")
        self.assertEqual(2, ended.returncode)
        self.assertIn("xx_YY", ended.stderr)

    def test_a_description_or_a_scenario_that_cannot_be_read_is_refused(self):
        for option, text in (("--set", "junk"), ("--set", "Width=1280"), ("--scenario", "junk"),
                             ("--scenario", "[daemon]\ndelay=soon")):
            with self.subTest(option + text):
                self.assert_told_in_one_line(
                    2, "", self.launch("--headless", option, self.write("broken.ini", text + "\n")))

    def test_a_folder_that_can_keep_nothing_is_refused(self):
        for out in (self.write("file", ""), "/proc/zolt"):
            self.assert_told_in_one_line(2, out, self.launch("--headless", "--out", out))

    def test_a_folder_of_somebody_else_is_left_alone(self):
        theirs = os.path.join(self.private, "set")
        os.makedirs(theirs)
        self.write("set/precious", "mine")
        self.assert_told_in_one_line(2, theirs, self.launch("--headless", "--out", self.private))
        self.assertEqual(["precious"], os.listdir(theirs))

    def test_a_scenario_in_the_folder_that_a_walk_clears_is_refused(self):
        out = os.path.join(self.private, "out")
        SetFolder(os.path.join(out, "set"), BUILD).make()
        scenario = self.write("out/set/scenario.ini", "")
        self.assert_told_in_one_line(
            2, scenario, self.launch("--headless", "--out", out, "--scenario", scenario))
        self.assertTrue(os.path.exists(scenario))

    def test_the_description_of_an_earlier_walk_may_be_used_again(self):
        folder = self.folder(size=(1280, 720))
        folder.make(fresh=True, description=folder.file("set.ini"))
        self.assertEqual((1280, 720), folder.size)

    def test_programs_that_are_missing_are_named(self):
        tools = os.path.join(self.private, "bin")
        os.makedirs(tools)
        for name in ("dbus-daemon", "matchbox-window-manager", "xprop", "xdpyinfo", "localedef",
                     "Xvfb", "import"):
            os.symlink(shutil.which(name), os.path.join(tools, name))
        self.assert_told_in_one_line(1, "these programs are missing: xdotool, convert",
                                     self.launch("--headless", PATH=tools))

    def test_an_unknown_walk_is_refused_and_the_list_names_the_known_ones(self):
        self.assertEqual(2, self.launch("--headless", "--walk", "backwards").returncode)
        self.assertIn("existing", self.launch("--headless", "--walk", "list").stdout)


class Ending(SetCase):
    def hold(self, scenario=None):
        """A set that ./run keeps on until it is told to stop."""
        state = os.path.join(self.private, "state")
        arguments = ["/usr/bin/python3", "-B", os.path.join(LAUNCHER, "launch.py"), "--build", BUILD,
                     "--state", state, "--hold"]
        if scenario:
            arguments += ["--set", scenario]
        output = os.path.join(self.private, "output")
        with open(output, "wb") as file:
            process = subprocess.Popen(arguments, stdout=file, stderr=file, stdin=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        log = os.path.join(state, "set", "zolt.log")
        wait_until(lambda: "calling Resume" in contents(log), DEADLINE, "the set")
        return process, state, output

    def assert_all_gone(self, state):
        wait_until(lambda: not processes_of(state), 60, f"the end of {processes_of(state)}")

    def test_everything_ends_with_ctrl_c(self):
        process, state, _ = self.hold()
        self.assertGreaterEqual(len(processes_of(state)), 3)
        process.send_signal(signal.SIGINT)
        self.assertEqual(130, process.wait(DEADLINE))
        self.assert_all_gone(state)
        self.assertEqual([], [name for name in processes_of("zolt-") if name in processes_of(state)])

    def test_everything_ends_with_each_way_of_asking_the_launcher_to_end(self):
        for number in (signal.SIGTERM, signal.SIGHUP):
            with self.subTest(number):
                process, state, _ = self.hold()
                process.send_signal(number)
                self.assertEqual(128 + number, process.wait(DEADLINE))
                self.assert_all_gone(state)
                shutil.rmtree(state)

    def test_a_daemon_that_is_stopped_ends_with_the_set(self):
        process, state, _ = self.hold()
        wait_until(lambda: " start " in contents(os.path.join(state, "set", "daemon.log")), DEADLINE,
                   "the daemon")
        daemon = [number for number in processes_of(state)
                  if os.path.basename(os.readlink(f"/proc/{number}/exe")) == "zolt-daemon"]
        os.kill(daemon[0], signal.SIGSTOP)
        process.terminate()
        self.assertEqual(143, process.wait(DEADLINE))
        self.assert_all_gone(state)

    def test_a_second_set_in_the_same_folder_is_refused_and_the_first_goes_on(self):
        _, state, _ = self.hold()
        self.assert_told_in_one_line(1, "another set is on in " + os.path.join(state, "set"),
                                     self.launch("--hold"))
        control = os.path.join(BUILD, "platform", "host", "virtual-set-control")
        subprocess.run([control, "--set", os.path.join(state, "set"), "ping"], check=True,
                       stdout=subprocess.DEVNULL)

    def test_a_screen_that_is_closed_switches_the_set_off(self):
        process, state, output = self.hold()
        with open(f"/proc/{process.pid}/task/{process.pid}/children", encoding="utf-8") as file:
            children = [int(number) for number in file.read().split()]
        screens = [number for number in children
                   if os.path.basename(os.readlink(f"/proc/{number}/exe")) == "Xvfb"]
        os.kill(screens[0], signal.SIGTERM)
        self.assertEqual(0, process.wait(DEADLINE))
        self.assertNotIn("starting it again", contents(output))
        self.assert_all_gone(state)

    def test_everything_ends_with_a_launcher_that_is_killed(self):
        process, state, _ = self.hold()
        process.kill()
        process.wait(DEADLINE)
        self.assert_all_gone(state)

    def test_an_orderly_end_of_the_program_ends_the_set(self):
        process, state, _ = self.hold()
        control = os.path.join(BUILD, "platform", "host", "virtual-set-control")
        subprocess.run([control, "--set", os.path.join(state, "set"), "quit"], check=True)
        self.assertEqual(0, process.wait(DEADLINE))
        self.assert_all_gone(state)

    def test_a_program_that_dies_is_started_again_three_times_in_a_minute(self):
        process, state, output = self.hold()
        log = os.path.join(state, "set", "zolt.log")
        for life in range(1, 5):
            wait_until(lambda: contents(log).count("calling Resume") >= life, DEADLINE, f"life {life}")
            hub = [number for number in processes_of(state)
                   if os.path.basename(os.readlink(f"/proc/{number}/exe")) == "zolt-hub"]
            os.kill(hub[0], signal.SIGKILL)
        self.assertEqual(137, process.wait(DEADLINE))
        said = contents(output)
        self.assertEqual(3, said.count("zolt-hub ended with signal 9; starting it again"))
        self.assertIn("for the fourth time in a minute", said)


class Registration(SetCase):
    def test_the_next_start_of_a_registered_set_shows_the_other_menu(self):
        walk = self.start()
        from walks import existing
        existing(walk)
        self.assertTrue(os.path.exists(walk.set.folder.file("data", "registered")))
        mark = walk.set.log.mark()
        walk.set.start_program()
        self.assertEqual("MainMenuRegisteredScreen", walk.wait_for_screen(mark))

    def test_the_flag_file_stands_after_the_program_has_ended(self):
        walk = self.start()
        walk.start()
        walk.press("Escape", r"quitRequested")
        walk.end()
        self.assertEqual(0, os.path.getsize(walk.set.folder.file("data", "service-cond-flag")))


class Trouble(SetCase):
    """What goes wrong around a set ends as it should, with its line in the log."""

    def kill_daemon(self, walk):
        found = [number for number in processes_of(walk.set.folder.path)
                 if os.path.basename(os.readlink(f"/proc/{number}/exe")) == "zolt-daemon"]
        self.assertEqual(1, len(found))
        os.kill(found[0], signal.SIGKILL)

    def test_a_daemon_that_dies_during_a_request_and_returns_leaves_a_program_that_answers(self):
        walk = self.start(scenario={"requestShopInfoList": {"outcome": "none"}})
        self.to_search(walk)
        walk.set.wait_for_log(r"call requestShopInfoList", journal=walk.set.daemon_log)
        mark = walk.set.log.mark()
        self.kill_daemon(walk)
        walk.set.wait_for_log(r"Removing object /zolt/gui", mark)
        daemon = os.path.join(BUILD, "daemon", "zolt-daemon")
        scenario = self.write("again.ini", self.key_file({"daemon": {"events": "1500:5"}}))
        again = Child("zolt-daemon",
                      [daemon, "--set", walk.set.folder.path, "--scenario", scenario],
                      env=walk.set.environment(), log=walk.set.folder.file("servers.log"))
        self.addCleanup(again.stop)
        walk.wait_for(r"Object /zolt/gui added", mark)
        walk.press("Escape", r"Return on Key Press for Loading Popup")
        walk.wait_for(r"Called .*showNetworkFailurePopup", mark)
        walk.press("Return", r"quitRequested", r"calling Terminate")
        walk.end()
        self.assertIsNotNone(walk.set.daemon_log.find(r"call applicationCancelled"))

    def test_a_daemon_that_dies_in_the_middle_of_a_call_ends_the_program_which_can_start_again(self):
        walk = self.start(scenario={"requestShopInfoList": {"abort": "true"}})
        self.to_search(walk)
        walk.end(expected=1)
        self.assertIsNotNone(walk.set.log.find(r"Exception caught: Failed to request shop info list: "))
        mark = walk.set.log.mark()
        walk.set.start_program()
        self.assertEqual("MainMenuUnregisteredScreen", walk.wait_for_screen(mark))
        walk.set.wait_for_log(r"calling Resume", mark)
        walk.press("Escape", r"quitRequested")
        walk.end()

    def test_a_set_without_a_configuration_file_ends_with_status_one(self):
        walk = self.start()
        os.remove(walk.set.folder.file("config.xml"))
        walk.set.start_program()
        walk.end(expected=1)
        self.assertIsNotNone(walk.set.log.find(
            r"Exception caught: Failed to parse XML, file does not exist or is invalid: config.xml"))

    def test_a_broken_configuration_file_ends_the_program_with_status_one(self):
        walk = self.start()
        self.rewrite(walk.set.folder.file("config.xml"), "<config><item name='DefaultLang'>en")
        walk.set.start_program()
        walk.end(expected=1)
        self.assertIsNotNone(walk.set.log.find(r"file does not exist or is invalid: config.xml"))

    def test_an_absent_key_ends_the_program_with_status_one(self):
        walk = self.start()
        self.configure(walk, "LayoutPath", None)
        walk.set.start_program()
        walk.end(expected=1)
        self.assertIsNotNone(walk.set.log.find(r"Exception caught: map::at"))

    def test_a_set_without_its_theme_stands_with_an_empty_screen_and_answers(self):
        walk = self.start()
        self.configure(walk, "LayoutPath", "/nowhere")
        self.assertEqual("MainMenuUnregisteredScreen", walk.start())
        walk.press("Escape", r"quitRequested")
        walk.end()

    def test_a_set_without_a_bus_shows_its_menu_and_ends_with_status_one_at_the_first_call(self):
        walk = self.start()
        walk.set.bus.stop()
        walk.start()
        self.assertIsNotNone(walk.set.log.find(r"Failed to create object manager client: "))
        walk.press("Down", SOUND_MOVE)
        walk.press("Return", r"Exception caught: Failed to find GUI proxy object")
        walk.end(expected=1)

    def test_a_set_whose_daemon_cannot_be_started_ends_with_status_one_at_the_first_call(self):
        walk = self.start()
        for name in glob.glob(os.path.join(walk.set.private, "services", "*.service")):
            os.remove(name)
        walk.set.bus.process.send_signal(signal.SIGHUP)
        walk.start()
        walk.press("Down", SOUND_MOVE)
        walk.press("Return", r"Exception caught: Failed to find GUI proxy object")
        walk.end(expected=1)

    def shop_list(self, text):
        path = self.write("list.xml", text)
        walk = self.start(scenario={"getShopInfoList": {"reply-file": path}})
        self.to_search(walk)
        return walk

    def assert_unstable_connection(self, walk, line):
        walk.set.wait_for_log(r"Exception caught during event handling: " + line)
        walk.set.wait_for_log(r"Called .*showNetworkFailurePopup")
        walk.press("Return", r"quitRequested")
        walk.end()

    def test_an_empty_shop_list_shows_the_popup_of_an_unstable_connection(self):
        self.assert_unstable_connection(self.shop_list(""), "Shop list is empty")

    def test_a_broken_shop_list_shows_the_popup_of_an_unstable_connection(self):
        self.assert_unstable_connection(self.shop_list("<rsp><list"),
                                        r"Failed to parse XML: invalid input \[<rsp><list\]")

    def test_a_shop_list_without_a_level_shows_the_popup_of_an_unstable_connection(self):
        self.assert_unstable_connection(self.shop_list('<rsp stat="ok"></rsp>'),
                                        'No Node under "/rsp/list" path')

    def test_a_list_of_a_hundred_thousand_entries_can_be_chosen_from(self):
        digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"
        pairs = [a + b for a in digits for b in digits]
        top = "".join(f'<sub_list name="Region {code}" code="{code}"/>' for code in pairs[:100])
        rest = "".join(f'<sub_list name="Shop {parent}{code}" code="{parent}{code}"/>'
                       for parent in pairs[:100] for code in pairs[:1000])
        walk = self.shop_list(
            '<rsp stat="ok"><list level="1" name="Region" is_fix="N" is_sub="Y">' + top +
            '</list><list level="2" name="Shop" is_fix="N" is_sub="N">' + rest + "</list></rsp>")
        walk.wait_for(r"Called ZOLT::GUI::ShopListScreen::ShopListScreen\(")
        walk.press("Return", r"Called .*SelectionPopup::show")
        walk.press("Return", r"Called .*selectionPopupItemSelectionCb")
        walk.press("Return", r"Selected Region")
        walk.press("Return", r"Called .*nextSelectionScreenRequested", r"ShopListScreen::ShopListScreen\(")
        walk.press("Return", r"Called .*SelectionPopup::show")
        walk.press("Down", SOUND_MOVE)
        walk.press("Escape", r"popup hide called")
        walk.press("Escape", r"quitRequested")
        walk.end()

    def test_a_document_that_the_daemon_refuses_ends_the_program_with_status_one(self):
        walk = self.start(scenario={
            "daemon": {"shops": "one-shop"},
            "requestRegistrationShopInfo": {
                "error": "org.tizen.GDBus.ZoltContent.Error.InvalidDocument"}})
        self.to_search(walk)
        walk.set.wait_for_log(r"RegistrationInfoScreen::RegistrationInfoScreen\(")
        walk.press("Return", r"Called .*shopRegistrationRequested")
        walk.end(expected=1)
        self.assertIsNotNone(walk.set.log.find(r"Exception caught: Failed to request registration: "))
        self.assertFalse(os.path.exists(walk.set.folder.file("data", "registered")))

    def test_a_list_with_a_missing_level_is_noticed_by_the_watchdog_and_the_program_starts_again(self):
        description = self.write("set.ini", self.key_file({"Framework": {"StallSeconds": 3}}))
        path = self.write("list.xml", '<rsp stat="ok"><list level="1" name="R" is_fix="N" is_sub="Y">'
                          '<sub_list name="A" code="01"/></list>'
                          '<list level="2" name="S" is_fix="N" is_sub="N">'
                          '<sub_list name="B" code="010101"/></list></rsp>')
        walk = self.start(description=description, scenario={"getShopInfoList": {"reply-file": path}})
        self.to_search(walk)
        self.assertEqual(-signal.SIGABRT, walk.set.wait_for_end(DEADLINE))
        self.assertIsNotNone(walk.set.log.find(r"main loop"))


class Playing(SetCase):
    def test_back_on_the_first_menu_ends_the_program(self):
        walk = self.start()
        walk.start()
        walk.press("Escape", r"return button pressed", r"quit is requested", r"quitRequested")
        walk.end()

    def test_an_arrow_that_leads_nowhere_sounds_blocked(self):
        walk = self.start()
        walk.start()
        walk.press("Left", r"No Focus Key Event pressed", r"AUISoundType: 2\]")

    def test_control_verbs_reach_a_running_set(self):
        walk = self.start()
        walk.start()
        mark = walk.set.log.mark()
        walk.set.control("pause")
        walk.set.wait_for_log(r"calling Pause", mark)
        walk.set.control("resume")
        walk.set.wait_for_log(r"calling Resume", mark)
        walk.set.control("app-control")
        walk.set.wait_for_log(r"MainMenuUnregisteredScreen::MainMenuUnregisteredScreen\(", mark)

    def test_a_change_of_the_language_renews_the_texts_of_the_screen_that_stands(self):
        walk = self.start()
        walk.start()
        walk.set.folder.make_locale(os.path.join(BUILD, "test-state", "locales"), "ko_KR.utf8")
        before = walk.set.camera.settled()
        walk.set.control("set", "Language", "Language", "ko_KR.utf8")
        wait_until(lambda: walk.set.camera.settled() != before, 60, "the Korean menu")


if __name__ == "__main__":
    unittest.main(verbosity=2)
