# SPDX-License-Identifier: MIT
"""Makes small changes to the plug-in, one at a time, and checks whether the tests notice; only in the long form.

The long form tries a sample of 1000 mutants; `tools/mutate` alone tries all. A separate build, and a minute for each
unnoticed change, would take too long for the short form.
"""

from proving.job import HOUR, at_least, at_most

SAMPLE = 1000
WANTED = 95  # percent, in worker and engine; in the converter's tables, all changes with an effect
MOST_LATE = SAMPLE // 20  # mutants that may be noticed only because their tests take too long


def run(job):
    found = job.measure([job.top / "tools" / "mutate", "--sample", SAMPLE, "--seed", job.seed], timeout=48 * HOUR)
    return [
        at_least("mutation: mutants tried", SAMPLE, found.get("mutants tried")),
        at_least("mutation: killed in worker and engine", WANTED, found.get("percent killed in worker and engine"), " %"),
        at_least("mutation: killed in the converter's tables", 100, found.get("percent killed in the converter's tables"),
                 " %"),
        at_most("mutation: of these, take too long", MOST_LATE, found.get("of those killed, take too long")),
        at_most("mutation: survivors without a reason", 0, found.get("survivors without a reason")),
    ]
