"""The rows that the measurements end in, and how they are printed."""

import dataclasses


@dataclasses.dataclass
class Row:
    """One goal: what was measured beside what, and whether that is good enough."""

    name: str
    what: str
    measured: str
    anchor: str
    ratio: str
    goal: str
    met: bool

    def cells(self):
        return [self.name, self.what, self.measured, self.anchor, self.ratio, self.goal,
                "met" if self.met else "MISSED"]


TITLES = ["row", "what", "measured", "anchor", "ratio", "goal", ""]


def print_table(rows):
    lines = [TITLES] + [row.cells() for row in rows]
    widths = [max(len(line[column]) for line in lines) for column in range(len(TITLES))]
    for line in lines:
        print("  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip())
