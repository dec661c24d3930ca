# SPDX-License-Identifier: MIT
"""Measures the memory for the document of a full channel list."""

from proving.job import Failed

NAMES = ["allocations a service", "live bytes a service", "live bytes a service in the smallest tree",
         "bytes of text a service", "peak bytes a service"]


def measure(job, program):
    """Figures by name, as (number, name, reference, subject, reference, ratio, target); a figure without a reference is
    its own ratio."""
    found = job.figures(job.run([program]), program)
    if missing := [name for name in NAMES if name not in found]:
        raise Failed(f"{program} has not told {', '.join(missing)}")
    live, smallest = found["live bytes a service"], found["live bytes a service in the smallest tree"]
    least, peak = smallest + found["bytes of text a service"], found["peak bytes a service"]
    return [
        ("7", "allocations a service in GetFullChannelList, without the set's and the writer's own", "", None, None,
         found["allocations a service"], 13.1),
        ("7", "bytes a service that it holds when the document is written", "the smallest tree that the JSON library can hold",
         f"{live:.0f}", f"{smallest:.0f}", live / smallest, 1.05),
        ("14", "peak bytes a service in GetFullChannelList of 100,000", "tree and text alone",
         f"{peak:.0f}", f"{least:.0f}", peak / least, 1.3),
    ]
