# SPDX-License-Identifier: MIT
"""What tools/proof, tools/mutate, tools/bench and tools/targets do alike as programs."""

import fcntl
import subprocess
from contextlib import contextmanager

GROUPS = ("build", "test", "proof")  # of the packages that most of them need


class Busy(Exception):
    """Another one is at work."""


@contextmanager
def alone_in(folder):
    """Keeps others from working in a folder. Raises Busy when one does. The lock stands beside the folder, and goes with
    the program, however that ends."""
    folder.parent.mkdir(parents=True, exist_ok=True)
    with folder.with_name(f"{folder.name}.lock").open("w", encoding="utf-8") as lock:
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            raise Busy(f"another run works in {folder}") from None
        yield


def set_up(top, groups=GROUPS):
    """Installs what is missing of these groups of packages. Returns the status, which is not 0 when that can't be done."""
    return subprocess.run([top / "tools" / "setup", *groups], check=False).returncode


def in_columns(rows):
    """Rows of texts as lines in columns."""
    widths = [max(len(text) for text in column) for column in zip(*rows)]
    return ["  ".join(text.ljust(width) for text, width in zip(row, widths)).rstrip() for row in rows]
