#!/usr/bin/env python3
"""Every test that docs/reliability.md names is there.

    reliability_test.py SOURCE_FOLDER
"""

import fnmatch
import pathlib
import re
import sys

GTEST = re.compile(r"^(?:TYPED_)?TEST(?:_[FP])?\((\w+),\s*(\w+)\)", re.MULTILINE)
CLASS = re.compile(r"^class (\w+)\(.*?(?=^class |\Z)", re.MULTILINE | re.DOTALL)
METHOD = re.compile(r"^    def (test_\w+)", re.MULTILINE)
ADDED = re.compile(r'add_test\(NAME "?([\w.]+)')  # of those made in a loop, what their names begin with
NAMED = re.compile(r"`([\w.*…]+)`")


def tests_of(folder):
    """Names as CTest has them, without those of parameters."""
    for file in folder.rglob("*"):
        if file.suffix == ".cpp":
            for suite, name in GTEST.findall(file.read_text(encoding="utf-8")):
                yield f"{suite}.{name}"
        elif file.name.endswith("_test.py") and file.parent.name == "system":
            for case in CLASS.finditer(file.read_text(encoding="utf-8")):
                for name in METHOD.findall(case[0]):
                    yield f"System.{case[1]}.{name}"
        elif file.name == "CMakeLists.txt":
            yield from ADDED.findall(file.read_text(encoding="utf-8"))


def patterns_of(page):
    """What the second column of its tables names as tests."""
    for line in page.splitlines():
        columns = line.split("|")
        if len(columns) == 5:
            for name in NAMED.findall(columns[2]):
                if "." in name or "*" in name:
                    yield name.replace("…", "*")


def main():
    source = pathlib.Path(sys.argv[1])
    tests = set(tests_of(source / "tests"))
    patterns = list(patterns_of((source / "docs/reliability.md").read_text(encoding="utf-8")))
    missing = [pattern for pattern in patterns if not fnmatch.filter(tests, pattern)]
    for pattern in missing:
        print(f"docs/reliability.md: no test is called {pattern}")
    sys.exit(1 if missing or not patterns else 0)


if __name__ == "__main__":
    main()
