"""Lets each allocation fail: during every command on both TV stacks, and while engines are made and ended.

Once, and from then on; all else is answered with a kind that the command has, and the next command right. Allocations of
the set during a call count as an exception from that call. Built with the address sanitizer, which tells what is lost.
Both forms let each allocation fail: it takes half a minute.
"""

from proving.job import Figure


def run(job):
    folder = job.build("asan", "proof_allocations")
    figures = job.figures(job.run([folder / "tests/proof/allocations/proof_allocations"],
                                  env={"ASAN_OPTIONS": "detect_leaks=1:strict_string_checks=1"}))
    outside, inside = figures["allocations failed"], figures["allocations failed inside calls"]
    deviations = figures["deviations"]
    return [
        Figure("allocations: failed", "more than 1000", str(outside), outside > 1000),
        Figure("allocations: failed inside calls", "more than 1000", str(inside), inside > 1000),
        Figure("allocations: deviations", "0", str(deviations), deviations == 0),
    ]
