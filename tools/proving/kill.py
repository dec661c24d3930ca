# SPDX-License-Identifier: MIT
"""Kills sets at random moments: everything acknowledged must be stored, and an import must be complete or absent.

The short form kills 100 sets, the long one 1000. Half of them are shells that switch sources. The others are shells
that import, and runs of the program's own import and scan, with all kinds of lists and recordings. After each kill,
everything that the set has stored is compared with what it had acknowledged.
"""

from proving.job import at_least, at_most

KINDS = 13  # in tests/proof/kill/lists.py


def run(job):
    folder = job.build("release-tests", "emp-window")
    kills = 1000 if job.long else 100
    found = job.measure(["python3", "-B", job.top / "tests/proof/kill/proof_kill.py", folder / "emp-window",
                         "--kills", kills, "--seed", job.seed])
    return [
        at_least("kill: sets killed", kills, found.get("kills")),
        at_least("kill: shells that import killed", kills // 4, found.get("kills of shells that import")),
        at_least("kill: imports killed", kills // 4, found.get("kills of imports")),
        at_least("kill: kinds of lists given to shells", KINDS, found.get("kinds of lists given to shells")),
        at_least("kill: kinds of lists whose import was killed", KINDS, found.get("kinds of lists whose import was killed")),
        at_least("kill: killed after an answer", kills // 2, found.get("kills after an answer")),
        at_least("kill: compared with what was acknowledged", kills, found.get("states compared")),
        *[at_most(f"kill: {name}", 0, found.get(name)) for name in ("lost", "corrupt")],
    ]
