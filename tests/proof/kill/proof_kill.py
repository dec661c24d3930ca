#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Kills sets at random moments and checks that nothing is lost.

proof_kill.py PROGRAM [--kills N] [--seed N] starts PROGRAM on a state directory and kills it with SIGKILL. It kills
shells that switch sources and set a key; shells that import channel lists and recordings of all kinds, which replace
or add services, and mark and edit services in between; and the program's own import and scan. After each kill it
copies and reads the database, which must be undamaged and hold everything acknowledged, in every table. Of the writes
in progress it may hold as many as the order of writes allows; of an import all or nothing, as an undisturbed set
stores it. The next set starts on the directory as it is. Prints figures; the exit status is 1 when something was lost,
damaged or left locked.
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

from lists import KINDS, RECORDING, write_list

# The sources, by the plug-in's number, with the numbers of the TV service.
SOURCES = {0: 0, 15: 1, 31: 13, 32: 14, 35: 17}
LINES = 400  # a set that is not killed needs about a second for them
LONGEST = 0.12  # seconds that a set lives at most, not counting the wait for its first reply
PATIENCE = 10  # seconds to wait for the first reply
# The services in the lists of each kind. The second list repeats some services of the first. The list that comes first
# of all shares none with them.
NUMBERS = {"a": range(1, 41), "b": [*range(1, 11), *range(101, 151)]}
FRONT, FRONT_KIND, FRONT_NUMBERS = "front.m3u", "m3u", range(201, 206)

MAIN, BEFORE, PIP = "setting db/emp/mainsource", "setting db/emp/previousmainsource", "setting db/emp/pipsource"
APPLICATION, COUNT = "setting db/kel/current_source_type", "setting kill/count"
LAST = "setting db/boot/last_service"
SOURCE, PREVIOUS, STATE = "set_state main.source", "set_state main.previous_source", "set_state main.source_state"
SERVICES = "services"
START = "set_state start.service"


class Lost(Exception):
    """Something acknowledged is missing, or something is stored partially."""


class Corrupt(Exception):
    """A file is damaged, or a set does not start on it."""


@dataclass(frozen=True)
class Line:
    """A line for the shell: whether it prints a reply, and its transactions in order."""

    text: str
    replies: bool
    writes: tuple


def columns_of(database, table):
    """The stored columns of a table, without generated ones."""
    return [row[1] for row in database.execute(f"PRAGMA table_info({table})")]


def services_in(database, tables, places):
    """All stored data of services: the rows of every table. Keys differ between imports, so they are replaced by the
    position of the service."""
    rows = []
    for table in tables:
        columns = columns_of(database, table)
        for row in database.execute(f"SELECT {', '.join(columns)} FROM {table}"):
            rows.append((table, *((name, places[value] if name in ("key", "service") else value)
                                  for name, value in zip(columns, row))))
    return tuple(sorted(rows, key=repr))


def all_in(database):
    """The content of a database, by table and key; None when no set has stored anything yet."""
    tables = {name for name, in database.execute("SELECT name FROM sqlite_schema WHERE type = 'table' "
                                                 "AND name NOT LIKE 'sqlite_%'")}
    if not tables:
        return {}
    places = {key: place for place, (key,) in enumerate(database.execute("SELECT key FROM service ORDER BY key"), 1)}
    kept = {f"{table} {key}": value for table in ("setting", "set_state")
            for key, value in database.execute(f"SELECT key, value FROM {table}")}
    if START not in kept:
        return {}
    for window in ("main", "pip"):
        for name in (f"set_state {window}.service", f"set_state {window}.previous_service"):
            kept[name] = places.get(int(kept[name]), 0)
    return {**kept, SERVICES: services_in(database, sorted(tables - {"setting", "set_state"}), places)}


