# SPDX-License-Identifier: MIT
"""Functions that tools/proof, tools/mutate, tools/bench and tools/targets share."""

import fcntl
import subprocess
from contextlib import contextmanager

GROUPS = ("build", "test", "proof")  # groups of packages that most of them need


class Busy(Exception):
    """Another process works in the folder."""


@contextmanager
def alone_in(folder):
    """Locks a folder. Raises Busy when another process has locked it. The lock is beside the folder, and is released
    when the program ends in any way."""
    folder.parent.mkdir(parents=True, exist_ok=True)
    with folder.with_name(f"{folder.name}.lock").open("w", encoding="utf-8") as lock:
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            raise Busy(f"another run works in {folder}") from None
        yield


def set_up(top, groups=GROUPS):
    """Installs the missing packages of these groups. Returns the status, which is not 0 on failure."""
    return subprocess.run([top / "tools" / "setup", *groups], check=False).returncode


def in_columns(rows):
    """Formats rows of texts as lines with aligned columns."""
    widths = [max(len(text) for text in column) for column in zip(*rows)]
    return ["  ".join(text.ljust(width) for text, width in zip(row, widths)).rstrip() for row in rows]
