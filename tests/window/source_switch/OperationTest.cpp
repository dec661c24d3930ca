// SPDX-License-Identifier: MIT
// The four operations that switch a source: what each of them does before and after the switch.
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

Lines given(int source, int seek) {
  return {place("SetSource"), "3 eSource=[" + std::to_string(source) + "] nSeek=[" + std::to_string(seek) + "]"};
}
std::string previousRead(int stored) {
  return "3 m_PreviousSourceVconf db/emp/previousmainsource = " + std::to_string(stored) + " success";
}
const std::string noPrevious = "0 Get vconf db/emp/previousmainsource failed";

TEST_F(OperationTest, SetSourceIgnoresEverySeekButTheThreePreviousOnes) {
  for (const int seek : {-1, 0, 1, 2, 3, 4, 5, 7, 10, 11, 12, 101, 2147483647}) {
    restart();
    setSetting(previousMainKey, 32);
    EXPECT_EQ(setSource(31, seek), 1);
    EXPECT_EQ(shown(), 13) << seek;
  }
  for (const int seek : {6, 8, 9}) {
    for (const int other : {0, 1, -7, 48, 1000}) {
      restart();
      setSetting(previousMainKey, 32);
      EXPECT_EQ(setSource(other, seek), 1);
      EXPECT_EQ(shown(), 14) << seek;
      const Lines lines = logs();
      EXPECT_EQ(Lines(lines.begin(), lines.begin() + 3), join({given(other, seek), {previousRead(32)}}));
    }
  }
}

TEST_F(OperationTest, APreviousSourceThatCannotBeReadIsAFailure) {
  for (const std::string way : {"result=-1", "result=1", "result=throw"}) {
    const auto told = [&](const char* function) {
      return way == "result=throw" ? Lines{caught(function, "vconf_get_int"), noPrevious} : Lines{noPrevious};
    };
    EXPECT_EQ(under("vconf_get_int " + way, [this] { return setSource(31, 8); }), 0);
    EXPECT_EQ(logs(), join({given(31, 8), told("SetSource")}));
    EXPECT_EQ(under("vconf_get_int " + way, [this] { return worker.SetPreviousSource(); }), 0);
    EXPECT_EQ(logs(), told("SetPreviousSource"));
  }
  EXPECT_EQ(keys(), startKeys);
  tv().removeSetting(previousMainKey);
  EXPECT_EQ(worker.SetPreviousSource(), 0);
  EXPECT_EQ(logs(), Lines{noPrevious});
}

TEST_F(OperationTest, SetPreviousSourceTakesWhateverNumberIsStored) {
  for (const auto& [stored, tc] : std::vector<std::pair<int, int>>{{31, 13}, {100, -1}, {-5, -1}, {none, -1}, {1, 5}}) {
    restart();
    setSetting(previousMainKey, stored);
    EXPECT_EQ(worker.SetPreviousSource(), stored == 1 ? 0 : 1) << "there is no source 1";
    EXPECT_EQ(shown(), tc);
    EXPECT_EQ(logs().front(), previousRead(stored));
  }
  EXPECT_EQ(under("vconf_get_int result=unwritten", [this] { return worker.SetPreviousSource(); }), 1);
  EXPECT_EQ(intSetting(mainKey), 0) << "what the store leaves out is the TV source";
}

TEST_F(OperationTest, WithoutSourceControlTwoOperationsAnswerMinusOneAndMakeNone) {
  worker.src_ctrl_proxy = nullptr;
  for (const int seek : {0, 8}) {
    EXPECT_EQ(setSource(31, seek), -1);
    EXPECT_EQ(logs(), join({given(31, seek), {"0 src_ctrl_proxy is NULL!!!"}}));
  }
  EXPECT_EQ(setSourceAndTune(31, 7), -1);
  EXPECT_EQ(logs(), (Lines{place("SetSourceAndTune"), "3 eSource=[31], nMajor=[7]", "0 src_ctrl_proxy is NULL!!!"}));
  EXPECT_EQ(calls(), Lines());
}

TEST_F(OperationTest, TheOtherTwoMakeAMissingSourceControl) {
  worker.src_ctrl_proxy = nullptr;
  EXPECT_TRUE(worker.DisconnectSource());
  worker.src_ctrl_proxy = nullptr;
  setSetting(previousMainKey, 31);
  EXPECT_EQ(worker.SetPreviousSource(), 1);
  EXPECT_EQ(shown(), 13);
  loseSourceControl();
  forget();
  EXPECT_FALSE(worker.DisconnectSource());
  EXPECT_EQ(logs(), join({{"3 DisconnectSource start\n"}, sources::noSourceControl, {"0 t_SetSource failed\n"}}));
  EXPECT_EQ(worker.SetPreviousSource(), 0);
  EXPECT_EQ(logs(), join({{previousRead(43)}, sources::noSourceControl, {"0 t_SetSource failed"}}));
}

}  // namespace

}  // namespace switching
