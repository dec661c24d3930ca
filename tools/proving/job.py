# SPDX-License-Identifier: MIT
"""The environment of a step of the proof: the tree, its builds, running programs, and a scratch folder."""

import json
import os
import re
import select
import signal
import socket
import subprocess
import tempfile
import threading
from concurrent.futures import ThreadPoolExecutor
from contextlib import suppress
from dataclasses import dataclass
from pathlib import Path

FIGURE = re.compile(r"^(?:\d+: )?figure: (?P<name>[^=]+?) = (?P<number>\S+)$", re.MULTILINE)
NUMBER = re.compile(r"-?[0-9]+([.][0-9]+)?")
MINUTE = 60
HOUR = 60 * MINUTE
GRACE = 5  # seconds that a program has to end its own children, once it is asked to end
READING = 10  # seconds to wait for the remaining output of a program that has ended
TAIL = 30  # lines of each output of a failed program that the proof prints
LONGEST = 400  # characters of such a line

# Variables that change what a program checks, or which tests it runs; they are removed from the caller's environment.
STRAY = re.compile(r"^(ASAN|UBSAN|LSAN|CTEST|GTEST|MALLOC|LLVM_PROFILE|EMP_WINDOW|MUTANT)")
# Options for programs that check themselves; coverage is recorded only on request.
SANITIZERS = {"ASAN_OPTIONS": "detect_leaks=1:strict_string_checks=1", "UBSAN_OPTIONS": "print_stacktrace=1",
              "LLVM_PROFILE_FILE": os.devnull}


@dataclass(frozen=True)
class Figure:
    """One row of the table: the figure, its target, its measured value, and whether the target is met."""

    name: str
    target: str
    measured: str
    reached: bool
    remark: str = ""


def shown(measured):
    """A number in a row; a failed program may not have reported it."""
    return "not told" if measured is None else str(measured)


def more_than(name, least, measured):
    return Figure(name, f"more than {least}", shown(measured), measured is not None and measured > least)


def at_least(name, least, measured, unit=""):
    told = shown(measured) + (unit if measured is not None else "")
    return Figure(name, f"{least}{unit}", told, measured is not None and measured >= least)


def at_most(name, most, measured):
    return Figure(name, f"at most {most}" if most else "0", shown(measured), measured is not None and measured <= most)


def added(parts, name):
    """The sum of a figure over programs that share the work; None when one of them did not report it."""
    numbers = [part.get(name) for part in parts]
    return None if None in numbers else sum(numbers)


class Failed(Exception):
    """A program of a step, or a build, ended unexpectedly."""


@dataclass(frozen=True)
class Outcome:
    """The result of a program: its standard output, its standard error, and the error, if any."""

    out: str
    errors: str
    trouble: str = ""


