# SPDX-License-Identifier: Apache-2.0
"""What a whole set speaks for people who cannot see the screen, word for word, and how it is spoken."""

import os
import re
import shutil
import stat
import unittest
from unittest import mock
from xml.sax.saxutils import quoteattr

from flows_test import FlowCase
from set_case import DEADLINE, SOURCE, contents, running

from processes import wait_until
from registration import document_of, register

LANGUAGES = ("en_US", "ko_KR", "ar_EG")
FAILURES = {5: "SID_INTERNET_CONNECTION_NOT_STABLE_MSG",
            6: "COM_CANNOT_CONNECT_TO_THE_NETWORK",
            7: "COM_CANNOT_CONNECT_TO_SERVER",
            8: "COM_MAPP_SID_PIN_ENTRY_TIME_LIMIT_EXPIRED",
            9: "TV_SID_UNABLE_TO_FIND_REGISTRATION_INFORMATION_IN_THE_LOCAL_NETWORK"}
READER_ON = "[Accessibility]\nScreenReader=true\n"
PIN = "48201573"

# Records its arguments and input, and runs until it is stopped.
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
    """Checks what the screen reader says."""

    SHOPS = FlowCase.SHOPS

    def listen(self, language, path=None, registered=False, shops=SHOPS, **scenario):
        """Starts a set that speaks LANGUAGE, with the speech program found on PATH."""
        self.texts = catalogue(language[:2])
        description = self.write("reader.ini", READER_ON)
        if self.walk:
            self.walk.set.close()
        self.walk = self.start(scenario={"daemon": {"hold": "true", "shops": shops}, **scenario},
                               fresh=True, language=language, description=description)
        if registered:
            shops = os.path.join(SOURCE, "daemon", "shop-lists", "two-levels.xml")
            register(self.walk.set.folder, document_of(shops))
        self._heard = self._asked = self._read = self._listened = 0
        self._down = None
        self.walk.set.remote.repeat(False)
        with mock.patch.dict(os.environ, {"PATH": path or self.stand_in()}):
            self.walk.start()

    def stand_in(self):
        """A PATH with this test's speech program."""
        folder = os.path.join(self.private, "bin")
        os.makedirs(folder, exist_ok=True)
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
        """Exactly these texts were said since the last call."""
        self.await_list(lambda: self.spoken()[self._listened:], list(expected))
        self._listened += len(expected)
        self.release()

    def told(self, count):
        """The COUNT lines that the stand-in has recorded, once it has."""
        wait_until(lambda: contents(self.heard).count("\n") >= count, DEADLINE, "the speech program")
        return contents(self.heard).splitlines()

    # --- steps that several walks share

    def press_and_listen(self, key, *expected):
        self.press(key)
        self.listens(*expected)

    def pick_and_go_on(self, rows, button):
        """From a drop-down with the focus: opens it, which must offer ROWS, picks the first, and presses
        BUTTON."""
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

    def test_the_questions_of_a_registered_set_are_heard(self):
        for language in LANGUAGES:
            with self.subTest(language):
                self.listen(language, registered=True)
                self.listens(", " + self.text("TV_SID_REGISTRATION_CHANGE"))
                self.press_and_listen("Return", self.text("TV_SID_SURE_CHANGE_REGISTRATION_INFO_DELETED") + ", " + self.text("SID_OK"))
                self.press_and_listen("Left" if language.startswith("ar") else "Right",
                                      self.text("SID_CANCEL"))
                self.press_and_listen("Return", self.text("TV_SID_REGISTRATION_CHANGE"))
                self.press_and_listen("Down", self.text("TV_SID_DEREGISTRATION"))
                self.press_and_listen("Return", self.text("TV_SID_ARE_YOU_SURE_YOU_WANT_TO_DEREGISTER") + ", " +
                                      self.text("SID_OK"))
                self.press("Return")
                self.asks("unregister")
                self.event("0 4")
                self.listens(self.text("COM_SID_DEREGISTERED_SUCCESSFULLY") + ", " + self.text("SID_OK"))
                self.press("Return")
                self.walk.end()

    def test_the_registration_is_heard_line_by_line(self):
        rows = [("Chain", "Halden Electric"), ("Shop", "Camden High Street"), (None, "0101")]
        for language in LANGUAGES:
            with self.subTest(language):
                self.listen(language, registered=True)
                self.listens(", " + self.text("TV_SID_REGISTRATION_CHANGE"))
                self.press_and_listen("Down", self.text("TV_SID_DEREGISTRATION"))
                self.press_and_listen("Down", self.text("COM_REGISTRATION_INFORMATION"))
                self.press_and_listen("Return", self.text("SID_OK"))
                lines = []
                for name, value in rows:
                    # The colon of the shop code line does not change sides.
                    ahead = language.startswith("ar") and name
                    name = name or self.text("TV_SID_SHOP_CODE")
                    lines.append(f": {name} {value}" if ahead else f"{name} : {value}")
                self.press_and_listen("Up", ", ".join(lines))
                self.press_and_listen("Down", self.text("SID_OK"))
                self.press_and_listen("Return", self.text("COM_REGISTRATION_INFORMATION"))

    def test_each_failure_is_heard(self):
        for reason, name in FAILURES.items():
            with self.subTest(reason):
                self.listen("en_US", requestPincode={"outcome": f"1/{reason}"})
                self.listens(", " + self.text("TV_SID_NEW_REGISTRATION"))
                self.press_and_listen("Return", self.text("SID_CONNECTING_TO_NETWORK_SERVER") +
                                      self.text("SID_PLEASE_WAIT_DOT_KR_DIFF"))
                self.asks("requestPincode")
                self.event(f"1 {reason}")
                self.listens(self.text(name) + ", " + self.text("SID_OK"))

    def test_a_name_is_heard_as_it_is_drawn(self):
        names = ["B & C <b>Best</b>", "\"Quoted\" 5 < 6", "x<br/>y"]
        # The first entry is not offered if it has no children.
        entries = "".join(f"<sub_list name={quoteattr(name)} code=\"0{number}\"/>"
                          for number, name in enumerate(["Not offered"] + names, 1))
        shops = self.write("shops.xml", '<?xml version="1.0" encoding="UTF-8"?><rsp stat="ok">'
                           '<list level="1" name="Chain" is_fix="Y" is_sub="N">' + entries +
                           "</list></rsp>")
        self.listen("en_US", shops=shops)
        self.listens(", " + self.text("TV_SID_NEW_REGISTRATION"))
        self.press_and_listen("Down", self.text("TV_SID_EXISTING_REGISTRATION"))
        self.press_and_listen("Return", self.text("TV_SID_SEARCHING_FOR_REGISTRATION_INFORMATION_WAIT"))
        self.asks("requestShopInfoList")
        self.event("0 2")
        self.listens(self.text("TV_SID_SELECT_M_MSG"))
        self.press_and_listen("Return", names[0])
        self.sees(rows=names)
        for name in names[1:]:
            self.press_and_listen("Down", name)
        self.press_and_listen("Return", self.text("SID_OK"))
        self.press_and_listen("Return", self.text("SID_REGISTER"))
        self.press_and_listen("Up", names[-1])
        self.assertIn(names[-1], self.screen().window.words)

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
        # The programs that start the set must still be found.
        folder = os.path.join(self.private, "bin")
        os.mkdir(folder)
        os.symlink(shutil.which("setpriv"), os.path.join(folder, "setpriv"))
        self.listen("en_US", path=folder)
        self.listens(", " + self.text("TV_SID_NEW_REGISTRATION"))
        # A failed attempt to start one would be in the log by now.
        self.screen()
        self.press_and_listen("Down", self.text("TV_SID_EXISTING_REGISTRATION"))
        self.press_and_listen("Down", self.text("SID_CANCEL"))
        self.press("Return")
        self.walk.end()
        self.assertEqual([], [line for line in self.walk.set.log.read() if "espeak" in line])
        # The X library may print a line of its own there.
        printed = contents(self.walk.set.folder.file("stderr.log")).splitlines()
        self.assertEqual([], [line for line in printed if not line.startswith("Xlib: ")])


if __name__ == "__main__":
    unittest.main(verbosity=2)
