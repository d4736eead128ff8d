# SPDX-License-Identifier: Apache-2.0
"""Each call to the daemon in each flow: answered late, with an error, with a value of another type, or not at
all because the daemon dies."""

import os
import unittest

from flows_test import BACK, FAILURES, FlowCase, MOVE, POPUP, SELECT

from set_case import SOURCE

from registration import document_of

SEARCHING = ["Searching for a registration.\nPlease wait."]
CONNECTING = ["Connecting to the server…"]

# What the daemon does in the call, and the message of the bus library.
FAULTS = {
    "an error": ({"error": "org.example.Error.Busy", "error-message": "busy"},
                 r"GDBus\.Error:org\.example\.Error\.Busy: busy$"),
    "another type": ({"wrong-type": "true"}, r"Method .* returned type .\(i\)., but expected .\("),
    "its death": ({"abort": "true"}, r"GDBus\.Error:org\.freedesktop\.DBus\.Error\.NoReply: "),
}
LATE = {"reply-delay": "400"}


class Fault(FlowCase):
    """Starts the flows, up to the key press or event that makes the program call the daemon."""

    def on(self, method, fault, registered=False, shops="one-shop", skip=0, **scenario):
        """Starts a set, up to its first menu, on which METHOD will fail with FAULT."""
        self.switch_on(registered=registered, daemon={"shops": shops},
                       **{method: {**fault, "skip": str(skip), **scenario.pop(method, {})}}, **scenario)

    def returned(self, method):
        """Waits for the late answer to METHOD, and until the program has handled it."""
        self.walk.set.wait_for_log(rf" reply {method}", 0, journal=self.walk.set.daemon_log)

    def to_the_second_item(self):
        self.press("Down")
        self.hears(MOVE)

    def to_the_question(self, *keys):
        for key in keys:
            self.press(key)
        self.press("Return")
        self.sees(focus="OK", buttons=["OK*!", "Cancel*"])


class InAPress(Fault):
    """A call that a button makes: its failure is not caught, so the program cleans up and ends with status
    1."""

    def fails(self, method, prefix, to_the_press, after=None, **start):
        for name, (fault, told) in FAULTS.items():
            with self.subTest(name):
                self.on(method, fault, **start)
                to_the_press()
                self.press("Return")
                self.walk.end(expected=1)
                self.release()
                self.reads(f"Exception caught: {prefix}{told}", "Decreasing Vconf")
                self.assertEqual(["Decreasing Vconf", "current vconf is: 1"],
                                 self.counter_lines()[-2:])
                # An interrupted flow sends the daemon nothing more.
                self.assertEqual(method, self.calls_of_the_daemon()[-1])
        with self.subTest("late"):
            self.on(method, LATE, **start)
            to_the_press()
            self.press("Return")
            self.returned(method)
            self.sees(**after)
            self.assertIsNone(self.walk.set.log.find("Exception caught"))

    def test_a_pin_is_requested(self):
        self.fails("requestPincode", "Failed to request pincode: ", lambda: None,
                   after={"title": "PinRequesting", "depth": 2, "popup": None})

    def test_the_search_in_the_local_network_is_requested(self):
        self.fails("requestShopInfoList", "Failed to request shop info list: ",
                   self.to_the_second_item, after={"depth": 1, "popup": SEARCHING})

    def to_the_choice(self):
        """Goes to the first list and chooses an entry."""
        self.to_the_search()
        self.to_the_first_list(depth=2)
        self.pick("Halden Electric", "Brightwell Vision", "Orchard TV Centre")
        self.sees(focus="Next")

    def test_the_list_above_asks_which_shop_is_registered(self):
        def to_the_press():
            self.to_the_choice()
            self.press("Return")
            self.sees(title="ShopListScreen", depth=3, focus="Select")
            self.press("Down")
            self.sees(focus="Previous")

        self.fails("getRegisteredShopInfo", "Failed to get registered shop info: ", to_the_press,
                   shops="two-levels", skip=2,
                   after={"title": "ShopListScreen", "depth": 4, "words": ["Chain"]})

    def test_the_lower_list_asks_which_shop_is_registered(self):
        self.fails("getRegisteredShopInfo", "Failed to get registered shop info: ",
                   self.to_the_choice, shops="two-levels", skip=1,
                   after={"title": "ShopListScreen", "depth": 3, "words": ["Halden Electric"]})

    def test_a_registration_is_sent(self):
        def to_the_press():
            self.to_the_search()
            self.event("0 2")
            self.sees(title="RegistrationInfoScreen", focus="Register")

        self.fails("requestRegistrationShopInfo", "Failed to request registration: ", to_the_press,
                   after={"title": "RegistrationInfoScreen", "popup": CONNECTING})

    def test_the_registration_is_looked_at(self):
        def to_the_press():
            self.press("Down")
            self.press("Down")
            self.sees(focus="Registration information")

        self.fails("getRegisteredShopInfo", "Failed to get registered shop info: ", to_the_press,
                   registered=True, after={"title": "RegistrationInfoScreen", "depth": 2})

    def test_the_registration_is_ended(self):
        self.fails("unregister", "Failed to unregister: ", lambda: self.to_the_question("Down"),
                   registered=True, after={"depth": 1, "buttons": ["OK", "Cancel"]})

    def test_the_registration_is_deleted_for_a_change(self):
        self.fails("deleteRegistrationInfo", "Failed to delete registration info: ",
                   self.to_the_question, registered=True,
                   after={"depth": 1, "buttons": ["OK", "Cancel"]})


