"""Disks that fail and power that goes: whatever the set had acknowledged is kept, whatever it had not is told.

Every access of the set to its disk fails, once and from then on, in a run each; and the power is cut at moments of a
set's day. The disk is one in memory. The short form takes each ninth access.
"""

from proving.job import Figure

CRASHES = 1000


def run(job):
    folder = job.build("proof", "proof_storage")
    every = 1 if job.long else 9
    figures = job.figures(job.run([folder / "tests/proof/storage/proof_storage", "--every", every,
                                   "--crashes", CRASHES, "--seed", job.seed]))
    faults, crashes = figures["I/O faults injected"], figures["crash points"]
    return [
        Figure("storage: I/O faults injected", "more than 1000", str(faults), faults > 1000),
        Figure("storage: crash points", str(CRASHES), str(crashes), crashes >= CRASHES),
        Figure("storage: acknowledged writes checked", "more than 1000", str(figures["acknowledged writes checked"]),
               figures["acknowledged writes checked"] > 1000),
        *[Figure(f"storage: {name}", "0", str(figures[name]), figures[name] == 0)
          for name in ("lost", "corrupt", "failures not reported")],
    ]
