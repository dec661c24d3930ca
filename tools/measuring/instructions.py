"""Instructions of commands, as valgrind's callgrind counts them: the same each time, whatever else the machine does.

valgrind shows programs the same processor on all machines of a kind, so that the C library chooses the same functions.
What libraries do is counted, too: that a command asks more of them is to be noticed. With another release of a library
or of the compiler counts may be others.
"""

import re

DUMP = re.compile(r"^desc: Trigger: Client Request: (?P<label>.*)$", re.MULTILINE)
TOTALS = re.compile(r"^(?:totals|summary): (?P<count>\d+)$", re.MULTILINE)
MOST_MORE = 3  # percent


def made_with(job):
    """What counts depend on beside the sources: processor, compiler, libraries and valgrind, in words."""
    def said(*argv):
        return job.run(argv).strip()
    libraries = [f"{name} {said('pkg-config', '--modversion', name)}" for name in ("jsoncpp", "sqlite3")]
    return ", ".join([said("uname", "-m"), f"g++ {said('g++', '-dumpfullversion')}", said("getconf", "GNU_LIBC_VERSION"),
                      *libraries, said("valgrind", "--version")])


def count(job, program):
    """The instructions of one run of each command that `program` runs, in their order, by label."""
    runs = dict(line.split("\t") for line in job.run(
        ["valgrind", "--tool=callgrind", "--instr-atstart=no", f"--callgrind-out-file={job.scratch / 'counts'}", program],
        env={"LC_ALL": "C"}).splitlines())
    counts = {}
    for dump in job.scratch.glob("counts*"):
        text = dump.read_text(encoding="utf-8")
        if label := DUMP.search(text):
            counts[label["label"]] = int(TOTALS.search(text)["count"])
        dump.unlink()
    return {label: counts[label] / int(times) for label, times in runs.items()}