class InAnEvent(Fault):
    """A call that the program makes for an event of the daemon: the failure becomes a popup, and its button
    ends the program. The end is reported to the daemon, so it fails with status 1 if the daemon has died."""

    def fails(self, method, prefix, to_the_event, event, title, depth, after=None, **start):
        for name, (fault, told) in FAULTS.items():
            with self.subTest(name):
                self.on(method, fault, **start)
                to_the_event()
                self.event(event)
                self.sees(title=title, depth=depth, popup=[FAILURES[5]], buttons=["OK*!"])
                self.reads(r"callbackManager called \(Event: 0",
                           f"Exception caught during event handling: {prefix}{told}",
                           rf"AUISoundType: {POPUP}\]")
                self.assertEqual(method, self.calls_of_the_daemon()[-1])
                self.press("Return")
                self.reads("quitRequested", rf"AUISoundType: {SELECT}\]")
                if "abort" in fault:
                    self.walk.end(expected=1)
                    self.reads("Exception caught: Failed to find GUI proxy object")
                else:
                    self.walk.end()
                    self.assertEqual("applicationCancelled", self.calls_of_the_daemon()[-1])
        with self.subTest("late"):
            self.on(method, LATE, **start)
            to_the_event()
            self.event(event)
            self.returned(method)
            self.sees(**after)
            self.assertIsNone(self.walk.set.log.find("Exception caught"))

    def test_whether_the_set_is_registered(self):
        self.fails("checkShopRegistration", "Failed to check shop registration: ",
                   self.to_the_pin_request, "0 0", "PinRequesting", 2,
                   after={"title": "PinDisplaying", "depth": 3, "words": ["48201573"]})

    def test_the_pin(self):
        self.fails("getPincode", "Failed to get pincode: ", self.to_the_pin_request, "0 0",
                   "PinRequesting", 2,
                   after={"title": "PinDisplaying", "depth": 3, "words": ["48201573"]})

    def test_the_verification_of_the_pin(self):
        self.fails("requestPincodeVerification", "Failed to request pincode verification: ",
                   self.to_the_pin_request, "0 0", "PinDisplaying", 3,
                   after={"title": "PinDisplaying", "depth": 3, "words": ["48201573"]})

    def test_the_request_of_the_list_after_a_pin(self):
        self.fails("requestShopInfoList", "Failed to request shop info list: ", self.to_the_pin,
                   "0 1", "PinDisplaying", 3,
                   after={"title": "PinDisplaying", "depth": 3, "popup": CONNECTING})

    def test_the_list(self):
        self.fails("getShopInfoList", "Failed to get shop list: ", self.to_the_search, "0 2",
                   "MainMenuUnregisteredScreen", 1,
                   after={"title": "RegistrationInfoScreen", "depth": 2})

    def test_which_shop_is_registered(self):
        self.fails("getRegisteredShopInfo", "Failed to get registered shop info: ",
                   self.to_the_search, "0 2", "MainMenuUnregisteredScreen", 1, shops="two-levels",
                   after={"title": "ShopListScreen", "depth": 2})

    def test_the_shop_that_the_pin_is_for(self):
        shops = os.path.join(SOURCE, "daemon", "shop-lists", "one-shop.xml")
        document = document_of(shops).replace("\n", "")
        self.fails("getRegisteredShopInfo", "Failed to get registered shop info: ",
                   self.to_the_pin_request, "0 0", "PinRequesting", 2,
                   checkShopRegistration={"reply": "true"},
                   getRegisteredShopInfo={"reply": document},
                   after={"title": "PinDisplaying", "depth": 3, "words": ["Harbour Electric, Republic Street : 010101"]})


