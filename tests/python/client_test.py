# SPDX-License-Identifier: MIT
"""Tests the Python client on a virtual TV."""

import ast
import re
import unittest
import warnings

from support import CLIENT, ClientTest

from emp_window import EmpConnectionError, EmpRpcError, EmpSessionWarning, connect, launch


class CallTest(ClientTest):
    def setUp(self):
        self.tv = launch()
        self.addCleanup(self.tv.close)

    def test_each_command_is_a_function_that_answers_its_value(self):
        self.assertEqual(self.tv.window.SetChannel(3, 0), 1)
        self.assertEqual(self.tv.window.GetCurrentChannel_Name(), "Lighthouse News")
        self.assertEqual(self.tv.window.SetChannel("3", False), 1)
        self.assertEqual(self.tv.window.SetChannel(major=5), 1)
        self.assertEqual(self.tv.window.GetCurrentChannel_Name(), "Ola Norte")
        self.assertEqual(self.tv.window.GetChannel_Name(500), -1)

    def test_the_functions_are_those_of_the_commands(self):
        commands = dir(self.tv.window)
        self.assertEqual(len(commands), 73)
        self.assertIn("SetChannel", commands)
        self.assertFalse(hasattr(self.tv.window, "_repr_html_"))

    def test_a_gap_is_an_empty_text(self):
        self.assertEqual(self.tv.window.GetChannel_ServiceId(3, None, None), self.tv.window.GetChannel_ServiceId("3", "", ""))
        with self.assertRaisesRegex(TypeError, "SetChannel: parameters go either by position or by name"):
            self.tv.window.SetChannel(3, minor=0)

    def test_integers_of_64_bits_keep_all_their_digits(self):
        self.assertEqual(self.tv.window.SetChannelByServiceid(1152959734176350309), 1)
        self.assertEqual(self.tv.window.GetStartChannel_ServiceId(), "1152959734176350309")
        self.assertEqual(self.tv.window.GetCurrentChannel_Name(), "Lighthouse One")

    def test_a_misspelled_command_is_told_with_the_one_that_was_meant(self):
        with self.assertRaises(EmpRpcError) as raised:
            self.tv.window.SetChanel(3)
        self.assertEqual(raised.exception.code, -32601)
        self.assertEqual(raised.exception.reason, "did you mean 'SetChannel'?")
        self.assertIn("the plug-in has no command 'SetChanel'", str(raised.exception))

    def test_what_the_server_refuses_is_raised_with_code_and_reason(self):
        with self.assertRaises(EmpRpcError) as raised:
            self.tv.set("no.such", 1)
        self.assertEqual((raised.exception.code, raised.exception.method), (1002, "tv.set"))
        self.assertIn("no.such", raised.exception.reason)
        with self.assertRaises(EmpRpcError) as raised:
            self.tv.window.SetChannel(1.5)
        self.assertEqual(raised.exception.code, -32602)

    def test_execute_answers_as_an_app_has_it_on_the_set(self):
        self.assertEqual(self.tv.execute("SetChannel", 3, 0), 1)
        self.assertEqual(self.tv.execute("GetCurrentChannel_Name"), "Lighthouse News")
        self.assertIsNone(self.tv.execute("NoSuchCommand"))
        self.assertEqual(self.tv.execute_with_param_list("SetScreenCropRect", [0, 0, 100, 100]), "")
        self.assertEqual(self.tv.execute_with_param_list("SetScreenCropRect", [0, 0, 100, 100, 0, 0, 0, 0]), 0)

    def test_lines_of_the_shell_run_on_the_same_engine(self):
        self.tv.window.FindChannel(0, 1)
        self.assertEqual(self.tv.run("GetChannel_Size"), ["int 31"])

    def test_knobs_state_services_and_settings(self):
        self.tv.set("main.source", 13)
        self.assertEqual(self.tv.get("main.source"), "13")
        self.assertEqual(self.tv.state()["windows"]["main"]["source"]["number"], 13)
        self.assertIn("main.source", [knob["name"] for knob in self.tv.knobs()])
        self.assertEqual([service["name"] for service in self.tv.services(text="tidewater")["services"]], ["Tidewater Docs"])
        self.tv.set_setting("memory/test", 7)
        self.assertEqual(self.tv.settings()["memory/test"], 7)
        self.tv.set_setting("memory/test", None)
        self.assertNotIn("memory/test", self.tv.settings())

    def test_a_snapshot_brings_the_set_back(self):
        before = self.tv.snapshot()
        self.tv.set("country", 42)
        self.assertEqual(self.tv.import_list("Test:11836:HC34M2O0S0:S19.2E:27500:101:102:0:0:1:1:1:0\n")["imported"], 1)
        self.tv.restore(before)
        self.assertEqual(self.tv.snapshot(), before)
        self.tv.set("country", 42)
        self.tv.reset()
        self.assertEqual(self.tv.snapshot(), before)

    def test_a_snapshot_tells_what_was_before_a_command(self):
        self.tv.window.SetChannel(3, 0)
        before = self.tv.snapshot()
        self.tv.window.SetChannel(5, 0)
        self.assertNotEqual(self.tv.snapshot(), before)
        self.assertEqual(self.tv.snapshot(self.tv.why()["command"]), before)

    def test_each_method_of_the_set_is_a_function(self):
        def name_of(method):
            return {"import": "import_list"}.get(method) or re.sub("[A-Z]", lambda letter: "_" + letter[0].lower(), method)
        methods = [method["name"] for method in self.tv.discover()["methods"] if method["name"].startswith("tv.")]
        self.assertGreater(len(methods), 20)
        self.assertEqual([name for name in methods if not callable(getattr(self.tv, name_of(name[3:]), None))], [])

    def test_sessions_operations_and_kinds_of_knobs(self):
        self.assertIn(self.tv.session, [session["session"] for session in self.tv.sessions()])
        self.assertIn({"name": "IServiceNavigation::GetTvMode", "outputs": ["mode"]}, self.tv.operations())
        self.assertIn("latency.OPERATION", [kind["name"] for kind in self.tv.knob_kinds()])

    def test_a_transcript_is_checked_on_a_set_of_its_own(self):
        self.assertEqual(self.tv.check("> SetChannel 3 0\nint 1\n"), {"passed": True, "diff": ""})
        failed = self.tv.check("> SetChannel 3 0\nint 2\n")
        self.assertFalse(failed["passed"])
        self.assertIn("+int 1", failed["diff"])
        self.assertEqual(self.tv.window.GetCurrentChannel_Name(), "Lighthouse One")

    def test_a_command_is_told_of_and_the_set_as_it_was_comes_back(self):
        with self.assertRaisesRegex(EmpRpcError, "no command has run yet"):
            self.tv.why()
        self.tv.window.SetChannel(3, 0)
        told = self.tv.why()
        self.assertEqual((told["command"], told["name"], told["parameters"]), (1, "SetChannel", ["3", "0"]))
        self.assertEqual(told["reply"]["value"], 1)
        state, snapshot = self.tv.state(), self.tv.snapshot()
        self.tv.window.SetChannel(5, 0)
        self.assertEqual(self.tv.why(1), told)
        self.assertEqual(self.tv.history(1), state)
        self.assertEqual(self.tv.history(), self.tv.state())
        self.tv.go_back(told["command"])
        self.assertEqual(self.tv.snapshot(), snapshot)
        self.assertEqual(self.tv.window.GetCurrentChannel_Name(), "Lighthouse News")


