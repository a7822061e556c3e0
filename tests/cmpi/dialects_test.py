#!/usr/bin/env python3
"""Compiles a provider of the field in every dialect of one compiler, at every level, without a warning.

    dialects_test.py INCLUDE_FOLDER GUEST_SOURCE CC CXX

Ends with 77 where the compiler is not installed.
"""

import itertools
import pathlib
import shutil
import subprocess
import sys

SKIPPED = 77
DIALECTS = {"c": ("c89", "c99", "c11", "c17", "c2x"),
            "c++": ("c++98", "c++11", "c++17", "c++20", "c++2b")}
FLAGS = ("-Wall", "-Wextra", "-Wpedantic", "-Werror")
LEVELS = ((), ("-DCMPI_VERSION=100", "-DGUEST_POLLS_WITH_A_RESULT"), ("-DCMPI_VERSION=200",), ("-DCMPI_VERSION=CMPIVersion210",))


def complaints(compiler, language, dialect, flags, source):
    command = [compiler, "-x", language, f"-std={dialect}", "-fsyntax-only", *FLAGS, *flags, source]
    result = subprocess.run(command, capture_output=True, text=True, timeout=60)
    return f"{' '.join(command)}\n{result.stderr}" if result.returncode != 0 else ""


def main():
    include, source, *compilers = sys.argv[1:]
    compilers = [shutil.which(compiler) for compiler in compilers]
    if not all(compilers):
        print(f"skipped: {' '.join(sys.argv[3:])} not installed")
        return SKIPPED
    inner = str(pathlib.Path(include) / "cmpi")
    found = []
    for compiler, (language, dialects) in zip(compilers, DIALECTS.items()):
        for dialect, level in itertools.product(dialects, LEVELS):
            found.append(complaints(compiler, language, dialect, ("-I", inner, *level), source))
        for dialect in dialects:
            found.append(complaints(compiler, language, dialect,
                                    ("-I", include, "-DGUEST_LONG_NAMES"), source))
    found = [text for text in found if text]
    print("\n".join(found) or "no warning")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