def kept_in(directory, scratch):
    """The content of a state directory, read from a copy. Raises Corrupt when the database is damaged."""
    copy = scratch / "copy"
    shutil.rmtree(copy, ignore_errors=True)
    shutil.copytree(directory, copy)
    if not (copy / "tv.db").exists():
        return {}
    database = sqlite3.connect(copy / "tv.db")
    try:
        [[answer]] = database.execute("PRAGMA integrity_check").fetchall()
        if answer != "ok":
            raise Corrupt(answer)
        return all_in(database)
    except sqlite3.DatabaseError as error:
        raise Corrupt(str(error)) from error
    finally:
        database.close()


def differences(found, wanted):
    """Where two states differ, for a message."""
    told = [f"{name} is {found.get(name)} instead of {wanted.get(name)}" for name in sorted({*found, *wanted} - {SERVICES})
            if found.get(name) != wanted.get(name)]
    ours, theirs = set(found.get(SERVICES, ())), set(wanted.get(SERVICES, ()))
    told += [f"{len(rows)} rows {what}, {sorted(rows, key=repr)[0]} the first"
             for rows, what in ((ours - theirs, "too many"), (theirs - ours, "missing")) if rows]
    return "; ".join(told)


def tuned(kept, number, before):
    """The data that a set stores in one transaction when it switches to a source."""
    shown = SOURCES[number]
    plugged = number == 0 or kept[f"set_state input.{shown}.plugged"] == "1"
    return {SOURCE: str(shown), PREVIOUS: str(SOURCES[before]), STATE: "2" if plugged else "1",
            LAST: "tv-service" if number == 0 else "av-service"}


