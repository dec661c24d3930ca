# SPDX-License-Identifier: MIT
"""Tests tools/proof on a scratch tree with steps of its own, in particular with failing steps and programs."""

import os
import signal
import subprocess
import sys
import time
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools"))

from scratch import ScratchTest  # noqa: E402  (needs the path above)

GOOD = '''"""A step that is all well."""
from proving.job import at_most
def run(job):
    return [at_most("good: things", 0, 0)]
'''


def step(body):
    """A step with this body."""
    lines = "".join(f"    {line}\n" for line in body.strip("\n").split("\n"))
    return f'"""A step."""\nfrom proving.job import Figure, Failed, added, at_most, more_than\ndef run(job):\n{lines}'


class ProvingTest(ScratchTest):
    def setUp(self):
        super().setUp()
        self.copy("tools/proof", "tools/proving/__init__.py", "tools/proving/job.py", "tools/proving/program.py")
        self.write("tools/setup", "#!/bin/sh\n", executable=True)
        self.write("tools/proving/kill.py", GOOD)

    def program(self, name, text):
        return self.write(name, f"#!/bin/sh\n{text}", executable=True)

    def prove(self, *arguments, **options):
        return self.call("tools/proof", *arguments, **options)

    def rows(self, done):
        """The rows of the table: {name of the figure: rest of the line}."""
        table = done.stdout[done.stdout.index("\nfigure "):].split("\n\n")[0]
        return [line.split("  ", 1) for line in table.strip().split("\n")[1:]]

    def row(self, done, name):
        found = [rest.strip() for figure, rest in self.rows(done) if figure == name]
        self.assertEqual(len(found), 1, done.stdout)
        return found[0]

    def test_tells_what_is_reached(self):
        done = self.prove("kill")
        self.assertEqual((self.row(done, "good: things"), done.returncode, done.stderr), ("0       0", 0, ""))

    def test_any_error_of_a_step_is_a_figure_missed_and_the_others_go_on(self):
        for body, what in (('{}["gone"]', "KeyError: 'gone' (sweep.py:4)"),
                           ('(job.top / "tools").read_text()', "IsADirectoryError: "),
                           ('raise Failed("no luck")', "no luck"),
                           ('job.run(["false"])', "false ended with status 1; "),
                           ('job.run(["no such program"])', "could not be started: No such file or directory")):
            self.write("tools/proving/sweep.py", step(body))
            done = self.prove("sweep", "kill")
            self.assertEqual((done.returncode, done.stderr), (1, ""))
            self.assertIn(what, self.row(done, "sweep"))
            self.assertTrue(self.row(done, "sweep").endswith("MISSED"))
            self.assertEqual(self.row(done, "good: things").split(), ["0", "0"])

    def test_keeps_what_a_step_measured_before_it_went_wrong(self):
        self.write("tools/proving/sweep.py", step('yield at_most("sweep: seen", 0, 0)\nraise Failed("no luck")'))
        done = self.prove("sweep")
        self.assertEqual((self.row(done, "sweep: seen").split(), done.returncode), (["0", "0"], 1))

    def test_a_step_without_a_place_to_work_in_is_a_figure_missed(self):
        self.write("build/proof", "no folder")
        done = self.prove("kill")
        self.assertIn("FileExistsError", self.row(done, "kill"))
        self.assertEqual((done.returncode, done.stderr), (1, ""))

    def test_takes_the_figures_of_a_program_that_failed_and_shows_its_last_lines(self):
        program = self.program("worker", 'for n in $(seq 100); do echo "line $n"; done\necho "figure: found = 3"\n'
                                         'echo "it is broken" >&2\nexit 1\n')
        self.write("tools/proving/sweep.py",
                   step(f'yield at_most("sweep: found", 0, job.measure([{str(program)!r}]).get("found"))'))
        done = self.prove("sweep")
        self.assertEqual(self.row(done, "sweep: found").split(), ["0", "3", "MISSED"])
        self.assertIn("worker ended with status 1; what it wrote is in build/proof/sweep-1-worker.log",
                      self.row(done, "sweep"))
        for line in ("it is broken", "line 100", "line 73"):
            self.assertIn(f"\n  | {line}\n", done.stdout)
        self.assertNotIn("| line 70\n", done.stdout)
        log = (self.root / "build/proof/sweep-1-worker.log").read_text()
        self.assertIn("line 1\n", log)
        self.assertIn("it is broken\n", log)

    def test_a_program_that_fails_is_a_figure_missed_whatever_its_figures(self):
        program = self.program("worker", 'echo "figure: found = 0"\nkill -ABRT $$\n')
        self.write("tools/proving/sweep.py",
                   step(f'yield at_most("sweep: found", 0, job.measure([{str(program)!r}]).get("found"))'))
        done = self.prove("sweep")
        self.assertEqual((self.row(done, "sweep: found").split(), done.returncode), (["0", "0"], 1))
        self.assertIn("ended with signal 6", self.row(done, "sweep"))

    def test_a_figure_that_is_told_twice_or_not_at_all_is_missed(self):
        program = self.program("worker", 'echo "figure: found = 3"\necho "figure: found = 0"\n')
        self.write("tools/proving/sweep.py", step(f'''
one, two = job.measure([{str(program)!r}]), {{"lost": 0}}
yield at_most("sweep: lost", 0, one.get("lost"))
yield at_most("sweep: both", 0, added([one, two], "lost"))
yield more_than("sweep: much", 0, one.get("much"))'''))
        done = self.prove("sweep")
        self.assertIn("worker told the figure 'found' twice", self.row(done, "sweep"))
        for name in ("sweep: lost", "sweep: both", "sweep: much"):
            self.assertEqual(self.row(done, name).split()[-3:], ["not", "told", "MISSED"])

    def test_ends_a_late_program_with_all_that_it_started_and_keeps_the_others(self):
        slow = self.program("slow", f'echo begun\n(sleep 300 & echo $! >"{self.root}/child"; wait)\n')
        quick = self.program("quick", 'echo "figure: found = 0"\n')
        self.write("tools/proving/sweep.py", step(f'''
parts = job.at_once(lambda one: job.measure([one], timeout=1), [{str(slow)!r}, {str(quick)!r}], 2)
yield at_most("sweep: quick", 0, parts[1].get("found"))
yield at_most("sweep: slow", 0, parts[0].get("found"))'''))
        done = self.prove("sweep")
        self.assertEqual(self.row(done, "sweep: quick").split(), ["0", "0"])
        self.assertEqual(self.row(done, "sweep: slow").split(), ["0", "not", "told", "MISSED"])
        self.assertIn("took more than 1 s", self.row(done, "sweep"))
        self.assertIn("\n  | begun\n", done.stdout)
        [log] = (self.root / "build/proof").glob("sweep-*-slow.log")
        self.assertTrue(log.read_text().endswith("\nbegun\n"))
        self.assert_gone(int((self.root / "child").read_text()))

    def test_knows_a_late_program_though_it_ends_before_the_kill_returns(self):
        self.write("tools/proving/sweep.py", step('''
import time
from proving import job as module
plain = module.kill
def slow(*arguments):
    plain(*arguments)
    time.sleep(0.5)
module.kill = slow
job.run(["sleep", "300"], timeout=1)'''))
        self.assertIn("sleep took more than 1 s", self.row(self.prove("sweep"), "sweep"))

    def test_asks_a_program_to_end_before_it_is_killed(self):
        """Only the program itself can end processes that it started in another session."""
        child = self.root / "child"
        program = self.program("worker", f'setsid sleep 300 &\necho $! >"{child}"\n'
                                         f"trap 'kill $!; sleep 1; exit' TERM\nwait\n")
        self.write("tools/proving/sweep.py", step(f'job.run([{str(program)!r}], timeout=1)'))
        self.assertIn("worker took more than 1 s", self.row(self.prove("sweep"), "sweep"))
        self.assert_gone(int(child.read_text()))

    def test_kills_a_program_that_does_not_end_when_it_is_asked(self):
        program = self.program("worker", f'trap "" TERM\necho $$ >"{self.root}/worker.pid"\nsleep 300\n')
        self.write("tools/proving/sweep.py", step(f'''
import proving.job
proving.job.GRACE = 1
job.run([{str(program)!r}], timeout=1)'''))
        self.assertIn("worker took more than 1 s", self.row(self.prove("sweep"), "sweep"))
        self.assert_gone(int((self.root / "worker.pid").read_text()))

    def test_an_interrupted_proof_ends_its_programs_and_tells_what_it_knows(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            child = self.root / "child"
            child.unlink(missing_ok=True)
            slow = self.program("slow", f'sleep 300 &\necho $! >"{child}.new"\nmv "{child}.new" "{child}"\nwait\n')
            self.write("tools/proving/sweep.py", step(f'''
yield at_most("sweep: seen", 0, 0)
job.at_once(lambda one: job.attempt([one]), [{str(slow)!r}] * 3, 1)'''))
            with self.start("sweep", "kill") as process:
                self.await_file("child")
                process.send_signal(number)
                done = subprocess.CompletedProcess([], 0, stdout=process.communicate(timeout=60)[0])
            self.assertEqual(process.returncode, 1)
            self.assertEqual(self.row(done, "sweep: seen").split(), ["0", "0"])
            self.assertIn("interrupted in sweep", self.row(done, "all"))
            self.assertNotIn("good: things", done.stdout)
            self.assert_gone(int(child.read_text()))

    def test_goes_on_under_nohup(self):
        program = self.program("worker", 'touch begun\nwhile ! test -e go; do sleep 0.01; done\n')
        self.write("tools/proving/sweep.py", step(f'job.run([{str(program)!r}])\nyield at_most("sweep: seen", 0, 0)'))
        with self.start("sweep", preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN)) as process:
            self.await_file("begun")
            process.send_signal(signal.SIGHUP)
            self.write("go", "")
            out, _ = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 0, out)

    def test_may_be_interrupted_while_it_installs(self):
        """A terminal interrupts both programs. If only tools/proof is interrupted, the installation runs to its end."""
        for interrupt in (lambda process: os.killpg(process.pid, signal.SIGINT), subprocess.Popen.terminate):
            for name in ("begun", "go"):
                (self.root / name).unlink(missing_ok=True)
            self.write("tools/setup", f"#!/bin/sh\ncd '{self.root}'\ntouch begun\nwhile ! test -e go; do sleep 0.01; done\n",
                       executable=True)
            with self.start("kill", stderr=subprocess.PIPE, start_new_session=True) as process:
                self.await_file("begun")
                interrupt(process)
                self.write("go", "")
                done = process.communicate(timeout=60)
            self.assertEqual((process.returncode, *done), (1, "", "tools/proof: interrupted while packages were installed\n"))

    def test_is_refused_while_another_one_runs(self):
        program = self.program("worker", "touch begun\nwhile ! test -e go; do sleep 0.01; done\n")
        self.write("tools/proving/sweep.py", step(f'job.run([{str(program)!r}])\nyield at_most("sweep: seen", 0, 0)'))
        with self.start("sweep") as first:
            self.await_file("begun")
            done = self.prove("kill")
            self.write("go", "")
            out, _ = first.communicate(timeout=60)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertEqual(done.stderr, f"tools/proof: another run works in {self.root}/build/proof\n")
        self.assertEqual(first.returncode, 0, out)

    def test_ends_when_nobody_reads_what_it_prints(self):
        self.write("tools/proving/sweep.py", step('(job.top / "go").stat()\nreturn []'))
        self.write("tools/setup", f"#!/bin/sh\nwhile ! test -e '{self.root}/go'; do sleep 0.01; done\n", executable=True)
        for arguments in (["sweep", "kill"], ["--list"]):
            with self.start(*arguments, stderr=subprocess.PIPE) as process:
                process.stdout.close()
                self.write("go", "")
                self.assertEqual(process.stderr.read(), "")
            self.assertEqual(process.returncode, 1)

    def test_lists_the_steps(self):
        self.write("tools/proving/sweep.py", "def")
        listed = self.prove("--list")
        for line in ("sweep        SyntaxError: ", "kill         A step that is all well.\n",
                     "log          ModuleNotFoundError: "):
            self.assertIn(line, listed.stdout)
        self.assertEqual((listed.returncode, listed.stderr), (0, ""))

    def test_lists_those_that_are_named(self):
        self.write("tools/proving/mutation.py", GOOD)
        done = self.prove("--list", "mutation", "kill")
        self.assertEqual(done.stdout, "mutation  A step that is all well.\nkill      A step that is all well.\n")

    def test_a_step_that_cannot_be_loaded_is_a_figure_missed(self):
        for text in ("def", '"""A step."""\nimport nothing_of_that_name\n', "run = None\n"):
            self.write("tools/proving/sweep.py", text)
            done = self.prove("sweep", "kill")
            self.assertTrue(self.row(done, "sweep").endswith("MISSED"))
            self.assertEqual((self.row(done, "good: things").split(), done.returncode, done.stderr), (["0", "0"], 1, ""))

    def test_a_figure_that_is_no_number_is_missed(self):
        for told in ("1.2.3", "-", ".", "1-2", "--1"):
            program = self.program("worker", f'echo "figure: found = {told}"\necho "figure: lost = 0"\n')
            self.write("tools/proving/sweep.py", step(f'''
found = job.measure([{str(program)!r}])
yield at_most("sweep: found", 9, found.get("found"))
yield at_most("sweep: lost", 0, found.get("lost"))'''))
            done = self.prove("sweep")
            self.assertEqual(self.row(done, "sweep: found").split()[-3:], ["not", "told", "MISSED"])
            self.assertEqual(self.row(done, "sweep: lost").split(), ["0", "0"])
            self.assertIn(f"worker told the figure 'found' as '{told}', which is no number", self.row(done, "sweep"))

    def start(self, *arguments, **options):
        return subprocess.Popen([self.root / "tools/proof", *arguments], cwd=self.root,
                                **{"stdout": subprocess.PIPE, "text": True, **options})

    def await_file(self, name):
        for _ in range(1000):
            if (self.root / name).exists():
                return
            time.sleep(0.01)
        self.fail(f"{name} does not appear")

    def test_programs_get_their_options_from_the_step_alone(self):
        program = self.program("worker", 'test "$ASAN_OPTIONS" = "detect_leaks=1:strict_string_checks=1" && '
                                         'test -z "$GTEST_FILTER$CTEST_PARALLEL_LEVEL$EMP_WINDOW_LOG_CONTRACT" && '
                                         'test "$MINE" = 1 && test "$THEIRS" = 2\n')
        self.write("tools/proving/sweep.py", step(f'job.run([{str(program)!r}], env={{"MINE": "1"}})\nreturn []'))
        done = self.prove("sweep", env={"ASAN_OPTIONS": "detect_leaks=0", "GTEST_FILTER": "none", "THEIRS": "2",
                                        "CTEST_PARALLEL_LEVEL": "9", "EMP_WINDOW_LOG_CONTRACT": "/"})
        self.assertEqual(done.returncode, 0, done.stdout)

    def test_refuses_what_it_cannot_do(self):
        for arguments, why in ((["--seed", "0"], "a number from 1 to 2147483647 is wanted, not '0'"),
                               (["--seed", "-7"], "a number from 1"), (["--seed", "1e3"], "not '1e3'"),
                               (["--seed", "2147483648"], "not '2147483648'"),
                               (["kill", "nothing"], "there is no step nothing; there are log, "),
                               (["kill", "sweep", "kill"], "the step kill is named twice"),
                               (["mutation"], "the step mutation is in the long form only; --long asks for that")):
            done = self.prove(*arguments)
            self.assertEqual((done.returncode, done.stdout), (2, ""), arguments)
            self.assertIn(why, done.stderr)

    def test_the_short_form_says_what_it_leaves_out_and_how_long_it_took(self):
        for name in ("log", "sanitizers", "threads", "coverage", "sweep", "simulation", "storage", "load", "fuzz", "allocations"):
            self.write(f"tools/proving/{name}.py", GOOD)
        done = self.prove()
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertIn("\nIn the long form only: mutation\n", done.stdout)
        self.assertTrue(self.row(done, "all: seconds").startswith("1200    0, 0 of them"), done.stdout)


if __name__ == "__main__":
    unittest.main()
