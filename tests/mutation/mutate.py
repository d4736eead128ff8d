# SPDX-License-Identifier: Apache-2.0
"""Breaks the program on purpose, one place at a time, and checks that a test fails each time.

mutants.toml lists the places. A copy of the tree is built with each mutant in turn, and the tests named
beside it are run: a mutant is caught when one of them fails, or does not end in ten times the time that
they take with the program as it is. What no test notices has survived, and is what this tool is for.
"""

import argparse
import glob
import os
import re
import shutil
import subprocess
import sys
import time
import tomllib

_ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
_LIST = os.path.join(os.path.dirname(__file__), "mutants.toml")
_PRESET = "virtual-set"


class MutationError(Exception):
    """Why a mutant could not be tried, in one line."""


def pattern_of(old):
    """Matches the tokens of OLD with any white space between them."""
    return r"\s*".join(re.escape(piece) for piece in re.findall(r"\w+|[^\w\s]", old))


def bodies_of(function, text):
    """Where TEXT defines FUNCTION, "name" or "Class::name": from its first line to the brace that ends it."""
    start = re.compile(rf"^(?![\s#/}}]).*(?<![\w:]){re.escape(function)}\([^;}}]*?\{{$", re.M)
    return [(found.start(), text.index("\n}", found.start()) + 2) for found in start.finditer(text)]


def source_of(folder, mutant):
    """The source of a mutant below FOLDER: the one it names, or the one that defines its function."""
    if "file" in mutant:
        return mutant["file"]
    found = []
    for path in glob.glob(os.path.join(folder, "src", "**", "*.cpp"), recursive=True):
        with open(path, encoding="utf-8") as file:
            if bodies_of(mutant["function"], file.read()):
                found.append(os.path.relpath(path, folder))
    if len(found) != 1:
        raise MutationError(f"{mutant['function']} is defined in {len(found)} sources: {' '.join(found)}")
    return found[0]


def place_of(folder, mutant):
    """The source of a mutant, its text, and the start and the end of what is replaced in it."""
    name = source_of(folder, mutant)
    with open(os.path.join(folder, name), encoding="utf-8") as file:
        text = file.read()
    parts = bodies_of(mutant["function"], text) if "function" in mutant else [(0, len(text))]
    places = [found.span() for start, end in parts
              for found in re.compile(pattern_of(mutant["old"])).finditer(text, start, end)]
    if len(places) != 1:
        where = " in ".join(filter(None, (mutant.get("function"), name)))
        raise MutationError(f"{where} reads {mutant['old']!r} {len(places)} times, and not once")
    return name, text, *places[0]


def title_of(mutant):
    return f"{mutant.get('function') or os.path.basename(mutant['file'])}: {mutant['what']}"


class Tree:
    """A copy of the working tree with a build of its own. Files that have not changed keep their times,
    so that a second run builds only what is new."""

    def __init__(self, folder):
        self.folder = folder
        names = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                               cwd=_ROOT, check=True, capture_output=True, text=True).stdout
        for name in filter(None, names.split("\0")):
            self.restore(name)

    def path(self, name):
        return os.path.join(self.folder, name)

    def restore(self, name):
        source, copy = os.path.join(_ROOT, name), self.path(name)
        if not os.path.exists(source):
            return
        if os.path.exists(copy):
            with open(source, "rb") as one, open(copy, "rb") as other:
                if one.read() == other.read():
                    return
        os.makedirs(os.path.dirname(copy), exist_ok=True)
        shutil.copy(source, copy)

    def put(self, mutant):
        """Breaks the place of MUTANT; returns the name of the source."""
        name, text, start, end = place_of(self.folder, mutant)
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text[:start] + mutant["new"] + text[end:])
        return name

    def build(self, targets):
        told = subprocess.run([self.path("tools/build"), _PRESET, *targets], capture_output=True,
                              text=True, check=False)
        if told.returncode != 0:
            wrong = re.findall(r"^.*\berror: .*", told.stderr, re.M) or [told.stderr]
            raise MutationError("it does not compile: " + wrong[0])

    def run(self, test, limit):
        """Runs TEST, "name:filter"; returns what failed, or None. LIMIT: seconds."""
        name, _, tests = test.partition(":")
        program, = glob.glob(self.path(f"build/{_PRESET}/tests/*/{name}_tests"))
        with open(os.path.join(self.folder, "test.log"), "w+", encoding="utf-8", errors="replace") as log:
            process = subprocess.Popen(
                [program, "--gtest_fail_fast", f"--gtest_filter={tests}"], cwd=os.path.dirname(program),
                stdin=subprocess.DEVNULL, stdout=log, stderr=subprocess.STDOUT, start_new_session=True)
            try:
                status = process.wait(limit)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, 9)
                process.wait()
                return "its time"
            log.seek(0)
            said = log.read()
        if status != 0:
            failed = re.findall(r"^\[  FAILED  \] (\S+)", said, re.M)
            return failed[0] if failed else f"status {status}"
        if not re.search(r"^\[  PASSED  \] [1-9]", said, re.M):
            raise MutationError(f"there is no test {test}")
        return None


