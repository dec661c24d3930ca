# SPDX-License-Identifier: MIT
"""Tests tools/targets, as far as that is possible without building for other processors."""

import subprocess
import tempfile
import unittest
from pathlib import Path

from scratch import TOP, load

PROGRAM = TOP / "tools/targets"


def said(*arguments):
    return subprocess.run([PROGRAM, *arguments], text=True, capture_output=True)


class TargetsTest(unittest.TestCase):
    def test_a_row_takes_the_place_of_its_target_and_leaves_the_others(self):
        table = load("targets").TABLE
        cells = len(table.head) - 2
        page = table.with_rows("before\n\n| target |\n| --- |\n", [["armhf", *["old"] * cells, "2020-01-02"],
                                                                    ["amd64", *["same"] * cells, "2020-01-01"]])
        page = table.with_rows(page, [["armhf", *["new"] * cells, "2020-01-03"]])
        days = table.days(page)
        self.assertEqual((days["amd64"], days["armhf"], days["arm64"]), ("2020-01-01", "2020-01-03", "never"))
        self.assertNotIn("old", page)
        self.assertTrue(page.startswith("before\n\n| target | compiler |"))

    def test_the_list_names_all_targets_and_when_they_were_taken(self):
        done = said("--list")
        self.assertEqual(done.returncode, 0, done.stderr)
        lines = done.stdout.splitlines()[1:]
        self.assertEqual([line.split()[0] for line in lines], list(load("targets").targets.ALL))
        for line in lines:
            self.assertRegex(line, r"  (never|\d{4}-\d{2}-\d{2})$")

    def test_an_unknown_target_is_refused(self):
        done = said("vax")
        self.assertEqual(done.returncode, 2)
        self.assertIn("there is no target vax; there are amd64, ", done.stderr)

    def test_a_session_shows_calls_and_log_from_each_fresh_start_on_and_the_keys_before(self):
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / "case.txt"
            file.write_text("# remark\n> .reset\n> .trace off\n> GetTVMode\nint 1\n>+ SetScreenCropRect 1\n", encoding="utf-8")
            self.assertEqual(list(load("targets").runs.as_session(file)),
                             [".trace on", ".log on", ".vconf", ".reset", ".trace on", ".log on", "GetTVMode",
                              "+ SetScreenCropRect 1", ".vconf"])


if __name__ == "__main__":
    unittest.main()
