# SPDX-License-Identifier: MIT
"""Makes every call of every command to the set fail in every possible way, and compares the effects with the model.

A command runs in several situations of an engine (both windows, both TV stacks, without interfaces). Its calls fail one
after the other, once and permanently, and two at a time. This runs under the address sanitizer, half of it on each
core. The long form tries all ways in which two calls can fail together, the short form a few.
"""

from proving.job import added, at_most, more_than

PARTS = 2


def run(job):
    program = job.build("instrumented", "proof_sweep") / "tests/proof/sweep/proof_sweep"
    pairs = "all" if job.long else "some"

    def sweep(part):
        return job.measure([program, "--part", part, "--parts", PARTS, "--pairs", pairs])

    parts = job.at_once(sweep, range(1, PARTS + 1), PARTS)
    return [
        more_than("sweep: commands in their places", 500, added(parts, "commands")),
        more_than("sweep: runs under faults", 50000, added(parts, "runs under faults")),
        at_most("sweep: deviations", 0, added(parts, "deviations")),
    ]
