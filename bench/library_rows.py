"""Measures the support library: rows a1 to a4, b1, b2, b3, c1, e1, e2, f1, f2 and h1, and stacked decorators."""

import json
import subprocess

import instructions
from table import Row

REPETITIONS = 15


def measure_times(program):
    """(nanoseconds, allocations) of one operation of every row: the best of several rounds, since what
    else the machine does only ever adds."""
    answer = subprocess.run(
        [program, "--benchmark_format=json", "--benchmark_min_time=0.02",
         f"--benchmark_repetitions={REPETITIONS}", "--benchmark_enable_random_interleaving=true"],
        check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    best = {}
    for run in json.loads(answer.stdout)["benchmarks"]:
        if run["run_type"] != "iteration":
            continue
        name = run["run_name"]
        time = min(run["cpu_time"], best.get(name, (float("inf"),))[0])
        best[name] = (time, run["allocations"])
    return best


def in_units(nanoseconds):
    if nanoseconds < 1000:
        return f"{nanoseconds:.1f} ns"
    return f"{nanoseconds / 1000:.1f} us"


class Pair:
    """A row of the library and its anchor, in time, instructions and allocations."""

    def __init__(self, what, times, counts):
        self.what = what
        self.time, self.allocations = times[f"{what}/library"]
        self.anchor_time, self.anchor_allocations = times[f"{what}/anchor"]
        self.count = counts[f"{what}/library"]
        self.anchor_count = counts[f"{what}/anchor"]

    @property
    def time_ratio(self):
        return self.time / self.anchor_time

    @property
    def count_ratio(self):
        return self.count / self.anchor_count

    @property
    def more_allocations(self):
        return round(self.allocations - self.anchor_allocations)

    def row(self, ratio, goal, met):
        name, what = self.what.split("/")
        return Row(name, what, f"{in_units(self.time)}, {self.count:,.0f} instr",
                   f"{in_units(self.anchor_time)}, {self.anchor_count:,.0f} instr", ratio, goal, met)

    def ratio_row(self, most_instructions, most_time, most_allocations):
        ratio = (f"{self.count_ratio:.2f} instr, {self.time_ratio:.2f} time, "
                 f"{self.more_allocations:+d} alloc")
        goal = f"{most_instructions:.2f} instr"
        met = self.count_ratio <= most_instructions
        if most_time:
            goal += f", {most_time:.2f} time"
            met = met and self.time_ratio <= most_time
        if most_allocations is not None:
            goal += f", {most_allocations:+d} alloc"
            met = met and self.more_allocations <= most_allocations
        return self.row(ratio, goal, met)


def entry_row(pair):
    more_time = pair.time - pair.anchor_time
    more_count = pair.count - pair.anchor_count
    return pair.row(f"{more_time:+.1f} ns, {more_count:+.0f} instr, {pair.more_allocations:+d} alloc",
                    "+4 ns, +15 instr, 0 alloc",
                    more_time <= 4 and more_count <= 15 and pair.more_allocations == 0)


def off_row(pair):
    return pair.row(f"{pair.count - pair.anchor_count:+.0f} instr, {pair.allocations:.0f} alloc",
                    "nothing built, 0 alloc",
                    pair.count - pair.anchor_count < 10 and pair.allocations == 0)


def line_row(pair):
    return pair.row(f"{pair.time_ratio:.2f} time, {pair.count_ratio:.2f} instr", "1.30 time",
                    pair.time_ratio <= 1.3)


def time_row(pair, most):
    return pair.row(f"{pair.time_ratio:.2f} time, {pair.count_ratio:.2f} instr", f"{most:.2f} time",
                    pair.time_ratio <= most)


def stack_row(pair):
    return pair.row(f"{pair.time - pair.anchor_time:+.0f} ns, {pair.count - pair.anchor_count:+.0f} instr, "
                    f"{pair.more_allocations:+d} alloc", "0 alloc", pair.more_allocations == 0)


def store_row(pair, most):
    return pair.row(f"{pair.time_ratio:.2f} time", f"{most:.2f} time", pair.time_ratio <= most)


def alert_row(pair):
    return pair.row(f"{pair.count_ratio:.2f} instr, {pair.time_ratio:.2f} time, {1e9 / pair.time:,.0f}/s", "",
                    None)


def linear_row(times):
    each = {size: times[f"b1/instances {size}/library"][0] / size for size in (100, 1000)}
    growth = each[1000] / each[100]
    return Row("b1", "growth with N", f"{in_units(each[1000])} each at 1000",
               f"{in_units(each[100])} each at 100", f"{growth:.2f}", "linear (1.25)", growth <= 1.25)


# What is measured, with the most that it may take of the anchor: instructions, time, more allocations.
RATIOS = [
    ("b1/names 10", 1.10, 1.15, None),
    ("b1/names 100", 1.10, 1.15, None),
    ("b1/names 1000", 1.10, 1.15, None),
    ("b1/instances 10", 1.10, 1.15, None),
    ("b1/instances 100", 1.10, 1.15, None),
    ("b1/instances 1000", 1.10, 1.15, None),
    ("b2/get 1 of 1", 1.10, None, None),
    ("b2/get 1 of 100", 1.10, None, None),
    ("b2/get 1 of 1000", 1.10, None, None),
    ("b3/1 links of 100", 1.10, None, None),
    ("b3/4 links of 100", 1.10, None, None),
    ("b3/4 links of 1000", 1.10, None, None),
    ("c1/build", 1.10, None, 0),
    ("c1/compare", 1.10, None, 0),
    ("c1/text", 1.10, None, 1),
    ("f1/catalogue of 49", 0.10, 0.10, None),
    ("f2/last of 49", 1.00, 1.00, 0),
]

# Decorators: the most that they may take of the anchor's time.
DECORATOR_RATIOS = [
    ("a2/started", 1.30),
    ("a3/timing, log off", 1.15),
    ("a3/timing with its line", 1.15),
]

STACKS = ["stack/of 1: logged", "stack/of 2: logged, timed", "stack/of 3: autostarted, logged, timed"]

# The text store: the most that it may take of the anchor's time.
STORE_RATIOS = [
    ("e1/get of 10", 1.00),
    ("e1/get of 1000", 0.25),
    ("e2/put of 10", 2.00),
]

ALERTS = ["h1/standard alert", "h1/alert that tells of the server"]


def measure(build):
    """All rows of the library in this build folder."""
    program = build / "bench/library/library_bench"
    times = measure_times(program)
    counts = instructions.count(program)

    def pair(what):
        return Pair(what, times, counts)

    rows = [entry_row(pair("a1/entry")), off_row(pair("a4/off")), line_row(pair("a4/on"))]
    rows += [time_row(pair(what), most) for what, most in DECORATOR_RATIOS]
    rows += [stack_row(pair(what)) for what in STACKS]
    rows += [pair(what).ratio_row(*most) for what, *most in RATIOS]
    rows += [store_row(pair(what), most) for what, most in STORE_RATIOS]
    rows += [alert_row(pair(what)) for what in ALERTS]
    rows.append(linear_row(times))
    return sorted(rows, key=lambda row: row.name)
