# SPDX-License-Identifier: MIT
"""What all trials use: their environment, and their checks."""

from dataclasses import dataclass
from pathlib import Path

from proving.job import Failed
from shipping import roots

USER = "lab"


def expect(is_so, what):
    """Raises Failed unless the condition holds."""
    if not is_so:
        raise Failed(what)


def expect_same(wanted, got, what):
    expect(wanted == got, f"{what}: wanted\n{wanted}\ngot\n{got}")


@dataclass(frozen=True)
class Workplace:
    """The environment of trials: the tree, a bare system as a tar file, and a temporary folder."""

    top: Path
    base: Path
    folder: Path

    def root(self, name):
        return roots.Root(self.base, self.folder / name)


def emp_window(root, *words, **options):
    """What the installed program prints for the user of a root."""
    return root.run("emp-window", *words, user=USER, **options)
