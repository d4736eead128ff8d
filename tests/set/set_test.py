# SPDX-License-Identifier: Apache-2.0
"""Whole sets, used as by a person: real keys, a real bus, the real daemon, screenshots."""

import glob
import os
import re
import signal
import struct
import subprocess
import time
import types
import unittest
from unittest import mock
import xml.etree.ElementTree as ElementTree

from set_case import BUILD, DEADLINE, LOCALES, PRINTABLE, SetCase, contents, descendants, program_of

from folder import SetFolder
from journal import Journal
import launch
from remote import Camera
from processes import Child, SetError, wait_until
from screen import Screen
from walks import SOUND_MOVE, WALKS, Plan, quit_, received_document


class Walking(SetCase):
    CALLS = ["requestShopInfoList", "getShopInfoList", "getRegisteredShopInfo",
             "requestRegistrationShopInfo", "applicationCancelled"]

    def calls(self, path):
        return re.findall(r" call (\w+)", contents(path))

    def walk(self, *arguments):
        out = os.path.join(self.private, "out")
        if "--out" in arguments:
            out = arguments[arguments.index("--out") + 1]
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
        self.assert_a_line_for_each(pictures, said)
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
        self.assert_the_daemon_saw_each_call_in_order(out)
        self.assert_the_document_is_that_of_the_walk(out)

    def assert_a_line_for_each(self, pictures, said):
        first, *steps, last = said.splitlines()
        self.assertEqual("Walking 'existing' on a set of 1920x1080 in en_US.utf8", first)
        for number, (line, picture) in enumerate(zip(steps, pictures, strict=True), 1):
            self.assertRegex(line, rf"^ *{number} +[0-9.]+ s  \S.*\S +{os.path.basename(picture)}$")
        self.assertRegex(last, rf"^existing: {len(pictures)} steps in [0-9.]+ s, all in ")

    def assert_in_order(self, log, texts):
        place = 0
        for text in texts:
            found = log.find(text, place)
            self.assertGreaterEqual(found, 0, f"{text!r} does not follow")
            place = found + len(text)

    def assert_the_daemon_saw_each_call_in_order(self, out):
        journal = os.path.join(out, "set", "daemon.log")
        seen = self.calls(journal)
        self.assertEqual("requestShopInfoList", seen[0])
        self.assertEqual("getShopInfoList", seen[1])
        levels = seen.count("getRegisteredShopInfo")
        self.assertGreaterEqual(levels, 2)
        self.assertEqual(["requestShopInfoList", "getShopInfoList"] +
                         ["getRegisteredShopInfo"] * levels +
                         ["requestRegistrationShopInfo", "applicationCancelled"], seen)

    def assert_the_document_is_that_of_the_walk(self, out):
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
        with open(os.path.join(out, "01-menu.png"), "rb") as file:
            self.assertEqual((1280, 720), struct.unpack(">II", file.read(24)[16:]))
        self.assertIn("Language set successfully to [ar_EG.utf8]",
                      contents(os.path.join(out, "zolt.log")))

    def test_all_walks_go_through_each_in_a_folder_of_its_own(self):
        out = os.path.join(self.private, "out")
        command = self.launcher("--headless", "--walk", "all", "--size", "1280x720", "--out", out)
        ended = subprocess.run(command, capture_output=True, text=True, timeout=800, check=False)
        self.assertEqual(0, ended.returncode, ended.stdout + ended.stderr)
        self.assertEqual(f"{len(WALKS)} of {len(WALKS)} walks went through",
                         ended.stdout.splitlines()[-1])
        self.assertEqual(set(WALKS), set(os.listdir(out)))
        for name in WALKS:
            self.assertTrue(glob.glob(os.path.join(out, name, "01-menu.png")), name)
            self.assert_no_error_of_the_toolkit(os.path.join(out, name, "zolt.log"))

    # Errors that Debian's toolkit logs for deliberate calls: it has no focus highlight style for popups; and
    # it looks for a widget that cannot have the focus any more, when the last button of a popup is blocked
    # and when a popup is deleted from a screen whose buttons are blocked.
    KNOWN_ERRORS = (r"'efl_ui_win_focus_highlight_style_set' .* could not be resolved on Elm\.Popup",
                    r"manager_focus_set\(\d+\) > Could not fetch a node located at ")

    def assert_no_error_of_the_toolkit(self, log):
        errors = [line for line in contents(log).splitlines() if re.search(r" [EF] (TOOLKIT|GLIB): ", line)]
        self.assertEqual([], [line for line in errors
                              if not any(re.search(known, line) for known in self.KNOWN_ERRORS)], log)

    def test_a_walk_that_fails_is_named_and_the_others_go_on(self):
        said = []
        with mock.patch.dict(launch.WALKS, {"broken": Plan(self.fail_here), "well": Plan(quit_)},
                             clear=True), mock.patch.object(launch, "say", said.append):
            status = launch.walk_all(launch.options(self.launcher("--headless", "--walk", "all")[3:]),
                                     os.path.join(self.private, "out"))
        self.assertEqual(1, status)
        self.assertEqual("1 of 2 walks went through; failed: broken", said[-1])

    @staticmethod
    def fail_here(_walk):
        raise SetError("broken on purpose")

    def test_a_display_that_does_not_answer_is_reported_and_the_set_runs_headless(self):
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

    def test_files_of_an_earlier_walk_are_removed_and_others_are_kept(self):
        out = os.path.join(self.private, "out")
        SetFolder(os.path.join(out, "set"), BUILD).make()
        for name in ("99-left.png", "registration.xml", "zolt.log", "notes.txt"):
            self.rewrite(os.path.join(out, name), "old")
        self.walk("--walk", "quit")
        self.assertEqual("old", contents(os.path.join(out, "notes.txt")))
        for name in ("99-left.png", "registration.xml"):
            self.assertFalse(os.path.exists(os.path.join(out, name)), name)

    def test_paths_with_every_printable_character_are_walked(self):
        odd = os.path.join(self.private, PRINTABLE)
        os.makedirs(odd)
        # CMake cannot build in a folder with some of these characters; tools/build lists them.
        build = os.path.join(odd, "build " + PRINTABLE)
        os.symlink(BUILD, build)
        scenario = os.path.join(odd, "scenario " + PRINTABLE)
        self.rewrite(scenario, self.key_file({"daemon": {"shops": "one-shop", "delay": "50"}}))
        description = os.path.join(odd, "set " + PRINTABLE)
        self.rewrite(description, self.key_file({"Screen": {"Width": 1280, "Height": 720}}))
        out, said = self.walk("--build", build, "--scenario", scenario, "--set", description,
                              "--out", os.path.join(odd, "out " + PRINTABLE))
        self.assertTrue(glob.glob(os.path.join(glob.escape(out), "*-completed.png")), said)

    def test_the_document_is_written_as_the_daemon_received_it(self):
        journal = self.write("daemon.log", "TIME call requestRegistrationShopInfo <a b='\\\\n'>\\n\\r</a>\n")
        running_set = types.SimpleNamespace(daemon_log=Journal(journal))
        self.assertEqual("<a b='\\n'>\n\r</a>", received_document(running_set))

    def test_every_list_that_ships_can_be_walked(self):
        for name in ("scripts", "places", "one-shop"):
            with self.subTest(name):
                scenario = self.write("scenario.ini", self.key_file({"daemon": {"shops": name, "delay": "50"}}))
                self.walk("--scenario", scenario)

    def test_a_walk_that_gets_stuck_fails_and_says_where(self):
        scenario = self.write("scenario.ini", self.key_file({"daemon": {"found-in-lan": "false"}}))
        ended = self.launch("--headless", "--out", os.path.join(self.private, "out"),
                            "--scenario", scenario, "--walk", "existing", "--patience", "3")
        self.assertEqual(1, ended.returncode)
        self.assertIn("existing: FAILED after", ended.stdout)


