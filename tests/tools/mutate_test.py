# SPDX-License-Identifier: MIT
"""Tests the list of tools/mutate."""

import unittest

from scratch import TOP, load


class MutateTest(unittest.TestCase):
    def test_each_accepted_change_is_of_a_line_that_a_source_has(self):
        texts = {path.relative_to(TOP).as_posix(): path.read_text(encoding="utf-8")
                 for path in (TOP / "Window").rglob("*") if path.suffix in (".cpp", ".h")}
        accepted = load("mutate").Accepted(TOP / "tools/mutation/accepted.tsv", texts)
        self.assertGreater(len(accepted.entries), 0)


if __name__ == "__main__":
    unittest.main()
