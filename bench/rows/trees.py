"""Makes trees of files to organise. Each file has a second of its own, so each gets a target name of its own."""

import os
import random
import struct
import subprocess
import time

FIRST = 1_100_000_000  # November 2004
APART = 600  # seconds between one file and the next
FILES_A_FOLDER = 400


def spread_over_folders(tree, count):
    """The paths of `count` photos, whose folders exist, with the times that they are to have."""
    for index in range(count):
        folder = tree / f"{index // FILES_A_FOLDER:05}"
        if index % FILES_A_FOLDER == 0:
            folder.mkdir()
        yield folder / f"IMG_{index:07}.jpg", FIRST + index * APART


def write(path, content, modified):
    path.write_bytes(content)
    os.utime(path, (modified, modified))


def of_random_bytes(count, size):
    """Copied as they are: no photo by content, only by name."""

    def make(tree):
        for path, modified in spread_over_folders(tree, count):
            write(path, os.urandom(size), modified)

    return make


def of_random_sizes(count, sizes):
    """As above, of sizes that hardly ever meet."""

    def make(tree):
        generator = random.Random(1)
        for path, modified in spread_over_folders(tree, count):
            write(path, os.urandom(generator.randint(*sizes)), modified)

    return make


def with_duplicates(count, size):
    """As above, all of one size; one in four has the bytes of the one before it."""

    def make(tree):
        content = b""
        for index, (path, modified) in enumerate(spread_over_folders(tree, count)):
            if index % 4 != 3:
                content = os.urandom(size)
            write(path, content, modified)

    return make


def of_dated_photos(count):
    """Small JPEG photos that say when they were taken."""

    def make(tree):
        template = tree.parent / "template.jpg"
        subprocess.run(["vips", "gaussnoise", template, "160", "120"], check=True)
        picture = template.read_bytes()[2:]
        template.unlink()
        for path, modified in spread_over_folders(tree, count):
            write(path, b"\xff\xd8" + exif_segment(modified) + picture, modified)

    return make


def exif_segment(taken):
    """An APP1 segment with an orientation of 1 and the time of digitising (Exif 2.3, 4.5 and 4.6)."""
    date = time.strftime("%Y:%m:%d %H:%M:%S", time.gmtime(taken)).encode() + b"\0"
    exif_at, date_at = 8 + 2 + 2 * 12 + 4, 8 + 2 + 2 * 12 + 4 + 2 + 12 + 4
    block = struct.pack("<2sHI", b"II", 42, 8)
    block += struct.pack("<HHHIHHHHIII", 2, 0x0112, 3, 1, 1, 0, 0x8769, 4, 1, exif_at, 0)
    block += struct.pack("<HHHIII", 1, 0x9004, 2, len(date), date_at, 0) + date
    content = b"Exif\0\0" + block
    return b"\xff\xe1" + struct.pack(">H", len(content) + 2) + content
