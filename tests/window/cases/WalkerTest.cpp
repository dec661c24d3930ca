// SPDX-License-Identifier: MIT
// The walker itself: the errors that it must find.
#include "window/cases/Walker.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "catalogue/Catalogue.h"

namespace cases {
namespace {

/// A case with these inputs and outputs after `.reset`.
std::string piece(const std::string& title, const std::string& steps) {
  return "# " + title + "\n> .reset\n" + steps + "\n";
}

const std::map<std::string, std::string> pieces{
    {"success", piece("SetTVMode: success", "> SetTVMode 2\nint 1")},
    {"unparsed", piece("SetTVMode: unparsed mode", "> SetTVMode cable\nint -1")},
    {"missing", piece("SetTVMode: missing mode", "> SetTVMode\nint -1")},
    {"refused", piece("SetTVMode: -1, the set refuses", "> SetTVMode 22\nint -1")},
    {"unreached", piece("SetTVMode: 0, no navigation",
                        "> .fault TVServiceAPI::CreateServiceNavigation always result=null\n> SetTVMode 2\nint 0")},
};

class WalkerTest : public ::testing::Test {
 protected:
  /// The errors in these cases of a command.
  Lines walk(const std::string& command, const std::string& text) {
    return Walker(virtualtv::catalogue(), results).walk(*kel::FindCommand(command), readCases("t.txt", text));
  }
  /// The errors in a complete set of cases with one of them replaced.
  Lines walkWith(const std::string& name, const std::string& text) {
    std::map<std::string, std::string> changed = pieces;
    changed[name] = text;
    std::string whole;
    for (const auto& [key, part] : changed) whole += part;
    return walk("SetTVMode", whole);
  }
  /// The errors in a complete set of cases with one more at its start, whose `.reset` is in line 2.
  Lines walkFirst(const std::string& title, const std::string& steps) { return walkWith("", piece(title, steps)); }