class FaultTest(ClientTest):
    def setUp(self):
        self.tv = launch()
        self.addCleanup(self.tv.close)

    def test_a_fault_hits_as_often_as_it_is_told(self):
        self.tv.fault("IServiceNavigation::GetTvMode", result=0, nth=2)
        self.assertEqual([self.tv.window.GetTVMode() for _ in range(3)], [1, -1, 1])

    def test_as_a_context_manager_it_ends_with_the_block(self):
        with self.tv.fault("IServiceNavigation::GetTvMode", result=0, times="always") as fault:
            self.assertEqual([self.tv.window.GetTVMode() for _ in range(2)], [-1, -1])
            self.assertEqual(fault.hits, 2)
        self.assertEqual((self.tv.window.GetTVMode(), self.tv.faults(), fault.hits), (1, [], 0))

    def test_one_that_a_restart_took_away_is_not_missed(self):
        with self.tv.fault("IServiceNavigation::GetTvMode", result=0, times="always"):
            self.tv.restart()
            self.assertEqual(self.tv.faults(), [])

    def test_none_is_a_null_pointer_and_left_out_is_no_result(self):
        self.tv.fault("TVServiceAPI::CreateSourceControl", result=None)
        self.tv.fault("IServiceNavigation::GetTvMode", outputs={"mode": "2,0"}, times=3)
        self.assertIn("result=null", self.tv.faults()[0]["fault"])
        self.assertNotIn("result=", self.tv.faults()[1]["fault"])
        self.tv.clear_faults()
        self.assertEqual(self.tv.faults(), [])

    def test_an_operation_that_is_none_is_refused(self):
        with self.assertRaisesRegex(EmpRpcError, "NoSuch::Call"):
            self.tv.fault("NoSuch::Call", result=0)


class SessionTest(ClientTest):
    def setUp(self):
        self.tv = launch()
        self.addCleanup(self.tv.close)

    def test_each_client_has_one_of_its_own(self):
        with connect(self.tv.address, app_id="com.example.guide") as other:
            self.tv.window.FindChannel(0, 1)
            self.assertEqual((self.tv.window.GetChannel_Size(), other.window.GetChannel_Size()), (31, 0))
            self.assertNotEqual(self.tv.session, other.session)

    def test_it_ends_with_close_and_nothing_can_be_called_then(self):
        other = connect(self.tv.address)
        name = other.session
        other.close()
        other.close()
        self.assertNotIn(name, [session["session"] for session in self.tv.call("tv.sessions")["sessions"]])
        with self.assertRaisesRegex(EmpConnectionError, "tv.state: the connection to .* was closed") as raised:
            other.state()
        self.assertFalse(raised.exception.sent)

    def test_one_that_the_server_has_ended_is_renewed_with_a_warning(self):
        with connect(self.tv.address) as other:
            other.window.FindChannel(0, 1)
            before = other.session
            self.tv.call("session.close", {"session": before})
            with self.assertWarnsRegex(EmpSessionWarning, "the channels that were found are gone"):
                self.assertEqual(other.window.GetChannel_Size(), 0)
            self.assertNotEqual(other.session, before)

    def test_one_without_commands_is_renewed_silently(self):
        with connect(self.tv.address) as other, warnings.catch_warnings():
            warnings.simplefilter("error")
            other.state()
            self.tv.call("session.close", {"session": other.session})
            self.assertEqual(other.window.GetTVMode(), 1)

    def test_a_program_that_is_gone_is_told(self):
        self.tv._program._process.kill()
        self.tv._program._process.wait()
        with self.assertRaises(EmpConnectionError):
            self.tv.state()


class SourceTest(unittest.TestCase):
    def test_it_is_written_for_python_3_9(self):
        ast.parse((CLIENT / "emp_window.py").read_text(encoding="utf-8"), feature_version=(3, 9))


if __name__ == "__main__":
    unittest.main()
