"""All tests under address, undefined-behaviour and leak checkers, the transcripts under memcheck, and a soak.

The soak runs commands, some of them on a set that fails, and looks whether memory in use or file descriptors grow: ten
million in the long form.
"""

import os
import re
from concurrent.futures import ThreadPoolExecutor

from proving.job import Failed, Figure

RUN = re.compile(r"^\[==========\] (\d+) tests? from .* ran[.]", re.MULTILINE)
ENVIRONMENT = {"ASAN_OPTIONS": "detect_leaks=1:strict_string_checks=1", "UBSAN_OPTIONS": "print_stacktrace=1"}
COMMANDS = {False: 200_000, True: 10_000_000}


def passes(job, command):
    """How many tests a command ran; nothing when it ended badly, which is told."""
    try:
        said = job.run(command, env=ENVIRONMENT, cwd=job.scratch, timeout=1200)
    except Failed as failure:
        print(f"  {failure}")
        return None
    return sum(map(int, RUN.findall(said)))


def sanitized(job):
    """The whole suite under the sanitizers, leaks included: the tests of a program in one process, and all others."""
    build = job.build("asan")
    programs, others = job.test_programs(build)
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        counts = list(pool.map(lambda program: passes(job, [program, "--gtest_brief=1"]), programs))
    ended_well = passes(job, ["ctest", "--test-dir", build, "--parallel", os.cpu_count(), "--output-on-failure", "-R",
                              f"^({'|'.join(map(re.escape, others))})$"]) is not None
    failed = counts.count(None) + (not ended_well)
    tests = sum(count or 0 for count in counts) + len(others)
    return [Figure("sanitizers: tests", "more than 2500", str(tests), tests > 2500),
            Figure("sanitizers: programs with a finding", "0", f"{failed} of {len(programs) + 1}", failed == 0)]


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
    build = job.build("proof", "emp-window", *(["window_cases"] if job.long else []))
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
