# SPDX-License-Identifier: MIT
"""All tests in the build that checks addresses and undefined behaviour and counts what of the code ran, run once for all
steps that ask about them.

The tests of a program run in one process, the others through ctest. What the plug-in prints in them stands in a folder
for each program, a line of the log contract each; under `ctest` for all that ctest runs. What ran stands in `profiles`.
"""

import os
import re
import shutil
from dataclasses import dataclass, field
from pathlib import Path

from proving.job import MINUTE

RUN = re.compile(r"^\[==========\] (\d+) tests? from .* ran[.]", re.MULTILINE)
PROFILES = "%4m.profraw"  # four a program at most, to which its processes add
CONTRACT = "log_contract"  # the test whose work the log step does with all programs


@dataclass
class Suites:
    """What came of the tests."""

    messages: Path
    profiles: Path
    build: Path
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
    suites = Suites(job.folder / "messages", job.folder / "profiles", job.build("instrumented"))
    for folder in (suites.messages, suites.profiles):
        shutil.rmtree(folder, ignore_errors=True)
    build = suites.build
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
    noted = {"EMP_WINDOW_LOG_CONTRACT": str(folder), "LLVM_PROFILE_FILE": str(suites.profiles / PROFILES)}
    return job.attempt(command, env=noted, cwd=job.scratch, timeout=20 * MINUTE)


def passed(job, suites, program):
    """How many tests a program ran; nothing when it ended badly."""
    done = attempt(job, suites, Path(program).name, [program, "--gtest_brief=1"])
    return None if done.trouble else sum(map(int, RUN.findall(done.out)))


def printed(suites, name):
    """The lines of the log contract that a program printed."""
    return {line for file in (suites.messages / name).glob("*.tsv")
            for line in file.read_text(encoding="utf-8", errors="replace").splitlines()}
