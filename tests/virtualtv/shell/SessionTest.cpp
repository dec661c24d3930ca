// SPDX-License-Identifier: MIT
#include "shell/Session.h"

#include "seam/Seam.h"
#include "virtualtv/shell/Support.h"

namespace virtualtv::shell {
namespace {

TEST_F(SessionTest, PrintsTheReplyOfACommand) {
  EXPECT_EQ(run("int 7"), "int 7");
  EXPECT_EQ(run("ascii 'a b'"), "ascii a b");
  EXPECT_EQ(run("ascii"), "ascii");
  EXPECT_EQ(run("unicode Süd"), "unicode \"Süd\"");
  EXPECT_EQ(run("empty"), "empty");
  EXPECT_EQ(run("refuse"), "refused");
  EXPECT_EQ(run("refuse -1"), "refused int -1");
}

TEST_F(SessionTest, PrintsATextOfSeveralLinesAsABlock) {
  EXPECT_EQ(lines("lines a ''"), (Lines{"ascii |", "| a"}));
  EXPECT_EQ(lines("lines a b"), (Lines{"ascii |", "| a", "| b\\"}));
  EXPECT_EQ(lines("lines '' '# > x'"), (Lines{"ascii |", "|", "| # > x\\"}));
}

TEST_F(SessionTest, PassesParametersAsTheyAreQuoted) {
  EXPECT_EQ(run("echo -1 'a b' \"\" \\'"), "ascii [-1][a b][][']");
  EXPECT_EQ(run("echo"), "ascii [][][][]");
}

TEST_F(SessionTest, TakesAnInputWithAndWithoutItsMark) {
  for (const char* input : {"int 7", "> int 7", ">int 7", "  int 7  ", "> > int 7"})
    EXPECT_EQ(run(input), "int 7") << input;
  EXPECT_EQ(run("> .vconf get none"), "unset");
}

TEST_F(SessionTest, PassesAParameterListOfAnyLength) {
  EXPECT_EQ(run(">+ SetIt 1 2 3 4 5 6 7 8 9"), "ascii SetIt,1,2,3,4,5,6,7,8,9");
  EXPECT_EQ(run("> + SetIt '' x"), "ascii SetIt,,x");
  EXPECT_EQ(run("+SetIt"), "ascii SetIt");
  EXPECT_EQ(run("+ ''"), "ascii");
}

TEST_F(SessionTest, WhatNobodyObservesIsNeitherRecordedNorLogged) {
  std::string ret;
  for (const char* input : {"", "log 3 x", ".restart"}) {
    run(input);
    EXPECT_EQ(framework::logLevel(), -1) << input;
    EXPECT_FALSE(seam::Seam::observed()) << input;
    EXPECT_TRUE(session->client().execute({"write", "db/x", "1"}, false, ret));
  }
}

TEST_F(SessionTest, AListenerIsToldOfTheLogUpToItsLevel) {
  Lines told;
  const auto listening =
      framework::listenToLog(0, [&](const framework::LogLine& line) { told.push_back(line.message.masked()); });
  EXPECT_EQ(framework::logLevel(), 0);
  std::string ret;
  for (const char* level : {"0", "3"}) session->client().execute({"log", level, "unheard"}, false, ret);
  for (const char* level : {"0", "3"}) run(std::string("log ") + level + " heard");
  EXPECT_EQ(told, (Lines{"unheard at *\n", "heard at *\n"}));
}

TEST_F(SessionTest, ABlankInputPrintsNothing) {
  for (const char* input : {"", " ", ">", "> "}) EXPECT_EQ(run(input), "") << input;
  EXPECT_EQ(session->takeRemarks().errors, Lines{});
}

TEST_F(SessionTest, AnEmptyNameIsACommandLikeOthers) {
  EXPECT_EQ(run("''"), "empty");
}

TEST_F(SessionTest, BadInputIsOneErrorLineAndDoesNotReachTheEngine) {
  EXPECT_EQ(run("echo 'a"), "error: no closing ' for the one at column 6");
  EXPECT_EQ(run("echo 1 2 3 4 5"), "error: echo: 5 parameters, at most 4 are passed");
  EXPECT_EQ(run("+"), "error: a command is wanted");
  EXPECT_EQ(run(".nosuch"), "error: there is no command '.nosuch'; '.help' lists them");
  EXPECT_EQ(run(".trace 'on"), "error: no closing ' for the one at column 8");
  EXPECT_EQ(run("count"), "int 1");
}

TEST_F(SessionTest, TooManyParametersAreAnErrorThatTellsOfTheListWhereACommandTakesOne) {
  EXPECT_EQ(
      run("SetScreenCropRect 1 2 3 4 5 6 7 8 9"),
      "error: SetScreenCropRect: 9 parameters, at most 4 are passed; in the shell '+ SetScreenCropRect ...' passes "
      "any number");
  EXPECT_EQ(run("SetSource 1 2 3 4 5"), "error: SetSource: 5 parameters, at most 4 are passed");
}

TEST_F(SessionTest, TellsOfEachErrorOnce) {
  run("echo 'a");
  run("int 1");
  run(".nosuch");
  EXPECT_EQ(session->takeRemarks().errors.size(), 2U);
  EXPECT_EQ(session->takeRemarks().errors.size(), 0U);
}

TEST_F(SessionTest, AnErrorWithOddCharactersStaysOneLine) {
  EXPECT_EQ(lines(".\x1b[2J\xff").size(), 1U);
  EXPECT_EQ(run(".\x1b\xff"), "error: there is no command '.\\x1B\\xFF'; '.help' lists them");
  EXPECT_EQ(run(".'a\\b\x1b'"), "error: there is no command '.a\\b\\x1B'; '.help' lists them");
}

TEST_F(SessionTest, WhatThePluginThrowsIsAnError) {
  EXPECT_EQ(run("throw"), "error: thrown on purpose");
  EXPECT_EQ(run("int 7"), "int 7");
}

TEST_F(SessionTest, TheFirstCommandOpensTheEngine) {
  EXPECT_EQ(run(".engine"), "no engine is open");
  run("int 1");
  EXPECT_EQ(run(".engine"), "engine main (in use)");
}

TEST_F(SessionTest, AnEngineThatCantBeOpenedIsAnError) {
  app.opens = false;
  EXPECT_EQ(run("int 1"), "error: engine 'main' could not be opened");
  app.opens = true;
  EXPECT_EQ(run("int 1"), "int 1");
}

TEST_F(SessionTest, PassesComplaintsOfTheSetOn) {
  tv().complain("it hurts");
  EXPECT_EQ(session->takeRemarks().complaints, Lines{"it hurts"});
  EXPECT_EQ(session->takeRemarks().complaints, Lines{});
}

TEST_F(SessionTest, ComplaintsOutliveARestart) {
  tv().complain("it hurts");
  run(".restart");
  EXPECT_EQ(session->takeRemarks().complaints, Lines{"it hurts"});
}

TEST_F(SessionTest, LeavesSeamAndLogAsTheyAreAtFirst) {
  run("int 1");
  session.reset();
  EXPECT_EQ(framework::logLevel(), -1);
  EXPECT_FALSE(seam::Seam::observed());
}

TEST_F(SessionTest, AnotherOneCanFollowOnTheSameDevice) {
  run("write kept 5");
  session.reset();
  session.emplace(television.device, folder.path());
  EXPECT_EQ(run("read kept"), "int 5");
}

// Engines side by side.

TEST_F(SessionTest, EnginesAreIndependent) {
  run("count");
  EXPECT_EQ(run(".engine second"), "");
  EXPECT_EQ(run("count"), "int 1");
  run(".engine main");
  EXPECT_EQ(run("count"), "int 2");
  EXPECT_EQ(lines(".engine"), (Lines{"engine main (in use)", "engine second"}));
}

TEST_F(SessionTest, AnEngineThatCantBeOpenedIsNotTakenIntoUse) {
  run("count");
  app.opens = false;
  EXPECT_EQ(run(".engine second"), "error: engine 'second' could not be opened");
  EXPECT_EQ(run("count"), "int 2");
}

TEST_F(SessionTest, AnEngineNeedsAName) {
  EXPECT_EQ(run(".engine ''"), "error: an engine needs a name");
}

TEST_F(SessionTest, AnEngineThatWasClosedIsOpenedAnewByACommandWithItsApplication) {
  run(".app mine");
  run("count");
  run(".engine second");
  EXPECT_EQ(run(".close main"), "");
  EXPECT_EQ(run(".engine"), "engine second (in use)");
  EXPECT_EQ(run(".close main"), "error: the engine 'main' is not open");
  EXPECT_EQ(run(".close"), "");
  EXPECT_EQ(run(".engine"), "no engine is open");
  EXPECT_EQ(run("count"), "int 1");
  EXPECT_EQ(run(".engine"), "engine second (in use)");
  run(".engine main");
  EXPECT_EQ(run("count"), "int 1");
  EXPECT_EQ(run("app"), "ascii mine");
  EXPECT_EQ(run(".close a b"), "error: usage: .close [NAME]");
}

TEST_F(SessionTest, WordsMayHaveControlCharactersButNoCommandANull) {
  EXPECT_EQ(run("lines $'a\\nb' $'\\x63\\144'"), "ascii |\n| a\n| b\n| cd\\");
  EXPECT_EQ(run("echo $'a\\000b'"), "error: a command takes no null characters");
  EXPECT_EQ(run(".vconf set k str $'a\\000b'"), "");
  EXPECT_EQ(run(".vconf get k"), "str \"a\\u0000b\"");
}

TEST_F(SessionTest, ReopenMakesANewEngine) {
  run("count");
  run("count");
  EXPECT_EQ(run(".reopen"), "");
  EXPECT_EQ(run("count"), "int 1");
}

TEST_F(SessionTest, TheApplicationIsTheOneOfTheEngineInUseAndStaysItsOwn) {
  run(".app org.example.tv widget1");
  EXPECT_EQ(run("app"), "ascii org.example.tv");
  EXPECT_EQ(run("widget"), "ascii widget1");
  run(".engine second");
  EXPECT_EQ(run("app"), "ascii");
  run(".engine main");
  run(".app other");
  EXPECT_EQ(run("app"), "ascii other");
  EXPECT_EQ(run("widget"), "ascii");
  run(".reopen");
  EXPECT_EQ(run("app"), "ascii other");
  EXPECT_EQ(run(".app"), "error: usage: .app APPID [WIDGETID]");
}

// Files of inputs.

TEST_F(SessionTest, SourceRunsTheInputsOfAFileAndPrintsTheirOutput) {
  test::write(folder / "setup", "# set up\n> write a 1\nint 99\n\n> .vconf get a\n");
  EXPECT_EQ(lines(".source setup"), (Lines{"int 0", "int 1"}));
}

TEST_F(SessionTest, FilesAreRelativeToTheOneThatNamesThem) {
  std::filesystem::create_directory(folder / "inner");
  test::write(folder / "outer", "> .source inner/first\n> int 3\n");
  test::write(folder / "inner/first", "> int 1\n> .source second\n");
  test::write(folder / "inner/second", "> int 2\n");
  EXPECT_EQ(lines(".source outer"), (Lines{"int 1", "int 2", "int 3"}));
  EXPECT_EQ(lines(".source inner/second"), Lines{"int 2"});
}

TEST_F(SessionTest, FilesThatRunEachOtherComeToAnEnd) {
  test::write(folder / "a", "> .source b\n");
  test::write(folder / "b", "> .source a\n");
  EXPECT_EQ(run(".source a"), "error: a: files run each other too deep");
  EXPECT_EQ(run("int 1"), "int 1");
}

TEST_F(SessionTest, AFileThatCantBeRunIsAnError) {
  EXPECT_EQ(run(".source none"), "error: cannot read none: No such file or directory");
  test::write(folder / "bad", "> int 1\n\nint 1\n");
  EXPECT_EQ(run(".source bad"), "error: bad:3: output must directly follow its '>' line");
  EXPECT_EQ(run(".source"), "error: usage: .source FILE");
}

TEST_F(SessionTest, QuitEndsIt) {
  EXPECT_FALSE(session->ended);
  EXPECT_EQ(run(".quit"), "");
  EXPECT_TRUE(session->ended);
  EXPECT_TRUE(session->takeRemarks().errors.empty());
}

TEST_F(SessionTest, InputsBehindQuitAreErrorsAndDoNothing) {
  run(".quit");
  EXPECT_EQ(run("int 5"), "error: '.quit' has ended the session, nothing behind it is run");
  EXPECT_EQ(session->lastCommand(), "");
  EXPECT_EQ(session->takeRemarks().errors.size(), 1U);
}

TEST_F(SessionTest, QuitInAFileEndsThatFileOnly) {
  test::write(folder / "inner", "> int 2\n> .quit\n> int 3\n");
  test::write(folder / "outer", "> int 1\n> .source inner\n> int 4\n> .quit\n");
  EXPECT_EQ(run(".source outer"), "int 1\nint 2\nint 4");
  EXPECT_EQ(run("int 5"), "int 5");
}

TEST_F(SessionTest, ErrorsInAFileAreErrorsOfTheSession) {
  test::write(folder / "bad", "> .nosuch\n> int 1\n");
  EXPECT_EQ(lines(".source bad").size(), 2U);
  EXPECT_EQ(session->takeRemarks().errors.size(), 1U);
}

// Output is never mistaken for an input or a remark.

TEST_F(SessionTest, NothingThatIsPrintedReadsAsAnInputOrARemark) {
  run(".set service.#1.name '> x'");
  run(".vconf set '# key' str '> value'");
  run("ascii '> x'");
  for (const char* input : {"ascii '> x'", "ascii '# x'", "lines '> x' '# y'", "lines '' ''", "unicode '> x'", ".get",
                            ".vconf", ".services", ".why", ".engine", ".fault", ".help", ".help commands",
                            ".help operations", ".help knobs", ".help faults", ".nosuch", "> > > nothing"}) {
    for (const std::string& line : lines(input)) {
      EXPECT_FALSE(line.empty() || line.find_first_not_of(' ') == std::string::npos) << input;
      EXPECT_NE(line.front(), '>') << input << ": " << line;
      EXPECT_NE(line.front(), '#') << input << ": " << line;
      EXPECT_EQ(oneLine(line), line) << input;
    }
  }
}

}  // namespace
}  // namespace virtualtv::shell
