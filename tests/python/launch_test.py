# SPDX-License-Identifier: MIT
"""Tests `launch`: how the virtual TV starts, and that it ends."""

import json
import os
import signal
import subprocess
import sys
import unittest
from unittest import mock

from support import CLIENT, PROGRAM, ClientTest

from emp_window import EmpConnectionError, EmpLaunchError, connect, launch

LIST = "Örtlich;Test:11836:HC34M2O0S0:S19.2E:27500:101:102=deu:104:0:28106:1:1101:0\n"


class LaunchTest(ClientTest):
    def fake(self, script):
        """A program written as a shell script."""
        path = self.scratch() / "fake"
        path.write_text(f"#!/bin/sh\n{script}\n")
        path.chmod(0o755)
        return path

    def test_each_is_fresh_and_its_own_and_ends_with_close(self):
        with launch() as one, launch(app_id="com.example.guide") as other:
            self.assertNotEqual(one.address, other.address)
            one.set("main.source", 13)
            self.assertEqual((one.window.GetSource(0), other.window.GetSource(0)), (31, 0))
        for tv in (one, other):
            with self.assertRaises(ProcessLookupError):
                os.kill(tv.pid, 0)
        one.close()

    def test_the_program_is_that_of_the_option_the_environment_or_the_path(self):
        with mock.patch.dict(os.environ, {"EMP_WINDOW": "/no/such"}):
            launch(program=PROGRAM).close()
            with self.assertRaisesRegex(EmpLaunchError, "^/no/such: there is no such program; EMP_WINDOW"):
                launch()
        folder = os.path.dirname(PROGRAM)
        with mock.patch.dict(os.environ, {"PATH": folder + os.pathsep + os.environ["PATH"]}):
            del os.environ["EMP_WINDOW"]
            launch().close()

    def test_a_list_is_imported(self):
        path = self.scratch() / "channels.conf"
        path.write_text(LIST, encoding="utf-8")
        with launch(list=path) as tv:
            self.assertEqual([service["name"] for service in tv.services()["services"]], ["Örtlich"])

    def test_a_list_that_is_not_utf_8_or_not_there_is_told(self):
        path = self.scratch() / "latin1.conf"
        path.write_bytes(LIST.encode("latin-1"))
        with self.assertRaisesRegex(ValueError, "latin1.conf: not UTF-8"):
            launch(list=path)
        with self.assertRaises(FileNotFoundError):
            launch(list=path.with_name("none.conf"))

    def test_a_snapshot_is_where_it_starts_as_a_document_or_a_file(self):
        with launch() as first:
            first.set("country", 42)
            snapshot = first.snapshot()
        path = self.scratch() / "snapshot.json"
        path.write_text(json.dumps(snapshot))
        for given in (snapshot, path, str(path)):
            with launch(snapshot=given) as tv:
                self.assertEqual(tv.get("country"), "42")

    def test_a_state_directory_keeps_what_it_is_given(self):
        state = self.scratch() / "state"
        with launch(state=state) as tv:
            tv.set("country", 7)
        with launch(state=state) as tv:
            self.assertEqual(tv.get("country"), "7")

    def test_a_token_is_wanted_and_given(self):
        path = self.scratch() / "token"
        path.write_text("s3cret\n")
        path.chmod(0o600)
        with launch(options=["--token", str(path)], token="s3cret") as tv:
            self.assertEqual(tv.window.GetTVMode(), 1)
            with self.assertRaisesRegex(EmpConnectionError, "a token is wanted") as raised:
                connect(tv.address)
            self.assertEqual(raised.exception.status, 401)

    def test_a_program_that_fails_or_is_another_one_is_told_with_what_it_wrote(self):
        with self.assertRaisesRegex(EmpLaunchError, "(?s)--nonsense: ended with status 2\n.*--nonsense"):
            launch(options=["--nonsense"])
        with self.assertRaisesRegex(EmpLaunchError, "an address is wanted in its first line, not 'hello'\nmore$"):
            launch(program=self.fake("echo more >&2; echo hello; exec sleep 60"))
        with self.assertRaisesRegex(EmpLaunchError, "ended with signal 9"):
            launch(program=self.fake("kill -9 $$"))
        with self.assertRaisesRegex(EmpLaunchError, "fake: Permission denied"):
            program = self.fake("")
            program.chmod(0o600)
            launch(program=program)

    def test_a_program_that_says_nothing_is_ended(self):
        pid = self.scratch() / "pid"
        with mock.patch("emp_window._START_PATIENCE", 0.5):
            with self.assertRaisesRegex(EmpLaunchError, "no address within 0.5 seconds"):
                launch(program=self.fake(f"echo $$ > '{pid}'; exec sleep 60"))
        self.assert_gone(int(pid.read_text()))

    def test_a_program_that_does_not_end_by_itself_is_killed(self):
        with launch() as tv, mock.patch("emp_window._END_PATIENCE", 0.2):
            os.kill(tv.pid, signal.SIGSTOP)
            tv._http._connection.sock.settimeout(0.2)  # until the session counts as closed
            tv.close()
        self.assert_gone(tv.pid)

    def test_it_ends_when_the_process_that_launched_it_is_killed(self):
        script = "from emp_window import launch; tv = launch(); print(tv.pid, flush=True); input()"
        environment = {**os.environ, "PYTHONPATH": str(CLIENT), "PYTHONDONTWRITEBYTECODE": "1"}
        with subprocess.Popen([sys.executable, "-c", script], env=environment, stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE) as parent:
            pid = int(parent.stdout.readline())
            parent.kill()
        self.assert_gone(pid)


if __name__ == "__main__":
    unittest.main()
