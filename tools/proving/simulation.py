"""Random commands on several engines and windows with random faults do what the model does, and the same again.

A million commands, half of them in each of two processes; ten million in the long form. A failure is made short and
printed as a transcript, which also stands in build/proof/simulation-N.txt.
"""

from concurrent.futures import ThreadPoolExecutor

from proving.job import Figure

PROCESSES = 2
COMMANDS = 1_000_000
SEEDS = 10_000_000  # how far the processes' seeds lie apart: more than either uses


def run(job):
    program = job.build("proof", "proof_simulation") / "tests/proof/simulation/proof_simulation"
    wanted = COMMANDS * (10 if job.long else 1)

    def simulate(process):
        transcript = job.log.parent / f"simulation-{process}.txt"
        return job.figures(job.run([program, "--commands", wanted // PROCESSES, "--seed", job.seed + SEEDS * process,
                                    "--transcript", transcript]))

    with ThreadPoolExecutor(PROCESSES) as pool:
        parts = list(pool.map(simulate, range(PROCESSES)))
    total = {name: sum(part[name] for part in parts) for name in parts[0]}
    return [
        Figure("simulation: commands", f"{wanted}", str(total["commands"]), total["commands"] >= wanted),
        Figure("simulation: calls that failed", "more than 10000", str(total["calls that failed"]),
               total["calls that failed"] > 10000),
        Figure("simulation: scripts run again, all the same", "more than 10", str(total["replays"]), total["replays"] > 10),
        Figure("simulation: deviations", "0", str(total["deviations"]), total["deviations"] == 0),
    ]
