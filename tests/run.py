#!/usr/bin/env python3
"""Runs CTest in a build folder, shows the failures, and ends with the totals.

    run.py BUILD_FOLDER [CTEST_OPTION...]

A whole program of GoogleTest is counted by its cases.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree as xml

GOOGLE_TEST = "[==========] "  # begins the first and the last line of such a program


def run_ctest(folder, options, report):
    """Writes CTest's report; one line of progress every 20 seconds."""
    jobs = str(2 * (os.cpu_count() or 1))  # most tests wait for time to pass, or for another process
    process = subprocess.Popen(
        ["ctest", "--test-dir", folder, "--output-junit", report, "--parallel", jobs,
         "--test-output-truncation", "head", "--test-output-size-passed", "16384", "--no-tests=error", *options],
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")
    shown = time.monotonic()
    last = ""
    for line in process.stdout:
        last = line if line.strip() else last
        if "/" in line[:8] and time.monotonic() - shown > 20:
            print("  " + line.split("Test")[0].strip(), flush=True)
            shown = time.monotonic()
    process.wait()
    if not pathlib.Path(report).exists():
        sys.exit(f"ctest wrote no report: {last.strip()}")


def outcome_of(test):
    """([passed, failed, skipped] as numbers, names of what was skipped, what a failure says)."""
    output = test.findtext("system-out") or ""
    reason = test.find("skipped")
    if reason is not None and reason.get("message", "").startswith("SKIP_"):  # said by the test itself
        return [0, 0, 1], [test.get("name")], ""
    if GOOGLE_TEST in output:
        return outcome_of_program(test.get("status") == "run", output)
    if test.get("status") == "run":
        return [1, 0, 0], [], ""
    return [0, 1, 0], [], output if reason is None else reason.get("message")  # a program that could not be started


def outcome_of_program(ended_well, output):
    def count(word):
        line = re.search(rf"^\[  {word} +\] (\d+) tests?[.,]", output, re.MULTILINE)
        return int(line[1]) if line else 0

    skipped = re.findall(r"^\[  SKIPPED \] (\S+)$", output, re.MULTILINE)
    if ended_well:
        # A program whose cases are all left out passes as one.
        return [count("PASSED") or int(not skipped), 0, len(skipped)], skipped, ""
    well = re.compile(r"^\[ RUN      \] (\S+)\n(?:(?!\[ RUN ).*\n)*?\[       OK \] \1 \(.*\n", re.MULTILINE)
    return [count("PASSED"), max(1, count("FAILED")), len(skipped)], skipped, well.sub("", output)


def main():
    folder, options = sys.argv[1], sys.argv[2:]
    with tempfile.TemporaryDirectory() as scratch:
        report = os.path.join(scratch, "report.xml")
        run_ctest(folder, options, report)
        tests = xml.parse(report).getroot().findall("testcase")
    if not tests:
        sys.exit("There are no such tests.")

    totals = [0, 0, 0]
    all_skipped = []
    for test in tests:
        numbers, skipped, words = outcome_of(test)
        totals = [sum(pair) for pair in zip(totals, numbers)]
        all_skipped += skipped
        if numbers[1]:
            print(f"--- {test.get('name')} failed\n{words.strip()}\n")
    for name in all_skipped:
        print(f"skipped: {name}")
    print("{} passed, {} failed, {} skipped".format(*totals))
    return 1 if totals[1] or not totals[0] else 0


if __name__ == "__main__":
    sys.exit(main())