class Pictures(SetCase):
    """What the screenshots of a walk show, and when they are taken."""

    WAITING = {"searching": "Searching for a registration.", "pin-requested": "Connecting to the server…",
               "pin-verified": "Connecting to the server…", "registering": "Connecting to the server…"}

    def walk_slowly(self, name):
        """Runs the walk NAME with a camera so slow that each event could come before the screenshot, and
        returns the name, the texts and the screenshot of each step."""
        plan = WALKS[name]
        walk = self.start(fresh=True, scenario={
            **plan.scenario, "daemon": {**plan.scenario["daemon"], "delay": "0"}})
        saved = []

        def slow_look():
            # If the daemon did not hold its event back, the program would have handled it by then.
            for _ in range(50):
                walk.set.control("draw")
                walk.set.daemon_log.read()
            return Camera.look(walk.set.camera)

        def save(picture, path):
            words = "\n".join(Screen(walk.set.control("look")).window.words)
            saved.append((os.path.basename(path)[3:-4], words, picture))

        with mock.patch.object(walk.set.camera, "look", slow_look), \
                mock.patch.object(walk.set.camera, "save", save):
            plan.function(walk)
        return saved

    def test_each_waiting_screen_is_in_its_picture_however_slow_the_camera_is(self):
        for name in ("existing", "new"):
            with self.subTest(name):
                saved = self.walk_slowly(name)
                waiting = [number for number, (step, _, _) in enumerate(saved) if step in self.WAITING]
                self.assertGreaterEqual(len(waiting), 2)
                for number in waiting:
                    step, words, picture = saved[number]
                    self.assertIn(self.WAITING[step], words, step)
                    self.assertNotEqual(picture, saved[number + 1][2], step)


