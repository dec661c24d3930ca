# SPDX-License-Identifier: MIT
"""Runs all tests of programs once in the instrumented build, for all steps of the proof that need the results.

That build checks addresses and undefined behaviour, and records which code runs. The tests of a program run in one
process, all other tests through ctest. The messages that the plug-in logs meanwhile are stored as lines of the log
contract, in a folder for each program; the folder `ctest` has those of all tests that ctest runs. The records of
coverage are in `profiles`.
"""

import os
import re
import shutil
from dataclasses import dataclass, field
from pathlib import Path

from proving.job import MINUTE

RUN = re.compile(r"^\[==========\] (\d+) tests? from .* ran[.]", re.MULTILINE)
PROFILES = "%4m.profraw"  # at most four files a program, into which all its processes merge their counts
CONTRACT = "log_contract"  # excluded here: the log step does its work, for all programs


@dataclass
class Suites:
    """The results of the tests."""

    messages: Path
    profiles: Path
    build: Path
    counted: list = field(default_factory=list)  # number of tests that each program ran; None for a failed program
    programs: list = field(default_factory=list)
    contract: list = field(default_factory=list)  # the command that runs the test of the log contract
    others: int = 0
    others_end_well: bool = False

    def tests(self):
        return sum(count or 0 for count in self.counted) + self.others

    def failed(self):
        return self.counted.count(None) + (not self.others_end_well)


_ran = {}  # by tree


def run(job):
    """The results for the tree of a job. The first call runs the tests."""
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
    """Runs a command. The messages that the plug-in logs in it are stored in the folder of this name."""
    folder = suites.messages / name
    folder.mkdir(parents=True)
    noted = {"EMP_WINDOW_LOG_CONTRACT": str(folder), "LLVM_PROFILE_FILE": str(suites.profiles / PROFILES)}
    return job.attempt(command, env=noted, cwd=job.scratch, timeout=20 * MINUTE)


def passed(job, suites, program):
    """The number of tests that a program ran; None if it failed."""
    done = attempt(job, suites, Path(program).name, [program, "--gtest_brief=1"])
    return None if done.trouble else sum(map(int, RUN.findall(done.out)))


def printed(suites, name):
    """The lines of the log contract for the messages logged under a name."""
    return {line for file in (suites.messages / name).glob("*.tsv")
            for line in file.read_text(encoding="utf-8", errors="replace").splitlines()}
