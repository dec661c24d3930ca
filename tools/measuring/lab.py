# SPDX-License-Identifier: MIT
"""Measures many sets on one machine, each started like the service manager's unit starts it."""

import contextlib
import datetime
import os
import re
import shlex
import shutil
import socket
import statistics
import subprocess
import tempfile
import time
from pathlib import Path

from measuring.table import Table
from proving.job import Failed

TOP = Path(__file__).resolve().parents[2]
STARTS = 7
IDLE_SECONDS = 3


def command_of(unit, name):
    """The command line of a unit for a set with this name, parsed as by the service manager."""
    line = re.search(r"^ExecStart=(.*)$", unit, re.MULTILINE)[1]
    return [word.replace("%i", name).replace("$$", "$") for word in shlex.split(line)]


def free_ports(count):
    """A number of free ports, all different."""
    with contextlib.ExitStack() as stack:
        probes = [stack.enter_context(socket.socket()) for _ in range(count)]
        for probe in probes:
            probe.bind(("127.0.0.1", 0))
        return [probe.getsockname()[1] for probe in probes]


class Lab:
    """Sets run by one program, with their states in a folder."""

    def __init__(self, program, folder):
        unit = (TOP / "cmake/install/emp-window@.service.in").read_text(encoding="utf-8")
        self.unit = unit.replace("@program_folder@", str(Path(program).resolve().parent))
        self.environment = {**os.environ, "HOME": str(folder), "XDG_STATE_HOME": str(folder / "state")}
        self.processes = []

    def start(self, name, options="--listen 127.0.0.1:0", before=()):
        """Starts a set. @param before a command that starts the set's command"""
        process = subprocess.Popen([*before, *command_of(self.unit, name)], env={**self.environment, "OPTIONS": options},
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.processes.append(process)
        return process

    @staticmethod
    def address(process):
        """Waits until a set can answer. @return its address"""
        line = process.stdout.readline()
        found = re.search(r"http://127\.0\.0\.1:\d+", line)
        if not found:
            raise Failed(f"a set did not start: {line}{process.stdout.read()}")
        return found[0]

    def end(self):
        for process in self.processes:
            process.terminate()
        for process in self.processes:
            process.wait()
            process.stdout.close()
        self.processes = []


def memory(processes):
    """The memory of the processes in megabytes, with shared memory counted once."""
    sizes = [re.search(r"^Pss:\s+(\d+) kB", Path(f"/proc/{process.pid}/smaps_rollup").read_text(encoding="ascii"), re.MULTILINE)[1]
             for process in processes]
    return sum(map(int, sizes)) / 1024


def processor_seconds(processes):
    fields = [Path(f"/proc/{process.pid}/stat").read_text(encoding="ascii").rpartition(")")[2].split() for process in processes]
    return sum(int(field[11]) + int(field[12]) for field in fields) / os.sysconf("SC_CLK_TCK")


def start_alone(lab):
    """The median seconds from the first start of a set to its address."""
    times = []
    for number in range(STARTS):
        begin = time.monotonic()
        lab.address(lab.start(f"alone-{number}"))
        times.append(time.monotonic() - begin)
        lab.end()
    return statistics.median(times)


def start_by_socket(lab):
    """The median seconds from a request at a socket without a running set to the answer."""
    times = []
    for number, port in enumerate(free_ports(STARTS)):
        passed = [word for name in ("HOME", "XDG_STATE_HOME", "OPTIONS", "PATH") for word in ("-E", name)]
        process = lab.start(f"socket-{number}", before=["systemd-socket-activate", "-l", f"127.0.0.1:{port}", *passed])
        process.stdout.readline()  # it listens
        begin = time.monotonic()
        with socket.create_connection(("127.0.0.1", port)) as one:
            one.sendall(b"GET /openrpc.json HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n")
            if b"200" not in one.recv(64):
                raise Failed("a set behind a socket did not answer")
        times.append(time.monotonic() - begin)
        lab.end()
    return statistics.median(times)


def started_script(folder, *words, variables=None):
    """Starts the example project's script with these arguments in a new folder. @return the process"""
    (folder / "node_modules").mkdir(parents=True)
    (folder / "node_modules/emp-window").symlink_to(TOP / "virtualtv/console/client")
    (folder / "package.json").write_text('{"type": "module"}', encoding="utf-8")
    shutil.copy(TOP / "examples/guide/lab.js", folder)
    return subprocess.Popen(["node", "lab.js", *map(str, words)], cwd=folder, text=True, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, env={**os.environ, **(variables or {})})


def run_script(folder, *words, variables=None):
    """Runs the script, see `started_script`. @return its status and output"""
    with started_script(folder, *words, variables=variables) as process:
        said, _ = process.communicate()
    return subprocess.CompletedProcess(process.args, process.returncode, said)


def run_transcripts(folder, addresses, transcripts):
    """Runs the transcripts on the sets with the example project's script. @return the seconds, and the summary line"""
    begin = time.monotonic()
    done = run_script(folder, "report.xml", *addresses, "--", *transcripts)
    seconds = time.monotonic() - begin
    if done.returncode or 'failures="0"' not in (folder / "report.xml").read_text(encoding="utf-8"):
        raise Failed(done.stdout)
    return seconds, done.stdout.splitlines()[-1]


TABLE = Table(["what", "is", "taken on"], [
    "sets", "one set starts, until it can be asked", "a set behind a socket starts, until it has answered what it was asked",
    "all start at once, until the last can be asked", "memory a set when it has started", "memory a set behind the transcripts",
    "memory of all behind the transcripts", "processor that all take while nobody asks", "transcripts run on them", "time that these take"])


def measure(program, count):
    """The rows of the table, for this number of sets."""
    transcripts = sorted((TOP / "examples/guide/transcripts").glob("*.txt")) * count
    with tempfile.TemporaryDirectory() as scratch:
        folder = Path(scratch)
        lab = Lab(program, folder)
        try:
            alone, by_socket = start_alone(lab), start_by_socket(lab)
            begin = time.monotonic()
            sets = [lab.start(f"set-{number}") for number in range(count)]
            addresses = [lab.address(process) for process in sets]
            together = time.monotonic() - begin
            started = memory(sets)
            before = processor_seconds(sets)
            time.sleep(IDLE_SECONDS)
            idle = processor_seconds(sets) - before
            seconds, summary = run_transcripts(folder, addresses, transcripts)
            used = memory(sets)
        finally:
            lab.end()
    figures = [count, f"{alone * 1000:.0f} ms", f"{by_socket * 1000:.0f} ms", f"{together:.1f} s", f"{started / count:.1f} MB",
               f"{used / count:.1f} MB", f"{used:.0f} MB", f"{100 * idle / IDLE_SECONDS:.1f} %",
               summary.removeprefix("transcripts: "), f"{seconds:.1f} s"]
    today = datetime.date.today().isoformat()
    return [[name, str(figure), today] for name, figure in zip(TABLE.names, figures, strict=True)]
