# SPDX-License-Identifier: Apache-2.0
"""The life cycle of the process on a whole set: paused and resumed, launched again, in another language, with
high contrast and with enlarged texts."""

import collections
import re
import unittest

from flows_test import BACK, FAILURES, SELECT, FlowCase
from set_case import DEADLINE, contents
from speech_test import catalogue

from processes import wait_until

CONNECTING = "Connecting to the server…"
SEARCHING = "Searching for a registration.\nPlease wait."
CHANGE = "Do you want to change the registration?\nThe current registration will be deleted."
DEREGISTER = "Do you want to deregister this TV?"
COMPLETE = "Registration is complete.\nSee it under Registration information."
DEREGISTERED = "This TV has been deregistered."
COUNTER = "memory/zolt/zolt_screensaver_blocking"

# One step of a person or of the daemon: what is done (a key, or an event), what is SEEN then, the ids of the
# texts that FOLLOW a change of the language, and the texts that STAY as they are.
Step = collections.namedtuple("Step", "doing seen follow stay", defaults=((), ()))

TITLE = "COM_SID_ZOLT_CONTENT"
MENU = [TITLE, "TV_SID_NEW_REGISTRATION", "TV_SID_EXISTING_REGISTRATION", "SID_CANCEL"]
REGISTERED = [TITLE, "TV_SID_REGISTRATION_CHANGE", "TV_SID_DEREGISTRATION",
              "COM_REGISTRATION_INFORMATION", "SID_CANCEL"]
WAITING = [TITLE, "SID_CONNECTING_TO_NETWORK_SERVER", "SID_PLEASE_WAIT_DOT_KR_DIFF"]
PIN = [TITLE, "TV_SID_PIN_CODE", "TV_SID_UNREGISTERED", "SID_SOFTWARE_VERSION", "SID_CANCEL"]
LIST = [TITLE, "TV_SID_SELECT_M_MSG", "SID_NEXT"]
LOWER_LIST = [*LIST, "SID_PREVIOUS"]
LAST_LIST = [TITLE, "TV_SID_SELECT_M_MSG", "SID_PREVIOUS", "SID_REGISTER"]
OPEN_LIST = ["SID_OK", "SID_CANCEL"]
CONFIRMATION = [TITLE, "SID_PREVIOUS", "SID_REGISTER", "TV_SID_SHOP_CODE"]
CHOICE = ["Chain :", "Halden Electric", "Shop :", "Camden High Street", "0101"]

FETCHED = (
    Step("0 2", {"title": "ShopListScreen", "focus": "Select"}, LIST, ["Chain"]),
    Step("Return", {"focus": "Halden Electric"}, [*LIST, *OPEN_LIST],
         ["Halden Electric", "Brightwell Vision", "Orchard TV Centre"]),
    Step("Return", {"focus": "OK"}, [*LIST, *OPEN_LIST], ["Halden Electric", "Brightwell Vision"]),
    Step("Return", {"popup": None, "buttons": ["Halden Electric*", "Next*!"]}, LIST,
         ["Chain", "Halden Electric"]),
    Step("Return", {"focus": "Select", "buttons": ["Select*!", "Previous*", "Next"]}, LOWER_LIST,
         ["Shop", "Halden Electric"]),
    Step("Return", {"focus": "Camden High Street"}, [*LOWER_LIST, *OPEN_LIST],
         ["Camden High Street", "Market Street"]),
    Step("Return", {"focus": "OK"}, [*LOWER_LIST, *OPEN_LIST], ["Camden High Street"]),
    Step("Return", {"popup": None, "focus": "Register"}, LAST_LIST, ["Camden High Street"]),
    Step("Return", {"title": "RegistrationInfoScreen", "focus": "Register"}, CONFIRMATION, CHOICE),
    Step("Return", {"popup": [CONNECTING]}, [*CONFIRMATION, "SID_CONNECTING_TO_NETWORK_SERVER"], CHOICE),
    Step("0 3", {"popup": [COMPLETE], "buttons": ["OK*!"]}, [*CONFIRMATION, "SID_OK"],
         [*CHOICE, COMPLETE]))

