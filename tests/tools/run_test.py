# SPDX-License-Identifier: MIT
"""Tests ./run, tools/build and tools/setup on a scratch tree."""

import os
import pty
import socket
import subprocess
import unittest

from scratch import ScratchTest

CMAKE = """cmake_minimum_required(VERSION 3.25)
project(scratch LANGUAGES CXX)
add_executable(emp-window main.cpp)
"""
MAIN = """#include <cstdio>
#include <cstdlib>
#include <unistd.h>
int main(int argc, char** argv) {
  char folder[4096] = "";
  std::printf("%s", getcwd(folder, sizeof folder));
  for (int i = 1; i < argc; ++i) std::printf("|%s", argv[i]);
  return argc > 2 ? std::atoi(argv[2]) : 0;
}
"""


class RunTest(ScratchTest):
    def setUp(self):
        super().setUp()
        self.copy("run", "tools/build", "CMakePresets.json")
        self.write("tools/setup", "#!/bin/sh\n", executable=True)
        self.write("CMakeLists.txt", CMAKE)
        self.main = self.write("main.cpp", MAIN)

    def test_runs_in_the_folder_of_the_caller_with_its_arguments_and_ends_with_its_status(self):
        elsewhere = self.root / "else where"
        elsewhere.mkdir()
        done = self.call("../run", "a b", "7", "", cwd=elsewhere)
        self.assertEqual((done.stdout, done.returncode), (f"{elsewhere}|a b|7|", 7))

    def test_starts_the_shell_without_arguments_and_a_terminal(self):
        self.assertEqual(self.call(self.root / "run").stdout, f"{self.root}|shell")

    def on_terminal(self):
        """The output of a program on a separate terminal."""
        self.call("./run")  # builds now, so that the next call prints nothing about it
        ours, its = pty.openpty()
        done = subprocess.run([self.root / "run"], cwd=self.root, stdin=its, stdout=its, stderr=its)
        os.close(its)
        self.assertEqual(done.returncode, 0)
        with open(ours, "rb", buffering=0) as terminal:
            return terminal.read(65536).decode()

    def test_serves_on_a_terminal_without_arguments_where_the_usual_address_is_taken_too(self):
        with socket.socket() as usual:
            usual.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
            usual.bind(("127.0.0.1", 8090))
            self.assertEqual(self.on_terminal(), f"{self.root}|serve")
            usual.listen()
            self.assertEqual(self.on_terminal(), f"{self.root}|serve|--listen|127.0.0.1:0")

    def test_says_nothing_when_there_is_nothing_to_build(self):
        self.call("./run")
        self.assertEqual(self.call("./run").stderr, "")

    def test_shows_what_the_compiler_says_and_fails(self):
        self.main.write_text(MAIN.replace("return", "retrun"))
        done = self.call("./run")
        self.assertEqual((done.stdout, done.returncode), ("", 1))
        self.assertIn("main.cpp:8:", done.stderr)
        self.assertTrue(done.stderr.endswith("\nCannot build: what went wrong stands above\n"))

    def test_shows_what_cmake_says_and_fails(self):
        self.write("CMakeLists.txt", CMAKE + 'message(FATAL_ERROR "no luck")\n')
        done = self.call("./run")
        self.assertEqual(done.returncode, 1)
        self.assertIn("no luck", done.stderr)
        self.write("CMakeLists.txt", CMAKE)
        self.assertEqual(self.call("./run").returncode, 0)

    def test_builds_anew_where_the_tree_has_moved(self):
        self.call("./run")
        moved = self.root / "moved"
        moved.mkdir()
        for name in ["run", "tools", "CMakePresets.json", "CMakeLists.txt", "main.cpp", "build"]:
            (self.root / name).rename(moved / name)
        self.assertEqual(self.call(moved / "run", "x").stdout, f"{self.root}|x")

    def test_two_at_once_take_turns(self):
        both = [subprocess.Popen([self.root / "run", name], text=True, cwd=self.root, stdout=subprocess.PIPE,
                                 stderr=subprocess.DEVNULL) for name in "ab"]
        self.assertEqual([one.communicate()[0] for one in both], [f"{self.root}|a", f"{self.root}|b"])


# Stand-ins for the system's package tools. apt-get records its arguments; when the file `stale` exists, it knows
# packages only after an update.
DPKG = """#!/bin/sh
printf 'installed cmake, ,\\ninstalled pkgconf, pkg-config (= 1.8),\\nconfig-files python3, ,\\n'
"""
APT = """#!/bin/sh
echo "$*" >> "$ROOT/asked"
case "$1" in
  update) rm -f "$ROOT/stale" ;;
  install) test ! -e "$ROOT/stale" || { echo 'E: Unable to locate package'; exit 100; } ;;
esac
"""


class SetupTest(ScratchTest):
    def setUp(self):
        super().setUp()
        self.copy("tools/setup")
        self.write("bin/dpkg-query", DPKG, executable=True)
        self.write("bin/apt-get", APT, executable=True)
        self.write("bin/id", "#!/bin/sh\necho 0\n", executable=True)

    def install(self, *groups):
        path = f"{self.root / 'bin'}:/usr/bin:/bin"
        return self.call("tools/setup", *groups, env={"ROOT": str(self.root), "PATH": path})

    def asked(self):
        notes = self.root / "asked"
        return notes.read_text().splitlines() if notes.exists() else []

    def test_asks_for_nothing_when_all_is_there(self):
        self.write("tools/packages.txt", "# a comment\nbuild cmake\nbuild pkg-config\ntest python3\n")
        done = self.install("build")
        self.assertEqual((done.stdout, done.stderr, done.returncode, self.asked()), ("", "", 0, []))

    def test_asks_for_what_is_missing_and_no_more(self):
        self.write("tools/packages.txt", "build cmake\nbuild ninja-build\ntest python3\n")
        self.assertEqual(self.install("build", "test").returncode, 0)
        self.assertEqual(self.asked(), ["install -y --no-install-recommends ninja-build python3"])

    def test_fetches_the_package_lists_when_those_at_hand_do_not_do(self):
        self.write("tools/packages.txt", "build ninja-build\n")
        self.write("stale", "")
        self.assertEqual(self.install("build").returncode, 0)
        self.assertEqual([line.split()[0] for line in self.asked()], ["install", "update", "install"])

    def test_says_what_is_missing_where_nobody_may_install(self):
        self.write("tools/packages.txt", "build ninja-build\n")
        self.write("bin/id", "#!/bin/sh\necho 1000\n", executable=True)
        for name in ["bash", "dirname", "readlink", "sed", "awk", "tr", "sort", "comm", "grep"]:
            (self.root / "bin" / name).symlink_to(f"/usr/bin/{name}")
        path = str(self.root / "bin")
        done = self.call("/usr/bin/bash", "tools/setup", "build", env={"ROOT": str(self.root), "PATH": path})
        self.assertEqual((done.returncode, self.asked()), (1, []))
        self.assertEqual(done.stderr, "tools/setup: not root and no sudo here; as root: apt-get install ninja-build\n")


if __name__ == "__main__":
    unittest.main()
