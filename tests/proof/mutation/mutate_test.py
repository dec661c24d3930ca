# SPDX-License-Identifier: MIT
"""Tests tools/mutate: the changes that it finds in a source, that each can be selected at run time, and how it
interprets the tests' results."""

import os
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from contextlib import redirect_stdout
from io import StringIO
from pathlib import Path
from types import SimpleNamespace

TOP = Path(__file__).resolve().parents[3]
sys.dont_write_bytecode = True
sys.path[:0] = [str(TOP / "tools"), str(TOP / "tests" / "tools")]

from mutation.rewrite import Sources  # noqa: E402  (needs the path above)
from mutation.sites import Mutant  # noqa: E402
from mutation.runs import Runs, Stopped  # noqa: E402
from mutation.trial import Failed, Late  # noqa: E402
from scratch import ScratchTest, load  # noqa: E402

SOURCE = """\
#include <cstdio>
namespace kel {
constexpr int kStep = 4;
constexpr int kRoom = 8;
enum Kind : int { KIND_A, KIND_B };
struct Text {
  static constexpr const char* kFormat = "%d!";
};
template <int kFrom>
struct Bits {
  static constexpr int kBit = 1;
  int value = kFrom << kBit;
};
int Narrow(int value) {
  char text[kRoom] = {};
  if (value > 5 && value != 7) return std::snprintf(text, sizeof text, Text::kFormat, value);
  switch (value) {
    case 0:
      return Bits<3>().value;
    case 1:
      return KIND_B;
    default:
      return value + kStep;
  }
}
}  // namespace kel
"""

MAIN = """\
#include <cstdio>
#include <cstdlib>
namespace mutants { bool active(unsigned number) { return number == unsigned(std::atoi(std::getenv("MUTANT"))); } }
namespace kel { int Narrow(int value); }
int main() { for (int value = 0; value < 8; ++value) std::printf("%d ", kel::Narrow(value)); }
"""

# The output of the program without a mutant, and with each change.
PLAIN = "6 1 6 7 8 9 2 11"
CHANGES = {
    "4 -> 5": "6 1 7 8 9 10 2 12",
    "value > 5 && value != 7 -> !(value > 5 && value != 7)": "2 2 2 2 2 2 10 2",
    "value > 5 && value != 7 -> value > 5 || value != 7": "2 2 2 2 2 2 2 2",
    "value > 5 -> value >= 5": "6 1 6 7 8 2 2 11",
    "5 -> 6": "6 1 6 7 8 9 10 11",
    "value != 7 -> value == 7": "6 1 6 7 8 9 10 2",
    "7 -> 8": "6 1 6 7 8 9 2 2",
    '"%d!" -> "~%d!"': "6 1 6 7 8 9 3 11",
    "case 0 -> no such case": "4 1 6 7 8 9 2 11",
    "kFrom << kBit -> kFrom >> kBit": "1 1 6 7 8 9 2 11",
    "case 1 -> no such case": "6 5 6 7 8 9 2 11",
    "KIND_B -> KIND_B + 1": "6 2 6 7 8 9 2 11",
    "value + kStep -> value - kStep": "6 1 -2 -1 0 1 2 3",
}


class Mutants(unittest.TestCase):
    """The mutants of a small source."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        (self.folder / "Narrow.cpp").write_text(SOURCE, encoding="utf-8")
        self.sources = Sources(self.folder, ["Narrow.cpp"], [], [])
        self.made = self.folder / "made"
        self.made.mkdir()
        (self.made / "mutants.h").write_text((TOP / "tools/mutation/mutants.h").read_text(encoding="utf-8"),
                                             encoding="utf-8")
        self.sources.write(self.made)

    def outputs(self):
        """The program's output with each mutant, by number; 0 is the output without one."""
        (self.made / "main.cpp").write_text(MAIN, encoding="utf-8")
        program = self.made / "program"
        subprocess.run(["g++", "-w", "-o", program, self.made / "main.cpp", self.made / "Narrow.cpp"], check=True)
        return {number: subprocess.run([program], env={**os.environ, "MUTANT": str(number)}, capture_output=True,
                                       text=True, check=True).stdout.strip()
                for number in range(len(self.sources.mutants) + 1)}

    def test_are_all_that_the_source_offers(self):
        """The compiler needs sizes of arrays and values of enumerations, so they stay unchanged. So do constants of
        templates, whose order of initialisation at start would be unspecified."""
        self.assertEqual(sorted(mutant.change for mutant in self.sources.mutants), sorted(CHANGES))

    def test_tell_where_they_are(self):
        places = {mutant.change: mutant.where for mutant in self.sources.mutants}
        self.assertEqual(places["5 -> 6"], "Narrow.cpp:16:15")

    def test_do_what_they_say_and_one_at_a_time(self):
        outputs = self.outputs()
        self.assertEqual(outputs[0], PLAIN)
        self.assertEqual({mutant.change: outputs[mutant.number] for mutant in self.sources.mutants}, CHANGES)


