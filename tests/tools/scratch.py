"""A scratch folder for tests of the scripts."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]


class ScratchTest(unittest.TestCase):
    def setUp(self):
        # A blank in the path, as people have them.
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
