"""Fuzzes what takes input from outside: commands, documents, lists, transcripts, databases, arguments.

Two targets of tests/fuzz at a time start from their seed corpora, for a minute each in the short form and a million
executions in the long one, which also keeps what it finds worth trying in build/proof/fuzz/TARGET for the next time. A
target ends at its first finding; the input of it stays in build/proof/fuzz/findings.
"""

import json
import os
import re
from concurrent.futures import ThreadPoolExecutor

from proving.job import Figure

TARGETS = ["commands", "satellite", "reports", "lists", "transcripts", "databases", "arguments"]
AT_ONCE = 2
SECONDS = 60
EXECUTIONS = 1_000_000
# Where files cost no access to a disk, of which the targets that write databases would do little else.
MEMORY = "/dev/shm"

EXECUTED = re.compile(r"^stat::number_of_executed_units: (\d+)$", re.MULTILINE)
ENDED_WELL = re.compile(r"^status 0$", re.MULTILINE)


def dictionary(job, target):
    """The option that names the words of a target's inputs; none where it has none."""
    words = job.top / "tests" / "fuzz" / "dictionaries" / f"{target}.dict"
    if not words.exists():
        return []
    content = words.read_text(encoding="utf-8")
    if target == "transcripts":
        catalogue = json.loads((job.top / "docs" / "commands.json").read_text(encoding="utf-8"))
        content += "".join(f"\"{command['name']}\"\n" for command in catalogue["commands"])
    chosen = job.scratch / words.name
    chosen.write_text(content, encoding="utf-8")
    return [f"-dict={chosen}"]


def limits(job):
    """The options that say how long a target runs."""
    return [f"-runs={EXECUTIONS}"] if job.long else [f"-max_total_time={SECONDS}"]


def fuzz(job, build, target):
    """Runs a target. Returns how often it was executed, and whether it ended without a finding."""
    kept = job.top / "build" / "proof" / "fuzz"
    corpus = (kept if job.long else job.scratch) / target
    corpus.mkdir(parents=True, exist_ok=True)
    argv = [build / "tests" / "fuzz" / f"fuzz_{target}", *limits(job), *dictionary(job, target),
            f"-seed={job.seed}", "-max_len=4096", "-timeout=30", "-print_final_stats=1", "-verbosity=0",
            f"-artifact_prefix={kept / 'findings' / target}-", corpus, job.top / "tests" / "fuzz" / "corpus" / target]
    environment = {"ASAN_OPTIONS": "detect_leaks=1:strict_string_checks=1", "UBSAN_OPTIONS": "print_stacktrace=1"}
    environment["TMPDIR"] = MEMORY if os.access(MEMORY, os.W_OK) else str(job.scratch)
    # All that the fuzzer says goes to standard error.
    said = job.run(["sh", "-c", '"$0" "$@" 2>&1; echo "status $?"', *argv], env=environment,
                   timeout=None if job.long else 3 * SECONDS)
    executed = EXECUTED.search(said)
    return int(executed[1]) if executed else 0, ENDED_WELL.search(said) is not None


def run(job):
    build = job.build("fuzz", "fuzzers")
    findings = job.top / "build" / "proof" / "fuzz" / "findings"
    findings.mkdir(parents=True, exist_ok=True)
    before = set(findings.iterdir())
    with ThreadPoolExecutor(AT_ONCE) as pool:
        runs = list(pool.map(lambda target: fuzz(job, build, target), TARGETS))
    for finding in sorted(set(findings.iterdir()) - before):
        print(f"  finding: {finding}")
    least = EXECUTIONS if job.long else 1
    wanted = f"{least}" if job.long else f"{SECONDS} s"
    figures = [Figure(f"fuzz: executions of {target}", wanted, str(executed), executed >= least)
               for target, (executed, _) in zip(TARGETS, runs)]
    failed = sum(not ended_well for _, ended_well in runs)
    return [*figures, Figure("fuzz: targets with a finding", "0", str(failed), failed == 0)]