class ThePlugIn(unittest.TestCase):
    """The mutants of the plug-in's sources."""

    def test_can_be_mutated_on_most_lines(self):
        mutate = load("mutate")
        sources = Sources(TOP, *mutate.sources_of(TOP), mutate.INCLUDES)
        with tempfile.TemporaryDirectory() as name:
            tree = Path(name)
            (tree / "Window/Src").mkdir(parents=True)
            for folder in ("Window/include", "platform"):
                (tree / folder).symlink_to(TOP / folder)
            (tree / "Window/Src/mutants.h").symlink_to(TOP / "tools/mutation/mutants.h")
            sources.write(tree)
        self.assertGreater(len(sources.mutants), 2000)
        self.assertLessEqual(sum(map(len, sources.unusable.values())), 10, sources.unusable)
        added = {sources.mutated(name).count("\n") - text.count("\n") for name, text in sources.texts.items()
                 if name.endswith(".cpp")}
        self.assertEqual(added, {2}, "behind the two lines in front, each line stays in its place")


class FakeTrial:
    """Returns given results for the attempts at each mutant, and records which programs run to their end without a
    mutant. The first of these runs take too long."""

    def __init__(self, outcomes, late_without_mutant=0):
        self.outcomes = outcomes
        self.late_without_mutant = late_without_mutant
        self.assured = []

    def reaching(self):
        return {number: {"tests": ["one"]} for number in self.outcomes}

    def stop(self):
        pass

    def assure(self, program, tests):
        pass

    def assure_all(self, name):
        self.assured.append(name)
        if len(self.assured) <= self.late_without_mutant:
            raise Late(SimpleNamespace(name=name), ["one"])

    def attempt(self, mutant, tests):
        outcome = self.outcomes[mutant.number].pop(0)
        if outcome is Late:
            raise Late("suite", tests)
        return outcome


