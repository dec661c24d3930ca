# SPDX-License-Identifier: MIT
"""Measures what the process of a target costs. Times and memory include the virtual TV. On an emulator, the memory of
an idle program there is subtracted."""

import re
import statistics
import subprocess
import tempfile
import time
from pathlib import Path

from porting.targets import OWN, run

REPETITIONS = 7
SERVICES = 10_000


def service_list(folder):
    """A list of this many services, ten per frequency."""
    path = folder / "list.conf"
    path.write_text("".join(
        f"[Service {number}]\n\tSERVICE_ID = {number % 10 + 1}\n\tNETWORK_ID = 8901\n\tTRANSPORT_ID = {number // 10 + 1}\n"
        f"\tVIDEO_PID = 100\n\tAUDIO_PID = 101\n\tDELIVERY_SYSTEM = DVBC/ANNEX_A\n\tFREQUENCY = {100_000_000 + number // 10 * 1_000_000}\n"
        f"\tSYMBOL_RATE = 6900000\n\tMODULATION = QAM/64\n\n" for number in range(SERVICES)), encoding="utf-8")
    return path


def private_memory(process):
    """The private memory of a process in kB."""
    return int(re.search(r"^RssAnon:\s+(\d+) kB", Path(f"/proc/{process.pid}/status").read_text(encoding="ascii"), re.MULTILINE)[1])


def answer(process, command):
    """Lets a shell run a command, and waits for the answer."""
    process.stdin.write(f"{command}\n.get main.source\n".encode())
    process.stdin.flush()
    for line in process.stdout:
        if line.startswith(b"main.source"):
            return


def memory(top, target, state):
    """Private memory after start and after the list of all services, in kB."""
    command = target.command(top, target.program(top))
    with subprocess.Popen([*command, "--state", state, "shell"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                          env=target.environment(top)) as process:
        answer(process, "GetTVMode")
        started = private_memory(process)
        answer(process, "GetFullChannelList")
        listed = private_memory(process)
        process.stdin.close()
    return started, listed


def emulators_share(top, target, folder):
    """The private memory of an emulator with an idle program, in kB; 0 without an emulator."""
    if not target.emulator:
        return 0
    (folder / "wait.c").write_text("#include <stdio.h>\nint main(void) { puts(\"\"); fflush(stdout); return getchar(); }\n")
    run([target.compiler.replace("g++", "gcc"), f"--sysroot={target.root(top)}", "-o", folder / "wait", folder / "wait.c"])
    command = target.command(top, folder / "wait")
    with subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE) as process:
        process.stdout.readline()
        return private_memory(process)


def start_up(top, target, state):
    """The median seconds from the start to the end of a process that answers one command."""
    command = target.command(top, target.program(top))
    times = []
    for _ in range(REPETITIONS):
        begin = time.monotonic()
        run([*command, "--state", state, "exec", "GetTVMode"], env=target.environment(top))
        times.append(time.monotonic() - begin)
    return statistics.median(times)


def measure(top, target):
    """Size, start-up time, memory after start and after a long list, as texts."""
    size = run([(target.triple + "-" if target.triple else "") + "size", target.program(top)]).splitlines()[1].split()
    with tempfile.TemporaryDirectory() as scratch:
        folder = Path(scratch)
        run([OWN.program(top), "--state", folder / "full", "import", service_list(folder)])
        share = emulators_share(top, target, folder)
        started, listed = memory(top, target, folder / "full")
        seconds = start_up(top, target, folder / "state")
    remark = " (emulated)" if target.emulator else ""
    return [f"{(int(size[0]) + int(size[1])) / 1000:,.0f} kB", f"{seconds * 1000:,.0f} ms{remark}",
            f"{(started - share) / 1000:.1f} MB{remark}", f"{(listed - share) / 1000:.1f} MB{remark}"]
