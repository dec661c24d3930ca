# SPDX-License-Identifier: MIT
"""Compares random commands on several engines and windows, with random faults, with the model, and with a repetition.

Runs a million commands, half of them in each of two processes; ten million in the long form. A failure is shortened and
printed as a transcript, which is also in build/proof/simulation-N.txt.
"""

from proving.job import added, at_least, at_most, more_than

PROCESSES = 2
COMMANDS = 1_000_000
SEEDS = 10_000_000  # how far the processes' seeds lie apart: more than either uses


def run(job):
    program = job.build("release-tests", "proof_simulation") / "tests/proof/simulation/proof_simulation"
    wanted = COMMANDS * (10 if job.long else 1)

    def simulate(process):
        transcript = job.folder / f"simulation-{process}.txt"
        return job.measure([program, "--commands", wanted // PROCESSES, "--seed", job.seed + SEEDS * process,
                            "--transcript", transcript])

    parts = job.at_once(simulate, range(PROCESSES), PROCESSES)
    return [
        at_least("simulation: commands", wanted, added(parts, "commands")),
        more_than("simulation: calls that failed", 10000, added(parts, "calls that failed")),
        more_than("simulation: scripts run again, all the same", 10, added(parts, "replays")),
        at_most("simulation: deviations", 0, added(parts, "deviations")),
    ]
