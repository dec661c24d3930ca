# SPDX-License-Identifier: MIT
"""Builds the mutated plug-in with its tests, finds which tests reach which mutant, and tries mutants with these
tests."""

import os
import re
import shutil
import subprocess
import tempfile
import threading
import time
from collections import Counter, defaultdict
from pathlib import Path

from mutation.runs import Runs

SUITE = re.compile(r"^(?:window_suite\((\w+) |suite\((\w+) [^)]*\b(?:window|test_comparison)\b[^)]*\))", re.MULTILINE)
LINKED = """
find_package(GTest REQUIRED)
target_sources(window PRIVATE Src/mutants.cpp)
target_compile_options(window PRIVATE -w)
target_link_libraries(window PUBLIC GTest::gtest)
"""
NO_MUTANT = 0
FILTER_FROM = 0.7  # share of a program's tests; if more than these reach a mutant, all tests run
SLACK = 3  # seconds that a run may take in addition to five times its duration without a mutant


class Late(Exception):
    """These tests of a program took too long: the mutant may never end, or the machine is busy."""

    def __init__(self, program, tests):
        super().__init__(program, tests)
        self.program = program
        self.tests = tests


class Failed(Exception):
    """Tests fail without a mutant, or the tree does not build."""


def lay_out(top, tree, sources):
    """Creates a copy of the tree at `top` with the mutated sources of the plug-in."""
    tree.mkdir(parents=True, exist_ok=True)
    for entry in top.iterdir():
        if entry.name not in ("Window", "build", ".git") and not (tree / entry.name).is_symlink():
            (tree / entry.name).symlink_to(entry)
    folder = tree / "Window"
    folder.mkdir(exist_ok=True)
    if not (folder / "include").is_symlink():
        (folder / "include").symlink_to(top / "Window" / "include")
    (folder / "Src").mkdir(exist_ok=True)
    for name in ("mutants.h", "mutants.cpp"):
        replace(folder / "Src" / name, (top / "tools" / "mutation" / name).read_text(encoding="utf-8"))
    main = "Window/Src/main.cpp"
    replace(tree / main, (top / main).read_text(encoding="utf-8"))
    lists = "Window/CMakeLists.txt"
    replace(tree / lists, (top / lists).read_text(encoding="utf-8") + LINKED)
    sources.write(tree)


def replace(path, text):
    """Writes a file unless it already has this content."""
    if not path.exists() or path.read_text(encoding="utf-8") != text:
        path.write_text(text, encoding="utf-8")


def programs_of(top):
    """The test programs that the plug-in is linked to."""
    lists = (top / "tests" / "CMakeLists.txt").read_text(encoding="utf-8")
    names = {name for match in SUITE.finditer(lists) for name in match.groups() if name}
    return sorted(names - {"${name}"})


class Program:
    """A test program: its tests, which mutants each reaches, and how long it takes."""

    def __init__(self, name, command, folder):
        self.name = name
        self.command = command
        self.folder = folder
        self.reached = {}  # by test
        self.seconds = {}  # duration of each test

    def runs(self, tests, scratch):
        """The commands that run these tests."""
        if len(tests) > FILTER_FROM * len(self.reached):
            return [[*self.command, "--gtest_fail_fast", "--gtest_brief=1"]]
        flags = scratch / "flags"
        flags.write_text("--gtest_filter=" + ":".join(tests), encoding="utf-8")
        return [[*self.command, "--gtest_fail_fast", "--gtest_brief=1", f"--gtest_flagfile={flags}"]]

    def cost(self, tests):
        """The duration of these tests in seconds."""
        return sum(self.seconds[test] for test in tests)

    def learn(self, scratch):
        """Runs all tests without a mutant, and records which mutants they reach."""
        record = scratch / "reached"
        done = subprocess.run([*self.command, "--gtest_brief=1"], cwd=self.folder, capture_output=True, check=False,
                              env={**os.environ, "MUTANTS_REACHED": str(record)})
        if done.returncode != 0:
            raise Failed(f"{self.name} fails without a mutant:\n{told(done)}")
        self.reached, self.seconds, always = read_record(record)
        for mutants in self.reached.values():
            mutants |= always


class Checks(Program):
    """Checks by other programs, one command each, treated as tests."""

    def __init__(self, name, commands, folder):
        super().__init__(name, [], folder)
        self.commands = commands  # by test

    def runs(self, tests, scratch):
        return [self.commands[test] for test in tests]

    def learn(self, scratch):
        record = scratch / "reached"
        for test, command in self.commands.items():
            record.unlink(missing_ok=True)
            start = time.monotonic()
            done = subprocess.run(command, cwd=self.folder, capture_output=True, check=False,
                                  env={**os.environ, "MUTANTS_REACHED": str(record)})
            if done.returncode != 0:
                raise Failed(f"{test} fails without a mutant:\n{told(done)}")
            self.seconds[test] = time.monotonic() - start
            self.reached[test] = read_record(record)[-1]


