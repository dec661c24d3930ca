# SPDX-License-Identifier: MIT
"""Tests how tools/bench interprets measurements. The programs in bench/ measure."""

import json
import sys
import unittest
from contextlib import redirect_stderr
from io import StringIO
from pathlib import Path
from unittest import mock

from scratch import TOP, ScratchTest, load, run_main

sys.path.insert(0, str(TOP / "tools"))

from measuring import memory, sizes, speed  # noqa: E402  (needs the path above)
from proving.job import Failed, Job  # noqa: E402


class BenchTest(ScratchTest):
    def setUp(self):
        super().setUp()
        self.tool = load("bench")
        self.tool.TOP = self.root
        self.write("docs/performance.md", "as it was\n")
        self.write("bench/notes.md", "## Notes\n")
        self.asked = []
        self.ratios = {}  # by number; 0.01 for missing ones
        self.speed_rows = self.tool.speed_rows
        self.tool.speed_rows = self.rows_of("1", "2", "3", "4", "5", "6", "8", "10", "11", "12", *map(str, range(16, 21)), "23", "24")
        self.tool.memory_rows = self.rows_of("7", "14")
        self.seam_rows = self.tool.seam_rows
        self.tool.seam_rows = self.rows_of("13")
        self.found_rows = self.tool.found_rows
        self.tool.found_rows = self.rows_of("9")
        self.process_rows = self.tool.process_rows
        self.tool.process_rows = self.rows_of("15")
        self.server_rows = self.tool.server_rows
        self.tool.server_rows = self.rows_of("21")
        self.enterContext(mock.patch.object(self.tool.broadcasts, "capture", lambda: self.root / "a.ts"))
        self.broadcast_rows = self.tool.broadcast_rows
        self.tool.broadcast_rows = self.rows_of("22")
        self.tool.sizes.measure = lambda job, archive: [("text", "5 bytes")]
        self.tool.Job = self.job
        self.failure = None
        self.builds = 0

    def rows_of(self, *numbers):
        def rows(_job, _build, wanted):
            return [self.tool.row(number, "figure", "reference", "", "", self.ratios.get(number, 0.01), 0.02)
                    for number in numbers if not wanted or number in wanted]
        return rows

    def job(self, *_):
        """A job whose builds do nothing, or fail."""
        test = self

        class Job:
            def build(self, *_):
                test.builds += 1
                if test.failure:
                    raise Failed(test.failure)
                return test.root

            def close(self):
                pass
        return Job()

    def run_tool(self, *arguments):
        """Status, standard output and standard error."""
        return run_main(self.tool, *arguments)

    def page(self):
        return (self.root / "docs/performance.md").read_text()

    def test_all_rows_are_printed_in_their_order_and_pass(self):
        status, out, err = self.run_tool()
        self.assertEqual((status, err), (0, ""))
        rows = out.split("\n\n")[0].splitlines()[1:]
        self.assertEqual([row.split()[0] for row in rows], [str(number) for number in range(1, 25)])
        self.assertIn("text  5 bytes", out)

    def test_a_missed_target_is_told_and_ends_with_1(self):
        self.ratios["13"] = 0.021
        status, out, _ = self.run_tool()
        self.assertEqual(status, 1)
        self.assertEqual([line.split()[0] for line in out.splitlines() if line.endswith("MISSED")], ["13"])

    def test_a_ratio_that_is_the_target_passes(self):
        self.ratios["13"] = 0.02
        self.assertEqual(self.run_tool()[0], 0)

    def test_named_rows_alone_are_measured(self):
        _, out, _ = self.run_tool("7", "3")
        self.assertEqual([row.split()[0] for row in out.splitlines()[1:]], ["3", "7"])
        self.assertNotIn("size", out)

    def test_rows_that_there_are_none_of_are_refused(self):
        for wrong in ("0", "25", "x", ""):
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

    def test_what_the_page_needs_is_told_before_anything_is_measured(self):
        page, notes = self.root / "docs/performance.md", self.root / "bench/notes.md"
        notes.unlink()
        status, _, err = self.run_tool("--write")
        self.assertEqual((status, self.builds), (2, 0))
        self.assertRegex(err, r"^tools/bench: .*notes\.md can't be read: ")
        self.assertEqual(self.run_tool()[0], 0)
        self.write("bench/notes.md", "## Notes\n")
        self.builds = 0
        page.unlink()
        page.mkdir()
        status, _, err = self.run_tool("--write")
        self.assertEqual((status, self.builds), (2, 0))
        self.assertRegex(err, r"^tools/bench: .*performance\.md can't be written\n$")

        page.rmdir()
        with mock.patch.object(self.tool.broadcasts, "capture", lambda: None):
            status, _, err = self.run_tool("--write")
        self.assertEqual((status, self.builds, page.exists()), (2, 0, False))
        self.assertRegex(err, r"^tools/bench: row 22 wants a recording, ")

    def test_a_missing_page_is_made(self):
        (self.root / "docs/performance.md").unlink()
        self.assertEqual(self.run_tool("--write")[0], 0)
        self.assertTrue(self.page().startswith("# Performance\n"))

    def seam_row(self, with_seam, without):
        counts = {"bench_instructions": with_seam, "bench_instructions_without_seam": without}
        with mock.patch.object(self.tool.instructions, "count", lambda _job, program: counts[program.name]):
            return list(self.seam_rows(None, self.root, {"13"}))

    def test_of_all_queries_the_one_that_the_seam_costs_most_counts(self):
        rows = self.seam_row({"GetSource": 1015, "GetState_Show": 515, "GetChannel_Name": 1000, "SetChannel": 9000},
                             {"GetSource": 1000, "GetState_Show": 500, "GetChannel_Name": 1000, "SetChannel": 1000})
        self.assertEqual(rows, [["13", "instructions of a query, trace and faults off, the most of 3: GetState_Show",
                                 "with the seam compiled out", "515.0", "500.0", "1.03", "<= 1.02", "MISSED"]])

    def test_each_benchmark_is_run_in_its_program(self):
        ran = {}

        def measure(_job, program, ratio):
            ran[ratio.number] = program.name
            return 1.0, 1.0, 1.0
        with mock.patch.object(self.tool.speed, "measure", measure):
            list(self.speed_rows(None, self.root, {"12", "16"}))
        self.assertEqual(ran, {"12": "bench_speed", "16": "bench_served"})

    def server_row(self, served, without):
        def count(_job, program, *arguments):
            self.assertEqual(str(program), str(self.root / "bench/bench_instructions"))
            return {(): without, ("served",): served}[arguments]
        with mock.patch.object(self.tool.instructions, "count", count):
            return list(self.server_rows(None, self.root, {"21"}))

    def test_of_all_commands_the_one_that_an_idle_server_costs_most_counts(self):
        rows = self.server_row({"GetSource": 1015.0, "SetChannel": 9270.0},
                               {"GetSource": 1000.0, "SetChannel": 9000.0})
        self.assertEqual(rows, [["21", "instructions of a command while a server is there, the most of 2: SetChannel",
                                 "without a server", "9,270.0", "9,000.0", "1.03", "<= 1.02", "MISSED"]])

    def test_without_a_recording_its_row_is_left_out_unless_it_is_asked_for(self):
        with mock.patch.object(self.tool.broadcasts, "capture", lambda: None), redirect_stderr(StringIO()) as errors:
            self.assertEqual(list(self.broadcast_rows(None, self.root, set())), [])
            self.assertIn("row 22 is left out", errors.getvalue())
            self.assertEqual(list(self.broadcast_rows(None, self.root, {"1"})), [])
            with self.assertRaisesRegex(Failed, "row 22 wants a recording"):
                list(self.broadcast_rows(None, self.root, {"22"}))

    def test_finding_is_held_against_the_sets_part_and_that_against_sqlites(self):
        counts = {"plug-in": 330.0, "set": 300.0, "SQLite": 200.0}
        with mock.patch.object(self.tool.instructions, "count", lambda _job, _program: counts):
            rows = [row[3:] for row in self.found_rows(None, self.root, {"9"})]
        self.assertEqual(rows, [["330", "300", "1.1", "<= 1.1", ""], ["300", "200", "1.5", "<= 1.4", "MISSED"]])

    def process_row(self, process, operation):
        asked = []

        class Job:
            scratch = Path("scratch")

        def of_process(_job, *argv):
            asked.append([str(word) for word in argv])
            return process
        with mock.patch.object(self.tool.instructions, "count",
                               lambda _job, program, state: {"GetFullChannelList, 20,000 services": operation}), \
                mock.patch.object(self.tool.instructions, "of_process", of_process):
            rows = list(self.process_rows(Job(), Path("build"), {"15"}))
        self.assertEqual(asked, [["build/emp-window", "--state", "scratch/state", "exec", "--raw", "GetFullChannelList"]])
        return rows

    def test_a_whole_process_is_held_against_the_operation(self):
        ((number, _, _, *figures),) = self.process_row(1401, 1000.0)
        self.assertEqual((number, figures), ("15", ["1,401", "1,000", "1.4", "<= 1.4", "MISSED"]))
        self.assertEqual(self.process_row(1400, 1000.0)[0][-1], "")


