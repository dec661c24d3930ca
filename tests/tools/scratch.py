# SPDX-License-Identifier: MIT
"""Code that tests of the scripts share: scripts as modules, and a scratch folder."""

import os
import shutil
import subprocess
import tempfile
import time
import unittest
from contextlib import redirect_stderr, redirect_stdout
from importlib.machinery import SourceFileLoader
from importlib.util import module_from_spec, spec_from_loader
from io import StringIO
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]


def load(name):
    """Loads a script in tools/ as a separate module."""
    loader = SourceFileLoader(f"{name}_tool", str(TOP / "tools" / name))
    module = module_from_spec(spec_from_loader(loader.name, loader))
    loader.exec_module(module)
    return module


def run_main(tool, *arguments):
    """Runs a loaded script. Returns status, standard output and standard error."""
    with redirect_stdout(StringIO()) as out, redirect_stderr(StringIO()) as errors:
        try:
            status = tool.main(arguments)
        except SystemExit as end:
            status = end.code
    return status, out.getvalue(), errors.getvalue()


def run(*command, expected=0, **options):
    """Runs a program and checks its status, 0 unless `expected` says otherwise. Returns its output."""
    done = subprocess.run([str(word) for word in command], text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options)
    assert (done.returncode == 0) == (expected == 0), f"{command}: {done.returncode}\n{done.stdout}"
    return done.stdout


class ProcessTest(unittest.TestCase):
    """A test that checks processes."""

    def assert_gone(self, process):
        """Asserts that a process ends. A zombie has ended."""
        state = Path(f"/proc/{process}/stat")
        end = time.monotonic() + 10
        while time.monotonic() < end:
            try:
                if state.read_text().rpartition(")")[2].split()[0] in "ZX":
                    return
            except (FileNotFoundError, ProcessLookupError):  # gone before it is opened, or before it is read
                return
            time.sleep(0.01)
        self.fail(f"process {process} is still there")


class ScratchTest(ProcessTest):
    def setUp(self):
        # The path has a blank, as people's paths do.
        folder = tempfile.TemporaryDirectory(prefix="scratch folder ")
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name).resolve()

    def write(self, path, text, executable=False):
        target = self.root / path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text)
        if executable:
            target.chmod(0o755)
        return target

    def copy(self, *paths):
        for path in paths:
            (self.root / path).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(TOP / path, self.root / path)

    def call(self, *command, **options):
        environment = {**os.environ, **options.pop("env", {})}
        return subprocess.run([str(part) for part in command], text=True, capture_output=True, env=environment,
                              **{"cwd": self.root, **options})
