# SPDX-License-Identifier: MIT
"""The log is a contract: compares all messages that the plug-in logs in any test with the contract.

All tests of programs run under the sanitizers, including the transcripts and the small forms of the other steps. The plug-in's own
tests alone must log the whole contract.
"""

from pathlib import Path

from proving import suites
from proving.job import at_most, more_than


def run(job):
    ran = suites.run(job)
    lines = (job.top / "tests" / "window" / "log_contract.tsv").read_text(encoding="utf-8").split("\n")[:-1]
    contract = set(lines)
    own = set().union(*(suites.printed(ran, Path(word).name) for word in ran.contract if word in ran.programs))
    heard = {name: suites.printed(ran, name) for name in [*(Path(program).name for program in ran.programs), "ctest"]}
    missing = sorted(contract - own)
    foreign = sorted(f"{line} (in {name})" for name, printed in heard.items() for line in printed - contract)
    for what, found in (("never printed", missing), ("not in the contract", foreign)):
        print("".join(f"  {what}: {line}\n" for line in found), end="")
    yield more_than("log: messages in the contract", 600, len(contract))
    yield at_most("log: out of order, or there twice", 0, sum(a >= b for a, b in zip(lines, lines[1:])))
    yield more_than("log: programs heard", 20, sum(bool(printed) for printed in heard.values()))
    yield at_most("log: never printed", 0, len(missing))
    yield at_most("log: not in the contract", 0, len(foreign))
