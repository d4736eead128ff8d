# SPDX-License-Identifier: Apache-2.0
"""Walks: the flows of the program, gone through with real keys, a picture for each step."""

import os
import re
import time

from processes import SetError

SCREEN = r"Called ZOLT::GUI::(\w+Screen)::\1\("
SOUND_MOVE = r"Playing AUI sound \[AUISoundType: 0\]"


class Walk:
    """One person in front of one running set, who presses keys, looks, and keeps the pictures."""

    def __init__(self, running_set, out, say=print, patience=120):
        self.set = running_set
        self.out = out
        self.patience = patience
        self.pictures = []
        self._say = say
        self._started = time.monotonic()

    def press(self, key, *expected):
        """Presses KEY once the screen has come to rest, as a person would, and waits until the log holds
        all EXPECTED lines, in any order. Returns the match of the last one."""
        self.set.camera.settled(1.5)
        mark = self.set.log.mark()
        self.set.remote.press(key)
        found = None
        for pattern in expected:
            found = self.wait_for(pattern, mark)
        return found

    def look(self, name, text):
        """Takes the picture of a step, once the screen has come to rest."""
        number = len(self.pictures) + 1
        path = os.path.join(self.out, f"{number:02d}-{name}.png")
        self.set.camera.save(self.set.camera.settled(), path)
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

    def wait_for(self, pattern, after=0):
        """Waits for a line of the log after the place AFTER."""
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
    """TEXT of the daemon's journal as it was before it went on one line."""
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
    """From the first screen after the list arrived to the confirmation."""
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


def existing(walk):
    """An existing registration: found in the local network, chosen level by level, confirmed."""
    screen = walk.start()
    if screen != "MainMenuUnregisteredScreen":
        raise SetError(f"the first screen is {screen}: the set is tied to a shop already")
    walk.look("menu", "the menu of a set that is not tied to a shop")
    walk.press("Down", SOUND_MOVE)
    walk.look("menu-existing", "the existing registration has the focus")
    mark = walk.set.log.mark()
    walk.press("Return", r"Called .*displayShopsFromLANRequested", r"Called .*requestShopInfoList")
    walk.look("searching", "the set searches in the local network")
    _walk_down(walk, walk.wait_for_screen(mark))
    walk.look("confirmation", "the set shows what will be registered")
    mark = walk.set.log.mark()
    walk.press("Return", r"Called .*shopRegistrationRequested", r"Called .*requestRegistrationShopInfo")
    walk.look("registering", "the set hands the registration over")
    walk.wait_for(r"Called .*showCompletionPopup", mark)
    walk.look("completed", "the registration is complete")
    walk.press("Return", r"Called .*quitRequested")
    walk.end()


WALKS = {"existing": existing}