class Attempts(unittest.TestCase):
    """A mutant that makes a test fail is told apart from one that takes too long."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.mutate = load("mutate")
        self.accepted = SimpleNamespace(reason=lambda mutant: None)

    def figures(self, outcomes, tables=(), digest="now", late_without_mutant=0):
        """The figures reported for these results of attempts."""
        self.trial = FakeTrial(outcomes, late_without_mutant)
        mutants = [Mutant("a.cpp", number, 1, "1", "2", number in tables, number) for number in outcomes]
        results = self.mutate.Results(self.folder / "results.tsv", lambda: digest)
        with redirect_stdout(StringIO()) as told:
            reaching = self.mutate.try_all(self.trial, mutants, results, self.accepted, 2)
            self.mutate.report(mutants, results, reaching, self.accepted, len(mutants))
        lines = [line.removeprefix("figure: ").split(" = ") for line in told.getvalue().splitlines() if " = " in line]
        return {name: float(number) for name, number in lines}

    def test_of_what_takes_too_long_are_made_again_alone(self):
        figures = self.figures({1: ["suite"], 2: [Late, None], 3: [Late, "suite"], 4: [Late, Late]})
        self.assertEqual((figures["killed in worker and engine"], figures["of those killed, take too long"],
                          figures["survivors without a reason"]), (3, 1, 1))

    def test_count_as_long_as_the_tests_stay_the_same(self):
        self.figures({1: ["suite"], 2: [Late, Late]})
        self.assertEqual(self.figures({1: [], 2: []})["killed in worker and engine"], 2)
        self.assertEqual(self.figures({1: [None], 2: [None]}, digest="later")["killed in worker and engine"], 0)

    def test_that_fail_are_kept_some_at_a_time(self):
        figures = self.figures({number: ["other" if number % 5 == 0 else "suite"] for number in range(1, 31)})
        self.assertEqual(figures["killed in worker and engine"], 30)
        self.assertEqual(sorted(self.trial.assured), ["other"] + ["suite"] * 3)

    def test_are_made_again_alone_where_the_tests_take_too_long(self):
        figures = self.figures({1: ["suite", "suite"], 2: ["suite", None]}, late_without_mutant=1)
        self.assertEqual((figures["killed in worker and engine"], figures["survivors without a reason"]), (1, 1))
        self.assertEqual(self.trial.assured, ["suite", "suite"])

    def test_tell_nothing_where_the_tests_take_too_long_alone(self):
        with self.assertRaisesRegex(Failed, "suite takes too long without a mutant, too; the machine is too busy"):
            self.figures({1: ["suite", "suite"]}, late_without_mutant=2)

    def test_give_no_share_of_nothing(self):
        figures = self.figures({1: ["suite"]})
        self.assertEqual(figures["percent killed in worker and engine"], 100)
        self.assertNotIn("percent killed in the converter's tables", figures)
        self.assertNotIn("percent killed in worker and engine", self.figures({2: ["suite"]}, tables=[2]))


# A program that runs a command and waits for it.
WAITING = """\
import os, sys
sys.dont_write_bytecode = True
sys.path.insert(0, sys.argv[1])
from mutation.runs import Runs
Runs().fails(300, ["sh", "-c", sys.argv[2]], "/", os.environ)
"""


class Running(ScratchTest):
    """Whatever a mutant does, none of its processes continues."""

    def setUp(self):
        super().setUp()
        self.child = self.root / "child"
        self.command = f'sleep 300 & echo $! >"{self.child}.new"; mv "{self.child}.new" "{self.child}"; '

    def fails(self, command, seconds=60):
        return Runs().fails(seconds, command, self.root, os.environ)

    def await_child(self):
        while not self.child.exists():
            time.sleep(0.01)
        return int(self.child.read_text())

    def test_tells_whether_it_fails(self):
        self.assertTrue(self.fails(["false"]))
        self.assertFalse(self.fails(["true"]))

    def test_ends_when_it_takes_too_long(self):
        with self.assertRaises(subprocess.TimeoutExpired):
            self.fails(["sh", "-c", f"{self.command} wait"], seconds=1)
        self.assert_gone(self.await_child())

    def test_ends_when_the_program_that_started_it_has(self):
        self.assertFalse(self.fails(["sh", "-c", self.command]))
        self.assert_gone(self.await_child())

    def test_ends_when_all_are_to_and_tells_nothing(self):
        runs, told = Runs(), []

        def run():
            try:
                told.append(runs.fails(60, ["sh", "-c", f"{self.command} wait"], self.root, os.environ))
            except Stopped:
                told.append(Stopped)

        thread = threading.Thread(target=run)
        thread.start()
        child = self.await_child()
        runs.stop()
        thread.join()
        self.assert_gone(child)
        self.assertEqual(told, [Stopped])
        with self.assertRaises(Stopped):
            runs.fails(60, ["true"], self.root, os.environ)

    def test_ends_when_nobody_waits_for_it_any_more(self):
        command = f'echo $$ >"{self.child}.new"; mv "{self.child}.new" "{self.child}"; exec sleep 300'
        with subprocess.Popen([sys.executable, "-c", WAITING, TOP / "tools", command]) as process:
            run = self.await_child()
            process.kill()
        self.assert_gone(run)

    def test_ends_when_it_has_used_all_the_time_there_is(self):
        """Even a process that left the run's process group has only a limited processor time."""
        self.assertFalse(self.fails(["sh", "-c", f'ulimit -t >"{self.child}"'], seconds=7))
        self.assertEqual(int(self.child.read_text()), 7 * os.cpu_count() + 1)


class Digest(unittest.TestCase):
    """The result for a mutant is valid as long as the plug-in, its tests and the code they link do not change."""

    def test_changes_with_what_decides(self):
        with tempfile.TemporaryDirectory() as name:
            top = Path(name)
            files = ["Window/Src/a.cpp", "tests/window/T.cpp", "tests/CMakeLists.txt", "virtualtv/set/Tv.cpp",
                     "platform/p.h", "tests/window/log_contract.tsv", "docs/commands.json", "tests/fuzz/f.cpp",
                     "tools/mutation/accepted.tsv", "README.md"]
            for file in files:
                (top / file).parent.mkdir(parents=True, exist_ok=True)
                (top / file).write_text("1")
            digest = load("mutate").digest_of
            before = digest(top)
            changing = []
            for file in files:
                (top / file).write_text("2")
                changing += [file] if digest(top) != before else []
                (top / file).write_text("1")
            self.assertEqual((changing, digest(top)), (files[:-3], before))


class Arguments(unittest.TestCase):
    """Invalid arguments are refused before anything is built."""

    def test_are_refused(self):
        for arguments, why in ((["--sample", "0"], "a number from 1 on is wanted, not '0'"), (["--jobs", "-1"], "from 1 on"),
                               (["--seed", "x"], "not 'x'"), (["Window/Src/No.cpp"], "is no source of the plug-in")):
            done = subprocess.run([TOP / "tools" / "mutate", *arguments], capture_output=True, text=True, check=False)
            self.assertEqual(done.returncode, 2, arguments)
            self.assertIn(why, done.stderr)


if __name__ == "__main__":
    unittest.main()
