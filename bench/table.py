"""The rows that the measurements end in, and how they are printed."""

import dataclasses


@dataclasses.dataclass
class Row:
    """What was measured beside what, and whether that is good enough; None where there is no goal."""

    name: str
    what: str
    measured: str
    anchor: str
    ratio: str
    goal: str
    met: bool | None

    def cells(self):
        return [self.name, self.what, self.measured, self.anchor, self.ratio, self.goal,
                {True: "met", False: "MISSED", None: ""}[self.met]]


TITLES = ["row", "what", "measured", "anchor", "ratio", "goal", ""]


def print_table(rows):
    lines = [TITLES] + [row.cells() for row in rows]
    widths = [max(len(line[column]) for line in lines) for column in range(len(TITLES))]
    for line in lines:
        print("  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip())
