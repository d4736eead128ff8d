# SPDX-License-Identifier: Apache-2.0
"""Every key of the remote control on every screen and popup of a whole set: where the focus goes, which
sounds are played, and that other keys do nothing."""

import os
import signal
import unittest

from set_case import DEADLINE

from flows_test import BACK, BLOCKED, MOVE, POPUP, REGISTERED_MENU, SELECT, FlowCase
from processes import SetError, wait_until

ARROWS = ("Up", "Down", "Left", "Right")
RETURN_KEYS = ("Escape", "XF86Close")
IDLE_KEYS = ("5", "XF86Red", "XF86HomePage", "x")
SCROLLER = "(scroller)"
KEY_SEEN = r"Called .*EventHandler::(onKeyPress|selectionPopupListOnKeyPress)\("
CONNECTING = "Connecting to the server…"
SEARCHING = "Searching for a registration.\nPlease wait."


class Ways(FlowCase):
    """How to reach each screen and popup: at_NAME starts a set, goes there, and checks all sounds and calls
    on the way."""

    def at(self, place, *arguments):
        getattr(self, "at_" + place)(*arguments)

    def go(self, keys, *sounds, **seen):
        """Presses KEYS, with "+" between those of one frame, waits until the screen is as expected, and
        checks that exactly SOUNDS were played."""
        try:
            if "+" in keys:
                self.press_at_once(*keys.split("+"))
            elif keys in RETURN_KEYS:  # work when they are released
                self.walk.set.remote.press(keys)
            else:
                self.press(keys)
            self.sees(**seen)
            self.hears(*sounds)
        except (AssertionError, SetError) as error:
            raise AssertionError(f"{keys}: {error}") from error

    def press_at_once(self, *keys):
        """Presses and releases KEYS while the program is stopped, so that it gets them all at once."""
        self.release()
        program = self.walk.set.program.process.pid
        os.kill(program, signal.SIGSTOP)
        try:
            self.walk.set.remote.press(*keys)
        finally:
            os.kill(program, signal.SIGCONT)

    def press_idle_keys(self):
        """Presses keys that the program does not use. The checks of the next step show that they did
        nothing."""
        self.release()
        self.walk.set.remote.press(*IDLE_KEYS)

    def at_menu(self):
        self.switch_on()

    def at_registered_menu(self):
        self.switch_on(registered=True)

    def at_pin_request(self, **scenario):
        self.switch_on(**scenario)
        self.to_the_pin_request()

    def at_pin(self):
        self.switch_on()
        self.to_the_pin()

    def at_loading_on_pin(self):
        self.switch_on()
        self.to_the_list_of_a_pin()

    def at_failure(self):
        self.at_pin_request(requestPincode={"outcome": "1/7"})
        self.event("1 7")
        self.sees(focus="OK", buttons=["OK*!"])
        self.hears(POPUP, MOVE)

    def at_loading_on_menu(self, **scenario):
        self.switch_on(**scenario)
        self.to_the_search()

    def at_list(self, **scenario):
        self.at_loading_on_menu(**scenario)
        self.to_the_first_list(depth=2)

    def at_rows(self):
        self.at_list()
        self.go("Return", SELECT, POPUP, focus="Halden Electric", buttons=["OK", "Cancel*"])

    def at_pick(self):
        self.at_rows()
        self.go("Return", SELECT, MOVE, buttons=["OK*!", "Cancel*"])

    def at_cancel_of_a_pick(self):
        self.at_pick()
        self.go("Right", MOVE, buttons=["OK*", "Cancel*!"])

    def at_choice(self):
        self.at_pick()
        self.go("Return", SELECT, MOVE, popup=None, buttons=["Halden Electric*", "Next*!"])

    def at_rows_again(self):
        self.at_choice()
        self.go("Up", MOVE, focus="Halden Electric")
        self.go("Return", SELECT, SELECT, MOVE, focus="Halden Electric", buttons=["OK*", "Cancel*"])

    def at_lower_list(self):
        self.at_choice()
        self.go("Return", SELECT, depth=3, buttons=["Select*!", "Previous*", "Next"])
        self.asks("getRegisteredShopInfo")

    def at_lower_choice(self):
        self.at_lower_list()
        self.go("Return", SELECT, POPUP, focus="Camden High Street")
        self.go("Return", SELECT, MOVE, focus="OK")
        self.go("Return", SELECT, MOVE, popup=None,
                buttons=["Camden High Street*", "Previous*", "Register*!"])

    def at_confirmation(self):
        self.at_lower_choice()
        self.go("Return", SELECT, title="RegistrationInfoScreen", depth=4,
                buttons=["Previous*", "Register*!"])

    def at_only_shop(self):
        self.at_loading_on_menu(daemon={"shops": "one-shop"})
        self.event("0 2")
        self.sees(title="RegistrationInfoScreen", depth=2, buttons=["Register*!"])
        self.asks("getShopInfoList")
        self.hears(MOVE)

    def at_loading_on_confirmation(self):
        self.at_confirmation()
        self.go("Return", SELECT, MOVE, POPUP, popup=[CONNECTING], focus=None, buttons=[])
        self.asks("requestRegistrationShopInfo")

    def at_completion(self):
        self.at_loading_on_confirmation()
        self.event("0 3")
        self.sees(title="RegistrationInfoScreen", focus="OK", buttons=["OK*!"])
        self.hears(MOVE, POPUP, MOVE)

    def at_information(self):
        self.at_registered_menu()
        self.go("Down", MOVE, focus="Deregister")
        self.go("Down", MOVE, focus="Registration information")
        self.go("Return", title="RegistrationInfoScreen", depth=2, buttons=["OK*!"])
        self.asks("getRegisteredShopInfo")

    def at_rows_of_information(self):
        self.at_information()
        self.go("Up", focus=SCROLLER)

    def at_question(self):
        self.at_registered_menu()
        self.go("Return", SELECT, POPUP, MOVE, buttons=["OK*!", "Cancel*"])

    def at_deregistration(self):
        self.at_registered_menu()
        self.go("Down", MOVE, focus="Deregister")
        self.go("Return", SELECT, POPUP, MOVE, buttons=["OK*!", "Cancel*"])

    def at_cancel_of_a_question(self):
        self.at_deregistration()
        self.go("Right", MOVE, buttons=["OK*", "Cancel*!"])

    def at_blocked_question(self):
        self.at_deregistration()
        self.go("Return", SELECT, MOVE, buttons=["OK", "Cancel"], focus=None)
        self.asks("unregister")

    def at_deregistered(self):
        self.at_blocked_question()
        self.event("0 4")
        self.sees(popup=["This TV has been deregistered."], buttons=["OK*!"])
        self.hears(POPUP, MOVE)

    def at_new_menu(self):
        self.at_question()
        self.go("Return", SELECT, MOVE, buttons=["OK", "Cancel"], focus=None)
        self.asks("deleteRegistrationInfo")
        self.event("0 12")
        self.sees(title="MainMenuUnregisteredScreen", depth=2, focus="New registration")
        self.hears()