# Ways through the program from a menu: whether the set is registered, and the steps. Together they show every
# screen and every popup.
WAYS = {
    "a new registration": (False, (
        Step(None, {"focus": "New registration"}, MENU),
        Step("Return", {"title": "PinRequesting"}, WAITING),
        Step("0 0", {"title": "PinDisplaying", "focus": "Cancel"}, PIN, ["48201573"]),
        Step("0 1", {"popup": [CONNECTING]}, [*PIN, "SID_CONNECTING_TO_NETWORK_SERVER"], ["48201573"]),
        *FETCHED)),
    "a change": (True, (
        Step(None, {"focus": "Change registration"}, REGISTERED),
        Step("Return", {"popup": [CHANGE], "focus": "OK"}, [*REGISTERED, "SID_OK"], [CHANGE]),
        Step("Return", {"buttons": ["OK", "Cancel"]}, [*REGISTERED, "SID_OK"], [CHANGE]),
        Step("0 12", {"title": "MainMenuUnregisteredScreen", "depth": 2, "popup": None}, MENU),
        Step("Down", {"focus": "Use existing registration"}, MENU),
        Step("Return", {"popup": [SEARCHING], "depth": 2},
             [*MENU, "TV_SID_SEARCHING_FOR_REGISTRATION_INFORMATION_WAIT"]),
        *FETCHED)),
    "a deregistration": (True, (
        Step("Down", {"focus": "Deregister"}, REGISTERED),
        Step("Return", {"popup": [DEREGISTER], "focus": "OK"}, [*REGISTERED, "SID_OK"], [DEREGISTER]),
        Step("Return", {"buttons": ["OK", "Cancel"]}, [*REGISTERED, "SID_OK"], [DEREGISTER]),
        Step("0 4", {"popup": [DEREGISTERED], "buttons": ["OK*!"]}, [*REGISTERED, "SID_OK"],
             [DEREGISTERED]))),
    "the information": (True, (
        Step("Down", {"focus": "Deregister"}),
        Step("Down", {"focus": "Registration information"}),
        Step("Return", {"title": "RegistrationInfoScreen", "focus": "OK"},
             [TITLE, "SID_OK", "TV_SID_SHOP_CODE"], CHOICE),
        Step("Return", {"title": "MainMenuRegisteredWindow", "depth": 1}, REGISTERED))),
    "a failure": (False, (
        Step("Return", {"title": "PinRequesting"}, WAITING),
        Step("1 7", {"popup": [FAILURES[7]], "buttons": ["OK*!"]}, [*WAITING, "SID_OK"],
             [FAILURES[7]]))),
}


class LifeCase(FlowCase):
    def counter(self):
        """The screensaver counter of the set."""
        found = re.search(rf"^{COUNTER}=(-?\d+)$", contents(self.walk.set.folder.file("vconf.ini")), re.M)
        return int(found[1])

    def steps(self, name, **choices):
        """Goes the way NAME and yields after each step."""
        registered, way = WAYS[name]
        if name == "a failure":
            choices["requestPincode"] = {"outcome": "1/7"}
        self.switch_on(registered=registered, **choices)
        for step in way:
            if step.doing:
                (self.event if " " in step.doing else self.press)(step.doing)
            self.sees(**step.seen)
            yield step


