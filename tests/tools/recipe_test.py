# SPDX-License-Identifier: MIT
"""Adds a command as CONTRIBUTING.md says. Each step that is left out must be reported with the file that lacks it.

Works on a copy of the sources. Compiles only what the command changes, and links it with the objects of this tree's
build, which EMP_WINDOW_BUILD names.
"""

import fnmatch
import json
import os
import re
import shlex
import shutil
import subprocess
import tempfile
import unittest
import urllib.request
from pathlib import Path

from scratch import TOP, run

NAME = "GetTestCard"
BUILD = Path(os.environ.get("EMP_WINDOW_BUILD", TOP / "build/debug"))

# The steps of CONTRIBUTING.md: the file, the text before which to insert (None for the end of the file), the text to
# insert.
WORKER = [
    ("Window/include/EmpTaskWindow.h", "\n  // EmpTaskWindow_Picture: what is done",
     "  /// The number of the test card. @return 1.\n  int GetTestCard(int* pnCard);\n"),
    ("Window/Src/EmpTaskWindow_Screen.cpp", "}  // namespace kel\n",
     "int CEmpTaskWindow::GetTestCard(int* pnCard) {\n  const LogScope scope(__func__);\n  *pnCard = 7;\n"
     '  KEL_LOG(kInformation, "*pnCard = [%d]", *pnCard);\n  return 1;\n}\n\n'),
    ("Window/Src/Commands.cpp", '    {"SetChannel", ', '    {"GetTestCard", {}, Value<&W::GetTestCard>},\n'),
]
HELP = ("docs/commands.help.json", '    "SetChannel": {',
        '    "GetTestCard": {\n      "help": "Returns the number of the test card.",\n'
        '      "answer": {"kind": "value", "values": "7", "help": "Its number.", "presetMeans": "Unknown; never returned."}\n    },\n')
EXAMPLE = ("docs/examples.txt", None, "\n# GetTestCard\n> .reset\n> GetTestCard\nint 7\n")
CALLS = ("tests/support/Commands.h", '    {"SetChannel", ', '    {"GetTestCard", {}, "int 7"},\n')
RESULTS = ("tests/window/cases/results.tsv", "SetChannel\t", "GetTestCard\tnone\n")
CASE = ("tests/window/cases/screen.txt", None, "\n# GetTestCard: success\n> .reset\n> GetTestCard\nint 7\n")
LOGS = ("tests/window/log_contract.tsv", None, "*pnCard = [%d]\t3\tGetTestCard\n")
MODEL = [
    ("tests/support/model/Plugin.h", "Reply getShowState(", "Reply getTestCard(const Command& command);\n"),
    ("tests/support/model/PluginPicture.cpp", "}  // namespace model\n",
     "Reply getTestCard(const Command& /*command*/) {\n  return 7;\n}\n\n"),
    ("tests/support/model/Commands.cpp", '      {"SetScreenCropRect", ', '      {"GetTestCard", getTestCard},\n'),
]
TYPINGS = "virtualtv/console/client/commands.d.ts"
TRANSCRIPT = ("tests/transcripts/test-card.txt", None, "> GetSource 0\nint 0\n> .trace on\n> GetTestCard\nint 7\n")


