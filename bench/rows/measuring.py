"""Runs commands in turn and measures each."""

import dataclasses
import os
import statistics
import subprocess
import time


class Failed(Exception):
    """A command did not do what is measured."""


@dataclasses.dataclass(frozen=True)
class Cost:
    wall: float  # seconds
    processor: float  # seconds, of all threads and processes
    peak: int  # bytes of memory, of the largest process
    switches: int  # voluntary context switches


@dataclasses.dataclass(frozen=True)
class Costs:
    """Of several runs of one command."""

    runs: list[Cost]

    def median(self, field):
        return statistics.median(getattr(cost, field) for cost in self.runs)

    def spread(self, field):
        values = [getattr(cost, field) for cost in self.runs]
        return min(values), max(values)


def run(bench, command):
    """Runs the command on empty outputs and a quiet disk."""
    bench.renew_outputs()
    log = bench.folder / "log"
    with log.open("wb") as output:
        begin = time.monotonic()
        process = subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=output, stderr=output, env=bench.environment(), cwd=bench.outputs
        )
        _, status, usage = os.wait4(process.pid, 0)
        wall = time.monotonic() - begin
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        words = log.read_text(errors="replace").strip().splitlines()[:1]
        raise Failed(f"{command[0]} ended with {process.returncode}: {' '.join(words)}")
    # ru_maxrss is in KiB.
    return Cost(wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024, usage.ru_nvcsw)


def in_turn(bench, ours, theirs, times=None):
    """Ours, theirs, ours, theirs: what changes on the machine meanwhile changes for both."""
    turns = [(run(bench, ours), run(bench, theirs)) for _ in range(times or bench.times)]
    return Costs([turn[0] for turn in turns]), Costs([turn[1] for turn in turns])
