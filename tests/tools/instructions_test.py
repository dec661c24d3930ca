"""tools/instructions: what it makes of counts and of a baseline. The counting itself is valgrind's."""

import contextlib
import importlib.machinery
import importlib.util
import io
import unittest

from scratch import TOP, ScratchTest


def load():
    """The script as a module."""
    loader = importlib.machinery.SourceFileLoader("instructions_tool", str(TOP / "tools/instructions"))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
    loader.exec_module(module)
    return module


class InstructionsTest(ScratchTest):
    BASELINE = "# Notes\n# 2026-01-02 first counted (x86_64, g++ 12.2.0)\nGetSource\t1000\nFindChannel, 200 services\t200000\n"

    def setUp(self):
        super().setUp()
        self.tool = load()
        self.tool.TOP = self.root
        self.tool.BASELINE = self.root / "bench/instructions.tsv"
        self.tool.counted = lambda: (dict(self.counts), self.made_with)
        self.made_with = "x86_64, g++ 12.2.0"
        self.counts = {"GetSource": 1000, "FindChannel, 200 services": 200000}
        self.baseline = self.write("bench/instructions.tsv", self.BASELINE)

    def run_tool(self, *arguments):
        """Status, standard output and standard error."""
        out, err = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
            try:
                status = self.tool.main(arguments)
            except SystemExit as end:
                status = end.code
        return status, out.getvalue(), err.getvalue()

    def test_equal_counts_pass(self):
        status, out, err = self.run_tool()
        self.assertEqual((status, err), (0, ""))
        self.assertRegex(out, r"1,000 +1,000 +\+0\.0 %  GetSource\n")

    def test_up_to_3_percent_more_passes(self):
        self.counts["GetSource"] = 1030
        self.assertEqual(self.run_tool()[0], 0)

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
        for line in ("GetSource", "GetSource\tmany", "GetSource\t0", "GetSource\t-5", "GetSource\t1\t2", "\t5",
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
                               r"GetSource\t2000\nGetTVMode\t7\n\Z")
        self.assertEqual(self.run_tool()[0], 0)

    def test_renewing_makes_a_missing_baseline(self):
        self.baseline.unlink()
        self.assertEqual(self.run_tool("--renew", "first counted")[0], 0)
        self.assertEqual(self.run_tool()[0], 0)

    def test_renewing_without_a_reason_is_refused(self):
        for arguments in (["--renew"], ["--renew", ""], ["--renew", "  "]):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.run_tool(*arguments)[0], 2)
                self.assertEqual(self.baseline.read_text(), self.BASELINE)


if __name__ == "__main__":
    unittest.main()
