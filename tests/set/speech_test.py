# SPDX-License-Identifier: Apache-2.0
"""What a person who cannot see the screen hears of a whole set, word for word, and how it is spoken."""

import os
import re
import shutil
import stat
import unittest
from unittest import mock

from flows_test import FlowCase
from set_case import DEADLINE, SOURCE, contents, running

from processes import wait_until

READER_ON = "[Accessibility]\nScreenReader=true\n"
PIN = "48201573"

# Tells what it is given, and speaks until it is stopped.
STAND_IN = """#!/usr/bin/python3
import os, signal, sys
def tell(*words):
    with open({heard!r}, "a", encoding="utf-8") as file:
        file.write(" ".join(words) + "\\n")
def stop(*_):
    tell("cut off", text)
    sys.exit(1)
text = sys.stdin.buffer.read().decode("utf-8")
signal.signal(signal.SIGTERM, stop)
tell(str(os.getpid()), *sys.argv[1:], text)
while True:
    signal.pause()
"""


def catalogue(language):
    """The texts of LANGUAGE's message catalogue: id to text."""
    found, name, kind = {}, None, None
    with open(os.path.join(SOURCE, "po", f"{language}.po"), encoding="utf-8") as file:
        for line in file:
            match = re.match(r'(msgid|msgstr)? ?"(.*)"$', line)
            if match:
                kind = match[1] or kind
                if match[1] == "msgid":
                    name = ""
                if kind == "msgid":
                    name += match[2]
                else:
                    found[name] = found.get(name, "") + match[2]
    return found


class SpeechCase(FlowCase):
    """A person who listens to the screen reader."""

    def listen(self, language, path=None):
        """Starts a set that speaks LANGUAGE, with what is on PATH."""
        self.texts = catalogue(language[:2])
        description = self.write("reader.ini", READER_ON)
        self.walk = self.start(scenario={"daemon": {"hold": "true", "shops": self.SHOPS}}, fresh=True,
                               language=language, description=description)
        self._heard = self._asked = self._read = self._listened = 0
        self._down = None
        self.walk.set.remote.repeat(False)
        with mock.patch.dict(os.environ, {"PATH": path or self.stand_in()}):
            self.walk.start()

    def stand_in(self):
        """A PATH with a speech program of this test's own."""
        folder = os.path.join(self.private, "bin")
        os.mkdir(folder)
        self.heard = os.path.join(self.private, "heard")
        program = self.write("bin/espeak-ng", STAND_IN.format(heard=self.heard))
        os.chmod(program, stat.S_IRWXU)
        return folder + os.pathsep + os.environ["PATH"]

    def text(self, name):
        """The spoken form of a text of the catalogue: a blank for each line break."""
        return re.sub(r"<br/?>", " ", self.texts[name])

    def spoken(self):
        found = [re.search(r'VIRTUAL_SET: Screen reader: says "(.*)"$', line)
                 for line in self.walk.set.log.read()]
        return [match[1] for match in found if match]

    def listens(self, *expected):
        """These texts and no others have been said since it was last listened to."""
        self.await_list(lambda: self.spoken()[self._listened:], list(expected))
        self._listened += len(expected)
        self.release()

    def told(self, count):
        """What the stand-in was given and did, once there are COUNT lines of it."""
        wait_until(lambda: contents(self.heard).count("\n") >= count, DEADLINE, "the speech program")
        return contents(self.heard).splitlines()

    # --- steps that several walks share

    def press_and_listen(self, key, *expected):
        self.press(key)
        self.listens(*expected)

    def pick_and_go_on(self, rows, button):
        """From a drop-down with the focus: looks into its ROWS, takes the first, and presses BUTTON."""
        self.press_and_listen("Return", rows[0])
        self.press_and_listen("Down", rows[1])
        self.press_and_listen("Up", rows[0])
        self.press_and_listen("Return", self.text("SID_OK"))
        self.press_and_listen("Return", self.text(button))
        self.press("Return")

    def from_the_list_to_the_end(self):
        self.asks("requestShopInfoList")
        self.event("0 2")
        self.listens(self.text("TV_SID_SELECT_M_MSG"))
        self.asks("getShopInfoList", "getRegisteredShopInfo")
        self.pick_and_go_on(["Halden Electric", "Brightwell Vision"], "SID_NEXT")
        self.listens(self.text("TV_SID_SELECT_M_MSG"))
        self.pick_and_go_on(["Camden High Street", "Market Street"], "SID_REGISTER")
        self.listens(self.text("SID_REGISTER"))
        self.asks("getRegisteredShopInfo")
        self.press_and_listen("Return", self.text("SID_CONNECTING_TO_NETWORK_SERVER"))
        self.asks("requestRegistrationShopInfo")
        self.event("0 3")
        self.listens(self.text("COM_SID_REGISTRATION_COMPLETED_CHECK_STATUS") + ", " + self.text("SID_OK"))
        self.press("Return")
        self.walk.end()
        self.listens()

    def hears_a_new_registration(self, language):
        self.listen(language)
        self.listens(", " + self.text("TV_SID_NEW_REGISTRATION"))
        self.press_and_listen("Return", self.text("SID_CONNECTING_TO_NETWORK_SERVER") +
                              self.text("SID_PLEASE_WAIT_DOT_KR_DIFF"))
        self.asks("requestPincode")
        self.event("0 0")
        self.listens(", ".join([self.text("TV_SID_PIN_CODE"), *PIN, self.text("SID_CANCEL")]))
        self.asks("checkShopRegistration", "getPincode", "requestPincodeVerification")
        self.event("0 1")
        self.listens(self.text("SID_CONNECTING_TO_NETWORK_SERVER"))
        self.from_the_list_to_the_end()

    def hears_an_existing_registration(self, language):
        self.listen(language)
        self.listens(", " + self.text("TV_SID_NEW_REGISTRATION"))
        self.press_and_listen("Down", self.text("TV_SID_EXISTING_REGISTRATION"))
        self.press_and_listen("Return",
                              self.text("TV_SID_SEARCHING_FOR_REGISTRATION_INFORMATION_WAIT"))
        self.from_the_list_to_the_end()