class Reach(Ways):
    """The arrows reach everything that can be pressed, and leave it again."""

    def step(self, arrow):
        """Presses and releases ARROW; returns what has the focus then and the sounds."""
        seen = self.walk.set.log.count(KEY_SEEN)
        before = self.screen().focus
        self.walk.set.remote.press(arrow)

        def over():
            # A scroller handles a key-down event, all other widgets a key-up event.
            heard = self.walk.set.log.count(KEY_SEEN) - seen
            there = self.screen().focus
            if before == SCROLLER:
                return heard >= (1 if there == SCROLLER else 2)
            return heard >= 1 or there == SCROLLER

        wait_until(over, DEADLINE, "the end of the key")
        heard = self.sounds()
        self._heard += len(heard)
        return self.screen().focus, heard

    def explore(self):
        """Where each arrow leads from each widget that can have the focus: a map of maps."""
        self.step("Up")  # what was lost before is taken up by the first key
        here = self.screen().focus
        ways = {here: {}}
        while True:
            route = self.route(ways, here, lambda place: len(ways[place]) < len(ARROWS))
            if route is None:
                return ways
            for arrow in route:
                here, _ = self.step(arrow)
            arrow = next(arrow for arrow in ARROWS if arrow not in ways[here])
            there, heard = self.step(arrow)
            if SCROLLER not in (here, there):
                self.assertEqual([MOVE] if there != here else [BLOCKED], heard, f"{arrow} on {here}")
            ways[here][arrow] = there
            ways.setdefault(there, {})
            here = there

    @staticmethod
    def route(ways, start, fits):
        """The arrows that lead from START to the nearest place that FITS, or None."""
        routes = {start: []}
        queue = [start]
        while queue:
            place = queue.pop(0)
            if fits(place):
                return routes[place]
            for arrow, there in ways[place].items():
                if there not in routes:
                    routes[there] = routes[place] + [arrow]
                    queue.append(there)
        return None

    def assert_all_in_reach(self, *places):
        ways = self.explore()
        self.assertEqual(set(places), set(ways))
        for start in places:
            for goal in places:
                found = self.route(ways, start, lambda place, goal=goal: place == goal)
                self.assertIsNotNone(found, f"from {start} to {goal}")
                self.assertLessEqual(len(found), 6, f"from {start} to {goal}")

    def in_reach(self, table):
        for place, names in table.items():
            with self.subTest(place):
                self.at(place)
                self.assert_all_in_reach(*names)

    def test_on_the_menus(self):
        new = ("New registration", "Use existing registration", "Cancel")
        tied = ("Change registration", "Deregister", "Registration information", "Cancel")
        self.in_reach({"menu": new, "registered_menu": tied, "new_menu": new})

    def test_on_popups(self):
        both = ("OK", "Cancel")
        self.in_reach({"question": both, "deregistration": both, "deregistered": ("OK",),
                       "failure": ("OK",), "completion": ("OK",)})

    def test_on_the_pin_and_the_information(self):
        self.in_reach({"pin": ("Cancel",), "information": ("OK", SCROLLER),
                       "only_shop": ("Register", SCROLLER),
                       "confirmation": ("Previous", "Register", SCROLLER)})

    def test_on_the_lists(self):
        self.in_reach({"list": ("Select",), "choice": ("Halden Electric", "Next"),
                       "lower_list": ("Select", "Previous"),
                       "lower_choice": ("Camden High Street", "Previous", "Register")})

    def test_on_the_rows_of_a_list(self):
        rows = ("Halden Electric", "Brightwell Vision", "Orchard TV Centre")
        self.in_reach({"rows": (*rows, "Cancel"), "pick": (*rows, "OK", "Cancel"),
                       "rows_again": (*rows, "OK", "Cancel")})


