# SPDX-License-Identifier: Apache-2.0
"""Every key of the remote control on every screen and popup of a whole set: where the focus goes, what is
heard, and what a key does that is not meant for the screen."""

import unittest

from set_case import DEADLINE

from flows_test import BACK, BLOCKED, MOVE, POPUP, REGISTERED_MENU, SELECT, FlowCase
from processes import wait_until

ARROWS = ("Up", "Down", "Left", "Right")
SCROLLER = "(scroller)"
KEY_SEEN = r"Called .*EventHandler::(onKeyPress|selectionPopupListOnKeyPress)\("


class Reach(FlowCase):
    """The arrows lead to everything that can be pressed and away from it again."""

    def step(self, arrow):
        """Presses and releases ARROW, and gives what has the focus then and what was heard."""
        seen = self.walk.set.log.count(KEY_SEEN)
        before = self.screen().focus
        self.walk.set.remote.press(arrow)

        def over():
            # What scrolls hears of a key that goes down, all else of one that comes up.
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
        """Where each arrow leads from each thing that has had the focus: a map of maps."""
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
    def route(ways, start, wanted):
        """The arrows that lead from START to the nearest place that is WANTED, or None."""
        routes = {start: []}
        queue = [start]
        while queue:
            place = queue.pop(0)
            if wanted(place):
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

    def to_the_list(self):
        self.to_the_search()
        self.event("0 2")
        self.sees(title="ShopListScreen", focus="Select")

    def to_the_lower_list(self):
        self.to_the_list()
        self.pick_first("Halden Electric")
        self.press("Return")
        self.sees(focus="Select", buttons=["Select*!", "Previous*", "Next"])

    def pick_first(self, name):
        self.press("Return")
        self.sees(focus=name)
        self.press("Return")
        self.sees(focus="OK")
        self.press("Return")
        self.sees(popup=None)

    def to_the_confirmation(self):
        self.to_the_lower_list()
        self.pick_first("Camden High Street")
        self.press("Return")
        self.sees(title="RegistrationInfoScreen", focus="Register")

    def settled(self):
        """Nothing that was begun makes a sound any more."""
        self.release()
        self.walk.set.camera.settled()
        self._heard += len(self.sounds())

    def test_on_the_menu_of_a_set_that_is_not_tied(self):
        self.switch_on()
        self.settled()
        self.assert_all_in_reach("New registration", "Use existing registration", "Cancel")

    def test_on_the_menu_of_a_set_that_is_tied(self):
        self.switch_on(registered=True)
        self.settled()
        self.assert_all_in_reach("Change registration", "Deregister", "Registration information",
                                 "Cancel")

    def test_on_a_question(self):
        self.switch_on(registered=True)
        self.press("Return")
        self.sees(focus="OK")
        self.settled()
        self.assert_all_in_reach("OK", "Cancel")

    def test_on_the_pin(self):
        self.switch_on()
        self.press("Return")
        self.sees(title="PinRequesting")
        self.event("0 0")
        self.sees(focus="Cancel")
        self.settled()
        self.assert_all_in_reach("Cancel")

    def test_on_a_list_screen_before_and_after_a_choice(self):
        self.switch_on()
        self.to_the_lower_list()
        self.settled()
        self.assert_all_in_reach("Select", "Previous")
        self.press_to("Select")
        self.pick_first("Camden High Street")
        self.settled()
        self.assert_all_in_reach("Camden High Street", "Previous", "Register")

    def press_to(self, place):
        for _ in range(6):
            if self.screen().focus == place:
                return
            self.step("Up")
        self.fail(f"{place} is out of reach")

    def test_on_the_confirmation(self):
        self.switch_on()
        self.to_the_confirmation()
        self.settled()
        self.assert_all_in_reach("Previous", "Register", SCROLLER)

    def test_on_the_information(self):
        self.switch_on(registered=True)
        self.press("Down")
        self.sees(focus="Deregister")
        self.press("Down")
        self.sees(focus="Registration information")
        self.press("Return")
        self.sees(focus="OK")
        self.settled()
        self.assert_all_in_reach("OK", SCROLLER)


