# SPDX-License-Identifier: Apache-2.0
"""Every flow of the program on a whole set, step by step: what is shown and focused, the sounds, the calls to
the daemon, and how the program ends."""

import os
import re
import unittest
import xml.etree.ElementTree as ElementTree

import golden_log
from set_case import DEADLINE, SOURCE, SetCase

from processes import SetError, wait_until
from registration import document_of, register
from screen import Screen
from walks import received_document

MOVE, BACK, BLOCKED, SELECT, POPUP = range(5)

UNREGISTERED_MENU = ["New registration*!", "Use existing registration*", "Cancel*"]
REGISTERED_MENU = ["Change registration*!", "Deregister*", "Registration information*", "Cancel*"]
FAILURES = {5: "The internet connection is not stable.\nCheck the connection and try again.",
            6: "Cannot connect to the network.\nCheck the connection and try again.",
            7: "Cannot connect to the server.\nTry again later.",
            8: "The time limit for the PIN has expired.\nTry again.",
            9: "No registration was found in the local network."}


class FlowCase(SetCase):
    """Steps and checks of a flow: keys, the screen, sounds, and a daemon whose events are released one by
    one."""

    SHOPS = "two-levels"
    walk = None

    def switch_on(self, registered=False, language=None, size=None, description=None, **scenario):
        """Starts a set and checks its first menu."""
        groups = {"daemon": {"hold": "true", "shops": self.SHOPS, **scenario.pop("daemon", {})}}
        if self.walk:
            self.walk.set.close()
        self.walk = self.start(scenario={**groups, **scenario}, fresh=True, language=language,
                               size=size, description=description)
        if registered:
            shops = os.path.join(SOURCE, "daemon", "shop-lists", "two-levels.xml")
            register(self.walk.set.folder, document_of(shops))
        self._heard = self._asked = self._read = 0
        self._down = None
        self.walk.set.remote.repeat(False)
        self.walk.start()
        self.sees(title="MainMenuRegisteredWindow" if registered else "MainMenuUnregisteredScreen",
                  depth=1, popup=None)
        if not language:
            self.sees(buttons=REGISTERED_MENU if registered else UNREGISTERED_MENU)

    # --- doing

    def press(self, key):
        """Presses KEY once the program is idle. release() lets go of it, after its effect was seen, as a
        finger does."""
        self.release()
        self.walk.set.rest()
        self.walk.set.remote.down(key)
        self._down = key

    def release(self):
        if self._down:
            self.walk.set.remote.up(self._down)
            self._down = None

    def event(self, expected):
        """Releases the event that the daemon holds back, which must be EXPECTED."""
        self.release()
        # The key is released before the event, not at the same time.
        self.walk.set.rest()
        mark = self.walk.set.daemon_log.mark()
        self.walk.await_event()
        self.walk.set.wait_for_log(f" event {expected}$", mark, journal=self.walk.set.daemon_log)

    # --- looking and listening

    def screen(self):
        return Screen(self.walk.set.control("look"))

    @staticmethod
    def seen(screen, **asked):
        """The properties of SCREEN that ASKED names. Of words, those that are asked for and shown."""
        found = {}
        for name, expected in asked.items():
            if name == "title":
                found[name] = screen.window.text
            elif name == "depth":
                found[name] = len(screen.windows)
            elif name == "popup":
                popups = list(screen.window.all("popup"))
                # Counted, because one may have been left below another.
                found[name] = (None if not popups else f"{len(popups)} popups" if len(popups) > 1
                               else [word for word in expected or popups[0].words
                                     if word in popups[0].words])
            elif name == "words":
                found[name] = [word for word in expected if word in screen.window.words]
            else:
                found[name] = getattr(screen, name)() if name == "buttons" else getattr(screen, name)
        return found

    def sees(self, **expected):
        """Waits until the screen is as EXPECTED."""
        last = {}

        def matches():
            last.update(self.seen(self.screen(), **expected))
            return last == expected

        try:
            wait_until(matches, DEADLINE, "the screen")
        except SetError:
            self.assertEqual(expected, last)
            raise
        if self._down:
            # A window that the key has brought to the front has the keyboard before the key comes up.
            self.walk.set.rest()
        self.release()

    def hears(self, *expected):
        """Exactly these sounds were played since the last call."""
        self.release()
        self.await_list(self.sounds, list(expected))
        self._heard += len(expected)

    def sounds(self):
        pattern = re.compile(r"Playing AUI sound \[AUISoundType: (\d)\]")
        found = [pattern.search(line) for line in self.walk.set.log.read()]
        return [int(match.group(1)) for match in found if match][self._heard:]

    def calls_of_the_daemon(self):
        found = [re.search(r" call (\w+)", line) for line in self.walk.set.daemon_log.read()]
        return [match.group(1) for match in found if match]

    def asks(self, *expected):
        """Exactly these calls have reached the daemon since the last call."""
        self.await_list(lambda: self.calls_of_the_daemon()[self._asked:], list(expected))
        self._asked += len(expected)

    def await_list(self, current, expected):
        try:
            wait_until(lambda: len(current()) >= len(expected), DEADLINE, "the list")
        finally:
            self.assertEqual(expected, current())

    def reads(self, *patterns):
        """The log has lines with these patterns, in this order, since the last call."""
        self.release()
        for pattern in patterns:
            self.walk.wait_for(pattern, self._read)
            lines = self.walk.set.log.read()
            self._read = next(number for number in range(self._read, len(lines))
                              if re.search(pattern, lines[number])) + 1

    def ends(self, status=0, screens=None):
        """The program ends, notifies the daemon, and deletes its SCREENS, without a sound."""
        self.release()
        self.walk.end(expected=status)
        self.reads(r"calling Terminate", r"Decreasing Vconf", "ZOLT GUI application: Closing")
        self.asks("applicationCancelled")
        self.assertEqual([], self.sounds())
        if screens is not None:
            self.assertEqual(screens, self.walk.set.log.count(r"Called .*GUI::Screen::~Screen\("))

    def counter_lines(self):
        """The log lines about the screensaver counter."""
        return [line.rsplit("> ", 1)[1] for line in self.walk.set.log.read()
                if "Vconf" in line or "vconf is" in line]

    def told(self, name):
        """The log of the whole run equals the reference log NAME."""
        lines = golden_log.lines_of(self.walk.set.log.read(), self.walk.set.folder.path)
        difference = golden_log.differences(name, lines)
        self.assertFalse(difference, difference)

    # --- steps that several flows share

    def quits(self, **end):
        """The pressed button ends the program; END as for ends()."""
        # Before the key is released: the program may end before it gets that event.
        self.walk.set.wait_for_log("quitRequested", self._read, DEADLINE)
        self.reads("quitRequested")
        wait_until(lambda: self.sounds(), DEADLINE, "the click")
        self.assertEqual(SELECT, self.sounds()[0])
        self._heard += 1
        self.ends(**end)

    def to_the_search(self, depth=1):
        """From the menu of an unregistered set, the DEPTHth window, to the search in the local network."""
        self.press("Down")
        self.sees(focus="Use existing registration")
        self.hears(MOVE)
        self.press("Return")
        self.sees(title="MainMenuUnregisteredScreen", depth=depth, buttons=[], focus=None,
                  popup=["Searching for a registration.\nPlease wait."])
        self.asks("requestShopInfoList")
        self.hears(SELECT, POPUP)

    def to_the_pin_request(self, depth=2):
        """From the menu of an unregistered set to the screen that waits for a PIN, the DEPTHth window."""
        self.press("Return")
        self.sees(title="PinRequesting", depth=depth, buttons=[], popup=None, focus=None,
                  words=["Connecting to the server…", "Please wait."])
        self.asks("requestPincode")
        self.hears(SELECT)

    def to_the_pin(self, depth=2):
        """The same, up to the PIN."""
        self.to_the_pin_request(depth)
        self.event("0 0")
        self.sees(title="PinDisplaying", depth=depth + 1, buttons=["Cancel*!"], popup=None,
                  words=["48201573", "Not registered"])
        self.asks("checkShopRegistration", "getPincode", "requestPincodeVerification")
        self.hears(MOVE)

    def to_the_list_of_a_pin(self, depth=2):
        """The same, up to the popup that waits for the list."""
        self.to_the_pin(depth)
        self.event("0 1")
        self.sees(title="PinDisplaying", popup=["Connecting to the server…"], buttons=[], focus=None)
        self.asks("requestShopInfoList")
        self.hears(POPUP)

    def to_the_first_list(self, depth):
        """From a popup that waits for the list to the list screen, the DEPTHth window."""
        self.event("0 2")
        self.sees(title="ShopListScreen", depth=depth, buttons=["Select*!", "Next"], popup=None,
                  words=["Chain"])
        self.asks("getShopInfoList", "getRegisteredShopInfo")
        self.hears()

    def change(self):
        """From the menu of a registered set to the new menu above it. The popup below remains, with
        unreachable buttons."""
        self.press("Return")
        self.sees(title="MainMenuRegisteredWindow", depth=1, focus="OK", buttons=["OK*!", "Cancel*"],
                  popup=["Do you want to change the registration?\n"
                         "The current registration will be deleted."])
        self.hears(SELECT, POPUP, MOVE)
        self.press("Return")
        self.sees(buttons=["OK", "Cancel"], focus=None)
        self.asks("deleteRegistrationInfo")
        self.hears(SELECT, MOVE)
        self.event("0 12")
        self.sees(title="MainMenuUnregisteredScreen", depth=2, buttons=UNREGISTERED_MENU, popup=None)
        self.assertIsNotNone(self.popup_below())
        self.hears()
        self.assertFalse(os.path.exists(self.walk.set.folder.file("data", "registered")))

    def popup_below(self):
        """The popup on the old menu below, after a change, or None."""
        screen = self.screen()
        return screen.popup_of([window.text for window in screen.windows].index(
            "MainMenuRegisteredWindow"))

    def choose_down_to_the_confirmation(self, depth):
        """From the first list screen, which is DEPTH windows deep, to the confirmation. A sixth screen
        ends the oldest, silently."""
        self.pick("Halden Electric", "Brightwell Vision", "Orchard TV Centre")
        self.sees(buttons=["Halden Electric*", "Next*!"], popup=None)
        self.press("Return")
        self.sees(title="ShopListScreen", depth=min(depth + 1, 5),
                  buttons=["Select*!", "Previous*", "Next"], words=["Shop", "Halden Electric"])
        self.asks("getRegisteredShopInfo")
        self.hears(SELECT)
        self.pick("Camden High Street", "Market Street", "Princes Street", "Queen Street")
        self.sees(buttons=["Camden High Street*", "Previous*", "Register*!"], popup=None)
        self.press("Return")
        self.sees(title="RegistrationInfoScreen", depth=min(depth + 2, 5),
                  buttons=["Previous*", "Register*!"], popup=None,
                  words=["Chain :", "Halden Electric", "Shop :", "Camden High Street",
                         "Shop code :", "0101"])
        self.hears(SELECT)

    def pick(self, *rows):
        """Opens the drop-down, which must offer ROWS, and confirms the first."""
        self.press("Return")
        self.sees(rows=list(rows), focus=rows[0], buttons=["OK", "Cancel*"])
        self.hears(SELECT, POPUP)
        self.press("Return")
        self.sees(buttons=["OK*!", "Cancel*"])
        self.hears(SELECT, MOVE)
        self.press("Return")
        self.sees(popup=None)
        self.hears(SELECT, MOVE)

    def register_and_quit(self):
        """From the confirmation to the end of the program: the daemon gets what was shown."""
        shown = self.screen().window.words
        self.press("Return")
        self.sees(popup=["Connecting to the server…"], buttons=[], focus=None)
        self.asks("requestRegistrationShopInfo")
        document = ElementTree.fromstring(received_document(self.walk.set))
        for level in document.iter("list"):
            self.assertIn(f"{level.get('name')} :", shown)
            self.assertIn(level.find("sub_list").get("name"), shown)
        self.assertIn(document.findall(".//sub_list")[-1].get("code"), shown)
        self.hears(SELECT, MOVE, POPUP)
        self.event("0 3")
        self.sees(popup=["Registration is complete.\nSee it under Registration information."],
                  buttons=["OK*!"], title="RegistrationInfoScreen")
        self.hears(MOVE, POPUP, MOVE)
        self.press("Return")
        self.quits()


