#!/usr/bin/env python3
"""Runs CTest in a build folder, shows the failures, and ends with the totals.

    run.py BUILD_FOLDER [CTEST_OPTION...]
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree as xml


def run_ctest(folder, options, report):
    """CTest's exit status; one line of progress every 20 seconds."""
    jobs = str(max(2, os.cpu_count() or 1))
    process = subprocess.Popen(
        ["ctest", "--test-dir", folder, "--output-junit", report, "--parallel", jobs,
         "--test-output-truncation", "head", "--no-tests=error", *options],
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")
    shown = time.monotonic()
    last = ""
    for line in process.stdout:
        last = line if line.strip() else last
        if "/" in line[:8] and time.monotonic() - shown > 20:
            print("  " + line.split("Test")[0].strip(), flush=True)
            shown = time.monotonic()
    status = process.wait()
    if not pathlib.Path(report).exists():
        sys.exit(f"ctest wrote no report: {last.strip()}")
    return status


def is_skipped(case):
    """True for a test that itself said why it was skipped; one that could not be started has failed."""
    reason = case.find("skipped")
    return reason is not None and reason.get("message", "").startswith("SKIP_")


def count(case, word, otherwise):
    """How many of its own a whole program of GoogleTest says to have passed or skipped."""
    found = re.search(rf"^\[  {word} +\] (\d+) tests?[,.]", case.findtext("system-out") or "", re.MULTILINE)
    return int(found.group(1)) if found else otherwise


def main():
    folder, options = sys.argv[1], sys.argv[2:]
    with tempfile.TemporaryDirectory() as scratch:
        report = os.path.join(scratch, "report.xml")
        run_ctest(folder, options, report)
        cases = xml.parse(report).getroot().findall("testcase")

    skipped = [case for case in cases if is_skipped(case)]
    failed = [case for case in cases if case.get("status") != "run" and case not in skipped]
    for case in failed:
        reason = case.find("skipped")
        output = reason.get("message") if reason is not None else case.findtext("system-out") or ""
        print(f"--- {case.get('name')} failed\n{output.strip()}\n")
    for case in skipped:
        print(f"skipped: {case.get('name')}")
    others = [case for case in cases if case not in failed and case not in skipped]
    passed = sum(count(case, "PASSED", 1) for case in others)
    skips = len(skipped) + sum(count(case, "SKIPPED", 0) for case in others)
    print(f"{passed} passed, {len(failed)} failed, {skips} skipped")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main())
