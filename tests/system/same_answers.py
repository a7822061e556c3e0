#!/usr/bin/env python3
"""Runs the wbemcli suites with modules in the server's process and in processes of their own, and holds every
byte that wbemcli printed of the one run against the other.

    same_answers.py BUILD_FOLDER [MODULE...]
"""

import difflib
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

MODULES = ("wbemcli_test", "modules_test", "profiles_test", "indications_test")
# What differs from one run to the next, whoever answers.
CHANGING = re.compile(r"\b\d{14}\.\d{6}[+-]\d{3}\b|\d{8}\d{6}\.\d{6}:000|cimhost:[^:\s]+:\d+:\d+"
                      r"|\bport \d+|127\.0\.0\.1:\d+|localhost:\d+|uptime[^\n]*", re.IGNORECASE)
# Asked again and again until the counts of a delivery are as they should be.
POLLED = re.compile(r"^== interop ei :CIM_IndicationService\n.*?(?=^== |\Z)", re.MULTILINE | re.DOTALL)


def tests_of(modules):
    suite = unittest.defaultTestLoader.loadTestsFromNames(modules)
    pending, names = [suite], []
    while pending:
        each = pending.pop(0)
        if isinstance(each, unittest.TestSuite):
            pending[:0] = each
        else:
            names.append(each.id())
    return names


def run(test, isolates, folder):
    """Whether the test passed, and what it was answered."""
    answers = pathlib.Path(folder) / "answers"
    answers.unlink(missing_ok=True)
    environment = {**os.environ, "PYL_ANSWERS": str(answers), "PYL_ISOLATE": "1" if isolates else ""}
    done = subprocess.run([sys.executable, "-B", "-m", "unittest", "-q", test], env=environment,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    text = answers.read_text(encoding="utf-8") if answers.exists() else ""
    text = POLLED.sub("", text)
    return done.returncode == 0, CHANGING.sub("*", text).splitlines(keepends=True), done.stdout


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    os.environ["PYL_BUILD_FOLDER"] = sys.argv[1]
    sys.path.insert(0, str(pathlib.Path(__file__).parent))
    os.chdir(pathlib.Path(__file__).parent)
    tests = tests_of(sys.argv[2:] or MODULES)
    different = 0
    answers = 0
    with tempfile.TemporaryDirectory() as folder:
        for test in tests:
            (good, here, _), (isolated, there, output) = (run(test, each, folder)
                                                          for each in (False, True))
            answers += sum(line.startswith("== ") for line in here)
            if good == isolated and here == there:
                continue
            different += 1
            print(f"{test}: passed {good}, isolated {isolated}")
            sys.stdout.writelines(difflib.unified_diff(here, there, "one process", "isolated", n=1))
            if good and not isolated:
                print(output)
    print(f"{len(tests)} tests with {answers} answers, {different} differ")
    sys.exit(1 if different else 0)


if __name__ == "__main__":
    main()
