// SPDX-License-Identifier: MIT
// The window's TV mode: reading and setting it.
#include <string>
#include <utility>
#include <vector>

#include "support/Channels.h"

namespace {

using channels::banner;
using channels::caught;
using channels::ChannelEngineTest;
using channels::ChannelTest;
using channels::join;
using support::Lines;

using Outcomes = std::vector<std::pair<std::string, Lines>>;

class GetTvMode : public ChannelTest {};
class SetTvMode : public ChannelTest {};

TEST_F(GetTvMode, AnswersThePluginsNumberForTheMode) {
  int mode = -7;
  EXPECT_EQ(worker.GetTVMode(&mode), 1);
  EXPECT_EQ(mode, 1);
  EXPECT_EQ(calls(), Lines{"IServiceNavigation[main#1]::GetTvMode() mode=0,1 -> 1"});
  EXPECT_EQ(logs(), Lines{});
}

TEST_F(GetTvMode, AnswersTheSetsOwnPositiveResult) {
  int mode = -7;
  EXPECT_EQ(under("IServiceNavigation::GetTvMode result=2 out.mode=2,7", [&] { return worker.GetTVMode(&mode); }), 2);
  EXPECT_EQ(mode, 9);
}

TEST_F(GetTvMode, AModeThatTheSetDoesNotWriteReadsAsNotKnown) {
  int mode = -7;
  EXPECT_EQ(under("IServiceNavigation::GetTvMode result=unwritten", [&] { return worker.GetTVMode(&mode); }), 1);
  EXPECT_EQ(mode, 0);
}

TEST_F(GetTvMode, AFailureAnswersMinus1AndLeavesTheOutputAsItWas) {
  const Lines error{banner(0, "GetTVMode")};
  const Outcomes ways{{"result=0", error},
                      {"result=-3", error},
                      {"result=throw", join({{caught("GetTVMode", "IServiceNavigation::GetTvMode")}, error})}};
  for (const auto& [way, lines] : ways) {
    SCOPED_TRACE(way);
    int mode = -7;
    EXPECT_EQ(under("IServiceNavigation::GetTvMode " + way, [&] { return worker.GetTVMode(&mode); }), -1);
    EXPECT_EQ(mode, -7);
    EXPECT_EQ(logs(), lines);
  }
}

TEST_F(GetTvMode, WithoutNavigationProxyAnswers0) {
  loseNavigation();
  int mode = -7;
  EXPECT_EQ(worker.GetTVMode(&mode), 0);
  EXPECT_EQ(mode, -7);
  EXPECT_EQ(logs(), join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}));
}

TEST_F(GetTvMode, AsksTheNavigationOfTheSelectedWindow) {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  forget();
  int mode = -7;
  worker.GetTVMode(&mode);
  EXPECT_EQ(calls().front().find("IServiceNavigation[pip#"), 0U);
}

TEST_F(SetTvMode, PassesTheMappedModeAndTheApplicationOn) {
  EXPECT_EQ(worker.SetTVMode(static_cast<_PL_WINDOW_TV_MODE>(23)), 1);
  EXPECT_EQ(calls(), Lines({"CEmpEngineBase::GetAppInfo(type=1) -> \"test.app\"",
                            "IServiceNavigation[main#1]::SetTVMode(mode=0,21, appId=\"test.app\") -> 1"}));
  EXPECT_EQ(logs(), Lines{"3 appid is test.app"});
}

TEST_F(SetTvMode, AModeThatNamesOnlyTheAntennaIsPairedWithTheDefaultList) {
  EXPECT_EQ(worker.SetTVMode(static_cast<_PL_WINDOW_TV_MODE>(1)), 1);
  EXPECT_EQ(logs(), Lines({"3 CEmpConverterWindow :: t_GetDefaultServiceMode",
                           "3 CEmpConverterWindow :: m_country : [ 3 ]", "3 appid is test.app"}));
  EXPECT_EQ(calls(),
            Lines({"system_info_get_value_int(key=0) value=0 -> 0", "system_settings_get_value_int(key=0) value=3 -> 0",
                   "CEmpEngineBase::GetAppInfo(type=1) -> \"test.app\"",
                   "IServiceNavigation[main#1]::SetTVMode(mode=0,1, appId=\"test.app\") -> 1"}));
}

TEST_F(SetTvMode, AModeWithoutMeaningIsLeftToTheSet) {
  for (const int mode : {0, 21, 22, 32, -1}) {
    forget();
    worker.SetTVMode(static_cast<_PL_WINDOW_TV_MODE>(mode));
    EXPECT_NE(calls().back().find("SetTVMode(mode=-1,-1, appId="), std::string::npos) << mode;
  }
}

TEST_F(SetTvMode, AnApplicationWithoutIdIsCalledNoAppId) {
  engine.SetAppInfo(1, "", "", "");
  EXPECT_EQ(worker.SetTVMode(static_cast<_PL_WINDOW_TV_MODE>(24)), 1);
  EXPECT_EQ(logs(), Lines({"0 Could not get app ID.", "3 appid is NoAppId"}));
  EXPECT_EQ(calls().back(), "IServiceNavigation[main#1]::SetTVMode(mode=1,21, appId=\"NoAppId\") -> 1");
}

