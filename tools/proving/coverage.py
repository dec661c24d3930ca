# SPDX-License-Identifier: MIT
"""Measures how much of the code the tests reach: lines, branches and, for the plug-in, independent conditions (MC/DC).

The tests run once, for this step and for the sanitizers. A line, branch or condition of a template counts as reached if
any instance of the template reaches it. A line that ends in `// not covered: REASON` is left out, with the branches and
conditions that begin there.
"""

import json
import os
import re
from collections import defaultdict

from proving import suites
from proving.job import Failed, Figure

MARKER = re.compile(r"// not covered: (?P<reason>\S.*)$")
MOST_EXCLUSIONS = 10


class Source:
    """One file: its countable parts, and those that the tests reached."""

    def __init__(self, path):
        self.excluded = {number: match["reason"]
                         for number, line in enumerate(path.read_text(encoding="utf-8").split("\n"), 1)
                         if (match := MARKER.search(line))}
        self.lines = {}
        self.branches = defaultdict(lambda: [False, False])
        self.conditions = {}

    def add_lines(self, segments):
        """Adds the counts of a file's segments: a line is reached if a segment that begins or continues there was
        reached."""
        counted, count = False, 0
        for index, (line, _, segment_count, has_count, is_entry, is_gap) in enumerate(segments):
            counted, count = has_count and not is_gap, segment_count
            last = segments[index + 1][0] if index + 1 < len(segments) else line
            for number in range(line if is_entry else line + 1, last + 1):
                if counted and number not in self.excluded:
                    self.lines[number] = self.lines.get(number, False) or count > 0

    def add_branch(self, branch):
        line, column, end_line, end_column, times_true, times_false = branch[:6]
        if line not in self.excluded:
            ways = self.branches[line, column, end_line, end_column]
            ways[0] |= times_true > 0
            ways[1] |= times_false > 0

    def add_decision(self, record):
        place, shown = tuple(record[:4]), record[-1]
        if place[0] not in self.excluded:
            before = self.conditions.get(place, [False] * len(shown))
            self.conditions[place] = [earlier or now for earlier, now in zip(before, shown)]

    def missing(self):
        """The parts that the tests did not reach, as (line, kind of part)."""
        found = [(line, "line") for line, reached in self.lines.items() if not reached]
        for place, (when_true, when_false) in self.branches.items():
            found += [(place[0], f"column {place[1]}: never {way}")
                      for way, reached in (("true", when_true), ("false", when_false)) if not reached]
        for place, shown in self.conditions.items():
            found += [(place[0], f"column {place[1]}: condition {at + 1} never decides alone")
                      for at, reached in enumerate(shown) if not reached]
        return sorted(found)


def read(job, programs, profiles, folders):
    """The sources below `folders` with their coverage."""
    merged = job.scratch / "all.profdata"
    job.run(["llvm-profdata-19", "merge", "-o", merged, *sorted(profiles.glob("*.profraw"))])
    objects = [word for program in programs[1:] for word in ("-object", program)]
    command = ["llvm-cov-19", "export", "-instr-profile", merged, programs[0], *objects, "-sources",
               *[job.top / folder for folder in folders]]
    data = json.loads(job.run(command, quiet=True))["data"][0]
    sources = {file["filename"]: Source(job.top / file["filename"]) for file in data["files"]}
    for file in data["files"]:
        sources[file["filename"]].add_lines(file["segments"])
    for function in data["functions"]:
        for branch in function["branches"]:
            if (source := sources.get(function["filenames"][branch[6]])) is not None:
                source.add_branch(branch)
        for record in function.get("mcdc_records", []):
            if (source := sources.get(function["filenames"][record[4]])) is not None:
                source.add_decision(record)
    return {os.path.relpath(name, job.top): source for name, source in sorted(sources.items())}


def share(reached):
    """The share of true values in a list: in percent, and as a text with both counts."""
    done, total = sum(reached), len(reached)
    if total == 0:
        raise Failed("nothing was counted")
    return 100 * done / total, f"{100 * done / total:.2f} % ({done} of {total})"


def of_folder(sources, folder):
    """The countable parts of the sources below a folder: lines, branches and conditions as lists of booleans."""
    chosen = [source for name, source in sources.items() if name.startswith(folder)]
    return {"lines": [reached for source in chosen for reached in source.lines.values()],
            "branches": [way for source in chosen for ways in source.branches.values() for way in ways],
            "conditions (MC/DC)": [one for source in chosen for shown in source.conditions.values() for one in shown]}


def run(job):
    ran = suites.run(job)
    programs = [*ran.programs, str(ran.build / "emp-window")]
    sources = read(job, programs, ran.profiles, ["Window", "virtualtv"])

    missing = [f"{name}:{line}: {what}" for name, source in sources.items() for line, what in source.missing()]
    exclusions = [f"{name}:{line}: left out: {reason}" for name, source in sources.items()
                  for line, reason in source.excluded.items()]
    listing = job.folder / "coverage.txt"
    listing.write_text("".join(line + "\n" for line in exclusions + missing), encoding="utf-8")
    print("".join(f"  {line}\n" for line in exclusions + [line for line in missing if line.startswith("Window/")]), end="")
    print(f"  all that was not reached: {listing.relative_to(job.top)}")

    targets = [("Window/Src", "lines", 100), ("Window/Src", "branches", 100), ("Window/Src", "conditions (MC/DC)", 100),
               ("virtualtv", "lines", 95), ("virtualtv", "branches", 90)]
    for folder, kind, target in targets:
        percent, text = share(of_folder(sources, folder)[kind])
        yield Figure(f"{folder}: {kind}", f"{target} %", text, percent >= target)
    left_out = sum(line.startswith("Window/") for line in exclusions)
    yield Figure("Window/Src: lines left out", f"< {MOST_EXCLUSIONS}", str(left_out), left_out < MOST_EXCLUSIONS)