class ReturnKeys(Ways):
    """Back and Close, after keys that do nothing."""

    def ends_with(self, key, *expected):
        self.press_idle_keys()
        self.press(key)
        self.reads(*(["return button pressed", "quit is requested"] if BACK in expected else []),
                   "Called .*quitRequested")
        wait_until(lambda: len(self.sounds()) >= len(expected), DEADLINE, "the sounds")
        self.assertEqual(list(expected), self.sounds()[:len(expected)])
        self._heard += len(expected)
        self.ends()

    def both_end(self, *places, back=(BACK, SELECT)):
        for place in places:
            for key, sounds in (("Escape", back), ("XF86Close", (BACK, SELECT))):
                with self.subTest(place=place, key=key):
                    self.at(place)
                    self.ends_with(key, *sounds)

    def test_on_the_menus_and_the_pin_both_end_the_program(self):
        self.both_end("menu", "registered_menu", "new_menu", "pin")

    def test_on_the_list_screen_both_end_the_program(self):
        # The third place has a hidden popup.
        self.both_end("list", "lower_list", "choice")

    def test_on_the_confirmation_and_the_information_both_end_the_program(self):
        self.both_end("confirmation", "only_shop", "information", "rows_of_information")

    def test_on_a_popup_of_one_button_both_end_the_program(self):
        # Back is passed on from the button to the popup, which handles it as a "no".
        self.both_end("failure", "deregistered", "completion", back=(BACK, SELECT, SELECT))

    def test_while_a_pin_is_requested_only_back_ends_the_program(self):
        self.at_pin_request()
        self.press_idle_keys()
        self.press("XF86Close")
        self.ends_with("Escape", SELECT)
        self.assertEqual(0, self.walk.set.log.count("return button pressed"))

    def test_back_closes_a_question_and_close_does_not(self):
        for place, steps in (("question", 0), ("deregistration", 1), ("cancel_of_a_question", 1)):
            with self.subTest(place):
                menu = REGISTERED_MENU[steps].rstrip("*!")
                self.at(place)
                before = self.screen()
                self.press_idle_keys()
                self.go("XF86Close", BACK, focus=before.focus, popup=before.popup.words)
                self.press_idle_keys()
                self.go("Escape", BACK, SELECT, popup=None, depth=1, focus=menu)
                self.reads("just go to its popup OnKeyPress", "just go to its popup OnKeyPress",
                           "Called .*popupHideRequested")
                self.asks()
                self.ends_with("Escape", BACK, SELECT)

    def test_back_closes_a_question_whose_request_runs(self):
        self.at_blocked_question()
        self.press_idle_keys()
        # Its buttons cannot be pressed any more.
        self.go("Return", buttons=["OK", "Cancel"], focus=None)
        self.go("XF86Close", BACK, buttons=["OK", "Cancel"], focus=None)
        self.go("Down", BLOCKED, buttons=["OK", "Cancel"], focus=None)
        self.go("Escape", BACK, SELECT, popup=None, depth=1, focus="Deregister")
        self.asks()
        # The result of the request is still shown.
        self.event("0 4")
        self.sees(popup=["This TV has been deregistered."], buttons=["OK*!"])

    def test_both_leave_the_rows_of_a_list_and_keep_what_was_chosen(self):
        for key in ("Escape", "XF86Close"):
            with self.subTest(key):
                self.at_rows()
                self.press_idle_keys()
                self.go(key, SELECT, popup=None, buttons=["Select*!", "Next"])
                self.reads("popup hide called", "Called .*popupHideRequested")
                self.asks()
                self.ends_with("Escape", BACK, SELECT)

    def test_back_leaves_the_buttons_of_a_list_and_close_does_not(self):
        for place in ("pick", "cancel_of_a_pick"):
            with self.subTest(place):
                self.at(place)
                focus = self.screen().focus
                self.press_idle_keys()
                self.go("XF86Close", BACK, focus=focus)
                self.press_idle_keys()
                self.go("Escape", BACK, SELECT, popup=None, buttons=["Select*!", "Next"])
                self.asks()
                self.ends_with("Escape", BACK, SELECT)

    def test_each_way_to_leave_a_list_that_was_opened_again_keeps_the_focus_visible(self):
        chosen = {"buttons": ["Halden Electric*!", "Next*"], "popup": None}
        to_ok = ("Return", SELECT, MOVE), {"focus": "OK"}
        to_the_other = [(("Down", MOVE), {"focus": "Brightwell Vision"}), to_ok]
        to_cancel = ("Right", MOVE), {"focus": "Cancel"}
        cancels = ("Return", SELECT, MOVE, MOVE), chosen
        confirm = "Return", SELECT, MOVE, MOVE, MOVE
        for way, steps in {
            # The list, which stays this time, passes the key on to the popup.
            "back": [(("Escape", SELECT, MOVE, MOVE, SELECT), chosen)],
            "close": [(("XF86Close", SELECT, MOVE, MOVE), chosen)],
            "cancel": [(("Right", MOVE), {"focus": "OK"}), to_cancel, cancels],
            "back from the button": [(("Right", MOVE), {"focus": "OK"}),
                                     (("Escape", BACK, SELECT, MOVE, MOVE), chosen)],
            "cancel of another row": [*to_the_other, to_cancel, cancels],
            "the same row": [to_ok, (confirm, {"buttons": ["Halden Electric*", "Next*!"]})],
            "another row": [*to_the_other, (confirm, {"buttons": ["Brightwell Vision*", "Next*!"]})],
        }.items():
            with self.subTest(way):
                self.at_rows_again()
                for press, seen in steps:
                    self.go(*press, **seen)
                self.asks()
                self.ends_with("Escape", BACK, SELECT)

    def test_a_loading_popup_ignores_keys(self):
        for place in ("loading_on_menu", "loading_on_pin", "loading_on_confirmation"):
            with self.subTest(place):
                self.at(place)
                before = self.screen()
                for key in ("Escape", "XF86Close", "Return", "Up", *IDLE_KEYS):
                    self.press(key)
                    if key not in IDLE_KEYS:
                        self.reads("Return on Key Press for Loading Popup")
                self.sees(title=before.window.text, depth=len(before.windows),
                          popup=before.popup.words, buttons=[], focus=None)
                self.asks()
                self.hears()


