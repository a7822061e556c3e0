#!/usr/bin/env python3
"""Measures the decoder of character references: rows d1 to d5.

    text_rows.py BUILD
"""

import json
import pathlib
import subprocess
import sys

import instructions
from table import Row, print_table

REPETITIONS = 7
XML_PEERS = ("rapidxml", "pugixml")
HTML_PEERS = ("gumbo", "myhtml")


class Measured:
    """One side of a row: its best time, and how much text that was."""

    def __init__(self, nanoseconds, bytes_, references):
        self.time = nanoseconds
        self.rate = bytes_ / nanoseconds
        self.references = references
        self.each = nanoseconds / references if references else 0

    def __str__(self):
        return f"{self.rate:.2f} GB/s" + (f", {self.each:.1f} ns each" if self.references else "")


def measure_times(program):
    """The sides of every row by name: the best of several rounds, since what else the machine does only
    ever adds."""
    answer = subprocess.run(
        [program, "--benchmark_format=json", "--benchmark_min_time=0.02",
         f"--benchmark_repetitions={REPETITIONS}", "--benchmark_enable_random_interleaving=true"],
        check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    best = {}
    for run in json.loads(answer.stdout)["benchmarks"]:
        if run["run_type"] != "iteration":
            continue
        side = Measured(run["cpu_time"], run["bytes"], run["references"])
        kept = best.setdefault(run["run_name"], side)
        if side.time < kept.time:
            best[run["run_name"]] = side
    return best


def best_peer(times, what, names):
    return min(((times[f"{what}/{name}"], name) for name in names), key=lambda peer: peer[0].time)


def plain_row(times):
    ours, anchor = times["d1/no references/library"], times["d1/no references/memchr"]
    ratio = ours.rate / anchor.rate
    return Row("d1", "no references, in place", str(ours), f"memchr {anchor}", f"{ratio:.2f}", ">= 0.80",
               ratio >= 0.8)


def sparse_row(times):
    what = "d2/1 % references"
    ours, copy = times[f"{what}/library"], times[f"{what}/memmove"]
    peer, name = best_peer(times, what, XML_PEERS)
    of_copy, of_peer = ours.rate / copy.rate, ours.rate / peer.rate
    return Row("d2", "1 % references", f"{ours.rate:.2f} GB/s",
               f"memmove {copy.rate:.2f}, {name} {peer.rate:.2f} GB/s",
               f"{of_copy:.2f}, {of_peer:.1f}", ">= 0.20, >= 4.0", of_copy >= 0.2 and of_peer >= 4)


def mixed_row(times, counts):
    what = "d3/30 % references"
    ours = times[f"{what}/library"]
    peer, name = best_peer(times, what, HTML_PEERS)
    ratio, count = peer.each / ours.each, counts[f"{what}/library"] / ours.references
    return Row("d3", "30 % references", f"{ours}, {count:.0f} instr", f"{name} {peer}", f"{ratio:.1f}",
               ">= 2.5, <= 32 ns, <= 130 instr", ratio >= 2.5 and ours.each <= 32 and count <= 130)


def dense_row(times):
    what = "d4/references only"
    ours, peer = times[f"{what}/library"], times[f"{what}/rapidxml"]
    ratio = peer.each / ours.each
    return Row("d4", "references only", str(ours), f"rapidxml {peer}", f"{ratio:.2f}", ">= 0.75",
               ratio >= 0.75)


def hostile_row(times):
    half, whole = (times[f"d5/{size} times '&'/library"] for size in (128 * 1024, 256 * 1024))
    growth = whole.time / half.time
    return Row("d5", "262144 times '&'", f"{whole.rate:.2f} GB/s", f"half of it {half.rate:.2f} GB/s",
               f"{growth:.2f}", "<= 2.20, >= 0.30 GB/s", growth <= 2.2 and whole.rate >= 0.3)


def measure(build):
    """All rows of the decoder in this build folder."""
    program = build / "bench/text/text_bench"
    times = measure_times(program)
    counts = instructions.count(program)
    return [plain_row(times), sparse_row(times), mixed_row(times, counts), dense_row(times),
            hostile_row(times)]


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    print_table(measure(pathlib.Path(sys.argv[1]).resolve()))


if __name__ == "__main__":
    main()
