"""tools/bench: what it makes of measurements. The measuring itself is that of programs in bench/."""

import contextlib
import importlib.machinery
import importlib.util
import io
import json
import sys
import unittest

from scratch import TOP, ScratchTest

sys.path.insert(0, str(TOP / "tools"))

from measuring import speed  # noqa: E402  (needs the path above)
from proving.job import Failed  # noqa: E402


def load():
    """The script as a module."""
    loader = importlib.machinery.SourceFileLoader("bench_tool", str(TOP / "tools/bench"))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
    loader.exec_module(module)
    return module


class BenchTest(ScratchTest):
    def setUp(self):
        super().setUp()
        self.tool = load()
        self.tool.TOP = self.root
        self.write("docs/performance.md", "as it was\n")
        self.write("bench/notes.md", "## Notes\n")
        self.asked = []
        self.ratios = {}  # by number, 0.01 for those that are not here
        self.tool.speed_rows = self.rows_of("1", "2", "3", "4", "5", "6", "8", "9", "10", "11", "12")
        self.tool.memory_rows = self.rows_of("7", "14")
        self.tool.seam_rows = self.rows_of("13")
        self.tool.sizes.measure = lambda job, archive: [("text", "5 bytes")]
        self.tool.Job = self.job
        self.failure = None

    def rows_of(self, *numbers):
        def rows(_job, _build, wanted):
            return [self.tool.row(number, "figure", "reference", "", "", self.ratios.get(number, 0.01), 0.02)
                    for number in numbers if not wanted or number in wanted]
        return rows

    def job(self, *_):
        """A job that builds nothing, or fails to."""
        test = self

        class Job:
            def build(self, *_):
                if test.failure:
                    raise Failed(test.failure)
                return test.root

            def close(self):
                pass
        return Job()

    def run_tool(self, *arguments):
        """Status, standard output and standard error."""
        out, err = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
            try:
                status = self.tool.main(arguments)
            except SystemExit as end:
                status = end.code
        return status, out.getvalue(), err.getvalue()

    def page(self):
        return (self.root / "docs/performance.md").read_text()

    def test_all_rows_are_printed_in_their_order_and_pass(self):
        status, out, err = self.run_tool()
        self.assertEqual((status, err), (0, ""))
        rows = out.split("\n\n")[0].splitlines()[1:]
        self.assertEqual([row.split()[0] for row in rows], [str(number) for number in range(1, 15)])
        self.assertIn("text  5 bytes", out)

    def test_a_missed_target_is_told_and_ends_with_1(self):
        self.ratios["13"] = 0.021
        status, out, _ = self.run_tool()
        self.assertEqual(status, 1)
        self.assertEqual([line.split()[0] for line in out.splitlines() if line.endswith("MISSED")], ["13"])

    def test_a_ratio_that_is_the_target_passes(self):
        self.ratios["13"] = 0.02
        self.assertEqual(self.run_tool()[0], 0)

    def test_a_row_without_a_target_is_not_missed(self):
        row = self.tool.row("9", "figure", "reference", "2 ms", "1 ms", 2.0, None)
        self.assertEqual(row, ["9", "figure", "reference", "2 ms", "1 ms", "2", "", ""])

    def test_named_rows_alone_are_measured(self):
        _, out, _ = self.run_tool("7", "3")
        self.assertEqual([row.split()[0] for row in out.splitlines()[1:]], ["3", "7"])
        self.assertNotIn("size", out)

    def test_rows_that_there_are_none_of_are_refused(self):
        for wrong in ("0", "15", "x", ""):
            with self.subTest(wrong=wrong):
                status, _, err = self.run_tool("1", wrong)
                self.assertEqual(status, 2)
                self.assertIn(f"there is no row '{wrong}'; there are 1, 2, ", err)

    def test_writing_renews_the_page(self):
        self.ratios["11"] = 3.5
        status, out, _ = self.run_tool("--write")
        self.assertEqual(status, 1)
        self.assertIn("| 11 | figure | reference |  |  | 3.5 | <= 0.02 | MISSED |\n", self.page())
        self.assertTrue(self.page().endswith("| text | 5 bytes |\n\n## Notes\n"))
        self.assertIn("MISSED", out)

    def test_the_page_is_not_written_of_some_rows(self):
        status, _, err = self.run_tool("--write", "3")
        self.assertEqual(status, 2)
        self.assertIn("--write is for all rows", err)
        self.assertEqual(self.page(), "as it was\n")

    def test_what_can_not_be_measured_is_told_and_ends_with_2(self):
        self.failure = "bench_speed ended with status 1"
        status, out, err = self.run_tool("--write")
        self.assertEqual((status, out, err), (2, "", "tools/bench: bench_speed ended with status 1\n"))
        self.assertEqual(self.page(), "as it was\n")


