# SPDX-License-Identifier: MIT
"""Fuzzes the code that reads input from outside: commands, documents, snapshots, databases and so on.

Two targets of tests/fuzz at a time start from their seed corpora, for a minute each in the short form and for a million
executions in the long one. The long form also stores interesting inputs in build/proof/fuzz/TARGET for the next run. A
target ends at its first finding, whose input stays in build/proof/fuzz/findings.
"""

import json
import os
import re
from dataclasses import dataclass

from proving.job import HOUR, MINUTE, SANITIZERS, Figure, at_most

TARGETS = ["transcripts", "databases", "arguments", "commands", "reports", "satellite", "lists", "bouquets", "broadcasts",
           "snapshots", "requests"]
AT_ONCE = 2
SECONDS = 60
EXECUTIONS = 1_000_000
BEYOND = 5  # fewest executions that count as fuzzing, in multiples of the number of initial inputs
# A folder in memory: targets that write databases would otherwise spend their time waiting for the disk.
MEMORY = "/dev/shm"
# The checker stores each call stack of an allocation permanently. Nested documents have so many that a million
# executions would take all memory and slow down. So reports show only two frames of an allocation's stack.
ALLOCATED = {"ASAN_OPTIONS": f"{SANITIZERS['ASAN_OPTIONS']}:malloc_context_size=2"}

LOADED = re.compile(r"^INFO: seed corpus: files: (\d+) ", re.MULTILINE)
DONE = re.compile(r"^Done (\d+) runs in (\d+) second", re.MULTILINE)


@dataclass(frozen=True)
class Fuzzed:
    """A target's report on its run: the inputs that it loaded, executions, seconds; and the number of initial inputs. A
    target that ends early reports no executions."""

    target: str
    inputs: int
    loaded: int = 0
    executions: int = 0
    seconds: int = 0
    trouble: str = ""

    def figure(self, is_long):
        """The figure of a run: all inputs loaded, required time or executions reached."""
        wanted = f"{EXECUTIONS} executions" if is_long else f"{SECONDS} s"
        enough = self.executions >= EXECUTIONS if is_long else self.seconds >= SECONDS
        reached = enough and 0 < self.inputs == self.loaded and self.executions > BEYOND * self.inputs
        return Figure(f"fuzz: {self.target}", f"{wanted} from {self.inputs} inputs on",
                      f"{self.executions} executions, {self.seconds} s from {self.loaded} inputs on",
                      reached and not self.trouble)


def dictionary(job, target):
    """The option for a target's dictionary, if it has one."""
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


def said(target, inputs, outcome):
    """A target's report, which is on standard error."""
    loaded, done = LOADED.search(outcome.errors), DONE.search(outcome.errors)
    return Fuzzed(target, inputs, int(loaded[1]) if loaded else 0, *(map(int, done.groups()) if done else (0, 0)),
                  outcome.trouble)


def fuzz(job, build, target):
    """Runs a target."""
    kept = job.folder / "fuzz"
    corpus = (kept if job.long else job.scratch) / target
    corpus.mkdir(parents=True, exist_ok=True)
    seeds = job.top / "tests" / "fuzz" / "corpus" / target
    inputs = sum(file.stat().st_size > 0 for folder in (corpus, seeds) for file in folder.rglob("*") if file.is_file())
    argv = [build / "tests" / "fuzz" / f"fuzz_{target}", *limits(job), *dictionary(job, target),
            f"-seed={job.seed}", "-max_len=4096", "-timeout=30", "-print_final_stats=1", "-verbosity=1",
            "-detect_leaks=0",  # check for leaks at the end only: checking after each input takes most of the time
            f"-artifact_prefix={findings_of(job) / target}-", corpus, seeds]
    environment = {**ALLOCATED, "TMPDIR": MEMORY if os.access(MEMORY, os.W_OK) else str(job.scratch)}
    patience = 12 * HOUR if job.long else SECONDS + 3 * MINUTE
    return said(target, inputs, job.attempt(argv, env=environment, timeout=patience))


def findings_of(job):
    return job.folder / "fuzz" / "findings"


def run(job):
    build = job.build("instrumented", "fuzzers")
    findings = findings_of(job)
    findings.mkdir(parents=True, exist_ok=True)
    before = {file: file.stat().st_mtime_ns for file in findings.iterdir()}
    runs = job.at_once(lambda target: fuzz(job, build, target), TARGETS, AT_ONCE)
    found = sorted(file for file in findings.iterdir() if before.get(file) != file.stat().st_mtime_ns)
    for finding in found:
        print(f"  finding: {finding}")
    for fuzzed in runs:
        yield fuzzed.figure(job.long)
    yield at_most("fuzz: inputs found that must not be", 0, len(found))
    yield at_most("fuzz: targets that did not end well", 0, sum(bool(fuzzed.trouble) for fuzzed in runs))
