# SPDX-License-Identifier: MIT
"""Measures times as ratios: a figure and its reference run alternately; medians count."""

import json
import statistics
from dataclasses import dataclass

from proving.job import Failed

REPETITIONS = 11
PAIRS = 25


@dataclass(frozen=True)
class Ratio:
    """A figure: what it measures, its reference, the benchmarks of both, and the greatest allowed ratio. `per` divides
    the times, for benchmarks that do different amounts of work. A repetition lasts at least `seconds`, which should be
    longer if each run waits for the disk or another process. With `paired`, each run is compared with the adjacent run
    of the reference, and the median of these ratios counts, since a disk shared with others slows down both. `program`
    runs the benchmarks."""

    number: str
    name: str
    reference: str
    pairs: list  # pairs of benchmarks; the worst pair counts
    target: float
    per: tuple = (1, 1)
    seconds: float = 0.2
    paired: bool = False
    program: str = "bench_speed"


QUERIES = ["Major", "Minor", "Name", "OriginNetID", "ProgramNumber", "PTC", "ServiceName", "TransportStreamID", "Type",
           "ServiceId", "OnTVJson"]

RATIOS = [
    Ratio("1", "finding the row of a name", "`std::unordered_map`", [("row/known", "map/known")], 0.5),
    Ratio("1", "finding that a name has no row", "`std::unordered_map`", [("row/unknown", "map/unknown")], 0.3),
    Ratio("2", "a whole command that makes one call to the set", "the call through a JSON-RPC dispatcher",
          [("execute", "jsonRpc")], 1 / 40),
    Ratio("3", "a message that is filtered", "one that is formatted", [("message/filtered", "message/formatted")], 0.03),
    Ratio("4", "GetFullChannelList of 10,000 services", "the JSON library's writer alone", [("list/10000", "writer")], 2.0),
    Ratio("5", "GetFullChannelList of 10,000 services", "the plain way to write it", [("list/10000", "plain")], 0.55),
    Ratio("6", "a service of 100,000 in GetFullChannelList", "a service of 100", [("list/100000", "list/100")], 1.5,
          per=(100_000, 100)),
    Ratio("8", "the conversion of a name", "with a converter opened and closed",
          [("convert/kept", "convert/opened")], 0.35),
    Ratio("10", "a field query at index 99,999, the slowest of eleven", "at index 0",
          [(f"field/{query}/99999", f"field/{query}/0") for query in QUERIES], 1.2),
    Ratio("11", "a tune from an input, all keys written", "as many writes of the store alone",
          [("tune/real_time", "store/real_time")], 1.2, paired=True),
    Ratio("12", "a process that answers once, from start to end", "`sqlite3 FILE 'select 1'`",
          [("exec/real_time", "sqlite/real_time")], 3.0, seconds=0.5),
    Ratio("16", "a round trip of GetTVMode over WebSocket", "its bytes through Beast's bare echo",
          [("servedCall/real_time", "echoedCall/real_time")], 1.4, paired=True, program="bench_served"),
    Ratio("17", "100 calls of GetTVMode in flight", "their bytes through Beast's bare echo",
          [("servedCalls/real_time", "echoedCalls/real_time")], 1.8, paired=True, program="bench_served"),
    Ratio("18", "GetFullChannelList of 10,000 services over WebSocket", "in process, and its bytes by bare Beast",
          # The first lists fill the server's history; after a while each list only replaces an older one.
          [("servedList/real_time", "sentList/real_time")], 1.3, seconds=1, paired=True, program="bench_served"),
    Ratio("19", "an event to 100 subscribers", "its bytes by bare Beast to 100 clients",
          [("servedEvent/real_time", "sentEvents/real_time")], 1.5, paired=True, program="bench_served"),
    Ratio("20", "a Node process with `launch()`, to its first reply", "`exec` and a Node process that connects",
          [("launched/manual_time", "connected/manual_time")], 1.5, seconds=0.5, paired=True, program="bench_served"),
    Ratio("23", "the import of a list of 20,000 services, from its text to the disk", "SQLite alone putting its rows there",
          [("import/real_time", "insert/real_time")], 1.5, paired=True),
    Ratio("24", "the export of 20,000 services as JSON", "the JSON library's writer alone",
          [("exportJson", "writeJson")], 3.0),
]

REAL = ("/real_time", "/manual_time")  # suffixes of benchmarks for which the processor time does not count

UNITS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}


def times(job, program, names, seconds, *options):
    """The time of each benchmark in a run of the program, in seconds; the median of repetitions."""
    said = job.run([program, f"--benchmark_filter=^({'|'.join(names)})$", f"--benchmark_min_time={seconds}",
                    "--benchmark_format=json", *options])
    try:
        runs = json.loads(said)["benchmarks"]
    except ValueError as error:
        raise Failed(f"{program} says what is no list of benchmarks") from error
    found = {}
    for run in runs:
        if run.get("aggregate_name", "median") == "median":
            time = run["real_time" if run["run_name"].endswith(REAL) else "cpu_time"]
            found[run["run_name"]] = time * UNITS[run["time_unit"]]
    if missing := [name for name in names if not found.get(name)]:
        raise Failed(f"{program} has not measured {', '.join(missing)}")
    return found


def measure_pairs(job, program, ratio):
    """The medians of a pair, run alternately, and the median of the ratios of adjacent runs."""
    (pair,) = ratio.pairs
    runs = [{name: times(job, program, [name], ratio.seconds)[name] for name in (pair if turn % 2 else pair[::-1])}
            for turn in range(PAIRS)]
    subjects, references = ([run[name] / per for run in runs] for name, per in zip(pair, ratio.per))
    ratios = [subject / reference for subject, reference in zip(subjects, references)]
    return tuple(map(statistics.median, (subjects, references, ratios)))


def measure(job, program, ratio):
    """The medians of the pair whose ratio is highest, and that ratio."""
    if ratio.paired:
        return measure_pairs(job, program, ratio)
    found = times(job, program, sorted({name for pair in ratio.pairs for name in pair}), ratio.seconds,
                  f"--benchmark_repetitions={REPETITIONS}", "--benchmark_enable_random_interleaving=true",
                  "--benchmark_report_aggregates_only=true")
    subject, reference = max(((found[one] / ratio.per[0], found[other] / ratio.per[1]) for one, other in ratio.pairs),
                             key=lambda pair: pair[0] / pair[1])
    return subject, reference, subject / reference


def shown(seconds):
    """A time in a suitable unit."""
    for unit, size in (("s", 1.0), ("ms", 1e-3), ("us", 1e-6)):
        if seconds >= size:
            return f"{seconds / size:.3g} {unit}"
    return f"{seconds / 1e-9:.3g} ns"
