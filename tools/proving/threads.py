# SPDX-License-Identifier: MIT
"""Runs clients on separate threads that share one device, and a server used from other threads, under the thread
sanitizer."""

from proving.job import at_most, more_than
from proving.suites import RUN

REPORT = "WARNING: ThreadSanitizer"
SUITES = {"virtualtv_device_tests": 20, "virtualtv_net_tests": 60}  # the fewest tests that each must run


def run(job):
    for suite, fewest in SUITES.items():
        program = job.build("tsan", suite) / "tests" / suite
        done = job.attempt([program, "--gtest_brief=1"])
        yield more_than(f"threads: tests of {suite}", fewest, sum(map(int, RUN.findall(done.out))))
        yield at_most(f"threads: reports of {suite}", 0, done.errors.count(REPORT))
