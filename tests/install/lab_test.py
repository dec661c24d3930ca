# SPDX-License-Identifier: MIT
"""A lab of many sets: tools/lab starts and measures it, and the example project's script runs transcripts over it."""

import json
import os
import re
import signal
import sys
import tempfile
import time
import unittest
import urllib.request
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(TOP / "tests/tools"), str(TOP / "tools")]

from measuring import lab  # noqa: E402  (needs the path above)
from scratch import run  # noqa: E402

PROGRAM = Path(os.environ["EMP_WINDOW_BUILD"]) / "emp-window"


def source_of(address):
    """The source of a set's main window, as its knob shows it."""
    body = json.dumps({"jsonrpc": "2.0", "id": 1, "method": "tv.get", "params": ["main.source"]}).encode()
    request = urllib.request.Request(f"{address}/rpc", body, {"Content-Type": "application/json"})
    with urllib.request.urlopen(request, timeout=10) as response:
        return str(json.load(response)["result"]["value"])


def until(condition):
    for _ in range(1000):
        if condition():
            return
        time.sleep(0.01)
    raise AssertionError("not within ten seconds")


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
        self.assertEqual({name for name in re.findall(r'<testsuite name="[^"]+/change.txt on ([^"]+)"', report)}, set(addresses))
        look = self.folder / "look.txt"
        look.write_text("> GetSource 0\nint 0\n> GetTVMode\nint 2\n", encoding="utf-8")
        with self.assertRaisesRegex(lab.Failed, r"-int 2\n\+int 1\n(.*\n)*transcripts: 0 passed, 2 failed"):
            lab.run_transcripts(self.folder / "failing", addresses, [look] * 2)
        self.assertIn('failures="2"', (self.folder / "failing/report.xml").read_text(encoding="utf-8"))

    def lab(self, count, options=""):
        """Starts sets. @return their addresses"""
        sets = lab.Lab(PROGRAM, self.folder)
        self.addCleanup(sets.end)
        return [sets.address(sets.start(str(name), f"--listen 127.0.0.1:0 {options}")) for name in range(count)]

    def transcript(self, name, text):
        (self.folder / name).write_text(text, encoding="utf-8")
        return self.folder / name

    def report_of(self, name):
        return (self.folder / name / "report.xml").read_text(encoding="utf-8")

    def test_what_can_not_be_run_fails_and_the_rest_runs_on_sets_as_they_were(self):
        addresses = self.lab(2)
        missing, empty = self.folder / "missing.txt", self.transcript("empty.txt", "")
        change = self.transcript("change.txt", "> GetSource 0\nint 0\n> SetSource 31 0\nint 1\n")
        done = lab.run_script(self.folder / "lab", "report.xml", *addresses, "--", change, missing, empty, *[change] * 4)
        self.assertEqual(done.returncode, 1)
        self.assertRegex(done.stdout, rf"(?m)^{missing} on http\S+: .*no such file")
        self.assertRegex(done.stdout, rf"(?m)^{empty} on http\S+: ")
        self.assertTrue(done.stdout.endswith("transcripts: 5 passed, 2 failed\n"), done.stdout)
        self.assertEqual(self.report_of("lab").count("<testsuite "), 7)

    def test_a_set_that_is_down_leaves_the_lab_and_the_others_run_all(self):
        look = self.transcript("look.txt", "> GetSource 0\nint 0\n")
        down = "http://127.0.0.1:9"
        done = lab.run_script(self.folder / "lab", "report.xml", down, *self.lab(1), "--", *[look] * 3)
        self.assertEqual(done.returncode, 1)
        self.assertRegex(done.stdout, rf"(?m)^{down}: ")
        self.assertTrue(done.stdout.endswith("transcripts: 3 passed, 1 failed\n"), done.stdout)
        done = lab.run_script(self.folder / "none", "report.xml", down, "--", look)
        self.assertIn(f"{look}: no set is left to run it\n", done.stdout)
        self.assertEqual(done.returncode, 1)

    def test_an_interrupted_run_completes_what_runs_and_restores_the_sets(self):
        [address] = self.lab(1)
        slow = self.transcript("slow.txt", "> SetSource 31 0\nint 1\n> .set latency.IServiceNavigation::GetTvMode 2000\n"
                                           "> GetTVMode\nint 1\n")
        with lab.started_script(self.folder / "lab", "report.xml", address, "--", slow, slow) as running:
            until(lambda: source_of(address) != "0")
            running.send_signal(signal.SIGINT)
            said, _ = running.communicate(timeout=60)
        self.assertEqual(running.returncode, 1)
        self.assertIn(f"{slow}: interrupted\n", said)
        self.assertTrue(said.endswith("transcripts: 1 passed, 1 failed\n"), said)
        self.assertEqual(source_of(address), "0")

    def test_sets_with_a_token_want_it(self):
        look, token = self.transcript("look.txt", "> GetSource 0\nint 0\n"), self.transcript("token", "evening\n")
        token.chmod(0o600)
        addresses = self.lab(1, f"--token {token}")
        done = lab.run_script(self.folder / "with", "report.xml", *addresses, "--", look, variables={"EMP_WINDOW_TOKEN": "evening"})
        self.assertEqual((done.returncode, done.stdout), (0, "transcripts: 1 passed, 0 failed\n"))
        done = lab.run_script(self.folder / "without", "report.xml", *addresses, "--", look)
        self.assertRegex(done.stdout, "a token is wanted")
        self.assertEqual(done.returncode, 1)

    def test_what_starts_nothing_is_refused(self):
        for at, words in enumerate([["a"], ["a", "--"], ["--", "a.txt"], ["a", "a.txt"], []]):
            done = lab.run_script(self.folder / str(at), "report.xml", *words)
            self.assertEqual((done.returncode, done.stdout), (2, "usage: node lab.js REPORT ADDRESS... -- TRANSCRIPT...\n"))
            self.assertFalse((self.folder / str(at) / "report.xml").exists())
        done = lab.run_script(self.folder / "unwritable", "none/report.xml", "http://127.0.0.1:9", "--", "a.txt")
        self.assertEqual(done.returncode, 2)
        self.assertRegex(done.stdout, "^ENOENT: .*none/report.xml'\n$")

    def test_a_fault_that_was_never_hit_is_told_with_its_transcript(self):
        idle = self.transcript("idle.txt", "> .fault IServiceNavigation::GetTvMode result=0\n> GetSource 0\nint 0\n")
        done = lab.run_script(self.folder / "lab", "report.xml", *self.lab(1), "--", idle)
        self.assertRegex(done.stdout, rf"(?m)^{idle} on http\S+: a fault was never hit: ")


if __name__ == "__main__":
    unittest.main()