class Copy:
    """A copy of the sources, and objects compiled from it that replace those of the build."""

    def __init__(self, root):
        self.root = root
        self.objects = {}  # by their names in the build
        for folder in ("Window", "docs", "tests/support", "tests/window", "tests/transcripts"):
            shutil.copytree(TOP / folder, root / folder)
        (root / TYPINGS).parent.mkdir(parents=True)
        for file in (TYPINGS, str(Path(TYPINGS).with_name("typings.mjs"))):
            shutil.copy(TOP / file, root / file)
        self.entries = json.loads((BUILD / "compile_commands.json").read_text())
        self.commands = {}

    def write(self, path, before, text):
        """Inserts a text into a file, before the first occurrence of another one, or at its end."""
        file = self.root / path
        old = file.read_text() if file.exists() else ""
        at = len(old) if before is None else old.index(before)
        file.write_text(old[:at] + text + old[at:])

    def compile(self, source):
        """Compiles a source of the copy, together with the sources that the build compiles in the same unit."""
        for entry in self.entries:
            file = Path(entry["file"])
            whole = file.read_text() if file.parent.name == "Unity" else f'#include "{file}"\n'
            if f'"{TOP / source}"' in whole:
                break
        else:
            raise AssertionError(f"nothing compiles {source}")
        command = entry.get("arguments") or shlex.split(entry["command"])
        output = command[command.index("-o") + 1]
        made = self.root / "objects" / output
        made.parent.mkdir(parents=True, exist_ok=True)
        text = made.with_suffix(".cpp")
        text.write_text(re.sub(rf'"{re.escape(str(TOP))}/(?!build)([^"]+)"', self.in_copy, whole))
        folders = [f"-I{self.root / folder}" for folder in (".", "Window/include", "tests")]
        command[command.index("-o") + 1] = made
        command[command.index("-c") + 1] = text
        command = [self.in_words(word) for word in command]
        run(command[0], *folders, *command[1:], cwd=entry["directory"])
        self.objects[output] = made

    def in_copy(self, match):
        there = self.root / match[1]
        return f'"{there if there.exists() else TOP / match[1]}"'

    def in_words(self, word):
        """A word of a command, in which folders that the copy has are those of the copy."""
        word = str(word)
        for folder in ("Window", "tests/window", "tests/support"):
            word = word.replace(f"{TOP / folder}", f"{self.root / folder}")
        return word

    def embed(self):
        """Compiles the catalogue of commands in the form that the set holds, and the examples."""
        for name, file in (("commandCatalogue", "commands.json"), ("examples", "examples.txt")):
            source = self.root / f"{name}.cpp"
            run("cmake", f"-DNAME={name}", f"-DFILE={self.root / 'docs' / file}", f"-DSOURCE={source}", "-P",
                TOP / "virtualtv/embed_file.cmake")
            self.objects[name] = source.with_suffix(".o")
            run("c++", "-std=c++17", "-fPIC", "-c", source, "-o", self.objects[name])

    def link(self, target):
        """Links a program of the build with the objects compiled here. Returns the program."""
        if target not in self.commands:
            said = run("ninja", "-t", "commands", target, cwd=BUILD).splitlines()[-1]
            self.commands[target] = [word for word in shlex.split(said) if word not in (":", "&&")]
        command = list(self.commands[target])
        program = self.root / Path(target).name
        command[command.index("-o") + 1] = program
        compiler, *words = [word for word in command if word not in self.objects]
        run(compiler, *self.needed_by(command), *words, cwd=BUILD)
        return program

    def needed_by(self, command):
        """The objects compiled here that belong in a program: its own, and those in its archives."""
        for output, made in self.objects.items():
            folder = Path(output).parts[0]
            if output in command or folder == "Window" or len(Path(output).parts) == 1:
                yield made
            elif "test_model.dir" in output and "tests/libtest_model.a" in command:
                yield made


def description(program):
    """The OpenRPC document of the program's server."""
    with subprocess.Popen([program, "serve", "--fresh", "--listen", "127.0.0.1:0", "--until-eof"], stdin=subprocess.PIPE,
                          stdout=subprocess.PIPE, text=True) as server:
        address = re.search(r"http://[0-9.:]+", server.stdout.readline())[0]
        with urllib.request.urlopen(f"{address}/openrpc.json") as response:
            return response.read().decode()


class RecipeTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="recipe-")
        self.addCleanup(folder.cleanup)
        self.copy = Copy(Path(folder.name).resolve())
        self.root = self.copy.root

    def tell(self, *command, **options):
        """The output of a program that must fail."""
        return run(*command, expected=1, **options)

    def test_a_command_is_added_and_each_step_left_out_is_told(self):
        copy, root = self.copy, self.root
        for step in WORKER:
            copy.write(*step)
        copy.compile("Window/Src/Commands.cpp")
        copy.compile("Window/Src/EmpTaskWindow_Screen.cpp")

        # The catalogue.
        make = copy.link("tools/catalogue/make_catalogue")
        self.assertRegex(self.tell(make, root / "docs"), rf"docs/commands[.]help[.]json:\d+: '{NAME}' is a command and has no help")
        copy.write(*HELP)
        self.assertIn(f"docs/examples.txt: '{NAME}' has no example", self.tell(make, root / "docs"))
        copy.write(*EXAMPLE)
        self.assertRegex(self.tell(make, "--check", root / "docs"), r"docs/commands[.]json:\d+: is not what ")
        run(make, root / "docs")
        run(make, "--check", root / "docs")
        copy.embed()

        # The plug-in with its new command, which the example and the transcript use.
        program = copy.link("emp-window")
        copy.write(*TRANSCRIPT)
        run(program, "check", root / "docs/examples.txt", root / "tests/transcripts/test-card.txt")

        # The client's typings of commands.
        typings = ["node", (root / TYPINGS).with_name("typings.mjs")]
        described = description(program)
        self.assertIn("commands.d.ts is not what typings.mjs makes", self.tell(*typings, "--check", input=described))
        (root / TYPINGS).write_text(run(*typings, input=described))
        self.assertIn(f"{NAME}()", (root / TYPINGS).read_text())
        run(*typings, "--check", input=described)

        # The command's cases, and what they log.
        copy.compile("tests/window/cases/Files.cpp")
        cases = copy.link("tests/window_cases")
        only = f"--gtest_filter=*/{NAME}:AllCases.*"
        self.assertIn("tests/window/cases/results.tsv", self.tell(cases, only))
        copy.write(*RESULTS)
        self.assertIn(f"{NAME} has no case: success", said := self.tell(cases, only))
        self.assertIn("tests/window/cases", said)
        copy.write(*CASE)
        run(cases, only)
        contract = root / "tests/window/log_contract.tsv"
        logging = root / "logging"
        logging.write_text(f"#!/bin/sh\nexec '{cases}' '{only}'\n")
        logging.chmod(0o755)
        hold = [BUILD / "tests/log_contract", contract, root / "seen", logging]  # most of it is never logged here
        self.assertIn(f"not in the contract: {LOGS[2]}", said := self.tell(*hold))
        self.assertIn(f"{contract} is not", said)
        copy.write(*LOGS)
        self.assertNotIn("not in the contract: *pnCard", self.tell(*hold))

        # The tests that cover all commands.
        copy.compile("tests/window/engine/TableTest.cpp")
        self.assertIn(CALLS[0], self.tell(copy.link("tests/window_engine"), "--gtest_filter=CommandTable.*"))
        copy.write(*CALLS)
        copy.compile("tests/window/engine/TableTest.cpp")
        run(copy.link("tests/window_engine"), "--gtest_filter=CommandTable.*")

        # The model.
        self.assertIn(f"{MODEL[2][0]} has no {NAME}", self.tell(copy.link("tests/model_tests"), "--gtest_filter=Model.*"))
        for step in MODEL:
            copy.write(*step)
        copy.compile("tests/support/model/Commands.cpp")
        copy.compile("tests/support/model/PluginPicture.cpp")
        run(copy.link("tests/model_tests"), "--gtest_filter=Model.*")

    def test_the_recipe_names_every_file(self):
        text = (TOP / "CONTRIBUTING.md").read_text()
        recipe = text[text.index("## Adding a command\n"):]
        named = re.findall(r"`([^`]+)`", recipe[:recipe.index("\n## ", 1)])
        for path in [*(step[0] for step in (*WORKER, HELP, EXAMPLE, CALLS, RESULTS, CASE, LOGS, *MODEL, TRANSCRIPT)), TYPINGS]:
            self.assertTrue(any(fnmatch.fnmatch(path, name) for name in named), f"{path} is named nowhere in the recipe")


if __name__ == "__main__":
    unittest.main()
