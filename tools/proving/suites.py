"""All tests in the build with the address and undefined-behaviour checkers, run once for all steps that ask about them.

The tests of a program run in one process, the others through ctest. What the plug-in prints in them stands in a folder
for each program, a line of the log contract each; under `ctest` for all that ctest runs.
"""

import os
import re
import shutil
from dataclasses import dataclass, field
from pathlib import Path

from proving.job import MINUTE

RUN = re.compile(r"^\[==========\] (\d+) tests? from .* ran[.]", re.MULTILINE)
CONTRACT = "log_contract"  # the test whose work the log step does with all programs


@dataclass
class Suites:
    """What came of the tests."""

    messages: Path
    counted: list = field(default_factory=list)  # how many tests each program ran; None where one ended badly
    programs: list = field(default_factory=list)
    contract: list = field(default_factory=list)  # the command of the test of the log contract
    others: int = 0
    others_end_well: bool = False

    def tests(self):
        return sum(count or 0 for count in self.counted) + self.others

    def failed(self):
        return self.counted.count(None) + (not self.others_end_well)


_ran = {}  # by tree


def run(job):
    """The tests, as they went; the first step that asks runs them."""
    if job.top not in _ran:
        _ran[job.top] = run_all(job)
    return _ran[job.top]


def run_all(job):
    build = job.build("asan")
    suites = Suites(job.folder / "messages")
    shutil.rmtree(suites.messages, ignore_errors=True)
    suites.programs, others = job.test_programs(build)
    suites.contract = others.pop(CONTRACT, [])
    suites.others = len(others)
    suites.counted = job.at_once(lambda program: passed(job, suites, program), suites.programs, os.cpu_count())
    chosen = f"^({'|'.join(map(re.escape, others))})$"
    command = ["ctest", "--test-dir", build, "--parallel", os.cpu_count(), "--output-on-failure", "-R", chosen]
    suites.others_end_well = not attempt(job, suites, "ctest", command).trouble
    return suites


def attempt(job, suites, name, command):
    """Runs a command that notes what the plug-in prints under a name."""
    folder = suites.messages / name
    folder.mkdir(parents=True)
    return job.attempt(command, env={"EMP_WINDOW_LOG_CONTRACT": str(folder)}, cwd=job.scratch, timeout=20 * MINUTE)


def passed(job, suites, program):
    """How many tests a program ran; nothing when it ended badly."""
    done = attempt(job, suites, Path(program).name, [program, "--gtest_brief=1"])
    return None if done.trouble else sum(map(int, RUN.findall(done.out)))


def printed(suites, name):
    """The lines of the log contract that a program printed."""
    return {line for file in (suites.messages / name).glob("*.tsv")
            for line in file.read_text(encoding="utf-8", errors="replace").splitlines()}
