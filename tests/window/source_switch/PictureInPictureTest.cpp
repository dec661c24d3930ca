// SPDX-License-Identifier: MIT
// Switching the source of the picture-in-picture window: the set switches, but only the previous source is recorded.
#include "Switching.h"
#include "store/SettingsStore.h"

namespace switching {

namespace {

using sources::pipKey;
using sources::previousPipKey;
using virtualtv::WindowId;

/// A worker for the picture-in-picture window, where the set shows the source 1 (the plug-in's 15).
class PictureInPictureTest : public SwitchTest {
 protected:
  void restart() override {
    SwitchTest::restart();
    ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
    show(1, 2, WindowId::pip);
    tv().removeSetting(previousPipKey);
    setSetting(pipKey, 0);
    forget();
  }
  Lines request(int source, int major) override {
    return join({{"3 t_SetSource input ePLSource = " + std::to_string(source) + ", nMajor = " + std::to_string(major)},
                 sources::currentLogs(1),
                 sources::converted(1, 15),
                 {"3 t_SetSource input eCurPLSource = 15"}});
  }
};

/// The log lines after the write of the previous source.
Lines unpublished(int previous) {
  return {written(previousPipKey, previous), "3 This is t_SetCurrentSourcevconf",
          "0 in_key= db/emp/pipsource  is not equal to db/emp/mainsource", "0 t_SetTVMWMainSourcevconf failed"};
}
const Lines begun =
    join({{"3 ePLSource=[31], current db/emp/pipsource = 15 success", "3 appid is test.app"}, translated(31, 13)});

TEST_F(PictureInPictureTest, TheSetSwitchesAndTheCommandFailsAfterThePreviousSourceIsWritten) {
  EXPECT_FALSE(set(31));
  EXPECT_EQ(logs(), join({request(31, noMajor), begun, unpublished(15)}));
  EXPECT_EQ(keys(), (Lines{"20", "77", "0", "15", "-"}));
  EXPECT_EQ(shown(WindowId::pip), 13);
  EXPECT_EQ(shown(), 5);
  expectFailures(31, noMajor, begun, {{"vconf_set_int result=-1", {unwritten(previousPipKey, 15)}}});
}

TEST_F(PictureInPictureTest, TheSourceShownIsASuccessOnlyWhereTheKeyAgrees) {
  const std::string equal = "3 t_SetSource 15 is equal to vconf 15";
  EXPECT_FALSE(set(15));
  EXPECT_EQ(logs(), join({request(15, noMajor), {equal}, unpublished(0)}));
  EXPECT_EQ(keys(), (Lines{"20", "77", "0", "0", "-"}));
  restart();
  setSetting(pipKey, 15);
  EXPECT_TRUE(set(15));
  EXPECT_EQ(logs(), join({request(15, noMajor), {equal, unwritten(pipKey, 15)}}));
  EXPECT_EQ(keys(), (Lines{"20", "77", "15", "-", "-"}));
}

TEST_F(PictureInPictureTest, ThePreviousSourceIsTheWindowsOwn) {
  setSetting(previousPipKey, 31);
  EXPECT_EQ(worker.SetSource(static_cast<_PL_WINDOW_Source>(34), static_cast<_PL_WINDOW_SEEK>(8)), 0);
  EXPECT_EQ(shown(WindowId::pip), 13);
}

}  // namespace

}  // namespace switching
