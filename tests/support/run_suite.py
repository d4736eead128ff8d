# SPDX-License-Identifier: Apache-2.0
"""Runs tests of one program in one process: run_suite.py PROGRAM FILTER

When the process dies in a test, that test is named as crashed and the tests behind it run in a new
process, so that one crash hides no other failure.
"""

import re
import subprocess
import sys


def run(program, test_filter):
    """Prints what PROGRAM prints; returns its status, the tests that it began, and whether it came to
    the end of them."""
    begun, ended = [], False
    with subprocess.Popen([program, f"--gtest_filter={test_filter}"], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT) as process:
        for line in process.stdout:
            sys.stdout.buffer.write(line)
            sys.stdout.buffer.flush()
            text = line.decode(errors="replace")
            begun += re.findall(r"\[ RUN      \] (\S+)", text)
            ended = ended or re.search(r"\[==========\] \d+ tests? from .* ran\.", text) is not None
    return process.returncode, begun, ended


def main():
    program, test_filter = sys.argv[1:]
    done, crashed, failed = [], [], False
    while True:
        without = "-" + ":".join(done) if done else ""
        status, begun, ended = run(program, test_filter + without)
        failed = failed or status != 0
        if ended:
            break
        if not begun:
            crashed.append("before any test" if not done else f"after {done[-1]}")
            break
        crashed.append(begun[-1])
        done += begun
        print(f"[ CRASHED  ] {begun[-1]}, status {status}; the tests behind it follow", flush=True)
    if len(begun) + len(done) == 0:
        sys.exit(f"no test matches {test_filter}")
    for test in crashed:
        print(f"[ CRASHED  ] {test}")
    return 1 if failed or crashed else 0


if __name__ == "__main__":
    sys.exit(main())
