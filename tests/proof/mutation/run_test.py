# SPDX-License-Identifier: MIT
"""A run of tools/mutate as a whole, on a scratch tree with stand-ins for the mutated sources, their build and their
tests."""

import signal
import subprocess
import sys
import time
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools"))

from scratch import TOP, ScratchTest  # noqa: E402  (needs the path above)

# tools/mutate with two mutants and one program: a shell script that learns the number of the mutant.
STAND_IN = """\
import runpy, sys
from pathlib import Path
sys.dont_write_bytecode = True
root = Path(__file__).resolve().parent
sys.path.insert(0, str(root / "tools"))
import mutation.rewrite, mutation.trial
from mutation.sites import Mutant

class Sources:
    def __init__(self, *arguments):
        self.texts = {"Window/Src/a.cpp": "one\\n"}
        self.mutants = [Mutant("Window/Src/a.cpp", 1, number, "1", "2", False, number) for number in (1, 2)]

class Trial(mutation.trial.Trial):
    def build(self):
        self.scratch.mkdir(exist_ok=True)
        self.programs = [mutation.trial.Checks("suite", {"test": ["sh", root / "suite"]}, root)]

    def reaching(self):
        return {number: {self.programs[0]: ["test"]} for number in (1, 2)}

mutation.rewrite.Sources = Sources
mutation.trial.Trial = Trial
mutation.trial.SLACK = 2
sys.argv[0] = str(root / "tools/mutate")
runpy.run_path(sys.argv[0], run_name="__main__")
"""


class RunTest(ScratchTest):
    def setUp(self):
        super().setUp()
        self.copy("tools/mutate", "tools/proving/__init__.py", "tools/proving/program.py",
                  *(path.relative_to(TOP) for path in (TOP / "tools/mutation").iterdir() if path.is_file()))
        self.write("tools/mutation/accepted.tsv", "# none\n")
        self.write("tools/setup", "#!/bin/sh\n", executable=True)
        self.write("Window/Src/a.cpp", "one\n")
        self.write("mutate", STAND_IN)
        self.results = self.root / "build/mutation/results.tsv"

    def suite(self, text):
        """The stand-in for the tests; $MUTANT is empty or 0 without a mutant."""
        self.write("suite", text)

    def start(self, **options):
        return subprocess.Popen([sys.executable, "-B", "mutate", "--jobs", "1"], cwd=self.root, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, text=True, **options)

    def run_all(self):
        with self.start() as process:
            return subprocess.CompletedProcess([], process.wait(60), *process.communicate())

    def kept(self):
        """The stored results of the mutants, in the order of their numbers: the program that noticed each."""
        lines = self.results.read_text().splitlines() if self.results.exists() else []
        return [line.rpartition("\t")[2] for line in sorted(lines)]

    def await_file(self, name):
        for _ in range(1000):
            if (self.root / name).exists():
                return (self.root / name).read_text().strip()
            time.sleep(0.01)
        return self.fail(f"{name} does not appear")

    def test_keeps_who_noticed(self):
        self.suite('test "$MUTANT" != 1')
        done = self.run_all()
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(self.kept(), ["suite", ""])
        self.assertIn("figure: killed in worker and engine = 1\n", done.stdout)

    def test_ends_what_runs_when_it_is_to_end_and_keeps_nothing_of_it(self):
        self.suite('test "$MUTANT" = 1 || exit 0\nsleep 300 &\necho $! >new\nmv new child\nwait\n')
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            (self.root / "child").unlink(missing_ok=True)
            # The signals have effect however the tests themselves were started.
            with self.start(preexec_fn=lambda: [signal.signal(each, signal.SIG_DFL)
                                                for each in (signal.SIGINT, signal.SIGHUP)]) as process:
                child = self.await_file("child")
                process.send_signal(number)
                out, errors = process.communicate(timeout=60)
            self.assert_gone(child)
            self.assertEqual((process.returncode, out, errors), (2, "", "tools/mutate: interrupted; what came out is kept\n"))
            self.assertEqual(self.kept(), [])

    def test_keeps_no_kill_that_needs_no_mutant(self):
        """Tests may fail without a mutant, for instance when the disk is full."""
        self.suite('test -z "$MUTANT"')
        done = self.run_all()
        self.assertEqual((done.returncode, done.stdout, self.kept()), (2, "", []))
        self.assertIn("suite fails without a mutant, too", done.stderr)

    def test_keeps_no_mutant_as_too_slow_where_the_tests_are(self):
        self.suite('test -z "$MUTANT" || exec sleep 300')
        done = self.run_all()
        self.assertEqual((done.returncode, done.stdout, self.kept()), (2, "", []))
        self.assertIn("suite takes too long without a mutant, too", done.stderr)

    def test_keeps_what_takes_too_long_with_a_mutant_alone(self):
        self.suite('test "$MUTANT" != 2 || exec sleep 300')
        done = self.run_all()
        self.assertEqual((done.returncode, self.kept()), (0, ["", "takes too long"]), done.stderr)

    def test_keeps_nothing_when_the_sources_change(self):
        """This holds even for early changes: either version may have been built."""
        for mutant in ("", "1"):
            self.suite(f'test "$MUTANT" != "{mutant}" || echo two >>Window/Src/a.cpp\ntest "$MUTANT" != 1\n')
            done = self.run_all()
            self.assertEqual((done.returncode, done.stdout, self.kept()), (2, "", []))
            self.assertIn("the sources have changed meanwhile", done.stderr)

    def test_tells_nothing_of_changed_sources_that_it_knows(self):
        self.suite('test "$MUTANT" != 1 && test "$MUTANT" != 2')
        self.assertEqual(self.run_all().returncode, 0)
        self.suite('echo two >>Window/Src/a.cpp')
        done = self.run_all()
        self.assertEqual((done.returncode, done.stdout, self.kept()), (2, "", ["suite", "suite"]))

    def test_is_refused_while_another_one_runs(self):
        self.suite('test "$MUTANT" = 1 || exit 0\ntouch begun\nwhile ! test -e go; do sleep 0.01; done\nexit 1\n')
        with self.start() as first:
            self.await_file("begun")
            done = self.run_all()
            self.write("go", "")
            out, _ = first.communicate(timeout=60)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertIn(f"tools/mutate: another run works in {self.root}/build/mutation", done.stderr)
        self.assertEqual((first.returncode, self.kept()), (0, ["suite", ""]), out)

    def test_needs_what_it_installs(self):
        self.write("tools/setup", '#!/bin/sh\necho "cannot install $*" >&2\nexit 3\n', executable=True)
        done = self.call("tools/mutate")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (3, "", "cannot install build test proof\n"))

    def test_tells_which_program_is_missing(self):
        (self.root / "bin").mkdir()
        done = self.call(sys.executable, "-B", "tools/mutate", env={"PATH": str(self.root / "bin")})
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertEqual(done.stderr, "tools/mutate: [Errno 2] No such file or directory: 'clang++-19'\n")


if __name__ == "__main__":
    unittest.main()
