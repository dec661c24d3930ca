# SPDX-License-Identifier: MIT
"""Tests the units for the service manager: they are valid, and the started program serves the socket that is passed to
it."""

import os
import re
import shutil
import socket
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(TOP / "virtualtv/console/python"), str(TOP / "tests/tools"), str(TOP / "tools")]

import emp_window  # noqa: E402  (needs the path above)
from measuring.lab import command_of  # noqa: E402
from scratch import run  # noqa: E402

BUILD = Path(os.environ["EMP_WINDOW_BUILD"])
NAME = "8091"


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def ask(port, command):
    """The output of a command on a server, as lines."""
    with emp_window.connect(f"http://127.0.0.1:{port}") as tv:
        return tv.run(command)


class Units(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        cls.root = cls.folder / "root"
        run("cmake", "--install", BUILD, "--component", "program", "--prefix", cls.root)
        cls.units = cls.root / "lib/systemd/user"

    def verify(self, units):
        done = subprocess.run(["systemd-analyze", "--user", "--man=no", "verify", f"emp-window@{NAME}.service", f"emp-window@{NAME}.socket"],
                              text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                              env={**os.environ, "SYSTEMD_UNIT_PATH": f"{units}:", "XDG_RUNTIME_DIR": str(self.folder)})
        return done.returncode, [line for line in done.stdout.splitlines() if "emp-window" in line]

    def test_the_service_manager_finds_nothing_wrong(self):
        self.assertEqual(self.verify(self.units), (0, []))

    def test_it_would_find_what_is_wrong(self):
        units = Path(shutil.copytree(self.units, self.folder / "wrong"))
        service = units / "emp-window@.service"
        service.write_text(service.read_text().replace("ExecStart=/bin/sh", "ExecStart=/bin/nosuch\nTypo=/bin/sh"))
        status, complaints = self.verify(units)
        self.assertNotEqual((status, complaints), (0, []))
        self.assertIn("Typo", " ".join(complaints))

    def start(self, name, options, *before):
        command = command_of((self.units / "emp-window@.service").read_text(), name)
        environment = {**os.environ, "OPTIONS": options, "HOME": str(self.folder), "XDG_STATE_HOME": str(self.folder / "state")}
        passed = [word for variable in ("HOME", "XDG_STATE_HOME", "OPTIONS", "PATH") for word in ("-E", variable)] if before else []
        process = subprocess.Popen([*before, *passed, *command], env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.STDOUT, text=True)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.terminate)
        return process

    def test_a_set_starts_when_its_socket_is_asked_and_keeps_its_state_under_its_name(self):
        port = free_port()
        process = self.start("evening", "--listen 127.0.0.1:0", "systemd-socket-activate", "-l", f"127.0.0.1:{port}")
        self.assertIn("Listening on", process.stdout.readline())
        self.assertEqual(ask(port, "SetSource 31 0"), ["int 1"])
        self.assertTrue(any((self.folder / "state/emp-window/sets/evening").iterdir()))

    def test_sets_of_two_names_run_side_by_side_without_sockets(self):
        ports = []
        for name in ("one", "two"):
            process = self.start(name, "--listen 127.0.0.1:0")
            line = process.stdout.readline()
            ports.append(int(re.search(r"http://127\.0\.0\.1:(\d+)", line)[1]))
        self.assertEqual(ask(ports[0], "SetSource 31 0"), ["int 1"])
        self.assertEqual(ask(ports[0], "GetSource 0"), ["int 31"])
        self.assertEqual(ask(ports[1], "GetSource 0"), ["int 0"])

    def test_a_set_without_a_place_for_state_told_keeps_it_in_the_home(self):
        command = command_of((self.units / "emp-window@.service").read_text(), "home")
        environment = {key: value for key, value in os.environ.items() if key != "XDG_STATE_HOME"}
        process = subprocess.Popen(command, env={**environment, "OPTIONS": "--listen 127.0.0.1:0", "HOME": str(self.folder)}, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, text=True)
        self.assertIn("http://", process.stdout.readline())
        process.terminate()
        self.assertEqual(process.wait(), 0)
        process.stdout.close()
        self.assertTrue((self.folder / ".local/state/emp-window/sets/home").is_dir())


if __name__ == "__main__":
    unittest.main()