class Pause(LifeCase):
    def pauses_and_resumes(self):
        self.assertEqual(1, self.counter())
        for verb, call, change, before, after in (
                ("pause", "calling Pause", "Decreasing Vconf", 1, 0),
                ("resume", "calling Resume", "increasing Vconf", 0, 1)):
            mark = self.walk.set.log.mark()
            self.walk.set.control(verb)
            self.walk.set.wait_for_log(call, mark)
            self.walk.set.wait_for_log(rf"current vconf is: {before}$", mark)
            self.assertEqual([change, f"current vconf is: {before}"], self.counter_lines()[-2:])
            self.assertEqual(after, self.counter())

    def test_the_counter_is_lowered_while_paused_and_raised_again_in_every_state(self):
        for name in WAYS:
            with self.subTest(name):
                for step in self.steps(name):
                    self.pauses_and_resumes()
                    self.sees(**step.seen)
                self.press("Escape")
                self.release()
                self.walk.end()
                self.assertEqual(["Decreasing Vconf", "current vconf is: 1"],
                                 [line for line in self.counter_lines() if "already" not in line][-2:])
                self.assertEqual(0, self.counter())

    def test_a_pause_while_paused_changes_nothing(self):
        self.switch_on()
        # Other processes have added five.
        self.rewrite(self.walk.set.folder.file("vconf.ini"), f"[vconf]\n{COUNTER}=6\n")
        self.walk.set.control("pause")
        self.walk.set.wait_for_log("current vconf is: 6$")
        self.assertEqual(5, self.counter())
        mark = self.walk.set.log.mark()
        self.walk.set.control("pause")
        self.walk.set.control("ping")
        self.assertIsNone(self.walk.set.log.find("current vconf is", mark))
        self.assertEqual(5, self.counter())
        self.walk.set.control("resume")
        self.walk.set.wait_for_log("current vconf is: 5$", mark)
        self.assertEqual(6, self.counter())

    def test_a_program_that_ends_while_paused_leaves_the_counter_as_it_was(self):
        self.switch_on(requestPincode={"outcome": "1/10"})
        self.press("Return")
        self.sees(title="PinRequesting")
        self.walk.set.control("pause")
        self.assertEqual(0, self.counter())
        self.event("1 10")
        self.walk.end()
        self.assertEqual(0, self.counter())


class SecondLaunch(LifeCase):
    """After a second launch no button finds the controller."""

    def launches_again(self):
        mark = self.walk.set.log.mark()
        self.walk.set.control("app-control")
        self.walk.set.wait_for_log(r"Called ZOLT::GUI::Controller::~Controller", mark)
        self.sees(title="MainMenuUnregisteredScreen", depth=1, focus="New registration", popup=None)
        self._heard += len(self.sounds())

    def breaks_off(self, key, sound):
        self.press(key)
        self.reads("Exception caught: No controller", "Decreasing Vconf", "current vconf is: 1$")
        self.walk.end(expected=1)
        self.assertEqual(sound, self.sounds()[0])
        self.assertIsNone(self.walk.set.log.find("calling Terminate"))
        self.asks()
        self.assertEqual(0, self.counter())

    def test_a_button_that_needs_the_controller_ends_the_program(self):
        for key, sound in (("Return", SELECT), ("Escape", BACK), ("XF86Close", BACK)):
            with self.subTest(key):
                self.switch_on()
                self.launches_again()
                self.breaks_off(key, sound)

    def test_cancel_still_quits(self):
        self.switch_on()
        self.launches_again()
        for place in ("Use existing registration", "Cancel"):
            self.press("Down")
            self.sees(focus=place)
        self._heard += len(self.sounds())
        self.press("Return")
        self.quits(screens=2)
        self.assertEqual(0, self.counter())

    def test_events_of_the_daemon_reach_the_new_controller(self):
        for event, seen in (("0 0", {"title": "PinDisplaying", "depth": 2, "focus": "Cancel"}),
                            ("1 7", {"title": "MainMenuUnregisteredScreen", "depth": 1,
                                     "popup": [FAILURES[7]], "buttons": ["OK*!"]}),
                            ("1 10", None)):
            with self.subTest(event):
                self.switch_on(requestPincode={"outcome": event.replace(" ", "/")})
                self.press("Return")
                self.sees(title="PinRequesting", depth=2)
                self.asks("requestPincode")
                self.launches_again()
                self.event(event)
                if seen:
                    self.sees(**seen)
                    self._asked = len(self.calls_of_the_daemon())
                    self._heard += len(self.sounds())
                    self.press("Return")
                    self.quits(screens=2 + seen["depth"])
                else:
                    self.ends(screens=3)
                self.assertEqual(0, self.counter())

    def test_a_button_after_an_event_ends_the_program_too(self):
        self.switch_on()
        self.to_the_search()
        self.launches_again()
        self.event("0 2")
        self.sees(title="ShopListScreen", depth=2, focus="Select")
        self._asked = len(self.calls_of_the_daemon())
        self._heard += len(self.sounds())
        self.breaks_off("Return", SELECT)