class Benchmarks:
    """Answers as the program of the benchmarks does."""

    def __init__(self, text):
        self.text = text
        self.asked = []

    def run(self, argv):
        self.asked.append(argv)
        return self.text


def said(**nanoseconds):
    """What the program says of benchmarks with these medians."""
    runs = [{"run_name": name, "aggregate_name": aggregate, "cpu_time": time * factor, "real_time": 2 * time * factor,
             "time_unit": "ns"}
            for name, time in nanoseconds.items() for aggregate, factor in (("mean", 7), ("median", 1), ("cv", 5))]
    return json.dumps({"benchmarks": runs})


class SpeedTest(unittest.TestCase):
    def measure(self, text, pairs, **more):
        self.program = Benchmarks(text)
        return speed.measure(self.program, "bench_speed", speed.Ratio("1", "figure", "reference", pairs, 1.0, **more))

    def test_medians_of_a_pair_make_the_ratio(self):
        subject, reference, ratio = self.measure(said(one=300, other=100), [("one", "other")])
        self.assertAlmostEqual(subject, 3e-7)
        self.assertAlmostEqual(reference, 1e-7)
        self.assertAlmostEqual(ratio, 3.0)

    def test_both_run_in_turns_in_one_program(self):
        self.measure(said(one=300, other=100), [("one", "other")])
        self.assertEqual(len(self.program.asked), 1)
        self.assertIn("--benchmark_filter=^(one|other)$", self.program.asked[0])
        self.assertIn("--benchmark_enable_random_interleaving=true", self.program.asked[0])
        self.assertGreaterEqual(speed.REPETITIONS, 9)
        self.assertIn(f"--benchmark_repetitions={speed.REPETITIONS}", self.program.asked[0])

    def test_of_several_pairs_the_worst_counts(self):
        _, _, ratio = self.measure(said(a=1, b=2, c=30, d=20, e=4, f=4), [("a", "b"), ("c", "d"), ("e", "f")])
        self.assertAlmostEqual(ratio, 1.5)

    def test_different_amounts_of_work_are_divided_by(self):
        _, _, ratio = self.measure(said(one=300, other=100), [("one", "other")], per=(30, 1))
        self.assertAlmostEqual(ratio, 0.1)

    def test_real_time_counts_where_a_benchmark_is_named_so(self):
        text = said(**{"one/real_time": 300, "other": 100})
        self.assertAlmostEqual(self.measure(text, [("one/real_time", "other")])[2], 6.0)

    def test_a_benchmark_that_did_not_run_is_told(self):
        with self.assertRaisesRegex(Failed, "other"):
            self.measure(said(one=300), [("one", "other")])

    def test_output_that_is_not_the_programs_is_told(self):
        with self.assertRaises(Failed):
            self.measure("no such benchmark\n", [("one", "other")])

    def test_times_are_shown_in_the_unit_that_suits(self):
        shown = [speed.shown(time) for time in (2.5, 0.0123, 4.56e-5, 7.8e-9)]
        self.assertEqual(shown, ["2.5 s", "12.3 ms", "45.6 us", "7.8 ns"])


if __name__ == "__main__":
    unittest.main()
