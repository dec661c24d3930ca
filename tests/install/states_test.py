# SPDX-License-Identifier: MIT
"""Tests states of older versions: the current program opens each, and nothing is lost."""

import os
import sys
import tempfile
import unittest
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
STATES = Path(__file__).resolve().parent / "states"
sys.path[:0] = [str(TOP / "tests/tools"), str(TOP / "tools")]

from scratch import run  # noqa: E402  (needs the path above)
from shipping import states  # noqa: E402

PROGRAM = Path(os.environ["EMP_WINDOW_BUILD"]) / "emp-window"


class OlderStates(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def newest_schema(self):
        run(PROGRAM, "--state", self.folder / "new", "exec", "GetTVMode")
        return states.schema_of(self.folder / "new")

    def test_each_older_state_is_brought_to_today_with_all_that_it_held(self):
        session = (STATES / states.SESSION).read_text(encoding="utf-8")
        newest = self.newest_schema()
        for file in sorted(STATES.glob("*.sql")):
            with self.subTest(file.stem):
                directory = self.folder / file.stem
                states.lay(file, directory)
                before = states.rows_of(directory)
                self.assertLessEqual(states.schema_of(directory), newest)
                self.assertEqual(run(PROGRAM, "--state", directory, "shell", input=states.told_to(session)), session)
                after = states.rows_of(directory)
                for table, rows in before.items():
                    for row in rows:
                        self.assertTrue(any(row.items() <= kept.items() for kept in after[table]), f"{table}: {row}")
                self.assertEqual(states.schema_of(directory), newest)

    def test_the_state_of_the_first_packaged_version_is_among_them(self):
        states.lay(STATES / "1.3.sql", self.folder / "first")
        self.assertEqual(states.schema_of(self.folder / "first"), 4)
        rows = states.rows_of(self.folder / "first")
        for table in ("service", "audio_track", "favourite", "list_entry", "recording", "setting", "set_state"):
            self.assertGreater(len(rows[table]), 0, table)


if __name__ == "__main__":
    unittest.main()
