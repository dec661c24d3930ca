#include "shell/Check.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <sstream>

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
  /// What an update makes of a transcript.
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

TEST_F(CheckTest, AnUnknownOperationFailsEvenIfItIsExpected) {
  const std::string reply = "error: no operation 'Nothing'; '.help operations' lists them\n";
  const CheckedFile result = checked("> int 1\nint 1\n> .fault Nothing result=0\n" + reply);
  EXPECT_EQ(result.diff, "");
  EXPECT_FALSE(result.passed());
  EXPECT_EQ(result.findings, Lines{file() + ":3: unknown operation Nothing"});
}

TEST_F(CheckTest, AFaultNeverHitFailsAtItsEnd) {
  const std::string finding = "a fault was never hit: vconf_set_str times=1 result=-1";
  EXPECT_EQ(checked("> .fault vconf_set_str result=-1\n> int 1\nint 1\n").findings, Lines{file() + ":2: " + finding});
  EXPECT_EQ(checked("> .fault vconf_set_str result=-1\n> .fault clear\n> int 1\nint 1\n").findings,
            Lines{file() + ":2: " + finding});
  EXPECT_TRUE(checked("> .fault vconf_set_int result=-1\n> write a 1\nint -1\n").passed());
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
  EXPECT_EQ(out.str(), "transcripts: 1 passed, 1 failed\n");
}

TEST_F(CheckTest, PrintsDifferencesAndFindings) {
  const CheckOptions options{{made("bad", "> int 1\nint 2\n> .fault vconf_set_str result=-1\n")}, false, {}};
  EXPECT_FALSE(runCheck(options));
  EXPECT_NE(out.str().find("-int 2\n+int 1\n"), std::string::npos);
  EXPECT_NE(out.str().find("bad:3: a fault was never hit"), std::string::npos);
  EXPECT_NE(out.str().find("transcripts: 0 passed, 1 failed\n"), std::string::npos);
}

// The report for machines.

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
                        "'), ('tests', '2')]"),
            std::string::npos)
      << report;
  EXPECT_NE(report.find("testsuite [('errors', '0'), ('failures', '1'), ('name', '" + options.files[1] +
                        "'), ('tests', '1')]"),
            std::string::npos);
  EXPECT_NE(report.find("testsuite [('errors', '1'), ('failures', '0'), ('name', '" + options.files[2] +
                        "'), ('tests', '1')]"),
            std::string::npos);
  EXPECT_NE(report.find("('name', '3: > int 2')"), std::string::npos) << report;
  EXPECT_NE(report.find("-int 2"), std::string::npos);
  EXPECT_NE(report.find("No such file or directory"), std::string::npos);
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

TEST_F(CheckTest, AReportThatCantBeWrittenIsAnError) {
  CheckOptions options{{made("good", "> int 1\nint 1\n")}, false, (folder / "none/report.xml").string()};
  EXPECT_THROW(runCheck(options), std::runtime_error);
}

}  // namespace
}  // namespace virtualtv::shell