TEST_F(SetTvMode, WithoutAnEngineNobodyIsAskedForTheId) {
  worker.m_pEngine = nullptr;
  EXPECT_EQ(worker.SetTVMode(static_cast<_PL_WINDOW_TV_MODE>(24)), 1);
  EXPECT_EQ(logs(), Lines({"0 Could not get app ID.", "3 appid is NoAppId"}));
  EXPECT_EQ(calls(), Lines{"IServiceNavigation[main#1]::SetTVMode(mode=1,21, appId=\"NoAppId\") -> 1"});
}

TEST_F(SetTvMode, AnIdThatCanNotBeHadIsNoAppId) {
  EXPECT_EQ(under("CEmpEngineBase::GetAppInfo result=null",
                  [&] { return worker.SetTVMode(static_cast<_PL_WINDOW_TV_MODE>(24)); }),
            1);
  EXPECT_EQ(logs(), Lines({"0 Could not get app ID.", "3 appid is NoAppId"}));
  EXPECT_EQ(calls().back(), "IServiceNavigation[main#1]::SetTVMode(mode=1,21, appId=\"NoAppId\") -> 1");
}

TEST_F(SetTvMode, AnExceptionOverTheIdAnswersMinus1AndSetsNoMode) {
  EXPECT_EQ(under("CEmpEngineBase::GetAppInfo result=throw",
                  [&] { return worker.SetTVMode(static_cast<_PL_WINDOW_TV_MODE>(24)); }),
            -1);
  EXPECT_EQ(logs(), Lines{caught("SetTVMode", "CEmpEngineBase::GetAppInfo")});
  EXPECT_EQ(calls(), Lines{"CEmpEngineBase::GetAppInfo(type=1) -> throws [fault]"});
  EXPECT_EQ(tv().state()[virtualtv::WindowId::main].mode, (virtualtv::TvMode{0, 1}));
}

TEST_F(SetTvMode, AnswersMinus1WhenTheSetRefuses) {
  const Lines asked{"3 appid is test.app"};
  const Outcomes ways{{"result=0", asked},
                      {"result=-3", asked},
                      {"result=throw", join({asked, {caught("SetTVMode", "IServiceNavigation::SetTVMode")}})}};
  for (const auto& [way, lines] : ways) {
    SCOPED_TRACE(way);
    EXPECT_EQ(under("IServiceNavigation::SetTVMode " + way,
                    [&] { return worker.SetTVMode(static_cast<_PL_WINDOW_TV_MODE>(24)); }),
              -1);
    EXPECT_EQ(logs(), lines);
    EXPECT_EQ(tv().state()[virtualtv::WindowId::main].mode, (virtualtv::TvMode{0, 1}));
  }
}

TEST_F(SetTvMode, AnyPositiveResultIsASuccess) {
  EXPECT_EQ(under("IServiceNavigation::SetTVMode result=2",
                  [&] { return worker.SetTVMode(static_cast<_PL_WINDOW_TV_MODE>(24)); }),
            1);
}

TEST_F(SetTvMode, WithoutNavigationProxyAnswers0AndAsksNobody) {
  loseNavigation();
  EXPECT_EQ(worker.SetTVMode(static_cast<_PL_WINDOW_TV_MODE>(24)), 0);
  EXPECT_EQ(logs(), join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}));
  EXPECT_EQ(calls().size(), 1U);
}

TEST_F(ChannelEngineTest, SetTvModeIsReadBackByGetTvMode) {
  EXPECT_EQ(execute("SetTVMode", {"24"}), "int 1");
  EXPECT_EQ(execute("GetTVMode"), "int 24");
  EXPECT_EQ(finished(), "1");
}

TEST_F(ChannelEngineTest, SetTvModeThatDoesNotParseAnswersMinus1WithoutACall) {
  for (const std::string text : {"", "x", "24x", " 24", "99999999999"}) {
    EXPECT_EQ(execute("SetTVMode", {text}), "int -1") << text;
    EXPECT_EQ(finished(), "-1");
    EXPECT_EQ(calls(), Lines{}) << text;
  }
}

TEST_F(ChannelEngineTest, GetTvModeAnswersTheModeAlsoWhenItFails) {
  fault("IServiceNavigation::GetTvMode result=0");
  EXPECT_EQ(execute("GetTVMode"), "int -1");
  EXPECT_EQ(finished(), "-1");
  fault("IServiceNavigation::GetTvMode result=2 out.mode=0,21");
  EXPECT_EQ(execute("GetTVMode"), "int 23");
  EXPECT_EQ(finished(), "2");
}

TEST_F(ChannelEngineTest, SetTvModeAnswersMinus1WhenTheApplicationIsAskedForWithAnException) {
  fault("CEmpEngineBase::GetAppInfo result=throw");
  EXPECT_EQ(execute("SetTVMode", {"24"}), "int -1");
  EXPECT_EQ(finished(), "-1");
}

TEST_F(ChannelEngineTest, SetTvModeOfAnUnknownApplicationPassesNoAppId) {
  ASSERT_TRUE(open("unknown", "", ""));
  calls();
  EXPECT_EQ(execute("SetTVMode", {"24"}), "int 1");
  EXPECT_NE(calls().back().find("appId=\"NoAppId\""), std::string::npos);
}

}  // namespace