def targets_of(mutants):
    return sorted({mutant["test"].partition(":")[0] + "_tests" for mutant in mutants})


def time_of_tests(tree, mutants):
    """How long each test takes with the program as it is, by its name; all must pass."""
    times = {}
    tree.build(targets_of(mutants))
    for test in sorted({mutant["test"] for mutant in mutants}):
        started = time.monotonic()
        failed = tree.run(test, 1200)
        if failed:
            raise MutationError(f"{failed} fails with the program as it is")
        times[test] = time.monotonic() - started
    return times


def try_mutant(tree, mutant, limit):
    """The test that failed with the mutant, or None."""
    name = tree.put(mutant)
    try:
        tree.build(targets_of([mutant]))
        return tree.run(mutant["test"], limit)
    finally:
        tree.restore(name)


def main():
    parser = argparse.ArgumentParser(description="Breaks the program on purpose and sees that a test fails.")
    parser.add_argument("--list", action="store_true", help="tell the mutants, and try none")
    parser.add_argument("--check", action="store_true", help="see that each place is there, and try none")
    parser.add_argument("word", nargs="*", help="only the mutants whose file or description has this word")
    choice = parser.parse_args()
    with open(_LIST, "rb") as file:
        mutants = tomllib.load(file)["mutant"]
    mutants = [mutant for mutant in mutants
               if all(word in mutant.get("file", "") + title_of(mutant) for word in choice.word)]
    if choice.check:
        for mutant in mutants:
            place_of(_ROOT, mutant)
        print(f"{len(mutants)} mutants")
        return 0
    if choice.list:
        for mutant in mutants:
            print(title_of(mutant))
        return 0

    tree = Tree(os.path.join(_ROOT, "build", "mutation"))
    times = time_of_tests(tree, mutants)
    survivors, unclear = [], []
    for number, mutant in enumerate(mutants, 1):
        name = title_of(mutant)
        try:
            caught = try_mutant(tree, mutant, 60 + 10 * times[mutant["test"]])
        except MutationError as error:
            unclear.append(name)
            verdict = f"UNCLEAR, {error}"
        else:
            verdict = f"caught by {caught}" if caught else "SURVIVED"
            if not caught:
                survivors.append(name)
        print(f"{number}/{len(mutants)} {name}: {verdict}", flush=True)
    caught = len(mutants) - len(survivors) - len(unclear)
    print(f"{caught} of {len(mutants)} mutants caught")
    for name in survivors:
        print(f"survived: {name}")
    for name in unclear:
        print(f"unclear: {name}")
    return 0 if caught == len(mutants) else 1


if __name__ == "__main__":
    try:
        sys.exit(main())
    except MutationError as wrong:
        sys.exit(f"mutate: {wrong}")
