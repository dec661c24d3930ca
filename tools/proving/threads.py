"""Clients on threads of their own share one device under the thread sanitizer, with restarts and resets between."""

from proving.job import at_most, more_than
from proving.suites import RUN

REPORT = "WARNING: ThreadSanitizer"


def run(job):
    program = job.build("tsan", "virtualtv_device_tests") / "tests" / "virtualtv_device_tests"
    done = job.attempt([program, "--gtest_brief=1"])
    yield more_than("threads: tests", 20, sum(map(int, RUN.findall(done.out))))
    yield at_most("threads: reports", 0, done.errors.count(REPORT))
