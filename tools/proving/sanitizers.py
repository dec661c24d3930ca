"""All tests under address, undefined-behaviour and leak checkers, the transcripts under memcheck, and a soak.

The soak runs commands, some of them on a set that fails, and looks whether memory in use or file descriptors grow: ten
million in the long form.
"""

import os
import re

from proving.job import Failed, Figure

TALLY = re.compile(r"^(?P<share>\d+)% tests passed, (?P<failed>\d+) tests failed out of (?P<total>\d+)$", re.MULTILINE)
COMMANDS = {False: 200_000, True: 10_000_000}


def sanitized(job):
    """The whole suite under the sanitizers, leaks included."""
    job.build("asan")
    tally = TALLY.search(job.run(["ctest", "--preset", "asan", "--parallel", os.cpu_count()]))
    return [Figure("sanitizers: tests with a finding", "0", f"{tally['failed']} of {tally['total']}",
                   tally["failed"] == "0" and int(tally["total"]) > 0)]


def is_clean(job, command):
    """Whether memcheck finds nothing in the run of a program that ends well."""
    try:
        job.run(["valgrind", "--quiet", "--error-exitcode=9", "--leak-check=full",
                 "--errors-for-leak-kinds=definite,indirect", *command])
    except Failed as failure:
        print(f"  {failure}")
        return False
    return True


def memchecked(job):
    """The transcripts, which use every command, under valgrind; in the long form the cases of all commands, too."""
    build = job.build("proof")
    runs = [[build / "emp-window", "check", *sorted((job.top / "tests" / "transcripts").glob("*.txt"))]]
    if job.long:
        runs.append([build / "tests" / "window_cases", "--gtest_brief=1"])
    failed = sum(not is_clean(job, command) for command in runs)
    return [Figure("memcheck: programs with a finding", "0", f"{failed} of {len(runs)}", failed == 0)]


def soaked(job):
    """The soak."""
    build = job.build("proof", "proof_soak")
    figures = job.figures(job.run([build / "tests/proof/soak/proof_soak", "--commands", COMMANDS[job.long]]))
    return [Figure("soak: commands", str(COMMANDS[job.long]), str(figures["commands"]),
                   figures["commands"] >= COMMANDS[job.long]),
            *[Figure(f"soak: {name}", "0", str(figures[name]), figures[name] <= 0)
              for name in ("bytes more", "file descriptors more")]]


def run(job):
    return sanitized(job) + memchecked(job) + soaked(job)
