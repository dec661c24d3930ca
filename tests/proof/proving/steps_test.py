# SPDX-License-Identifier: MIT
"""Tests how the steps of tools/proof interpret the output of their programs."""

import sys
import tempfile
import unittest
from contextlib import redirect_stdout
from io import StringIO
from pathlib import Path
from types import SimpleNamespace

TOP = Path(__file__).resolve().parents[3]
sys.dont_write_bytecode = True
sys.path[:0] = [str(TOP / "tools"), str(TOP / "tests" / "tools")]

from proving import fuzz, log, suites, threads  # noqa: E402  (needs the path above)
from proving.job import Outcome  # noqa: E402
from scratch import load  # noqa: E402

# The output of a fuzzer, without the lines about its progress.
SAID = """\
INFO: Seed: 1
INFO:        0 files found in /tmp/corpus
INFO: seed corpus: files: 5 min: 52b max: 355b total: 1102b rss: 57Mb
#7\tINITED cov: 1907 ft: 3326 corp: 5/1102b exec/s: 0 rss: 73Mb
Done 899 runs in 61 second(s)
stat::number_of_executed_units: 899
"""


class Fuzzing(unittest.TestCase):
    """A target passes if it exited successfully, started from all inputs, executed many more, and used its time."""

    def figure(self, said=SAID, inputs=5, trouble="", is_long=False):
        return fuzz.said("lists", inputs, Outcome("", said, trouble)).figure(is_long)

    def test_counts(self):
        figure = self.figure()
        self.assertEqual((figure.target, figure.measured, figure.reached),
                         ("60 s from 5 inputs on", "899 executions, 61 s from 5 inputs on", True))

    def test_does_not_when_it_ended_early(self):
        self.assertFalse(self.figure(SAID.replace("in 61 second", "in 59 second")).reached)

    def test_does_not_when_inputs_were_not_loaded(self):
        self.assertFalse(self.figure(inputs=6).reached)
        self.assertFalse(self.figure(SAID.replace("INFO: seed corpus: files: 5 ", ""), inputs=0).reached)

    def test_does_not_when_it_did_little_but_load_them(self):
        self.assertFalse(self.figure(SAID.replace("Done 899", "Done 25")).reached)

    def test_does_not_when_it_did_not_end_well(self):
        self.assertFalse(self.figure(trouble="ended with status 77").reached)
        self.assertFalse(self.figure("", trouble="took more than 240 s").reached)

    def test_counts_executions_in_the_long_form(self):
        self.assertFalse(self.figure(is_long=True).reached)
        self.assertTrue(self.figure(SAID.replace("Done 899", "Done 1000000"), is_long=True).reached)


class LogContract(unittest.TestCase):
    """Every message of any program must be in the contract, and the plug-in's own tests must log all of the
    contract."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.top = Path(folder.name).resolve()
        (self.top / "tests/window").mkdir(parents=True)
        self.ran = suites.Suites(self.top / "messages", self.top / "profiles", self.top / "build",
                                 programs=["/build/window_text", "/build/window_cases"],
                                 contract=["log_contract", "tsv", "seen", "/build/window_text"])

    def missed(self, contract, **printed):
        """The missed figures when programs have printed these lines."""
        (self.top / "tests/window/log_contract.tsv").write_text("".join(f"{line}\n" for line in contract))
        for name, lines in printed.items():
            (self.ran.messages / name).mkdir(parents=True)
            (self.ran.messages / name / "1.tsv").write_text("".join(f"{line}\n" for line in lines))
        suites._ran[self.top] = self.ran
        with redirect_stdout(StringIO()) as self.told:
            return {figure.name: figure.measured for figure in log.run(SimpleNamespace(top=self.top))
                    if not figure.reached and figure.name not in ("log: messages in the contract", "log: programs heard")}

    def test_holds(self):
        self.assertEqual(self.missed(["a\t0\tF", "b\t3\tF"], window_text=["a\t0\tF", "b\t3\tF"], ctest=["a\t0\tF"]), {})

    def test_knows_no_message_of_any_program_that_it_has_not(self):
        for name in ("window_cases", "ctest"):
            with self.subTest(name):
                self.setUp()
                self.assertEqual(self.missed(["a\t0\tF"], window_text=["a\t0\tF"], **{name: ["a\t3\tF"]}),
                                 {"log: not in the contract": "1"})
                self.assertIn(f"not in the contract: a\t3\tF (in {name})", self.told.getvalue())

    def test_is_not_printed_by_the_way(self):
        self.assertEqual(self.missed(["a\t0\tF", "b\t0\tF"], window_text=["a\t0\tF"], window_cases=["b\t0\tF"]),
                         {"log: never printed": "1"})
        self.assertIn("never printed: b\t0\tF", self.told.getvalue())

    def test_is_in_order(self):
        self.assertEqual(self.missed(["b", "a", "a"], window_text=["a", "b"]), {"log: out of order, or there twice": "2"})


class Threads(unittest.TestCase):
    """Each report of the thread sanitizer is a failure, and so is a program that ran too few tests."""

    RAN = "[==========] 99 tests from 3 test suites ran. (1 ms total)\n"

    def missed(self, out, err):
        job = SimpleNamespace(build=lambda *_: Path("/build"), attempt=lambda *_: Outcome(out, err))
        return {figure.name: figure.measured for figure in threads.run(job) if not figure.reached}

    def test_is_reached(self):
        self.assertEqual(self.missed(self.RAN, ""), {})

    def test_counts_reports(self):
        said = "WARNING: ThreadSanitizer: data race (pid=1)\n" * 2
        self.assertEqual(self.missed(self.RAN, said), {f"threads: reports of {suite}": "2" for suite in threads.SUITES})

    def test_wants_tests(self):
        self.assertEqual(self.missed("", ""), {f"threads: tests of {suite}": "0" for suite in threads.SUITES})


class Whole(unittest.TestCase):
    """A proof that takes too long by the clock is only marked as late. It fails by its own processor time."""

    def test_is_reached_in_time(self):
        figure = load("proof").whole(1100, 1900)
        self.assertEqual((figure.measured, figure.reached, figure.remark),
                         ("1100, 950 of them each of two processors' work", True, ""))

    def test_is_late_where_others_use_the_machine(self):
        figure = load("proof").whole(1900, 3300)
        self.assertEqual((figure.reached, figure.remark), (True, "LATE"))

    def test_is_missed_where_it_has_too_much_to_do(self):
        self.assertFalse(load("proof").whole(2600, 4900).reached)


if __name__ == "__main__":
    unittest.main()
