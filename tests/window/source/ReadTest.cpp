// Reading a window's source: the one shown, the one before, its state.
#include "support/Sources.h"

namespace {

using sources::askCurrent;
using sources::askState;
using sources::converted;
using sources::currentLogs;
using sources::noSourceControl;
using sources::previousMainKey;
using sources::previousPipKey;
using sources::refused;
using support::banner;
using support::caught;
using support::join;
using support::leveled;
using support::Lines;
using support::place;

const Lines current{"3 This is t_GetCurrentSourceInfo", "3 GetSourceState start"};
const Lines currentRead = join({currentLogs(5), converted(5, 20)});

class ReadTest : public sources::SourceTest {
 protected:
  int getSource(int seek) { return worker.GetSource(&source, static_cast<_PL_WINDOW_SEEK>(seek)); }

  /// Reads the source under a fault; -1 stands for a failure.
  int underFault(const std::string& words) {
    only(words);
    source = untouched;
    const int result = getSource(0);
    EXPECT_TRUE(faultsHit());
    if (result == 1) return source;
    EXPECT_EQ(result, -1);
    EXPECT_EQ(source, untouched) << "the output stays as it was";
    return -1;
  }

  static constexpr auto untouched = static_cast<_PL_WINDOW_Source>(-77);
  _PL_WINDOW_Source source = untouched;
};

TEST_F(ReadTest, GetSourceAnswersTheSourceShown) {
  EXPECT_EQ(getSource(0), 1);
  EXPECT_EQ(source, 20);
  EXPECT_EQ(calls(), (Lines{askState, askCurrent}));
  EXPECT_EQ(logs(), join({{place("GetSource")}, currentRead}));
}

TEST_F(ReadTest, GetSourceAsksTheTvServiceForEverySeekButTheThreePreviousOnes) {
  setSetting(previousMainKey, 99);
  for (const int seek : {-1, 0, 1, 2, 3, 4, 5, 7, 10, 11, 12, 101, 2147483647}) {
    EXPECT_EQ(getSource(seek), 1) << seek;
    EXPECT_EQ(source, 20) << seek;
  }
}

TEST_F(ReadTest, GetSourceAnswersThePreviousSourceAsItIsStored) {
  for (const int seek : {6, 8, 9}) {
    for (const int stored : {0, 43, 100, -5, 123456}) {
      setSetting(previousMainKey, stored);
      forget();
      EXPECT_EQ(getSource(seek), 1);
      EXPECT_EQ(source, stored);
      const std::string value = std::to_string(stored);
      EXPECT_EQ(calls(), Lines{"vconf_get_int(key=\"db/emp/previousmainsource\") value=" + value + " -> 0"});
      EXPECT_EQ(logs(), (Lines{place("GetSource"),
                               "3 m_PreviousSourceVconf db/emp/previousmainsource = " + value + " success"}));
    }
  }
}

TEST_F(ReadTest, GetSourceReadsThePreviousSourceOfItsWindow) {
  worker.SetWindow(PL_WINDOW_WINDOW_PIP);
  setSetting(previousMainKey, 1);
  setSetting(previousPipKey, 2);
  EXPECT_EQ(getSource(8), 1);
  EXPECT_EQ(source, 2);
}

TEST_F(ReadTest, GetSourceFailsWhenThePreviousSourceCannotBeRead) {
  const Lines failed{place("GetSource"), "0 Get vconf db/emp/previousmainsource failed"};
  for (const char* way : {"result=-1", "result=-9"}) {
    only(std::string("vconf_get_int ") + way);
    EXPECT_EQ(getSource(6), 0) << way;
    EXPECT_EQ(logs(), failed) << way;
  }
  only("vconf_get_int result=throw");
  EXPECT_EQ(getSource(6), 0);
  EXPECT_EQ(logs(), (Lines{failed[0], caught("GetSource", "vconf_get_int"), failed[1]}));
  EXPECT_EQ(source, untouched);
}

TEST_F(ReadTest, GetSourceAnswers0ForAPreviousSourceThatTheStoreLeavesOut) {
  only("vconf_get_int result=unwritten");
  EXPECT_EQ(getSource(6), 1);
  EXPECT_EQ(source, 0);
}

TEST_F(ReadTest, GetSourceFailsForAPreviousSourceThatWasNeverStored) {
  worker.SetWindow(PL_WINDOW_WINDOW_PIP);
  forget();
  EXPECT_EQ(getSource(9), 0);
  EXPECT_EQ(logs(), (Lines{place("GetSource"), "0 Get vconf db/emp/previouspipsource failed"}));
}

TEST_F(ReadTest, NullOutputIsRefusedBeforeAnythingElse) {
  EXPECT_EQ(worker.GetSource(nullptr, _PL_WINDOW_SEEK{}), -3);
  EXPECT_EQ(logs(), (Lines{place("GetSource"), banner(0, "GetSource")}));
  EXPECT_EQ(worker.GetSource(nullptr, PL_WINDOW_SEEK_PREVIOUS_SOURCE_6), -3);
  forget();
  EXPECT_EQ(worker.GetPreviousSource(nullptr), -3);
  EXPECT_EQ(logs(), (Lines{place("GetPreviousSource"), banner(0, "GetPreviousSource")}));
  EXPECT_EQ(worker.GetSourceState(nullptr), -3);
  EXPECT_EQ(logs(), (Lines{place("GetSourceState"), banner(0, "GetSourceState")}));
  EXPECT_EQ(calls(), Lines());
}

TEST_F(ReadTest, GetSourceWithoutAnActiveSourceIsFortyThree) {
  deactivate();
  EXPECT_EQ(getSource(0), 1);
  EXPECT_EQ(source, 43);
  EXPECT_EQ(calls(), Lines{"ISourceControl[main#1]::GetSourceState() state=-1 -> 1"});
  EXPECT_EQ(
      logs(),
      join({{place("GetSource")},
            current,
            leveled(3, {"GetSourceState = -1", "Get GetSourceState success and eCurrentSourceState = SOURCE_STATE_NONE",
                        "TVS is not active"})}));
}

TEST_F(ReadTest, GetSourceIsFortyThreeWhenTheStateCannotBeRead) {
  const Lines inactive{"0 Get GetSourceState failed", "3 TVS is not active"};
  for (const int result : {0, -1, 2, 100}) {
    EXPECT_EQ(underFault("ISourceControl::GetSourceState result=" + std::to_string(result)), 43) << result;
    EXPECT_EQ(calls().size(), 1U);
    EXPECT_EQ(logs(), join({{place("GetSource")}, current, inactive})) << result;
  }
}

TEST_F(ReadTest, GetSourceFailsWhenTheStateIsReadWithAnException) {
  EXPECT_EQ(underFault("ISourceControl::GetSourceState result=throw"), -1);
  EXPECT_EQ(calls(), Lines{"ISourceControl[main#1]::GetSourceState() -> throws [fault]"});
  EXPECT_EQ(
      logs(),
      join({{place("GetSource")}, current, {caught("t_GetCurrentSourceInfo", "ISourceControl::GetSourceState")}}));
}

TEST_F(ReadTest, GetSourceTakesAStateThatNobodyWroteForNone) {
  EXPECT_EQ(underFault("ISourceControl::GetSourceState result=unwritten"), 43);
}

TEST_F(ReadTest, GetSourceFailsWhenTheSourceCannotBeRead) {
  const Lines before = join({{place("GetSource")}, current, {"3 GetSourceState = 2"}});
  for (const int result : {0, -1}) {
    EXPECT_EQ(underFault("ISourceControl::GetCurrentSourceInfo result=" + std::to_string(result)), -1);
    EXPECT_EQ(logs(), join({before, {"0 GetCurrentSourceInfo failed"}}));
  }
  EXPECT_EQ(underFault("ISourceControl::GetCurrentSourceInfo result=throw"), -1);
  EXPECT_EQ(logs(), join({before,
                          {caught("t_GetCurrentSourceInfo", "ISourceControl::GetCurrentSourceInfo"),
                           "0 GetCurrentSourceInfo failed"}}));
}

TEST_F(ReadTest, GetSourceSucceedsOnAnyPositiveResult) {
  EXPECT_EQ(underFault("ISourceControl::GetCurrentSourceInfo result=7"), 20);
}

TEST_F(ReadTest, GetSourceFailsForASourceThatCannotBeTranslated) {
  for (const int tc : {-1, 23, 30, 999}) {
    EXPECT_EQ(underFault("ISourceControl::GetCurrentSourceInfo out.source=" + std::to_string(tc)), -1) << tc;
    EXPECT_EQ(logs(), join({{place("GetSource")}, currentLogs(tc), refused(tc)}));
  }
  EXPECT_EQ(underFault("ISourceControl::GetCurrentSourceInfo result=unwritten"), -1);
  EXPECT_EQ(logs(), join({{place("GetSource")}, currentLogs(-1), refused(-1)}));
}

TEST_F(ReadTest, GetSourceFailsWithoutSourceControl) {
  loseSourceControl();
  EXPECT_EQ(getSource(0), -1);
  EXPECT_EQ(source, untouched);
  EXPECT_EQ(logs(), join({{place("GetSource")}, noSourceControl}));
}

TEST_F(ReadTest, GetSourceMakesTheSourceControlThatIsMissing) {
  worker.src_ctrl_proxy = nullptr;
  EXPECT_EQ(getSource(0), 1);
  EXPECT_EQ(source, 20);
  EXPECT_EQ(calls(), (Lines{"TVServiceAPI::CreateSourceControl(profile=1, index=0) -> 0",
                            "ISourceControl[main#2]::GetSourceState() state=2 -> 1",
                            "ISourceControl[main#2]::GetCurrentSourceInfo() source=5 -> 1"}));
}

TEST_F(ReadTest, GetSourceAsksTheWindowDriven) {
  worker.SetWindow(PL_WINDOW_WINDOW_PIP);
  show(1, 2, virtualtv::WindowId::pip);
  forget();
  EXPECT_EQ(getSource(0), 1);
  EXPECT_EQ(source, 15);
  EXPECT_EQ(calls(), (Lines{"ISourceControl[pip#2]::GetSourceState() state=2 -> 1",
                            "ISourceControl[pip#2]::GetCurrentSourceInfo() source=1 -> 1"}));
}

TEST_F(ReadTest, GetPreviousSourceAsksTheTvServiceAndNotTheKey) {
  setSetting(previousMainKey, 99);
  forget();
  EXPECT_EQ(worker.GetPreviousSource(&source), 1);
  EXPECT_EQ(source, 24);
  EXPECT_EQ(calls(), Lines{"ISourceControl[main#1]::GetPreviousSourceInfo() source=8 -> 1"});
  EXPECT_EQ(logs(), join({{place("GetPreviousSource"), "3 This is t_GetPreviousSourceInfo",
                           "3 GetPreviousSourceInfo successfully eTVSSource = 8"},
                          converted(8, 24)}));
}

TEST_F(ReadTest, GetPreviousSourceDoesNotCareForTheState) {
  deactivate();
  EXPECT_EQ(worker.GetPreviousSource(&source), 1);
  EXPECT_EQ(source, 24);
}

TEST_F(ReadTest, GetPreviousSourceFailsWhenItCannotBeRead) {
  const Lines before{place("GetPreviousSource"), "3 This is t_GetPreviousSourceInfo"};
  const Lines failed{"0 GetCurrentSourceInfo failed"};
  for (const int result : {0, -1}) {
    only("ISourceControl::GetPreviousSourceInfo result=" + std::to_string(result));
    EXPECT_EQ(worker.GetPreviousSource(&source), -1);
    EXPECT_EQ(logs(), join({before, failed}));
  }
  only("ISourceControl::GetPreviousSourceInfo result=throw");
  EXPECT_EQ(worker.GetPreviousSource(&source), -1);
  EXPECT_EQ(logs(),
            join({before, {caught("t_GetPreviousSourceInfo", "ISourceControl::GetPreviousSourceInfo")}, failed}));
  EXPECT_EQ(source, untouched);
}

TEST_F(ReadTest, GetPreviousSourceFailsForASourceThatCannotBeTranslated) {
  for (const char* way : {"out.source=-1", "result=unwritten"}) {
    only(std::string("ISourceControl::GetPreviousSourceInfo ") + way);
    EXPECT_EQ(worker.GetPreviousSource(&source), -1) << way;
    EXPECT_EQ(source, untouched);
    EXPECT_EQ(logs(), join({{place("GetPreviousSource"), "3 This is t_GetPreviousSourceInfo",
                             "3 GetPreviousSourceInfo successfully eTVSSource = -1"},
                            refused(-1)}));
  }
}

TEST_F(ReadTest, GetPreviousSourceFailsWithoutSourceControl) {
  loseSourceControl();
  EXPECT_EQ(worker.GetPreviousSource(&source), -1);
  EXPECT_EQ(logs(), join({{place("GetPreviousSource")}, noSourceControl}));
}

TEST_F(ReadTest, GetSourceStateAnswersTheStateAlsoThatOfNoSource) {
  int state = -77;
  EXPECT_EQ(worker.GetSourceState(&state), 1);
  EXPECT_EQ(state, 2);
  EXPECT_EQ(calls(), Lines{askState});
  EXPECT_EQ(logs(), (Lines{place("GetSourceState"), "3 GetSourceState start", "3 GetSourceState = 2"}));
  deactivate();
  EXPECT_EQ(worker.GetSourceState(&state), 1);
  EXPECT_EQ(state, -1);
}

TEST_F(ReadTest, GetSourceStateFailsOnAnyResultButOne) {
  const Lines before{place("GetSourceState"), "3 GetSourceState start"};
  int state = -77;
  for (const int result : {0, -1, 2}) {
    only("ISourceControl::GetSourceState result=" + std::to_string(result));
    EXPECT_EQ(worker.GetSourceState(&state), -1) << result;
    EXPECT_EQ(logs(), join({before, {"0 Get GetSourceState failed"}}));
  }
  only("ISourceControl::GetSourceState result=throw");
  EXPECT_EQ(worker.GetSourceState(&state), -1);
  EXPECT_EQ(
      logs(),
      join({before, {caught("GetSourceState", "ISourceControl::GetSourceState"), "0 Get GetSourceState failed"}}));
  EXPECT_EQ(state, -77);
}

TEST_F(ReadTest, GetSourceStateIsMinusOneWhenNobodyWroteIt) {
  int state = -77;
  only("ISourceControl::GetSourceState result=unwritten");
  EXPECT_EQ(worker.GetSourceState(&state), 1);
  EXPECT_EQ(state, -1);
}

TEST_F(ReadTest, GetSourceStateFailsWithoutSourceControl) {
  int state = -77;
  loseSourceControl();
  EXPECT_EQ(worker.GetSourceState(&state), -1);
  EXPECT_EQ(state, -77);
  EXPECT_EQ(logs(), join({{place("GetSourceState")}, noSourceControl}));
}

TEST_F(ReadTest, ChangesNoSettingsKey) {
  setSetting(sources::mainKey, 11);
  setSetting(previousMainKey, 12);
  getSource(0);
  getSource(6);
  worker.GetPreviousSource(&source);
  EXPECT_EQ(intSetting(sources::mainKey), 11);
  EXPECT_EQ(intSetting(previousMainKey), 12);
}

}  // namespace