class Registration(SetCase):
    def test_the_next_start_of_a_registered_set_shows_the_other_menu(self):
        walk = self.start()
        from walks import existing
        existing(walk)
        self.assertTrue(os.path.exists(walk.set.folder.file("data", "registered")))
        mark = walk.set.log.mark()
        walk.set.start_program()
        self.assertEqual("MainMenuRegisteredScreen", walk.wait_for_screen(mark))

    def test_the_flag_file_remains_after_the_program_has_ended(self):
        walk = self.start()
        walk.start()
        walk.press("Escape", r"quitRequested")
        walk.end()
        self.assertEqual(0, os.path.getsize(walk.set.folder.file("data", "service-cond-flag")))


class Trouble(SetCase):
    """How the program reacts to failures around it, and what it logs."""

    def kill_daemon(self, walk):
        found = [one for one in descendants(walk.set.bus.process.pid) if program_of(one) == "zolt-daemon"]
        self.assertEqual(1, len(found))
        os.kill(found[0].number, signal.SIGKILL)

    def test_a_daemon_that_dies_during_a_request_and_returns_leaves_a_program_that_answers(self):
        walk = self.start(scenario={"requestShopInfoList": {"outcome": "none"}})
        self.to_search(walk)
        walk.set.wait_for_log(r"call requestShopInfoList", journal=walk.set.daemon_log)
        mark = walk.set.log.mark()
        self.kill_daemon(walk)
        walk.set.wait_for_log(r"Removing object /zolt/gui", mark)
        daemon = os.path.join(BUILD, "daemon", "zolt-daemon")
        scenario = self.write("again.ini", self.key_file({"daemon": {"hold": "true", "events": "0:5"}}))
        again = Child("zolt-daemon",
                      [daemon, "--set", walk.set.folder.path, "--scenario", scenario],
                      env=walk.set.environment(), log=walk.set.folder.file("servers.log"))
        self.addCleanup(again.stop)
        walk.wait_for(r"Object /zolt/gui added", mark)
        walk.press("Escape", r"Return on Key Press for Loading Popup")
        os.kill(again.process.pid, signal.SIGUSR1)
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

    def test_a_set_without_its_theme_shows_an_empty_screen_and_answers(self):
        walk = self.start()
        self.configure(walk, "LayoutPath", "/nowhere")
        self.assertEqual("MainMenuUnregisteredScreen", walk.start())
        # Without a theme the widgets have no position and no size, and remain in the corner.
        walk.set.rest()
        below = walk.set.camera.look()[1920 * 3 * 40:]
        self.assertEqual({below[:3]}, {below[place:place + 3] for place in range(0, len(below), 3)})
        self.assertEqual(f"process {walk.set.program.process.pid}", walk.set.control("ping"))
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
        description = self.write("set.ini", self.key_file({"Framework": {"StallSeconds": 8}}))
        path = self.write("list.xml", '<rsp stat="ok"><list level="1" name="R" is_fix="N" is_sub="Y">'
                          '<sub_list name="A" code="01"/></list>'
                          '<list level="2" name="S" is_fix="N" is_sub="N">'
                          '<sub_list name="B" code="010101"/></list></rsp>')
        walk = self.start(description=description, scenario={"getShopInfoList": {"reply-file": path}})
        self.to_search(walk)
        mark = walk.set.log.mark()
        deadline = time.monotonic() + DEADLINE
        self.assertIsNone(walk.set.supervise(
            stay=lambda: time.monotonic() < deadline and not walk.set.log.find(r"calling Resume", mark)))
        self.assertEqual([f"zolt-hub ended with signal {int(signal.SIGABRT)}; starting it again"],
                         self.said)
        self.assertIsNotNone(walk.set.log.find(r"main loop", mark))
        self.assertIsNotNone(walk.set.log.find(r"MainMenuUnregisteredScreen::Main", mark))


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

    def places(self, language):
        """The positions of the buttons of the first menu and of their icons at 1280x720."""
        walk = self.start(fresh=True, size=(1280, 720), language=language)
        walk.start()
        walk.set.rest()
        window = Screen(walk.set.control("look")).window
        walk.set.close()
        return [(piece.x, piece.y, piece.width, piece.height)
                for button in window.all("button") for piece in button.all() if piece.kind != "text"]

    def test_in_arabic_the_menu_is_the_mirror_image_of_the_english_one(self):
        english, arabic = self.places("en_US"), self.places("ar_EG")
        self.assertEqual(6, len(english))
        self.assertEqual([place[1:] for place in english], [place[1:] for place in arabic])
        for (left, _, width, _), (mirrored, _, _, _) in zip(english, arabic):
            self.assertEqual(1280 - left - width, mirrored)
            self.assertGreater(abs(left - mirrored), 200)

    def test_a_change_of_the_language_renews_the_texts_of_the_shown_screen(self):
        walk = self.start()
        walk.start()
        walk.set.folder.make_locale(LOCALES, "ko_KR.utf8")
        walk.set.rest()
        before = walk.set.camera.look()
        walk.set.control("set", "Language", "Language", "ko_KR.utf8")
        wait_until(lambda: walk.set.camera.look() != before, DEADLINE, "the Korean menu")


if __name__ == "__main__":
    unittest.main(verbosity=2)
