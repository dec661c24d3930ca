"""All tests under address, undefined-behaviour and leak checkers, the transcripts under memcheck, and a soak.

The soak runs commands, some of them on a set that fails, and looks whether memory in use or file descriptors grow: ten
million in the long form.
"""

from proving import suites
from proving.job import Figure, at_least, at_most, more_than

COMMANDS = {False: 200_000, True: 10_000_000}
AT_ONCE = 2


def memchecks(job):
    """What runs under valgrind: the transcripts, which use every command; in the long form the cases of all commands."""
    build = job.build("proof", "emp-window", *(["window_cases"] if job.long else []))
    runs = [[build / "emp-window", "check", *sorted((job.top / "tests" / "transcripts").glob("*.txt"))]]
    if job.long:
        runs.append([build / "tests" / "window_cases", "--gtest_brief=1"])
    return runs


def is_clean(job, command):
    """Whether memcheck finds nothing in the run of a program that ends well."""
    return not job.attempt(["valgrind", "--quiet", "--error-exitcode=9", "--leak-check=full",
                            "--errors-for-leak-kinds=definite,indirect", *command]).trouble


def run(job):
    ran = suites.run(job)
    yield more_than("sanitizers: tests", 2500, ran.tests())
    programs = len(ran.programs) + 1
    yield Figure("sanitizers: programs with a finding", "0", f"{ran.failed()} of {programs}", ran.failed() == 0)

    checked = memchecks(job)
    soak = [job.build("proof", "proof_soak") / "tests/proof/soak/proof_soak", "--commands", COMMANDS[job.long]]
    tasks = [lambda: job.measure(soak), *(lambda command=command: is_clean(job, command) for command in checked)]
    found, *clean = job.at_once(lambda task: task(), tasks, AT_ONCE)
    yield Figure("memcheck: programs with a finding", "0", f"{clean.count(False)} of {len(clean)}", all(clean))
    yield at_least("soak: commands", COMMANDS[job.long], found.get("commands"))
    yield at_most("soak: bytes more", 0, found.get("bytes more"))
    yield at_most("soak: file descriptors more", 0, found.get("file descriptors more"))
