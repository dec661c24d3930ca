// SPDX-License-Identifier: MIT
// The steps that all tuning operations share: a direct tune if the window shows TV, otherwise a switch of its source.
#include <algorithm>

#include "Tuning.h"
#include "services/ServiceStore.h"
#include "store/SettingsStore.h"

namespace {

using sources::mainKey;
using sources::pipKey;
using sources::previousPipKey;
using tuning::askSource;
using tuning::caught;
using tuning::join;
using tuning::keyIsTv;
using tuning::keysOfHdmi;
using tuning::keysOfTv;
using tuning::Lines;
using tuning::onTv;
using tuning::readKey;
using tuning::recordCalls;
using tuning::recordLogs;
using tuning::sourceLogs;
using tuning::switchToTv;
using tuning::tune;
using virtualtv::WindowId;

const std::string noSwitch = "ISourceControl[main#1]::SetSource(source=0, serviceId=282, appId=\"test.app\") -> ";

class TuneTest : public tuning::EachOperation {
 protected:
  /// Calls and log lines while the window shows HDMI, up to the read of the source key.
  Lines switchCalls() const { return join({operation().calls, askSource(hdmi), {switchToTv("282")}}); }
  Lines switchLogs() const { return join({operation().logs, sourceLogs(hdmi, plHdmi), notTv()}); }

