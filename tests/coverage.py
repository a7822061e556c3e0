#!/usr/bin/env python3
"""Prints the line coverage of the library's folders after a run of an instrumented build.

    coverage.py BUILD_FOLDER
"""

import collections
import gzip
import json
import pathlib
import subprocess
import sys
import tempfile

FOLDERS = ("common", "cmpicpp", "toolkit", "platform", "providers", "cimhost", "testing")


def covered_lines(build, root):
    """{file: {line: executed}} over all object files."""
    lines = collections.defaultdict(dict)
    notes = [str(path.resolve()) for path in pathlib.Path(build).rglob("*.gcda")]
    with tempfile.TemporaryDirectory() as scratch:
        for start in range(0, len(notes), 50):
            subprocess.run(["gcov", "--json-format", "--preserve-paths", *notes[start:start + 50]],
                           cwd=scratch, check=True, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
            for report in pathlib.Path(scratch).glob("*.json.gz"):
                with gzip.open(report) as stream:
                    add_report(lines, json.load(stream), root)
                report.unlink()
    return lines


def add_report(lines, report, root):
    base = pathlib.Path(report["current_working_directory"])
    for source in report["files"]:
        path = (base / source["file"]).resolve()
        if not path.is_relative_to(root):
            continue
        name = path.relative_to(root).as_posix()
        for line in source["lines"]:
            number = line["line_number"]
            lines[name][number] = lines[name].get(number, False) or line["count"] > 0


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    lines = covered_lines(sys.argv[1], root)
    print("Line coverage:")
    for folder in FOLDERS:
        flags = [hit for name, hits in lines.items() if name.startswith(folder + "/")
                 for hit in hits.values()]
        if flags:
            print(f"  {folder:10} {100 * sum(flags) / len(flags):5.1f} % of {len(flags)} lines")


if __name__ == "__main__":
    main()