def told(done):
    """The end of a command's output, for messages."""
    return (done.stdout + done.stderr).decode(errors="replace")[-2000:]


def read_record(path):
    """The mutants reached by each test, the seconds of each test, and the mutants reached outside of tests."""
    tests, seconds, always = {}, {}, set()
    if not path.exists():  # nothing was reached
        return tests, seconds, always
    for line in path.read_text(encoding="utf-8").splitlines():
        name, milliseconds, *numbers = line.split(" ")
        if name:
            tests[name] = set(map(int, numbers))
            seconds[name] = int(milliseconds) / 1000
        else:
            always |= set(map(int, numbers))
    return tests, seconds, always


class Trial:
    """The built tree, to try mutants on."""

    def __init__(self, top, folder, sources):
        self.top = top
        self.tree = folder / "tree"
        self.scratch = folder / "scratch"
        self.build_folder = self.tree / "build" / "mutation"
        self.sources = sources
        self.programs = []
        self.kills = Counter()  # by file of the mutant and program; programs that kill often run first
        self.contract = set()
        self.lock = threading.Lock()
        self.runs = Runs()

    def build(self):
        lay_out(self.top, self.tree, self.sources)
        shutil.rmtree(self.scratch, ignore_errors=True)
        self.scratch.mkdir()
        names = programs_of(self.top)
        self.run_build(["cmake", "-G", "Ninja", "-S", self.tree, "-B", self.build_folder, "-DCMAKE_BUILD_TYPE=Debug",
                        f"-DEMP_WINDOW_SOURCES={self.top / 'Window' / 'Src'}"])
        self.run_build(["ninja", "-C", self.build_folder, *names, "emp-window", "make_catalogue"])
        tests = self.build_folder / "tests"
        self.programs = [Program(name, [tests / name], tests) for name in names]
        transcripts = {file.name: [self.build_folder / "emp-window", "check", file]
                       for file in sorted((self.top / "tests" / "transcripts").glob("*.txt"))}
        catalogue = {"catalogue": [self.build_folder / "tools/catalogue/make_catalogue", "--check", self.top / "docs"]}
        self.programs += [Checks("transcripts", transcripts, tests), Checks("catalogue", catalogue, tests)]
        contract = self.top / "tests" / "window" / "log_contract.tsv"
        self.contract = set(contract.read_text(encoding="utf-8").splitlines())

    @staticmethod
    def run_build(command):
        done = subprocess.run(command, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise Failed(f"{command[0]}:\n{(done.stdout + done.stderr)[-3000:]}")

    def learn(self):
        """Runs all tests without a mutant."""
        for program in self.programs:
            with tempfile.TemporaryDirectory(dir=self.scratch) as scratch:
                program.learn(Path(scratch))

    def reaching(self):
        """The tests that reach each mutant, by program."""
        found = defaultdict(lambda: defaultdict(list))
        for program in self.programs:
            for test, numbers in program.reached.items():
                for number in numbers:
                    found[number][program].append(test)
        return found

    def attempt(self, mutant, reaching):
        """Runs the tests that reach a mutant until one fails. Returns the program that failed, or None. Raises Late
        when one takes too long."""
        def order(program):
            return -self.kills[mutant.file, program.name], program.cost(reaching[program])

        for program in sorted(reaching, key=order):
            if self.fails(program, reaching[program], mutant.number):
                with self.lock:
                    self.kills[mutant.file, program.name] += 1
                return program.name
        return None

    def assure(self, program, tests):
        """Raises Failed when tests fail without a mutant, for instance because the disk is full. Raises Late when they
        take too long."""
        if self.fails(program, tests, NO_MUTANT):
            raise Failed(f"{program.name} fails without a mutant, too, that passed before")

    def assure_all(self, name):
        """Raises the errors of `assure` unless all tests of this program pass without a mutant."""
        for program in self.programs:
            if program.name == name:
                self.assure(program, list(program.reached))

    def stop(self):
        """Ends all running programs, and starts no more."""
        self.runs.stop()

    def fails(self, program, tests, number):
        with tempfile.TemporaryDirectory(dir=self.scratch) as name:
            scratch = Path(name)
            messages = scratch / "messages"
            messages.mkdir()
            env = {**os.environ, "MUTANT": str(number), "EMP_WINDOW_LOG_CONTRACT": str(messages),
                   "TMPDIR": str(scratch)}
            patience = 5 * program.cost(tests) + SLACK
            try:
                return (any(self.runs.fails(patience, command, program.folder, env)
                            for command in program.runs(tests, scratch)) or self.breaks_contract(messages))
            except subprocess.TimeoutExpired as late:
                raise Late(program, tests) from late

    def breaks_contract(self, folder):
        """True when a message was logged that is not in the log contract."""
        return any(line not in self.contract for file in folder.iterdir()
                   for line in file.read_text(encoding="utf-8", errors="replace").splitlines())
