#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Runs the virtual set: in a window, headless, or through a walk. Called by ./run, which has checked the
options, installed what is needed and built everything."""

import argparse
import contextlib
import glob
import os
import shutil
import signal
import subprocess
import sys
import threading
import time

from description import LARGEST_SIDE, SMALLEST_SIDE
from folder import SetFolder
from journal import Journal
from processes import ChoiceError, SetError, display_answers, require
from registration import document_of, register
from virtual_set import VirtualSet
from walks import WALKS, Walk, received_document


def options(arguments=None):
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="build folder of a preset")
    parser.add_argument("--state", required=True, help="folder for sets, locales and pictures")
    parser.add_argument("--locales", help="folder of the locales, if they lie elsewhere")
    parser.add_argument("--headless", action="store_true")
    parser.add_argument("--hold", action="store_true")
    parser.add_argument("--walk")
    parser.add_argument("--out")
    parser.add_argument("--size")
    parser.add_argument("--language")
    parser.add_argument("--scenario")
    parser.add_argument("--set")
    parser.add_argument("--patience", type=float, default=120, help="seconds to wait for a step")
    parser.add_argument("--log", action="store_true")
    parser.add_argument("--locale", help="only build this locale, for a set that runs")
    parser.add_argument("--check", action="store_true", help="only check the options")
    choice = parser.parse_args(arguments)
    choice.locales = choice.locales or os.path.join(choice.state, "locales")
    # The program runs in the set's folder, so relative paths would not work.
    for name in ("build", "state", "locales", "out", "scenario", "set"):
        if getattr(choice, name):
            setattr(choice, name, os.path.abspath(getattr(choice, name)))
    return choice


def say(text):
    print(text, flush=True)


@contextlib.contextmanager
def shown_log(path):
    """Prints the log as it is written, including its last lines."""
    journal = Journal(path)
    over = threading.Event()

    def follow():
        shown = 0
        last = False
        while not last:
            last = over.wait(0.1)
            lines = journal.read()
            for line in lines[shown:]:
                say(line)
            shown = len(lines)

    reader = threading.Thread(target=follow, daemon=True)
    reader.start()
    try:
        yield
    finally:
        over.set()
        reader.join(10)


def check_options(choice):
    """Refuses options that would be ignored or would fail later."""
    if choice.walk and choice.walk not in (*WALKS, "all"):
        raise ChoiceError(f"there is no walk {choice.walk}; --walk list prints all names")
    if choice.walk == "all" and choice.scenario:
        raise ChoiceError("--walk all cannot be used with --scenario: each walk has its own")
    if choice.walk and choice.hold:
        raise ChoiceError("--walk cannot be used with --hold, which runs no walk")
    if choice.out and choice.hold:
        raise ChoiceError("--out is for the pictures of a walk, and --hold runs none")
    if choice.size and not all(SMALLEST_SIDE <= side <= LARGEST_SIDE for side in size_of(choice)):
        raise ChoiceError(f"--size {choice.size} is no size from {SMALLEST_SIDE} to {LARGEST_SIDE}")
    # Without xdpyinfo this is checked again once it has been installed.
    if (choice.out and wants_window(choice) and shutil.which("xdpyinfo")
            and not missing_display()):
        raise ChoiceError("--out is for the pictures of a walk, which needs --headless or --walk here")


def size_of(choice):
    return tuple(int(side) for side in choice.size.split("x"))


def list_walks(choice):
    given = [name for name in ("headless", "hold", "out", "size", "language", "scenario", "set", "log")
             if getattr(choice, name)]
    if given:
        raise ChoiceError(f"--walk list cannot be used with --{given[0]}")
    for known, plan in WALKS.items():
        say(f"{known:<12} {plan.meaning}")
    say(f"{'all':<12} Each of them, in a folder of its own.")


OWN_FILES = ("zolt.log", "registration.xml")


def refuse_to_overwrite(out):
    """Where no walk has run, a file with such a name belongs to the user."""
    for name in OWN_FILES:
        path = os.path.join(out, name)
        if os.path.lexists(path):
            raise ChoiceError(f"{path} is not from a walk; nothing was changed")


def clear(out):
    """Removes the files of an earlier walk from OUT, and nothing else."""
    leftovers = glob.glob(os.path.join(glob.escape(out), "[0-9][0-9]-*.png"))
    for path in leftovers + [os.path.join(out, name) for name in OWN_FILES]:
        if os.path.exists(path):
            os.remove(path)


def claim_folder(choice, path):
    folder = SetFolder(path, choice.build)
    try:
        folder.claim()
    except OSError as error:
        raise ChoiceError(f"{path} cannot be used: {error.strerror}") from error
    return folder


def make_folder(choice, folder, fresh):
    size = size_of(choice) if choice.size else None
    folder.make(fresh=fresh, description=choice.set, size=size, language=choice.language)


def check_scenario(choice, scenario):
    """Lets the daemon check the scenario now: later the bus starts the daemon, and nobody would see its
    error."""
    daemon = os.path.join(choice.build, "daemon", "zolt-daemon")
    checked = subprocess.run(
        [daemon, "--set", os.path.join(choice.build, "config"), "--scenario", scenario, "--check"],
        capture_output=True, text=True, check=False)
    if checked.returncode != 0:
        reason = checked.stderr.strip().replace("zolt-daemon: ", "", 1)
        raise ChoiceError(reason or f"the scenario {scenario} cannot be played")


def prepare_walk(plan, folder):
    """Writes what the walk PLAN starts with: the daemon's scenario, and the registration if there is one."""
    with open(folder.file("scenario.ini"), "w", encoding="utf-8") as file:
        file.write(plan.scenario_text())
    if plan.registered:
        shops = os.path.join(folder.build, "daemon", "shop-lists", "retail.xml")
        register(folder, document_of(shops))