  std::map<std::string, Results> results{{"SetTVMode", {{-1, 0}, false}},
                                         {"GetTVMode", {{}, false}},
                                         {"GetPreviousSource", {{}, false}},
                                         {"ChangeSubtitle", {{}, true}},
                                         {"SetScreenRect_PosSizeMode", {{-1}, false}}};
};

TEST_F(WalkerTest, IsContentWithAllCases) {
  EXPECT_EQ(walkWith("", ""), Lines{});
}

TEST_F(WalkerTest, DemandsASuccess) {
  EXPECT_EQ(walkWith("success", ""), Lines{"SetTVMode has no case: success"});
}

TEST_F(WalkerTest, DemandsAnUnparsedAndAMissingTextOfEachParameter) {
  EXPECT_EQ(walkWith("unparsed", ""), Lines{"SetTVMode has no case: unparsed mode"});
  EXPECT_EQ(walkWith("missing", ""), Lines{"SetTVMode has no case: missing mode"});
}

TEST_F(WalkerTest, DemandsEachResultOfTheOperationAndEachFailureOfTheCatalogue) {
  EXPECT_EQ(walkWith("refused", ""), Lines{"SetTVMode has no case: -1"});
  EXPECT_EQ(walkWith("unreached", ""),
            (Lines{"SetTVMode has no case: 0", "SetTVMode has no case: 0 as the reply to a failure"}));
}

TEST_F(WalkerTest, DemandsAPresetThatIsAnsweredAndNoOther) {
  EXPECT_EQ(walk("GetTVMode", piece("GetTVMode: success", "> GetTVMode\nint 1")),
            Lines{"GetTVMode has no case: its preset as the reply: -1"});
  EXPECT_EQ(walk("GetPreviousSource", piece("GetPreviousSource: success", "> GetPreviousSource\nint 31")),
            Lines{"GetPreviousSource has no case: -1 as the reply to a failure"});
}

TEST_F(WalkerTest, DemandsOneOfAnyOtherNumbers) {
  const Lines wrong = walk("ChangeSubtitle", piece("ChangeSubtitle: success", "> ChangeSubtitle 0\nint 1"));
  EXPECT_EQ(std::count(wrong.begin(), wrong.end(), "ChangeSubtitle has no case: any other number"), 1);
}

TEST_F(WalkerTest, TellsWhatDoesNotPrintAsExpected) {
  EXPECT_EQ(walkFirst("SetTVMode: success", "> GetTVMode\nint 2\n> SetTVMode 2\nint 1"),
            Lines{"t.txt:3: > GetTVMode prints 'int 1', expected is 'int 2'"});
}

TEST_F(WalkerTest, TellsOfFaultsThatAreNeverHitAndOfInputsThatCanNotBeRun) {
  EXPECT_EQ(walkFirst("SetTVMode: success", "> .fault vconf_get_int result=-1\n> SetTVMode 2\nint 1"),
            Lines{"t.txt:4: a fault was never hit: vconf_get_int times=1 result=-1"});
  EXPECT_EQ(walkFirst("SetTVMode: success",
                      "> .nosuch\nerror: there is no command '.nosuch'; '.help' lists them\n"
                      "> SetTVMode 2\nint 1"),
            Lines{"t.txt:5: there is no command '.nosuch'; '.help' lists them"});
}

TEST_F(WalkerTest, TellsOfASuccessThatIsNone) {
  EXPECT_EQ(walkFirst("SetTVMode: success", "> SetTVMode 22\nint -1"),
            Lines{"t.txt:3: 'SetTVMode: success': 'int -1' is no success"});
  EXPECT_EQ(walkFirst("SetTVMode: success", "> SetTVMode cable\nint -1"),
            Lines{"t.txt:3: 'SetTVMode: success': 'cable' does not parse as mode"});
}

TEST_F(WalkerTest, TellsOfASuccessOfACommandThatHasNone) {
  const Lines wrong = walk("SetScreenRect_PosSizeMode",
                           piece("SetScreenRect_PosSizeMode: success", "> SetScreenRect_PosSizeMode 0 0\nint -1"));
  EXPECT_EQ(wrong.front(),
            "t.txt:3: 'SetScreenRect_PosSizeMode: success': the catalogue says that the command always "
            "fails");
}

TEST_F(WalkerTest, TellsOfATextThatParsesAfterAll) {
  EXPECT_EQ(walkFirst("SetTVMode: unparsed mode", "> SetTVMode +2\nint 1"),
            Lines{"t.txt:3: 'SetTVMode: unparsed mode': '+2' parses as mode"});
  EXPECT_EQ(walkFirst("SetTVMode: unparsed mode", "> SetTVMode\nint -1"),
            Lines{"t.txt:3: 'SetTVMode: unparsed mode': mode is left out"});
  EXPECT_EQ(walkFirst("SetTVMode: missing mode", "> SetTVMode x\nint -1"),
            Lines{"t.txt:3: 'SetTVMode: missing mode': mode is 'x'"});
}

TEST_F(WalkerTest, TellsOfAParameterThatThereIsNoneOf) {
  EXPECT_EQ(walkFirst("SetTVMode: missing channel", "> SetTVMode 2\nint 1"),
            Lines{"t.txt:3: 'SetTVMode: missing channel': the command has no parameter channel"});
}

TEST_F(WalkerTest, TellsOfAResultThatThereIsNoneOfAndOfOneThatIsNotReached) {
  EXPECT_EQ(walkFirst("SetTVMode: -3", "> SetTVMode 22\nint -1"),
            Lines{"t.txt:3: 'SetTVMode: -3': the operation has no such result"});
  EXPECT_EQ(walkFirst("SetTVMode: 0", "> SetTVMode 22\nint -1"),
            Lines{"t.txt:3: 'SetTVMode: 0': the operation came to -1"});
  EXPECT_EQ(walkFirst("SetTVMode: -1", "> SetTVMode cable\nint -1"),
            Lines{"t.txt:3: 'SetTVMode: -1': 'cable' does not parse as mode"});
}

TEST_F(WalkerTest, TellsOfAReplyThatTheCatalogueDoesNot) {
  results["SetTVMode"].numbers.insert(1);
  EXPECT_EQ(walkWith("success", piece("SetTVMode: 1", "> SetTVMode 2\nint 1")).front(),
            "t.txt:11: 'SetTVMode: 1': the catalogue tells of no failure 1");
}

TEST_F(WalkerTest, TellsOfCommandsThatTheCatalogueOrTheResultsLack) {
  const kel::Command& row = *kel::FindCommand("SetTVMode");
  const virtualtv::Catalogue empty(
      R"({"commands": [], "listCommands": [], "types": {}, "parsing": {}, "answers": {}})");
  EXPECT_EQ(Walker(empty, results).walk(row, {}), Lines{"the catalogue has no command SetTVMode"});
  EXPECT_EQ(Walker(virtualtv::catalogue(), {}).walk(row, {}), Lines{"the table of results has no command SetTVMode"});
}

TEST_F(WalkerTest, TellsOfCommandsThatThereAreNoneOf) {
  results = {{"NoSuch", {}}};
  const Walker walker(virtualtv::catalogue(), results);
  EXPECT_EQ(walker.strays(readCases("t.txt", piece("NoSuch: success", "> NoSuch\nrefused"))),
            (Lines{"t.txt:3: there is no command NoSuch", "the table of results: there is no command NoSuch"}));
}

TEST_F(WalkerTest, TellsOfATextThatIsReadAsAnotherNumberThanTheCatalogueSays) {
  const virtualtv::Catalogue catalogue(R"({"types": {}, "parsing": {}, "answers": {}, "listCommands": [], "commands": [
    {"name": "SetScreenZorder", "help": "", "failures": [], "answer": {"kind": "code", "reply": "int", "help": ""},
     "parameters": [{"name": "order", "help": "", "parse": "num", "required": true, "unparsed": "answers -1"}]},
    {"name": "SetWindow", "help": "", "failures": [], "answer": {"kind": "code", "reply": "int", "help": ""},
     "parameters": [{"name": "window", "help": "", "parse": "dec", "required": false, "unparsed": "reads as 1"}]}]})");
  results = {{"SetWindow", {}}, {"SetScreenZorder", {}}};
  Walker walker(catalogue, results);
  const auto first = [&](const std::string& command, const std::string& text) {
    return walker.walk(*kel::FindCommand(command), readCases("t.txt", text)).front();
  };
  EXPECT_EQ(first("SetWindow", piece("SetWindow: unparsed window", "> SetWindow x\nint 1")),
            "t.txt:3: 'SetWindow: unparsed window': it did not read as 1");
  EXPECT_EQ(first("SetScreenZorder", piece("SetScreenZorder: unparsed order", "> SetScreenZorder x\nint -1")),
            "t.txt:3: 'SetScreenZorder: unparsed order': the command did not refuse it");
}

}  // namespace
}  // namespace cases
