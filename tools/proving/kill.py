"""Sets that are killed at random moments: what they had answered is kept, an import is all or nothing.

The short form kills 100, the long one 1000, half of them while they switch sources, half while they import.
"""

from proving.job import Figure


def run(job):
    folder = job.build("proof", "emp-window")
    kills = 1000 if job.long else 100
    found = job.figures(job.run(["python3", "-B", job.top / "tests/proof/kill/proof_kill.py", folder / "emp-window",
                                 "--kills", kills, "--seed", job.seed]))
    writes = found["acknowledged writes checked"]
    return [
        Figure("kill: sets killed", str(kills), str(found["kills"]), found["kills"] >= kills),
        Figure("kill: acknowledged writes checked", "more than 1000", str(writes), writes > 1000),
        *[Figure(f"kill: {name}", "0", str(found[name]), found[name] == 0) for name in ("lost", "corrupt")],
    ]
