# SPDX-License-Identifier: MIT
"""Failing disks and power cuts: everything acknowledged must be stored, and every failure must be reported.

Each access of the set to its disk fails in a separate run, once and permanently. The power is cut at random moments of
a session, and at each change of a first start. The disk is simulated in memory. The short form uses every ninth access,
starting where the seed says.
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
