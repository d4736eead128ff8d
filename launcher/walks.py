# SPDX-License-Identifier: Apache-2.0
"""Walks: scripted runs of the program's flows with real keys and a screenshot of each step."""

import os
import re
import signal
import time

from processes import SetError

SCREEN = r"Called ZOLT::GUI::(\w+Screen)::\1\("
HELD = r"Z held "
EVENT = r"Z event "
SOUND_MOVE = r"Playing AUI sound \[AUISoundType: 0\]"


class Walk:
    """Operates one running set as a person would, and keeps screenshots."""

    def __init__(self, running_set, out, say=print, patience=120):
        self.set = running_set
        self.out = out
        self.patience = patience
        self.pictures = []
        self._say = say
        self._events = 0  # events of the daemon so far
        self._released = 0
        self._started = time.monotonic()

    def press(self, key, *expected):
        """Presses KEY once the program is idle, and waits until the log contains all EXPECTED lines, in any
        order. Returns the match of the last one."""
        self.set.rest()
        mark = self.set.log.mark()
        self.set.remote.press(key)
        found = None
        for pattern in expected:
            found = self.wait_for(pattern, mark)
        return found

    def look(self, name, text):
        """Takes the screenshot of a step, once nothing is drawn any more."""
        number = len(self.pictures) + 1
        path = os.path.join(self.out, f"{number:02d}-{name}.png")
        self.set.rest()
        self.set.camera.save(self.set.camera.look(), path)
        self.pictures.append(path)
        elapsed = time.monotonic() - self._started
        self._say(f"{number:3d}  {elapsed:5.1f} s  {text:<58}  {os.path.basename(path)}")

    def start(self):
        """Starts the program, and returns the name of its first screen."""
        self._started = time.monotonic()
        mark = self.set.log.mark()
        self.set.start_program()
        screen = self.wait_for_screen(mark)
        self.wait_for(r"calling Resume", mark)
        return screen

    def await_event(self):
        """Waits for the next event of the daemon, and releases it if the daemon holds it back. Scenarios of
        walks hold all events, so that each waiting screen is shown until its screenshot is taken."""
        journal = self.set.daemon_log

        def held_or_sent():
            return (journal.count(HELD) > self._released, journal.count(EVENT) > self._events)

        is_held, _ = self.set.wait_while_running(
            lambda: any(held_or_sent()) and held_or_sent(), self.patience, "an event of the daemon")
        if is_held:
            self._released += 1
            os.kill(int(journal.last(r" process (\d+)$").group(1)), signal.SIGUSR1)
            self.set.wait_while_running(lambda: journal.count(EVENT) > self._events, self.patience,
                                        "the event that was released")
        self._events += 1

    def wait_for(self, pattern, after=0):
        """Waits for a line of the log from index AFTER on."""
        return self.set.wait_for_log(pattern, after, self.patience)

    def wait_for_screen(self, after):
        return self.wait_for(SCREEN, after).group(1)

    def end(self, expected=0):
        status = self.set.wait_for_end()
        if status != expected:
            raise SetError(f"zolt-hub ended with status {status}, not {expected}")


def received_document(running_set):
    """The registration document that the daemon received last, or None."""
    found = [re.search(r" call requestRegistrationShopInfo (.*)$", line)
             for line in running_set.daemon_log.read()]
    texts = [match.group(1) for match in found if match]
    return _unescaped(texts[-1]) if texts else None


def _unescaped(text):
    """TEXT without the escapes with which the daemon writes it on one line."""
    plain = {"n": "\n", "r": "\r", "\\": "\\"}
    return re.sub(r"\\([nr\\])", lambda found: plain[found.group(1)], text)


def _pick_entry(walk, level):
    """On a list screen: opens the drop-down, picks its first entry and confirms it."""
    walk.press("Return", r"Called .*selectionPopupRequested", r"Called .*SelectionPopup::show")
    walk.look(f"level-{level}-list", f"level {level}: the list of entries is open")
    walk.press("Return", r"Called .*selectionPopupItemSelectionCb")
    walk.look(f"level-{level}-picked", f"level {level}: an entry is picked, OK has the focus")
    walk.press("Return", r"Called .*selectionPopupShopChosen", r"Selected Region")
    walk.look(f"level-{level}-chosen", f"level {level}: the entry is chosen")


def _walk_down(walk, screen):
    """From SCREEN, the first after the list arrived, to the confirmation."""
    level = 1
    while screen == "ShopListScreen":
        walk.look(f"level-{level}", f"level {level}: the set asks for an entry")
        _pick_entry(walk, level)
        mark = walk.set.log.mark()
        walk.press("Return", r"Called .*(nextSelectionScreenRequested|registrationConfirmationScreenRequested)")
        screen = walk.wait_for_screen(mark)
        level += 1
    if screen != "RegistrationInfoScreen":
        raise SetError(f"the walk came to {screen}, where the confirmation should be")


