// SPDX-License-Identifier: MIT
// Switching to a source that is not on screen.
#include <climits>
#include <map>

#include "Switching.h"

namespace switching {

namespace {

using sources::mainKey;
using sources::previousMainKey;

constexpr int hdmi = 31;
constexpr int hdmiTc = 13;

/// The log lines of a switch to HDMI, from after the request up to the TV service's answer.
const Lines toHdmi = join({other(hdmi), translated(hdmi, hdmiTc)});
/// The same of a switch away from the TV service, up to the secondary stack's answer if that is asked.
Lines away(int source) {
  const Lines toIsp{"3 [ISPSource] : SetSource to ISP Source : [48]",
                    support::place("SetSource_D2TV", 3, "Window/Src/EmpTaskWindow_D2TV"),
                    "3 CEmpTaskWindow::SetSource : [SetISPSource]"};
  return join({other(source), source == isp ? toIsp : Lines()});
}

/// A call that fails with each result that is not a success, and with an exception that an operation logs.
std::vector<Failure> refusals(const std::string& call, const std::string& function, const Lines& told) {
  return {{call + " result=0", told},
          {call + " result=-1", told},
          {call + " result=throw", join({{caught(function, call)}, told})}};
}

// A source of the TV service.

TEST_F(SwitchTest, EverySourceUpTo42GoesToTheTvServiceUnderItsNumberThere) {
  for (const auto& [source, tc] : std::map<int, int>{{0, 0}, {8, 0}, {16, 2}, {31, 13}, {41, 22}, {42, 0}}) {
    SCOPED_TRACE(source);
    restart();
    fault("ISourceControl::SetSource result=1");
    EXPECT_TRUE(set(source));
    EXPECT_EQ(callsOf("::SetSource"), Lines{switchTo(tc) + " [fault]"});
    EXPECT_EQ(keys(), (Lines{std::to_string(source), "20", "0", "-", "test.widget:" + std::to_string(source)}));
  }
}

TEST_F(SwitchTest, ASourceWithoutACounterpartIsRefusedBeforeAnythingIsSwitched) {
  for (const int source : {1, 7, 11, 14}) {
    EXPECT_FALSE(set(source, 7)) << source;
    EXPECT_EQ(callsOf("::SetSource"), Lines());
    EXPECT_EQ(keys(), startKeys);
  }
}

// A source outside the TV service.

TEST_F(SwitchTest, AnyOtherSourceOnlyDeactivatesTheTvServiceWhateverTheMajorNumber) {
  for (const int source :
       {43, 44, 45, 46, 47, 49, 50, 51, 52, 53, 54, 100, 101, 65536, INT_MAX, -1, -2, -48, INT_MIN}) {
    SCOPED_TRACE(source);
    restart();
    EXPECT_TRUE(set(source, 7));
    const std::string cut = std::to_string(source).substr(0, 3);
    EXPECT_EQ(callsOf("GetServiceList"), Lines());
    EXPECT_EQ(keys(), (Lines{std::to_string(source), "20", "0", "-", "test.widget:" + cut}));
    EXPECT_EQ(shown(), -1);
  }
}

TEST_F(SwitchTest, IspSwitchesTheSecondaryStackThenDeactivatesTheTvServiceEachTime) {
  for (const std::string previous : {"20", "43"}) {
    EXPECT_TRUE(set(isp, 7));
    EXPECT_EQ(callsOf("D2TVCAPI_setSourceISP").size(), 1U);
    EXPECT_EQ(shown(), -1);
    EXPECT_EQ(keys(), (Lines{"48", previous, "0", "-", "test.widget:48"}));
  }
}

// Failures.

TEST_F(SwitchTest, ASwitchThatTheTvServiceRefusesWritesNothing) {
  expectFailures(hdmi, noMajor, toHdmi,
                 refusals("ISourceControl::SetSource", "t_SetSource", {"0 SetSource failed eTVSSource= 13"}));
}

TEST_F(SwitchTest, ASwitchThatCannotBeRecordedStaysInForceWithTheKeysWrittenSoFar) {
  expectFailures(hdmi, noMajor, toHdmi, unrecorded({}, hdmi, 20, hdmiTc));
  for (const int source : {100, isp}) {
    expectFailures(source, noMajor, away(source), unrecorded({leaving(source)}, source, 20, -1));
  }
}

TEST_F(SwitchTest, ATvServiceThatCannotBeDeactivatedKeepsItsSource) {
  for (const int source : {100, -1, isp, none}) {
    expectFailures(source, noMajor, join({away(source), {leaving(source)}}),
                   refusals("ISourceControl::DeactivateSource", "t_SetSource", {"0 DeactivateSource failed "}));
  }
}

TEST_F(SwitchTest, ASecondaryStackThatDoesNotSwitchLeavesTheTvServiceAlone) {
  const std::string call = "D2TVCAPI_setSourceISP";
  const Lines failed{"3 CEmpTaskWindow::SetSource : Fail to Set ISP Source",
                     "0 CEmpTaskWindow::SetSource :: Setting \"isp-service\" to last service failed."};
  expectFailures(isp, noMajor, away(isp),
                 {{call + " result=0", failed},
                  {call + " result=2", failed},
                  {call + " result=throw", join({{caught("SetSource_D2TV", call, 3)}, failed})}});
}

TEST_F(SwitchTest, AnyPositiveResultIsASwitch) {
  for (const std::string result : {"2", "2147483647"}) {
    restart();
    fault("ISourceControl::SetSource result=" + result);
    EXPECT_TRUE(set(hdmi)) << result;
    restart();
    fault("ISourceControl::DeactivateSource result=" + result);
    EXPECT_TRUE(set(100)) << result;
  }
}

/// A request that can't read the current source. The lines about that come with the failure.
class UnknownSourceTest : public SwitchTest {
 protected:
  Lines request(int source, int major) override {
    return {"3 t_SetSource input ePLSource = " + std::to_string(source) + ", nMajor = " + std::to_string(major),
            "3 This is t_GetCurrentSourceInfo", "3 GetSourceState start"};
  }
};

TEST_F(UnknownSourceTest, WithoutTheCurrentSourceNothingIsSwitched) {
  const std::string shown = "3 GetSourceState = 2";
  const std::string failed = "0 t_GetCurrentSourceInfo failed ";
  std::vector<Failure> failures = refusals("ISourceControl::GetCurrentSourceInfo", "t_GetCurrentSourceInfo",
                                           {"0 GetCurrentSourceInfo failed", failed});
  for (const auto& [way, tc] : std::map<std::string, int>{{"result=unwritten", -1}, {"out.source=99", 99}}) {
    failures.push_back({"ISourceControl::GetCurrentSourceInfo " + way,
                        join({{"3 GetCurrentSourceInfo successfully eTVSSource = " + std::to_string(tc)},
                              sources::refused(tc),
                              {failed}})});
  }
  expectFailures(hdmi, noMajor, {shown}, failures);
  for (const int source : {hdmi, 20, none, 100, isp}) {
    expectFailures(source, noMajor, {},
                   {{"ISourceControl::GetSourceState result=throw",
                     {caught("t_GetCurrentSourceInfo", "ISourceControl::GetSourceState"), failed}}});
  }
}

TEST_F(SwitchTest, AStateThatCannotBeReadCountsAsNoSource) {
  for (const char* way : {"result=0", "result=2", "result=-1", "result=unwritten", "out.state=-1"}) {
    restart();
    fault(std::string("ISourceControl::GetSourceState ") + way);
    EXPECT_TRUE(set(hdmi)) << way;
    EXPECT_EQ(intSetting(previousMainKey), none) << way;
  }
}

// The application.

TEST_F(SwitchTest, AnApplicationWithoutAnIdIsNoAppId) {
  for (const char* way : {"result=null", "result="}) {
    restart();
    fault(std::string("CEmpEngineBase::GetAppInfo ") + way);
    EXPECT_TRUE(set(hdmi)) << way;
    EXPECT_EQ(logs(), join({asked(hdmi),
                            {other(hdmi)[0], "0 Could not get app ID.", "3 appid is NoAppId"},
                            translated(hdmi, hdmiTc),
                            recorded(hdmi, 20)}));
    EXPECT_EQ(calls()[3], "ISourceControl[main#1]::SetSource(source=13, appId=\"NoAppId\") -> 1");
  }
}

TEST_F(SwitchTest, AnApplicationThatIsAskedForWithAnExceptionFailsBeforeAnythingIsSwitched) {
  for (const int source : {hdmi, 100, isp}) {
    expectFailures(
        source, noMajor, {other(source)[0]},
        {{"CEmpEngineBase::GetAppInfo result=throw", {caught("t_SetSource", "CEmpEngineBase::GetAppInfo")}}});
  }
}

TEST_F(SwitchTest, AWidgetWithoutAnIdIsToldToTheMiddlewareAsEmpty) {
  fault("CEmpEngineBase::GetAppInfo nth=2 result=null");
  EXPECT_TRUE(set(hdmi));
  EXPECT_EQ(keys(), (Lines{"31", "20", "0", "-", ":31"}));
}

TEST_F(SwitchTest, AWidgetThatIsAskedForWithAnExceptionFailsAfterTheSwitchWithThePreviousSourceWritten) {
  const Lines told = published(hdmi);
  expectFailures(
      hdmi, noMajor, toHdmi,
      {{"CEmpEngineBase::GetAppInfo nth=2 result=throw",
        {written(previousMainKey, 20), told[0], told[1],
         caught("t_SetTVMWMainSourcevconf", "CEmpEngineBase::GetAppInfo"), "0 t_SetTVMWMainSourcevconf failed"},
        {"20", "20", "0", "-", "-"},
        hdmiTc}});
}

// Proxies.

TEST_F(SwitchTest, AMissingSourceControlIsMade) {
  worker.src_ctrl_proxy = nullptr;
  EXPECT_TRUE(set(hdmi));
  EXPECT_EQ(calls().front(), "TVServiceAPI::CreateSourceControl(profile=1, index=0) -> 0");
  EXPECT_EQ(intSetting(mainKey), hdmi);
  loseSourceControl();
  forget();
  EXPECT_FALSE(set(0));
  EXPECT_EQ(logs(), sources::noSourceControl);
  EXPECT_EQ(intSetting(mainKey), hdmi);
}

}  // namespace

}  // namespace switching