class Waiting(Fault):
    """A call that is answered late keeps the program from doing anything else."""

    def presses_meanwhile(self, method, *keys, **start):
        """Presses OK, which calls METHOD, and then KEYS before the answer. On a slow machine the answer is
        delayed further."""
        for delay in (1500, 6000, 24000):
            self.to_the_call(method, {"reply-delay": str(delay)}, **start)
            for key in keys:
                self.walk.set.remote.press(key)
            if self.walk.set.daemon_log.find(f" reply {method}") is None:
                return
        self.fail("the answer came first")

    def to_the_call(self, method, fault, **start):
        self.on(method, fault, **start)
        if start.get("registered"):
            self.press("Down")
            self.press("Down")
            self.sees(focus="Registration information")
        self.walk.set.rest()
        self.standing = self.walk.set.camera.look()
        self.press("Return")
        self.walk.set.wait_for_log(f" call {method}", 0, journal=self.walk.set.daemon_log)
        self.release()

    def test_the_screen_stays_as_it_was(self):
        self.to_the_call("requestPincode", {"no-reply": "true"})
        self.assertEqual(self.standing, self.walk.set.camera.look())

    def test_a_button_pressed_several_times_meanwhile_acts_once(self):
        # This button has no click sound.
        for method, start, title, sounds in (
                ("requestPincode", {}, "PinRequesting", [SELECT]),
                ("getRegisteredShopInfo", {"registered": True}, "RegistrationInfoScreen",
                 [MOVE, MOVE])):
            with self.subTest(method):
                self.presses_meanwhile(method, "Return", "Return", "Return", **start)
                self.returned(method)
                self.sees(title=title, depth=2)
                self.hears(*sounds)
                self.asks(method)

    def test_the_back_key_is_handled_after_the_answer(self):
        self.presses_meanwhile("requestPincode", "Escape")
        self.asks("requestPincode")
        self.reads("requestPincode", "quitRequested", "calling Terminate")
        self.assertEqual([SELECT, BACK, SELECT], self.sounds()[:3])
        self._heard += 3
        self.walk.end()
        self.asks("applicationCancelled")


class AtTheEnd(Fault):
    def test_a_daemon_that_rejects_the_end_gives_status_one(self):
        for name, (fault, told) in FAULTS.items():
            with self.subTest(name):
                self.on("applicationCancelled", fault)
                self.press("Escape")
                self.release()
                self.walk.end(expected=1)
                self.reads("quitRequested", "calling Terminate",
                           f"Exception caught: Failed inform that application quited: {told}")

    def test_the_program_waits_for_a_daemon_that_answers_the_end_slowly(self):
        self.on("applicationCancelled", LATE)
        self.press("Escape")
        self.hears(BACK, SELECT)
        self.ends()


if __name__ == "__main__":
    unittest.main(verbosity=2)