class Together(Ways):
    """Two keys in one frame, and keys that are held."""

    def both(self, place, keys, *sounds, asked=(), **seen):
        with self.subTest(place=place, keys=keys):
            self.at(place)
            self.go(keys, *sounds, **seen)
            self.asks(*asked)
            self.sees(**seen)

    def test_two_keys_in_one_frame_are_both_handled(self):
        self.both("registered_menu", "Down+Down", MOVE, MOVE, focus="Registration information")
        self.both("menu", "Down+Return", MOVE, SELECT, POPUP, popup=[SEARCHING],
                  asked=["requestShopInfoList"])
        self.both("deregistration", "Right+Return", MOVE, SELECT, popup=None,
                  focus="Deregister")
        # The question gets the focus only once it is drawn, and its button makes no sound before.
        self.both("registered_menu", "Return+Escape", SELECT, POPUP, SELECT, popup=None,
                  focus="Change registration")
        self.both("deregistration", "Return+Escape", SELECT, MOVE, BACK, SELECT, popup=None,
                  focus="Deregister", asked=["unregister"])
        self.both("list", "Return+Escape", SELECT, POPUP, SELECT, popup=None,
                  buttons=["Select*!", "Next"])

    def test_what_was_pressed_twice_in_one_frame_happens_once(self):
        self.both("menu", "Return+Return", SELECT, title="PinRequesting", depth=2,
                  asked=["requestPincode"])
        self.both("deregistration", "Return+Return", SELECT, MOVE, buttons=["OK", "Cancel"],
                  focus=None, asked=["unregister"])
        self.both("confirmation", "Return+Return", SELECT, MOVE, POPUP, popup=[CONNECTING],
                  asked=["requestRegistrationShopInfo"])
        self.both("list", "Return+Return", SELECT, POPUP, focus="Halden Electric")
        self.both("information", "Return+Return", SELECT, depth=1,
                  focus="Registration information")

    def hold(self, key, **seen):
        """Holds KEY until the screen is as expected, and for a while longer."""
        self.release()
        self.walk.set.remote.repeat(True)
        self.walk.set.remote.down(key)
        self.sees(**seen)
        for _ in range(5):
            self.walk.set.remote.down(key)
        self.walk.set.remote.up(key)
        self.walk.set.remote.repeat(False)

    def test_a_held_arrow_goes_to_the_end_of_a_menu_and_stays_there(self):
        for place, steps in (("menu", 2), ("registered_menu", 3)):
            with self.subTest(place):
                self.at(place)
                first = self.screen().focus
                for key, end in (("Down", "Cancel"), ("Up", first)):
                    self.hold(key, focus=end)
                    # A held key is released only once, after something has moved.
                    self.hears(*[MOVE] * steps)
                    self.go(key, BLOCKED, focus=end)

    def test_a_held_arrow_goes_to_the_last_row_of_a_long_list_and_no_further(self):
        rows = "".join(f'<sub_list name="Town {number}" code="{number}"/>\n' for number in range(10, 50))
        path = self.write("towns.xml", '<rsp stat="ok">\n<list level="1" name="Chain" is_fix="N" '
                                       f'is_sub="N">\n{rows}</list>\n</rsp>')
        self.at_list(getShopInfoList={"reply-file": path})
        # A first entry without children is not offered.
        self.go("Return", SELECT, POPUP, focus="Town 11")
        self.hold("Down", focus="Town 49")
        self.hears(MOVE)
        self.go("Down", BLOCKED, focus="Town 49", buttons=["OK", "Cancel*"])
        self.go("Up", MOVE, focus="Town 48")
        self.go("Up", MOVE, focus="Town 47")

    def test_held_back_on_a_question_closes_only_that(self):
        self.at_deregistration()
        self.hold("Escape", buttons=["OK*!", "Cancel*"])
        self.hears(BACK, SELECT)
        self.sees(popup=None, focus="Deregister", depth=1)
        self.asks()

    def test_held_ok_on_a_question_sends_one_request(self):
        for place, call in (("deregistration", "unregister"), ("question", "deleteRegistrationInfo")):
            with self.subTest(place):
                self.at(place)
                self.hold("Return", buttons=["OK", "Cancel"], focus=None)
                self.hears(SELECT, MOVE)
                self.go("Down", BLOCKED, buttons=["OK", "Cancel"], focus=None)
                self.asks(call)


