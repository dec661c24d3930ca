# SPDX-License-Identifier: MIT
"""Changes the plug-in bit by bit and looks whether the tests notice; in the long form only.

The long form tries a sample of 1000 mutants; `tools/mutate` alone tries all. A build of its own and a minute for each
change that nobody notices are too long for the short form.
"""

from proving.job import HOUR, at_least, at_most

SAMPLE = 1000
WANTED = 95  # percent, in worker and engine; in the converter's tables all that change anything
MOST_LATE = SAMPLE // 20  # that may be known by nothing but the time that their tests take


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
