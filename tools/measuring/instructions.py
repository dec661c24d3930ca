# SPDX-License-Identifier: MIT
"""Counts instructions of commands with valgrind's callgrind. The counts are the same each time, regardless of other
load. valgrind presents the same processor to programs on all machines of an architecture, so the C library chooses the
same functions. Instructions in libraries count too, so that a command that uses them more is noticed. Other versions of
a library or of the compiler may change the counts.
"""

import re

from proving.job import Failed

DUMP = re.compile(r"^desc: Trigger: (?:Client Request: )?(?P<label>.*)$", re.MULTILINE)
END = "Program termination"  # the label for instructions that were not counted under another label
TOTALS = re.compile(r"^(?:totals|summary): (?P<count>\d+)$", re.MULTILINE)
MOST_MORE = 3  # percent
RUN = re.compile(r"^(?P<label>[^\t]+)\t(?P<times>[1-9][0-9]*)$")


def made_with(job):
    """A description of what the counts depend on besides the sources: processor, compiler, libraries and valgrind."""
    def said(*argv):
        return job.run(argv).strip()
    libraries = [f"{name} {said('pkg-config', '--modversion', name)}" for name in ("jsoncpp", "sqlite3")]
    return ", ".join([said("uname", "-m"), f"g++ {said('g++', '-dumpfullversion')}", said("getconf", "GNU_LIBC_VERSION"),
                      *libraries, said("valgrind", "--version")])


def callgrind(job, *argv):
    """Runs a program under valgrind, which writes the counts into the job's folder. Returns the program's output."""
    return job.run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={job.scratch / 'counts'}", *argv],
                   env={"LC_ALL": "C"})


def count(job, program, *arguments):
    """The instructions of one run of each command that `program` runs, in their order, by label."""
    said = callgrind(job, "--instr-atstart=no", program, *arguments).splitlines()
    runs = [RUN.match(line) for line in said]
    if not all(runs) or not runs:
        raise Failed(f"{program} does not tell what it ran")
    counts = dumped(job.scratch)
    if missing := [run["label"] for run in runs if run["label"] not in counts]:
        raise Failed(f"valgrind has not counted {', '.join(missing)}")
    return {run["label"]: counts[run["label"]] / int(run["times"]) for run in runs}


def of_process(job, program, *arguments):
    """The instructions of a process from its start to its end."""
    callgrind(job, program, *arguments)
    if not (counted := dumped(job.scratch).get(END)):
        raise Failed(f"valgrind has not counted {program}")
    return counted


def dumped(folder):
    """Reads and removes the counts that valgrind left in a folder. Returns them by label."""
    counts = {}
    for dump in folder.glob("counts*"):
        text = dump.read_text(encoding="utf-8")
        label, total = DUMP.search(text), TOTALS.search(text)
        if label and total:
            counts[label["label"]] = int(total["count"])
        dump.unlink()
    return counts


def is_query(label):
    """True for a command that only reads."""
    return label.startswith("Get")
