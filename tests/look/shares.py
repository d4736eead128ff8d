# SPDX-License-Identifier: Apache-2.0
"""Divides the work of look-check between processes, and adds up what they report. As a program it takes the
options of look-check after the program itself: shares.py PROGRAM [--report FILE] [OPTION ...]. --jobs N tells
how many processes run at a time, one for each core without it."""

import concurrent.futures
import json
import os
import subprocess
import sys
import tempfile
import time

# The toolkit does not give back all the memory that it takes, so no process does all of a long run.
SHARES_PER_JOB = 8


def run_share(command, number, count, folder):
    """The report of one share; a process that dies is a failure of its own."""
    report = os.path.join(folder, f"{number}.json")
    done = subprocess.run([*command, "--share", f"{number}/{count}", "--report", report],
                          capture_output=True, text=True, check=False)
    if done.returncode == 2:
        sys.exit(done.stderr.strip())
    if not os.path.exists(report):
        detail = f"share {number}/{count} ended with {done.returncode}: {done.stderr.strip()[-500:]}"
        return {"failures": [{"check": "process", "scene": "", "mode": "", "state": "", "detail": detail}]}
    with open(report, encoding="utf-8") as file:
        return json.load(file)


def added(reports):
    """One report of all."""
    whole = {"pictures": 0, "seconds": 0, "languages": [], "checks": {}, "texts": {}, "notes": [], "failures": []}
    for report in reports:
        whole["pictures"] += report.get("pictures", 0)
        whole["languages"] = sorted({*whole["languages"], *report.get("languages", [])})
        for name, (asked, failed) in report.get("checks", {}).items():
            before = whole["checks"].get(name, [0, 0])
            whole["checks"][name] = [before[0] + asked, before[1] + failed]
        for name, count in report.get("texts", {}).items():
            whole["texts"][name] = whole["texts"].get(name, 0) + count
        whole["notes"] += report.get("notes", [])
        whole["failures"] += report["failures"]
    return whole


def run(command, jobs=None):
    """The report of COMMAND, a look-check with its options, divided between JOBS processes."""
    jobs = jobs or os.cpu_count()
    started = time.monotonic()
    count = jobs * SHARES_PER_JOB
    with tempfile.TemporaryDirectory() as folder, concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        whole = added(pool.map(lambda number: run_share(command, number, count, folder), range(1, count + 1)))
    whole["seconds"] = round(time.monotonic() - started, 1)
    return whole


def summary(report):
    lines = [f"FAILED {one['check']}: {one['scene']} [{one['state']}] {one['mode']}: {one['detail']}"
             for one in report["failures"]]
    asked = sum(count for count, _ in report["checks"].values())
    return "\n".join([*lines, f"{report['pictures']} pictures, {len(report['languages'])} languages, {asked} checks, "
                              f"{len(lines)} failures, {report['seconds']} s"])


def taken(arguments, option):
    """The value of OPTION, which is taken out of ARGUMENTS, or None."""
    if option not in arguments[:-1]:
        return None
    at = arguments.index(option)
    value = arguments[at + 1]
    del arguments[at:at + 2]
    return value


def main():
    arguments = sys.argv[1:]
    output = taken(arguments, "--report")
    jobs = taken(arguments, "--jobs")
    report = run(arguments, int(jobs) if jobs else None)
    if output:
        with open(output, "w", encoding="utf-8") as file:
            json.dump(report, file, indent=1)
    print(summary(report))
    return 1 if report["failures"] else 0


if __name__ == "__main__":
    sys.exit(main())
