# SPDX-License-Identifier: MIT
"""Tests that docs/porting.md states correctly how many commands make each call to the set."""

import collections
import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

TOP = Path(__file__).resolve().parent.parent.parent
PROGRAM = os.environ["EMP_WINDOW"]
START = "Start"  # no command: it only opens the engine


def session_of(case_file):
    """The lines of a file of cases, with a trace of the calls to the set, and each engine opened before its command."""
    for line in case_file.read_text(encoding="utf-8").splitlines():
        if line.startswith(">"):
            yield line.removeprefix(">").strip()
            if line == "> .reset":
                yield from (".trace on", START)


def callers(case_file, state):
    """The calls to the set as pairs (operation, command that makes it)."""
    said = subprocess.run([PROGRAM, "--state", state, "shell"], text=True, input="\n".join([*session_of(case_file), ""]),
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False).stdout
    command = None
    for line in said.splitlines():
        if found := re.match(r">\+? (\w+)", line):
            command = found[1]
        elif found := re.match(r"call ([\w:]+)(?:\[[^]]*\])?(::\w+)?\(", line):
            yield found[1] + (found[2] or ""), command


def in_words(commands):
    """A cell of the page."""
    rest = len(commands - {START})
    return ", ".join((["start"] if START in commands else []) + ([str(rest)] if rest else []))


class Page(unittest.TestCase):
    def test_the_commands_that_need_a_call_are_counted(self):
        calls = collections.defaultdict(set)
        with tempfile.TemporaryDirectory() as state:
            for case_file in sorted(TOP.glob("tests/window/cases/*.txt")):
                for operation, command in callers(case_file, state):
                    calls[operation].add(command)
        self.assertGreater(len(calls), 60)
        rows = re.findall(r"^\| `([\w:]+)` \|[^|]*\|[^|]*\|([^|]*)\|$", (TOP / "docs/porting.md").read_text(encoding="utf-8"),
                          re.MULTILINE)
        self.assertEqual({name: cell.strip() for name, cell in rows}, {name: in_words(calls[name]) for name, _ in rows})
        self.assertEqual(set(calls) - {name for name, _ in rows}, set())


if __name__ == "__main__":
    unittest.main()
