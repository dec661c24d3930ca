# SPDX-License-Identifier: MIT
"""Measures the scan of a long recording: its time compared with reading the file, its memory compared with a short
recording."""

import os
import statistics
import time
from pathlib import Path

from proving.job import Failed

LONG, SHORT = 2_000_000_000, 20_000_000  # bytes
BLOCK = 1 << 20
RUNS = 5
CAPTURE = "captures/dtt-italy.ts"  # beside the folder of real lists


def capture():
    """A real recording; None if there is none."""
    lists = os.environ.get("EMP_WINDOW_LISTS")
    path = Path(lists).parent / CAPTURE if lists else None
    return path if path and path.is_file() else None


def expect_capture():
    """Returns the real recording; fails if there is none."""
    if not (found := capture()):
        raise Failed(f"row 22 wants a recording, {CAPTURE} beside the folder that EMP_WINDOW_LISTS names")
    return found


def repeated(content, path, size):
    """Writes a file of about that size that repeats the content."""
    with open(path, "wb") as file:
        for _ in range(size // len(content)):
            file.write(content)
    return path


def read_seconds(path):
    """The time that reading a file in blocks takes."""
    block = bytearray(BLOCK)
    begun = time.perf_counter()
    with open(path, "rb", buffering=0) as file:
        while file.readinto(block):
            pass
    return time.perf_counter() - begun


def scan(program, path):
    """Scans a file. Returns the seconds and the peak memory of the process in KB."""
    begun = time.perf_counter()
    process = os.posix_spawn(program, [program, "scan", "--json", path], os.environ,
                             file_actions=[(os.POSIX_SPAWN_OPEN, 1, os.devnull, os.O_WRONLY, 0),
                                           (os.POSIX_SPAWN_OPEN, 2, os.devnull, os.O_WRONLY, 0)])
    _, status, usage = os.wait4(process, 0)
    if status != 0:
        raise Failed(f"{program} scan ends with status {os.waitstatus_to_exitcode(status)}")
    return time.perf_counter() - begun, usage.ru_maxrss


def measure(job, program):
    """Rows in the form of those of memory: times of the long file, measured alternately, and memory of both files."""
    content = expect_capture().read_bytes()
    long_file = repeated(content, job.scratch / "long.ts", LONG)
    short_file = repeated(content, job.scratch / "short.ts", SHORT)
    program = str(program)
    scan(program, long_file), read_seconds(long_file)  # so that both find the file in the cache
    scans, reads = [], []
    for turn in range(RUNS):
        for step in ((0, 1) if turn % 2 else (1, 0)):
            if step:
                scans.append(scan(program, long_file))
            else:
                reads.append(read_seconds(long_file))
    seconds, read = statistics.median(took for took, _ in scans), statistics.median(reads)
    memory = statistics.median(kilobytes for _, kilobytes in scans)
    short = statistics.median(scan(program, short_file)[1] for _ in range(RUNS))
    for file in (long_file, short_file):
        file.unlink()
    return [("22", "the scan of a recording of 2 GB", "reading it in blocks of 1 MiB", f"{seconds:.3g} s", f"{read:.3g} s",
             seconds / read, 2.0),
            ("22", "peak KB of the scan of 2 GB", "of 20 MB", f"{memory:,.0f}", f"{short:,.0f}", memory / short, 1.05)]
