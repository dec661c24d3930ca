# SPDX-License-Identifier: MIT
"""Makes each allocation fail: during every command on both TV stacks, and while engines are opened and closed.

Each fails once, and permanently from there on. The reply must be of a kind that the command has, and the next command
must be answered correctly. A single failed allocation of the set during a call counts as an exception from that call.
Allocations of the set's database fail in separate runs; afterwards the set must equal its stored state. The build uses
the address sanitizer, which reports leaks. Both forms make each allocation fail.
"""

from proving.job import at_most, more_than


def run(job):
    folder = job.build("instrumented", "proof_allocations")
    found = job.measure([folder / "tests/proof/allocations/proof_allocations"])
    least = {"runs with failing allocations": 1000, "runs with failing allocations inside calls": 5000,
             "runs with failing allocations of the database": 3000}
    return [
        *[more_than(f"allocations: {name}", number, found.get(name)) for name, number in least.items()],
        at_most("allocations: deviations", 0, found.get("deviations")),
    ]