class Speech(SpeechCase):
    def test_a_new_registration_is_heard_in_english(self):
        self.hears_a_new_registration("en_US")

    def test_a_new_registration_is_heard_in_korean(self):
        self.hears_a_new_registration("ko_KR")

    def test_a_new_registration_is_heard_in_arabic(self):
        self.hears_a_new_registration("ar_EG")

    def test_an_existing_registration_is_heard_in_english(self):
        self.hears_an_existing_registration("en_US")

    def test_an_existing_registration_is_heard_in_korean(self):
        self.hears_an_existing_registration("ko_KR")

    def test_an_existing_registration_is_heard_in_arabic(self):
        self.hears_an_existing_registration("ar_EG")

    def test_the_speech_program_gets_text_and_voice_and_a_new_text_cuts_off_the_old(self):
        self.listen("ko_KR")
        first, second = ", " + self.text("TV_SID_NEW_REGISTRATION"), self.text("TV_SID_EXISTING_REGISTRATION")
        process, told = self.told(1)[0].split(" ", 1)
        self.assertEqual(f"--stdin -v ko-kr {first}", told)
        self.press_and_listen("Down", first, second)
        self.assertIn(f"cut off {first}", self.told(3))
        wait_until(lambda: not os.path.exists(f"/proc/{process}"), DEADLINE, "the end of the first")
        told = [line.split(" ", 1) for line in self.told(3)]
        process = next(number for number, rest in told if rest == f"--stdin -v ko-kr {second}")
        self.walk.set.control("quit")
        self.walk.end()
        wait_until(lambda: int(process) not in {one.number for one in running()}, DEADLINE,
                   "the end of the second")

    def test_without_a_speech_program_the_set_only_logs_what_it_says(self):
        # What starts the program has to be found all the same.
        folder = os.path.join(self.private, "bin")
        os.mkdir(folder)
        os.symlink(shutil.which("setpriv"), os.path.join(folder, "setpriv"))
        self.listen("en_US", path=folder)
        self.listens(", " + self.text("TV_SID_NEW_REGISTRATION"))
        # Whatever had been started in vain would have told so by now.
        self.screen()
        self.press_and_listen("Down", self.text("TV_SID_EXISTING_REGISTRATION"))
        self.press_and_listen("Down", self.text("SID_CANCEL"))
        self.press("Return")
        self.walk.end()
        self.assertEqual([], [line for line in self.walk.set.log.read() if "espeak" in line])
        self.assertEqual("", contents(self.walk.set.folder.file("stderr.log")))


if __name__ == "__main__":
    unittest.main(verbosity=2)
