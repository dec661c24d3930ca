// Switching to the source that is shown already: nothing is switched, but keys that say otherwise are put right.
#include "Switching.h"
#include "store/SettingsStore.h"

namespace switching {

namespace {

using sources::mainKey;
using sources::previousMainKey;

const std::string readKey = "vconf_get_int(key=\"db/emp/mainsource\") value=";

Lines read(int stored) {
  return {readKey + std::to_string(stored) + " -> 0"};
}

const std::string equal = "3 t_SetSource 20 is equal to vconf 20";

TEST_F(SwitchTest, TheSourceShownIsASuccessThatWritesNothingWhenItsKeyAgrees) {
  EXPECT_TRUE(set(20));
  EXPECT_EQ(calls(), join({askSource(), read(20)}));
  EXPECT_EQ(logs(), join({asked(20), {equal, unwritten(mainKey, 20)}}));
  EXPECT_EQ(keys(), startKeys);
}

TEST_F(SwitchTest, TheSourceShownPutsItsKeysRightWhenTheyDisagree) {
  setSetting(mainKey, 24);
  EXPECT_TRUE(set(20));
  EXPECT_EQ(calls(), join({askSource(), read(24), record(20, 24)}));
  EXPECT_EQ(logs(), join({asked(20), {equal}, recorded(20, 24)}));
  EXPECT_EQ(keys(), (Lines{"20", "24", "0", "-", "test.widget:20"}));
  EXPECT_EQ(shown(), 5);
}

TEST_F(SwitchTest, AStoredNumberThatIsNoSourceBecomesThePreviousOneAllTheSame) {
  for (const int stored : {-5, 1, 100, 123456}) {
    restart();
    setSetting(mainKey, stored);
    EXPECT_TRUE(set(20)) << stored;
    EXPECT_EQ(keys(), (Lines{"20", std::to_string(stored), "0", "-", "test.widget:20"}));
  }
}

TEST_F(SwitchTest, AKeyThatCannotBeReadLeavesTheKeysAsTheyAre) {
  for (const char* way : {"result=-1", "result=1"}) {
    SCOPED_TRACE(way);
    restart();
    setSetting(mainKey, 24);
    fault(std::string("vconf_get_int ") + way);
    EXPECT_TRUE(set(20));
    EXPECT_EQ(logs(), join({asked(20), {equal, unwritten(mainKey, 20)}}));
    EXPECT_EQ(keys(), (Lines{"24", "77", "0", "-", "-"}));
  }
}

const std::string readThrows = "vconf_get_int(key=\"db/emp/mainsource\") -> throws [fault]";

TEST_F(SwitchTest, AKeyThatIsReadWithAnExceptionFailsAndLeavesTheKeysAsTheyAre) {
  setSetting(mainKey, 24);
  fault("vconf_get_int result=throw");
  EXPECT_FALSE(set(20));
  EXPECT_EQ(calls(), join({askSource(), {readThrows}}));
  EXPECT_EQ(logs(), join({asked(20), {equal, caught("t_SetSource", "vconf_get_int")}}));
  EXPECT_EQ(keys(), (Lines{"24", "77", "0", "-", "-"}));
  EXPECT_EQ(shown(), 5);
}

TEST_F(SwitchTest, AKeyOfAnotherTypeCannotBeRead) {
  setSetting(mainKey, std::string("20"));
  EXPECT_TRUE(set(20));
  EXPECT_EQ(textSetting(mainKey), "20");
  EXPECT_EQ(intSetting(previousMainKey), 77);
}

TEST_F(SwitchTest, AMajorNumberMeansNothingForTheSourceShown) {
  EXPECT_TRUE(set(20, 8));
  EXPECT_EQ(calls(), join({askSource(), read(20)}));
  EXPECT_EQ(logs(), join({asked(20, 8), {equal, unwritten(mainKey, 20)}}));
}

TEST_F(SwitchTest, PuttingTheKeysRightStopsAtTheFirstFailureAndKeepsWhatItWrote) {
  struct Failure {
    std::string fault;
    Lines logs;
    Lines keys;
  };
  const Lines previous{written(previousMainKey, 24)};
  const Lines told = join({previous, published(20)});
  const Lines untold{"0 set the vconf for emptvsmw failed!!!", "0 t_SetTVMWMainSourcevconf failed"};
  const Lines old{"24", "77", "0", "-", "-"};
  const Lines first{"24", "24", "0", "-", "-"};
  const Lines second{"24", "24", "0", "-", "test.widget:20"};
  const std::string thrown = caught("t_SetSource", "vconf_set_int");
  const std::vector<Failure> failures{
      {"vconf_set_int result=-1", {unwritten(previousMainKey, 24)}, old},
      {"vconf_set_int result=throw", {thrown, unwritten(previousMainKey, 24)}, old},
      {"vconf_set_str result=-1", join({told, untold}), first},
      {"vconf_set_str result=throw", join({told, {caught("t_SetTVMWMainSourcevconf", "vconf_set_str")}, untold}),
       first},
      {"vconf_set_int nth=2 result=-1", join({told, {unwritten(mainKey, 20)}}), second},
      {"vconf_set_int nth=2 result=throw", join({told, {thrown, unwritten(mainKey, 20)}}), second},
  };
  for (const Failure& failure : failures) {
    SCOPED_TRACE(failure.fault);
    restart();
    setSetting(mainKey, 24);
    tv().removeSetting(sources::middlewareKey);
    fault(failure.fault);
    EXPECT_FALSE(set(20));
    EXPECT_TRUE(faultsHit());
    EXPECT_EQ(logs(), join({asked(20), {equal}, failure.logs}));
    EXPECT_EQ(keys(), failure.keys);
  }
}

// No source, asked for again.

/// A window without a source, whose keys say so.
class NoSourceTest : public SwitchTest {
 protected:
  void SetUp() override {
    SwitchTest::SetUp();
    empty();
  }
  void empty() {
    restart();
    deactivate();
    setSetting(mainKey, none);
    forget();
  }
};

const std::string askNone = "ISourceControl[main#1]::GetSourceState() state=-1 -> 1";
const Lines askedNone{"3 t_SetSource input ePLSource = 43, nMajor = -1",
                      "3 This is t_GetCurrentSourceInfo",
                      "3 GetSourceState start",
                      "3 GetSourceState = -1",
                      "3 Get GetSourceState success and eCurrentSourceState = SOURCE_STATE_NONE",
                      "3 TVS is not active",
                      "3 t_SetSource input eCurPLSource = 43"};
const std::string deactivated = "3 DeactivateSource successfully ";

TEST_F(NoSourceTest, DeactivatesAgainAndWritesNothingWhenItsKeyAgrees) {
  EXPECT_TRUE(set(none));
  EXPECT_EQ(calls(), join({{askNone, leave}, read(none)}));
  EXPECT_EQ(logs(), join({askedNone, {deactivated, unwritten(mainKey, none)}}));
  EXPECT_EQ(keys(), (Lines{"43", "77", "0", "-", "-"}));
}

TEST_F(NoSourceTest, DeactivatesAgainAndPutsTheKeysRight) {
  setSetting(mainKey, 20);
  EXPECT_TRUE(set(none));
  EXPECT_EQ(calls(), join({{askNone, leave}, read(20), record(none, 20)}));
  EXPECT_EQ(logs(), join({askedNone, {deactivated}, recorded(none, 20)}));
  EXPECT_EQ(keys(), (Lines{"43", "20", "0", "-", "test.widget:43"}));
}

TEST_F(NoSourceTest, FailsAfterDeactivatingWhenItsKeyIsReadWithAnException) {
  setSetting(mainKey, 20);
  fault("vconf_get_int result=throw");
  EXPECT_FALSE(set(none));
  EXPECT_EQ(calls(), (Lines{askNone, leave, readThrows}));
  EXPECT_EQ(logs(), join({askedNone, {deactivated, caught("t_SetSource", "vconf_get_int")}}));
  EXPECT_EQ(keys(), (Lines{"20", "77", "0", "-", "-"}));
}

TEST_F(NoSourceTest, FailsWhenTheTvServiceCannotBeDeactivatedAndPutsNothingRight) {
  const std::string failed = "0 DeactivateSource failed ";
  const std::map<std::string, Lines> ways{
      {"result=0", {failed}},
      {"result=-1", {failed}},
      {"result=throw", {caught("t_SetSource", "ISourceControl::DeactivateSource"), failed}}};
  for (const auto& [way, lines] : ways) {
    SCOPED_TRACE(way);
    empty();
    setSetting(mainKey, 20);
    fault("ISourceControl::DeactivateSource " + way);
    EXPECT_FALSE(set(none));
    EXPECT_EQ(logs(), join({askedNone, lines}));
    EXPECT_EQ(keys(), (Lines{"20", "77", "0", "-", "-"}));
  }
}

}  // namespace

}  // namespace switching
