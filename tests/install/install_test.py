# SPDX-License-Identifier: MIT
"""Tests the tree that `cmake --install` creates: it runs, has no debug information, can be moved, and can be built
on."""

import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest
from fnmatch import fnmatch
from pathlib import Path

HERE = Path(__file__).resolve().parent
TOP = HERE.parent.parent
sys.path.insert(0, str(TOP / "tests/tools"))

from scratch import run  # noqa: E402  (needs the path above)

BUILD = Path(os.environ["EMP_WINDOW_BUILD"])
COMPILER = [*shlex.split(os.environ.get("CXX", "c++")), *shlex.split(os.environ.get("CXXFLAGS", ""))]
VERSION = re.search(r"^project\(emp-window VERSION ([\d.]+)", (TOP / "CMakeLists.txt").read_text(encoding="utf-8"), re.MULTILINE)[1]


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        first, cls.root = cls.folder / "first", cls.folder / "moved"
        run("cmake", "--install", BUILD, "--strip", "--prefix", first)
        first.rename(cls.root)
        cls.program = cls.root / "bin/emp-window"
        cls.libraries = next(cls.root.rglob("libemp-window.a")).parent
        cls.environment = {**os.environ, "PKG_CONFIG_PATH": str(cls.libraries / "pkgconfig")}

    def pkg_config(self, *words):
        return shlex.split(run("pkg-config", *words, env=self.environment))

    def assert_is_a_consumer(self, program):
        said = run(program, "GetCurrentChannel_Name", "SetSource 31 0", "GetSource 0",
                   env={**os.environ, "LD_LIBRARY_PATH": str(self.libraries)})
        self.assertEqual(said, 'unicode "Lighthouse One"\nint 1\nint 31\n')

    def test_the_program_runs_where_it_was_moved(self):
        self.assertIn("emp-window, plug-in Window", run(self.program, "--version"))
        said = run(self.program, "--state", self.folder / "state", "exec", "--raw", "GetCurrentChannel_Name")
        self.assertEqual(said, "Lighthouse One\n")
        examples = sorted(TOP.glob("tests/transcripts/s*.txt"))
        self.assertIn(f"{len(examples)} passed, 0 failed", run(self.program, "check", *examples))

    def test_nothing_holds_debug_information(self):
        binaries = [self.program, *self.libraries.glob("lib*.*")]
        self.assertGreater(len(binaries), 2)
        for binary in binaries:
            sections = run("readelf", "--wide", "--section-headers", binary)
            self.assertIn(".text", sections, binary)
            self.assertNotIn(".debug_", sections, binary)

    def test_a_project_builds_on_it_with_find_package(self):
        build = self.folder / "cmake"
        run("cmake", "-G", "Ninja", "-S", HERE / "consumer", "-B", build, f"-DCMAKE_PREFIX_PATH={self.root}",
            "-DCMAKE_BUILD_TYPE=Debug")
        run("ninja", "-C", build)
        self.assert_is_a_consumer(build / "consumer")

    def test_a_project_of_another_version_is_told(self):
        shutil.copytree(HERE / "consumer", self.folder / "later")
        project = self.folder / "later/CMakeLists.txt"
        project.write_text(project.read_text().replace("emp-window 1.3 ", "emp-window 2.0 "))
        said = run("cmake", "-S", project.parent, "-B", self.folder / "later/build", f"-DCMAKE_PREFIX_PATH={self.root}", expected=1)
        self.assertIn(f"version: {VERSION}", said)

    def test_a_project_builds_on_it_with_pkg_config(self):
        for name in ("emp-window", "virtualtv"):
            self.assertEqual(self.pkg_config("--modversion", name), [VERSION])
        program = self.folder / "consumer"
        run(*COMPILER, "-std=c++20", *self.pkg_config("--cflags", "emp-window", "virtualtv"), HERE / "consumer/main.cpp",
            "-o", program, *self.pkg_config("--libs", "emp-window", "virtualtv"))
        self.assert_is_a_consumer(program)

    def test_all_headers_that_are_installed_compile(self):
        folders = [self.root / "include/emp-window" / name for name in ("window", "platform", "virtualtv")]
        headers = [path.relative_to(folder) for folder in folders for path in sorted(folder.rglob("*.h"))]
        self.assertGreater(len(headers), 120)
        source = self.folder / "headers.cpp"
        source.write_text("".join(f'#include "{header}"\n' for header in headers), encoding="utf-8")
        run(*COMPILER, "-std=c++20", "-fsyntax-only", *self.pkg_config("--cflags", "emp-window", "virtualtv"), source)

    def test_the_clients_and_the_docs_are_there(self):
        python = self.root / "share/emp-window/python"
        ask = "import emp_window\nwith emp_window.launch() as tv: print(tv.window.GetCurrentChannel_Name())"
        said = run("python3", "-B", "-c", ask, env={**os.environ, "PYTHONPATH": str(python), "EMP_WINDOW": str(self.program)})
        self.assertEqual(said, "Lighthouse One\n")
        client = self.root / "share/emp-window/javascript"
        ask = ("const {launch} = await import(process.argv[1]); const tv = await launch();"
               "console.log(await tv.run('GetCurrentChannel_Name')); await tv.close()")
        said = run("node", "--input-type=module", "-e", ask, client / "launch.js", env={**os.environ, "EMP_WINDOW": str(self.program)})
        self.assertIn("Lighthouse One", said)
        self.assertIn("emp-window-serve", run("man", "--manpath", self.root / "share/man", "emp-window-serve"))
        for completion in ("bash-completion/completions/emp-window", "zsh/site-functions/_emp-window",
                           "fish/vendor_completions.d/emp-window.fish"):
            self.assertIn("emp-window", (self.root / "share" / completion).read_text(encoding="utf-8"))
        docs = self.root / "share/doc/emp-window"
        self.assertIn("the emp-window authors", (docs / "LICENSE").read_text(encoding="utf-8"))
        self.assertEqual({path.name for path in TOP.glob("docs/*.md")}, {path.name for path in docs.glob("docs/*.md")})

    def test_each_link_of_a_page_leads_somewhere(self):
        docs = self.root / "share/doc/emp-window"
        linked = [(page, target) for page in docs.rglob("*.md")
                  for target in re.findall(r"\]\(([^)#:]+)(?:#[^)]*)?\)", page.read_text(encoding="utf-8"))]
        self.assertGreater(len(linked), 120)
        self.assertEqual([(page, target) for page, target in linked if not (page.parent / target).exists()], [])
        self.assertTrue(os.access(docs / "examples/guide/ci.sh", os.X_OK))

    def test_each_file_goes_into_one_package(self):
        lists = {path.name: [line.split()[0] for line in path.read_text(encoding="utf-8").splitlines()]
                 for path in (TOP / "debian").glob("*.install")}
        self.assertEqual(set(lists), {"emp-window.install", "libemp-window-dev.install"})
        # In the packages, libraries are in a folder of the architecture and none is shared. The licence is in the
        # copyright file.
        libraries = self.libraries.relative_to(self.root)
        for path in sorted(path.relative_to(self.root) for path in self.root.rglob("*") if path.is_file()):
            if path.suffix == ".so" or path.name == "LICENSE":
                continue
            placed = Path("usr") / (Path("lib/any") / path.relative_to(libraries) if path.is_relative_to(libraries)
                                    and not path.is_relative_to("lib/systemd") else path)
            takers = [name for name, patterns in lists.items()
                      if any(fnmatch(str(placed), pattern) or fnmatch(str(placed), f"{pattern}/*") for pattern in patterns)]
            self.assertEqual(len(takers), 1, f"{placed}: {takers}")


if __name__ == "__main__":
    unittest.main()
