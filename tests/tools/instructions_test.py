# SPDX-License-Identifier: MIT
"""Tests how tools/instructions compares counts with a baseline. Valgrind makes the counts."""

import sys
import unittest
from pathlib import Path

from scratch import TOP, ScratchTest, load, run_main

sys.path.insert(0, str(TOP / "tools"))

from measuring import instructions  # noqa: E402  (needs the path above)
from proving.job import Failed  # noqa: E402


class InstructionsTest(ScratchTest):
    BASELINE = "# Notes\n# 2026-01-02 first counted (x86_64, g++ 12.2.0)\nGetSource\t1000\nFindChannel, 200 services\t200000\n"

    def setUp(self):
        super().setUp()
        self.tool = load("instructions")
        self.tool.TOP = self.root
        self.tool.BASELINE = self.root / "bench/instructions.tsv"
        self.tool.counted = self.counted
        self.runs = 0
        self.made_with = "x86_64, g++ 12.2.0"
        self.counts = {"GetSource": 1000, "FindChannel, 200 services": 200000}
        self.baseline = self.write("bench/instructions.tsv", self.BASELINE)

    def counted(self):
        self.runs += 1
        return dict(self.counts), self.made_with

    def run_tool(self, *arguments):
        """Status, standard output and standard error."""
        return run_main(self.tool, *arguments)

    def test_equal_counts_pass(self):
        status, out, err = self.run_tool()
        self.assertEqual((status, err), (0, ""))
        self.assertRegex(out, r"1,000\.0 +1,000\.0 +\+0\.0 %  GetSource\n")

    def test_up_to_3_percent_more_passes(self):
        self.counts["GetSource"] = 1030
        self.assertEqual(self.run_tool()[0], 0)

    def test_counts_show_what_makes_their_change(self):
        self.baseline.write_text("GetSource\t208.2\nFindChannel, 200 services\t200000\n")
        self.counts["GetSource"] = 208.6
        status, out, _ = self.run_tool()
        self.assertEqual(status, 0)
        self.assertRegex(out, r"208\.6 +208\.2 +\+0\.2 %  GetSource\n")

    def test_less_passes(self):
        self.counts["GetSource"] = 10
        status, out, _ = self.run_tool()
        self.assertEqual(status, 0)
        self.assertIn("-99.0 %", out)

    def test_more_than_3_percent_more_fails_and_tells_how_to_renew(self):
        self.counts["GetSource"] = 1031
        status, _, err = self.run_tool()
        self.assertEqual(status, 1)
        self.assertEqual(err, "GetSource: +3.1 %, more than 3 %\nIf that is meant: tools/instructions --renew 'REASON'\n")

    def test_a_failure_says_when_the_baseline_was_counted_with_other_libraries(self):
        self.made_with = "x86_64, g++ 12.2.1"
        self.assertEqual(self.run_tool()[0], 0)
        self.counts["GetSource"] = 1031
        status, _, err = self.run_tool()
        self.assertEqual(status, 1)
        self.assertIn("\nThe baseline was counted with others than these: x86_64, g++ 12.2.1\nIf that is meant", err)
        self.run_tool("--renew", "another compiler")
        self.counts["GetSource"] = 2000
        self.assertNotIn("with others", self.run_tool()[2])

    def test_a_command_without_a_baseline_fails(self):
        self.counts["GetTVMode"] = 5
        status, _, err = self.run_tool()
        self.assertEqual(status, 1)
        self.assertIn("GetTVMode: is not in bench/instructions.tsv\n", err)

    def test_a_command_that_is_not_run_any_more_fails(self):
        del self.counts["GetSource"]
        status, _, err = self.run_tool()
        self.assertEqual(status, 1)
        self.assertIn("GetSource: is in bench/instructions.tsv but is not run\n", err)

    def test_without_a_baseline_all_is_missing(self):
        self.baseline.unlink()
        status, _, err = self.run_tool()
        self.assertEqual(status, 1)
        self.assertIn("GetSource: is not in", err)

    def test_a_broken_line_is_told_by_its_number(self):
        for line in ("GetSource", "GetSource\tmany", "GetSource\t0", "GetSource\t-5", "GetSource\t1\t2", "\t5", "GetSource\t1.25",
                     "FindChannel, 200 services\t7"):
            with self.subTest(line=line):
                self.write("bench/instructions.tsv", self.BASELINE + line + "\n")
                status, _, err = self.run_tool()
                self.assertEqual(status, 2)
                self.assertRegex(err, r"^tools/instructions: bench/instructions\.tsv:5: ")

    def test_a_baseline_that_is_no_text_is_told(self):
        self.baseline.write_bytes(self.BASELINE.encode() + b"\xff\xfe\n")
        status, _, err = self.run_tool()
        self.assertEqual(status, 2)
        self.assertRegex(err, r"^tools/instructions: bench/instructions\.tsv:5: ")

    def test_renewing_writes_the_counts_and_adds_the_reason(self):
        self.counts = {"GetSource": 2000.4, "GetTVMode": 7}
        status, _, err = self.run_tool("--renew", "a lookup\nmore")
        self.assertEqual((status, err), (0, ""))
        text = self.baseline.read_text()
        self.assertRegex(text, r"\A# Notes\n# 2026-01-02 first counted \(x86_64, g\+\+ 12\.2\.0\)\n"
                               r"# \d{4}-\d\d-\d\d a lookup more \(x86_64, g\+\+ 12\.2\.0\)\n"
                               r"GetSource\t2000.4\nGetTVMode\t7.0\n\Z")
        self.assertEqual(self.run_tool()[0], 0)

    def test_renewing_makes_a_missing_baseline(self):
        self.baseline.unlink()
        self.assertEqual(self.run_tool("--renew", "first counted")[0], 0)
        self.assertEqual(self.run_tool()[0], 0)

    def test_a_baseline_that_can_not_be_read_is_told_before_anything_is_counted(self):
        self.baseline.unlink()
        self.baseline.mkdir()
        for arguments in ([], ["--renew", "first counted"]):
            with self.subTest(arguments=arguments):
                status, _, err = self.run_tool(*arguments)
                self.assertEqual((status, self.runs), (2, 0))
                self.assertRegex(err, r"^tools/instructions: .*instructions\.tsv can't be read: ")

    def test_a_baseline_that_can_not_be_written_is_told_before_anything_is_counted(self):
        self.tool.BASELINE = self.root / "no-such-folder/instructions.tsv"
        status, _, err = self.run_tool("--renew", "first counted")
        self.assertEqual((status, self.runs), (2, 0))
        self.assertRegex(err, r"^tools/instructions: .*instructions\.tsv can't be written\n$")

    def test_a_baseline_that_turns_out_not_to_be_writable_is_told(self):
        def counted():
            self.baseline.unlink()
            self.baseline.mkdir()
            return self.counts, self.made_with
        self.tool.counted = counted
        status, _, err = self.run_tool("--renew", "a lookup more")
        self.assertEqual(status, 2)
        self.assertRegex(err, r"^tools/instructions: .*instructions\.tsv can't be written: ")

    def test_renewing_without_a_reason_is_refused(self):
        for arguments in (["--renew"], ["--renew", ""], ["--renew", "  "]):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.run_tool(*arguments)[0], 2)
                self.assertEqual(self.baseline.read_text(), self.BASELINE)