  /// Returns to HDMI, with 281 as the service before.
  void again() {
    clearFaults();
    tv().tune(WindowId::main, *tv().services().keyOf(281));
    showHdmi();
    forget();
  }
};

// The window shows TV.

TEST_P(TuneTest, TunesTheWindowThatShowsTvDirectly) {
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(seen(), join({operation().calls, askSource(0), {tune("282")}}));
  EXPECT_EQ(logs(), join({operation().logs, sourceLogs(0, 0), {onTv}}));
  EXPECT_EQ(keys(), keysOfTv);
  EXPECT_EQ(current(), "282");
  EXPECT_EQ(previous(), "281");
}

TEST_P(TuneTest, ATuneThatTheSetRefusesAnswers0) {
  const Lines before = join({operation().logs, sourceLogs(0, 0), {onTv}});
  for (const char* way : {"result=0", "result=-1", "result=-2147483648"}) {
    SCOPED_TRACE(way);
    EXPECT_EQ(runUnder(std::string("IServiceNavigation::TuneService ") + way), 0);
    EXPECT_EQ(logs(), before);
    EXPECT_EQ(current(), "281");
  }
  EXPECT_EQ(runUnder("IServiceNavigation::TuneService result=throw"), 0);
  EXPECT_EQ(logs(), join({before, {caught(operation().name, "IServiceNavigation::TuneService")}}));
  EXPECT_EQ(current(), "281");
  EXPECT_EQ(keys(), keysOfTv);
  EXPECT_EQ(runUnder("IServiceNavigation::TuneService result=5"), 1) << "any positive answer is a success";
}

// The application.

TEST_P(TuneTest, AnApplicationWithoutIdIsCalledNoAppId) {
  engine.SetAppInfo(1, "", "", "");
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(calls().back(), "IServiceNavigation[main#1]::TuneService(serviceId=282, 0, 0, appId=\"NoAppId\") -> 1");
  Lines wanted;
  for (const std::string& line : operation().logs) {
    if (line == "3 appid is test.app") {
      wanted.insert(wanted.end(), {"0 Could not get app ID.", "3 appid is NoAppId"});
    } else {
      wanted.push_back(line);
    }
  }
  EXPECT_EQ(logs(), join({wanted, sourceLogs(0, 0), {onTv}}));
}

TEST_P(TuneTest, AnApplicationThatCannotBeAskedForIsCalledNoAppId) {
  for (const char* way : {"result=null", "result="}) {
    SCOPED_TRACE(way);
    showHdmi();
    EXPECT_EQ(runUnder(std::string("CEmpEngineBase::GetAppInfo ") + way), 1);
    const Lines made = calls();
    const std::string wanted = "ISourceControl[main#1]::SetSource(source=0, serviceId=282, appId=\"NoAppId\") -> 1";
    EXPECT_NE(std::find(made.begin(), made.end(), wanted), made.end()) << ::testing::PrintToString(made);
    tv().tune(WindowId::main, *tv().services().keyOf(281));
  }
}

TEST_P(TuneTest, AnApplicationThatIsAskedForWithAnExceptionAnswers0AndTunesNothing) {
  const Lines& log = operation().logs;
  const Lines before(log.begin(), std::find(log.begin(), log.end(), "3 appid is test.app"));
  Lines made(operation().calls.begin(), std::find(operation().calls.begin(), operation().calls.end(), tuning::askApp));
  made.emplace_back("CEmpEngineBase::GetAppInfo(type=1) -> throws [fault]");
  EXPECT_EQ(runUnder("CEmpEngineBase::GetAppInfo result=throw"), 0);
  EXPECT_EQ(seen(), made);
  EXPECT_EQ(logs(), join({before, {caught(operation().name, "CEmpEngineBase::GetAppInfo")}}));
  EXPECT_EQ(current(), "281");
  EXPECT_EQ(keys(), keysOfTv);
}

// The window does not show TV.

TEST_P(TuneTest, SwitchesTheWindowThatDoesNotShowTvAndRecordsIt) {
  showHdmi();
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(seen(), join({switchCalls(), {readKey(mainKey, plHdmi)}, recordCalls(plHdmi)}));
  EXPECT_EQ(logs(), join({switchLogs(), recordLogs(plHdmi)}));
  EXPECT_EQ(keys(), (Lines{"0", "31", "0", "-", "test.widget:0"}));
  EXPECT_EQ(current(), "282");
  EXPECT_EQ(shown(), 0);
}

TEST_P(TuneTest, AKeyThatSaysTvAlreadyIsLeftAsItIs) {
  showHdmi();
  setSetting(mainKey, 0);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(seen(), join({switchCalls(), {readKey(mainKey, 0)}}));
  EXPECT_EQ(logs(), join({switchLogs(), {keyIsTv}}));
  EXPECT_EQ(keys(), (Lines{"0", "77", "0", "-", "-"}));
  EXPECT_EQ(shown(), 0);
}

TEST_P(TuneTest, ASwitchThatFailsIsNotNoticed) {
  for (const std::string result : {"0", "-1"}) {
    SCOPED_TRACE(result);
    again();
    EXPECT_EQ(runUnder("ISourceControl::SetSource result=" + result), 1);
    EXPECT_EQ(seen(), join({operation().calls,
                            askSource(hdmi),
                            {noSwitch + result + " [fault]", readKey(mainKey, plHdmi)},
                            recordCalls(plHdmi)}));
    EXPECT_EQ(logs(), join({switchLogs(), recordLogs(plHdmi)}));
    EXPECT_EQ(shown(), hdmi);
    EXPECT_EQ(current(), "281");
    EXPECT_EQ(keys()[0], "0");
  }
}

TEST_P(TuneTest, ASwitchThatThrowsAnswers0AndRecordsNothing) {
  showHdmi();
  EXPECT_EQ(runUnder("ISourceControl::SetSource result=throw"), 0);
  EXPECT_EQ(seen(), join({operation().calls, askSource(hdmi), {noSwitch + "throws [fault]"}}));
  EXPECT_EQ(logs(), join({switchLogs(), {caught(operation().name, "ISourceControl::SetSource")}}));
  EXPECT_EQ(keys(), keysOfHdmi);
  EXPECT_EQ(shown(), hdmi);
  EXPECT_EQ(current(), "281");
}

TEST_P(TuneTest, AKeyThatCannotBeReadAnswers0AfterTheSwitch) {
  const std::string fails = "0 Get the vconf db/emp/mainsource fails";
  again();
  EXPECT_EQ(runUnder("vconf_get_int result=-1"), 0);
  EXPECT_EQ(logs(), join({switchLogs(), {fails}}));
  EXPECT_EQ(keys(), keysOfHdmi);
  EXPECT_EQ(current(), "282");
  again();
  EXPECT_EQ(runUnder("vconf_get_int result=throw"), 0);
  EXPECT_EQ(logs(), join({switchLogs(), {caught(operation().name, "vconf_get_int"), fails}}));
  EXPECT_EQ(keys(), keysOfHdmi);
  again();
  setSetting(mainKey, "a text");
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(logs(), join({switchLogs(), {fails}})) << "a key of the other type";
}

TEST_P(TuneTest, AKeyThatTheSetReadsWithoutWritingItCountsAsMinus1) {
  showHdmi();
  EXPECT_EQ(runUnder("vconf_get_int result=unwritten"), 1);
  EXPECT_EQ(keys(), (Lines{"0", "-1", "0", "-", "test.widget:0"}));
}

/// A failing write, the log lines after the switch, and the keys afterwards.
struct Unwritten {
  std::string fault;
  Lines logs;
  Lines keys;
};

TEST_P(TuneTest, ARecordThatFailsAnswers0AndKeepsWhatItWrote) {
  const Lines recorded = recordLogs(plHdmi);
  const Lines first{recorded[0]};
  const Lines published{recorded.begin(), recorded.end() - 1};
  const std::string previousFailed = "0 Set vconf db/emp/previousmainsource = 31 failed";
  const std::string currentFailed = "0 Set vconf db/emp/mainsource = 0 failed";
  const Lines unpublished{"0 set the vconf for emptvsmw failed!!!", "0 t_SetTVMWMainSourcevconf failed"};
  const std::string update = "t_UpdateSourceVconf";
  const std::vector<Unwritten> writes{
      {"vconf_set_int result=-1", {previousFailed}, keysOfHdmi},
      {"vconf_set_int result=throw", {caught(update, "vconf_set_int"), previousFailed}, keysOfHdmi},
      {"CEmpEngineBase::GetAppInfo nth=2 result=throw",
       {recorded[0], recorded[1], recorded[2], caught("t_SetTVMWMainSourcevconf", "CEmpEngineBase::GetAppInfo"),
        "0 t_SetTVMWMainSourcevconf failed"},
       {"31", "31", "0", "-", "-"}},
      {"vconf_set_str result=-1", join({published, unpublished}), {"31", "31", "0", "-", "-"}},
      {"vconf_set_str result=throw",
       join({published, {caught("t_SetTVMWMainSourcevconf", "vconf_set_str")}, unpublished}),
       {"31", "31", "0", "-", "-"}},
      {"vconf_set_int nth=2 result=-1", join({published, {currentFailed}}), {"31", "31", "0", "-", "test.widget:0"}},
      {"vconf_set_int nth=2 result=throw",
       join({published, {caught(update, "vconf_set_int"), currentFailed}}),
       {"31", "31", "0", "-", "test.widget:0"}},
  };
  for (const Unwritten& write : writes) {
    SCOPED_TRACE(write.fault);
    again();
    tv().removeSetting(sources::middlewareKey);
    EXPECT_EQ(runUnder(write.fault), 0);
    EXPECT_EQ(logs(), join({switchLogs(), write.logs, {"0 Update the vconf fails"}}));
    EXPECT_EQ(keys(), write.keys);
    EXPECT_EQ(shown(), 0) << "the switch itself stays";
  }
}

// What counts as another source than TV.

TEST_P(TuneTest, ASourceThatCannotBeReadIsTakenForAnotherThanTv) {
  const std::vector<std::pair<std::string, Lines>> ways{
      {"ISourceControl::GetSourceState result=0", {"0 Get GetSourceState failed", "3 TVS is not active"}},
      {"ISourceControl::GetSourceState result=2", {"0 Get GetSourceState failed", "3 TVS is not active"}},
      {"ISourceControl::GetSourceState result=throw",
       {caught("t_GetCurrentSourceInfo", "ISourceControl::GetSourceState")}},
      {"ISourceControl::GetCurrentSourceInfo result=0", {"3 GetSourceState = 2", "0 GetCurrentSourceInfo failed"}},
      {"ISourceControl::GetCurrentSourceInfo result=throw",
       {"3 GetSourceState = 2", caught("t_GetCurrentSourceInfo", "ISourceControl::GetCurrentSourceInfo"),
        "0 GetCurrentSourceInfo failed"}},
      {"ISourceControl::GetCurrentSourceInfo result=unwritten",
       join({{"3 GetSourceState = 2", "3 GetCurrentSourceInfo successfully eTVSSource = -1"}, sources::refused(-1)})},
  };
  const Lines start{"3 This is t_GetCurrentSourceInfo", "3 GetSourceState start"};
  for (const auto& [words, lines] : ways) {
    SCOPED_TRACE(words);
    EXPECT_EQ(runUnder(words), 1);
    EXPECT_EQ(logs(), join({operation().logs, start, lines, notTv(), {keyIsTv}}));
    const Lines made = calls();
    ASSERT_GE(made.size(), 2U);
    EXPECT_EQ(made[made.size() - 2], switchToTv("282"));
    EXPECT_EQ(made.back(), readKey(mainKey, 0));
    tv().tune(WindowId::main, *tv().services().keyOf(281));
  }
}

// Picture-in-picture.

TEST_P(TuneTest, APictureInPictureKeyOfTvLetsASwitchSucceedUnrecorded) {
  drivePictureInPicture();
  showHdmi(WindowId::pip);
  EXPECT_EQ(run(), 1);
  const Lines made = calls();
  EXPECT_EQ(made[made.size() - 2],
            "ISourceControl[pip#2]::SetSource(source=0, serviceId=282, appId=\"test.app\") -> 1");
  EXPECT_EQ(made.back(), readKey(pipKey, 0));
  EXPECT_EQ(logs().back(), keyIsTv);
  EXPECT_EQ(shown(WindowId::pip), 0);
  EXPECT_EQ(keys(), keysOfHdmi);
}

TEST_P(TuneTest, APictureInPictureSwitchCanRecordThePreviousSourceOnlyAndFails) {
  drivePictureInPicture();
  showHdmi(WindowId::pip);
  setSetting(pipKey, 24);
  EXPECT_EQ(run(), 0);
  const Lines after = logs();
  const Lines record{tuning::written(previousPipKey, 24), "3 This is t_SetCurrentSourcevconf",
                     "0 in_key= db/emp/pipsource  is not equal to db/emp/mainsource",
                     "0 t_SetTVMWMainSourcevconf failed", "0 Update the vconf fails"};
  ASSERT_GE(after.size(), record.size());
  EXPECT_EQ(Lines(after.end() - static_cast<std::ptrdiff_t>(record.size()), after.end()), record);
  EXPECT_EQ(keys(), (Lines{"31", "77", "24", "24", "-"}));
  EXPECT_EQ(current(WindowId::pip), "282");
}

INSTANTIATE_TEST_SUITE_P(Each, TuneTest, ::testing::ValuesIn(tuning::operations()), tuning::nameOf);

}  // namespace
