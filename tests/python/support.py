# SPDX-License-Identifier: MIT
"""Code that the tests of the Python client share: the client, a server with scripted answers, scratch folders."""

import json
import os
import sys
import tempfile
import threading
import unittest
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from pathlib import Path

CLIENT = Path(__file__).resolve().parents[2] / "virtualtv" / "console" / "python"
PROGRAM = os.environ["EMP_WINDOW"]
sys.path.insert(0, str(CLIENT))
sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tools"))

from scratch import ProcessTest  # noqa: E402  (needs the path above)


class Peer:
    """A server with scripted answers.

    `answers` has for each method a result, or a function of the request that returns one. An exception instead of a
    result breaks the connection, and a tuple (status, text) is the HTTP answer itself. `calls` lists the received
    requests: (method, session, parameters).
    """

    def __init__(self):
        self.calls = []
        self.headers = []
        self.ends_behind = set()  # methods after whose answer the connection ends
        self.answers = {"session.open": {"session": "one"}, "session.close": {}}
        peer = self

        class Handler(BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def do_POST(self):
                body = self.rfile.read(int(self.headers["Content-Length"]))
                peer.serve(self, body)

            def log_message(self, *_):
                pass

        self.server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.server.daemon_threads = True
        self.address = f"http://127.0.0.1:{self.server.server_port}"
        threading.Thread(target=self.server.serve_forever, kwargs={"poll_interval": 0.01}, daemon=True).start()

    def serve(self, handler, body):
        request = json.loads(body)
        self.calls.append((request["method"], handler.headers["Emp-Session"], request["params"]))
        self.headers.append(handler.headers)
        answer = self.answers[request["method"]]
        answer = answer(request) if callable(answer) else answer
        if isinstance(answer, Exception):
            handler.close_connection = True
            return
        status, text = answer if isinstance(answer, tuple) else (200, None)
        if text is None:
            part = answer if "error" in answer else {"result": answer}
            text = json.dumps({"jsonrpc": "2.0", "id": request["id"], **part})
        content = text.encode()
        handler.send_response(status)
        handler.send_header("Content-Length", str(len(content)))
        handler.end_headers()
        try:
            handler.wfile.write(content)
        except OSError:
            pass  # the client has given up
        handler.close_connection = request["method"] in self.ends_behind

    def methods(self):
        return [method for method, _, _ in self.calls]

    def close(self):
        self.server.shutdown()
        self.server.server_close()


class ClientTest(ProcessTest):
    def scratch(self):
        folder = tempfile.TemporaryDirectory(prefix="python client ")
        self.addCleanup(folder.cleanup)
        return Path(folder.name)
