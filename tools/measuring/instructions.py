# SPDX-License-Identifier: MIT
"""Instructions of commands, as valgrind's callgrind counts them: the same each time, whatever else the machine does.

valgrind shows programs the same processor on all machines of a kind, so that the C library chooses the same functions.
What libraries do is counted, too: that a command asks more of them is to be noticed. With another release of a library
or of the compiler counts may be others.
"""

import re

from proving.job import Failed

DUMP = re.compile(r"^desc: Trigger: (?:Client Request: )?(?P<label>.*)$", re.MULTILINE)
END = "Program termination"  # the label of what a process has not had counted under another one
TOTALS = re.compile(r"^(?:totals|summary): (?P<count>\d+)$", re.MULTILINE)
MOST_MORE = 3  # percent
RUN = re.compile(r"^(?P<label>[^\t]+)\t(?P<times>[1-9][0-9]*)$")


def made_with(job):
    """What counts depend on beside the sources: processor, compiler, libraries and valgrind, in words."""
    def said(*argv):
        return job.run(argv).strip()
    libraries = [f"{name} {said('pkg-config', '--modversion', name)}" for name in ("jsoncpp", "sqlite3")]
    return ", ".join([said("uname", "-m"), f"g++ {said('g++', '-dumpfullversion')}", said("getconf", "GNU_LIBC_VERSION"),
                      *libraries, said("valgrind", "--version")])


def callgrind(job, *argv):
    """Runs a program, whose counts valgrind leaves in the job's folder. What it says."""
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
    """The counts that valgrind left in a folder, by label; takes them away."""
    counts = {}
    for dump in folder.glob("counts*"):
        text = dump.read_text(encoding="utf-8")
        label, total = DUMP.search(text), TOTALS.search(text)
        if label and total:
            counts[label["label"]] = int(total["count"])
        dump.unlink()
    return counts


def is_query(label):
    """Whether a command that is run only asks."""
    return label.startswith("Get")
