"""Measures the rows that are asked for. Started by bench/run."""

import argparse
import sys
import tempfile
from pathlib import Path

import calls
import copying
import document
import photos
import scanning
from bench import ROOT, Bench
from lines import Line
from measuring import Failed

PROGRAM = ROOT / "build/release/kestrova-cli"
DOCUMENT = ROOT / "docs/benchmarks.md"

ROWS = {
    "copy-100k": copying.durable_copy("100k"),
    "copy-3m": copying.durable_copy("3m"),
    "copy-3k": copying.durable_copy("3k"),
    "copy-100k-plain": copying.plain_copy("100k"),
    "copy-3m-plain": copying.plain_copy("3m"),
    "copy-3k-plain": copying.plain_copy("3k"),
    "shrink": photos.shrink,
    "scan-duplicates": scanning.scan_duplicates,
    "replan": scanning.replan,
    "million": scanning.million,
    "memory": scanning.memory,
    "calls": calls.calls_a_file,
    "switches": calls.switches,
    "slow-files": copying.slow_files,
    "check": scanning.check,
    "verify": copying.verify,
    "record": copying.record,
    "jobs-copy": copying.jobs,
    "jobs-shrink": photos.jobs,
    "growth": scanning.growth,
}


def arguments():
    parser = argparse.ArgumentParser(prog="bench/run", description="Measures kestrova-cli against other programs.")
    parser.add_argument("rows", nargs="*", metavar="ROW", help="only these rows")
    parser.add_argument("--list", action="store_true", help="name the rows")
    parser.add_argument("--times", type=int, default=5, help="runs of each program (default 5)")
    parser.add_argument("--scale", type=float, default=1, help="make trees of so much fewer files; writes no document")
    parser.add_argument("--program", type=Path, default=PROGRAM, help="the kestrova-cli to measure")
    parser.add_argument("--folder", type=Path, help="where to make the trees, which are kept (default: a temporary folder)")
    parser.add_argument("--document", type=Path, default=DOCUMENT, help="what is brought up to date")
    given = parser.parse_args()
    if unknown := [row for row in given.rows if row not in ROWS]:
        parser.error(f"no such row: {', '.join(unknown)} (--list names them)")
    if not given.list and not given.program.is_file():
        parser.error(f"{given.program} does not exist")
    return given


def measured(bench, name):
    """The lines of a row as cells. What fails is a line, too, and ends the row."""
    commit = document.commit()
    bench.wait_after_removal()
    try:
        for line in ROWS[name](bench):
            yield [name, *line.cells(), commit]
    except Failed as failure:
        yield [name, *Line(work=f"not measured: {failure}").cells(), commit]
    bench.remove_outputs()


def measure(given, folder):
    bench = Bench(folder=folder, program=given.program.resolve(), times=given.times, scale=given.scale)
    head = {"machine": document.machine(folder), "times": given.times}
    lines = []
    for name in given.rows or ROWS:
        for cells in measured(bench, name):
            lines.append(cells)
            print(document.row_of(cells), file=sys.stderr, flush=True)
        if given.scale == 1:
            document.update(given.document, lines, list(ROWS), **head)
    print(f"{head['machine']}\n\n{document.table_of(lines)}")


def main():
    given = arguments()
    if given.list:
        print("\n".join(ROWS))
    elif given.folder:
        given.folder.mkdir(parents=True, exist_ok=True)
        measure(given, given.folder.resolve())
    else:
        # /var/tmp is on a disk where /tmp may be in memory.
        with tempfile.TemporaryDirectory(prefix="kestrova-bench-", dir="/var/tmp") as folder:
            measure(given, Path(folder))


main()