class Language(LifeCase):
    LOCALES = {"ar": "ar_EG.utf8", "en": "en_US.utf8", "ko": "ko_KR.utf8"}

    def speak(self, language):
        self.release()
        self.walk.set.control("set", "Language", "Language", self.LOCALES[language])

    @staticmethod
    def texts(language, names):
        """The texts for the ids NAMES as they are drawn."""
        found = catalogue(language)
        composed = {"SID_SOFTWARE_VERSION": " : 1.0.0", "TV_SID_SHOP_CODE": " :"}
        return {re.sub("<br/?>", "\n", found[name]) + composed.get(name, "") for name in names}

    def shows(self, language, step, before):
        """The screen shows in LANGUAGE the texts that follow, none of them in the language BEFORE, and the
        other texts."""
        expected = self.texts(language, step.follow) | set(step.stay)
        stale = self.texts(before, step.follow) - expected
        words = set()

        def matches():
            words.clear()
            words.update(self.screen().window.words)
            return expected <= words and not stale & words

        try:
            wait_until(matches, DEADLINE, "the texts")
        finally:
            self.assertEqual((set(), set()), (expected - words, stale & words), step)

    def follows(self, name, language):
        for step in self.steps(name):
            if step.follow:
                self.speak(language)
                self.shows(language, step, before="en")
                self.speak("en")
                self.shows("en", step, before=language)
                self.sees(**step.seen)

    def test_each_screen_and_popup_follows_the_language_where_its_texts_are_of_the_catalogue(self):
        for name in WAYS:
            with self.subTest(name):
                self.follows(name, "ko")

    def test_a_set_that_reads_left_to_right_follows_into_arabic(self):
        for name in ("a new registration", "the information"):
            with self.subTest(name):
                self.follows(name, "ar")

    def test_a_set_that_starts_in_arabic_follows_into_korean(self):
        # The label of the PIN is made once, with its direction mark.
        pin = ["SID_SOFTWARE_VERSION", "TV_SID_UNREGISTERED", "SID_CANCEL"]
        self.switch_on(language="ar_EG")
        for step in (Step("Return", {"title": "PinRequesting"}, WAITING),
                     Step("0 0", {"title": "PinDisplaying"}, pin, ["48201573", "\u200eالرمز"])):
            (self.event if " " in step.doing else self.press)(step.doing)
            self.sees(**step.seen)
            self.shows("ar", step, before="ko")
            self.speak("ko")
            self.shows("ko", step, before="ar")
            self.speak("ar")
            self.shows("ar", step, before="ko")

    def test_the_line_of_the_shop_code_is_renewed_on_a_set_that_starts_in_arabic(self):
        self.switch_on(registered=True, language="ar_EG")
        for focus in ("إزالة التسجيل", "معلومات التسجيل"):
            self.press("Down")
            self.sees(focus=focus)
        self.press("Return")
        self.sees(title="RegistrationInfoScreen",
                  words=[": Chain", "Halden Electric", "رمز المتجر :", "0101"])
        self.speak("ko")
        self.sees(words=[": Chain", "Halden Electric", "매장 코드 :", "0101", "확인"])


