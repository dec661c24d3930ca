// SPDX-License-Identifier: MIT
// Switching to the source that is already on screen: nothing is switched, but keys that differ are corrected.
#include "Switching.h"
#include "store/SettingsStore.h"

namespace switching {

namespace {

using sources::mainKey;
using sources::previousMainKey;

const std::string equal = "3 t_SetSource 20 is equal to vconf 20";
const std::string thrown = caught("t_SetSource", "vconf_get_int");

TEST_F(SwitchTest, TheSourceShownIsASuccessThatWritesNothingWhenItsKeyAgrees) {
  for (const int major : {noMajor, 8}) {
    EXPECT_TRUE(set(20, major));
    EXPECT_EQ(callsOf("::SetSource"), Lines());
    EXPECT_EQ(logs(), join({asked(20, major), {equal, unwritten(mainKey, 20)}}));
    EXPECT_EQ(keys(), startKeys);
  }
}

TEST_F(SwitchTest, TheSourceShownPutsItsKeysRightWhenTheyDisagree) {
  for (const int stored : {24, -5, 1, 100, 123456}) {
    restart();
    setSetting(mainKey, stored);
    EXPECT_TRUE(set(20));
    EXPECT_EQ(callsOf("::SetSource"), Lines());
    EXPECT_EQ(logs(), join({asked(20), {equal}, recorded(20, stored)}));
    EXPECT_EQ(keys(), (Lines{"20", std::to_string(stored), "0", "-", "test.widget:20"}));
  }
}

TEST_F(SwitchTest, AKeyThatCannotBeReadLeavesTheKeysAsTheyAre) {
  for (const char* way : {"result=-1", "result=1"}) {
    restart();
    setSetting(mainKey, 24);
    fault(std::string("vconf_get_int ") + way);
    EXPECT_TRUE(set(20)) << way;
    EXPECT_EQ(logs(), join({asked(20), {equal, unwritten(mainKey, 20)}}));
    EXPECT_EQ(keys(), (Lines{"24", "77", "0", "-", "-"}));
  }
}

TEST_F(SwitchTest, AKeyOfAnotherTypeCannotBeRead) {
  setSetting(mainKey, std::string("20"));
  EXPECT_TRUE(set(20));
  EXPECT_EQ(textSetting(mainKey), "20");
  EXPECT_EQ(intSetting(previousMainKey), 77);
}

/// The main window's key says 24, unlike the set.
class DisagreeingTest : public SwitchTest {
 protected:
  void restart() override {
    SwitchTest::restart();
    setSetting(mainKey, 24);
    forget();
  }
};

TEST_F(DisagreeingTest, PuttingTheKeysRightStopsAtTheFirstFailureAndKeepsWhatItWrote) {
  expectFailures(20, noMajor, {equal}, unrecorded({}, 20, 24, 5));
  expectFailures(20, noMajor, {equal}, {{"vconf_get_int result=throw", {thrown}, {"24", "77", "0", "-", "-"}}});
}

// Requesting no source once more.

/// A window without a source, while its keys say that it shows 20.
class NoSourceTest : public SwitchTest {
 protected:
  void restart() override {
    SwitchTest::restart();
    deactivate();
    forget();
  }
  Lines request(int source, int major) override {
    return {"3 t_SetSource input ePLSource = " + std::to_string(source) + ", nMajor = " + std::to_string(major),
            "3 This is t_GetCurrentSourceInfo",
            "3 GetSourceState start",
            "3 GetSourceState = -1",
            "3 Get GetSourceState success and eCurrentSourceState = SOURCE_STATE_NONE",
            "3 TVS is not active",
            "3 t_SetSource input eCurPLSource = 43"};
  }
};

const std::string deactivated = "3 DeactivateSource successfully ";

TEST_F(NoSourceTest, DeactivatesAgainAndPutsTheKeysRightWhereTheyDisagree) {
  EXPECT_TRUE(set(none));
  EXPECT_EQ(callsOf("::DeactivateSource").size(), 1U);
  EXPECT_EQ(logs(), join({request(none, noMajor), {deactivated}, recorded(none, 20)}));
  EXPECT_EQ(keys(), (Lines{"43", "20", "0", "-", "test.widget:43"}));
  EXPECT_TRUE(set(none));
  EXPECT_EQ(callsOf("::DeactivateSource").size(), 1U);
  EXPECT_EQ(logs(), join({request(none, noMajor), {deactivated, unwritten(mainKey, none)}}));
}

TEST_F(NoSourceTest, AFailureWritesNoKey) {
  const std::string failed = "0 DeactivateSource failed ";
  expectFailures(none, noMajor, {},
                 {{"vconf_get_int result=throw", {deactivated, thrown}, startKeys, -1},
                  {"ISourceControl::DeactivateSource result=0", {failed}},
                  {"ISourceControl::DeactivateSource result=-1", {failed}},
                  {"ISourceControl::DeactivateSource result=throw",
                   {caught("t_SetSource", "ISourceControl::DeactivateSource"), failed}}});
}

}  // namespace

}  // namespace switching