class Job:
    """The argument of the steps. `long` requests the long form; `seed` starts the random choices. Programs run in
    separate process groups, so that their children end with them. A program that must end early is first asked to,
    since it may have children in other groups."""

    def __init__(self, top, step, *, is_long=False, seed=1):
        self.top = Path(top)
        self.step = step
        self.long = is_long
        self.seed = seed
        self.patience = 12 * HOUR if is_long else 30 * MINUTE
        self.troubles = []
        self.folder = self.top / "build" / "proof"
        self._lock = threading.Lock()
        self._runs = 0
        self.stopped = False
        self._ear, self._mouth = socket.socketpair()  # becomes readable when the job is stopped
        self.folder.mkdir(parents=True, exist_ok=True)
        for log in self.folder.glob(f"{step}-*.log"):
            log.unlink()
        self._scratch = tempfile.TemporaryDirectory(prefix=f"{step}-")
        self.scratch = Path(self._scratch.name)

    def close(self):
        """Ends the job, and removes its scratch folder."""
        self._scratch.cleanup()
        self._mouth.close()
        self._ear.close()

    def stop(self):
        """Ends all running programs, and starts no more."""
        self.stopped = True
        with suppress(OSError):  # the job has already ended
            self._mouth.send(b"!")

    def build(self, preset, *targets):
        """Builds the targets of a preset, by default all. Returns the build folder."""
        self.run([self.top / "tools" / "build", preset, *targets])
        return self.top / "build" / preset.removesuffix("-tests")  # tests share a tree with their product

    def run(self, argv, **options):
        """Runs a program that must succeed, as `attempt` does, and returns its standard output. Raises Failed when it
        fails."""
        done = self.attempt(argv, **options)
        if done.trouble:
            self.troubles.remove(done.trouble)
            raise Failed(done.trouble)
        return done.out

    def measure(self, argv, **options):
        """Runs a program with `attempt`. Returns the figures that it printed, even if it failed."""
        return self.figures(self.attempt(argv, **options).out, Path(argv[0]).name)

    def at_once(self, function, items, most):
        """The results of the function for all items, computed several at a time."""
        with ThreadPoolExecutor(most) as pool:
            return list(pool.map(function, items))

    def attempt(self, argv, *, env=None, timeout=None, cwd=None, quiet=False):
        """Runs a program, with `env` on top of the environment, for `timeout` seconds at most. Its output is copied to
        a separate log, unless it must be quiet. An error is added to the troubles, each of which is a missed figure,
        and printed with the last lines of the output."""
        argv = [str(word) for word in argv]
        log = self._log_of(argv[0])
        patience = timeout or self.patience
        environment = {**{name: value for name, value in os.environ.items() if not STRAY.match(name)}, **SANITIZERS,
                       **(env or {})}
        with log.open("w", encoding="utf-8") as file:
            file.write(f"$ {' '.join(argv)}\n")
            file.flush()
            copy = Copy(file, quiet)
            status = self._wait(argv, copy, patience, cwd=cwd or self.top, env=environment)
        trouble = describe(status, patience)
        if not trouble:
            return Outcome(*copy.texts())
        trouble = f"{argv[0]} {trouble}; what it wrote is in {log.relative_to(self.top)}"
        with self._lock:
            self.troubles.append(trouble)
            print(f"  {trouble}\n" + "".join(f"  | {line}\n" for line in copy.tail()), end="", flush=True)
        return Outcome(*copy.texts(), trouble)

    def _log_of(self, program):
        with self._lock:
            self._runs += 1
            return self.folder / f"{self.step}-{self._runs}-{Path(program).name}.log"

    def _wait(self, argv, copy, patience, **options):
        """Runs a program to its end, or until patience ends. Returns its status, "late", or the reason why it could not
        start."""
        with self._lock:
            if self.stopped:
                return "was not started"
            try:
                process = subprocess.Popen(argv, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                           start_new_session=True, **options)
            except OSError as error:
                return f"could not be started: {error.strerror}"
        readers = copy.read(process)
        is_late = self._see_end(process.pid, patience)
        # Also kill the processes that it left behind. Until it is waited for, no other process can get its id.
        kill(process.pid)
        status = process.wait()
        for reader in readers:
            reader.join(READING)
        if self.stopped:
            return "was interrupted"
        return "late" if is_late else status

    def _see_end(self, process, patience):
        """Waits until a process ends. Asks it to end when patience ends or the job is stopped. Returns True if patience
        ended. The process may still exist."""
        end = os.pidfd_open(process)
        try:
            seen, _, _ = select.select([end, self._ear], [], [], patience)
            if end not in seen:
                kill(process, signal.SIGTERM)
                select.select([end], [], [], GRACE)
            return not seen
        finally:
            os.close(end)

    def test_programs(self, build):
        """The test programs of a build and the other tests of ctest: {name: command}."""
        tests = json.loads(self.run(["ctest", "--test-dir", build, "--show-only=json-v1"], quiet=True))["tests"]
        programs, others = set(), {}
        for test in tests:
            command = test.get("command", [])
            if any(word.startswith("--gtest_filter") for word in command):
                programs.add(command[0])
            else:
                others[test["name"]] = command
        return sorted(programs), others

    def figures(self, text, program):
        """The figures that a program printed, as in `figure: faults injected = 1200`, by name. The lines may follow the
        number that ctest prints before a test's output."""
        found = {}
        for match in FIGURE.finditer(text):
            if match["name"] in found:
                self.troubles.append(f"{program} told the figure '{match['name']}' twice")
            if not NUMBER.fullmatch(match["number"]):
                self.troubles.append(f"{program} told the figure '{match['name']}' as '{match['number']}', which is no number")
                continue
            number = float(match["number"])
            found[match["name"]] = int(number) if number.is_integer() else number
        return found


class Copy:
    """Copies the output of a process, line by line, into a file."""

    def __init__(self, file, quiet):
        self.file = file
        self.quiet = quiet
        self._out = []
        self._errors = []
        self._lock = threading.Lock()

    def texts(self):
        return "".join(self._out), "".join(self._errors)

    def tail(self):
        """The last lines of both outputs; their relative order is unknown."""
        return [line.rstrip("\n")[:LONGEST] for lines in (self._out, self._errors) for line in lines[-TAIL:]]

    def read(self, process):
        """Starts reading both outputs of a process. Returns the reading threads."""
        readers = [threading.Thread(target=self._read, args=arguments, daemon=True)
                   for arguments in ((process.stdout, self._out, self.quiet), (process.stderr, self._errors, False))]
        for reader in readers:
            reader.start()
        return readers

    def _read(self, stream, lines, is_quiet):
        with stream:
            for raw in stream:
                line = raw.decode(errors="replace")
                lines.append(line)
                if is_quiet:
                    continue
                with self._lock:
                    self.file.write(line)
                    self.file.flush()


def kill(group, number=signal.SIGKILL):
    """Sends a signal to the remaining processes of a group."""
    with suppress(ProcessLookupError):
        os.killpg(group, number)


def describe(status, patience):
    """The error in how a program ended; None if there is none."""
    if status == "late":
        return f"took more than {patience:.0f} s"
    if isinstance(status, str) or status == 0:
        return status or ""
    return f"ended with status {status}" if status > 0 else f"ended with signal {-status}"
