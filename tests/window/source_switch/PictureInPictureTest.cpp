// Switching the source of the picture-in-picture window: the set switches, but only the previous source is recorded.
#include "Switching.h"
#include "store/SettingsStore.h"

namespace switching {

namespace {

using sources::pipKey;
using sources::previousMainKey;
using sources::previousPipKey;
using virtualtv::WindowId;

/// A worker for the picture-in-picture window, where the set shows the source 1, the plug-in's 15.
class PictureInPictureTest : public SwitchTest {
 protected:
  void SetUp() override {
    SwitchTest::SetUp();
    drivePictureInPicture();
  }

  /// Back to that; what was seen so far is dropped.
  void again() {
    restart();
    show(1, 2, WindowId::pip);
    tv().removeSetting(previousPipKey);
    setSetting(pipKey, 0);
    forget();
  }
};

const Lines unpublished{"3 This is t_SetCurrentSourcevconf",
                        "0 in_key= db/emp/pipsource  is not equal to db/emp/mainsource",
                        "0 t_SetTVMWMainSourcevconf failed"};
const Lines askPip{"ISourceControl[pip#2]::GetSourceState() state=2 -> 1",
                   "ISourceControl[pip#2]::GetCurrentSourceInfo() source=1 -> 1"};

Lines asked15(int source) {
  return join({{"3 t_SetSource input ePLSource = " + std::to_string(source) + ", nMajor = -1"},
               sources::currentLogs(1),
               sources::converted(1, 15),
               {"3 t_SetSource input eCurPLSource = 15"}});
}

TEST_F(PictureInPictureTest, TheSetSwitchesAndTheCommandFailsAfterThePreviousSourceIsWritten) {
  EXPECT_FALSE(set(31));
  EXPECT_EQ(calls(), join({askPip,
                           {askApp, "ISourceControl[pip#2]::SetSource(source=13, appId=\"test.app\") -> 1",
                            write(previousPipKey, 15)}}));
  EXPECT_EQ(logs(), join({asked15(31),
                          {"3 ePLSource=[31], current db/emp/pipsource = 15 success", "3 appid is test.app"},
                          translated(31, 13),
                          {written(previousPipKey, 15)},
                          unpublished}));
  EXPECT_EQ(keys(), (Lines{"20", "77", "0", "15", "-"}));
  EXPECT_EQ(shown(WindowId::pip), 13);
  EXPECT_EQ(shown(WindowId::main), 5);
}

TEST_F(PictureInPictureTest, LeavingTheTvServiceIsRecordedNoBetter) {
  for (const int source : {100, isp, none}) {
    again();
    EXPECT_FALSE(set(source));
    EXPECT_EQ(keys(), (Lines{"20", "77", "0", "15", "-"}));
    EXPECT_EQ(shown(WindowId::pip), -1);
    EXPECT_EQ(shown(WindowId::main), 5);
  }
}

TEST_F(PictureInPictureTest, AServiceIsSearchedForThroughTheWindowsNavigation) {
  EXPECT_FALSE(set(0, 8));
  const Lines made = calls();
  ASSERT_EQ(made.size(), 6U);
  EXPECT_EQ(made[3],
            "IServiceNavigation[pip#2]::GetServiceList(fetch 12, where 13=8, mode=-1,-1, 0, 0) "
            "services=[{12=282}] -> 1");
  EXPECT_EQ(made[4], "ISourceControl[pip#2]::SetSource(source=0, serviceId=282, appId=\"test.app\") -> 1");
}

TEST_F(PictureInPictureTest, TheSourceShownIsASuccessWhenTheKeyAgrees) {
  setSetting(pipKey, 15);
  EXPECT_TRUE(set(15));
  EXPECT_EQ(logs(), join({asked15(15), {"3 t_SetSource 15 is equal to vconf 15", unwritten(pipKey, 15)}}));
  EXPECT_EQ(keys(), (Lines{"20", "77", "15", "-", "-"}));
}

TEST_F(PictureInPictureTest, TheSourceShownCannotPutAKeyRightThatDisagrees) {
  EXPECT_FALSE(set(15));
  EXPECT_EQ(calls(),
            join({askPip, {"vconf_get_int(key=\"db/emp/pipsource\") value=0 -> 0", write(previousPipKey, 0)}}));
  EXPECT_EQ(logs(),
            join({asked15(15), {"3 t_SetSource 15 is equal to vconf 15", written(previousPipKey, 0)}, unpublished}));
  EXPECT_EQ(keys(), (Lines{"20", "77", "0", "0", "-"}));
}

TEST_F(PictureInPictureTest, APreviousSourceThatCannotBeWrittenStopsTheRecord) {
  fault("vconf_set_int result=-1");
  EXPECT_FALSE(set(31));
  const Lines lines = logs();
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), unwritten(previousPipKey, 15));
  EXPECT_EQ(keys(), (Lines{"20", "77", "0", "-", "-"}));
  EXPECT_EQ(shown(WindowId::pip), 13);
}

TEST_F(PictureInPictureTest, CommandsFailAfterTheSetHasSwitched) {
  EXPECT_EQ(worker.SetSource(static_cast<_PL_WINDOW_Source>(31), static_cast<_PL_WINDOW_SEEK>(0)), 0);
  EXPECT_EQ(shown(WindowId::pip), 13);
  EXPECT_EQ(worker.SetSourceAndTune(static_cast<_PL_WINDOW_Source>(0), 7), 0);
  EXPECT_EQ(shown(WindowId::pip), 0);
  setSetting(previousPipKey, 32);
  EXPECT_EQ(worker.SetPreviousSource(), 0);
  EXPECT_EQ(shown(WindowId::pip), 14);
  EXPECT_FALSE(worker.DisconnectSource());
  EXPECT_EQ(shown(WindowId::pip), -1);
  EXPECT_EQ(keys(), (Lines{"20", "77", "0", "32", "-"}));
}

TEST_F(PictureInPictureTest, ThePreviousSourceIsTheWindowsOwn) {
  setSetting(previousMainKey, 33);
  setSetting(previousPipKey, 31);
  forget();
  worker.SetSource(static_cast<_PL_WINDOW_Source>(34), static_cast<_PL_WINDOW_SEEK>(8));
  EXPECT_EQ(calls().front(), "vconf_get_int(key=\"db/emp/previouspipsource\") value=31 -> 0");
  EXPECT_EQ(shown(WindowId::pip), 13);
}

TEST_F(PictureInPictureTest, AMissingSourceControlIsMadeForTheWindow) {
  worker.src_ctrl_proxy = nullptr;
  EXPECT_FALSE(set(31));
  EXPECT_EQ(calls().front(), "TVServiceAPI::CreateSourceControl(profile=101, index=0) -> 0");
  EXPECT_EQ(shown(WindowId::pip), 13);
}

TEST_F(PictureInPictureTest, BackInTheMainWindowASwitchIsRecordedInFull) {
  EXPECT_FALSE(set(31));
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_MAIN), 1);
  EXPECT_TRUE(set(31));
  EXPECT_EQ(keys(), (Lines{"31", "20", "0", "15", "test.widget:31"}));
}

}  // namespace

}  // namespace switching
