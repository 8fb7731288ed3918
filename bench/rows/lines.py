"""The lines of the table, and how they are worked out from costs."""

import dataclasses

COLUMNS = (
    "row", "work", "against", "ours", "theirs", "ratio", "limit", "processor time, ratio", "limit", "peak memory", "commit",
)  # fmt: skip


@dataclasses.dataclass(frozen=True)
class Line:
    """Ratios are ours to theirs; a limit is the ratio, or the figure, to stay within."""

    work: str
    against: str = ""
    ours: str = ""
    theirs: str = ""
    ratio: str = ""
    limit: str = ""
    processor: str = ""
    processor_limit: str = ""
    peak: str = ""

    def cells(self):
        return dataclasses.astuple(self)


def pair(work, against, costs, limit=None, processor_limit=None):
    """Of a pair of programs that ran in turn."""
    ours, theirs = costs
    wall = ours.median("wall") / theirs.median("wall")
    processor = ours.median("processor") / max(theirs.median("processor"), 0.001)
    return Line(
        work=work,
        against=against,
        ours=seconds(ours),
        theirs=seconds(theirs),
        ratio=f"{wall:.3f}",
        limit=verdict(wall, limit),
        processor=f"{processor:.3f}",
        processor_limit=verdict(processor, processor_limit),
        peak=megabytes(ours.median("peak")),
    )


def figure(work, value, limit=None, unit=""):
    """One figure of ours that nothing is set against."""
    return Line(work=work, ours=f"{value:,.1f}{unit}", limit=verdict(value, limit, unit))


def verdict(value, limit, unit=""):
    if limit is None:
        return ""
    return f"{limit:,g}{unit} {'reached' if value <= limit else '**missed**'}"


def seconds(costs):
    low, high = costs.spread("wall")
    return f"{costs.median('wall'):.2f} s ({low:.2f} to {high:.2f})"


def megabytes(size):
    return f"{size / 1e6:,.0f} MB"
