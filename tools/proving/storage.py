# SPDX-License-Identifier: MIT
"""Disks that fail and power that goes: whatever the set had acknowledged is kept, whatever it had not is told.

Every access of the set to its disk fails, once and from then on, in a run each; and the power is cut at moments of a
set's day, and at each change that its first start makes. The disk is one in memory. The short form takes each ninth
access; the seed says which is the first.
"""

from proving.job import at_most, more_than

CRASHES = 1000


def run(job):
    folder = job.build("release-tests", "proof_storage")
    every = 1 if job.long else 9
    found = job.measure([folder / "tests/proof/storage/proof_storage", "--every", every, "--crashes", CRASHES,
                         "--seed", job.seed])
    return [
        more_than("storage: I/O faults injected", 1000, found.get("I/O faults injected")),
        more_than("storage: crash points", CRASHES, found.get("crash points")),
        more_than("storage: states compared", 3000, found.get("states compared")),
        *[at_most(f"storage: {name}", 0, found.get(name))
          for name in ("faults never hit", "lost", "corrupt", "failures not reported")],
    ]
