"""Every call of every command to the set fails, in every way that it can: all is as the model of the two has it.

A command is run at several places an engine can stand (both windows, both TV stacks, without interfaces), and its calls
fail one after the other, once and from then on, and two at a time. This runs under the address sanitizer, a half on each
core. The long form takes all ways in which two calls can fail together, the short form a few.
"""

from concurrent.futures import ThreadPoolExecutor

from proving.job import Figure

PARTS = 2


def run(job):
    program = job.build("asan", "proof_sweep") / "tests/proof/sweep/proof_sweep"
    pairs = "all" if job.long else "some"

    def sweep(part):
        return job.figures(job.run([program, "--part", part, "--parts", PARTS, "--pairs", pairs]))

    with ThreadPoolExecutor(PARTS) as pool:
        parts = list(pool.map(sweep, range(1, PARTS + 1)))
    commands, faults, deviations = (sum(part[name] for part in parts)
                                    for name in ("commands", "faults injected", "deviations"))
    return [
        Figure("sweep: commands in their places", "more than 500", str(commands), commands > 500),
        Figure("sweep: faults injected", "more than 50000", str(faults), faults > 50000),
        Figure("sweep: deviations", "0", str(deviations), deviations == 0),
    ]
