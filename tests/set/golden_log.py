# SPDX-License-Identifier: Apache-2.0
"""Compares the log of a whole run with a reference log that was reviewed.

A file in logs/ has a line for each line of the program: buffer, priority, file, function, text. What varies
between runs or builds (time, process, place in the file, the compiler's spelling of a function, the folder of
the set) is left out, and so are the keys that the keyboard of the display does not have. Lines of other
threads than the main one come at varying times, so they are sorted and put at the end."""

import difflib
import os
import re

FOLDER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "logs")
HEAD = ["# SPDX-License-Identifier: Apache-2.0", "# The log of a whole run; see golden_log.py."]
LINE = re.compile(r"^\S+ \S+ +(?P<process>\d+) +(?P<thread>\d+) (?P<buffer>\w+) (?P<priority>\w) "
                  r"(?P<tag>\w+): (?P<place>\S+: [^(]+)\(\d+\) > (?P<text>.*)$")


def lines_of(log, folder):
    """The program's lines in LOG, a list of lines, in the form of the files. FOLDER is the set's folder."""
    main, others, current = [], [], None
    for line in log:
        match = LINE.match(line)
        if match:
            own = match["tag"] == "ZOLT" and "Error caught during grabbing" not in match["text"]
            current = (main if match["process"] == match["thread"] else others) if own else None
            text = re.sub(r"^Called .*", "Called", match["text"])
            line = f"{match['buffer']} {match['priority']} {match['place']} > {text}"
        elif re.match(r"^\d\d-\d\d \d\d:\d\d:", line):
            current = None  # not a line of the program
        if current is not None:
            line = re.sub(r"(Compilation timestamp:\s+).*", r"\1WHEN", line)
            current.append(line.replace(folder, "FOLDER").rstrip())
    return main + sorted(others)


def differences(name, lines):
    """The differences between LINES and the reference log NAME, as a text; empty if there are none. With
    ZOLT_WRITE_LOGS in the environment LINES become the reference log."""
    path = os.path.join(FOLDER, name + ".log")
    if os.environ.get("ZOLT_WRITE_LOGS"):
        os.makedirs(FOLDER, exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write("\n".join(HEAD + lines) + "\n")
    with open(path, encoding="utf-8") as file:
        agreed = file.read().splitlines()[len(HEAD):]
    return "\n".join(difflib.unified_diff(agreed, lines, "agreed", "written", lineterm=""))
