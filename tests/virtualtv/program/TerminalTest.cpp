// SPDX-License-Identifier: MIT
// The shell on a terminal, as people use it.
#include <algorithm>
#include <csignal>
#include <cstddef>
#include <sstream>
#include <string>

#include "virtualtv/program/Program.h"

namespace virtualtv::shell {
namespace {

class TerminalTest : public ProgramTest {
 protected:
  std::vector<std::string> arguments() const { return {"--state", state().string(), "shell"}; }
  /// Types a line on a new terminal. @return the output, up to the next prompt.
  std::string answerTo(const std::string& line, unsigned short columns = 200) const {
    OnTerminal terminal(arguments(), columns);
    terminal.readUntil("> ");
    terminal.type(line + "\n");
    terminal.readUntil("\r\n");
    std::string shown = terminal.readUntil("\n> ");
    shown.erase(std::remove(shown.begin(), shown.end(), '\r'), shown.end());
    return shown.substr(0, shown.size() - std::string("> ").size());
  }
};

TEST_F(TerminalTest, PromptsAnswersAndEndsWithTheInput) {
  OnTerminal terminal(arguments());
  terminal.readUntil("> ");
  terminal.type("GetSource 2\n");
  EXPECT_NE(terminal.readUntil("> ").find("int 0\r\n"), std::string::npos);
  terminal.type("\x04");
  terminal.readUntil("nothing more");
  EXPECT_EQ(terminal.wait(), 0);
}

TEST_F(TerminalTest, ErrorsAreShownOnceAndDoNotEndIt) {
  OnTerminal terminal(arguments());
  terminal.readUntil("> ");
  terminal.type(".nosuch\n");
  const std::string shown = terminal.readUntil("> ");
  EXPECT_NE(shown.find("error: there is no command '.nosuch'"), std::string::npos);
  EXPECT_EQ(shown.find("emp-window:"), std::string::npos);
  terminal.type("\x04");
  terminal.readUntil("nothing more");
  EXPECT_EQ(terminal.wait(), 0);
}

TEST_F(TerminalTest, TabCompletesOrListsAsAComment) {
  OnTerminal terminal(arguments());
  terminal.readUntil("> ");
  terminal.type("GetCurrentChannel_Na\t\n");
  EXPECT_NE(terminal.readUntil("\n> ").find("unicode \"Lighthouse One\""), std::string::npos);
  terminal.type(".re\t");
  EXPECT_NE(terminal.readUntil(".restart").find("\n# .reopen .reset .restart"), std::string::npos);
  terminal.type("\x15\x04");
  terminal.readUntil("nothing more");
  EXPECT_EQ(terminal.wait(), 0);
}

TEST_F(TerminalTest, TabCompletesPathsWithBlanksAndQuotes) {
  std::filesystem::create_directory(folder / "sp ace");
  test::write(folder / "sp ace/it's", "> GetSource 2\n");
  OnTerminal terminal(arguments());
  terminal.readUntil("\n> ");
  for (const char* quote : {"", "'", "\""}) {
    terminal.type(".source " + (quote + (folder / "sp").string()) + "\t\t\n");
    EXPECT_TRUE(terminal.readUntil("\n> ").ends_with("\r\nint 0\r\n> ")) << quote;
  }
}

TEST_F(TerminalTest, WhatCompletesIsListedInCommentsThatFitTheTerminal) {
  OnTerminal terminal(arguments(), 40);
  terminal.readUntil("\n> ");
  terminal.type("GetC\t");
  std::istringstream shown(terminal.readUntil("_Type\r\n"));
  std::string line;
  std::getline(shown, line);
  EXPECT_EQ(line, "GetC\r");
  int lines = 0;
  for (; std::getline(shown, line); ++lines) {
    EXPECT_LE(line.size(), 41U) << line;
    EXPECT_TRUE(line.starts_with("# Get")) << line;
  }
  EXPECT_GT(lines, 5);
}

TEST_F(TerminalTest, NamesOfFilesAreListedInALineWhateverTheyHold) {
  test::write(folder / "odd\x1b[2J", "");
  test::write(folder / "oddness", "");
  OnTerminal terminal(arguments());
  terminal.readUntil("> ");
  terminal.type(".source " + (folder / "odd").string() + "\t");
  const std::string shown = terminal.readUntil("oddness\r\n");
  EXPECT_NE(shown.find("# " + (folder / "odd\\x1B[2J").string() + " "), std::string::npos) << shown;
}

TEST_F(TerminalTest, RemembersWhatWasTyped) {
  {
    OnTerminal terminal(arguments());
    terminal.readUntil("> ");
    terminal.type("GetSource 2\n");
    terminal.readUntil("> ");
    terminal.type("\x04");
    terminal.readUntil("nothing more");
  }
  OnTerminal terminal(arguments());
  terminal.readUntil("> ");
  terminal.type("\x10\n");  // recalls the previous line
  const std::string shown = terminal.readUntil("int 0");
  EXPECT_NE(shown.find("GetSource 2"), std::string::npos) << shown;
}

TEST_F(TerminalTest, SaysAtTheStartWhatAPersonNeeds) {
  OnTerminal terminal(arguments());
  EXPECT_EQ(terminal.readUntil("\n"),
            "# emp-window: .help tells what to type, Tab completes, .quit or Ctrl-D ends\r\n");
}

TEST_F(TerminalTest, SaysItOnANarrowTerminalInLinesThatFit) {
  OnTerminal terminal(arguments(), 40);
  EXPECT_EQ(terminal.readUntil("> "),
            "# emp-window: .help tells what to type,\r\n# Tab completes, .quit or Ctrl-D ends\r\n> ");
}

TEST_F(TerminalTest, QuitEndsIt) {
  OnTerminal terminal(arguments());
  terminal.readUntil("> ");
  terminal.type(".quit\n");
  ASSERT_EQ(terminal.readUntil("nothing more"), ".quit\r\n");
  EXPECT_EQ(terminal.wait(), 0);
}

TEST_F(TerminalTest, ControlDEndsItOnAnEmptyLineAndDeletesACharacterElsewhere) {
  OnTerminal terminal(arguments());
  terminal.readUntil("> ");
  terminal.type(".xget country\x01\x06\x04\n");  // to the start of the line, past the '.', and deletes 'x'
  EXPECT_TRUE(terminal.readUntil("\ncountry = 3\r\n> ").ends_with("country = 3\r\n> "));
  terminal.type("\x04");
  EXPECT_EQ(terminal.readUntil("nothing more"), "\r\n");
  EXPECT_EQ(terminal.wait(), 0);
}

TEST_F(TerminalTest, ControlCTakesBackWhatWasTypedAndDoesNotEndIt) {
  OnTerminal terminal(arguments());
  terminal.readUntil("> ");
  terminal.type("\x03");
  terminal.type(".nosuch\x03GetSource 2\n");
  const std::string shown = terminal.readUntil("int 0\r\n");
  EXPECT_NE(shown.find("int 0"), std::string::npos) << shown;
  EXPECT_EQ(shown.find("error"), std::string::npos) << shown;
  terminal.readUntil("> ");
  terminal.type(".nosuch\x03\x04");
  EXPECT_EQ(terminal.readUntil("nothing more").find("error"), std::string::npos);
  EXPECT_EQ(terminal.wait(), 0);
}

// Signals. No shell runs on a test's terminal that could resume the program; tests that need one start it.

TEST_F(TerminalTest, IsNotSuspendedWhereNoShellCouldResumeIt) {
  OnTerminal terminal(arguments());
  terminal.readUntil("> ");
  terminal.type("GetSo");
  terminal.readUntil("GetSo");
  for (int times = 0; times < 3; ++times) {
    terminal.send(SIGTSTP);
    terminal.settle();
    EXPECT_FALSE(terminal.echoes());
  }
  terminal.type("urce 2\n");
  EXPECT_EQ(terminal.readUntil("> "), "urce 2\r\nint 0\r\n> ");
  terminal.type("\x1aGetTVMode\n");
  EXPECT_EQ(terminal.readUntil("> "), "GetTVMode\r\nint 1\r\n> ");
  terminal.type("\x04");
  terminal.readUntil("nothing more");
  EXPECT_EQ(terminal.wait(), 0);
}

TEST_F(TerminalTest, ControlZSuspendsItWhereAShellCanResumeItAndTheLineIsShownAgain) {
  const std::string shell =
      "set -m; \"$0\" --state \"$1\"; echo suspended; read; fg; echo suspended; read; fg; exit $?";
  OnTerminal terminal({"-c", shell, EMP_WINDOW, state().string()}, 200, "/bin/bash");
  terminal.readUntil("> ");
  terminal.type("GetSo");
  terminal.readUntil("GetSo");
  for (int times = 0; times < 2; ++times) {
    terminal.type("\x1a");
    EXPECT_TRUE(terminal.readUntil("suspended").ends_with("suspended"));
    EXPECT_TRUE(terminal.echoes());
    terminal.type("\n");
    EXPECT_TRUE(terminal.readUntil("\n> GetSo").ends_with("\n> GetSo"));
    EXPECT_FALSE(terminal.echoes());
  }
  terminal.type("urce 2\n");
  EXPECT_EQ(terminal.readUntil("> "), "urce 2\r\nint 0\r\n> ");
  terminal.type("\x04");
  terminal.readUntil("nothing more");
  EXPECT_EQ(terminal.wait(), 0);
}

TEST_F(TerminalTest, ControlCStillClearsTheLineOnceAnInteractiveShellHasResumedIt) {
  OnTerminal terminal({"HISTFILE=", "PS1=shell> ", "bash", "--norc", "-i"}, 200, "/usr/bin/env");
  terminal.readUntil("shell> ");
  terminal.type("'" EMP_WINDOW "' --state '" + state().string() + "'\n");
  terminal.readUntil("ends\r\n> ");
  for (int times = 0; times < 2; ++times) {
    terminal.type("\x1a");
    terminal.readUntil("shell> ");
    terminal.type("fg\n");
    terminal.readUntil("\n> ");
    terminal.type(".nosuch");
    terminal.readUntil(".nosuch");
    terminal.type("\x03GetSource 2\n");
    ASSERT_TRUE(terminal.readUntil("int 0\r\n> ").ends_with("int 0\r\n> "));
  }
}

TEST_F(TerminalTest, GivesTheKeyThatInterruptsBackWhileItIsSuspended) {
  const std::string shell = "set -m; \"$0\" --state \"$1\"; echo suspended; read";
  OnTerminal terminal({"-c", shell, EMP_WINDOW, state().string()}, 200, "/bin/bash");
  terminal.readUntil("> ");
  EXPECT_FALSE(terminal.interrupts());
  terminal.type("\x1a");
  terminal.readUntil("suspended\r\n");
  EXPECT_TRUE(terminal.interrupts());
}

TEST_F(TerminalTest, ASignalThatEndsItLeavesTheTerminalAsItWas) {
  for (const int signal : {SIGTERM, SIGHUP, SIGINT, SIGQUIT}) {
    OnTerminal terminal(arguments());
    terminal.readUntil("> ");
    EXPECT_FALSE(terminal.echoes());
    EXPECT_FALSE(terminal.interrupts());
    terminal.send(signal);
    EXPECT_EQ(terminal.wait(), -1);
    EXPECT_TRUE(terminal.echoes()) << signal;
    EXPECT_TRUE(terminal.interrupts()) << signal;
  }
}

TEST_F(TerminalTest, ALineGoesAsFarAsTheTerminalDoesWhenThatChanges) {
  const std::string line = "# a line that is longer than the terminal was at first";
  OnTerminal terminal(arguments(), 20);
  terminal.readUntil("\n> ");
  terminal.widen(200);
  terminal.type(line);
  EXPECT_EQ(terminal.readUntil("at first"), line);
}

// Lines that are not valid text.

TEST_F(TerminalTest, ALineThatIsNoTextIsNotRunAndACommentShowsIt) {
  EXPECT_EQ(answerTo("GetSource \xFC"), "# not a text in UTF-8: GetSource \\xFC\n");
  EXPECT_EQ(answerTo("\xFF\xFE"), "# not a text in UTF-8: \\xFF\\xFE\n");
  EXPECT_EQ(answerTo("S\xC3 \xE2\x82 \xC3\xBC"), "# not a text in UTF-8: S\\xC3 \\xE2\\x82 \xC3\xBC\n");
  EXPECT_EQ(answerTo("# \xC0\x80"), "# not a text in UTF-8: # \\xC0\\x80\n");
  EXPECT_EQ(answerTo(".get \xED\xA0\x80"), "# not a text in UTF-8: .get \\xED\\xA0\\x80\n");
}

TEST_F(TerminalTest, TellsWhatWasMeantByWhatIsNoCommand) {
  EXPECT_EQ(answerTo("gettvmode"), "refused\n# did you mean: GetTVMode\n");
  EXPECT_EQ(answerTo("SetChannel(3,0)"), "refused\n# did you mean: SetChannel 3 0\n");
  EXPECT_EQ(answerTo("help"), "refused\n# did you mean: .help\n");
  EXPECT_EQ(answerTo("exit"), "refused\n# did you mean: .quit\n");
  EXPECT_EQ(answerTo(".servces 3"),
            "error: there is no command '.servces'; '.help' lists them\n# did you mean: .services 3\n");
  EXPECT_EQ(answerTo(".get regoin"),
            "error: there is no knob 'regoin'; '.help knobs' lists them\n# did you mean: .get region\n");
}

TEST_F(TerminalTest, WhatItTellsOfAMeantCommandCanStandInATranscript) {
  const std::string shown = "> gettvmode\n" + answerTo("gettvmode") + "> GetTVMode\n" + answerTo("GetTVMode");
  EXPECT_EQ(run({"check", made("t", shown)}).status, 0) << shown;
}

TEST_F(TerminalTest, OnlyAPersonIsToldWhatWasMeant) {
  EXPECT_EQ(run({}, "help\n.hlep\n").out,
            "> help\nrefused\n> .hlep\nerror: there is no command '.hlep'; '.help' lists them\n");
}

TEST_F(TerminalTest, HelpFitsTheTerminal) {
  for (const char* topic : {"", "commands", "operations", "knobs", "faults", "GetSource", "SetScreenCropRect"}) {
    std::istringstream help(answerTo(std::string(".help ") + topic, 80));
    int lines = 0;
    for (std::string line; std::getline(help, line); ++lines) EXPECT_LE(line.size(), 80U) << line;
    EXPECT_GT(lines, 5) << topic;
  }
}

TEST_F(TerminalTest, HelpOnAPipeIsTheSameWhateverTheTerminal) {
  const std::string piped = run({}, ".help faults\n").out;
  EXPECT_EQ(piped, "> .help faults\n" + answerTo(".help faults", 1000));
}

}  // namespace
}  // namespace virtualtv::shell