class Keys(FlowCase):
    """The keys that are no arrows."""

    def quits_with(self, key, *clicks):
        self.press(key)
        self.reads("return button pressed", "quit is requested", "Called .*quitRequested")
        wait_until(lambda: len(self.sounds()) > len(clicks), DEADLINE, "the sounds")
        self.assertEqual([BACK, *clicks], self.sounds()[:len(clicks) + 1])
        self._heard += len(clicks) + 1
        self.ends()

    def test_back_and_close_on_a_screen_end_the_program(self):
        for key in ("Escape", "XF86Close"):
            for registered in (False, True):
                with self.subTest(key=key, registered=registered):
                    self.switch_on(registered=registered)
                    self.quits_with(key, SELECT)

    def test_back_on_a_popup_of_one_button_ends_the_program(self):
        self.switch_on(requestPincode={"outcome": "1/7"})
        self.press("Return")
        self.sees(title="PinRequesting")
        self.asks("requestPincode")
        self.event("1 7")
        self.sees(focus="OK")
        self.walk.set.camera.settled()
        self._heard += len(self.sounds())
        # The key goes on from the button to the popup, which takes it for a "no".
        self.quits_with("Escape", SELECT, SELECT)

    def test_back_on_a_question_takes_it_away_and_nothing_else_happens(self):
        for steps, menu in ((0, "Change registration"), (1, "Deregister")):
            with self.subTest(menu):
                self.switch_on(registered=True)
                for _ in range(steps):
                    self.press("Down")
                    self.hears(MOVE)
                self.sees(focus=menu)
                self.press("Return")
                self.sees(focus="OK")
                self.hears(SELECT, POPUP, MOVE)
                self.press("Escape")
                self.reads("just go to its popup OnKeyPress", "Called .*popupHideRequested")
                self.sees(popup=None, depth=1, focus=menu)
                self.asks()
                self.hears(BACK, SELECT, MOVE, MOVE)

    def test_back_on_a_loading_popup_does_nothing(self):
        self.switch_on()
        self.to_the_search()
        self.hears(MOVE, SELECT, POPUP)
        for key in ("Escape", "XF86Close", "Return", "Up", "5"):
            self.press(key)
            self.reads("Return on Key Press for Loading Popup")
        self.sees(popup=["Searching for a registration.\nPlease wait."], depth=1)
        self.hears()
        self.asks("requestShopInfoList")

    def test_a_digit_and_a_colour_change_nothing(self):
        self.switch_on()
        for key in ("5", "XF86Red", "XF86Home", "x"):
            self.press(key)
        self.press("Down")
        self.sees(focus="Use existing registration", buttons=["New registration*",
                                                             "Use existing registration*!", "Cancel*"])
        self.hears(MOVE)

    def test_a_held_arrow_goes_on_to_the_end_and_stays_there(self):
        self.switch_on(registered=True)
        self.walk.set.remote.repeat(True)
        self.walk.set.remote.down("Down")
        wait_until(lambda: self.screen().focus == "Cancel", DEADLINE, "the last button")
        self.walk.set.remote.up("Down")
        self.walk.set.remote.repeat(False)
        self.sees(focus="Cancel", depth=1)
        self._heard += len(self.sounds())
        self.press("Up")
        self.sees(focus="Registration information")

    def test_two_keys_in_one_frame_are_both_taken(self):
        self.switch_on(registered=True)
        self.walk.set.remote.press("Down", "Down")
        self.sees(focus="Registration information", buttons=[
            text.replace("!", "") if not text.startswith("Registration") else text + "!"
            for text in REGISTERED_MENU])
        self.hears(MOVE, MOVE)

    def test_the_selection_popup_keeps_a_pick_out_of_force_until_it_is_confirmed(self):
        self.switch_on()
        self.to_the_search()
        self.event("0 2")
        self.sees(title="ShopListScreen", focus="Select")
        self.press("Return")
        self.sees(focus="Halden Electric", buttons=["OK", "Cancel*"])
        self.walk.set.camera.settled()
        self._heard += len(self.sounds())
        self.press("Up")
        self.hears(BLOCKED)
        self.press("Down")
        self.sees(focus="Brightwell Vision")
        self.hears(MOVE)
        self.press("Left")
        self.sees(focus="Brightwell Vision")
        self.hears(BLOCKED)
        self.press("Escape")
        self.reads("popup hide called", "Called .*popupHideRequested")
        self.sees(popup=None, buttons=["Select*!", "Next"])
        self.asks("requestShopInfoList", "getShopInfoList", "getRegisteredShopInfo")


if __name__ == "__main__":
    unittest.main(verbosity=2)
