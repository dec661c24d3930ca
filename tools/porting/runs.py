# SPDX-License-Identifier: MIT
"""Compares the behaviour of a target's process with that of this machine's own."""

import difflib
import functools
import re
import subprocess
import tempfile

from porting.targets import run

LINES = 20  # number of lines of a difference to show


def sessions(top):
    """The files that are replayed."""
    return sorted([*top.glob("tests/transcripts/*.txt"), *top.glob("tests/window/cases/*.txt"), top / "docs/examples.txt"])


def check(top, target):
    """Replays the files as transcripts. Returns how many of how many passed, and the errors."""
    files = sessions(top)
    done = subprocess.run([*target.command(top, target.program(top)), "check", *map(str, files)], text=True,
                          errors="replace", stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=target.environment(top))
    found = re.search(r"transcripts: (\d+) passed, (\d+) failed", done.stdout)
    passed = f"{found[1] if found else 0} of {len(files)}"
    if found and not done.returncode and int(found[1]) == len(files):
        return passed, []
    return passed, ["transcripts or cases are not true:\n" + "\n".join(done.stdout.splitlines()[-LINES:])]


def as_session(file):
    """The lines of a file as input, with calls and log switched on. At each fresh start it also prints the keys stored
    before."""
    yield from (".trace on", ".log on")
    for line in file.read_text(encoding="utf-8").splitlines():
        if line.startswith(">") and not re.match(r"> \.(trace|log) ", line):
            if line == "> .reset":
                yield ".vconf"
            yield line[1:].removeprefix(" ")
            if line == "> .reset":
                yield from (".trace on", ".log on")
    yield ".vconf"


@functools.cache  # this machine's own results are compared with those of each target
def observed(top, target, file):
    """Replies, calls, log and stored keys of a session."""
    with tempfile.TemporaryDirectory() as state:
        command = [*target.command(top, target.program(top)), "--state", state, "shell"]
        done = subprocess.run(command, input="\n".join([*as_session(file), ""]).encode(), cwd=file.parent,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=target.environment(top))
        return done.stdout.decode(errors="replace").splitlines()


def differences(top, target, own):
    """The sessions in which the target's replies, calls, log lines or keys differ from this machine's."""
    found = []
    for file in sessions(top) if target is not own else []:
        wanted = observed(top, own, file)
        if sum(line.startswith("call ") for line in wanted) < 10:
            found.append(f"{file.name} makes hardly a call to the set")
        differing = list(difflib.unified_diff(wanted, observed(top, target, file), own.name, target.name, lineterm="", n=1))
        if differing:
            found.append(f"{file.name} differs:\n" + "\n".join(differing[:LINES]))
    return found


def plug_in_tests(top, target):
    """Builds and runs all test programs of the plug-in. Returns how many tests passed, and the errors."""
    tree = target.folder(top) / "set"
    names = re.findall(r"^window_suite\((\w+)", (top / "tests/CMakeLists.txt").read_text(encoding="utf-8"), re.MULTILINE)
    names += ["window_catalogue", "window_cases"]
    run(["ninja", "-C", tree, *names])
    passed, troubles = 0, []
    for name in names:
        done = subprocess.run(target.command(top, tree / "tests" / name), text=True, errors="replace",
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=target.environment(top))
        found = re.search(r"^\[  PASSED  \] (\d+) test", done.stdout, re.MULTILINE)
        passed += int(found[1]) if found else 0
        if done.returncode or not found:
            lines = [line for line in done.stdout.splitlines() if not line.startswith(("[ RUN", "[       OK"))]
            troubles.append(f"{name} fails:\n" + "\n".join(lines[-LINES:]))
    return f"{passed:,}", troubles