def switching(kept, chance):
    """Lines that switch sources and set a counter."""
    number = {shown: ours for ours, shown in SOURCES.items()}[int(kept[SOURCE])]
    # The first command opens an engine, which corrects the keys.
    yield Line("GetSource 0", True, ({MAIN: number}, {BEFORE: number}, {PIP: 0}))
    count = kept.get(COUNT) or 0
    for _ in range(LINES // 2):
        source = chance.choice([other for other in SOURCES if other != number])
        yield Line(f"SetSource {source} 0", True,
                   (tuned(kept, source, number), {BEFORE: number}, {APPLICATION: f":{source}"}, {MAIN: source}))
        number = source
        count += 1
        yield Line(f".vconf set {COUNT.removeprefix('setting ')} int {count}", False, ({COUNT: count},))


def marking(service):
    """Lines that give a service what lists can't contain: favourite groups, subtitles, a field without a column."""
    yield f".set service.{service}.favourites 1=1,2=0"
    yield f".set service.{service}.subtitles 70:eng:dvb,71:deu:teletext"
    yield f".set service.{service}.1003 720"


def editing():
    """Lines that edit services of the first list, whose keys and numbers count from 1."""
    yield from (".service #3 rename Other", ".service #5 move 2", ".service #4 hide on", ".service #7 renumber 99",
                ".service #9 remove")


def line_of_import(name, add=False):
    """The line that imports a list or a recording."""
    command = f".scan {name} --import" if name.endswith(RECORDING) else f".import {name}"
    return command + " --add" * add


def round_of_imports(kind, services):
    """Lines that import lists of a kind in place of each other, and add one of them. In between, they mark and edit
    services, some of which are in the second list, too. The first list shares no service with the others, so nothing
    remains from the previous round. @param services  ids of the first list"""
    first, second = (f"{name}.{kind}" for name in NUMBERS)
    return [line_of_import(FRONT), line_of_import(first), *marking(services[0]), *marking(services[-1]), *editing(),
            line_of_import(second, add=True), line_of_import(second)]


def program_import(name, add=False):
    """The arguments of the program that import a list or a recording."""
    command = ["scan", "--import"] if name.endswith(RECORDING) else ["import"]
    return [*command, *["--add"] * add, name]


def of_imports(kept):
    """The part of the stored data that imports and marks write."""
    return {name: value for name, value in kept.items()
            if name == SERVICES or (name.startswith("set_state ") and name not in (SOURCE, PREVIOUS, STATE))}


def answered(lines, output):
    """The number of lines answered in the output, and the number that may have run."""
    done = shown = 0
    for line in lines:
        start = output.find(f"> {line.text}\n")
        if start < 0:
            break
        shown += 1
        output = output[start + len(line.text) + 3:]
        if not line.replies or ("\n" in output and not output.startswith(">")):
            done = shown
    # A line without output has run once the next line is echoed.
    if done == shown and done > 0 and not lines[done - 1].replies:
        done -= 1
    return done, min(shown + 1, len(lines))


def states(kept, lines):
    """The stored data after each write of the lines, with the number of the line."""
    state = kept
    for number, line in enumerate(lines):
        for at, write in enumerate(line.writes):
            state = {**state, **write}
            yield number, at == len(line.writes) - 1, state


class Deck:
    """Deals things at random, each as often as the others."""

    def __init__(self, things, chance):
        self.things = list(things)
        self.chance = chance
        self.left = []

    def deal(self):
        """The next one."""
        if not self.left:
            self.left = self.chance.sample(self.things, len(self.things))
        return self.left.pop()


class Loop:
    """A state directory on which one set after the other is killed."""

    def __init__(self, program, folder, chance):
        self.program = program
        self.folder = folder
        self.state = folder / "state"
        self.chance = chance
        self.figures = dict.fromkeys(("kills", "kills of shells that import", "kills of imports", "kills after an answer",
                                      "kills amid a write", "states compared", "acknowledged writes checked", "lost",
                                      "corrupt"), 0)
        write_list(folder / FRONT, KINDS[FRONT_KIND](FRONT_NUMBERS))
        for kind, make in KINDS.items():
            for name, numbers in NUMBERS.items():
                write_list(folder / f"{name}.{kind}", make(numbers))
        self.start(["exec", "GetSource", "0"])
        self.rounds = {}  # the recorded rounds, by kind
        self.of_shells, self.of_program = Deck(KINDS, chance), Deck(KINDS, chance)
        self.given = set()  # the kinds of lists that shells have imported
        self.killed = set()  # the kinds whose import by the program has been killed

    def start(self, arguments, state=None, script=""):
        """Runs the program to a successful end, by default on the state directory. Returns its output."""
        done = subprocess.run([self.program, "--state", state or self.state, *arguments], cwd=self.folder, input=script,
                              capture_output=True, text=True, check=False)
        if done.returncode != 0 or "error: " in done.stdout:
            raise Corrupt(f"{' '.join(arguments)} ended with {done.returncode}: {done.stderr or done.stdout}")
        return done.stdout

    def unkilled(self, arguments, script=""):
        """The data that a set stores in an undisturbed run from the current state."""
        copy = self.folder / "unkilled"
        shutil.rmtree(copy, ignore_errors=True)
        shutil.copytree(self.state, copy)
        self.start(arguments, copy, script)
        return kept_in(copy, self.folder)

    def round_of(self, kind):
        """A round of imports: each line with the stored data after it in an undisturbed run."""
        if kind not in self.rounds:
            self.rounds[kind] = list(self.learn(kind))
        return self.rounds[kind]

    def learn(self, kind):
        kept = self.unkilled(program_import(f"a.{kind}"))
        # The table stores unsigned numbers in signed columns, in their order.
        services = sorted(dict(row[1:])["service_id"] + 2**63 for row in kept[SERVICES] if row[0] == "service")
        texts = round_of_imports(kind, services)
        for count, text in enumerate(texts, 1):
            after = self.unkilled(["shell"], "".join(line + "\n" for line in texts[:count]))
            yield Line(text, text.startswith((".import", ".scan")), (of_imports(after),))

    def round(self, number):
        """Starts a program, kills it, and checks the remaining data."""
        before = kept_in(self.state, self.folder)
        if number % 4 == 0:
            self.figures["kills of imports"] += 1
            kind = self.of_program.deal()
            self.killed.add(kind)
            name, add = self.chance.choice([("a", False), ("b", False), ("b", True)])
            arguments = program_import(f"{name}.{kind}", add)
            start = time.monotonic()
            lines = [Line(" ".join(arguments), True, (self.unkilled(arguments),))]
            # The only answer is its last line, so most runs are killed before it.
            output = self.run_and_kill(arguments, answers=0.2, longest=1.2 * (time.monotonic() - start))
            done = int("imported " in output)
            self.judge(before, lines, done, 1)
            return
        if number % 4 == 2:
            self.figures["kills of shells that import"] += 1
            kind = self.of_shells.deal()
            self.given.add(kind)
            lines = self.round_of(kind) * (LINES // len(self.round_of(kind)))
        else:
            lines = list(switching(before, self.chance))
        output = self.run_and_kill(["shell"], "".join(line.text + "\n" for line in lines))
        self.judge(before, lines, *answered(lines, output))

    def run_and_kill(self, arguments, script="", *, answers=0.8, longest=LONGEST):
        """Kills a program at a random moment; in the share `answers` of the runs, after its first answer. Returns
        its output."""
        with subprocess.Popen([self.program, "--state", self.state, *arguments], cwd=self.folder, stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            os.write(process.stdin.fileno(), script.encode())
            output = first_answer(process.stdout) if self.chance.random() < answers else b""
            end = time.monotonic() + self.chance.random() * longest
            while time.monotonic() < end and process.poll() is None:
                select.select([], [], [], max(0.0, min(0.005, end - time.monotonic())))
            ended = process.poll()
            process.kill()
            rest, errors = process.communicate()
        if errors or (script and ended is not None) or ended not in (None, 0):
            raise Corrupt(f"{arguments[0]} ended with {ended}: {errors.decode(errors='replace')}")
        return (output + rest).decode()

    def judge(self, before, lines, done, most):
        """Compares the stored data with the possible states, given the number of answered lines and of lines that may
        have run."""
        found = kept_in(self.state, self.folder)
        possible = [before] if done == 0 else []
        for number, is_last, state in states(before, lines[:most]):
            if number < done:
                self.figures["acknowledged writes checked"] += 1
            if number >= done or (number == done - 1 and is_last):
                possible.append(state)
        self.figures["states compared"] += 1
        self.figures["kills after an answer"] += done > 0
        if found not in possible:
            raise Lost(f"after {done} lines ({lines[done - 1].text if done else 'none'}): {differences(found, possible[0])}")
        if found != possible[0]:
            self.figures["kills amid a write"] += 1

    def run(self, kills):
        for number in range(1, kills + 1):
            try:
                self.figures["kills"] += 1
                self.round(number)
            except Lost as loss:
                self.figures["lost"] += 1
                print(f"kill {number}: {loss}")
            except Corrupt as damage:
                self.figures["corrupt"] += 1
                print(f"kill {number}: {damage}")
        try:
            self.start(["exec", "GetSource", "0"])
        except Corrupt as damage:
            self.figures["corrupt"] += 1
            print(f"after the last kill: {damage}")


def first_answer(stream):
    """The program's output up to its first answer; echoes of lines do not count."""
    output = b""
    end = time.monotonic() + PATIENCE
    while not any(line and not line.startswith(b"> ") for line in output.split(b"\n")[:-1]):
        ready, _, _ = select.select([stream], [], [], max(0.0, end - time.monotonic()))
        more = os.read(stream.fileno(), 65536) if ready else b""
        if not more:
            break
        output += more
    return output


def positive(text):
    """A number among the arguments that is at least 1."""
    if not text.isascii() or not text.isdecimal() or int(text) < 1:
        raise argparse.ArgumentTypeError(f"a number from 1 on is wanted, not '{text}'")
    return int(text)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", type=Path, help="the program whose sets are killed")
    parser.add_argument("--kills", type=positive, default=100, help="how many (default: %(default)s)")
    parser.add_argument("--seed", type=positive, default=1, help="where random choices start (default: %(default)s)")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="kill-") as folder:
        loop = Loop(options.program.resolve(), Path(folder), random.Random(options.seed))
        loop.run(options.kills)
    figures = {**loop.figures, "kinds of lists given to shells": len(loop.given),
               "kinds of lists whose import was killed": len(loop.killed)}
    for name, number in figures.items():
        print(f"figure: {name} = {number}")
    return 1 if loop.figures["lost"] + loop.figures["corrupt"] > 0 else 0


if __name__ == "__main__":
    sys.exit(main())