class Previous(Ways):
    def test_previous_goes_level_by_level_to_the_first_one(self):
        self.at_confirmation()
        self.go("Left", MOVE, focus="Previous")
        self.go("Return", SELECT, title="ShopListScreen", depth=5,
                buttons=["Select*!", "Previous*", "Next"], words=["Shop", "Halden Electric"])
        self.asks("getRegisteredShopInfo")
        self.go("Down", MOVE, focus="Previous")
        self.go("Return", SELECT, title="ShopListScreen", depth=5,
                buttons=["Select*!", "Next"], words=["Chain"])
        self.asks("getRegisteredShopInfo")
        self.go("Return", SELECT, POPUP, focus="Halden Electric")


class Rows(Ways):
    """The arrows in the list of a drop-down."""

    def test_they_move_from_row_to_row_and_to_the_buttons_and_back(self):
        self.at_rows()
        for key, sound, focus in (
                ("Up", BLOCKED, "Halden Electric"), ("Left", BLOCKED, "Halden Electric"),
                ("Right", MOVE, "Cancel"), ("Right", BLOCKED, "Cancel"), ("Down", BLOCKED, "Cancel"),
                ("Up", MOVE, "Halden Electric"), ("Down", MOVE, "Brightwell Vision"),
                ("Down", MOVE, "Orchard TV Centre"), ("Down", BLOCKED, "Orchard TV Centre"),
                ("Up", MOVE, "Brightwell Vision"), ("Up", MOVE, "Halden Electric"),
                ("Up", BLOCKED, "Halden Electric")):
            self.go(key, sound, focus=focus)

    def test_a_list_without_rows_can_be_left(self):
        path = self.write("empty.xml", '<rsp stat="ok"><list level="1" name="Chain" is_fix="N" '
                                       'is_sub="N"></list></rsp>')
        self.at_list(getShopInfoList={"reply-file": path})
        self.go("Return", SELECT, POPUP, rows=[], buttons=["OK", "Cancel*"])
        self.go("Right", MOVE, focus="Cancel")
        self.go("Return", SELECT, popup=None, buttons=["Select*!", "Next"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
