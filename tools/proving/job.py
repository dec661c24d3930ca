"""What a step of the proof works with: the tree, its builds, programs to run and a folder of its own."""

import json
import os
import re
import subprocess
import tempfile
from dataclasses import dataclass
from pathlib import Path

FIGURE = re.compile(r"^(?:\d+: )?figure: (?P<name>[^=]+?) = (?P<number>-?[0-9.]+)$", re.MULTILINE)


@dataclass(frozen=True)
class Figure:
    """One row of the table: what was measured, what it was to be, and whether it is."""

    name: str
    target: str
    measured: str
    reached: bool


class Failed(Exception):
    """A program of a step ended otherwise than it should, or a build did."""


class Job:
    """What the steps are given. `long` asks for the long form; `seed` is where random choices start."""

    def __init__(self, top, step, *, is_long=False, seed=1):
        self.top = Path(top)
        self.long = is_long
        self.seed = seed
        self.log = self.top / "build" / "proof" / f"{step}.log"
        self.log.parent.mkdir(parents=True, exist_ok=True)
        self.log.write_text("", encoding="utf-8")
        self._scratch = tempfile.TemporaryDirectory(prefix=f"{step}-")
        self.scratch = Path(self._scratch.name)

    def close(self):
        """Ends the job; its scratch folder goes."""
        self._scratch.cleanup()

    def build(self, preset, *targets):
        """Brings the targets of a preset up to date, all of them if none is named. Returns the build folder."""
        self.run([self.top / "tools" / "build", preset, *targets])
        return self.top / "build" / preset

    def run(self, argv, *, env=None, timeout=None, cwd=None, quiet=False):
        """Runs a program, with `env` on top of the environment, and returns what it wrote on standard output. What it
        wrote at all goes to the log, unless it is to be quiet. Raises Failed when it ends with another status than 0 or takes more than
        `timeout` seconds."""
        argv = [str(word) for word in argv]
        try:
            done = subprocess.run(argv, cwd=cwd or self.top, env={**os.environ, **(env or {})}, timeout=timeout,
                                  stdin=subprocess.DEVNULL, capture_output=True, check=False)
        except subprocess.TimeoutExpired as late:
            raise Failed(f"{argv[0]} took more than {timeout} s") from late
        except OSError as error:
            raise Failed(f"{argv[0]}: {error.strerror}") from error
        out = done.stdout.decode(errors="replace")
        with self.log.open("a", encoding="utf-8") as log:
            log.write(f"$ {' '.join(argv)}\n{'' if quiet else out}{done.stderr.decode(errors='replace')}")
        if done.returncode != 0:
            how = f"status {done.returncode}" if done.returncode > 0 else f"signal {-done.returncode}"
            raise Failed(f"{argv[0]} ended with {how}; what it wrote is in {self.log.relative_to(self.top)}")
        return out

    def test_programs(self, build):
        """The test programs of a build, and the names of the tests that are none of theirs, as ctest has them."""
        tests = json.loads(self.run(["ctest", "--test-dir", build, "--show-only=json-v1"], quiet=True))["tests"]
        programs, others = set(), []
        for test in tests:
            command = test.get("command", [])
            if any(word.startswith("--gtest_filter") for word in command):
                programs.add(command[0])
            else:
                others.append(test["name"])
        return sorted(programs), others

    @staticmethod
    def figures(text):
        """The figures that a program printed, as in `figure: faults injected = 1200`, by their names. The number that
        ctest puts before a test's lines may stand before them."""
        found = {}
        for match in FIGURE.finditer(text):
            number = float(match["number"])
            found[match["name"]] = int(number) if number.is_integer() else number
        return found
