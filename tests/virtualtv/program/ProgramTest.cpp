// SPDX-License-Identifier: MIT
#include "virtualtv/program/Program.h"

#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "store/StateDirectory.h"
#include "virtualtv/shell/SmallList.h"

namespace virtualtv::shell {
namespace {

namespace fs = std::filesystem;

// exec

TEST_F(ProgramTest, ExecPrintsTheReplyAsATranscriptShowsIt) {
  const Ending number = run({"exec", "GetSource", "2"});
  EXPECT_EQ(number.out, "int 0\n");
  EXPECT_EQ(number.status, 0);
  EXPECT_EQ(number.err, "");
  EXPECT_EQ(run({"exec", "GetCurrentChannel_Name"}).out, "unicode \"Lighthouse One\"\n");
  EXPECT_TRUE(run({"exec", "GetFullChannelList"}).out.starts_with("ascii |\n| {\n"));
}

TEST_F(ProgramTest, ExecEndsWithOneWhenThePluginRefuses) {
  const Ending refused = run({"exec", "NoSuchCommand"});
  EXPECT_EQ(refused.out, "refused\n");
  EXPECT_EQ(refused.err, "");
  EXPECT_EQ(refused.status, 1);
}

TEST_F(ProgramTest, ExecRawPrintsTheBareReply) {
  EXPECT_EQ(run({"exec", "--raw", "GetSource", "2"}).out, "0\n");
  EXPECT_EQ(run({"exec", "--raw", "GetCurrentChannel_Name"}).out, "Lighthouse One\n");
  const std::string document = run({"exec", "--raw", "GetFullChannelList"}).out;
  EXPECT_TRUE(document.starts_with("{\n")) << document.substr(0, 80);
  EXPECT_TRUE(document.ends_with("}\n"));
  EXPECT_FALSE(document.ends_with("\n\n"));
}

TEST_F(ProgramTest, ExecRawTellsOfARefusalOnStandardErrorOnly) {
  const Ending refused = run({"exec", "--raw", "NoSuchCommand"});
  EXPECT_EQ(refused.out, "");
  EXPECT_EQ(refused.err, "emp-window: the plug-in refused 'NoSuchCommand'\n");
  EXPECT_EQ(refused.status, 1);
  expectError(run({"exec", "--raw", "No\nSuch\x1b"}), {"emp-window: the plug-in refused 'No\\x0ASuch\\x1B'\n"});
  EXPECT_EQ(run({"exec", "--raw", ""}).err, "emp-window: the plug-in refused ''\n");
}

TEST_F(ProgramTest, HelpOfExecTellsItsStatus) {
  const std::string help = run({"exec", "--help"}).out;
  EXPECT_NE(help.find("The exit status is 0 when the plug-in accepted the command"), std::string::npos) << help;
}

TEST_F(ProgramTest, ExecPassesArgumentsAsTheyAre) {
  const auto logged = [&](std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--log", "0", "exec"});
    return run(std::move(arguments)).err;
  };
  EXPECT_NE(logged({"GetSource", "-1", "--raw", "--", "shell"}).find("[GetSource][-1][--raw][--][shell]"),
            std::string::npos);
  EXPECT_NE(logged({"GetSource", "a b", "", "\"c'", "--help"}).find("[GetSource][a b][][\"c'][--help]"),
            std::string::npos);
  EXPECT_NE(logged({"GetSource", "--state", "/x"}).find("[GetSource][--state][/x]"), std::string::npos);
}

TEST_F(ProgramTest, ExecTakesAMarkBeforeTheCommandAndAllBehindItAsItIs) {
  const std::string logged = run({"--log", "0", "exec", "--", "FindChannel", "-1", "-1"}).err;
  EXPECT_NE(logged.find("[FindChannel][-1][-1]"), std::string::npos) << logged;
  const std::string odd = run({"--log", "0", "exec", "--raw", "--", "GetSource", "--raw", "--", "-x"}).err;
  EXPECT_NE(odd.find("[GetSource][--raw][--][-x]"), std::string::npos) << odd;
  EXPECT_EQ(run({"exec", "--raw", "--", "GetSource", "2"}).out, "0\n");
  EXPECT_EQ(run({"exec", "--", "--raw"}).out, "refused\n");
  EXPECT_EQ(run({"exec", "--", "--help"}).out, "refused\n");
  expectError(run({"exec", "--"}), {"name of a command"});
  expectError(run({"exec", "--nosuch", "--", "GetSource"}), {"no option --nosuch"});
}

TEST_F(ProgramTest, ExecSaysOfOptionsBehindTheCommandThatTheyAreParameters) {
  const std::string note = "emp-window: exec: --state behind GetSource is a parameter of it; options stand before it\n";
  const Ending noted = run({"exec", "GetSource", "2", "--state", state().string()});
  EXPECT_EQ(noted.err, note);
  EXPECT_EQ(noted.out, "int 0\n");
  EXPECT_EQ(noted.status, 0);
  EXPECT_FALSE(fs::exists(state()));
  EXPECT_EQ(run({"exec", "GetSource", "--state=x"}).err, note);
  EXPECT_EQ(run({"exec", "--", "GetSource", "2", "--state", "x"}).err, "");
  EXPECT_EQ(run({"exec", "GetSource", "2", "-1", "state"}).err, "");
}

TEST_F(ProgramTest, ExecHelpSaysHowLongAnEngineLivesAndHowToRunSeveralCommandsOnOne) {
  const std::string help = run({"exec", "--help"}).out;
  EXPECT_NE(help.find("the engine exists for one command only"), std::string::npos) << help;
  EXPECT_NE(help.find("'emp-window check'"), std::string::npos) << help;
  const std::size_t start = help.find("  printf '") + std::string("  printf '").size();
  std::string lines = help.substr(start, help.find("' | emp-window\n") - start);
  for (std::size_t at = lines.find("\\n"); at != std::string::npos; at = lines.find("\\n")) lines.replace(at, 2, "\n");
  EXPECT_EQ(run({}, lines).out, "> FindChannel 0 1\nint 1\n> GetChannel_Name 0\nunicode \"Lighthouse One\"\n");
  run({"exec", "FindChannel", "0", "1"});
  EXPECT_EQ(run({"exec", "GetChannel_Name", "0"}).out, "int -1\n");
}

TEST_F(ProgramTest, ExecRefusesWhatItCantPass) {
  const Ending tooMany = run({"exec", "GetSource", "1", "2", "3", "4", "5"});
  expectError(tooMany, {"GetSource", "5 parameters", "at most 4"});
  EXPECT_EQ(tooMany.out, "");
  expectError(run({"exec", "SetScreenCropRect", "1", "2", "3", "4", "5"}),
              {"5 parameters, at most 4 are passed; in the shell '+ SetScreenCropRect ...' passes any number"});
  expectError(run({"exec"}), {"exec", "name of a command"});
  expectError(run({"exec", "--nosuch", "GetSource"}), {"exec", "--nosuch"});
}

// The state directory.

TEST_F(ProgramTest, KeepsItsStateFromRunToRun) {
  EXPECT_EQ(run({"shell"}, ".vconf set db/kel/current_source_type int 3\n").status, 0);
  EXPECT_EQ(run({}, ".vconf get db/kel/current_source_type\n").out, "> .vconf get db/kel/current_source_type\nint 3\n");
  EXPECT_EQ(run({"--state", state().string(), "shell"}, ".vconf get db/kel/current_source_type\n").out,
            "> .vconf get db/kel/current_source_type\nunset\n");
}

TEST_F(ProgramTest, StateStandsInTheXdgFolderOrInTheHome) {
  EXPECT_EQ(runIn({"XDG_STATE_HOME=" + (folder / "xdg").string()}, {"exec", "GetSource"}).status, 0);
  EXPECT_TRUE(fs::exists(folder / "xdg/emp-window/tv.db"));
  EXPECT_EQ(runIn({"HOME=" + (folder / "home").string(), "XDG_STATE_HOME=relative"}, {"exec", "GetSource"}).status, 0);
  EXPECT_TRUE(fs::exists(folder / "home/.local/state/emp-window/tv.db"));
  expectError(runIn({}, {"exec", "GetSource"}), {"state", "--state DIR"});
}

TEST_F(ProgramTest, StateMayBeNamedBeforeTheSubcommandOrBehindIt) {
  const std::string directory = state().string();
  const std::string list = made("list", smallList);
  const std::vector<std::vector<std::string>> calls{{"--state", directory, "exec", "GetSource", "2"},
                                                    {"exec", "--state", directory, "GetSource", "2"},
                                                    {"exec", "--state=" + directory, "--", "GetSource", "2"},
                                                    {"shell", "--state", directory},
                                                    {"import", "--state", directory, list},
                                                    {"import", list, "--state", directory}};
  for (const std::vector<std::string>& call : calls) {
    EXPECT_EQ(run(call).status, 0) << ::testing::PrintToString(call);
    EXPECT_EQ(fs::remove_all(state()) > 0, true) << ::testing::PrintToString(call);
  }
  EXPECT_FALSE(fs::exists(folder / "xdg"));
  EXPECT_NE(run({"exec", "--log", "0", "GetSource"}).err, "");
  for (const std::vector<std::string>& twice :
       {std::vector<std::string>{"--state", directory, "exec", "--state", directory, "GetSource"},
        {"--state", directory, "--state", directory, "exec", "GetSource"},
        {"exec", "--state", directory, "--state=" + directory, "GetSource"},
        {"--state", directory, "--state", directory}}) {
    expectError(run(twice), {"emp-window: --state stands twice ("});
  }
  expectError(run({"--log", "1", "--log", "2", "exec", "GetSource"}), {"emp-window: --log stands twice ("});
}

TEST_F(ProgramTest, AnEmptyNameOfAStateDirectoryIsAnErrorAndNotTheUsersOwn) {
  const std::vector<std::vector<std::string>> calls{
      {"--state", "", "exec", "GetSource"}, {"--state=", "exec", "GetSource"}, {"--state=", "shell"},
      {"exec", "--state=", "GetSource"},    {"shell", "--state", ""},          {"--state", ""}};
  for (const std::vector<std::string>& call : calls) {
    const Ending refused = run(call);
    expectError(refused, {"--state: a directory is wanted, not an empty text"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.out, "");
  }
  EXPECT_FALSE(fs::exists(folder / "xdg"));
}

TEST_F(ProgramTest, AnEmptyNameIsAnErrorThatSaysWhatIsWanted) {
  const std::string transcript = made("t", "> GetSource 2\nint 0\n");
  const std::vector<std::pair<std::vector<std::string>, std::string>> calls{
      {{"import", ""}, "FILE: a file"},
      {{"check", ""}, "FILE: a file"},
      {{"check", transcript, ""}, "FILE: a file"},
      {{"check", "--junit=", transcript}, "--junit: a file"},
      {{"import", "--format=", transcript}, "--format: the name of a format"}};
  for (const auto& [call, wanted] : calls) {
    const Ending refused = run(call);
    expectError(refused, {"emp-window: " + wanted + " is wanted, not an empty text ("});
    EXPECT_EQ(refused.status, 2) << ::testing::PrintToString(call);
  }
}

TEST_F(ProgramTest, AReportInPlaceOfATranscriptIsAnErrorAndTheTranscriptStays) {
  const std::string text = "> GetSource 2\nint 0\n";
  const std::string transcript = made("t", text);
  const Ending refused = run({"check", "--junit", transcript, transcript});
  expectError(refused, {"cannot write the report to " + transcript + ": it is the transcript " + transcript});
  EXPECT_EQ(refused.status, 2);
  EXPECT_EQ(refused.out, "");
  EXPECT_EQ(test::contentOf(transcript), text);
}

TEST_F(ProgramTest, AStateDirectoryThatCantBeHadIsAnError) {
  const std::string file = made("file", "");
  const Ending isFile = run({"--state", file, "exec", "GetSource"});
  expectError(isFile, {file});
  EXPECT_EQ(isFile.out, "");
}

TEST_F(ProgramTest, AStateDirectoryThatAnotherProcessKeepsHoldingIsAnErrorThatNamesIt) {
  const StateDirectory held(state());
  expectError(run({"--state", state().string(), "exec", "GetSource"}), {state().string(), std::to_string(::getpid())});
}

TEST_F(ProgramTest, ADamagedDatabaseIsAnErrorAndStaysAsItIs) {
  fs::create_directory(state());
  made("state/tv.db", std::string(8192, 'x'));
  expectError(run({"--state", state().string(), "exec", "GetSource"}), {(state() / "tv.db").string()});
  EXPECT_EQ(test::contentOf(state() / "tv.db"), std::string(8192, 'x'));
}

// The log.

TEST_F(ProgramTest, LogLinesGoToStandardErrorUpToTheLevel) {
  EXPECT_EQ(run({"exec", "GetSource"}).err, "");
  const std::string routine = run({"--log", "0", "exec", "GetSource"}).err;
  EXPECT_NE(routine.find("log 0 CEmpEngineWindow::Execute Command[GetSource] Finish result[1].\n"), std::string::npos);
  EXPECT_EQ(routine.find("log 3 "), std::string::npos);
  EXPECT_NE(run({"--log", "3", "exec", "GetSource"}).err.find("log 3 "), std::string::npos);
  for (const std::string level : {"much", "-1", "", "2147483648"}) {
    const std::string wanted = "--log: a number from 0 to 2147483647 is wanted, not '" + level + "'";
    expectError(run({"--log", level, "exec", "GetSource"}), {wanted});
    expectError(run({"--log=" + level, "exec", "GetSource"}), {wanted});
  }
}

TEST_F(ProgramTest, LogLinesAreMessagesWithoutTheLocationLinesBeforeThem) {
  const std::string piped = run({}, ".log on\nGetSourceState\n.why\n").out;
  const std::string logged = run({"--log", "3", "exec", "GetSource"}).err;
  for (const std::string& lines : {piped, logged}) {
    EXPECT_EQ(lines.find("[KEL]["), std::string::npos) << lines;
    EXPECT_NE(lines.find(" FILE=[Window/Src/EmpEngineWindow] FUNCTION=[CEmpEngineWindow] LINE=["), std::string::npos);
  }
}

// import

TEST_F(ProgramTest, ImportReportsLinesItCouldNotReadAndCountsBoth) {
  const std::string list = made("list", smallList);
  const Ending imported = run({"import", list});
  EXPECT_EQ(imported.out, "imported 2 services: 2 added, 0 changed, 81 gone; 1 line could not be read\n");
  EXPECT_EQ(lineCount(imported.err), 1);
  EXPECT_TRUE(imported.err.starts_with(list + ":2: ")) << imported.err;
  EXPECT_EQ(imported.status, 0);
  EXPECT_EQ(run({}, ".get services\n").out, "> .get services\nservices = 2\n");
}

TEST_F(ProgramTest, ImportReadsStandardInput) {
  const Ending imported = run({"import", "-"}, smallList);
  EXPECT_TRUE(imported.err.starts_with("standard input:2: ")) << imported.err;
  EXPECT_EQ(imported.status, 0);
}

TEST_F(ProgramTest, FilesWithoutEndAreAnErrorThatNamesThem) {
  expectError(run({"import", "/dev/zero"}), {"emp-window: cannot read /dev/zero: it has more than 256 MB\n"});
  expectError(run({}, ".import /dev/zero\n"), {"standard input:1: cannot read /dev/zero: it has more than 256 MB\n"});
}

TEST_F(ProgramTest, ImportReplacesOrAdds) {
  run({"import", made("list", smallList)});
  run({"import", "--add", made("more", "Three;Net:474000:B8C23D12G4M64T8Y0:T:27500:301:302:0:0:3:1:1:0\n")});
  EXPECT_EQ(run({}, ".get services\n").out, "> .get services\nservices = 3\n");
  run({"import", made("list", smallList)});
  EXPECT_EQ(run({}, ".get services\n").out, "> .get services\nservices = 2\n");
}

TEST_F(ProgramTest, AnImportThatBringsNothingFailsAndKeepsTheServices) {
  run({"import", made("list", smallList)});
  const Ending nothing = run({"import", "--format", "vdr", made("noise", "no channel\n")});
  EXPECT_EQ(nothing.out, "imported 0 services: 0 added, 0 changed, 0 gone; 1 line could not be read\n");
  EXPECT_EQ(nothing.status, 1);
  const std::string noise = (folder / "noise").string();
  EXPECT_TRUE(nothing.err.starts_with(noise + ":1: ")) << nothing.err;
  EXPECT_TRUE(nothing.err.ends_with("\nemp-window: " + noise + ": no service in it\n")) << nothing.err;
  EXPECT_EQ(lineCount(nothing.err), 2);
  expectError(run({"import", made("binary", std::string("\0\x01\xff\xfe", 4))}), {"binary", "not a channel list"});
  expectError(run({"import", (folder / "none").string()}), {(folder / "none").string(), "No such file"});
  expectError(run({"import", folder.path().string()}), {folder.path().string(), "directory"});
  expectError(run({"import", "--format", "other", made("list", smallList)}), {"--format", "other"});
  expectError(run({"import", "--encoding", "other", made("list", smallList)}), {"--encoding", "'other'", "iconv -l"});
  for (const std::vector<std::string>& empty :
       {std::vector<std::string>{"import", "--encoding", "", made("list", smallList)},
        {"import", "--encoding=", made("list", smallList)},
        {"import", made("list", smallList), "--encoding="}}) {
    expectError(run(empty), {"--encoding: the name of an encoding is wanted, not an empty text"});
  }
  EXPECT_EQ(run({}, ".get services\n").out, "> .get services\nservices = 2\n");
}

TEST_F(ProgramTest, AnImportOfAListWithoutLinesSaysThatNothingIsInIt) {
  for (const char* format : {"vdr", "dvbv5"}) {
    for (const char* content : {"", "# a comment\n\n"}) {
      const std::string list = made("e.conf", content);
      const Ending nothing = run({"import", "--format", format, list});
      EXPECT_EQ(nothing.out, "imported 0 services: 0 added, 0 changed, 0 gone; 0 lines could not be read\n");
      EXPECT_EQ(nothing.err, "emp-window: " + list + ": no service in it\n");
      EXPECT_EQ(nothing.status, 1);
    }
  }
  EXPECT_EQ(run({"import", "--format", "vdr", "-"}).err, "emp-window: standard input: no service in it\n");
}

TEST_F(ProgramTest, AnImportOfTheShellThatBringsNothingIsAnErrorOfItsLine) {
  const std::string list = made("list", "One:474000:B8C23D12G4M64T8Y0:T:27500:301:302:0:0:70000:1:1:0\n");
  const Ending piped = run({}, ".import " + list + "\n");
  expectError(piped, {"standard input:1: " + list + ": no service in it\n"});
  EXPECT_EQ(piped.status, 2);
  EXPECT_TRUE(piped.out.ends_with("\nerror: " + list + ": no service in it\n")) << piped.out;
}

TEST_F(ProgramTest, ImportedServicesAnswerCommands) {
  run({"import", made("list", smallList)});
  EXPECT_EQ(run({"exec", "GetCurrentChannel_Name"}).out, "unicode \"One\"\n");
}

// check

TEST_F(ProgramTest, CheckEndsWithZeroOnlyWhenAllPass) {
  const std::string good = made("good", "> GetSource 2\nint 0\n");
  const std::string bad = made("bad", "> GetSource 2\nint 5\n");
  EXPECT_EQ(run({"check", good}).status, 0);
  const Ending both = run({"check", good, bad});
  EXPECT_EQ(both.status, 1);
  EXPECT_NE(both.out.find("-int 5\n+int 0\n"), std::string::npos) << both.out;
  EXPECT_EQ(run({"check", "--update", bad}).status, 0);
  EXPECT_EQ(test::contentOf(bad), "> GetSource 2\nint 0\n");
}

TEST_F(ProgramTest, CheckWritesAJunitReport) {
  const std::string report = (folder / "report.xml").string();
  EXPECT_EQ(run({"check", made("good", "> GetSource 2\nint 0\n"), "--junit", report}).status, 0);
  EXPECT_NE(test::contentOf(report).find("<testsuite "), std::string::npos);
  expectError(run({"check", (folder / "good").string(), "--junit", (folder / "none/r.xml").string()}), {"none/r.xml"});
}

TEST_F(ProgramTest, CheckDoesNotTouchTheState) {
  run({"check", made("t", "> .vconf set a int 1\n")});
  EXPECT_FALSE(fs::exists(folder / "xdg"));
  expectError(run({"--state", state().string(), "check", (folder / "t").string()}), {"--state", "check"});
}

TEST_F(ProgramTest, CheckSaysWhatItCantRead) {
  expectError(run({"check", (folder / "none").string()}), {(folder / "none").string()});
  expectError(run({"check", made("binary", std::string("\x7f"
                                                       "ELF\0\x01",
                                                       6))}),
              {"binary:1", "not a text"});
  expectError(run({"check"}), {"FILE"});
}

// The command line itself.

TEST_F(ProgramTest, TellsItsVersionAndItsUse) {
  const Ending version = run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "emp-window, plug-in Window 0001 1.003\n");
  const Ending help = run({"--help"});
  EXPECT_EQ(help.status, 0);
  for (const char* word : {"shell", "exec", "check", "import", "serve", "--state", "--log"}) {
    EXPECT_NE(help.out.find(word), std::string::npos) << word;
  }
}

TEST_F(ProgramTest, ArgumentsThatItDoesNotKnowAreAnError) {
  expectError(run({"nonsense"}), {"nonsense"});
  expectError(run({"--nonsense"}), {"--nonsense"});
  expectError(run({"shell", "more"}), {"more"});
  EXPECT_FALSE(fs::exists(folder / "xdg"));
}

TEST_F(ProgramTest, AnUnknownSubcommandIsAnErrorThatNamesWhatWasMeant) {
  const std::string exec = "there is no subcommand 'gettvmode'; did you mean 'emp-window exec GetTVMode'?";
  expectError(run({"gettvmode", "1"}), {exec});
  expectError(run({"--state", state().string(), "gettvmode"}), {exec});
  expectError(run({"GetSource"}), {"did you mean 'emp-window exec GetSource'?"});
  expectError(run({"chekc", "file"}), {"there is no subcommand 'chekc'; did you mean 'emp-window check'?"});
  expectError(
      run({"nonsense"}),
      {"there is no subcommand 'nonsense'; there are shell, exec, check, import, export, scan, serve and demo"});
  expectError(run({"--", "exec", "GetSource"}), {"there is no subcommand '--'"});
  EXPECT_FALSE(fs::exists(folder / "xdg"));
}

TEST_F(ProgramTest, WhatIsDamagedIsQuotedInOneLine) {
  run({"exec", "GetTVMode"});
  sqlite3* handle = nullptr;
  ASSERT_EQ(sqlite3_open((folder / "xdg/emp-window/tv.db").c_str(), &handle), SQLITE_OK);
  const char* damage = "UPDATE set_state SET value = '1:x' || char(10) WHERE key = 'isp.audio'";
  EXPECT_EQ(sqlite3_exec(handle, damage, nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(handle);
  expectError(run({"exec", "GetTVMode"}), {"cannot read isp.audio of the set that is kept: track 1, '1:x\\x0A'"});
}

}  // namespace
}  // namespace virtualtv::shell
