#!/usr/bin/env python3
"""Runs the programs of GoogleTest cases under valgrind's memcheck.

    memcheck.py BUILD_FOLDER [PROGRAM...]

An error is an invalid access, a value that was never set, memory that nothing leads to at the end, or a descriptor
that the program leaves open. Prints what valgrind says of each program that has one, and ends with the totals. Not
part of the suite: it takes a quarter of an hour.
"""

import concurrent.futures
import json
import os
import re
import subprocess
import sys
import tempfile
import time

ERROR = 99
VALGRIND = ["valgrind", "--quiet", "--leak-check=full", "--errors-for-leak-kinds=definite,indirect",
            "--track-fds=yes", "--child-silent-after-fork=yes", f"--error-exitcode={ERROR}",
            "--fair-sched=yes",  # a thread that never waits would let no other one run
            "--soname-synonyms=somalloc=nouserintercepts"]  # tests that count allocations keep their own operators
LEFT_OPEN = re.compile(r"^==\d+== Open .*\n(?!.*<inherited from parent>)", re.MULTILINE)
LEFT_OUT = {"test_cimhost_isolation": "valgrind 3.19 knows no pidfd_open, by which a module's process is watched"}


def programs_of(build):
    """{name: command} of the test programs in this build folder."""
    listing = subprocess.run(["ctest", "--test-dir", build, "--show-only=json-v1", "-L", "^program$"],
                             stdout=subprocess.PIPE, check=True)
    return {test["name"]: test["command"] for test in json.loads(listing.stdout)["tests"]}


def judge(name, command):
    """(name, whether all is well, cases passed, seconds, what was said of what is not)."""
    began = time.monotonic()
    with tempfile.TemporaryDirectory() as scratch:
        report = os.path.join(scratch, "valgrind.log")
        run = subprocess.run([*VALGRIND, f"--log-file={report}", *command], stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, text=True, errors="replace")
        with open(report, encoding="utf-8", errors="replace") as words:
            said = words.read()
    passed = re.search(r"^\[  PASSED  \] (\d+) tests?\.", run.stdout, re.MULTILINE)
    failures = "\n".join(re.findall(r"^.*(?:Failure\n(?:.*\n){0,6}|\[  FAILED  \].*)", run.stdout, re.MULTILINE))
    is_well = run.returncode == 0 and not LEFT_OPEN.search(said)
    return name, is_well, int(passed[1]) if passed else 0, time.monotonic() - began, said + failures


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    programs = programs_of(sys.argv[1])
    if unknown := set(sys.argv[2:]) - set(programs):
        sys.exit(f"There is no program {', '.join(sorted(unknown))}.")
    wanted = sys.argv[2:] or programs.keys() - LEFT_OUT.keys()
    for name, reason in () if sys.argv[2:] else LEFT_OUT.items():
        print(f"  left out: {name} ({reason})")
    cases, found = 0, []
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for running in concurrent.futures.as_completed([pool.submit(judge, name, programs[name]) for name in wanted]):
            name, is_well, passed, seconds, said = running.result()
            cases += passed
            print(f"  {name}: {passed} cases, {seconds:.0f} s", flush=True)
            if not is_well:
                found.append(name)
                print(f"--- {name}:\n{said}", flush=True)
    print(f"{len(wanted)} programs, {cases} cases under memcheck: {len(found)} with errors")
    sys.exit(bool(found))


if __name__ == "__main__":
    main()
