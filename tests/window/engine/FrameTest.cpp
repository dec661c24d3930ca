// SPDX-License-Identifier: MIT
// The frame around every command: which lines are logged in which order, which commands are refused, what stays
// untouched.
#include <pthread.h>

#include <algorithm>

#include "support/Channels.h"
#include "support/LogLines.h"

namespace {

using support::commandLogs;
using support::Lines;
using support::place;
using virtualtv::framework::LogLine;

using FrameTest = channels::ChannelEngineTest;

std::string entered(const std::string& command, const std::string& parameters = "[][][][]") {
  return "0 [CEmpEngineWindow::Execute][*] [" + command + "]" + parameters + ",pid = *";
}
std::string unsupported(const std::string& command) {
  return "0 CEmpEngineWindow::Execute Command[" + command + "] is NOT supported. return false";
}

TEST_F(FrameTest, LogsTheCallThenTheWorkersLinesThenTheFinish) {
  EXPECT_EQ(execute("GetChannel_Size"), "int 0");
  EXPECT_EQ(logs(), commandLogs("GetChannel_Size", {}, {place("GetChannel_Size"), "3 *pnSize = [0]"}, 1));
}

TEST_F(FrameTest, LogsOnTheChannelOfPlugIns) {
  execute("SetChannel", {"2", "0"});
  const std::vector<virtualtv::framework::LogLine> lines = messages();
  EXPECT_FALSE(lines.empty());
  for (const virtualtv::framework::LogLine& line : lines) EXPECT_EQ(line.channel, 2) << line.message.text();
}

TEST_F(FrameTest, LogsTheCallingThreadAndTheEngineUnderTheNameOfItsOperation) {
  execute("GetChannel_Size");
  execute("NoSuchCommand");
  const std::vector<LogLine> lines = messages();
  ASSERT_EQ(lines.size(), 6U);
  const std::string thread = ",pid = " + std::to_string(pthread_self());
  const std::string engine = lines[0].message.text().substr(0, lines[0].message.text().find("] [") + 1);
  for (const std::size_t call : {0U, 4U}) {
    EXPECT_EQ(lines[call].message.text().substr(lines[call].message.text().rfind(',')), thread);
    EXPECT_EQ(lines[call].message.text().substr(0, engine.size()), engine) << "the engine's own address";
  }
  for (const std::size_t at : {0U, 3U, 4U, 5U}) EXPECT_EQ(lines[at].function, "Execute") << lines[at].message.text();
}

TEST_F(FrameTest, CommandsAreComparedExactly) {
  for (const std::string name : {"", " ", "setwindow", "SETWINDOW", "SetWindow ", " SetWindow", "SetWindo",
                                 "SetWindows", "GetChannel_", "Get", "SetWindow\n", "\xff"}) {
    EXPECT_EQ(execute(name), "refused") << name;
    EXPECT_EQ(logs(), (Lines{entered(name), unsupported(name)}));
  }
  EXPECT_EQ(execute(std::string("GetChannel_Size\0", 16)), "refused");
  EXPECT_EQ(execute(std::string("GetChannel_Size\0x", 17)), "refused");
  EXPECT_EQ(calls(), Lines());
}

TEST_F(FrameTest, LogsAllFourParametersAlsoThoseThatTheCommandDoesNotTake) {
  EXPECT_EQ(execute("GetChannel_Size", {"a", "", "c d", "[e]"}), "int 0");
  EXPECT_EQ(logs().front(), entered("GetChannel_Size", "[a][][c d][[e]]"));
}

TEST_F(FrameTest, PercentSignsInCommandAndParametersAreText) {
  EXPECT_EQ(execute("%s%n%d", {"%s%s%s", "%n", "%1000000d", "%"}), "refused");
  EXPECT_EQ(logs(), (Lines{entered("%s%n%d", "[%s%s%s][%n][%1000000d][%]"), unsupported("%s%n%d")}));
}

TEST_F(FrameTest, TextsOfAnyLengthPass) {
  const std::string text(200000, 'x');
  EXPECT_EQ(execute(text, {text, text, text, text}), "refused");
  EXPECT_EQ(execute("GetChannel_Size", {text, text, text, text}), "int 0");
  EXPECT_EQ(execute("GetChannel_Major", {std::string(200000, '9')}), "int -1");
}

TEST_F(FrameTest, AnExceptionThatNoOperationCaughtIsToldAndAnsweredWithMinusOne) {
  for (const auto& [saying, told] : {std::pair(Saying::noLog, "no log"), {Saying::nothing, "unknown exception"}}) {
    breakLog("*pnSize = [0]", saying);
    EXPECT_EQ(execute("GetChannel_Size"), "int -1");
    const Lines lines{place("GetChannel_Size"), std::string("0 Exception Handled by Execute ") + told};
    EXPECT_EQ(logs(), commandLogs("GetChannel_Size", {}, lines, -1));
  }
  EXPECT_EQ(execute("GetChannel_Size"), "int 0") << "the engine goes on";
}

// The entry with a parameter list.

TEST_F(FrameTest, AnUnknownCommandWithAParameterListIsRefusedWithMinusOne) {
  for (const char* name : {"NoSuchCommand", "SetWindow", "GetChannel_Size", "setscreencroprect", " "}) {
    EXPECT_EQ(executeWithParamList(name, {"0", "1"}), "refused int -1") << name;
    const std::string text = name;
    EXPECT_EQ(logs(),
              (Lines{"0 CEmpEngineWindow::ExecuteWithParamList[" + text + "]\n",
                     "0 CEmpEngineWindow::ExecuteWithParamList Command[" + text + "] is NOT supported. return false"}));
  }
  EXPECT_EQ(calls(), Lines());
}

TEST_F(FrameTest, AnEmptyCommandWithAParameterListIsRefusedAndLeavesTheReplyUntouched) {
  EXPECT_EQ(executeWithParamList("", {"0", "1"}), "refused");
  EXPECT_EQ(logs(), (Lines{"0 CEmpEngineWindow::ExecuteWithParamList[]\n", "0 Command length is <= 0.\n"}));
}

TEST_F(FrameTest, AnExceptionIsToldAndAnsweredWithMinusOneAlsoWithAParameterList) {
  breakLog("Command length is <= 0.\n");
  EXPECT_EQ(executeWithParamList("", {}), "int -1");
  EXPECT_EQ(logs(),
            (Lines{"0 CEmpEngineWindow::ExecuteWithParamList[]\n", "0 Exception Handled by ExecuteWithParamList no log",
                   "0 CEmpEngineWindow::ExecuteWithParamList Command[] Finish result[-1]."}));
}

TEST_F(FrameTest, LinesOfTheEntryWithAParameterListStandUnderItsName) {
  executeWithParamList("NoSuchCommand", {});
  executeWithParamList("", {});
  for (const LogLine& line : messages()) EXPECT_EQ(line.function, "ExecuteWithParamList") << line.message.text();
}

}  // namespace
