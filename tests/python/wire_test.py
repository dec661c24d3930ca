# SPDX-License-Identifier: MIT
"""Tests the Python client on a server with scripted answers."""

import select
import threading
import unittest
import warnings

from support import ClientTest, Peer

from emp_window import EmpConnectionError, EmpRpcError, EmpSessionWarning, connect


class WireTest(ClientTest):
    def setUp(self):
        self.peer = Peer()
        self.addCleanup(self.peer.close)

    def connected(self, **options):
        tv = connect(self.peer.address, **options)
        self.addCleanup(tv.close)
        return tv

    def test_bytes_that_are_not_utf_8_are_escaped(self):
        tv = self.connected()
        self.peer.answers["window.GetResolutionDetail"] = {"accepted": True, "kind": "ascii", "value": "a\ufffd", "bytes": "Yf8="}
        self.assertEqual(tv.window.GetResolutionDetail().encode("utf-8", "surrogateescape"), b"a\xff")

    def test_units_that_are_not_utf_16_are_kept(self):
        tv = self.connected()
        reply = {"accepted": True, "kind": "unicode", "value": "A\ufffd", "units": [65, 0xD83D, 0xDE00, 0xD800]}
        self.peer.answers["window.execute"] = reply
        self.assertEqual(tv.execute("GetCurrentChannel_Name"), "A\U0001F600\ud800")

    def test_an_empty_reply_is_none_and_for_execute_the_empty_text(self):
        tv = self.connected()
        empty = {"accepted": True, "kind": "empty"}
        self.peer.answers.update({"window.SetMute": empty, "window.execute": empty})
        self.assertEqual((tv.window.SetMute(), tv.execute("SetMute")), (None, ""))

    def test_what_a_refused_command_wrote_is_answered(self):
        tv = self.connected()
        self.peer.answers["window.execute"] = {"accepted": False, "kind": "int", "value": -1}
        self.assertEqual(tv.execute("Odd"), -1)
        self.peer.answers["window.execute"] = {"accepted": False, "kind": "empty"}
        self.assertIsNone(tv.execute("Odd"))

    def test_integers_beyond_53_bits_go_as_texts(self):
        tv = self.connected()
        self.peer.answers["tv.call"] = {}
        tv.call("tv.call", {"all": [2**53 - 1, 2**53, -2**53, True], "one": {"value": 2**64 - 1}})
        self.assertEqual(self.peer.calls[-1][2], {"all": [2**53 - 1, "9007199254740992", "-9007199254740992", True],
                                                  "one": {"value": "18446744073709551615"}})

    def test_a_call_on_which_the_connection_breaks_fails_and_is_not_sent_again(self):
        tv = self.connected()
        self.peer.answers["tv.restart"] = ConnectionResetError()
        with self.assertRaisesRegex(EmpConnectionError, "tv.restart: the connection to .* broke") as raised:
            tv.restart()
        self.assertTrue(raised.exception.sent)
        self.assertEqual(self.peer.methods(), ["session.open", "tv.restart"])
        self.peer.answers["tv.state"] = {"revision": 1}
        self.assertEqual(tv.state(), {"revision": 1})

    def test_a_connection_that_the_server_ended_between_calls_is_made_anew(self):
        tv = self.connected()
        self.peer.answers.update({"tv.knobs": {"knobs": []}, "tv.state": {}})
        self.peer.ends_behind = {"tv.knobs"}
        tv.knobs()
        select.select([tv._http._connection.sock], [], [], 10)  # until the end of the connection has arrived
        self.assertEqual(tv.state(), {})
        self.assertEqual(self.peer.methods(), ["session.open", "tv.knobs", "tv.state"])

    def test_no_answer_within_the_time_is_told(self):
        tv = self.connected(timeout=0.05)
        done = threading.Event()
        self.addCleanup(done.set)
        self.peer.answers["tv.state"] = lambda _: done.wait(10) and {}
        with self.assertRaisesRegex(EmpConnectionError, "tv.state: .*timed out") as raised:
            tv.state()
        self.assertTrue(raised.exception.sent)

    def test_a_session_that_is_gone_before_the_call_is_renewed_and_the_call_runs_once(self):
        tv = self.connected()
        self.peer.answers["window.GetTVMode"] = {"accepted": True, "kind": "int", "value": 1}
        tv.window.GetTVMode()
        gone = {"error": {"code": 1003, "message": "No such session", "data": {"reason": "there is no session 'one'"}}}
        replies = [gone, {"accepted": True, "kind": "int", "value": 2}]
        self.peer.answers["window.GetTVMode"] = lambda _: replies.pop(0)
        self.peer.answers["session.open"] = {"session": "two"}
        with self.assertWarns(EmpSessionWarning):
            self.assertEqual(tv.window.GetTVMode(), 2)
        self.assertEqual([call[:2] for call in self.peer.calls[-3:]],
                         [("window.GetTVMode", "one"), ("session.open", None), ("window.GetTVMode", "two")])

    def test_a_session_that_ends_while_the_call_runs_is_an_error(self):
        tv = self.connected()
        ended = {"error": {"code": 1003, "message": "No such session", "data": {"reason": "the session has ended"}}}
        self.peer.answers["window.SetChannel"] = ended
        with self.assertRaises(EmpRpcError) as raised:
            tv.window.SetChannel(3)
        self.assertEqual((raised.exception.code, raised.exception.reason), (1003, "the session has ended"))
        self.assertEqual(self.peer.methods().count("window.SetChannel"), 1)
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", EmpSessionWarning)
            self.peer.answers["tv.state"] = {}
            self.assertEqual(tv.state(), {})

    def test_the_application_and_the_token_go_along(self):
        self.connected(app_id="com.example.guide", widget_id="w", token="s3cret")
        self.assertEqual(self.peer.calls[0][2], {"appId": "com.example.guide", "widgetId": "w"})
        self.assertEqual(self.peer.headers[0]["Authorization"], "Bearer s3cret")

    def test_a_status_of_http_is_told_with_its_text(self):
        tv = self.connected()
        for status, sent in [(401, False), (403, False), (503, False), (500, True)]:
            self.peer.answers["tv.state"] = (status, "why\n")
            with self.assertRaisesRegex(EmpConnectionError, f"tv.state: .*: status {status}: why$") as raised:
                tv.state()
            self.assertEqual((raised.exception.status, raised.exception.sent), (status, sent))

    def test_where_no_session_can_be_opened_no_call_was_sent(self):
        tv = self.connected()
        self.peer.answers["tv.restart"] = {"error": {"code": 1003, "message": "", "data": {"reason": "there is no session 'one'"}}}
        for broken in [ConnectionResetError(), (500, "why"), (200, "<html>")]:
            self.peer.answers["session.open"] = broken
            for call in [lambda: connect(self.peer.address), tv.restart]:
                with self.assertRaisesRegex(EmpConnectionError, "session.open: ") as raised:
                    call()
                self.assertFalse(raised.exception.sent)

    def test_a_server_that_is_another_one_is_told(self):
        for text in ["<html>", "[]", "null", '{"jsonrpc": "2.0"}', '{"error": 5}', '{"result": {}}',
                     '{"result": 5}', '{"result": {"session": 1}}']:
            self.peer.answers["session.open"] = (200, text)
            with self.assertRaisesRegex(EmpConnectionError, "is that emp-window"):
                connect(self.peer.address)

    def test_an_address_must_be_one_and_somebody_be_there(self):
        for address in ["localhost:8090", "ftp://127.0.0.1", ""]:
            with self.assertRaisesRegex(ValueError, "an address like"):
                connect(address)
        self.peer.close()
        with self.assertRaisesRegex(EmpConnectionError, "can't be reached") as raised:
            connect(self.peer.address)
        self.assertFalse(raised.exception.sent)

    def test_calls_of_threads_run_one_by_one(self):
        tv = self.connected()
        self.peer.answers["tv.get"] = lambda request: {"value": request["params"]["name"]}
        found = {}
        threads = [threading.Thread(target=lambda name=name: found.update({name: tv.get(name)})) for name in "abcdefgh"]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(found, {name: name for name in "abcdefgh"})


if __name__ == "__main__":
    unittest.main()
