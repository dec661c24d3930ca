"""Changes the plug-in bit by bit and looks whether the tests notice; in the long form only.

The long form tries a sample of 1000 mutants; `tools/mutate` alone tries all. A build of its own and a minute for each
change that nobody notices are too long for the short form.
"""

from proving.job import Figure

SAMPLE = 1000
WANTED = 95  # percent, in worker and engine; in the converter's tables all that change anything


def run(job):
    if not job.long:
        return []
    found = job.figures(job.run([job.top / "tools" / "mutate", "--sample", SAMPLE, "--seed", job.seed]))
    percent, tables = (found[f"percent killed in {place}"] for place in ("worker and engine", "the converter's tables"))
    tried, loose = found["mutants tried"], found["survivors without a reason"]
    return [
        Figure("mutation: mutants tried", str(SAMPLE), str(tried), tried >= SAMPLE),
        Figure("mutation: killed in worker and engine", f"{WANTED} %", f"{percent} %", percent >= WANTED),
        Figure("mutation: killed in the converter's tables", "100 %", f"{tables} %", tables >= 100),
        Figure("mutation: survivors without a reason", "0", str(loose), loose == 0),
    ]