class Sight(LifeCase):
    """A set with high contrast or enlarged texts, compared with an ordinary one."""

    def pictures(self, name, **accessibility):
        """The picture and the screen of each step of a way."""
        description = self.write("set.ini", self.key_file({"Accessibility": accessibility}))
        found = []
        for _ in self.steps(name, description=description):
            self.walk.set.rest()
            found.append((self.walk.set.camera.look(), self.screen()))
        return found

    @staticmethod
    def luminance(colour):
        parts = [part / 255 for part in colour]
        linear = [part / 12.92 if part <= 0.04045 else ((part + 0.055) / 1.055) ** 2.4 for part in parts]
        return sum(weight * part for weight, part in zip((0.2126, 0.7152, 0.0722), linear))

    def colours(self, picture, piece):
        """The background colour in a corner of the screen, and the lightest colour of the text PIECE."""
        width, _ = self.walk.set.folder.size

        def colour(x, y):
            start = 3 * (y * width + x)
            return tuple(picture[start:start + 3])

        inside = {colour(x, y) for y in range(piece.y, piece.y + piece.height)
                  for x in range(piece.x, piece.x + piece.width)}
        return colour(8, 8), max(inside, key=self.luminance)

    def ratio(self, colours):
        dark, light = sorted(self.luminance(colour) for colour in colours)
        return (light + 0.05) / (dark + 0.05)

    @staticmethod
    def title(screen):
        return next(piece for piece in screen.window.all("text") if piece.text == "ZOLT Content")

    def test_high_contrast_shows_on_every_screen(self):
        for name in ("a new registration", "a deregistration"):
            ordinary = self.pictures(name)
            high = self.pictures(name, HighContrast=1)
            self.reads("High Contrast Mode ON")
            self.assertEqual(len(ordinary), len(high))
            for number, (before, after) in enumerate(zip(ordinary, high)):
                with self.subTest(WAYS[name][1][number]):
                    before, after = (self.colours(picture, self.title(screen))
                                     for picture, screen in (before, after))
                    self.assertEqual((0, 0, 0), after[0])
                    self.assertNotEqual(before[0], after[0])
                    self.assertGreater(self.luminance(after[1]), self.luminance(before[1]))
                    self.assertGreaterEqual(self.ratio(after), max(7, self.ratio(before)))

    def test_enlarged_texts_are_larger_on_every_screen(self):
        for name in ("a new registration", "a deregistration"):
            ordinary = self.pictures(name)
            large = self.pictures(name, FocusZoom=1)
            self.reads("Enlarge Mode ON")
            self.assertEqual(len(ordinary), len(large))
            for number, (before, after) in enumerate(zip(ordinary, large)):
                with self.subTest(WAYS[name][1][number]):
                    self.assertAlmostEqual(
                        1.2, self.title(after[1]).height / self.title(before[1]).height, delta=0.05)
                    for text, height in self.heights(*before).items():
                        self.assertGreater(self.heights(*after)[text], height, text)

    def heights(self, picture, screen):
        """The texts of SCREEN and the height of each. Where the height of its place is fixed, the height of
        the drawn text, unless something covers it."""
        fixed = ("Not registered", "Software version : 1.0.0")
        return {piece.text: self.drawn(picture, piece) if piece.text in fixed else piece.height
                for piece in screen.window.all("text") if not (screen.popup and piece.text in fixed)}

    def drawn(self, picture, piece):
        """The number of rows from the first to the last with something drawn."""
        width, _ = self.walk.set.folder.size
        found = []
        for y in range(piece.y, piece.y + piece.height):
            start = 3 * (y * width + piece.x)
            row = picture[start:start + 3 * piece.width]
            if row != row[:3] * piece.width:
                found.append(y)
        return found[-1] - found[0]


if __name__ == "__main__":
    unittest.main(verbosity=2)
