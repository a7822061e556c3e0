#!/usr/bin/env python3
"""Measures everything in a build folder and prints one table.

    report.py BUILD [library|server]
"""

import pathlib
import sys

import library_rows
import server_rows
from table import print_table

SOURCE = pathlib.Path(__file__).resolve().parent.parent


def main():
    if len(sys.argv) not in (2, 3) or sys.argv[2:] not in ([], ["library"], ["server"]):
        sys.exit(__doc__)
    build = pathlib.Path(sys.argv[1]).resolve()
    rows = []
    if sys.argv[2:] != ["server"]:
        rows += library_rows.measure(build)
    if sys.argv[2:] != ["library"]:
        rows += server_rows.measure(build, SOURCE)
    print_table(rows)
    missed = sum(not row.met for row in rows)
    print(f"\n{len(rows) - missed} of {len(rows)} goals met. docs/benchmarks.md tells what each row means.")


if __name__ == "__main__":
    main()
