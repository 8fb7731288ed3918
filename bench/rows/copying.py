"""Rows about copying: against cp, with checks and records, on several threads and on a slow file system."""

import contextlib
import subprocess

import trees
from lines import pair
from measuring import in_turn

SIZES = {"3k": (20_000, 3_000, 0.40), "100k": (3_000, 100_000, 0.70), "3m": (300, 3_000_000, 0.50)}


def copies(bench, name):
    """What is copied, in words, and its tree."""
    count, size, _ = SIZES[name]
    count = bench.count(count)
    tree = bench.tree(f"copies-{name}", trees.of_random_bytes(count, size))
    return f"copy {count:,} files of {words_of(size)}", tree


def words_of(size):
    return f"{size // 1_000_000} MB" if size >= 1_000_000 else f"{size // 1_000} KB"


def shell(script, *arguments):
    return ["sh", "-c", script, "sh", *map(str, arguments)]


def durable_cp(tree, target):
    return shell('cp -a "$1" "$2" && sync -f "$2"', tree, target)


def durable_copy(name):
    def measure(bench):
        work, tree = copies(bench, name)
        costs = in_turn(bench, bench.organise(tree), durable_cp(tree, bench.outputs / "copy"))
        yield pair(work, "`cp -a`, `sync -f`", costs, limit=SIZES[name][2])

    return measure


def plain_copy(name):
    def measure(bench):
        work, tree = copies(bench, name)
        costs = in_turn(bench, bench.organise(tree), ["cp", "-a", tree, bench.outputs / "copy"])
        yield pair(work, "`cp -a`, not durable", costs, limit=1)

    return measure


def jobs(bench):
    for name in ("100k", "3k"):
        work, tree = copies(bench, name)
        for count in (1, 2, 4, 8):
            ours = bench.organise(tree, "--jobs", str(count))
            costs = in_turn(bench, ours, durable_cp(tree, bench.outputs / "copy"))
            yield pair(f"{work}, `--jobs {count}`", "`cp -a`, `sync -f`", costs)


def verify(bench):
    work, tree = copies(bench, "100k")
    copy = bench.outputs / "copy"
    script = 'cp -a "$1" "$2" && cd "$1" && find . -type f -exec cmp {} "$2/{}" \\;'
    costs = in_turn(bench, bench.organise(tree, "--verify"), shell(script, tree, copy))
    yield pair(f"{work}, `--verify`", "`cp -a`, `cmp` of each pair", costs, limit=1)
    script = 'cp -a "$1" "$2" && "$3" "$1" "$2"'
    theirs = shell(script, tree, copy, bench.tool("kestrova-compare-trees"))
    costs = in_turn(bench, bench.organise(tree, "--verify"), theirs)
    yield pair(f"{work}, `--verify`", "`cp -a`, comparing in one process", costs)


def record(bench):
    work, tree = copies(bench, "3k")
    costs = in_turn(bench, bench.organise(tree), bench.organise(tree, "--no-record"))
    yield pair(f"{work}, recorded", "`--no-record`", costs, limit=1.03)


def slow_files(bench):
    count = bench.count(2_000)
    with mounted(bench) as slow:
        tree = bench.tree("copies-slow", trees.of_random_bytes(count, 100_000))
        source = slow / tree.relative_to(bench.folder)
        outputs = slow / bench.outputs.relative_to(bench.folder)
        ours = bench.organise(source, to=outputs / "target")
        costs = in_turn(bench, ours, ["cp", "-a", source, outputs / "copy"])
    work = f"copy {count:,} files of 100 KB within a file system that takes 2 ms a call"
    yield pair(work, "`cp -a`", costs, limit=0.35)


@contextlib.contextmanager
def mounted(bench):
    """The bench's folder, seen through a file system that takes its time."""
    point = bench.folder.with_name(bench.folder.name + "-slow")
    point.mkdir(exist_ok=True)
    subprocess.run([bench.tool("kestrova-slow-files"), bench.folder, point], check=True)
    try:
        yield point
    finally:
        subprocess.run(["fusermount3", "-u", point], check=True)
        point.rmdir()
