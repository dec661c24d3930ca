# SPDX-License-Identifier: MIT
"""Writes the plug-in's sources with all changes in them; each is selected by its number at run time.

A site becomes `(mutants::active(17) ? (a <= b) : (a < b))`, so that one build holds all mutants. To remove a label of a
switch, the value of the label is hidden. Constants and tables that the compiler normally computes are computed at the
start of the program instead. Constants that the compiler needs stay unchanged; they are found by trial.
"""

import concurrent.futures
import os
import re
import shlex
import subprocess

from mutation.sites import Mutant, find

ERROR = re.compile(r"^(?P<file>[^:\n]+):(?P<line>\d+):\d+: (?:fatal )?error: (?P<what>.*)", re.MULTILINE)
NEEDED = re.compile(r"value of '(?:[\w:]*::)?(?:\{anonymous\}::)?(\w+)' is not usable in a constant expression"
                    r"|(?:'(?:const|constexpr)[^']* (?:kel::)?(?:\{anonymous\}::)?(\w+)'|'(\w+)') was not (?:declared|initialized)"
                    r"|lambda capture of '(\w+)'|'(\w+)' is not captured")
ROUNDS = 12


def on_one_line(code):
    """Code without line breaks, so that following code keeps its line numbers, which log messages contain."""
    return re.sub(r"\s*\n\s*", " ", re.sub(r"\s*//[^\n\"]*\n", "\n", code))


class Sources:
    """The sources with their sites, and the mutated versions."""

    def __init__(self, top, sources, headers, includes):
        self.texts, self.sites, self.constants, self.needed = find(top, sources, headers, includes)
        self.sources = sources
        self.includes = includes
        self.unusable = {}  # lines without possible changes, by file
        self.mutants = []

    def write(self, folder):
        """Writes the mutated sources; changes that do not compile are left out step by step."""
        for _ in range(ROUNDS):
            self.emit(folder)
            if not self.learn(folder):
                return
        raise RuntimeError(f"the mutated sources do not compile after {ROUNDS} rounds; try what learn() prints")

    def emit(self, folder):
        self.mutants = []
        for name in self.texts:
            path = folder / name
            path.parent.mkdir(parents=True, exist_ok=True)
            text = self.mutated(name)
            if not path.exists() or path.read_text(encoding="utf-8") != text:
                path.write_text(text, encoding="utf-8")

    def mutated(self, name):
        text = self.texts[name]
        body = self.stretch(name, 0, len(text), self.sites[name])
        if name.endswith(".h"):
            first = "#pragma once\n"
            return body.replace(first, f'{first}#pragma GCC system_header\n#include "mutants.h"\n#line 2\n', 1)
        return f'#include "mutants.h"\n#line 1\n{body}'

    def relaxed(self, name, site):
        """The head of a constant's declaration, changed so that the constant is computed at start if the compiler does
        not need it."""
        head = self.texts[name][site.begin:site.end]
        if site.constant in self.needed:
            return head
        if site.is_inline and not re.search(r"\binline\b", head):
            head = f"inline {head}"
        if head.rstrip().endswith("*"):
            return re.sub(r"\bconstexpr\s+", "", head) + "const "
        return re.sub(r"\bconstexpr(\s+const)?\b", "const", head)

    def stretch(self, name, begin, end, sites):
        """A stretch of a source with the sites in it."""
        text, at, parts = self.texts[name], begin, []
        for site in sites:
            parts.append(text[at:site.begin])
            parts.append(self.choice(name, site))
            at = site.end
        return "".join([*parts, text[at:end]])

    def choice(self, name, site):
        if site.constant:
            return self.relaxed(name, site)
        plain = self.stretch(name, site.begin, site.end, site.inside)
        line = self.texts[name].count("\n", 0, site.begin) + 1
        if line in self.unusable.get(name, ()) or site.variable in self.needed:
            return plain
        before = re.sub(r"\s*\n\s*", " ", self.texts[name][site.begin:site.end])
        for label in site.labels:
            number = self.note(name, line, site, f"case {label}", "no such case")
            plain = f"mutants::without({number}, {plain}, {label})"
        if not site.variants:
            return plain
        choices = ""
        for text, called in site.variants:
            choices += f"mutants::active({self.note(name, line, site, before, called)}) ? ({on_one_line(text)}) : "
        return f"({choices}({plain}))"

    def note(self, name, line, site, before, after):
        column = site.begin - self.texts[name].rfind("\n", 0, site.begin)
        mutant = Mutant(name, line, column, before, after, site.is_table, len(self.mutants) + 1)
        self.mutants.append(mutant)
        return mutant.number

    def learn(self, folder):
        """Compiles the mutated sources, and removes what does not compile. Returns True if something was removed."""
        def compile_one(source):
            command = ["g++", "-std=c++17", "-fsyntax-only", "-w", "-fmax-errors=0",
                       *[f"-I{folder / include}" for include in self.includes], str(folder / source)]
            done = subprocess.run(command, capture_output=True, text=True, check=False,
                                  env={**os.environ, "LC_ALL": "C"})
            return "" if done.returncode == 0 else done.stderr or shlex.join(command)

        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            said = "\n".join(pool.map(compile_one, self.sources))
        needed = {name for match in NEEDED.finditer(said) for name in match.groups() if name} & self.constants
        if needed - self.needed:
            self.needed |= needed
            return True
        for error in ERROR.finditer(said):
            name = os.path.relpath(error["file"], folder)
            if name in self.texts:
                self.unusable.setdefault(name, set()).add(int(error["line"]))
        if said.strip() and not ERROR.search(said):
            raise RuntimeError(said)
        return bool(said.strip())
