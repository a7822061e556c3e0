#!/usr/bin/env python3
"""Counts the instructions of every row of library_bench with callgrind and prints them as ratios.

    instructions.py LIBRARY_BENCH
"""

import pathlib
import re
import subprocess
import sys
import tempfile

LABEL = re.compile(r"^desc: Trigger: Client Request: (.*)\*(\d+)$", re.MULTILINE)
TOTAL = re.compile(r"^(?:totals|summary): (\d+)$", re.MULTILINE)


def count(program):
    """Instructions of one operation of every row, by the row's name."""
    counts = {}
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(
            ["valgrind", "--quiet", "--tool=callgrind", "--instr-atstart=no",
             f"--callgrind-out-file={folder}/out", program, "--instructions"],
            check=True, stdout=subprocess.DEVNULL)
        for dump in pathlib.Path(folder).iterdir():
            text = dump.read_text(encoding="utf-8")
            label = LABEL.search(text)
            if label:
                total = max(int(number) for number in TOTAL.findall(text))
                counts[label[1]] = total / int(label[2])
    return counts


def pairs(values):
    """(what is measured, the library's value, the anchor's) for each pair of rows."""
    for name, ours in values.items():
        what, side = name.rsplit("/", 1)
        if side == "library":
            yield what, ours, values[f"{what}/anchor"]


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    print(f"{'row':28}{'library':>12}{'anchor':>12}{'ratio':>8}")
    for what, ours, anchor in sorted(pairs(count(sys.argv[1]))):
        print(f"{what:28}{ours:12,.0f}{anchor:12,.0f}{ours / anchor:8.2f}")


if __name__ == "__main__":
    main()
