// SPDX-License-Identifier: MIT
#include "shell/Check.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <sstream>

#include "shell/Junit.h"
#include "virtualtv/shell/Support.h"

namespace virtualtv::shell {
namespace {

class CheckTest : public ::testing::Test {
 protected:
  std::string made(const std::string& name, const std::string& content) {
    test::write(folder / name, content);
    return (folder / name).string();
  }
  std::string content(const std::string& name) { return test::contentOf(folder / name); }

  CheckedFile checked(const std::string& text) { return checkTranscript(app, made("t.txt", text), false); }
  /// Updates a transcript. @return its new content.
  std::string updated(const std::string& text) {
    checkTranscript(app, made("t.txt", text), true);
    return content("t.txt");
  }
  std::string file() { return (folder / "t.txt").string(); }

  bool runCheck(const CheckOptions& options) {
    out.str("");
    err.str("");
    return check(app, options, out, err);
  }

  TemporaryDirectory folder;
  TestApp app;
  std::ostringstream out;
  std::ostringstream err;
};

TEST_F(CheckTest, PassesWhenAllIsPrintedAsExpected) {
  const CheckedFile result =
      checked("# c\n> int 1\nint 1\n\n> lines a b\nascii |\n| a\n| b\\\n>+ x 1\nascii x,1\n> .trace on\n");
  EXPECT_TRUE(result.passed()) << result.diff << result.error;
  EXPECT_EQ(result.steps.size(), 4U);
}

TEST_F(CheckTest, PassesWithoutALineBreakAtTheEnd) {
  EXPECT_TRUE(checked("> int 1\nint 1").passed());
}

TEST_F(CheckTest, PassesWithLineBreaksOfOtherSystems) {
  EXPECT_TRUE(checked("# c\r\n> int 1\r\nint 1\r\n\r\n").passed());
}

TEST_F(CheckTest, PassesWithAByteOrderMarkWhichAnUpdateKeeps) {
  EXPECT_TRUE(checked("\xEF\xBB\xBF> int 1\nint 1\n").passed());
  EXPECT_EQ(updated("\xEF\xBB\xBF# c\n> int 1\nint 2\n"), "\xEF\xBB\xBF# c\n> int 1\nint 1\n");
}

TEST_F(CheckTest, ShowsAUnifiedDiffWithFileAndLines) {
  const CheckedFile result = checked("# c\n> int 1\nint 2\n# d\n> int 3\nint 3\n");
  EXPECT_FALSE(result.passed());
  EXPECT_EQ(result.diff,
            "--- " + file() + "\n+++ " + file() +
                " (printed now)\n@@ -1,6 +1,6 @@\n # c\n > int 1\n-int 2\n+int 1\n # d\n > int 3\n int 3\n");
  EXPECT_NE(result.steps.at(0).failure, "");
  EXPECT_EQ(result.steps.at(1).failure, "");
}

TEST_F(CheckTest, SeesMissingAndSuperfluousOutput) {
  EXPECT_FALSE(checked("> int 1\n").passed());
  EXPECT_FALSE(checked("> int 1\nint 1\nint 1\n").passed());
  EXPECT_FALSE(checked("> .trace on\nint 1\n").passed());
  EXPECT_FALSE(checked("> lines a b\nascii |\n| a\n| b\n").passed());
}

TEST_F(CheckTest, EachTranscriptHasAFreshSet) {
  const std::string text = "> read a\nint -7\n> write a 5\nint 0\n> .get country\ncountry = 3\n> .set country 9\n";
  CheckOptions options{{made("1", text), made("2", text)}, false, {}};
  EXPECT_TRUE(runCheck(options)) << out.str();
  EXPECT_EQ(out.str(), "transcripts: 2 passed, 0 failed\n");
}

TEST_F(CheckTest, FilesAreRelativeToTheTranscript) {
  made("setup", "> write a 5\n");
  EXPECT_TRUE(checked("> .source setup\nint 0\n> read a\nint 5\n").passed());
}

TEST_F(CheckTest, ErrorsNameFilesAsTheyStandInTheTranscript) {
  std::filesystem::create_directory(folder / "inner");
  made("inner/setup", "> .source none\n> .import ../none.conf\n> .source bad\n");
  made("inner/bad", "int 1\n");
  made("noise", "hello\n");
  const std::string text =
      "> .source inner/none\nerror: cannot read inner/none: No such file or directory\n"
      "> .source inner\nerror: cannot read inner: Is a directory\n"
      "> .source inner/bad\nerror: inner/bad:1: output before the first '>' line\n"
      "> .import ./none.conf\nerror: cannot read ./none.conf: No such file or directory\n"
      "> .import noise\nerror: noise: not a channel list of a known format: VDR's channels.conf (vdr), libdvbv5 "
      "(dvbv5), zap file (zap), Enigma2's lamedb (lamedb), M3U (m3u), JSON (json)\n"
      "> .source inner/setup\n"
      "error: cannot read none: No such file or directory\n"
      "error: cannot read ../none.conf: No such file or directory\n"
      "error: bad:1: output before the first '>' line\n";
  const CheckedFile result = checked(text);
  EXPECT_TRUE(result.passed()) << result.diff << result.error;
}

TEST_F(CheckTest, AnUnknownOperationFailsEvenIfItIsExpected) {
  const std::string reply = "error: no operation 'Nothing'; '.help operations' lists them\n";
  const CheckedFile result = checked("> int 1\nint 1\n> .fault Nothing result=0\n" + reply);
  EXPECT_EQ(result.diff, "");
  EXPECT_FALSE(result.passed());
  EXPECT_EQ(result.findings, Lines{file() + ":3: unknown operation Nothing"});
}

TEST_F(CheckTest, AFaultNeverHitFailsTheLineThatSetIt) {
  const std::string fault = "> .fault vconf_set_str result=-1\n";
  const std::string finding = "a fault was never hit: vconf_set_str times=1 result=-1";
  for (const char* end : {"", "> .fault clear\n", "> .restart\n", "> .reset\n"}) {
    const CheckedFile result = checked("> int 1\nint 1\n" + fault + "# c\n> int 2\nint 2\n" + end);
    EXPECT_EQ(result.findings, Lines{file() + ":3: " + finding}) << end;
    EXPECT_EQ(result.diff, "");
    EXPECT_EQ(result.steps.at(0).failure, "");
    EXPECT_EQ(result.steps.at(1).failure, file() + ":3: " + finding);
    EXPECT_EQ(result.steps.at(2).failure, "");
  }
  EXPECT_TRUE(checked("> .fault vconf_set_int result=-1\n> write a 1\nint -1\n").passed());
}

TEST_F(CheckTest, FindingsAreOneLineEach) {
  EXPECT_EQ(checked("> .fault vconf_get_str 'result=a\x01\\b'\n").findings,
            Lines{file() + ":1: a fault was never hit: vconf_get_str times=1 result=$'a\\001\\\\b'"});
  EXPECT_EQ(checked("> .fault a\x01 result=0\nerror: no operation 'a\\x01'; '.help operations' lists them\n").findings,
            Lines{file() + ":1: unknown operation a\\x01"});
}

TEST_F(CheckTest, FindingsStandInTheOrderOfTheirLines) {
  const CheckedFile result = checked(
      "> .fault vconf_set_str result=-1\n"
      "> .fault Nothing result=0\nerror: no operation 'Nothing'; '.help operations' lists them\n"
      "> .fault vconf_set_str result=-2\n");
  EXPECT_EQ(result.findings, (Lines{file() + ":1: a fault was never hit: vconf_set_str times=1 result=-1",
                                    file() + ":2: unknown operation Nothing",
                                    file() + ":4: a fault was never hit: vconf_set_str times=1 result=-2"}));
}

TEST_F(CheckTest, AFaultNeverHitOfAFileThatIsRunFailsTheLineThatRunsIt) {
  made("setup", "> int 1\n> int 1\n> .fault vconf_set_str result=-1\n");
  EXPECT_EQ(checked("> int 1\nint 1\n> .source setup\nint 1\nint 1\n> int 1\nint 1\n").findings,
            Lines{file() + ":3: a fault was never hit: vconf_set_str times=1 result=-1"});
}

TEST_F(CheckTest, AnErrorOfADotCommandMayBeExpected) {
  EXPECT_TRUE(checked("> .trace maybe\nerror: usage: .trace on|off\n").passed());
}

TEST_F(CheckTest, UpdateRewritesTheOutputAndKeepsTheRest) {
  EXPECT_EQ(updated("# head\n\n> int 1\nint 2\nint 3\n# tail\n> lines a b\n> .trace on\nold\n\n# end"),
            "# head\n\n> int 1\nint 1\n# tail\n> lines a b\nascii |\n| a\n| b\\\n> .trace on\n\n# end\n");
}

TEST_F(CheckTest, AnUpdatedTranscriptPasses) {
  updated(
      "> echo '>' '#' ''\n> lines '' ' '\n> lines '\\\\' '\\\\'\n> unicode '\"'\n> .help\n> .services\n> throw\n> "
      ".why\n");
  EXPECT_TRUE(checkTranscript(app, file(), false).passed());
}

TEST_F(CheckTest, UpdateLeavesAFileThatAgreesUntouched) {
  const std::string text = "> int 1\r\nint 1";
  EXPECT_EQ(updated(text), text);
}

TEST_F(CheckTest, UpdateDoesNotHideAFinding) {
  const CheckedFile result = checkTranscript(app, made("t.txt", "> .fault vconf_set_str result=-1\n"), true);
  EXPECT_FALSE(result.passed());
}

TEST_F(CheckTest, WhatCantBeRunIsAnErrorAndStaysAsItIs) {
  const std::pair<std::string, std::string> bad[] = {
      {std::string("> A\n\0\n", 6), ":2: not a text in UTF-8"},  {"\xff\xfe>", ":1: not a text in UTF-8"},
      {"int 1\n", ":1: output before the first '>' line"},       {"", ": there is no '>' line to run"},
      {"# nothing but this\n", ": there is no '>' line to run"},
  };
  for (const auto& [text, reason] : bad) {
    const CheckedFile result = checkTranscript(app, made("t.txt", text), true);
    EXPECT_EQ(result.error, file() + reason);
    EXPECT_FALSE(result.passed());
    EXPECT_EQ(content("t.txt"), text);
  }
}

TEST_F(CheckTest, GoesOnBehindAFileThatCantBeRead) {
  const CheckOptions options{{(folder / "none").string(), made("good", "> int 1\nint 1\n")}, false, {}};
  EXPECT_FALSE(runCheck(options));
  EXPECT_EQ(err.str(), "emp-window: cannot read " + (folder / "none").string() + ": No such file or directory\n");
  EXPECT_EQ(out.str(), "failed: " + options.files[0] + "\ntranscripts: 1 passed, 1 failed\n");
}

TEST_F(CheckTest, ListsTheFailedFilesBehindTheDifferencesOfSeveral) {
  const CheckOptions options{{made("bad", "> int 1\nint 2\n"), made("good", "> int 1\nint 1\n"),
                              made("idle", "> .fault vconf_set_str result=-1\n"), (folder / "none").string()},
                             false,
                             {}};
  EXPECT_FALSE(runCheck(options));
  const std::string end = "failed: " + options.files[0] + "\nfailed: " + options.files[2] +
                          "\nfailed: " + options.files[3] + "\ntranscripts: 1 passed, 3 failed\n";
  EXPECT_TRUE(out.str().ends_with("result=-1\n" + end)) << out.str();
}

TEST_F(CheckTest, ListsNoFailedFileWhereThereIsOnlyOneOrNone) {
  EXPECT_FALSE(runCheck({{made("bad", "> int 1\nint 2\n")}, false, {}}));
  EXPECT_EQ(out.str().find("failed: "), std::string::npos) << out.str();
  EXPECT_TRUE(runCheck({{made("a", "> int 1\nint 1\n"), made("b", "> int 1\nint 1\n")}, false, {}}));
  EXPECT_EQ(out.str(), "transcripts: 2 passed, 0 failed\n");
}

TEST_F(CheckTest, PrintsDifferencesAndFindings) {
  const CheckOptions options{{made("bad", "> int 1\nint 2\n> .fault vconf_set_str result=-1\n")}, false, {}};
  EXPECT_FALSE(runCheck(options));
  EXPECT_NE(out.str().find("-int 2\n+int 1\n"), std::string::npos);
  EXPECT_NE(out.str().find("bad:3: a fault was never hit"), std::string::npos);
  EXPECT_NE(out.str().find("transcripts: 0 passed, 1 failed\n"), std::string::npos);
}

// The JUnit report.

/// What an XML parser reads in a report: a line for each element with its attributes, and the texts of failures.
std::string parsed(const std::string& file) {
  const std::string script =
      "import sys, xml.etree.ElementTree as t\n"
      "for e in t.parse(sys.argv[1]).iter(): print(e.tag, sorted(e.attrib.items()), repr((e.text or '').strip()))\n";
  const std::string command = "python3 -c \"" + script + "\" '" + file + "' 2>&1";
  std::string text;
  const std::unique_ptr<std::FILE, std::function<void(std::FILE*)>> pipe(
      popen(command.c_str(), "r"), [](std::FILE* opened) { pclose(opened); });  // NOLINT: a fixed command
  for (int byte = std::fgetc(pipe.get()); byte != EOF; byte = std::fgetc(pipe.get())) text += static_cast<char>(byte);
  return text;
}

TEST_F(CheckTest, JunitReportHasASuiteForEachFileAndACaseForEachInput) {
  CheckOptions options{{made("good", "> int 1\nint 1\n> int 2\nint 2\n"), made("bad", "> int 1\nint 2\n")}, false, {}};
  options.files.push_back((folder / "none").string());
  options.junit = (folder / "report.xml").string();
  EXPECT_FALSE(runCheck(options));
  const std::string report = parsed(*options.junit);
  EXPECT_NE(report.find("testsuite [('errors', '0'), ('failures', '0'), ('name', '" + options.files[0] +
                        "'), ('tests', '2'), ('time', '"),
            std::string::npos)
      << report;
  EXPECT_NE(report.find("testsuite [('errors', '0'), ('failures', '1'), ('name', '" + options.files[1] +
                        "'), ('tests', '1'), ('time', '"),
            std::string::npos);
  EXPECT_NE(report.find("testsuite [('errors', '1'), ('failures', '0'), ('name', '" + options.files[2] +
                        "'), ('tests', '1'), ('time', '"),
            std::string::npos);
  EXPECT_NE(report.find("('name', '3: > int 2')"), std::string::npos) << report;
  EXPECT_NE(report.find("-int 2"), std::string::npos);
  EXPECT_NE(report.find("No such file or directory"), std::string::npos);
}

TEST_F(CheckTest, JunitReportNamesFileAndLineOfAFailure) {
  CheckOptions options{{made("idle", "> int 1\nint 1\n> .fault vconf_set_str result=-1\n> int 1\nint 1\n")}, false, {}};
  options.junit = (folder / "report.xml").string();
  EXPECT_FALSE(runCheck(options));
  const std::string report = parsed(*options.junit);
  const std::string place = options.files[0] + ":3: ";
  const std::string failing =
      "testcase [('classname', '" + options.files[0] + "'), ('name', '3: > .fault vconf_set_str";
  const std::size_t at = report.find(failing);
  ASSERT_NE(at, std::string::npos) << report;
  const std::size_t next = report.find('\n', at) + 1;
  EXPECT_EQ(report.substr(next, report.find('\n', next) - next),
            "failure [('message', '" + place + "not as expected')] '" + place +
                "a fault was never hit: vconf_set_str times=1 result=-1'");
}

TEST(JunitReport, TellsTimesInSecondsAndTotals) {
  using namespace std::chrono_literals;
  CheckedFile good{"good", "", {{1, "> a", "", 1250ms}, {2, "> b", "", 7us}}, "", {}, 2s};
  CheckedFile bad{"bad", "", {{1, "> c", "differs", 0s}}, "-", {}, 61s};
  CheckedFile none{"none", "cannot read none", {}, "", {}, 1us};
  const std::string report = junitReport({good, bad, none});
  for (const char* part : {"<testsuites tests=\"4\" failures=\"1\" errors=\"1\" time=\"63.000001\">",
                           "<testsuite name=\"good\" tests=\"2\" failures=\"0\" errors=\"0\" time=\"2.000000\">",
                           "name=\"1: &gt; a\" time=\"1.250000\"/>", "name=\"2: &gt; b\" time=\"0.000007\"/>",
                           "<testsuite name=\"bad\" tests=\"1\" failures=\"1\" errors=\"0\" time=\"61.000000\">",
                           "name=\"1: &gt; c\" time=\"0.000000\">",
                           "<testsuite name=\"none\" tests=\"1\" failures=\"0\" errors=\"1\" time=\"0.000001\">",
                           "name=\"run\" time=\"0.000001\">"}) {
    EXPECT_NE(report.find(part), std::string::npos) << part << "\n" << report;
  }
}

TEST_F(CheckTest, MeasuresWhatEachInputAndTheWholeTake) {
  const CheckedFile result = checked("> int 1\nint 1\n> .services 1\n");
  ASSERT_EQ(result.steps.size(), 2U);
  const auto inputs = result.steps[0].time + result.steps[1].time;
  EXPECT_GT(result.steps[0].time.count(), 0);
  EXPECT_GT(result.steps[1].time.count(), 0);
  EXPECT_LT(inputs, result.time) << "which has the making of the set in it";
}

TEST_F(CheckTest, JunitReportIsWellFormedWhateverTheTextsHold) {
  CheckOptions options{
      {made("odd", "> ascii '<&>\"]]>\x1b\x01\t'\nold <b>&amp;\n> unicode '\xEF\xBF\xBF\xEF\xBF\xBE'\nold\n")},
      false,
      {}};
  options.junit = (folder / "report.xml").string();
  EXPECT_FALSE(runCheck(options));
  const std::string report = parsed(*options.junit);
  EXPECT_NE(report.find("testsuites"), std::string::npos) << report;
  EXPECT_NE(report.find("<&>\"]]>"), std::string::npos) << report;
  EXPECT_NE(report.find("old <b>&amp;"), std::string::npos) << report;
}

TEST_F(CheckTest, AReportInPlaceOfATranscriptIsRefusedBeforeAnythingRuns) {
  const std::string text = "> int 1\nint 2\n";
  const std::string file = made("a.txt", text);
  std::filesystem::create_directory(folder / "inner");
  std::filesystem::create_symlink(file, folder / "link.xml");
  std::filesystem::create_hard_link(file, folder / "other.xml");
  for (const char* report : {"a.txt", "inner/../a.txt", "link.xml", "other.xml"}) {
    const CheckOptions options{{made("good", "> int 1\nint 1\n"), file}, true, (folder / report).string()};
    try {
      runCheck(options);
      ADD_FAILURE() << report;
    } catch (const std::runtime_error& error) {
      EXPECT_EQ(error.what(), "cannot write the report to " + *options.junit + ": it is the transcript " + file);
    }
    EXPECT_EQ(test::contentOf(file), text) << report;
    EXPECT_EQ(out.str(), "");
  }
  const std::string none = (folder / "none").string();
  EXPECT_THROW(runCheck({{none}, false, none}), std::runtime_error);
  EXPECT_FALSE(std::filesystem::exists(none));
}

TEST_F(CheckTest, AReportThatCantBeWrittenIsAnError) {
  CheckOptions options{{made("good", "> int 1\nint 1\n")}, false, (folder / "none/report.xml").string()};
  EXPECT_THROW(runCheck(options), std::runtime_error);
}

}  // namespace
}  // namespace virtualtv::shell
