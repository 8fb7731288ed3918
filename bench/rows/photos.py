"""Rows about photos that are scaled down."""

import subprocess

from lines import pair
from measuring import in_turn


def photos_in(bench):
    count = bench.count(40)

    def make(tree):
        subprocess.run([bench.tool("kestrova-detailed-photos"), tree, str(count)], check=True)

    tree = bench.tree("detailed-photos", make)
    return f"shrink {count} photos of 8 to 24 megapixels to 1080P", tree


def vips(bench, tree):
    output = f"{bench.outputs}/%s.jpg[Q=90]"
    return ["vipsthumbnail", *sorted(tree.iterdir()), "--size", "1920x1080", "--no-rotate", "-o", output]


def shrink(bench):
    work, tree = photos_in(bench)
    costs = in_turn(bench, bench.organise(tree, "--size", "1080p"), vips(bench, tree))
    yield pair(work, "`vipsthumbnail`, one process", costs, limit=0.38, processor_limit=0.52)


def jobs(bench):
    work, tree = photos_in(bench)
    for count in (1, 2, 4, 8):
        ours = bench.organise(tree, "--size", "1080p", "--jobs", str(count))
        costs = in_turn(bench, ours, vips(bench, tree))
        yield pair(f"{work}, `--jobs {count}`", "`vipsthumbnail`, one process", costs)
