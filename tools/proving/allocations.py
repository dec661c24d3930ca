# SPDX-License-Identifier: MIT
"""Lets each allocation fail: during every command on both TV stacks, and while engines are made and ended.

Once, and from then on; all else is answered with a kind that the command has, and the next command right. A single
allocation of the set during a call counts as an exception from that call. Those of the set's database fail in runs of
their own; afterwards the set is what it keeps. Built with the address sanitizer, which tells what is lost. Both forms let
each allocation fail.
"""

from proving.job import at_most, more_than


def run(job):
    folder = job.build("instrumented", "proof_allocations")
    found = job.measure([folder / "tests/proof/allocations/proof_allocations"])
    least = {"runs with failing allocations": 1000, "runs with failing allocations inside calls": 5000,
             "runs with failing allocations of the database": 3000}
    return [
        *[more_than(f"allocations: {name}", number, found.get(name)) for name, number in least.items()],
        at_most("allocations: deviations", 0, found.get("deviations")),
    ]
