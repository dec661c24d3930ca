# SPDX-License-Identifier: MIT
"""Runs the examples of the Python client's README unchanged except for the server's address."""

import importlib.util
import os
import re
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

from support import CLIENT, ClientTest

from emp_window import launch

README = (CLIENT / "README.md").read_text(encoding="utf-8")
BLOCKS = [block[2] for block in re.finditer(r"^```(python|robotframework)\n(.*?)^```$", README, re.MULTILINE | re.DOTALL)]


def example(text):
    """The example that contains a text."""
    found = [block for block in BLOCKS if text in block]
    assert len(found) == 1, f"{len(found)} examples with '{text}'"
    return found[0]


def robot():
    """Robot Framework if it is installed; it is not a Debian package. Otherwise its stand-in."""
    if importlib.util.find_spec("robot"):
        return [sys.executable, "-m", "robot", "--output", "NONE", "--log", "NONE", "--report", "NONE"]
    return [sys.executable, str(Path(__file__).with_name("robot_stand_in.py"))]


class ReadmeTest(ClientTest):
    def setUp(self):
        self.folder = self.scratch()

    def write(self, name, text):
        (self.folder / name).write_text(text, encoding="utf-8")

    def run_in_folder(self, *command):
        environment = {**os.environ, "PYTHONPATH": str(CLIENT), "PYTHONDONTWRITEBYTECODE": "1"}
        return subprocess.run(command, cwd=self.folder, env=environment, text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, timeout=60)

    def test_every_example_is_run_here(self):
        self.assertEqual(len(BLOCKS), 5)

    def test_the_client_connects_tunes_and_prints(self):
        with launch() as tv:
            self.write("app.py", example("com.example.guide").replace("http://127.0.0.1:8090", tv.address))
            done = self.run_in_folder(sys.executable, "app.py")
        self.assertEqual(done.stdout, "1\nLighthouse News\n['main.source = 0']\n")

    def test_the_client_goes_back(self):
        self.write("back.py", example("tv.go_back(command)"))
        self.assertEqual(self.run_in_folder(sys.executable, "back.py").stdout, "Lighthouse News\n")

    def pytest(self, text):
        program = shutil.which("pytest-3") or shutil.which("pytest")
        self.assertTrue(program, "pytest is missing; tools/setup test installs it")
        self.write("app_test.py", text)
        return self.run_in_folder(program, "-p", "no:cacheprovider", "app_test.py")

    def test_the_tests_with_pytest_pass(self):
        done = self.pytest(example("@pytest.fixture"))
        self.assertRegex(done.stdout, r"\b2 passed in")
        self.assertEqual(done.returncode, 0)

    def test_a_test_with_pytest_that_is_not_true_fails(self):
        done = self.pytest(example("@pytest.fixture").replace("GetSource(0) == 31", "GetSource(0) == 30"))
        self.assertRegex(done.stdout, r"\b1 failed, 1 passed in")

    def robot(self, text):
        self.write("TvLibrary.py", example("class TvLibrary"))
        self.write("tv.robot", text)
        return self.run_in_folder(*robot(), "tv.robot")

    def test_the_tests_with_robot_framework_pass(self):
        done = self.robot(example("*** Test Cases ***"))
        self.assertIn("2 tests, 2 passed, 0 failed", done.stdout)
        self.assertEqual(done.returncode, 0)

    def test_a_test_with_robot_framework_that_is_not_true_fails(self):
        done = self.robot(example("*** Test Cases ***").replace("    -1", "    -2"))
        self.assertIn("2 tests, 1 passed, 1 failed", done.stdout)
        self.assertEqual(done.returncode, 1)


if __name__ == "__main__":
    unittest.main()