class MemoryTest(ScratchTest):
    """The interpretation of a program's figures, with the program run as the tool runs it."""

    FIGURES = dict.fromkeys(memory.NAMES, "2.000000")

    def measure(self, figures):
        lines = "".join(f"figure: {name} = {number}\n" for name, number in figures.items())
        program = self.write("bench_memory", f"#!/bin/sh\ncat <<'END'\n{lines}END\n", executable=True)
        job = Job(self.root, "bench")
        self.addCleanup(job.close)
        return memory.measure(job, program)

    def test_all_figures_make_the_rows(self):
        rows = self.measure({**self.FIGURES, "allocations a service": "0.000090", "peak bytes a service": "10.000000"})
        self.assertEqual([(row[0], *row[3:]) for row in rows],
                         [("7", None, None, 9e-5, 13.1), ("7", "2", "2", 1.0, 1.05), ("14", "10", "4", 2.5, 1.3)])

    def test_a_figure_that_was_not_told_is_told(self):
        for name in memory.NAMES:
            with self.subTest(name=name), self.assertRaisesRegex(Failed, f"bench_memory has not told {name}$"):
                self.measure({other: number for other, number in self.FIGURES.items() if other != name})

    def test_a_figure_without_fixed_digits_is_not_told(self):
        with self.assertRaisesRegex(Failed, "has not told allocations a service$"):
            self.measure({**self.FIGURES, "allocations a service": "9e-05"})


