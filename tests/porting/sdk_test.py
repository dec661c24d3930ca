# SPDX-License-Identifier: MIT
"""The plug-in's process, built as on a set: against an SDK in place of the virtual TV."""

import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TOP = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(TOP / "tests/tools"))

from scratch import run  # noqa: E402  (needs the path above)

BUILD = Path(os.environ["EMP_WINDOW_BUILD"])
SCRATCH = Path(os.environ["EMP_WINDOW_SCRATCH"])
LIBRARIES = ["KelEmp", "KelCommon", "TVService", "D2tvMgr", "vconf"]
RUNTIME = {"libjsoncpp.so", "libstdc++.so", "libgcc_s.so", "libm.so", "libc.so"}


def configure(sdk, build, *options, expected=0):
    return run("cmake", "-G", "Ninja", "-S", TOP, "-B", build, f"-DWINDOW_SDK={sdk}", *options, expected=expected)


class Sdk(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.sdk, cls.build = SCRATCH / "sdk", SCRATCH / "build"
        shutil.rmtree(cls.sdk, ignore_errors=True)
        run("cmake", "--install", BUILD, "--component", "sdk", "--prefix", cls.sdk)
        configure(cls.sdk, cls.build)
        run("ninja", "-C", cls.build)
        cls.program = cls.build / "emp-window"

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def execute(self, *command):
        return run(self.program, "--state", self.folder / "state", "exec", "--raw", *command)

    def copy_of_sdk(self):
        return Path(shutil.copytree(self.sdk, self.folder / "sdk"))

    def test_the_process_is_linked_against_the_libraries_of_the_sdk_and_no_other_part_of_the_virtual_tv(self):
        needed = re.findall(r"\(NEEDED\).*\[(.+\.so)", run("readelf", "--dynamic", self.program))
        self.assertEqual(set(needed) - RUNTIME, {f"lib{name}.so" for name in LIBRARIES})

    def test_the_page_names_all_that_the_process_takes_from_these_libraries(self):
        offered = set()
        for library in LIBRARIES:
            offered |= {line.split()[0] for line in run("nm", "-D", "--defined-only", "--format=posix",
                                                        self.sdk / f"lib/lib{library}.so").splitlines()}
        wanted = {line.split()[0] for line in run("nm", "-D", "--undefined-only", "--format=posix", self.program).splitlines()}
        taken = run("c++filt", "--no-params", *sorted(wanted & offered)).splitlines()
        names = {re.sub(r"^((vtable|typeinfo|typeinfo name) for )?(kel::)?|\[abi:cxx11\]", "", name) for name in taken if "std::" not in name}
        self.assertGreater(len(names), 30)
        page = (TOP / "docs/porting.md").read_text(encoding="utf-8")
        missing = [name for name in sorted(names)
                   if f"`{name}`" not in page and f"`{name.split('::')[0]}`" not in page]
        self.assertEqual(missing, [])

    def test_the_process_is_compiled_with_the_headers_of_the_sdk(self):
        commands = json.loads((self.build / "compile_commands.json").read_text(encoding="utf-8"))
        self.assertGreater(len(commands), 20)
        for entry in commands:
            self.assertIn(f"-isystem {self.sdk}/include", entry["command"])
            self.assertNotRegex(entry["command"], rf"{TOP}/(platform|virtualtv)\b")

    def test_the_headers_are_those_of_the_contract_without_the_side_of_the_set(self):
        headers = sorted(path.relative_to(TOP / "platform") for path in (TOP / "platform").rglob("*.h"))
        self.assertEqual(headers, sorted(path.relative_to(self.sdk / "include") for path in (self.sdk / "include").rglob("*.h")))
        shortened = []
        for header in headers:
            whole = (TOP / "platform" / header).read_text(encoding="utf-8")
            laid = (self.sdk / "include" / header).read_text(encoding="utf-8")
            side = re.compile(r"^ *// The TV service's side begins here\.\n.*?^ *// The TV service's side ends here\.\n",
                              re.MULTILINE | re.DOTALL)
            self.assertEqual(laid, side.sub("", whole), header)
            shortened += [str(header)] if laid != whole else []
        self.assertEqual(shortened, ["tvservice/TCCriteriaHelper.h", "tvservice/TCServiceData.h"])

    def compile(self, text, expected=0):
        source = self.folder / "client.cpp"
        source.write_text(text, encoding="utf-8")
        return run("c++", "-std=c++17", "-fsyntax-only", "-Wall", "-Wextra", "-Werror", "-I", self.sdk / "include", source,
                   expected=expected)

    def test_a_client_sees_records_as_a_client(self):
        headers = "".join(f'#include "{path.relative_to(self.sdk / "include")}"\n'
                          for path in sorted((self.sdk / "include").rglob("*.h")))
        ask = "int major(const TCServiceData& service) { int number = 0; service.Get(TCServiceData::MAJOR, number); return number; }\n"
        self.compile(headers + ask)
        said = self.compile(headers + "void change(TCServiceData& service) { service.Set(TCServiceData::MAJOR, 7ULL); }\n", expected=1)
        self.assertIn("has no member named", said)

    def test_commands_run_and_what_they_change_is_kept(self):
        self.assertEqual(self.execute("GetCurrentChannel_Name"), "Lighthouse One\n")
        self.assertEqual(self.execute("SetSource", "31", "0"), "1\n")
        self.assertEqual(self.execute("GetSource", "0"), "31\n")
        services = json.loads(self.execute("GetFullChannelList"))["TCServiceData"]
        self.assertEqual(services[0]["SERVICE_NAME"], "Lighthouse One")

    def test_transcripts_and_cases_are_true(self):
        files = sorted([*TOP.glob("tests/transcripts/*.txt"), *TOP.glob("tests/window/cases/*.txt"), TOP / "docs/examples.txt"])
        self.assertGreater(len(files), 40)
        self.assertIn(f"transcripts: {len(files)} passed, 0 failed", run(self.program, "check", *files))

    def test_all_that_an_sdk_lacks_is_named_and_nothing_else(self):
        sdk = self.copy_of_sdk()
        (sdk / "include/settings/vconf.h").unlink()
        (sdk / "include/tvservice/IService.h").unlink()
        (sdk / "lib/libD2tvMgr.so").unlink()
        said = configure(sdk, self.folder / "build", expected=1)
        self.assertIn(f"WINDOW_SDK={sdk} lacks:", re.sub(r"\s+", " ", said))
        self.assertEqual(re.findall(r"^ +((?:include|lib)/\S+)$", said, re.MULTILINE),
                         ["include/settings/vconf.h", "include/tvservice/IService.h", "lib/libD2tvMgr.so"])

    def test_libraries_may_have_other_names(self):
        sdk = self.copy_of_sdk()
        (sdk / "lib/libTVService.so").rename(sdk / "lib/libBroadcast.so")
        self.assertIn("lib/libTVService.so", configure(sdk, self.folder / "build", expected=1))
        names = ";".join("Broadcast" if name == "TVService" else name for name in LIBRARIES)
        configure(sdk, self.folder / "build", f"-DWINDOW_SDK_LIBRARIES={names}")

    def test_a_folder_that_is_not_there_is_told(self):
        said = configure(self.folder / "nowhere", self.folder / "build", expected=1)
        self.assertIn(f"WINDOW_SDK={self.folder}/nowhere", re.sub(r"\s+", " ", said))
        self.assertIn("is no folder", said)


if __name__ == "__main__":
    unittest.main()
