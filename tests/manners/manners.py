#!/usr/bin/env python3
"""Runs the suites of a module's side under a manner and holds the outcome against the list of differences.

    manners.py BUILD_FOLDER MANNER [CTEST_OPTION...]

A test may fail under a manner only when `differences.txt` says so, with its reason; a difference that no test
shows any more has to leave the list.
"""

import os
import pathlib
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as xml

# Folders of the build tree, with the tests of each that stand for the rest.
SUITES = {"cmpicpp": ".", "common": ".", "toolkit": ".", "providers": ".", "guests": ".",
          "system": r"^System\.(Classes|Instances|Associations|Methods|BadModules|BaseServer|Profiles|Modules|Delivering)"}
LIST = pathlib.Path(__file__).with_name("differences.txt")


def read_differences(text):
    """[({manner, ...}, test)] of lines "MANNER[,MANNER...] TEST", each group with its reason, indented, below."""
    differences, lacking = [], []
    for number, line in enumerate(text.splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        words = line.split()
        if line[0].isspace():
            lacking = []
        elif len(words) == 2:
            differences.append((set(words[0].split(",")), words[1]))
            lacking.append(words[1])
        else:
            sys.exit(f"{LIST.name}:{number}: expected: MANNER[,MANNER...] TEST")
    if lacking:
        sys.exit(f"{LIST.name}: {lacking[0]} has no reason")
    return differences


def expected_of(manner, differences):
    """What fails under the manner; a seed of mean has some of mean's habits, so that it may."""
    return {test for manners, test in differences if manner.split(":")[0] in manners}


def run_suite(folder, pattern, options):
    """{name: (outcome, output)} of the suite's tests."""
    with tempfile.TemporaryDirectory() as scratch:
        report = os.path.join(scratch, "report.xml")
        subprocess.run(["ctest", "--test-dir", folder, "-R", pattern, "--output-junit", report,
                        "--no-tests=error", *options],
                       stdout=subprocess.DEVNULL, stderr=subprocess.STDOUT, check=False)
        if not pathlib.Path(report).exists():
            sys.exit(f"ctest wrote no report for {folder}")
        cases = xml.parse(report).getroot().findall("testcase")
    return {case.get("name"): (case.get("status"), case.findtext("system-out") or "") for case in cases}


def is_skipped(status, output):
    return status == "notrun" and ("SKIPPED" in output or "skipped=" in output)


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    build, manner, *options = sys.argv[1:]
    os.environ["PYL_MANNER"] = manner
    results = {}
    for suite, pattern in SUITES.items():
        results.update(run_suite(os.path.join(build, "tests", suite), pattern, options))
    failed = {name for name, (status, output) in results.items()
              if status != "run" and not is_skipped(status, output)}
    expected = expected_of(manner, read_differences(LIST.read_text(encoding="utf-8")))
    for name in sorted(failed - expected):
        print(f"--- {name} fails under {manner}\n{results[name][1].strip()}\n")
    stale = set() if ":" in manner else expected - failed
    for name in sorted(stale):
        print(f"--- {name} is no difference under {manner} any more: take it off {LIST.name}\n")
    print(f"{manner}: {len(results) - len(failed)} passed, {len(failed & expected)} differ as listed, "
          f"{len(failed - expected) + len(stale)} failed")
    return 1 if failed - expected or stale else 0


if __name__ == "__main__":
    sys.exit(main())
