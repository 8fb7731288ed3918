"""Where and how the rows are measured."""

import dataclasses
import os
import subprocess
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

# For a minute ext4 does not use the inodes of removed files again, and looks at them one by one for each new file.
SECONDS_AFTER_REMOVAL = 61


@dataclasses.dataclass
class Bench:
    folder: Path  # for trees, outputs and records, on the disk to measure
    program: Path  # kestrova-cli
    times: int  # runs of each program
    scale: float  # of the numbers of files
    removed_at: float = 0  # when outputs were last removed, in seconds of time.monotonic

    def count(self, files):
        return max(1, round(files * self.scale))

    def tool(self, name):
        """A program of the build that helps to measure."""
        return str(ROOT / "build/release" / name)

    def tree(self, name, make):
        """The folder of input files of this name; `make` fills it the first time."""
        tree = self.folder / "trees" / f"{name}-{self.scale:g}"
        if not tree.exists():
            unfinished = tree.with_name(tree.name + ".unfinished")
            remove(unfinished)
            unfinished.mkdir(parents=True)
            make(unfinished)
            unfinished.rename(tree)
            os.sync()
        return tree

    @property
    def outputs(self):
        """What a run writes goes here. It is empty when a run begins."""
        return self.folder / "outputs"

    @property
    def used_outputs(self):
        return self.folder / "used"

    def renew_outputs(self):
        """Puts aside what the last run wrote."""
        if self.outputs.exists():
            self.used_outputs.mkdir(exist_ok=True)
            self.outputs.rename(self.used_outputs / str(time.monotonic_ns()))
        self.outputs.mkdir(parents=True)
        os.sync()
        time.sleep(1)

    def remove_outputs(self):
        remove(self.outputs)
        remove(self.used_outputs)
        self.removed_at = time.monotonic()

    def wait_after_removal(self):
        """Before a row; where only few files were made and removed there is nothing to wait for."""
        if self.scale >= 1 and self.removed_at:
            time.sleep(max(0, self.removed_at + SECONDS_AFTER_REMOVAL - time.monotonic()))

    def environment(self):
        """A user without settings, session or display, whose records are outputs, too."""
        kept = {key: os.environ[key] for key in ("PATH", "TMPDIR") if key in os.environ}
        return kept | {
            "HOME": str(self.outputs),
            "XDG_STATE_HOME": str(self.outputs / "state"),
            "DBUS_SESSION_BUS_ADDRESS": "disabled:",
            "LC_ALL": "C.UTF-8",
        }

    def organise(self, source, *options, to=None):
        """The command that organises a folder into a new one."""
        target = to or self.outputs / "target"
        return [str(self.program), "organise", str(source), "--to", str(target), "--quiet", *options]


def remove(path):
    subprocess.run(["rm", "-rf", "--", path], check=True)