def _first_menu(walk, expected="MainMenuUnregisteredScreen"):
    """Starts the program and takes a screenshot of its first menu."""
    screen = walk.start()
    if screen != expected:
        raise SetError(f"the first screen is {screen}, where {expected} should be")
    registered = expected == "MainMenuRegisteredScreen"
    walk.look("menu", f"the menu of a TV that is {'' if registered else 'not '}registered")


def _search(walk):
    """From the first menu to the search in the local network. Returns the index in the log before the
    search."""
    walk.press("Down", SOUND_MOVE)
    walk.look("menu-existing", "the existing registration has the focus")
    mark = walk.set.log.mark()
    walk.press("Return", r"Called .*displayShopsFromLANRequested", r"Called .*requestShopInfoList")
    walk.look("searching", "the set searches in the local network")
    walk.await_event()
    return mark


def _request_pin(walk):
    """From the first menu to the daemon's answer to the PIN request. Returns the index in the log before
    it."""
    mark = walk.set.log.mark()
    walk.press("Return", r"Called .*pinRequestingScreenRequested", r"Called .*requestPincode\(")
    walk.look("pin-requested", "the set asks for a PIN")
    walk.await_event()
    return mark


def _show_pin(walk):
    """From the first menu to the result of the PIN's verification. Returns the index in the log before the
    request."""
    mark = _request_pin(walk)
    walk.wait_for(r"Called .*requestPincodeVerification", mark)
    walk.look("pin", "the set shows the PIN and waits for its verification")
    walk.await_event()
    return mark


def _confirm(walk):
    """From the confirmation to the end."""
    walk.look("confirmation", "the set shows what will be registered")
    mark = walk.set.log.mark()
    walk.press("Return", r"Called .*shopRegistrationRequested", r"Called .*requestRegistrationShopInfo")
    walk.look("registering", "the set hands the registration over")
    walk.await_event()
    walk.wait_for(r"Called .*showCompletionPopup", mark)
    walk.look("completed", "the registration is complete")
    _quit(walk)


def _quit(walk):
    walk.press("Return", r"Called .*quitRequested")
    walk.end()


def _fail(walk, mark, text):
    """Waits for the failure popup after index MARK, and presses its button."""
    walk.wait_for(r"Called .*showNetworkFailurePopup", mark)
    walk.look("failed", text)
    _quit(walk)


def existing(walk):
    """An existing registration: found in the local network, chosen level by level, confirmed."""
    _first_menu(walk)
    _walk_down(walk, walk.wait_for_screen(_search(walk)))
    _confirm(walk)


def new(walk):
    """A new registration: a PIN, verified by the service, then chosen level by level and confirmed."""
    _first_menu(walk)
    mark = _show_pin(walk)
    walk.wait_for(r"callbackManager called \(Event: 0; Reason: 1\)", mark)
    walk.look("pin-verified", "the PIN is verified, and the shops are fetched")
    walk.await_event()
    walk.wait_for(r"Called ZOLT::GUI::ShopListScreen::ShopListScreen\(", mark)
    _walk_down(walk, "ShopListScreen")
    _confirm(walk)


def information(walk):
    """The registration information, and back to the menu."""
    _first_menu(walk, "MainMenuRegisteredScreen")
    for name, text in (("menu-deregister", "the deregistration has the focus"),
                       ("menu-information", "the registration information has the focus")):
        walk.press("Down", SOUND_MOVE)
        walk.look(name, text)
    walk.press("Return", r"Called .*showRegistrationInformationScreen")
    walk.look("information", "the set shows its registration")
    walk.press("Return", r"let's return back")
    walk.look("menu-again", "the menu again")
    walk.press("Escape", r"Called .*quitRequested")
    walk.end()


def change(walk):
    """A change: the registration is deleted, and the menu for a new one is shown above the old menu."""
    _first_menu(walk, "MainMenuRegisteredScreen")
    walk.press("Return", r"Called .*RegistrationInfoDeletionPopup")
    walk.look("question", "the set asks whether to delete the registration")
    mark = walk.set.log.mark()
    walk.press("Return", r"Called .*deleteRegistrationInfo")
    walk.look("deleting", "the registration is being deleted")
    walk.await_event()
    walk.wait_for(r"Called .*showMainMenuUnregisteredScreen", mark)
    walk.look("new-menu", "the menu of a TV that is not registered")
    _walk_down(walk, walk.wait_for_screen(_search(walk)))
    _confirm(walk)


def deregister(walk):
    """A deregistration."""
    _first_menu(walk, "MainMenuRegisteredScreen")
    walk.press("Down", SOUND_MOVE)
    walk.press("Return", r"Called .*showDeregistrationPopup")
    walk.look("question", "the set asks whether to deregister")
    mark = walk.set.log.mark()
    walk.press("Return", r"Called .*unregister\(")
    walk.look("deregistering", "the registration is being ended")
    walk.await_event()
    walk.wait_for(r"Called .*showDeregistrationSucceededPopup", mark)
    walk.look("deregistered", "the TV is not registered any more")
    _quit(walk)