class Tools:
    """Stand-ins for compiler and valgrind, which print in the user's language unless told otherwise."""

    scratch = Path("scratch")

    def __init__(self, foreign, plain):
        self.foreign = foreign
        self.plain = plain

    def run(self, _argv, env=None):
        return self.plain if (env or {}).get("LC_ALL") == "C" else self.foreign


class SizesTest(unittest.TestCase):
    def test_the_linker_is_asked_in_the_language_that_is_read(self):
        tools = Tools("undefinierter Verweis auf »one«\n", "main.o: undefined reference to `one'\n")
        self.assertEqual(sizes.undefined(tools, ["main.o"]), ["one"])

    def test_allocations_are_read_from_valgrinds_line(self):
        said = "==1==   total heap usage: 1,005 allocs, 5 frees, 72,834 bytes allocated\n"
        self.assertEqual(sizes.allocations(Tools(said, said), "plugin"), (1005, 72834))

    def test_a_heap_that_was_not_told_is_told(self):
        said = "==1== in use at exit: 0 bytes\n"
        with self.assertRaisesRegex(Failed, "does not tell what plugin allocates"):
            sizes.allocations(Tools(said, said), "plugin")


class Benchmarks:
    """A stand-in for the benchmark program: prints one text after the other, and then repeats the last one."""

    def __init__(self, *texts):
        self.texts = list(texts)
        self.asked = []

    def run(self, argv):
        self.asked.append(argv)
        return self.texts.pop(0) if len(self.texts) > 1 else self.texts[0]


def said(**nanoseconds):
    """The program's output for benchmarks with these medians."""
    runs = [{"run_name": name, "aggregate_name": aggregate, "cpu_time": time * factor, "real_time": 2 * time * factor,
             "time_unit": "ns"}
            for name, time in nanoseconds.items() for aggregate, factor in (("mean", 7), ("median", 1), ("cv", 5))]
    return json.dumps({"benchmarks": runs})


def said_once(**nanoseconds):
    """The program's output for benchmarks without repetitions."""
    return json.dumps({"benchmarks": [{"run_name": name, "cpu_time": time, "real_time": 2 * time, "time_unit": "ns"}
                                      for name, time in nanoseconds.items()]})


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

    def measure_pairs(self, *pairs, **more):
        """Measures a pair of programs that report these times in their runs."""
        turns = [[said_once(one=one), said_once(other=other)] for one, other in pairs]
        self.program = Benchmarks(*(run for at, turn in enumerate(turns) for run in (turn if at % 2 else turn[::-1])))
        return speed.measure(self.program, "bench_speed",
                             speed.Ratio("11", "figure", "reference", [("one", "other")], 1.0, paired=True, **more))

    def test_of_pairs_the_median_of_their_ratios_counts(self):
        half = speed.PAIRS // 2
        subject, reference, ratio = self.measure_pairs(*[(110, 100)] * half, (200, 400), *[(880, 800)] * half)
        self.assertAlmostEqual(ratio, 1.1)
        self.assertAlmostEqual(subject, 2e-7)
        self.assertAlmostEqual(reference, 4e-7)

    def test_the_runs_of_a_pair_are_neighbours_and_either_comes_first_as_often(self):
        self.measure_pairs(*[(110, 100)] * speed.PAIRS)
        self.assertGreaterEqual(speed.PAIRS, 11)
        asked = [option for argv in self.program.asked for option in argv if "filter" in option]
        one, other = "--benchmark_filter=^(one)$", "--benchmark_filter=^(other)$"
        self.assertEqual(asked, [other, one, one, other] * (speed.PAIRS // 2) + [other, one])
        self.assertFalse([option for argv in self.program.asked for option in argv if "repetitions" in option])

    def test_pairs_of_different_amounts_of_work_are_divided_by(self):
        self.assertAlmostEqual(self.measure_pairs(*[(300, 100)] * speed.PAIRS, per=(30, 1))[2], 0.1)

    def test_a_pair_of_which_one_did_not_run_is_told(self):
        self.program = Benchmarks(said_once(one=300))
        with self.assertRaisesRegex(Failed, "has not measured other"):
            speed.times(self.program, "bench_speed", ("one", "other"), 0.2)

    def test_what_waits_for_the_disk_or_other_threads_is_paired(self):
        self.assertEqual([ratio.number for ratio in speed.RATIOS if ratio.paired], ["11", "16", "17", "18", "19", "20", "23"])

    def test_real_time_counts_where_a_benchmark_is_named_so(self):
        for name in ("one/real_time", "one/manual_time"):
            self.assertAlmostEqual(self.measure(said(**{name: 300, "other": 100}), [(name, "other")])[2], 6.0)

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
