#!/usr/bin/env python3
"""Kills sets at random moments and looks whether anything is lost.

proof_kill.py PROGRAM [--kills N] [--seed N] starts the shell of PROGRAM on a state directory, has it switch sources, set
a key and import channel lists, and kills it with SIGKILL; half of the kills hit sets that import. After each, the database
is copied and read: it must be whole, hold all that had been answered, and of what was under way a part that the order of
writes allows, of an import all or nothing. The next set starts on the directory as it is. Prints figures; the status is 1
when something was lost, damaged or left locked.
"""

import argparse
import os
import random
import select
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path

# Inputs: the plug-in's number of each, and the TV service's.
SOURCES = {0: 0, 15: 1, 31: 13, 32: 14, 35: 17}
LINES = 400  # a set that is not killed is through with them after a second or so
LONGEST = 0.12  # seconds that a set may live, but for the time that the first reply takes
LISTS = {"a.conf": range(1, 41), "b.conf": range(101, 161)}

MAIN, BEFORE, PIP = "db/emp/mainsource", "db/emp/previousmainsource", "db/emp/pipsource"
APPLICATION, COUNT = "db/kel/current_source_type", "kill/count"


class Lost(Exception):
    """Something that had been answered is not there, or something is there in part."""


class Corrupt(Exception):
    """A file is damaged, or a set does not start on it."""


@dataclass(frozen=True)
class Line:
    """A line of the shell's: whether it prints a reply, and what it writes, a transaction each, in order."""

    text: str
    replies: bool
    writes: tuple


def channel_list(numbers):
    """A channel list with these numbers as major numbers and service ids' last part."""
    return "".join(f"Service {n};Net:474000:B8C23D12G4M64T8Y0:T:27500:{n}1:{n}2=eng:0:0:{n}:1:1:0\n" for n in numbers)


def kept_in(directory, scratch):
    """What a state directory holds, read from a copy. Raises Corrupt when the database is damaged."""
    copy = scratch / "copy"
    shutil.rmtree(copy, ignore_errors=True)
    shutil.copytree(directory, copy)
    if not (copy / "tv.db").exists():
        return {}
    try:
        database = sqlite3.connect(copy / "tv.db")
        [[answer]] = database.execute("PRAGMA integrity_check").fetchall()
        if answer != "ok":
            raise Corrupt(answer)
        if not database.execute("SELECT 1 FROM sqlite_schema").fetchall():
            return {}
        kept = dict(database.execute("SELECT key, value FROM setting"))
        state = dict(database.execute("SELECT key, value FROM set_state"))
        services = [number for number, in database.execute("SELECT service_id FROM service ORDER BY key")]
    except sqlite3.DatabaseError as error:
        raise Corrupt(str(error)) from error
    finally:
        database.close()
    if not state:
        return {}
    # The table keeps unsigned numbers in signed columns, in their order.
    ids = tuple(number + 2**63 for number in services)
    return {**kept, "source": int(state["main.source"]), "services": ids, "starts with": int(state["start.service"])}


def shown(value):
    """A value in a message."""
    return f"{len(value)} from {value[0]} on" if isinstance(value, tuple) else value


def tracked(kept):
    """The part of what is kept that the lines write."""
    return {name: kept.get(name) for name in (MAIN, BEFORE, PIP, APPLICATION, COUNT, "source", "services",
                                              "starts with")}


