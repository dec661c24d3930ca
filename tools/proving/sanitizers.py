# SPDX-License-Identifier: MIT
"""All tests of programs under address, undefined-behaviour and leak checkers, the transcripts under memcheck, and a soak.

The soak runs commands on one engine, with a set on a state directory that sometimes fails, and checks that memory in
use, file descriptors and the set's files do not grow. The long form runs ten million commands.
"""

import os

from proving import suites
from proving.job import Figure, at_least, at_most, more_than

COMMANDS = {False: 200_000, True: 10_000_000}
AT_ONCE = 2
MEMORY = "/dev/shm"
SLACK = 256  # bytes of tolerance for fragmentation; less than one leaked block per day of the soak
LARGEST_LOG = 5_000_000  # bytes; SQLite empties it at a thousand pages


def memchecks(job):
    """The files that run under valgrind: the transcripts, which use every command; in the long form also the cases of
    all commands."""
    build = job.build("release-tests", "emp-window", *(["window_cases"] if job.long else []))
    runs = [[build / "emp-window", "check", *sorted((job.top / "tests" / "transcripts").glob("*.txt"))]]
    if job.long:
        runs.append([build / "tests" / "window_cases", "--gtest_brief=1"])
    return runs


def is_clean(job, command):
    """True when a program succeeds under memcheck without an error."""
    return not job.attempt(["valgrind", "--quiet", "--error-exitcode=9", "--leak-check=full",
                            "--errors-for-leak-kinds=definite,indirect", *command]).trouble


def soak(job, program):
    """Runs the soak on a state directory in memory, since its commands write, and would mostly wait for a disk. Returns
    its figures."""
    memory = {"TMPDIR": MEMORY} if os.access(MEMORY, os.W_OK) else {}
    return job.measure([program, "--commands", COMMANDS[job.long], "--seed", job.seed], env=memory)


def run(job):
    ran = suites.run(job)
    yield more_than("sanitizers: tests", 2500, ran.tests())
    programs = len(ran.programs) + 1
    yield Figure("sanitizers: programs with a finding", "0", f"{ran.failed()} of {programs}", ran.failed() == 0)

    checked = memchecks(job)
    program = job.build("release-tests", "proof_soak") / "tests/proof/soak/proof_soak"
    tasks = [lambda: soak(job, program), *(lambda command=command: is_clean(job, command) for command in checked)]
    found, *clean = job.at_once(lambda task: task(), tasks, AT_ONCE)
    yield Figure("memcheck: programs with a finding", "0", f"{clean.count(False)} of {len(clean)}", all(clean))
    yield at_least("soak: commands", COMMANDS[job.long], found.get("commands"))
    for name, most in (("bytes more", SLACK), ("file descriptors more", 0), ("bytes more in the set's file", 0),
                       ("bytes of its log at most", LARGEST_LOG)):
        yield at_most(f"soak: {name}", most, found.get(name))
