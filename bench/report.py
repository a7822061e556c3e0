#!/usr/bin/env python3
"""Measures everything in a build folder and prints one table.

    report.py BUILD [library|text|server|alerts]
"""

import pathlib
import sys

import alert_rows
import library_rows
import server_rows
import text_rows
from table import print_table

SOURCE = pathlib.Path(__file__).resolve().parent.parent


def main():
    parts = {"library": library_rows.measure, "text": text_rows.measure,
             "server": lambda build: server_rows.measure(build, SOURCE),
             "alerts": lambda build: alert_rows.measure(build, SOURCE)}
    if len(sys.argv) not in (2, 3) or (len(sys.argv) == 3 and sys.argv[2] not in parts):
        sys.exit(__doc__)
    build = pathlib.Path(sys.argv[1]).resolve()
    rows = []
    for part in sys.argv[2:] or parts:
        rows += parts[part](build)
    print_table(rows)
    goals = [row.met for row in rows if row.met is not None]
    print(f"\n{sum(goals)} of {len(goals)} goals met. docs/benchmarks.md tells what each row means.")


if __name__ == "__main__":
    main()
