"""The table, and the document that holds it."""

import datetime
import os
import platform
import subprocess

from bench import ROOT
from lines import COLUMNS

HEAD = """# Benchmarks

Written by `bench/run`, which makes the trees, installs the other programs and measures. A row can be measured alone:
`bench/run ROW`; it then replaces its lines here. Ours and theirs run in turn, {times} times each, into empty
folders and after a `sync`; the outputs of a row are removed when it has been measured, and the next one begins a minute
later, as ext4 is slow for so long after a removal. Shown are medians with the lowest and the highest value. Ratios are
ours to theirs, and a limit is what we want to stay within. Input files are in the page cache. Our runs make each file
durable before they name it and, except with `--no-record`, keep a record. The peak memory is ours.

{machine}

{table}
"""


def row_of(cells):
    return "| " + " | ".join(cell.replace("|", "/") for cell in cells) + " |"


def table_of(lines):
    """`lines` are rows of cells."""
    return "\n".join([row_of(COLUMNS), row_of(["---"] * len(COLUMNS)), *map(row_of, lines)])


def commit():
    words = ["git", "-C", ROOT, "describe", "--always", "--dirty", "--exclude=*"]
    return subprocess.run(words, capture_output=True, text=True, check=False).stdout.strip()


def machine(folder):
    """What the figures depend on."""
    processor = next(
        (line.split(":")[1].strip() for line in open("/proc/cpuinfo") if line.startswith("model name")), "unknown"
    )
    memory = os.sysconf("SC_PHYS_PAGES") * os.sysconf("SC_PAGE_SIZE") / 2**30
    volume = subprocess.run(
        ["findmnt", "-no", "FSTYPE,SOURCE", "-T", folder], capture_output=True, text=True, check=False
    ).stdout.split()
    return (
        f"Measured on {datetime.date.today():%d %B %Y}: {os.cpu_count()} cores ({processor}), {memory:.0f} GiB of memory, "
        f"{' on '.join(volume)}, Linux {platform.release()}; load when it began: {os.getloadavg()[0]:.1f}."
    )


def kept_lines(document):
    """The lines of the table in an earlier document, each as its cells."""
    if not document.exists():
        return []
    rows = [line for line in document.read_text().splitlines() if line.startswith("| ")]
    return [[cell.strip() for cell in row.strip("|").split("|")] for row in rows[2:]]


def update(document, measured, order, **head):
    """Writes the document: the rows measured now, and the lines of the others as they were."""
    now = {cells[0] for cells in measured}
    lines = measured + [cells for cells in kept_lines(document) if cells[0] not in now]
    lines = sorted((cells for cells in lines if cells[0] in order), key=lambda cells: order.index(cells[0]))
    document.write_text(HEAD.format(table=table_of(lines), **head))
