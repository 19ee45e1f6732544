"""What came out, as a table for people."""

import dataclasses
import statistics


def median(values):
    return statistics.median(values)


def spread(values):
    """The median with the least and the most."""
    return f"{median(values):.1f} ({min(values):.1f} to {max(values):.1f})"


@dataclasses.dataclass
class Row:
    measure: str
    ours: str
    baseline: str
    theirs: str
    ratio: float | None = None
    value: float | None = None  # what the limit is for, where it is not the ratio
    limit: float | None = None
    unit: str = ""

    def cells(self):
        judged = self.ratio if self.value is None else self.value
        ratio = "" if self.ratio is None else f"{self.ratio:.2f}"
        if self.limit is None:
            return [self.measure, self.ours, self.baseline, self.theirs, ratio, "", "for information"]
        verdict = "met" if judged <= self.limit else "missed"
        return [self.measure, self.ours, self.baseline, self.theirs, ratio, f"{self.limit:g}{self.unit}", verdict]


HEAD = ["measure", "Velto", "against", "it takes", "ratio", "limit", "verdict"]


def text(rows):
    lines = [HEAD] + [row.cells() for row in rows]
    widths = [max(len(line[column]) for line in lines) for column in range(len(HEAD))]
    lines.insert(1, ["-" * width for width in widths])
    return "\n".join("  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip() for line in lines)
