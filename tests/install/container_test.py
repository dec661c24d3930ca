# SPDX-License-Identifier: MIT
"""Tests the scripts of the container: the set is served to clients with the token, and the check reports whether it
answers."""

import json
import os
import signal
import socket
import subprocess
import tempfile
import unittest
import urllib.error
import urllib.request
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
SCRIPTS = TOP / "tools/shipping/image"
BUILD = Path(os.environ["EMP_WINDOW_BUILD"])


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Container(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.environment = {**os.environ, "PATH": f"{BUILD}:{os.environ['PATH']}", "EMP_WINDOW_FOLDER": folder.name,
                            "EMP_WINDOW_PORT": str(free_port())}

    def start(self, *options, **variables):
        process = subprocess.Popen([SCRIPTS / "serve", *options], env={**self.environment, **variables}, text=True,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        self.assertIn("http://0.0.0.0:", process.stdout.readline())
        return process

    def is_healthy(self):
        done = subprocess.run([SCRIPTS / "healthy"], env=self.environment, capture_output=True)
        return done.returncode == 0

    def token(self):
        return (self.folder / "token").read_text(encoding="utf-8").strip()

    def status(self, token):
        """The HTTP status of a call with this token."""
        call = json.dumps({"jsonrpc": "2.0", "id": 1, "method": "tv.state"}).encode()
        request = urllib.request.Request(f"http://127.0.0.1:{self.environment['EMP_WINDOW_PORT']}/rpc", call,
                                         {"Content-Type": "application/json", "Authorization": f"Bearer {token}"})
        try:
            with urllib.request.urlopen(request) as answer:
                return answer.status
        except urllib.error.HTTPError as refusal:
            refusal.close()
            return refusal.code

    def test_a_set_is_healthy_while_it_answers(self):
        self.assertFalse(self.is_healthy())
        process = self.start()
        self.assertTrue(self.is_healthy())
        process.send_signal(signal.SIGSTOP)
        self.assertFalse(self.is_healthy())
        process.send_signal(signal.SIGCONT)
        self.assertTrue(self.is_healthy())
        process.terminate()
        self.assertEqual(process.wait(), 0)
        self.assertFalse(self.is_healthy())

    def test_a_token_is_made_once_and_only_its_owner_reads_it(self):
        process = self.start()
        token = self.token()
        self.assertRegex(token, "^[0-9a-f]{48}$")
        self.assertEqual((self.folder / "token").stat().st_mode & 0o777, 0o600)
        self.assertEqual((self.status(token), self.status("wrong")), (200, 401))
        process.terminate()
        process.wait()
        self.start()
        self.assertEqual(self.token(), token)

    def test_a_token_that_is_given_counts(self):
        self.start(EMP_WINDOW_TOKEN="known")
        self.assertEqual((self.status("known"), self.token()), (200, "known"))
        self.assertTrue(self.is_healthy())

    def test_further_options_reach_the_server(self):
        self.start("--no-wait", "--max-sessions", "7")
        done = subprocess.run([SCRIPTS / "serve", "--no-such"], env=self.environment, text=True, capture_output=True)
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("--no-such", done.stderr)


if __name__ == "__main__":
    unittest.main()