def declined(walk):
    """Both questions of the menu, answered "no" with Back."""
    _first_menu(walk, "MainMenuRegisteredScreen")
    for steps, popup, name in ((0, "RegistrationInfoDeletionPopup", "change"),
                               (1, "showDeregistrationPopup", "deregister")):
        for _ in range(steps):
            walk.press("Down", SOUND_MOVE)
        walk.press("Return", rf"Called .*{popup}")
        walk.look(name, "the set asks")
        walk.press("Escape", r"Called .*popupHideRequested")
        walk.look(f"{name}-declined", "nothing has happened")
    walk.press("Escape", r"Called .*quitRequested")
    walk.end()


def quit_(walk):
    """Cancel on the first menu."""
    _first_menu(walk)
    for _ in range(2):
        walk.press("Down", SOUND_MOVE)
    walk.look("menu-cancel", "Cancel has the focus")
    _quit(walk)


def not_found(walk):
    """No registration in the local network."""
    _first_menu(walk)
    _fail(walk, _search(walk), "no registration was found in the local network")


def pin_expired(walk):
    """A PIN that is not verified in time."""
    _first_menu(walk)
    _fail(walk, _show_pin(walk), "the time for the PIN has run out")


def no_network(walk):
    """No network when the PIN is asked for."""
    _first_menu(walk)
    _fail(walk, _request_pin(walk), "there is no network")


def no_server(walk):
    """No server when the registration is ended."""
    _first_menu(walk, "MainMenuRegisteredScreen")
    walk.press("Down", SOUND_MOVE)
    walk.press("Return", r"Called .*showDeregistrationPopup")
    mark = walk.set.log.mark()
    walk.press("Return", r"Called .*unregister\(")
    walk.await_event()
    _fail(walk, mark, "the server does not answer")


def unstable(walk):
    """A connection that is lost while the registration is handed over."""
    _first_menu(walk)
    mark = _search(walk)
    walk.wait_for(r"Called ZOLT::GUI::RegistrationInfoScreen::RegistrationInfoScreen\(", mark)
    walk.look("confirmation", "one shop is all there is, and the set shows it")
    mark = walk.set.log.mark()
    walk.press("Return", r"Called .*requestRegistrationShopInfo")
    walk.await_event()
    _fail(walk, mark, "the connection is not stable")


def unanswered(walk):
    """A failure popup that nobody closes: the program ends after a minute on the set's clock."""
    _first_menu(walk)
    mark = _request_pin(walk)
    walk.wait_for(r"Called .*showNetworkFailurePopup", mark)
    walk.look("failed", "there is no network, and nobody is there")
    walk.set.control("advance", "60")
    walk.wait_for(r"Called .*quitRequested", mark)
    walk.end()


def closed(walk):
    """The daemon asks the program to close."""
    _first_menu(walk)
    _search(walk)
    walk.end()


class Plan:
    """A walk, the daemon's scenario for it, and whether the set starts with a registration."""

    def __init__(self, function, registered=False, **scenario):
        self.function = function
        self.registered = registered
        # Holds each event until the screenshot of its waiting screen is taken.
        self.scenario = {**scenario, "daemon": {"hold": "true", **scenario.get("daemon", {})}}

    @property
    def meaning(self):
        return self.function.__doc__

    def scenario_text(self):
        """The scenario as a key file."""
        return "".join(f"[{group}]\n" + "".join(f"{key}={value}\n" for key, value in values.items())
                       for group, values in self.scenario.items())


WALKS = {
    "existing": Plan(existing),
    "new": Plan(new),
    "information": Plan(information, registered=True),
    "change": Plan(change, registered=True),
    "deregister": Plan(deregister, registered=True),
    "declined": Plan(declined, registered=True),
    "quit": Plan(quit_),
    "not-found": Plan(not_found, daemon={"found-in-lan": "false"}),
    "pin-expired": Plan(pin_expired, pincode={"expires": "true"}),
    "no-network": Plan(no_network, requestPincode={"outcome": "REASON_NO_NETWORK"}),
    "no-server": Plan(no_server, registered=True, unregister={"outcome": "REASON_NO_SERVER"}),
    "unstable": Plan(unstable, daemon={"shops": "one-shop"},
                     requestRegistrationShopInfo={"outcome": "REASON_NETWORK_UNSTABLE"}),
    "unanswered": Plan(unanswered, requestPincode={"outcome": "REASON_NO_NETWORK"}),
    "closed": Plan(closed, requestShopInfoList={"outcome": "REASON_CLOSE_REQUESTED"}),
}
