# SPDX-License-Identifier: MIT
"""Tests .ci/run on a scratch tree."""

import unittest

from scratch import ScratchTest

STEPS = ["test", "run", "tools/instructions", "tools/proof", "tools/wasm", "tools/check"]


class CiTest(ScratchTest):
    """A clone whose steps record the folder of channel lists that is passed to them."""

    def setUp(self):
        super().setUp()
        self.copy(".ci/run")
        (self.root / ".ci").rename(self.write("clone/kept", "").parent / ".ci")
        for step in STEPS:
            self.write(f"clone/{step}", f'#!/bin/sh\necho "{step} $EMP_WINDOW_LISTS" >> "{self.root}/seen"\n', executable=True)

    def seen(self, **environment):
        """The folders passed to the steps, by step."""
        done = self.call(self.root / "clone/.ci/run", env={"EMP_WINDOW_LISTS": "", **environment})
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        lines = (self.root / "seen").read_text().splitlines()
        return dict(line.split(" ", 1) for line in lines)

    def test_runs_each_step_with_the_channel_lists_beside_the_checkout(self):
        lists = self.write("shared/data/lists/a.conf", "").parent
        self.assertEqual(self.seen(), dict.fromkeys(STEPS, str(lists)))

    def test_runs_without_channel_lists_where_there_are_none(self):
        self.assertEqual(self.seen(), dict.fromkeys(STEPS, ""))

    def test_takes_the_channel_lists_that_it_is_told_of(self):
        self.write("shared/data/lists/a.conf", "")
        self.assertEqual(self.seen(EMP_WINDOW_LISTS="/other lists"), dict.fromkeys(STEPS, "/other lists"))

    def step(self, name, *lines):
        """Replaces a step."""
        self.write(f"clone/{name}", "\n".join(["#!/bin/sh", *lines, ""]), executable=True)

    def test_checks_while_the_proof_runs(self):
        self.step("tools/proof", f'until [ -e "{self.root}/checked" ]; do sleep 0.01; done')
        self.step("tools/check", f'touch "{self.root}/checked"')
        done = self.call("timeout", "60", self.root / "clone/.ci/run")
        self.assertEqual((done.returncode, done.stdout), (0, ""))

    def test_fails_with_what_the_check_says(self):
        self.step("tools/check", "echo one thing", "echo another >&2", "exit 1")
        done = self.call(self.root / "clone/.ci/run")
        self.assertEqual((done.returncode, done.stdout), (1, "one thing\nanother\n"))

    def test_ends_the_check_when_a_step_fails(self):
        self.step("tools/check", f'echo $$ > "{self.root}/check.pid"', "exec sleep 300")
        self.step("tools/proof", f'until [ -s "{self.root}/check.pid" ]; do sleep 0.01; done', "exit 3")
        self.assertEqual(self.call(self.root / "clone/.ci/run").returncode, 3)
        self.assert_gone(int((self.root / "check.pid").read_text()))


if __name__ == "__main__":
    unittest.main()
