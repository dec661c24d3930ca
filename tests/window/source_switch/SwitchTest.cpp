// Switching to another source than the one shown.
#include <algorithm>
#include <climits>
#include <map>

#include "Switching.h"

namespace switching {

namespace {

using sources::mainKey;
using sources::previousMainKey;
using virtualtv::WindowId;

constexpr int hdmi = 31;
constexpr int hdmiTc = 13;

// A source of the TV service.

TEST_F(SwitchTest, SwitchesThenRecordsPreviousMiddlewareAndCurrentSource) {
  EXPECT_TRUE(set(hdmi));
  EXPECT_EQ(calls(), join({askSource(), {askApp, switchTo(hdmiTc)}, record(hdmi, 20)}));
  EXPECT_EQ(logs(), join({asked(hdmi), other(hdmi), translated(hdmi, hdmiTc), recorded(hdmi, 20)}));
  EXPECT_EQ(keys(), (Lines{"31", "20", "0", "-", "test.widget:31"}));
  EXPECT_EQ(shown(), hdmiTc);
}

TEST_F(SwitchTest, AnInputWithNothingPluggedInIsASourceLikeAnyOther) {
  EXPECT_TRUE(set(33));
  EXPECT_EQ(keys(), (Lines{"33", "20", "0", "-", "test.widget:33"}));
  EXPECT_EQ(tv().state()[WindowId::main].sourceState, virtualtv::SOURCE_STATE_NO_SIGNAL);
}

/// What sources of the TV service are called there. Those that it does not list are its source 0.
std::map<int, int> tvServiceSources() {
  return {{0, 0},   {8, 0},   {9, 0},   {10, 0},  {15, 1},  {16, 2},  {17, 3},  {18, 0},  {19, 4},  {20, 5},  {21, 6},
          {22, 0},  {23, 7},  {24, 8},  {25, 9},  {26, 0},  {27, 10}, {28, 11}, {29, 12}, {30, 0},  {31, 13}, {32, 14},
          {33, 15}, {34, 16}, {35, 17}, {36, 18}, {37, 19}, {38, 0},  {39, 20}, {40, 21}, {41, 22}, {42, 0}};
}

TEST_F(SwitchTest, EverySourceUpTo42GoesToTheTvServiceUnderItsOwnNumber) {
  for (const auto& [source, tc] : tvServiceSources()) {
    SCOPED_TRACE(source);
    restart();
    show(31, 8);  // the plug-in's 53
    fault("ISourceControl::SetSource result=1");
    EXPECT_TRUE(set(source));
    const Lines made = calls();
    ASSERT_EQ(made.size(), 8U);
    EXPECT_EQ(made[3], switchTo(tc) + " [fault]");
    EXPECT_EQ(keys(), (Lines{std::to_string(source), "53", "0", "-", "test.widget:" + std::to_string(source)}));
  }
}

TEST_F(SwitchTest, ASourceWithoutACounterpartIsRefusedBeforeAnythingIsSwitched) {
  for (const int source : {1, 2, 3, 4, 5, 6, 7, 11, 12, 13, 14}) {
    SCOPED_TRACE(source);
    restart();
    EXPECT_FALSE(set(source));
    EXPECT_EQ(calls(), join({askSource(), {askApp}}));
    EXPECT_EQ(logs(), join({asked(source),
                            other(source),
                            {"3 t_IsConvertable input ePLSource = " + std::to_string(source),
                             "0 t_IsConvertable can't convert to  ESource"}}));
    EXPECT_EQ(keys(), startKeys);
    EXPECT_EQ(shown(), 5);
  }
}

TEST_F(SwitchTest, AnInputThatTheSetDoesNotHaveCannotBeSwitchedTo) {
  EXPECT_FALSE(set(16));
  EXPECT_EQ(logs(), join({asked(16), other(16), translated(16, 2), {"0 SetSource failed eTVSSource= 2"}}));
  EXPECT_EQ(keys(), startKeys);
}

// A source outside the TV service.

TEST_F(SwitchTest, ASourceAbove42OnlyDeactivatesTheTvService) {
  for (const int source : {43, 44, 45, 46, 47, 49, 50, 51, 52, 53, 54, 100, 101, 65536, INT_MAX}) {
    SCOPED_TRACE(source);
    restart();
    EXPECT_TRUE(set(source));
    const std::string cut = std::to_string(source).substr(0, 3);
    Lines made = record(source, 20);
    made[2] = "vconf_set_str(key=\"db/kel/current_source_type\", value=\"test.widget:" + cut + "\") -> 0";
    EXPECT_EQ(calls(), join({askSource(), {askApp, leave}, made}));
    EXPECT_EQ(keys(), (Lines{std::to_string(source), "20", "0", "-", "test.widget:" + cut}));
    EXPECT_EQ(shown(), -1);
  }
}

TEST_F(SwitchTest, LeavingTheTvServiceIsToldInThisOrder) {
  EXPECT_TRUE(set(100));
  EXPECT_EQ(logs(), join({asked(100), other(100), {leaving(100)}, recorded(100, 20)}));
}

TEST_F(SwitchTest, ANegativeSourceIsOutsideTheTvService) {
  for (const int source : {-1, -2, -48, INT_MIN}) {
    SCOPED_TRACE(source);
    restart();
    EXPECT_TRUE(set(source));
    EXPECT_EQ(shown(), -1);
    EXPECT_EQ(intSetting(mainKey), source);
    EXPECT_EQ(intSetting(previousMainKey), 20);
  }
}

TEST_F(SwitchTest, AMajorNumberMeansNothingOutsideTheTvService) {
  for (const int source : {100, isp}) {
    restart();
    EXPECT_TRUE(set(source, 7));
    for (const std::string& call : calls()) EXPECT_EQ(call.find("GetServiceList"), std::string::npos) << call;
    EXPECT_EQ(intSetting(mainKey), source);
  }
}

// The ISP source.

TEST_F(SwitchTest, IspSwitchesTheSecondaryStackThenDeactivatesTheTvService) {
  EXPECT_TRUE(set(isp));
  EXPECT_EQ(calls(), join({askSource(), {askApp, "D2TVCAPI_setSourceISP() -> 1", leave}, record(isp, 20)}));
  EXPECT_EQ(logs(), join({asked(isp), other(isp), toIsp, {leaving(isp)}, recorded(isp, 20)}));
  EXPECT_EQ(keys(), (Lines{"48", "20", "0", "-", "test.widget:48"}));
  EXPECT_TRUE(tv().state().isp.shown);
  EXPECT_EQ(shown(), -1);
}

TEST_F(SwitchTest, IspAgainIsADifferentSourceFromNoneAndSwitchesAgain) {
  EXPECT_TRUE(set(isp));
  forget();
  EXPECT_TRUE(set(isp));
  const Lines made = calls();
  EXPECT_EQ(std::count(made.begin(), made.end(), "D2TVCAPI_setSourceISP() -> 1"), 1);
  EXPECT_EQ(keys(), (Lines{"48", "43", "0", "-", "test.widget:48"}));
}

TEST_F(SwitchTest, FromIspBackToTheTvServiceNoneIsThePreviousSource) {
  EXPECT_TRUE(set(isp));
  EXPECT_TRUE(set(0));
  EXPECT_EQ(keys(), (Lines{"0", "43", "0", "-", "test.widget:0"}));
  EXPECT_FALSE(tv().state().isp.shown);
  EXPECT_EQ(shown(), 0);
}

// Failures.

/// A call that fails, the log lines behind those of the request, the keys and the set's source afterwards.
struct Failure {
  std::string fault;
  Lines logs;
  Lines keys;
  int shown;
};

class SwitchFailureTest : public SwitchTest {
 protected:
  void expect(int source, const std::vector<Failure>& failures) {
    for (const Failure& failure : failures) {
      SCOPED_TRACE(failure.fault);
      restart();
      setSetting(sources::middlewareKey, std::string("old"));
      fault(failure.fault);
      EXPECT_FALSE(set(source));
      EXPECT_TRUE(faultsHit());
      EXPECT_EQ(logs(), join({asked(source), other(source), failure.logs}));
      EXPECT_EQ(keys(), failure.keys);
      EXPECT_EQ(shown(), failure.shown);
    }
  }
};

const Lines oldKeys{"20", "77", "0", "-", "old"};

/// Failures of recording a switch that has taken place.
std::vector<Failure> unrecorded(const Lines& before, int source, int shown) {
  const Lines previous = join({before, {written(previousMainKey, 20)}});
  const Lines told = join({previous, published(source)});
  const std::string toldText = "test.widget:" + std::to_string(source);
  const Lines previousOnly{"20", "20", "0", "-", "old"};
  const Lines noTelling{"0 set the vconf for emptvsmw failed!!!", "0 t_SetTVMWMainSourcevconf failed"};
  return {
      {"vconf_set_int result=-1", join({before, {unwritten(previousMainKey, 20)}}), oldKeys, shown},
      {"vconf_set_int result=1", join({before, {unwritten(previousMainKey, 20)}}), oldKeys, shown},
      {"vconf_set_int result=throw",
       join({before, {caught("t_SetSource", "vconf_set_int"), unwritten(previousMainKey, 20)}}), oldKeys, shown},
      {"vconf_set_str result=-1", join({told, noTelling}), previousOnly, shown},
      {"vconf_set_str result=throw", join({told, {caught("t_SetTVMWMainSourcevconf", "vconf_set_str")}, noTelling}),
       previousOnly, shown},
      {"vconf_set_int nth=2 result=-1",
       join({told, {unwritten(mainKey, source)}}),
       {"20", "20", "0", "-", toldText},
       shown},
      {"vconf_set_int nth=2 result=throw",
       join({told, {caught("t_SetSource", "vconf_set_int"), unwritten(mainKey, source)}}),
       {"20", "20", "0", "-", toldText},
       shown},
  };
}

TEST_F(SwitchFailureTest, ASwitchThatTheTvServiceRefusesWritesNothing) {
  const Lines before = translated(hdmi, hdmiTc);
  const std::string failed = "0 SetSource failed eTVSSource= 13";
  expect(hdmi, {{"ISourceControl::SetSource result=0", join({before, {failed}}), oldKeys, 5},
                {"ISourceControl::SetSource result=-1", join({before, {failed}}), oldKeys, 5},
                {"ISourceControl::SetSource result=throw",
                 join({before, {caught("t_SetSource", "ISourceControl::SetSource"), failed}}), oldKeys, 5}});
}

TEST_F(SwitchFailureTest, ASwitchThatCannotBeRecordedStaysInForceWithTheKeysWrittenSoFar) {
  expect(hdmi, unrecorded(translated(hdmi, hdmiTc), hdmi, hdmiTc));
  expect(100, unrecorded({leaving(100)}, 100, -1));
  expect(isp, unrecorded(join({toIsp, {leaving(isp)}}), isp, -1));
}

TEST_F(SwitchFailureTest, ATvServiceThatCannotBeDeactivatedKeepsItsSource) {
  const std::string failed = "0 DeactivateSource failed ";
  for (const auto& [source, before] : std::map<int, Lines>{{100, {}}, {-1, {}}, {isp, toIsp}}) {
    const Lines tried = join({before, {leaving(source)}});
    expect(source, {{"ISourceControl::DeactivateSource result=0", join({tried, {failed}}), oldKeys, 5},
                    {"ISourceControl::DeactivateSource result=-1", join({tried, {failed}}), oldKeys, 5},
                    {"ISourceControl::DeactivateSource result=throw",
                     join({tried, {caught("t_SetSource", "ISourceControl::DeactivateSource"), failed}}), oldKeys, 5}});
  }
}

TEST_F(SwitchFailureTest, ASecondaryStackThatDoesNotSwitchLeavesTheTvServiceAlone) {
  const Lines failed{"3 CEmpTaskWindow::SetSource : Fail to Set ISP Source",
                     "0 CEmpTaskWindow::SetSource :: Setting \"isp-service\" to last service failed."};
  for (const char* result : {"0", "2", "-1"}) {
    expect(isp, {{std::string("D2TVCAPI_setSourceISP result=") + result, join({toIsp, failed}), oldKeys, 5}});
    for (const std::string& call : calls()) EXPECT_NE(call, leave);
  }
  expect(isp, {{"D2TVCAPI_setSourceISP result=throw",
                join({toIsp, {caught("SetSource_D2TV", "D2TVCAPI_setSourceISP", 3)}, failed}), oldKeys, 5}});
}

TEST_F(SwitchTest, ASecondaryStackThatCannotBeReachedIsAFailure) {
  tv().adjust([](virtualtv::TvState& state) { state.isp.present = false; });
  EXPECT_FALSE(set(isp));
  EXPECT_EQ(keys(), startKeys);
  EXPECT_EQ(shown(), 5);
}

TEST_F(SwitchTest, AnyPositiveResultIsASwitch) {
  for (const char* result : {"1", "2", "2147483647"}) {
    restart();
    fault(std::string("ISourceControl::SetSource result=") + result);
    EXPECT_TRUE(set(hdmi)) << result;
    restart();
    fault(std::string("ISourceControl::DeactivateSource result=") + result);
    EXPECT_TRUE(set(100)) << result;
  }
}

TEST_F(SwitchTest, WithoutTheCurrentSourceNothingIsSwitched) {
  const Lines asking{"3 t_SetSource input ePLSource = 31, nMajor = -1", "3 This is t_GetCurrentSourceInfo",
                     "3 GetSourceState start", "3 GetSourceState = 2"};
  const std::string failed = "0 t_GetCurrentSourceInfo failed ";
  const Lines untold{"0 GetCurrentSourceInfo failed", failed};
  const std::map<std::string, Lines> failures{
      {"result=0", untold},
      {"result=-1", untold},
      {"result=throw", join({{caught("t_GetCurrentSourceInfo", "ISourceControl::GetCurrentSourceInfo")}, untold})},
      {"result=unwritten",
       join({{"3 GetCurrentSourceInfo successfully eTVSSource = -1"}, sources::refused(-1), {failed}})},
      {"out.source=99",
       join({{"3 GetCurrentSourceInfo successfully eTVSSource = 99"}, sources::refused(99), {failed}})},
  };
  for (const auto& [way, lines] : failures) {
    SCOPED_TRACE(way);
    restart();
    fault("ISourceControl::GetCurrentSourceInfo " + way);
    EXPECT_FALSE(set(hdmi));
    EXPECT_EQ(logs(), join({asking, lines}));
    EXPECT_EQ(calls().size(), 2U) << "nothing was asked after that";
    EXPECT_EQ(keys(), startKeys);
  }
}

TEST_F(SwitchTest, AStateThatCannotBeReadCountsAsNoSource) {
  for (const char* way : {"result=0", "result=2", "result=-1", "result=unwritten", "out.state=-1"}) {
    SCOPED_TRACE(way);
    restart();
    fault(std::string("ISourceControl::GetSourceState ") + way);
    EXPECT_TRUE(set(hdmi));
    EXPECT_EQ(intSetting(previousMainKey), none);
    EXPECT_EQ(intSetting(mainKey), hdmi);
  }
}

TEST_F(SwitchTest, AStateThatIsReadWithAnExceptionFailsBeforeAnythingIsSwitched) {
  for (const int source : {hdmi, 20, none, 100, isp}) {
    SCOPED_TRACE(source);
    restart();
    fault("ISourceControl::GetSourceState result=throw");
    EXPECT_FALSE(set(source));
    EXPECT_EQ(calls(), Lines{"ISourceControl[main#1]::GetSourceState() -> throws [fault]"});
    EXPECT_EQ(logs(), (Lines{"3 t_SetSource input ePLSource = " + std::to_string(source) + ", nMajor = -1",
                             "3 This is t_GetCurrentSourceInfo", "3 GetSourceState start",
                             caught("t_GetCurrentSourceInfo", "ISourceControl::GetSourceState"),
                             "0 t_GetCurrentSourceInfo failed "}));
    EXPECT_EQ(keys(), startKeys);
    EXPECT_EQ(shown(), 5);
  }
}

// Who asks.

TEST_F(SwitchTest, AnApplicationWithoutAnIdIsNoAppId) {
  const Lines unknown{"3 ePLSource=[31], current db/emp/mainsource = 20 success", "0 Could not get app ID.",
                      "3 appid is NoAppId"};
  for (const char* way : {"result=null", "result="}) {
    SCOPED_TRACE(way);
    restart();
    fault(std::string("CEmpEngineBase::GetAppInfo ") + way);
    EXPECT_TRUE(set(hdmi));
    EXPECT_EQ(logs(), join({asked(hdmi), unknown, translated(hdmi, hdmiTc), recorded(hdmi, 20)}));
    EXPECT_EQ(calls()[3], "ISourceControl[main#1]::SetSource(source=13, appId=\"NoAppId\") -> 1");
  }
}

TEST_F(SwitchTest, AnApplicationThatIsAskedForWithAnExceptionFailsBeforeAnythingIsSwitched) {
  for (const int source : {hdmi, 100, isp}) {
    SCOPED_TRACE(source);
    restart();
    fault("CEmpEngineBase::GetAppInfo result=throw");
    EXPECT_FALSE(set(source));
    EXPECT_EQ(calls(), join({askSource(), {"CEmpEngineBase::GetAppInfo(type=1) -> throws [fault]"}}));
    EXPECT_EQ(logs(), join({asked(source), {other(source)[0], caught("t_SetSource", "CEmpEngineBase::GetAppInfo")}}));
    EXPECT_EQ(keys(), startKeys);
    EXPECT_EQ(shown(), 5);
  }
}

TEST_F(SwitchTest, AWidgetWithoutAnIdIsToldToTheMiddlewareAsEmpty) {
  fault("CEmpEngineBase::GetAppInfo nth=2 result=null");
  EXPECT_TRUE(set(hdmi));
  EXPECT_EQ(keys(), (Lines{"31", "20", "0", "-", ":31"}));
}

TEST_F(SwitchTest, AWidgetThatIsAskedForWithAnExceptionFailsAfterTheSwitchWithThePreviousSourceWritten) {
  fault("CEmpEngineBase::GetAppInfo nth=2 result=throw");
  EXPECT_FALSE(set(hdmi));
  const Lines told = published(hdmi);
  EXPECT_EQ(logs(), join({asked(hdmi),
                          other(hdmi),
                          translated(hdmi, hdmiTc),
                          {written(previousMainKey, 20), told[0], told[1],
                           caught("t_SetTVMWMainSourcevconf", "CEmpEngineBase::GetAppInfo"),
                           "0 t_SetTVMWMainSourcevconf failed"}}));
  EXPECT_EQ(calls(), join({askSource(),
                           {askApp, switchTo(hdmiTc), write(previousMainKey, 20),
                            "CEmpEngineBase::GetAppInfo(type=2) -> throws [fault]"}}));
  EXPECT_EQ(keys(), (Lines{"20", "20", "0", "-", "-"}));
  EXPECT_EQ(shown(), hdmiTc);
}

// Proxies.

TEST_F(SwitchTest, AMissingSourceControlIsMade) {
  worker.src_ctrl_proxy = nullptr;
  EXPECT_TRUE(set(hdmi));
  const Lines lines = logs();
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines[0], "0 src_ctrl_proxy is NULL, t_eWindow =0");
  const Lines made = calls();
  ASSERT_EQ(made.size(), 9U);
  EXPECT_EQ(made[0], "TVServiceAPI::CreateSourceControl(profile=1, index=0) -> 0");
  EXPECT_EQ(made[4], "ISourceControl[main#2]::SetSource(source=13, appId=\"test.app\") -> 1");
  EXPECT_EQ(keys(), (Lines{"31", "20", "0", "-", "test.widget:31"}));
}

TEST_F(SwitchTest, WithoutSourceControlNothingIsSwitched) {
  loseSourceControl();
  EXPECT_FALSE(set(hdmi));
  EXPECT_EQ(logs(), sources::noSourceControl);
  EXPECT_EQ(keys(), startKeys);
  EXPECT_EQ(shown(), 5);
}

}  // namespace

}  // namespace switching
