# SPDX-License-Identifier: MIT
"""Tests that the manual pages name everything that the help names, without errors, and that shells complete the
program's arguments."""

import os
import re
import shlex
import subprocess
import tempfile
import unittest
from pathlib import Path

TOP = Path(__file__).resolve().parent.parent.parent
PROGRAM = os.environ["EMP_WINDOW"]
PAGES = TOP / "docs/man"
COMPLETION = TOP / "docs/completion"


def run(*command, **options):
    return subprocess.run([str(word) for word in command], text=True, capture_output=True, check=False, **options)


SUBCOMMANDS = re.findall(r"^  (\w+) ", run(PROGRAM, "--help").stdout.partition("Subcommands:")[2], re.MULTILINE)


def options_in_help(*subcommand):
    said = run(PROGRAM, *subcommand, "--help").stdout
    return {name for line in re.findall(r"^  (-\S+)", said, re.MULTILINE) for name in line.split(",")}


def page_of(subcommand):
    return PAGES / ("emp-window" + (f"-{subcommand}" if subcommand else "") + ".1")


def shown(page):
    """The output of man for a page, in one line, and its error output."""
    done = run("man", "--warnings", "-E", "UTF-8", "-l", page, env={**os.environ, "LC_ALL": "C.UTF-8", "MANWIDTH": "1000", "MANPAGER": "cat"})
    return re.sub(r".\x08", "", done.stdout), done.stderr


class Pages(unittest.TestCase):
    def test_all_are_what_the_grammar_makes(self):
        done = run(TOP / "tools/manual", "--check", PROGRAM)
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_one_that_is_changed_missing_or_left_over_is_told(self):
        with tempfile.TemporaryDirectory() as folder:
            docs = Path(folder)
            self.assertEqual(run(TOP / "tools/manual", "--docs", docs, PROGRAM).returncode, 0)
            (docs / "man/emp-window-scan.1").write_text("other")
            (docs / "man/emp-window-shell.1").unlink()
            (docs / "man/emp-window-dance.1").write_text("none")
            done = run(TOP / "tools/manual", "--check", "--docs", docs, PROGRAM)
            self.assertEqual(done.returncode, 1)
            self.assertEqual(re.findall(r"emp-window-(\w+)\.1 is not", done.stderr), ["shell", "scan", "dance"])

    def test_the_program_has_one_and_each_subcommand_too(self):
        self.assertEqual({path.name for path in PAGES.iterdir()}, {page_of(name).name for name in ["", *SUBCOMMANDS]})
        self.assertLessEqual({"shell", "exec", "check", "serve"}, set(SUBCOMMANDS))

    def test_each_names_every_option_and_nothing_else_as_one(self):
        for name in ["", *SUBCOMMANDS]:
            with self.subTest(page=name):
                text, _ = shown(page_of(name))
                options = text.partition("\nOPTIONS\n")[2]
                named = {word for line in re.findall(r"^ {7}(-\S.*)$", options, re.MULTILINE) for word in re.findall(r"(?<!\S)--?[\w-]+", line.split("  ")[0])}
                wanted = options_in_help(*([name] if name else []))
                self.assertGreater(len(wanted), 2)
                self.assertEqual(named, wanted)

    def test_man_finds_nothing_wrong(self):
        for name in ["", *SUBCOMMANDS]:
            text, complaints = shown(page_of(name))
            self.assertIn("NAME", text)
            self.assertEqual(complaints, "", name)

    def test_man_would_find_what_is_wrong(self):
        with tempfile.NamedTemporaryFile("w", suffix=".1") as page:
            page.write(page_of("").read_text() + ".NOSUCH request\n")
            page.flush()
            self.assertIn("NOSUCH", shown(page.name)[1])


def bash(line):
    """The completions that bash offers at the end of a line."""
    words = shlex.split(line.replace("=", " = ")) + ([""] if line.endswith((" ", "=")) else [])
    script = 'source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _emp_window || true; printf "%s\\n" "${COMPREPLY[@]}"'
    done = run("bash", "-eu", "-c", script, "bash", COMPLETION / "emp-window.bash", *words, cwd=TOP)
    assert not done.stderr, done.stderr
    return set(done.stdout.split())


def fish(line):
    done = run("fish", "--no-config", "-c", f'source {COMPLETION}/emp-window.fish; complete -C "{line}"', cwd=TOP,
               env={**os.environ, "HOME": "/nonexistent"})
    return {offer.split("\t")[0] for offer in done.stdout.splitlines()}


class Completions(unittest.TestCase):
    def test_subcommands(self):
        for shell in (bash, fish):
            with self.subTest(shell=shell.__name__):
                self.assertLessEqual(set(SUBCOMMANDS), shell("emp-window "))
                self.assertEqual(shell("emp-window s"), {name for name in SUBCOMMANDS if name.startswith("s")})
                self.assertEqual(shell("emp-window --state docs s"), {name for name in SUBCOMMANDS if name.startswith("s")})

    def test_options_are_those_of_the_subcommand(self):
        for name in SUBCOMMANDS:
            self.assertEqual(bash(f"emp-window {name} -"), options_in_help(name))
            long_ones = {word for word in options_in_help(name) if word.startswith("--")}
            self.assertEqual(fish(f"emp-window {name} --"), long_ones)
        self.assertEqual(bash("emp-window --"), options_in_help() - {"-h"})

    def test_values_that_are_words(self):
        for shell in (bash, fish):
            with self.subTest(shell=shell.__name__):
                self.assertEqual(shell("emp-window export --format "), {"vdr", "dvbv5", "m3u", "json"})
                self.assertEqual(shell("emp-window import --format l"), {"lamedb"})
        self.assertEqual(bash("emp-window export --format=v"), {"vdr"})
        self.assertEqual(bash("emp-window --state=docs export --format="), {"vdr", "dvbv5", "m3u", "json"})

    def test_files_and_directories(self):
        self.assertEqual(bash("emp-window import READ"), {"README.md"})
        self.assertEqual(fish("emp-window import READ"), {"README.md"})
        self.assertEqual(bash("emp-window serve --snapshot READ"), {"README.md"})
        self.assertEqual(bash("emp-window serve --state READ"), set())
        self.assertEqual(bash("emp-window serve --state doc"), {"docs"})
        self.assertEqual(bash("emp-window serve --allow-host doc"), set())

    def test_zsh_reads_it_and_completes(self):
        script = f"""
zmodload zsh/zpty
zpty shell zsh -f -i
zpty -w shell 'PS1=; fpath=({COMPLETION} $fpath); autoload -U compinit; compinit -u -D; zstyle ":completion:*" list-colors ""; print READY'
zpty -r shell line '*READY*READY*'
zpty -w -n shell $'emp-window export --format v\\t'
zpty -r shell line '*vdr*' && print -r -- found
"""
        done = run("timeout", "60", "zsh", "-f", "-c", script, cwd=TOP)
        self.assertIn("found", done.stdout, done.stderr)
        self.assertEqual(run("zsh", "-n", COMPLETION / "_emp-window").stderr, "")


if __name__ == "__main__":
    unittest.main()
