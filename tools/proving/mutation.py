"""Changes the plug-in bit by bit and looks whether the tests notice: tools/mutate, on a sample.

The short form tries 100 mutants, the long one 1000; `tools/mutate` alone tries all.
"""

from proving.job import Figure

WANTED = 95  # percent, in worker and engine; in the converter's tables all that change anything


def run(job):
    sample = 1000 if job.long else 100
    found = job.figures(job.run([job.top / "tools" / "mutate", "--sample", sample, "--seed", job.seed]))
    percent, tables = (found[f"percent killed in {place}"] for place in ("worker and engine", "the converter's tables"))
    tried, loose = found["mutants tried"], found["survivors without a reason"]
    return [
        Figure("mutation: mutants tried", str(sample), str(tried), tried >= sample),
        Figure("mutation: killed in worker and engine", f"{WANTED} %", f"{percent} %", percent >= WANTED),
        Figure("mutation: killed in the converter's tables", "100 %", f"{tables} %", tables >= 100),
        Figure("mutation: survivors without a reason", "0", str(loose), loose == 0),
    ]
