"""Lets each allocation fail: during every command on both TV stacks, and while engines are made and ended.

Once, and from then on; all else is answered with a kind that the command has, and the next command right. Allocations of
the set during a call count as an exception from that call. Built with the address sanitizer, which tells what is lost.
Both forms let each allocation fail: it takes half a minute.
"""

from proving.job import at_most, more_than


def run(job):
    folder = job.build("asan", "proof_allocations")
    found = job.measure([folder / "tests/proof/allocations/proof_allocations"])
    return [
        more_than("allocations: failed", 1000, found.get("allocations failed")),
        more_than("allocations: failed inside calls", 1000, found.get("allocations failed inside calls")),
        at_most("allocations: deviations", 0, found.get("deviations")),
    ]
