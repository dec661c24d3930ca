# SPDX-License-Identifier: MIT
"""Tests that each check of tools/check passes on a clean tree and finds a planted error."""

import json
import shlex
import unittest

from scratch import TOP, ScratchTest


class CheckTest(ScratchTest):
    def setUp(self):
        super().setUp()
        self.copy(".clang-format", ".clang-tidy", "cmake/Warnings.cmake", "platform/.clang-tidy", "platform/kel/CKELDebug.h")
        self.write("Window/include/Answer.h", "#pragma once\n\nint answer(int number);\n")
        self.source = self.write(
            "Window/Src/Answer.cpp",
            '#include "Answer.h"\n\n#include "kel/CKELDebug.h"\n\n'
            'int answer(int number) {\n  kel::CKELDebug::PrintLog(2, 0, "%d", number);\n  return number;\n}\n')
        self.write("virtualtv/set/Tv.h", "#pragma once\n\nint volume();\n")
        self.write("run", "#!/bin/sh\necho \"$1\"\n")
        self.git("init", "--quiet")
        self.commit("Say hello")

    def git(self, *arguments):
        identity = ["-c", "user.name=Someone", "-c", "user.email=someone@example.org"]
        done = self.call("git", *identity, *arguments)
        self.assertEqual(done.returncode, 0, done.stderr)

    def commit(self, message):
        self.git("add", ".")
        self.git("commit", "--quiet", "--allow-empty", "-m", message)

    def build(self, *options):
        """Creates the files for the checks on compiled code."""
        folder = self.root / "build/debug/Window"
        folder.mkdir(parents=True, exist_ok=True)
        compile_it = ["g++", "-std=c++17", "-I", str(self.root / "platform"), "-I", str(self.root / "Window/include"),
                      *options, "-c", str(self.source), "-o", str(folder / "Answer.o")]
        done = self.call(*compile_it)
        self.assertEqual(done.returncode, 0, done.stderr)
        (folder / "libwindow.a").unlink(missing_ok=True)
        self.call("ar", "rc", folder / "libwindow.a", folder / "Answer.o")
        database = [{"directory": str(folder), "file": str(self.source), "arguments": compile_it}]
        (folder.parent / "compile_commands.json").write_text(json.dumps(database))

    def check(self, name):
        return self.call(TOP / "tools/check", "--root", self.root, name)

    def assertClean(self, name):
        done = self.check(name)
        self.assertEqual((done.stdout, done.stderr, done.returncode), ("", "", 0))

    def assertFound(self, name, *texts):
        done = self.check(name)
        self.assertEqual(done.returncode, 1, done.stdout)
        for text in texts:
            self.assertIn(f"{name}: {text}", done.stdout)
        self.assertIn(f"failed: {name}", done.stderr)

    def test_licence(self):
        said = "SPDX-License-Identifier: MIT"
        for path in ("Window/include/Answer.h", "Window/Src/Answer.cpp", "virtualtv/set/Tv.h"):
            self.write(path, f"// {said}\n" + (self.root / path).read_text())
        for path in ("platform/kel/CKELDebug.h", "cmake/Warnings.cmake"):
            self.assertIn(said, (self.root / path).read_text())
        self.write("run", f"#!/bin/sh\n# ./run: runs it.\n# {said}\nprintf there\n", executable=True)
        self.write("page.html", f"<!doctype html>\n<!-- {said} -->\n")
        self.write("style.css", f"/* {said} */\n")
        self.write("notes.txt", "no source\n")
        self.write("LICENSE", "no source\n")
        self.assertClean("licence")
        self.write("CMakeLists.txt", "project(x)\n")
        self.write("tool", "#!/usr/bin/env python3\n")
        self.write("late.js", "const a = 1\n" * 30 + f"// {said}\n")
        self.write("other.py", f"# {said[:-3]}BSD\n")
        self.assertFound("licence", "CMakeLists.txt:1: ", "tool:1: ", "late.js:1: ", "other.py:1: ")

    def test_format(self):
        self.assertClean("format")
        self.source.write_text(self.source.read_text().replace("  return", "    return"))
        self.assertFound("format", "Window/Src/Answer.cpp:6:")

    def test_blanks(self):
        self.write("session.txt", "> GetSource\nint 0\nlog 3 a message that ends in a blank \n")
        self.write("rules", "#!/usr/bin/make -f\nall:\n\ttrue\n")
        self.assertClean("blanks")
        self.write("rules", "#!/usr/bin/make -f\nall:\n\ttrue\tfalse\n")
        self.write("session.txt", "> GetSource \nint 0\n")
        self.write("notes.md", "one \ntwo\tthree\n\n")
        self.write("CMakeLists.txt", "no_line_break()")
        self.assertFound("blanks", "notes.md:1: trailing", "notes.md:2: tab", "notes.md:4:", "CMakeLists.txt:1:",
                         "rules:3: tab", "session.txt:1: trailing")

    def test_length(self):
        self.assertClean("length")
        self.write("Window/include/EmpTaskWindow.h", "\n" * 700)
        self.write("virtualtv/set/Long.cpp", "\n" * 600)
        self.assertClean("length")
        self.write("virtualtv/set/Long.cpp", "\n" * 601)
        self.assertFound("length", "virtualtv/set/Long.cpp:601: ")

    def test_words_in_a_file(self):
        self.assertClean("words")
        self.write("notes.md", "fine\nas " + "Part" + " 3.1 of the " + "Speci" + "fication says\n")
        self.assertFound("words", "notes.md:2: mentions 'Part" + " 3.1'")

    def test_words_in_a_path_of_a_machine(self):
        self.write("notes.md", "see /wo" + "rk/main\n")
        self.assertFound("words", "notes.md:1: ")

    def test_commits(self):
        self.assertClean("commits")
        self.commit("Do more\n\nSee spec" + ".md for why.")
        self.assertFound("commits", "commit ")

    def test_commits_can_not_be_checked_without_git(self):
        (self.root / ".git").rename(self.root / "moved")
        self.assertFound("commits", "cannot check: ")

    def test_scripts(self):
        self.assertClean("scripts")
        self.write("run", "#!/bin/sh\necho $1\n")
        self.assertFound("scripts", "run:2:6: ")

    def test_includes_of_the_set_in_the_plug_in(self):
        self.assertClean("includes")
        self.write("Window/Src/Other.cpp", '\n#include "set/Tv.h"\n')
        self.write("platform/kel/Other.h", "#include <virtualtv/set/Tv.h>\n")
        self.assertFound("includes", "Window/Src/Other.cpp:2: ", "platform/kel/Other.h:1: ")

    def test_includes_of_the_plug_in_in_the_set(self):
        self.write("virtualtv/set/Tv.cpp", '#include "set/Tv.h"\n#  include "Answer.h"\n')
        self.write("virtualtv/set/Up.h", '#include "../../Window/include/Answer.h"\n')
        self.write("platform/kel/Other.h", '#include "Answer.h"\n')
        self.assertFound("includes", "virtualtv/set/Tv.cpp:2: ", "virtualtv/set/Up.h:1: ", "platform/kel/Other.h:1: ")

    def test_includes_of_tests_in_the_set(self):
        self.write("tests/support/Fake.h", "#pragma once\n")
        self.write("virtualtv/set/Tv.cpp", '#include "set/Tv.h"\n#include "support/Fake.h"\n')
        self.write("Window/Src/Other.cpp", '#include "../../tests/support/Fake.h"\n')
        self.assertFound("includes", "virtualtv/set/Tv.cpp:2: ", "Window/Src/Other.cpp:1: ")

    def set_up_worker(self):
        """A header that names the source of each operation, of which one has two forms."""
        self.write("Window/include/EmpTaskWindow.h",
                   "class CEmpTaskWindow {\n public:\n  CEmpTaskWindow();\n  virtual ~CEmpTaskWindow();\n"
                   "  // EmpTaskWindow_Source: sources\n\n  /// Tells SetMode(it).\n  int GetSource(int* source,\n"
                   "                int seek);\n  bool Find(int index);\n"
                   "  // EmpTaskWindow_Tuning\n  virtual bool Find(int major, int minor);\n};\n")
        self.write("Window/Src/EmpTaskWindow_Source.cpp",
                   "CEmpTaskWindow::CEmpTaskWindow() {}\nint CEmpTaskWindow::GetSource(int* source, int) {\n"
                   "  return Do(&CEmpTaskWindow::Find);\n}\nbool CEmpTaskWindow::Find(int) {}\n")
        self.tuning = self.write("Window/Src/EmpTaskWindow_Tuning.cpp", "bool CEmpTaskWindow::Find(int, int) {}\n")

    def test_declared(self):
        self.set_up_worker()
        self.assertClean("declared")

    def test_operations_that_are_defined_in_another_source(self):
        self.set_up_worker()
        self.tuning.rename(self.root / "Window/Src/EmpTaskWindow_Channel.cpp")
        self.assertFound("declared", "Window/include/EmpTaskWindow.h:12: Find stands under EmpTaskWindow_Tuning, and is "
                         "defined in EmpTaskWindow_Channel, EmpTaskWindow_Source")

    def test_keys(self):
        self.write("Window/Src/SourceKeys.h", 'const char* kMain = "db/emp/mainsource";\n')
        self.write("virtualtv/set/Keeping.h", 'const char* last = "db/boot/last_service";\n')
        self.assertClean("keys")
        self.write("Window/Src/Switch.cpp", '\nconst char* kLast = "db/boot/last_service";\n')
        self.assertFound("keys", "Window/Src/Switch.cpp:2: db/boot/last_service belongs into Window/Src/SourceKeys.h")

    def test_keys_that_stand_twice(self):
        self.write("Window/Src/SourceKeys.h", 'const char* kMain = "db/emp/mainsource";\n' * 2)
        self.assertFound("keys", "Window/Src/SourceKeys.h:2: db/emp/mainsource stands here twice")

    def test_wraps(self):
        wrap = "target_link_options(it PRIVATE LINKER:--wrap=iconv_open)\n"
        self.write("tests/CMakeLists.txt", wrap)
        self.write("virtualtv/CMakeLists.txt", "# no --wrap\n")
        self.assertClean("wraps")
        self.write("virtualtv/CMakeLists.txt", "\n" + wrap)
        self.write("cmake/Linker.cmake", wrap)
        self.assertFound("wraps", "virtualtv/CMakeLists.txt:2: ", "cmake/Linker.cmake:1: ")

    def set_up_rooms(self):
        """Creates three rooms: the shell includes from the set, and the set from the store, which has no header."""
        self.rooms = self.write("virtualtv/CMakeLists.txt",
                                "room(store ON PkgConfig::sqlite3)\nroom(set ON store)\nroom(shell ON set CLI11::CLI11)\n")
        self.write("virtualtv/store/Store.cpp", "int store();\n")
        self.write("virtualtv/shell/Shell.h", '#include "set/Tv.h"\n')

    def test_rooms(self):
        self.set_up_rooms()
        self.write("virtualtv/set/Tv.cpp", '#include "set/Tv.h"\n#include "shell/NotThere.h"\n')
        self.assertClean("rooms")

    def test_rooms_that_include_from_others(self):
        self.set_up_rooms()
        self.write("virtualtv/store/Store.cpp", '#include <string>\n#include "set/Tv.h"\n')
        self.write("virtualtv/set/Tv.cpp", '#  include "shell/Shell.h"\n')
        self.assertFound("rooms", "virtualtv/store/Store.cpp:2: store includes from set", "virtualtv/set/Tv.cpp:1: ")

    def test_rooms_that_include_from_others_by_another_way(self):
        for include in ("<set/Tv.h>", '"../set/Tv.h"', '"../store/../set/Tv.h"'):
            with self.subTest(include):
                self.setUp()
                self.set_up_rooms()
                self.write("virtualtv/store/Store.cpp", f"#include {include}\n")
                self.assertFound("rooms", "virtualtv/store/Store.cpp:1: store includes from set")

    def test_rooms_in_a_cycle(self):
        self.set_up_rooms()
        self.rooms.write_text(self.rooms.read_text().replace("set ON store", "set ON shell store"))
        self.write("virtualtv/set/Tv.cpp", '#include "shell/Shell.h"\n')
        self.assertFound("rooms", "virtualtv/CMakeLists.txt:2: set stands on shell, which is no room above it")

    def test_rooms_that_stand_on_what_they_do_not_include(self):
        self.set_up_rooms()
        self.write("virtualtv/shell/Shell.h", "int shell();\n")
        self.assertFound("rooms", "virtualtv/CMakeLists.txt:3: shell stands on set, and includes nothing of it")

    def test_rooms_that_no_one_named(self):
        self.set_up_rooms()
        self.write("virtualtv/attic/Attic.cpp", "int attic();\n")
        self.assertFound("rooms", "virtualtv/CMakeLists.txt:1: attic/ is no room")

    def test_headers(self):
        self.assertClean("headers")
        self.write("platform/kel/Needy.h", "#pragma once\n\nstd::string name();\n")
        self.write("Window/include/Sloppy.h", "#pragma once\n\ninline int cut(long n) { return n; }\n")
        self.assertFound("headers", "platform/kel/Needy.h:1: ", "Window/include/Sloppy.h:1: ")

    def test_symbols(self):
        self.build()
        self.assertClean("symbols")
        self.source.write_text("namespace virtualtv {\nint volume();\n}\n" + 'extern "C" int sqlite3_open();\n' +
                               self.source.read_text().replace("return number", "return virtualtv::volume() + sqlite3_open()"))
        self.build()
        library = self.root / "build/debug/Window/libwindow.a"
        self.assertFound("symbols", f"{library}:1: needs virtualtv::volume()", f"{library}:1: needs sqlite3_open")

    def test_symbols_of_an_object_that_ends_with_its_thread(self):
        self.source.write_text("struct Kept {\n  ~Kept();\n};\nstatic int ended;\nKept::~Kept() { ++ended; }\n"
                               "Kept& kept() {\n  thread_local Kept kept;\n  return kept;\n}\n")
        self.build()
        self.assertClean("symbols")

    def test_symbols_that_only_a_comment_of_the_platform_names(self):
        header = self.root / "platform/kel/CKELDebug.h"
        header.write_text("/// Unlike sqlite3_open.\n" + header.read_text())
        self.source.write_text('extern "C" int sqlite3_open();\nint answer() { return sqlite3_open(); }\n')
        self.build()
        self.assertFound("symbols", f"{self.root}/build/debug/Window/libwindow.a:1: needs sqlite3_open")

    def test_symbols_can_not_be_checked_without_a_build(self):
        self.assertFound("symbols", "cannot check: ")

    def test_usings(self):
        self.write("virtualtv/Names.cpp", "using std::string;\nusing std::vector;\n\nvector<string> names();\n")
        self.assertClean("usings")
        self.write("virtualtv/Names.cpp", "using std::string;\nusing std::vector;\n\nstring name();\n")
        self.assertFound("usings", "virtualtv/Names.cpp:2: vector is not used")

    def test_tidy(self):
        self.build()
        self.assertClean("tidy")
        self.source.write_text(self.source.read_text().replace("return number;", "int Bad_name = 0;\n  return Bad_name;"))
        self.assertFound("tidy", "Window/Src/Answer.cpp:7:7: error: invalid case style for variable 'Bad_name'")

    def test_tidy_reads_own_headers_and_no_others(self):
        self.source.write_text('#include "Answer.h"\n\n#include <sys/answer.h>\n\nint answer(int number) {\n  return number;\n}\n')
        self.write("Window/include/Answer.h", "#pragma once\n\nint answer(int number);\nint Ask(int Bad_number);\n")
        self.write("system/sys/answer.h", "#pragma once\n\nint Tell(int Worse_number);\n")
        self.build("-isystem", str(self.root / "system"))
        self.assertFound("tidy", "Window/include/Answer.h:4:13: error: invalid case style for parameter 'Bad_number'")
        self.assertNotIn("Worse_number", self.check("tidy").stdout)

    def test_tidy_reads_sources_that_are_compiled_as_one(self):
        self.build()
        whole = self.root / "build/debug/Unity/unity_0.cxx"
        whole.parent.mkdir()
        whole.write_text(f'/* made by the build */\n\n#include "{self.source}"\n')
        command = ["g++", "-std=c++17", "-I", f"{self.root}/platform", "-I", f"{self.root}/Window/include", "-c", str(whole)]
        database = [{"directory": str(self.root), "file": str(whole), "command": shlex.join(command)}]
        (self.root / "build/debug/compile_commands.json").write_text(json.dumps(database))
        self.assertClean("tidy")
        self.source.write_text(self.source.read_text().replace("return number;", "int Bad_name = 0;\n  return Bad_name;"))
        self.assertFound("tidy", "Window/Src/Answer.cpp:7:7: error: invalid case style for variable 'Bad_name'")

    def test_tidy_keeps_the_enumerations_of_the_plug_in(self):
        self.copy("Window/.clang-tidy")
        self.source.write_text("enum _PL_WINDOW_SEEK : int {};\nenum _OTHER : int {};\n")
        self.build()
        self.assertFound("tidy", "Window/Src/Answer.cpp:2:6: ")
        self.assertNotIn("_PL_WINDOW_SEEK", self.check("tidy").stdout)

    def test_tidy_can_not_check_an_empty_build(self):
        self.build()
        (self.root / "build/debug/compile_commands.json").write_text("[]")
        self.assertFound("tidy", "cannot check: ")

    def test_an_unknown_check_is_refused(self):
        done = self.check("formats")
        self.assertEqual(done.returncode, 2)
        self.assertIn("no such check: formats", done.stderr)


if __name__ == "__main__":
    unittest.main()
