#!/usr/bin/env python3
"""Runs the suites of a module's side under a manner and holds the outcome against the list of differences.

    manners.py BUILD_FOLDER MANNER [CTEST_OPTION...]

A test may fail under a manner only when `differences.txt` says so, with its reason; a difference that no test
shows any more has to leave the list.
"""

import json
import os
import pathlib
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as xml

# Folders of the build tree, and what of CTest's tests there is run. Guests crash under some manners, each case by itself.
SUITES = (*((suite, ("-L", "^program$")) for suite in ("cmpicpp", "common", "toolkit", "providers")),
          ("guests", ("-L", "^case$")),
          ("system", ("-R", r"^System\.(Classes|Instances|Associations|Methods|BadModules|BaseServer|Profiles|Modules|"
                            r"Delivering)")))
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


def run_suite(folder, selection, options):
    """{name: what failed, or None} of the suite's tests, of a program its cases."""
    with tempfile.TemporaryDirectory() as scratch:
        report = os.path.join(scratch, "report.xml")
        subprocess.run(["ctest", "--test-dir", folder, *selection, "--output-junit", report, "--no-tests=error",
                        *options],
                       stdout=subprocess.DEVNULL, stderr=subprocess.STDOUT, check=False,
                       env=dict(os.environ, GTEST_OUTPUT=f"json:{scratch}/"))
        if not pathlib.Path(report).exists():
            sys.exit(f"ctest wrote no report for {folder}")
        outcomes = {}
        for test in xml.parse(report).getroot().findall("testcase"):
            name, status, output = test.get("name"), test.get("status"), test.findtext("system-out") or ""
            cases = pathlib.Path(scratch, f"{name}.json")
            if cases.exists():
                outcomes.update(outcomes_of(json.loads(cases.read_text(encoding="utf-8"))))
            else:
                is_well = status == "run" or (status == "notrun" and "skipped=" in output)
                outcomes[name] = None if is_well else output
    return outcomes


def outcomes_of(program):
    return {f"{suite['name']}.{case['name']}":
                "\n".join(failure["failure"] for failure in case["failures"]) if "failures" in case else None
            for suite in program["testsuites"] for case in suite["testsuite"]}


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    build, manner, *options = sys.argv[1:]
    os.environ["PYL_MANNER"] = manner
    results = {}
    for suite, selection in SUITES:
        results.update(run_suite(os.path.join(build, "tests", suite), selection, options))
    failed = {name for name, failure in results.items() if failure is not None}
    expected = expected_of(manner, read_differences(LIST.read_text(encoding="utf-8")))
    for name in sorted(failed - expected):
        print(f"--- {name} fails under {manner}\n{results[name].strip()}\n")
    stale = set() if ":" in manner else expected - failed
    for name in sorted(stale):
        print(f"--- {name} is no difference under {manner} any more: take it off {LIST.name}\n")
    print(f"{manner}: {len(results) - len(failed)} passed, {len(failed & expected)} differ as listed, "
          f"{len(failed - expected) + len(stale)} failed")
    return 1 if failed - expected or stale else 0


if __name__ == "__main__":
    sys.exit(main())
