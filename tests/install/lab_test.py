# SPDX-License-Identifier: MIT
"""A lab of many sets: tools/lab starts and measures it, and the example project's script runs transcripts over it."""

import os
import re
import sys
import tempfile
import unittest
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(TOP / "tests/tools"), str(TOP / "tools")]

from measuring import lab  # noqa: E402  (needs the path above)
from scratch import run  # noqa: E402

PROGRAM = Path(os.environ["EMP_WINDOW_BUILD"]) / "emp-window"


class LabTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def test_its_table_is_written_into_the_page(self):
        page = self.folder / "lab.md"
        page.write_text("before\n\n| what | is | taken on |\n| --- | --- | --- |\n| sets | old | then |\n\nbehind\n", encoding="utf-8")
        said = run(TOP / "tools/lab", "--sets", 3, "--program", PROGRAM, "--write", "--page", page)
        self.assertRegex(said, r"^what +is +taken on\nsets +3 ")
        self.assertRegex(said, r"\ntranscripts run on them +6 passed, 0 failed ")
        text = page.read_text(encoding="utf-8")
        self.assertRegex(text, r"^before\n\n(\|.*\|\n)+\nbehind\n$")
        rows = lab.TABLE.rows(text)
        self.assertEqual(list(rows), lab.TABLE.names)
        self.assertEqual(rows["sets"][1], "3")
        self.assertRegex(rows["memory a set when it has started"][1], r"^\d+\.\d MB$")

    def test_a_set_that_does_not_start_is_told(self):
        program = self.folder / "emp-window"
        program.write_text("#!/bin/sh\necho no state here\nexit 2\n", encoding="utf-8")
        program.chmod(0o755)
        self.assertIn("tools/lab: a set did not start: no state here\n", run(TOP / "tools/lab", "--sets", 1, "--program", program, expected=1))

    def test_transcripts_run_on_all_sets_leave_them_as_they_were_and_tell_what_fails(self):
        sets = lab.Lab(PROGRAM, self.folder)
        self.addCleanup(sets.end)
        addresses = [sets.address(sets.start(name)) for name in ("one", "two")]
        change = self.folder / "change.txt"
        change.write_text("> SetSource 31 0\nint 1\n> .fault IServiceNavigation::GetTvMode always result=0\n> GetTVMode\nint -1\n", encoding="utf-8")
        _, said = lab.run_transcripts(self.folder / "passing", addresses, [change] * 6)
        self.assertEqual(said, "transcripts: 6 passed, 0 failed")
        report = (self.folder / "passing/report.xml").read_text(encoding="utf-8")
        self.assertEqual({name for name in re.findall(r'<testsuite name="change.txt on ([^"]+)"', report)}, set(addresses))
        look = self.folder / "look.txt"
        look.write_text("> GetSource 0\nint 0\n> GetTVMode\nint 2\n", encoding="utf-8")
        with self.assertRaisesRegex(lab.Failed, r"-int 2\n\+int 1\n(.*\n)*transcripts: 0 passed, 2 failed"):
            lab.run_transcripts(self.folder / "failing", addresses, [look] * 2)
        self.assertIn('failures="2"', (self.folder / "failing/report.xml").read_text(encoding="utf-8"))


if __name__ == "__main__":
    unittest.main()
