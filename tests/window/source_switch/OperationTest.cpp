// The four operations that switch a source: what each does around the switch.
#include "Switching.h"
#include "store/SettingsStore.h"

namespace switching {

namespace {

using sources::mainKey;
using sources::previousMainKey;
using support::place;

class OperationTest : public SwitchTest {
 protected:
  int setSource(int source, int seek = 0) {
    return worker.SetSource(static_cast<_PL_WINDOW_Source>(source), static_cast<_PL_WINDOW_SEEK>(seek));
  }
  int setSourceAndTune(int source, int major) {
    return worker.SetSourceAndTune(static_cast<_PL_WINDOW_Source>(source), major);
  }
};

/// What the worker logs of a switch that succeeds, and that fails since the set has no such input.
Lines switched(int source, int tc, int major = noMajor) {
  return join({asked(source, major), other(source), translated(source, tc, major), recorded(source, 20)});
}
Lines unswitched(int source, int tc) {
  return join(
      {asked(source), other(source), translated(source, tc), {"0 SetSource failed eTVSSource= " + std::to_string(tc)}});
}

std::string readPrevious(int stored) {
  return "vconf_get_int(key=\"db/emp/previousmainsource\") value=" + std::to_string(stored) + " -> 0";
}
std::string previousRead(int stored) {
  return "3 m_PreviousSourceVconf db/emp/previousmainsource = " + std::to_string(stored) + " success";
}
const std::string noPrevious = "0 Get vconf db/emp/previousmainsource failed";

// SetSource

TEST_F(OperationTest, SetSourceSwitchesToTheSource) {
  EXPECT_EQ(setSource(31), 1);
  EXPECT_EQ(calls(), join({askSource(), {askApp, switchTo(13)}, record(31, 20)}));
  EXPECT_EQ(logs(), join({{place("SetSource"), "3 eSource=[31] nSeek=[0]"}, switched(31, 13)}));
}

TEST_F(OperationTest, SetSourceIgnoresEverySeekButTheThreePreviousOnes) {
  setSetting(previousMainKey, 32);
  for (const int seek : {-1, 0, 1, 2, 3, 4, 5, 7, 10, 11, 12, 101, 2147483647}) {
    restart();
    setSetting(previousMainKey, 32);
    EXPECT_EQ(setSource(31, seek), 1);
    EXPECT_EQ(shown(), 13) << seek;
    EXPECT_EQ(logs()[1], "3 eSource=[31] nSeek=[" + std::to_string(seek) + "]");
  }
}

TEST_F(OperationTest, SetSourceWithAPreviousSeekTakesTheStoredSourceInsteadOfTheOneGiven) {
  for (const int seek : {6, 8, 9}) {
    for (const int given : {0, 1, -7, 48, 1000}) {
      restart();
      setSetting(previousMainKey, 31);
      EXPECT_EQ(setSource(given, seek), 1);
      EXPECT_EQ(calls(), join({{readPrevious(31)}, askSource(), {askApp, switchTo(13)}, record(31, 20)}));
      EXPECT_EQ(logs(), join({{place("SetSource"),
                               "3 eSource=[" + std::to_string(given) + "] nSeek=[" + std::to_string(seek) + "]",
                               previousRead(31)},
                              switched(31, 13)}));
    }
  }
}

TEST_F(OperationTest, SetSourceGoesBackAndForth) {
  EXPECT_EQ(setSource(31), 1);
  EXPECT_EQ(setSource(0), 1);
  for (const int source : {31, 0, 31}) {
    EXPECT_EQ(setSource(77, 8), 1);
    EXPECT_EQ(intSetting(mainKey), source);
  }
}

TEST_F(OperationTest, SetSourceFailsWhenThePreviousSourceCannotBeRead) {
  const Lines begin{place("SetSource"), "3 eSource=[31] nSeek=[8]"};
  for (const char* way : {"result=-1", "result=1"}) {
    restart();
    fault(std::string("vconf_get_int ") + way);
    EXPECT_EQ(setSource(31, 8), 0);
    EXPECT_EQ(logs(), join({begin, {noPrevious}}));
    EXPECT_EQ(calls().size(), 1U);
  }
  restart();
  fault("vconf_get_int result=throw");
  EXPECT_EQ(setSource(31, 8), 0);
  EXPECT_EQ(logs(), join({begin, {caught("SetSource", "vconf_get_int"), noPrevious}}));
  EXPECT_EQ(keys(), startKeys);
}

TEST_F(OperationTest, SetSourceAnswersZeroWhenTheSwitchFails) {
  EXPECT_EQ(setSource(16), 0);
  EXPECT_EQ(logs(),
            join({{place("SetSource"), "3 eSource=[16] nSeek=[0]"}, unswitched(16, 2), {"0 t_SetSource failed\n"}}));
}

TEST_F(OperationTest, SetSourceWithoutSourceControlAnswersMinusOneAndMakesNone) {
  worker.src_ctrl_proxy = nullptr;
  for (const int seek : {0, 8}) {
    EXPECT_EQ(setSource(31, seek), -1);
    EXPECT_EQ(logs(), (Lines{place("SetSource"), "3 eSource=[31] nSeek=[" + std::to_string(seek) + "]",
                             "0 src_ctrl_proxy is NULL!!!"}));
  }
  EXPECT_EQ(calls(), Lines());
  EXPECT_EQ(keys(), startKeys);
}

// SetSourceAndTune

TEST_F(OperationTest, SetSourceAndTuneSwitchesToTheServiceWithTheMajorNumber) {
  EXPECT_EQ(setSourceAndTune(0, 8), 1);
  EXPECT_EQ(calls(), join({askSource(), {askApp, search(8, "[{12=282}] -> 1"), switchTo(0, 282)}, record(0, 20)}));
  EXPECT_EQ(logs(), join({{place("SetSourceAndTune"), "3 eSource=[0], nMajor=[8]"},
                          asked(0, 8),
                          other(0),
                          translated(0, 0, 8),
                          {"3 Target service: 282"},
                          recorded(0, 20)}));
}

TEST_F(OperationTest, SetSourceAndTuneWithANegativeMajorNumberSwitchesTheSourceAlone) {
  EXPECT_EQ(setSourceAndTune(31, -1), 1);
  EXPECT_EQ(logs(), join({{place("SetSourceAndTune"), "3 eSource=[31], nMajor=[-1]"}, switched(31, 13)}));
}

TEST_F(OperationTest, SetSourceAndTuneAnswersZeroWithoutSuchAService) {
  EXPECT_EQ(setSourceAndTune(0, 70), 0);
  EXPECT_EQ(logs(), join({{place("SetSourceAndTune"), "3 eSource=[0], nMajor=[70]"},
                          asked(0, 70),
                          other(0),
                          translated(0, 0, 70),
                          {"0 GetServiceList did not find any services for nMajor=70", "0 t_SetSource failed\n"}}));
  EXPECT_EQ(keys(), startKeys);
}

TEST_F(OperationTest, SetSourceAndTuneWithoutSourceControlAnswersMinusOneAndMakesNone) {
  worker.src_ctrl_proxy = nullptr;
  EXPECT_EQ(setSourceAndTune(31, 7), -1);
  EXPECT_EQ(logs(), (Lines{place("SetSourceAndTune"), "3 eSource=[31], nMajor=[7]", "0 src_ctrl_proxy is NULL!!!"}));
  EXPECT_EQ(calls(), Lines());
}

// SetPreviousSource

TEST_F(OperationTest, SetPreviousSourceSwitchesToTheStoredSource) {
  setSetting(previousMainKey, 31);
  EXPECT_EQ(worker.SetPreviousSource(), 1);
  EXPECT_EQ(calls(), join({{readPrevious(31)}, askSource(), {askApp, switchTo(13)}, record(31, 20)}));
  EXPECT_EQ(logs(), join({{previousRead(31)}, switched(31, 13)}));
  EXPECT_EQ(keys(), (Lines{"31", "20", "0", "-", "test.widget:31"}));
}

TEST_F(OperationTest, SetPreviousSourceTakesWhateverNumberIsStored) {
  for (const int stored : {100, -5, none}) {
    restart();
    setSetting(previousMainKey, stored);
    EXPECT_EQ(worker.SetPreviousSource(), 1);
    EXPECT_EQ(intSetting(mainKey), stored);
    EXPECT_EQ(shown(), -1);
  }
  restart();
  setSetting(previousMainKey, 1);
  EXPECT_EQ(worker.SetPreviousSource(), 0);
  EXPECT_EQ(shown(), 5);
}

TEST_F(OperationTest, SetPreviousSourceSwitchesToTvWhenTheStoreLeavesTheNumberOut) {
  fault("vconf_get_int result=unwritten");
  EXPECT_EQ(worker.SetPreviousSource(), 1);
  EXPECT_EQ(logs(), join({{previousRead(0)}, switched(0, 0)}));
  EXPECT_EQ(intSetting(mainKey), 0);
}

TEST_F(OperationTest, SetPreviousSourceFailsWhenTheSourceCannotBeRead) {
  fault("vconf_get_int result=-1");
  EXPECT_EQ(worker.SetPreviousSource(), 0);
  EXPECT_EQ(logs(), Lines{noPrevious});
  restart();
  fault("vconf_get_int result=throw");
  EXPECT_EQ(worker.SetPreviousSource(), 0);
  EXPECT_EQ(logs(), (Lines{caught("SetPreviousSource", "vconf_get_int"), noPrevious}));
  restart();
  tv().removeSetting(previousMainKey);
  EXPECT_EQ(worker.SetPreviousSource(), 0);
  EXPECT_EQ(logs(), Lines{noPrevious});
  EXPECT_EQ(shown(), 5);
}

TEST_F(OperationTest, SetPreviousSourceAnswersZeroWhenTheSwitchFails) {
  setSetting(previousMainKey, 16);
  EXPECT_EQ(worker.SetPreviousSource(), 0);
  EXPECT_EQ(logs(), join({{previousRead(16)}, unswitched(16, 2), {"0 t_SetSource failed"}}));
}

TEST_F(OperationTest, SetPreviousSourceMakesAMissingSourceControl) {
  setSetting(previousMainKey, 31);
  worker.src_ctrl_proxy = nullptr;
  EXPECT_EQ(worker.SetPreviousSource(), 1);
  EXPECT_EQ(shown(), 13);
  loseSourceControl();
  forget();
  EXPECT_EQ(worker.SetPreviousSource(), 0);
  EXPECT_EQ(logs(), join({{previousRead(20)}, sources::noSourceControl, {"0 t_SetSource failed"}}));
}

// DisconnectSource

TEST_F(OperationTest, DisconnectSourceDeactivatesTheTvServiceAndRecordsNoSource) {
  EXPECT_TRUE(worker.DisconnectSource());
  EXPECT_EQ(calls(), join({askSource(), {askApp, leave}, record(none, 20)}));
  EXPECT_EQ(logs(),
            join({{"3 DisconnectSource start\n"}, asked(none), other(none), {leaving(none)}, recorded(none, 20)}));
  EXPECT_EQ(keys(), (Lines{"43", "20", "0", "-", "test.widget:43"}));
  EXPECT_EQ(shown(), -1);
}

TEST_F(OperationTest, DisconnectSourceTwiceDeactivatesAgainAndWritesNothing) {
  EXPECT_TRUE(worker.DisconnectSource());
  const Lines before = keys();
  forget();
  EXPECT_TRUE(worker.DisconnectSource());
  EXPECT_EQ(calls(), (Lines{"ISourceControl[main#1]::GetSourceState() state=-1 -> 1", leave,
                            "vconf_get_int(key=\"db/emp/mainsource\") value=43 -> 0"}));
  EXPECT_EQ(logs().back(), unwritten(mainKey, none));
  EXPECT_EQ(keys(), before);
}

TEST_F(OperationTest, DisconnectSourceFailsWhenTheSwitchFails) {
  fault("ISourceControl::DeactivateSource result=0");
  EXPECT_FALSE(worker.DisconnectSource());
  EXPECT_EQ(logs(), join({{"3 DisconnectSource start\n"},
                          asked(none),
                          other(none),
                          {leaving(none), "0 DeactivateSource failed ", "0 t_SetSource failed\n"}}));
  EXPECT_EQ(keys(), startKeys);
  EXPECT_EQ(shown(), 5);
}

TEST_F(OperationTest, DisconnectSourceMakesAMissingSourceControl) {
  worker.src_ctrl_proxy = nullptr;
  EXPECT_TRUE(worker.DisconnectSource());
  EXPECT_EQ(shown(), -1);
  loseSourceControl();
  forget();
  EXPECT_FALSE(worker.DisconnectSource());
  EXPECT_EQ(logs(), join({{"3 DisconnectSource start\n"}, sources::noSourceControl, {"0 t_SetSource failed\n"}}));
}

TEST_F(OperationTest, DisconnectedAndBackThePreviousSourceIsNone) {
  EXPECT_TRUE(worker.DisconnectSource());
  EXPECT_EQ(worker.SetPreviousSource(), 0) << "the plug-in's 20 is no input of this set";
  EXPECT_EQ(setSource(31), 1);
  EXPECT_EQ(keys(), (Lines{"31", "43", "0", "-", "test.widget:31"}));
}

}  // namespace

}  // namespace switching
