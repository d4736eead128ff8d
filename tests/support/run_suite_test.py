# SPDX-License-Identifier: Apache-2.0
"""Runs run_suite.py on a program whose tests pass, fail or die as their names say."""

import os
import subprocess
import sys
import tempfile
import unittest

_RUNNER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "run_suite.py")

# Behaves as a test program: a test does what its name says.
_PROGRAM = """#!/usr/bin/python3 -B
import os, signal, sys
left_out = sys.argv[1].partition("=")[2].partition("-")[2]
tests = [name for name in {tests!r} if name not in left_out.split(":")]
failed = False
for name in tests:
    print("words without an end of line [ RUN      ] " + name, flush=True)
    if "Dies" in name:
        os.kill(os.getpid(), signal.SIGKILL)
    if "Leaves" in name:
        sys.exit(0)
    failed = failed or "Fails" in name
print("[==========] %d tests from 1 test suite ran. (0 ms total)" % len(tests))
sys.exit(1 if failed else {status})
"""


def run(*tests, status=0):
    """The status of the runner and what it printed."""
    with tempfile.TemporaryDirectory() as folder:
        program = os.path.join(folder, "program")
        with open(program, "w", encoding="utf-8") as file:
            file.write(_PROGRAM.format(tests=[f"S.{name}" for name in tests], status=status))
        os.chmod(program, 0o755)
        told = subprocess.run([sys.executable, "-B", _RUNNER, program, "S.*"], capture_output=True,
                              text=True, check=False)
        return told.returncode, told.stdout


class ASuite(unittest.TestCase):
    def test_passes_when_all_its_tests_do(self):
        status, output = run("One", "Two")
        self.assertEqual(0, status)
        self.assertEqual(2, output.count("[ RUN "))

    def test_fails_when_one_of_them_does(self):
        self.assertEqual(1, run("One", "Fails")[0])

    def test_fails_when_the_program_reports_an_error_after_its_tests(self):
        self.assertEqual(1, run("One", status=23)[0])

    def test_goes_on_behind_each_test_that_ends_the_program(self):
        status, output = run("One", "Dies", "Two", "Leaves", "Three")
        self.assertEqual(1, status)
        self.assertEqual(["[ CRASHED  ] S.Dies", "[ CRASHED  ] S.Leaves"], output.splitlines()[-2:])
        for name in ("One", "Dies", "Two", "Leaves", "Three"):
            self.assertEqual(1, output.count(f"[ RUN      ] S.{name}"), name)

    def test_fails_when_its_last_test_ends_the_program(self):
        status, output = run("One", "Dies")
        self.assertEqual(1, status)
        self.assertEqual("[ CRASHED  ] S.Dies", output.splitlines()[-1])

    def test_fails_when_there_is_no_such_test(self):
        self.assertEqual(1, run()[0])


if __name__ == "__main__":
    unittest.main()
