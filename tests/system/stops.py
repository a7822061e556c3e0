#!/usr/bin/env python3
"""Stops one cimhost after the other while clients ask, every other one beside clients that never read what they asked
for.

    stops.py BUILD_FOLDER [STOPS]

Prints the longest stop of each kind. Fails when a server does not end in order, when a reply was cut off, or when a
stop took more than a second. Not part of the suite, which holds the order of such stops but no clock against them.
"""

import os
import pathlib
import sys

SILENT = 8
LONGEST = 1.0


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    os.environ["PYL_BUILD_FOLDER"] = str(pathlib.Path(sys.argv[1]).resolve())
    stops = int(sys.argv[2]) if len(sys.argv) == 3 else 80
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
    sys.exit(measure(stops))


def measure(stops):
    from loaded_stop import ASKING, LoadedStop  # wants the build folder in the environment

    longest = {0: 0.0, SILENT: 0.0}
    for number in range(stops):
        silent = SILENT * (number % 2)
        stop = LoadedStop(number, silent)
        if stop.status != 0 or stop.faults:
            return f"stop {number} ended with {stop.status}, {stop.faults}\n{stop.log}"
        longest[silent] = max(longest[silent], stop.seconds)
    print(f"{stops} stops beside {ASKING} clients that ask: {longest[0]:.2f} s at most, "
          f"{longest[SILENT]:.2f} s with {SILENT} more that never read")
    return int(max(longest.values()) > LONGEST)


if __name__ == "__main__":
    main()
