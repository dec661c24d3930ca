# SPDX-License-Identifier: MIT
"""Runs the test cases of a Robot Framework file without that framework. Supports the part of the language that the
README's example uses. Keywords are methods of the library that the file names; blanks, underscores and case do not
count.

Usage: robot_stand_in.py FILE. Prints "N tests, N passed, N failed" and ends with the number that failed.
"""

import inspect
import re
import runpy
import sys
from pathlib import Path


def plain(name):
    return re.sub("[ _]", "", name).lower()


def same(one, other):
    assert one == other, f"{one!r} != {other!r}"


BUILT_IN = {"shouldbeequal": same, "shouldbeequalasintegers": lambda one, other: same(int(one), int(other))}


def cells(line):
    """The parts of a line, which at least two blanks separate."""
    return re.split(" {2,}", line.strip())


def sections(text):
    """The lines of each section by its name, without comments and empty lines."""
    found = {}
    for line in text.splitlines():
        if heading := re.fullmatch(r"\*+ (.+?) \*+", line):
            lines = found.setdefault(plain(heading[1]), [])
        elif line.strip() and not line.lstrip().startswith("#"):
            lines.append(line)
    return found


def run_step(library, step, variables):
    """Runs one line. A leading `${name} =` stores the keyword's result; `name=value` passes an argument by name."""
    target = re.fullmatch(r"\$\{(.+)\} ?=", step[0])
    name, *words = step[1:] if target else step
    keyword = BUILT_IN.get(plain(name)) or next(
        method for _, method in inspect.getmembers(library, inspect.ismethod) if plain(method.__name__) == plain(name))
    names = inspect.signature(keyword).parameters
    by_position, by_name = [], {}
    for word in words:
        key, equals, value = word.partition("=")
        if equals and key in names:
            by_name[key] = value
        else:
            variable = re.fullmatch(r"\$\{(.+)\}", word)
            by_position.append(variables[variable[1]] if variable else word)
    answer = keyword(*by_position, **by_name)
    if target:
        variables[target[1]] = answer


def run_test(settings, library_class, steps):
    library = library_class()
    variables = {}
    run_step(library, settings["testsetup"], variables)
    try:
        for step in steps:
            run_step(library, step, variables)
    finally:
        run_step(library, settings["testteardown"], variables)


def main(file):
    path = Path(file)
    parts = sections(path.read_text(encoding="utf-8"))
    settings = {plain(name): words for name, *words in map(cells, parts["settings"])}
    library = path.with_name(settings["library"][0])
    library_class = runpy.run_path(str(library))[library.stem]
    tests = {}
    for line in parts["testcases"]:
        if line[0] != " ":
            steps = tests.setdefault(line, [])
        else:
            steps.append(cells(line))
    failed = 0
    for name, steps in tests.items():
        try:
            run_test(settings, library_class, steps)
        except Exception as error:
            failed += 1
            print(f"{name}: {type(error).__name__}: {error}")
    print(f"{len(tests)} tests, {len(tests) - failed} passed, {failed} failed")
    return failed


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