class Flows(FlowCase):
    def test_a_new_registration_shows_a_pin_and_ends_registered(self):
        self.switch_on()
        self.to_the_list_of_a_pin()
        self.to_the_first_list(depth=4)
        self.choose_down_to_the_confirmation(4)
        self.register_and_quit()
        self.told("new")
        self.assertTrue(os.path.exists(self.walk.set.folder.file("data", "registered")))

    def test_an_existing_registration_is_found_in_the_local_network(self):
        self.switch_on()
        self.to_the_search()
        self.to_the_first_list(depth=2)
        self.choose_down_to_the_confirmation(2)
        self.register_and_quit()
        self.told("existing")

    def test_the_registration_can_be_looked_at_and_left_again(self):
        self.switch_on(registered=True)
        self.press("Down")
        self.sees(focus="Deregister")
        self.press("Down")
        self.sees(focus="Registration information")
        self.hears(MOVE, MOVE)
        self.press("Return")
        self.sees(title="RegistrationInfoScreen", depth=2, buttons=["OK*!"], popup=None,
                  words=["Chain :", "Halden Electric", "Shop :", "Camden High Street", "Shop code :",
                         "0101"])
        self.asks("getRegisteredShopInfo")
        self.hears()
        self.press("Return")
        self.sees(title="MainMenuRegisteredWindow", depth=1, focus="Registration information")
        self.hears(SELECT)
        self.press("Down")
        self.sees(focus="Cancel")
        self.reads("goBackRequested", "We have some back screen history - let's return back")
        self.hears(MOVE)
        self.press("Return")
        self.quits()
        self.told("information")

    def test_a_change_deletes_the_registration_and_shows_a_new_menu_above_the_old(self):
        self.switch_on(registered=True)
        self.change()
        self.to_the_search(depth=2)
        self.assertIsNone(self.popup_below(), "the blocked popup goes")
        self.to_the_first_list(depth=3)
        self.choose_down_to_the_confirmation(3)
        self.register_and_quit()
        self.told("change")
        self.assertTrue(os.path.exists(self.walk.set.folder.file("data", "registered")))

    def test_a_change_goes_on_with_a_pin_above_both_menus(self):
        self.switch_on(registered=True)
        self.change()
        self.to_the_list_of_a_pin(depth=3)
        self.assertIsNone(self.popup_below(), "the blocked popup goes")
        self.to_the_first_list(depth=5)
        self.choose_down_to_the_confirmation(5)
        self.register_and_quit()
        self.told("change-with-a-pin")

    def test_a_question_can_be_declined_with_cancel(self):
        for name, menu, steps, question in (
                ("declined-change", "Change registration", 0,
                 "Do you want to change the registration?\n"
                 "The current registration will be deleted."),
                ("declined-deregistration", "Deregister", 1, "Do you want to deregister this TV?")):
            with self.subTest(menu):
                self.switch_on(registered=True)
                self.go_down(steps, menu)
                self.press("Return")
                self.sees(popup=[question], focus="OK", depth=1)
                self.hears(SELECT, POPUP, MOVE)
                self.press("Right")
                self.sees(focus="Cancel", buttons=["OK*", "Cancel*!"])
                self.hears(MOVE)
                self.press("Return")
                self.sees(popup=None, depth=1, focus=menu,
                          buttons=[text.rstrip("!") + "!" * text.startswith(menu)
                                   for text in REGISTERED_MENU])
                self.reads("Called .*popupHideRequested", "Called .*Screen::destroyPopup")
                self.asks()
                self.hears(SELECT)
                self.go_down(3 - steps, "Cancel")
                self.press("Return")
                self.quits(screens=1)
                self.told(name)
                self.assertTrue(os.path.exists(self.walk.set.folder.file("data", "registered")))

    def test_a_deregistration_ends_the_program_with_a_popup(self):
        self.switch_on(registered=True)
        self.press("Down")
        self.sees(focus="Deregister")
        self.press("Return")
        self.sees(popup=["Do you want to deregister this TV?"], focus="OK", buttons=["OK*!", "Cancel*"])
        self.hears(MOVE, SELECT, POPUP, MOVE)
        self.press("Return")
        self.sees(buttons=["OK", "Cancel"], focus=None)
        self.asks("unregister")
        self.hears(SELECT, MOVE)
        self.event("0 4")
        self.sees(popup=["This TV has been deregistered."], buttons=["OK*!"], depth=1)
        self.hears(POPUP, MOVE)
        self.assertFalse(os.path.exists(self.walk.set.folder.file("data", "registered")))
        self.press("Return")
        self.quits()
        self.told("deregister")

    def go_down(self, steps, place):
        """From the first button of a menu to the one at index PLACE."""
        for _ in range(steps):
            self.press("Down")
            self.hears(MOVE)
        self.sees(focus=place)

    def test_cancel_on_either_menu_quits(self):
        for registered, steps, name in ((False, 2, "cancel"), (True, 3, "cancel-registered")):
            with self.subTest(registered):
                self.switch_on(registered=registered)
                self.go_down(steps, "Cancel")
                self.press("Return")
                self.quits(screens=1)
                self.told(name)

    def test_both_requests_of_the_daemon_to_close_end_the_program_without_a_popup(self):
        for reason in (10, 11):
            with self.subTest(reason):
                self.switch_on(requestPincodeVerification={"outcome": f"1/{reason}"})
                self.to_the_pin()
                self.event(f"1 {reason}")
                self.reads(rf"callbackManager called \(Event: 1; Reason: {reason}\)")
                self.ends(screens=3)
                self.told(f"close-{reason}")

    def test_a_request_of_the_daemon_to_close_works_while_a_popup_is_shown(self):
        for reason in (10, 11):
            with self.subTest(reason):
                self.switch_on(requestShopInfoList={"outcome": f"1/{reason}"})
                self.to_the_search()
                self.event(f"1 {reason}")
                self.reads(rf"callbackManager called \(Event: 1; Reason: {reason}\)")
                self.ends(screens=1)


