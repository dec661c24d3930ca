#include "shell/Completion.h"

#include <algorithm>

#include "seam/Operations.h"
#include "virtualtv/shell/Support.h"

namespace virtualtv::shell {
namespace {

class CompletionTest : public SessionTest {
 protected:
  Lines complete(std::string_view line) { return completions(*session, line); }
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

TEST_F(CompletionTest, BehindAPlusStandsACommandThatTakesAList) {
  EXPECT_EQ(complete("+ "), Lines{"SetScreenCropRect"});
  EXPECT_EQ(complete("+ GetFullCh"), Lines{});
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

TEST_F(CompletionTest, OptionsOfAnImportAndWhatTheyTake) {
  test::write(folder / "dump", "");
  EXPECT_EQ(complete(".import --"), (Lines{"--add", "--encoding", "--format"}));
  EXPECT_EQ(complete(".import list --a"), Lines{"--add"});
  EXPECT_EQ(complete(".import --format d"), Lines{"dvbv5"});
  EXPECT_EQ(complete(".import --encoding d"), Lines{});
  EXPECT_EQ(complete(".import --add d"), Lines{"dump"});
}

TEST(CommonStart, IsWhatAllWordsStartWith) {
  EXPECT_EQ(commonStart({}), "");
  EXPECT_EQ(commonStart({"abc"}), "abc");
  EXPECT_EQ(commonStart({".reopen", ".reset", ".restart"}), ".re");
  EXPECT_EQ(commonStart({"a", "b"}), "");
  EXPECT_EQ(commonStart({"ab", "abc"}), "ab");
}

}  // namespace
}  // namespace virtualtv::shell
