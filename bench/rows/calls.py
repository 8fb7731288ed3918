"""Rows that count what the kernel is asked for."""

import trees
from lines import figure
from measuring import run

STATS = {"stat", "lstat", "fstat", "newfstatat", "statx"}
OPENS = {"open", "openat", "openat2", "creat"}


def calls_a_file(bench):
    """What a run of many files asks for more than one of a few, divided by the files."""
    few, many = bench.count(200), bench.count(2_200)
    before, after = counted(bench, few), counted(bench, many)

    def each(names):
        return sum(after.get(name, 0) - before.get(name, 0) for name in names) / (many - few)

    yield figure("system calls a copied file, all kinds", each(before.keys() | after.keys()), 20)
    yield figure("stat calls a copied file", each(STATS), 4)
    yield figure("open calls a copied file", each(OPENS))
    yield figure("futex calls a copied file", each({"futex"}))
    yield figure("poll calls a copied file", each({"poll", "ppoll"}))


def counted(bench, files):
    """The number of calls, by their names."""
    tree = bench.tree(f"copies-{files}", trees.of_random_bytes(files, 20_000))
    table = bench.folder / "calls"
    run(bench, ["strace", "-f", "-c", "-o", table, *bench.organise(tree)])
    calls = {}
    for line in table.read_text().splitlines():
        words = line.split()
        # % time, seconds, usecs/call, calls, perhaps errors, name
        if len(words) >= 5 and words[3].isdigit() and words[-1] != "total":
            calls[words[-1]] = int(words[3])
    return calls


def switches(bench):
    count = bench.count(10_000)
    tree = bench.tree("small-photos", trees.of_random_sizes(count, (500, 1_500)))
    cost = run(bench, bench.organise(tree, "--skip-small-photos", "--no-record"))
    yield figure(f"voluntary context switches of planning {count:,} files", cost.switches, 1_000)