def walk_all(choice, out):
    failed = [name for name in WALKS if walk(choice, name, os.path.join(out, name)) != 0]
    say(f"{len(WALKS) - len(failed)} of {len(WALKS)} walks went through"
        + (f"; failed: {', '.join(failed)}" if failed else ""))
    return 1 if failed else 0


def walk(choice, name, out):
    plan = WALKS[name]
    folder = claim_folder(choice, os.path.join(out, "set"))
    if choice.scenario:
        if os.path.realpath(choice.scenario).startswith(os.path.realpath(folder.path) + os.sep):
            raise ChoiceError(f"{choice.scenario} lies in the folder that a walk clears")
        check_scenario(choice, choice.scenario)
    left_by_a_walk = folder.is_ours and bool(os.listdir(folder.path))
    if folder.is_ours and not left_by_a_walk:
        refuse_to_overwrite(out)
    make_folder(choice, folder, fresh=True)
    if left_by_a_walk:
        clear(out)
    if not choice.scenario:
        prepare_walk(plan, folder)
    log = os.path.join(out, "zolt.log")
    width, height = folder.size
    say(f"Walking {name!r} on a set of {width}x{height} in {folder.language}")
    started = time.monotonic()
    with contextlib.ExitStack() as stack:
        running_set = stack.enter_context(
            VirtualSet(folder, choice.locales, scenario=choice.scenario, log=log, say=say))
        if choice.log:
            stack.enter_context(shown_log(log))
        steps = Walk(running_set, out, say, choice.patience)
        try:
            plan.function(steps)
            problem = None
        except SetError as error:
            problem = str(error)
        document = received_document(running_set)
    if document:
        with open(os.path.join(out, "registration.xml"), "w", encoding="utf-8") as file:
            file.write(document + "\n")
    seconds = time.monotonic() - started
    if problem:
        say(f"{name}: FAILED after {len(steps.pictures)} steps and {seconds:.1f} s: {problem}")
        return 1
    say(f"{name}: {len(steps.pictures)} steps in {seconds:.1f} s, all in {out}")
    return 0


def live(choice, nested):
    folder = claim_folder(choice, os.path.join(choice.state, "set"))
    scenario = choice.scenario or folder.file("scenario.ini")
    if choice.scenario or os.path.exists(scenario):
        check_scenario(choice, scenario)
    make_folder(choice, folder, fresh=False)
    with contextlib.ExitStack() as stack:
        running_set = stack.enter_context(
            VirtualSet(folder, choice.locales, scenario=choice.scenario, nested=nested, say=say))
        say(f"The set is on. Its folder is {folder.path}; Ctrl-C ends it")
        if choice.log:
            stack.enter_context(shown_log(running_set.log.path))
        status = running_set.supervise()
    if status is None:
        say("The set was switched off")
        return 0
    say(f"zolt-hub ended with status {status}")
    return status if status >= 0 else 128 - status


def missing_display():
    """Why no window can be opened; None if there is a display."""
    display = os.environ.get("DISPLAY")
    if not display:
        return "There is no display"
    return None if display_answers(display) else f"The display {display} does not answer"


def wants_window(choice):
    return not (choice.hold or choice.headless or choice.walk)


def end_orderly(number, _frame):
    # A second signal must not interrupt the cleanup that the first one started.
    for name in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(name, signal.SIG_IGN)
    raise SystemExit(128 + number)


def main():
    choice = options()
    for name in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(name, end_orderly)
    if choice.walk == "list":
        list_walks(choice)
        return 0
    if choice.locale:
        SetFolder.make_locale(choice.locales, choice.locale)
        return 0
    check_options(choice)
    if choice.check:
        return 0
    require(["setpriv", "dbus-daemon", "matchbox-window-manager", "xprop", "xdpyinfo", "localedef"])
    trouble = wants_window(choice) and missing_display()
    if trouble:
        say(f"{trouble}, so the set runs headless")
    nested = wants_window(choice) and not trouble
    require(["Xephyr" if nested else "Xvfb"])
    if nested or choice.hold:
        return live(choice, nested)
    out = choice.out or os.path.join(choice.state, "run")
    if choice.walk == "all":
        return walk_all(choice, out)
    return walk(choice, choice.walk or "existing", out)


if __name__ == "__main__":
    try:
        sys.exit(main())
    except (SetError, OSError) as error:
        print(f"run: {error}", file=sys.stderr)
        sys.exit(2 if isinstance(error, ChoiceError) else 1)