class Failures(FlowCase):
    """Each failure reason during each request to the daemon."""

    SHOPS = "one-shop"

    def fails(self, method, to_the_moment, name, heard, registered=False):
        """The request METHOD fails. HEARD are the sounds of the failure, and NAME is the reference log of the
        first run."""
        for reason, text in FAILURES.items():
            with self.subTest(reason):
                self.switch_on(registered=registered, **{method: {"outcome": f"1/{reason}"}})
                to_the_moment()
                before = self.screen()
                self.event(f"1 {reason}")
                self.sees(title=before.window.text, depth=len(before.windows), popup=[text],
                          buttons=["OK*!"])
                self.reads(rf"callbackManager called \(Event: 1; Reason: {reason}\)",
                           "showNetworkFailurePopup")
                self.asks()
                self.hears(*heard)
                self.press("Return")
                self.quits(screens=len(before.windows))
                if reason == min(FAILURES):
                    self.told(name)

    def to_the_registration(self):
        self.to_the_search()
        self.event("0 2")
        self.sees(title="RegistrationInfoScreen", focus="Register")
        self.asks("getShopInfoList")
        self.hears(MOVE)
        self.press("Return")
        self.sees(popup=["Connecting to the server…"])
        self.asks("requestRegistrationShopInfo")
        self.hears(SELECT, MOVE, POPUP)

    def to_the_deregistration(self):
        self.press("Down")
        self.sees(focus="Deregister")
        self.press("Return")
        self.sees(focus="OK")
        self.hears(MOVE, SELECT, POPUP, MOVE)
        self.press("Return")
        self.sees(buttons=["OK", "Cancel"])
        self.asks("unregister")
        self.hears(SELECT, MOVE)

    def to_the_deletion(self):
        self.press("Return")
        self.sees(focus="OK")
        self.hears(SELECT, POPUP, MOVE)
        self.press("Return")
        self.sees(buttons=["OK", "Cancel"])
        self.asks("deleteRegistrationInfo")
        self.hears(SELECT, MOVE)

    def to_the_pin_of_a_change(self):
        self.change()
        self.to_the_pin_request(depth=3)
        self.assertIsNone(self.popup_below())

    def to_the_search_of_a_change(self):
        self.change()
        self.to_the_search(depth=2)

    def test_while_a_pin_is_requested(self):
        self.fails("requestPincode", self.to_the_pin_request, "failure-pin", [POPUP, MOVE])

    def test_while_a_pin_waits_for_its_verification(self):
        self.fails("requestPincodeVerification", self.to_the_pin, "failure-verification",
                   [POPUP, MOVE])

    def test_while_the_shops_are_fetched_after_a_pin(self):
        self.fails("requestShopInfoList", self.to_the_list_of_a_pin, "failure-list",
                   [POPUP, MOVE])

    def test_while_the_local_network_is_searched(self):
        self.fails("requestShopInfoList", self.to_the_search, "failure-search",
                   [POPUP, MOVE])

    def test_while_a_registration_is_sent(self):
        self.fails("requestRegistrationShopInfo", self.to_the_registration, "failure-registration",
                   [MOVE, POPUP, MOVE])

    def test_while_the_registration_is_ended(self):
        self.fails("unregister", self.to_the_deregistration, "failure-deregistration",
                   [POPUP, MOVE], registered=True)

    def test_while_the_registration_is_deleted_for_a_change(self):
        self.fails("deleteRegistrationInfo", self.to_the_deletion, "failure-deletion",
                   [POPUP, MOVE], registered=True)

    def test_while_a_pin_is_requested_in_a_change(self):
        self.fails("requestPincode", self.to_the_pin_of_a_change, "failure-pin-of-a-change",
                   [POPUP, MOVE], registered=True)

    def test_while_the_local_network_is_searched_in_a_change(self):
        self.fails("requestShopInfoList", self.to_the_search_of_a_change,
                   "failure-search-of-a-change", [POPUP, MOVE], registered=True)

    def test_a_failure_popup_that_nobody_closes_ends_the_program_after_a_minute(self):
        self.switch_on(requestPincode={"outcome": "1/6"})
        self.to_the_pin_request()
        self.event("1 6")
        self.sees(popup=[FAILURES[6]], buttons=["OK*!"])
        self.hears(POPUP, MOVE)
        self.reads("showNetworkFailurePopup")
        # A widget test checks the popup's sixty seconds.
        self.walk.set.control("advance", "20")
        self.walk.set.rest()
        self.assertIsNone(self.walk.set.log.find("quitRequested"))
        self.walk.set.control("advance", "40")
        self.quits(screens=2)


if __name__ == "__main__":
    unittest.main(verbosity=2)
