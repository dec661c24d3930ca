// SPDX-License-Identifier: MIT
#include "shell/Completion.h"

#include <algorithm>

#include "seam/Operations.h"
#include "set/Knobs.h"
#include "virtualtv/shell/Support.h"

namespace virtualtv::shell {
namespace {

class CompletionTest : public SessionTest {
 protected:
  Lines complete(std::string_view line) { return completions(*session, line); }
  /// The line after Tab was typed at its end.
  std::string completed(const std::string& line) { return line + restOf(line, complete(line)); }
};

bool contains(const Lines& lines, const std::string& wanted) {
  return std::find(lines.begin(), lines.end(), wanted) != lines.end();
}

TEST_F(CompletionTest, TheFirstWordIsACommand) {
  EXPECT_EQ(complete("GetFullCh"), Lines{"GetFullChannelList"});
  EXPECT_EQ(complete(".re"), (Lines{".reopen", ".reset", ".restart", ".restore"}));
  EXPECT_TRUE(contains(complete(""), "FindChannel"));
  EXPECT_TRUE(contains(complete(""), ".help"));
  EXPECT_EQ(complete("NoSuch"), Lines{});
}

TEST_F(CompletionTest, BehindAPlusStandsACommandThatTakesAListOrElseAnyOther) {
  EXPECT_EQ(complete("+ "), Lines{"SetScreenCropRect"});
  EXPECT_EQ(complete("+ Set"), Lines{"SetScreenCropRect"});
  EXPECT_EQ(complete("+ GetTVM"), Lines{"GetTVMode"});
  EXPECT_EQ(complete("+GetTVM"), Lines{"+GetTVMode"});
  EXPECT_EQ(complete("+ NoSuch"), Lines{});
}

TEST_F(CompletionTest, AMarkOfAnInputMayStandInFront) {
  EXPECT_EQ(complete("> GetFullCh"), Lines{"GetFullChannelList"});
  EXPECT_EQ(complete("> .trace "), (Lines{"off", "on"}));
  EXPECT_EQ(complete("> + "), Lines{"SetScreenCropRect"});
  EXPECT_EQ(complete(">+ Set"), Lines{"SetScreenCropRect"});
  EXPECT_EQ(complete("+Set"), Lines{"+SetScreenCropRect"});
}

TEST_F(CompletionTest, FaultsTakeOperationsAndTheirOutputs) {
  EXPECT_EQ(complete(".fault ").size(), seam::operations.size() + 1);
  EXPECT_EQ(complete(".fault cl"), Lines{"clear"});
  EXPECT_EQ(complete(".fault vconf_get_i"), Lines{"vconf_get_int"});
  EXPECT_EQ(complete(".fault vconf_get_int out"), Lines{"out.value="});
  EXPECT_TRUE(contains(complete(".fault vconf_get_int result=0 "), "always"));
}

TEST_F(CompletionTest, FaultsAreClearedByTheNumbersOfThoseThatAreSet) {
  EXPECT_EQ(complete(".fault clear "), Lines{});
  run(".fault vconf_get_int result=-1");
  run(".fault vconf_set_int result=-1");
  run(".fault clear 1");
  run(".fault vconf_set_int result=throw");
  EXPECT_EQ(complete(".fault clear "), (Lines{"2", "3"}));
  EXPECT_EQ(completed(".fault clear 3"), ".fault clear 3 ");
  EXPECT_EQ(complete(".fault clear 2 "), Lines{});
}

TEST_F(CompletionTest, TheEngineOfAFaultIsOneThatIsOpen) {
  EXPECT_EQ(complete(".fault vconf_get_int eng"), Lines{"engine="});
  EXPECT_EQ(complete(".fault vconf_get_int engine="), Lines{});
  run(".engine second");
  run(".engine 'the third'");
  EXPECT_EQ(complete(".fault vconf_get_int engine="), (Lines{"engine=second", "engine=the third"}));
  EXPECT_EQ(completed(".fault vconf_get_int engine=t"), ".fault vconf_get_int engine=the\\ third ");
}

TEST_F(CompletionTest, AFaultIsOfferedTheResultsThatItsOperationHas) {
  EXPECT_EQ(complete(".fault vconf_get_int result="), (Lines{"result=throw", "result=unwritten"}));
  EXPECT_EQ(complete(".fault vconf_set_int res"), (Lines{"result=", "result=throw"}));
  EXPECT_EQ(complete(".fault vconf_get_str res"), (Lines{"result=", "result=null", "result=throw"}));
  EXPECT_EQ(complete(".fault TVServiceAPI::CreateService out"), Lines{});
  EXPECT_EQ(complete(".fault NoSuch "), Lines{});
}

TEST_F(CompletionTest, EachWordOfAFaultIsOfferedOnce) {
  const Lines words = complete(".fault vconf_get_int always result= ");
  EXPECT_EQ(words, (Lines{"engine=", "nth=", "out.value="}));
  EXPECT_EQ(complete(".fault vconf_get_int times=2 al"), Lines{});
}

TEST_F(CompletionTest, KnobsThatCanOnlyBeReadAreNotOfferedToBeSet) {
  EXPECT_EQ(complete(".set clo"), Lines{});
  EXPECT_EQ(complete(".get clo"), Lines{"clock"});
  EXPECT_EQ(complete(".set main.pi"), Lines{});
  EXPECT_EQ(complete(".get main.pi"), Lines{"main.picture"});
  EXPECT_EQ(completed(".set serv"), ".set service.#");
  const Lines offered = complete(".set ");
  EXPECT_TRUE(contains(offered, "main.source"));
  for (const std::string& name : knobNames(tv())) EXPECT_EQ(contains(offered, name), canBeSet(name)) << name;
}

TEST_F(CompletionTest, KnobsAndLatenciesForSetAndGet) {
  EXPECT_EQ(complete(".set coun"), Lines{"country"});
  EXPECT_EQ(complete(".get main.mo"), Lines{"main.mode"});
  EXPECT_EQ(complete(".set latency.vconf_set_i"), Lines{"latency.vconf_set_int"});
  EXPECT_EQ(complete(".set country "), Lines{});
}

TEST_F(CompletionTest, ServicesByTheirKeysWithTheirFieldsAndLists) {
  EXPECT_EQ(complete(".get serv"), (Lines{"service.#", "services"}));
  EXPECT_EQ(complete(".set service.#1"), complete(".get service.#1"));
  EXPECT_TRUE(contains(complete(".get service."), "service.#31"));
  EXPECT_FALSE(contains(complete(".get service."), "service.#0"));
  EXPECT_EQ(complete(".set service.#1.na"), Lines{"service.#1.name"});
  EXPECT_EQ(complete(".get service.#1.a"),
            (Lines{"service.#1.active_format", "service.#1.antenna", "service.#1.attached", "service.#1.audio"}));
  run(".set service.#1.id 281");
  run(".set service.#1.200 5");
  EXPECT_EQ(complete(".set service.281.2"), Lines{"service.281.200"});
  EXPECT_EQ(complete(".set service.#99."), Lines{});
  EXPECT_EQ(complete(".set service.x."), Lines{});
}

TEST_F(CompletionTest, OtherArguments) {
  run(".vconf set db/x int 1");
  run(".engine second");
  EXPECT_EQ(complete(".vconf "), (Lines{"get", "set", "unset"}));
  EXPECT_EQ(complete(".vconf get db/x"), Lines{"db/x"});
  EXPECT_EQ(complete(".vconf set db/x "), (Lines{"int", "str"}));
  EXPECT_EQ(complete(".trace "), (Lines{"off", "on"}));
  EXPECT_EQ(complete(".log o"), (Lines{"off", "on"}));
  EXPECT_EQ(complete(".help k"), Lines{"knobs"});
  EXPECT_EQ(complete(".help GetFullCh"), Lines{"GetFullChannelList"});
  EXPECT_EQ(complete(".engine s"), Lines{"second"});
}

TEST_F(CompletionTest, FilesWhereFilesAreWanted) {
  test::write(folder / "alpha.txt", "");
  test::write(folder / "beta.txt", "");
  std::filesystem::create_directory(folder / "below");
  test::write(folder / "below/gamma", "");
  EXPECT_EQ(complete(".source be"), (Lines{"below/", "beta.txt"}));
  EXPECT_EQ(complete(".import below/"), Lines{"below/gamma"});
  EXPECT_EQ(complete(".import nowhere/"), Lines{});
  EXPECT_EQ(complete(".snapshot al"), Lines{"alpha.txt"});
  EXPECT_EQ(complete(".restore al"), Lines{"alpha.txt"});
}

TEST_F(CompletionTest, PathsAreTypedSoThatTheyAreReadAsTheyAre) {
  std::filesystem::create_directory(folder / "sp ace");
  test::write(folder / "sp ace/it's", "");
  EXPECT_EQ(completed(".import sp"), ".import sp\\ ace/");
  EXPECT_EQ(completed(".import sp\\ a"), ".import sp\\ ace/");
  EXPECT_EQ(completed(".import sp\\ ace/"), ".import sp\\ ace/it\\'s ");
  EXPECT_EQ(completed(".import \"sp a"), ".import \"sp ace/");
  EXPECT_EQ(completed(".import \"sp ace/"), ".import \"sp ace/it's\" ");
  EXPECT_EQ(completed(".import 'sp a"), ".import 'sp ace/");
  EXPECT_EQ(completed(".import 'sp ace/"), ".import 'sp ace/it'\\''s' ");
  EXPECT_EQ(completed(".import 'sp 'a"), ".import 'sp 'ace/");
  EXPECT_EQ(completed(".import --add '" + (folder / "sp").string()), ".import --add '" + (folder / "sp ace/").string());
}

TEST_F(CompletionTest, AWordBehindAQuotedOneIsAWordOfItsOwn) {
  test::write(folder / "dump", "");
  EXPECT_EQ(completed(".import 'a b' --f"), ".import 'a b' --format ");
  EXPECT_EQ(completed(".import a\\ b d"), ".import a\\ b dump ");
}

TEST_F(CompletionTest, NothingIsOfferedBehindABackslashThatWaitsForACharacter) {
  test::write(folder / "dump", "");
  EXPECT_EQ(complete(".import d\\"), Lines{});
  EXPECT_EQ(complete(".import \"d\\"), Lines{});
}

TEST_F(CompletionTest, OptionsOfAnImportAndWhatTheyTake) {
  test::write(folder / "dump", "");
  EXPECT_EQ(complete(".import --"), (Lines{"--add", "--encoding", "--format"}));
  EXPECT_EQ(complete(".import list --a"), Lines{"--add"});
  EXPECT_EQ(complete(".import --format d"), Lines{"dvbv5"});
  EXPECT_EQ(complete(".import --encoding d"), Lines{});
  EXPECT_EQ(complete(".import --add d"), Lines{"dump"});
}

TEST_F(CompletionTest, OptionsOfAnExportAndAScan) {
  test::write(folder / "dump", "");
  EXPECT_EQ(complete(".export --"), Lines{"--format"});
  EXPECT_EQ(complete(".export --format d"), Lines{"dvbv5"});
  EXPECT_EQ(complete(".export --format z"), Lines{});
  EXPECT_EQ(complete(".scan --"), (Lines{"--add", "--import", "--json"}));
  EXPECT_EQ(complete(".scan --json d"), Lines{"dump"});
}

TEST_F(CompletionTest, WhatCanBeDoneToAService) {
  EXPECT_EQ(complete(".service #1 re"), (Lines{"remove", "rename", "renumber"}));
  EXPECT_EQ(complete(".service #1 rename re"), Lines{});
}

TEST(CommonStart, IsWhatAllWordsStartWith) {
  EXPECT_EQ(commonStart({}), "");
  EXPECT_EQ(commonStart({"abc"}), "abc");
  EXPECT_EQ(commonStart({".reopen", ".reset", ".restart"}), ".re");
  EXPECT_EQ(commonStart({"a", "b"}), "");
  EXPECT_EQ(commonStart({"ab", "abc"}), "ab");
  EXPECT_EQ(commonStart({"caf\xC3\xA9", "caf\xC3\xA8"}), "caf");
  EXPECT_EQ(commonStart({"caf\xC3\xA9", "caf\xC3\xA9s"}), "caf\xC3\xA9");
}

}  // namespace
}  // namespace virtualtv::shell