def switching(kept, chance):
    """Lines of a set that switches sources and counts."""
    number = {shown: ours for ours, shown in SOURCES.items()}[kept["source"]]
    # The first command opens an engine, which puts the keys right.
    yield Line("GetSource 0", True, ({MAIN: number}, {BEFORE: number}, {PIP: 0}))
    count = kept.get(COUNT) or 0
    for _ in range(LINES // 2):
        source = chance.choice([other for other in SOURCES if other != number])
        yield Line(f"SetSource {source} 0", True,
                   ({"source": SOURCES[source]}, {BEFORE: number}, {APPLICATION: f":{source}"}, {MAIN: source}))
        number = source
        count += 1
        yield Line(f".vconf set {COUNT} int {count}", False, ({COUNT: count},))


def importing(lists):
    """Lines of a set that imports one list after the other. @param lists  the services that each brings."""
    for _ in range(LINES // 2):
        for name, services in lists.items():
            yield Line(f".import {name}", True, ({"services": services, "starts with": services[0]},))


def answered(lines, output):
    """How many lines the output answers, and how many may have run."""
    done = shown = 0
    for line in lines:
        start = output.find(f"> {line.text}\n")
        if start < 0:
            break
        shown += 1
        output = output[start + len(line.text) + 3:]
        if not line.replies or ("\n" in output and not output.startswith(">")):
            done = shown
    # A line that prints nothing is through when the next one shows.
    if done == shown and done > 0 and not lines[done - 1].replies:
        done -= 1
    return done, min(shown + 1, len(lines))


def states(kept, lines):
    """What is kept after each write of the lines, with the line that it belongs to."""
    state = tracked(kept)
    for number, line in enumerate(lines):
        for at, write in enumerate(line.writes):
            state = {**state, **write}
            yield number, at == len(line.writes) - 1, state


class Loop:
    """A state directory on which one set after the other is killed."""

    def __init__(self, program, folder, chance):
        self.program = program
        self.folder = folder
        self.state = folder / "state"
        self.chance = chance
        self.figures = dict.fromkeys(("kills", "kills amid a write", "acknowledged writes checked", "lost", "corrupt"), 0)
        for name, numbers in LISTS.items():
            (folder / name).write_text(channel_list(numbers), encoding="utf-8")
        self.lists = {name: self.services_of(name) for name in LISTS}

    def start(self, arguments, **options):
        return subprocess.run([self.program, "--state", self.state, *arguments], cwd=self.folder, capture_output=True,
                              text=True, check=False, **options)

    def services_of(self, name):
        """The services that a list brings, as a set that nobody kills keeps them."""
        done = self.start(["import", name])
        if done.returncode != 0:
            raise Corrupt(done.stderr)
        return kept_in(self.state, self.folder)["services"]

    def round(self, number):
        """Starts a set, kills it, looks at what it left."""
        before = kept_in(self.state, self.folder)
        lines = list(importing(self.lists) if number % 2 == 0 else switching(before, self.chance))
        output = self.run_and_kill("".join(line.text + "\n" for line in lines))
        self.figures["kills"] += 1
        self.judge(before, lines, output)

    def run_and_kill(self, script):
        """What a set printed until it was killed, at a random moment from its start on."""
        with subprocess.Popen([self.program, "--state", self.state, "shell"], cwd=self.folder, stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            os.write(process.stdin.fileno(), script.encode())
            if self.chance.random() < 0.8:
                select.select([process.stdout], [], [], 10)
            end = time.monotonic() + self.chance.random() * LONGEST
            while time.monotonic() < end:
                select.select([], [], [], max(0.0, end - time.monotonic()))
            ended = process.poll()
            process.kill()
            output, errors = process.communicate()
        if ended is not None or errors:
            raise Corrupt(f"a set ended with {ended}: {errors.decode(errors='replace')}")
        return output.decode()

    def judge(self, before, lines, output):
        done, most = answered(lines, output)
        found = tracked(kept_in(self.state, self.folder))
        possible = [tracked(before)] if done == 0 else []
        for number, is_last, state in states(before, lines[:most]):
            if number < done:
                self.figures["acknowledged writes checked"] += 1
            if number >= done or (number == done - 1 and is_last):
                possible.append(state)
        if found not in possible:
            wanted = possible[0]
            raise Lost(f"after {done} lines ({lines[done - 1].text}): " + ", ".join(
                f"{name} is {shown(found[name])} instead of {shown(wanted[name])}" for name in wanted if found[name] != wanted[name]))
        if found != possible[0]:
            self.figures["kills amid a write"] += 1

    def run(self, kills):
        for number in range(1, kills + 1):
            try:
                self.round(number)
            except Lost as loss:
                self.figures["lost"] += 1
                print(f"kill {number}: {loss}")
            except Corrupt as damage:
                self.figures["corrupt"] += 1
                print(f"kill {number}: {damage}")
        last = self.start(["exec", "GetSource", "0"])
        if last.returncode != 0:
            self.figures["corrupt"] += 1
            print(f"after the last kill: {last.stderr}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", type=Path, help="the program whose sets are killed")
    parser.add_argument("--kills", type=int, default=100, help="how many (default: %(default)s)")
    parser.add_argument("--seed", type=int, default=1, help="where random choices start (default: %(default)s)")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="kill-") as folder:
        loop = Loop(options.program.resolve(), Path(folder), random.Random(options.seed))
        loop.run(options.kills)
    for name, number in loop.figures.items():
        print(f"figure: {name} = {number}")
    return 1 if loop.figures["lost"] + loop.figures["corrupt"] > 0 else 0


if __name__ == "__main__":
    sys.exit(main())