class CountTest(ScratchTest):
    """The interpretation of valgrind's files and of the program's output."""

    DUMP = "version: 1\ndesc: Trigger: Client Request: GetSource\nevents: Ir\nsummary: {}\n"

    def job(self, said, dumps):
        """A job whose program prints this output and leaves these files."""
        test = self
        self.ran = []
        for name, text in dumps.items():
            self.write(f"counts.{name}", text)

        class Job:
            scratch = Path(test.root)

            def run(self, argv, **_):
                test.ran.append(argv)
                return said
        return Job()

    def count(self, said, **dumps):
        return instructions.count(self.job(said, dumps), "bench_instructions", "DIR")

    def test_counts_are_those_of_one_run(self):
        self.assertEqual(self.count("GetSource\t10\n", one=self.DUMP.format(2084), rest="version: 1\nsummary: 7\n"),
                         {"GetSource": 208.4})

    def test_a_program_is_given_its_arguments_and_counted_where_it_wants_to_be(self):
        self.count("GetSource\t10\n", one=self.DUMP.format(2084))
        self.assertEqual(self.ran[0][-3:], ["--instr-atstart=no", "bench_instructions", "DIR"])

    def test_a_process_is_counted_from_its_start_to_its_end(self):
        whole = "desc: Trigger: Program termination\nevents: Ir\nsummary: 700\n"
        self.assertEqual(instructions.of_process(self.job("1\n", {"one": whole}), "emp-window", "exec"), 700)
        self.assertEqual(self.ran[0][-2:], ["emp-window", "exec"])
        self.assertNotIn("--instr-atstart=no", self.ran[0])

    def test_a_process_that_was_not_counted_is_told(self):
        for dumps in ({}, {"one": self.DUMP.format(2084)}):
            with self.subTest(dumps=dumps), self.assertRaisesRegex(Failed, "has not counted emp-window"):
                instructions.of_process(self.job("", dumps), "emp-window")

    def test_a_command_that_was_not_counted_is_told(self):
        for dumps in ({}, {"one": "desc: Trigger: Client Request: GetSource\n"}):
            with self.subTest(dumps=dumps), self.assertRaisesRegex(Failed, "has not counted GetSource, GetVolume"):
                self.count("GetSource\t10\nGetVolume\t10\n", **dumps)

    def test_a_program_that_tells_nothing_of_use_is_told(self):
        for said in ("", "GetSource\n", "GetSource\t0\n", "GetSource\t1\t2\n"):
            with self.subTest(said=said), self.assertRaisesRegex(Failed, "bench_instructions does not tell what it ran"):
                self.count(said, one=self.DUMP.format(2084))


if __name__ == "__main__":
    unittest.main()
