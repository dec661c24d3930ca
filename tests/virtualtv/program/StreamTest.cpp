// SPDX-License-Identifier: MIT
// The program's handling of its standard streams: pipes, closed streams, and full disks.
#include <unistd.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "virtualtv/program/Program.h"
#include "virtualtv/shell/SmallList.h"

namespace virtualtv::shell {
namespace {

namespace fs = std::filesystem;

// The shell on a pipe.

TEST_F(ProgramTest, APipedShellPrintsATranscript) {
  const Ending piped = run({}, "# a comment\n\nGetSource 2\n> GetSource 2\n+ NoSuch 1\n");
  EXPECT_EQ(piped.out, "# a comment\n\n> GetSource 2\nint 0\n> GetSource 2\nint 0\n>+ NoSuch 1\nrefused int -1\n");
  EXPECT_EQ(piped.status, 0);
  EXPECT_EQ(run({"check", made("t", piped.out)}).status, 0);
}

TEST_F(ProgramTest, APipedShellNeedsNoLineBreakAtTheEnd) {
  EXPECT_EQ(run({"shell"}, "GetSource 2").out, "> GetSource 2\nint 0\n");
  EXPECT_EQ(run({"shell"}, "GetSource 2\r\n").out, "> GetSource 2\nint 0\n");
  EXPECT_EQ(run({"shell"}, "").out, "");
}

TEST_F(ProgramTest, AByteOrderMarkInFrontOfWhatComesThroughAPipeIsSkipped) {
  const std::string mark = "\xEF\xBB\xBF";
  for (const std::string line : {"GetSource 2", "> GetSource 2"}) {
    const Ending piped = run({}, mark + line + "\n");
    EXPECT_EQ(piped.out, "> GetSource 2\nint 0\n");
    EXPECT_EQ(piped.err, "");
  }
  EXPECT_EQ(run({}, mark + "# a comment\n").out, "# a comment\n");
  EXPECT_EQ(run({}, mark).out, "\n");
  EXPECT_EQ(run({}, "GetSource 2\n" + mark + "GetSource 2\n").out,
            "> GetSource 2\nint 0\n> " + mark + "GetSource 2\nrefused\n")
      << "elsewhere it is a character";
  EXPECT_EQ(run({"check", "/dev/stdin"}, mark + "> GetSource 2\nint 0\n").status, 0);
  EXPECT_EQ(run({"import", "-"}, mark + smallList).out,
            "imported 2 services: 2 added, 0 changed, 81 gone; 1 line could not be read\n");
  EXPECT_EQ(run({"exec", "GetCurrentChannel_Name"}).out, "unicode \"One\"\n");
}

TEST_F(ProgramTest, QuitEndsAPipedShell) {
  const Ending piped = run({}, "GetSource 2\n.quit\nGetSource 'x\n");
  EXPECT_EQ(piped.out, "> GetSource 2\nint 0\n> .quit\n");
  EXPECT_EQ(piped.err, "");
  EXPECT_EQ(piped.status, 0);
  EXPECT_EQ(run({"check", made("t", piped.out)}).status, 0);
  EXPECT_EQ(run({}, "GetSource 'x\n.quit\n").status, 2);
}

TEST_F(ProgramTest, BadInputOnAPipeIsAnErrorWithItsLine) {
  const Ending quotes = run({"shell"}, "GetSource 2\nGetSource 'x\n");
  expectError(quotes, {"standard input:2: ", "no closing '"});
  EXPECT_EQ(quotes.out, "> GetSource 2\nint 0\n> GetSource 'x\nerror: no closing ' for the one at column 11\n");
  expectError(run({"shell"}, "GetSource 1 2 3 4 5\n"), {"standard input:1: ", "5 parameters"});
  expectError(run({"shell"}, ".nosuch\n"), {"standard input:1: ", ".nosuch"});
  expectError(run({"shell"}, ".odd\x01\n"), {"standard input:1: there is no command '.odd\\x01'; "});
  expectError(run({"shell"}, ".import " + (folder / "none").string() + "\n"), {(folder / "none").string()});
}

TEST_F(ProgramTest, ALineOfAPipeThatIsNoTextIsAnErrorAndACommentInTheTranscript) {
  const std::pair<std::string, std::string> lines[] = {{"\xff\xfe x", "\\xFF\\xFE x"},
                                                       {"# \xff", "# \\xFF"},
                                                       {std::string("a\0b", 3), "a\\x00b"},
                                                       {"> GetSource \xC0\x80\r", "> GetSource \\xC0\\x80"}};
  for (const auto& [line, shown] : lines) {
    const Ending piped = run({}, "GetSource 2\n" + line + "\nGetSource 2\n");
    expectError(piped, {"emp-window: standard input:2: not a text in UTF-8\n"});
    EXPECT_EQ(piped.status, 2);
    EXPECT_EQ(piped.out, "> GetSource 2\nint 0\n# not a text in UTF-8: " + shown + "\n> GetSource 2\nint 0\n");
    EXPECT_EQ(run({"check", made("t", piped.out)}).status, 0);
  }
}

TEST_F(ProgramTest, ALineOfAPipeThatIsTooLongIsAnErrorAndItsStartACommentInTheTranscript) {
  const std::string start = "FindChannel " + std::string(188, '1');
  const Ending piped = run({}, "GetSource 2\n" + start + std::string(1'000'000, '1') + "\nGetSource 2\n");
  expectError(piped, {"emp-window: standard input:2: the line has more than 1 MB\n"});
  EXPECT_EQ(piped.status, 2);
  EXPECT_EQ(piped.out,
            "> GetSource 2\nint 0\n# the line has more than 1 MB: " + start + " ...\n> GetSource 2\nint 0\n");
  EXPECT_EQ(run({"check", made("t", piped.out)}).status, 0);
}

TEST_F(ProgramTest, ALineOfAPipeMayBeAsLongAsItCanBeBetweenWhatIsNoPartOfIt) {
  const std::string longest = "#" + std::string(999'999, 'a');
  const Ending piped = run({}, "\xEF\xBB\xBF" + longest + "\r\n" + longest + "\n");
  EXPECT_TRUE(piped.out == longest + "\n" + longest + "\n") << piped.out.size();
  EXPECT_EQ(piped.err, "");
}

TEST_F(ProgramTest, APipeWithoutALineBreakTakesLittleMemoryAndIsAnErrorInTheEnd) {
  const Ending ordinary = run({}, "GetSource 2\n");
  const std::string file = made("endless", "GetSource 2\n");
  fs::resize_file(file, 300'000'000);  // a hole in the file, which takes no room on the disk
  const Ending endless = runOn(file, {});
  expectError(endless, {"emp-window: cannot read standard input:2: it has more than 256 MB\n"});
  EXPECT_EQ(endless.status, 2);
  EXPECT_EQ(endless.out, "> GetSource 2\nint 0\n");
  EXPECT_LT(endless.memory - ordinary.memory, 32'000) << "in KB";
}

TEST_F(ProgramTest, StandardInputThatCantBeReadIsAnError) {
  const std::string reason = ": Is a directory\n";
  expectError(runOn(folder.path(), {}), {"emp-window: cannot read standard input:1" + reason});
  expectError(runOn(folder.path(), {"import", "-"}), {"emp-window: cannot read standard input" + reason});
}

TEST_F(ProgramTest, AnInputOfATranscriptThatIsTooLongIsAnErrorWithItsLine) {
  const std::string file = made("t", "> GetSource 2\nint 0\n> " + std::string(1'000'000, 'x') + "\n");
  expectError(run({"check", file}), {"emp-window: " + file + ":3: the line has more than 1 MB\n"});
  expectError(run({}, ".source " + file + "\n"), {"standard input:1: " + file + ":3: the line has more than 1 MB\n"});
}

// Output.

TEST_F(ProgramTest, OutputThatCantBeWrittenIsAnError) {
  const std::string transcript = made("t", "> GetSource 2\nint 0\n");
  const std::vector<std::vector<std::string>> calls{{"exec", "GetFullChannelList"},
                                                    {"exec", "--raw", "GetSource"},
                                                    {"exec", "NoSuchCommand"},
                                                    {"--help"},
                                                    {"exec", "--help"},
                                                    {"import", made("l", smallList)},
                                                    {"check", transcript},
                                                    {".services"}};
  for (const std::vector<std::string>& call : calls) {
    const bool isLine = call[0].starts_with('.');
    const Ending full = runOnFullDisk(isLine ? std::vector<std::string>{} : call, isLine ? call[0] + "\n" : "");
    EXPECT_TRUE(full.err.ends_with("emp-window: cannot write to standard output\n")) << full.err;
    EXPECT_EQ(full.status, 2) << ::testing::PrintToString(call);
  }
}

// Closed standard streams: the program must not mistake a file of the set for one of them.

class ClosedStreamProgramTest : public ProgramTest {
 protected:
  Ending runOnSet(const std::vector<int>& closed, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--state", state().string()});
    return runWithout(closed, std::move(arguments));
  }
  /// The lock file holds nothing but the id of the process that had it last.
  void expectLockIntact() const {
    const std::string lock = test::contentOf(state() / "lock");
    EXPECT_GT(lock.size(), 1U);
    EXPECT_EQ(lock.find_first_not_of("0123456789"), lock.size() - 1) << lock;
    EXPECT_TRUE(lock.ends_with('\n')) << lock;
  }
};

TEST_F(ClosedStreamProgramTest, InputThatIsClosedCantBeRead) {
  const Ending shell = runOnSet({STDIN_FILENO}, {"shell"});
  EXPECT_EQ(shell.out, "");
  expectError(shell, {"emp-window: cannot read standard input:1: Bad file descriptor\n"});
  EXPECT_EQ(shell.status, 2);
  const Ending import = runOnSet({STDIN_FILENO}, {"import", "-"});
  expectError(import, {"emp-window: cannot read standard input: Bad file descriptor\n"});
  EXPECT_EQ(import.status, 2);
  const Ending exec = runOnSet({STDIN_FILENO}, {"exec", "GetSource", "2"});
  EXPECT_EQ(exec.out, "int 0\n");
  EXPECT_EQ(exec.status, 0) << "it reads none";
  expectLockIntact();
}

TEST_F(ClosedStreamProgramTest, OutputThatIsClosedCantBeWritten) {
  const std::string transcript = made("t", "> GetSource 2\nint 0\n");
  const std::vector<std::vector<std::string>> calls{
      {"--state", state().string(), "exec", "GetSource"},
      {"--state", state().string(), "import", made("l", "Two:1:T:T:27500:301:302:0:0:2:1:1:0\n")},
      {"check", transcript}};
  for (const std::vector<std::string>& call : calls) {
    const Ending closed = runWithout({STDOUT_FILENO}, call);
    EXPECT_TRUE(closed.err.ends_with("emp-window: cannot write to standard output\n")) << closed.err;
    EXPECT_EQ(closed.status, 2) << ::testing::PrintToString(call);
  }
  expectLockIntact();
}

TEST_F(ClosedStreamProgramTest, MessagesAreLostWhereErrorIsClosed) {
  const Ending exec = runOnSet({STDERR_FILENO}, {"--log", "3", "exec", "GetSource", "2"});
  EXPECT_EQ(exec.out, "int 0\n");
  EXPECT_EQ(exec.status, 0);
  expectLockIntact();
  EXPECT_EQ(runOnSet({STDERR_FILENO}, {"exec"}).status, 2);
}

TEST_F(ClosedStreamProgramTest, AllMayBeClosed) {
  EXPECT_EQ(runOnSet({STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}, {"exec", "GetSource"}).status, 2);
  EXPECT_EQ(runOnSet({STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}, {"shell"}).status, 2);
  expectLockIntact();
}

}  // namespace
}  // namespace virtualtv::shell
