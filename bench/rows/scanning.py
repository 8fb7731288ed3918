"""Rows about finding and planning: scanning, planning again, very many files, checking."""

import trees
from copying import durable_cp, shell
from lines import figure, pair
from measuring import in_turn, run

MILLION = 1_000_000


def scan_duplicates(bench):
    count = bench.count(20_000)
    tree = bench.tree("duplicates", trees.with_duplicates(count, 10_000))
    work = f"scan {count:,} files of 10 KB, a quarter equal"
    rivals = (
        ("`jdupes -r -q`", ["jdupes", "-r", "-q", tree], 1.0),
        ("`rdfind -dryrun true`", ["rdfind", "-dryrun", "true", "-makeresultsfile", "false", tree], 0.7),
    )
    for against, theirs, limit in rivals:
        yield pair(work, against, in_turn(bench, scan_and_plan(bench, tree), theirs), limit)


def scan_and_plan(bench, tree):
    """A run that writes nothing, as every file is smaller than the filter wants."""
    return bench.organise(tree, "--skip-small-photos", "--no-record")


def replan(bench):
    count = bench.count(20_000)
    tree = bench.tree("dated-photos", trees.of_dated_photos(count))
    organised = bench.folder / "organised"
    run(bench, bench.organise(tree, to=organised))
    theirs = ["exiftool", "-q", "-fast2", "-r", "-DateTimeDigitized", "-Orientation", "-ImageSize", tree]
    costs = in_turn(bench, bench.organise(tree, to=organised), theirs)
    yield pair(f"plan again, {count:,} files all there", "`exiftool -fast2 -r`, three tags", costs, limit=0.010)


def many_files(bench, count):
    return bench.tree(f"many-{count}", trees.of_random_sizes(count, (500, 1_500)))


def against_find(bench, count, limit=None, times=None):
    tree = many_files(bench, count)
    theirs = ["find", tree, "-type", "f", "-printf", "%s %p\\n"]
    costs = in_turn(bench, scan_and_plan(bench, tree), theirs, times)
    return pair(f"scan and plan {count:,} files, none written", "`find -type f -printf '%s %p\\n'`", costs, limit)


def million(bench):
    yield against_find(bench, bench.count(MILLION), limit=3)


def memory(bench):
    count = bench.count(MILLION)
    cost = run(bench, bench.organise(many_files(bench, count)))
    limit = 350 * count / MILLION
    yield figure(f"peak memory of a run over {count:,} files", cost.peak / 1e6, limit, " MB")


def growth(bench):
    """Few runs of the largest trees: they take minutes."""
    counts = [bench.count(10**power) for power in (3, 4, 5, 6)]
    for count in counts:
        yield against_find(bench, count, times=bench.times if count < MILLION else 1)
    for count in counts:
        tree = many_files(bench, count)
        theirs = durable_cp(tree, bench.outputs / "copy")
        costs = in_turn(bench, bench.organise(tree), theirs, bench.times if count < MILLION // 10 else 1)
        yield pair(f"copy {count:,} files of 1 KB", "`cp -a`, `sync -f`", costs)


def check(bench):
    count = bench.count(20_000)
    tree = bench.tree("photos-20k", trees.of_random_sizes(count, (20_000, 40_000)))
    copy = bench.tree("photos-20k-copy", lambda target: run(bench, shell('cp -a "$1/." "$2"', tree, target)))
    ours = [bench.program, "check", tree, "--in", copy]
    costs = in_turn(bench, ours, [bench.tool("kestrova-compare-trees"), tree, copy])
    yield pair(f"check {count:,} files of 20 to 40 KB", "comparing the same pairs in one process", costs, limit=1.2)
