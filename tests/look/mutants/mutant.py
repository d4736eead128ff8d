# SPDX-License-Identifier: Apache-2.0
"""Breaks the look on purpose and expects the check for it to fail."""

import argparse
import json
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import tomllib

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(os.path.dirname(HERE)))


def changes(mutant):
    """The (file, old, new) of a mutant; empty if an option of look-check makes it."""
    return [(mutant["file"], mutant["old"], mutant["new"])] if "file" in mutant else []


def read(name):
    with open(name, encoding="utf-8") as file:
        return file.read()


def check_places(mutants):
    wrong = []
    for mutant in mutants:
        for name, old, _ in changes(mutant):
            count = len(re.findall(old, read(os.path.join(ROOT, name))))
            if count != 1:
                wrong.append(f"{mutant['name']}: what it breaks stands {count} times in {name}")
    return wrong


def broken_theme(mutant, arguments, folder):
    """A folder with the theme as the mutant makes it; the good one if it leaves the theme alone."""
    mine = [change for change in changes(mutant) if change[0].startswith("theme/")]
    if not mine:
        return os.path.join(arguments.build, "theme")
    source = os.path.join(folder, "theme")
    shutil.copytree(os.path.join(ROOT, "theme"), source)
    for name, old, new in mine:
        apply(os.path.join(folder, name), old, new)
    made = os.path.join(folder, "made")
    os.mkdir(made)
    subprocess.run(["sh", os.path.join(source, "compile.sh"), os.path.join(source, "gui.edc"),
                    os.path.join(arguments.build, "theme", "pictures"),
                    os.path.join(made, "gui.edj")],
                   check=True, env={**os.environ, "EDJE_CC": arguments.edje_cc})
    return made


def broken_catalogues(mutant, arguments, folder):
    mine = [change for change in changes(mutant) if change[0].startswith("po/")]
    good = os.path.join(arguments.build, "locale")
    if not mine:
        return good
    made = os.path.join(folder, "locale")
    for name, old, new in mine:
        source = os.path.join(folder, os.path.basename(name))
        shutil.copy(os.path.join(ROOT, name), source)
        apply(source, old, new)
        language = os.path.splitext(os.path.basename(name))[0]
        place = os.path.join(made, language, "LC_MESSAGES")
        os.makedirs(place)
        subprocess.run([arguments.msgfmt, "-o", os.path.join(place, "ZOLT.mo"), source], check=True)
    return made


def apply(name, old, new):
    text = read(name)
    changed, count = re.subn(old, new, text)
    if count != 1 or changed == text:
        sys.exit(f"what the mutant breaks stands {count} times in {name}")
    with open(name, "w", encoding="utf-8") as file:
        file.write(changed)


def run(mutant, arguments):
    with tempfile.TemporaryDirectory() as folder:
        report = os.path.join(folder, "report.json")
        result = subprocess.run(
            [arguments.look_check, "--theme-folder", broken_theme(mutant, arguments, folder),
             "--catalogues", broken_catalogues(mutant, arguments, folder), "--sizes", "1280x720",
             "--report", report, *shlex.split(mutant["options"])],
            capture_output=True, text=True, check=False)
        if not os.path.exists(report):
            sys.exit(f"the checker did not come to its end\n{result.stdout}{result.stderr}")
        failures = json.loads(read(report))["failures"]
    failed = sorted({failure["check"] for failure in failures})
    if any(failure["check"] == mutant["check"] and mutant.get("says", "") in failure["detail"]
           for failure in failures):
        print(f"caught by {mutant['check']}; failed: {', '.join(failed)}")
        return
    sys.exit(f"{mutant['check']} does not notice; failed: {', '.join(failed) or 'nothing'}\n"
             f"{result.stdout}")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--check", action="store_true", help="only see that each has its place")
    parser.add_argument("--build", help="folder of the build")
    parser.add_argument("--look-check", help="the program")
    parser.add_argument("--edje-cc", default="edje_cc")
    parser.add_argument("--msgfmt", default="msgfmt")
    parser.add_argument("name", nargs="?")
    arguments = parser.parse_args()
    with open(os.path.join(HERE, "mutants.toml"), "rb") as file:
        mutants = tomllib.load(file)["mutant"]
    if arguments.check:
        wrong = check_places(mutants)
        print("\n".join(wrong) or f"{len(mutants)} mutants have their places")
        return 1 if wrong else 0
    for mutant in mutants:
        if mutant["name"] == arguments.name:
            run(mutant, arguments)
            return 0
    return f"there is no mutant {arguments.name}"


if __name__ == "__main__":
    sys.exit(main())
