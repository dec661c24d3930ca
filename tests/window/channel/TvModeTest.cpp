// SPDX-License-Identifier: MIT
// The window's TV mode: reading and setting it.
#include <string>
#include <utility>
#include <vector>

#include "support/Channels.h"

namespace {

using channels::banner;
using channels::caught;
using channels::ChannelTest;
using channels::join;
using support::Lines;

class GetTvMode : public ChannelTest {
 protected:
  /// The operation's result and the mode.
  std::pair<int, int> get() {
    int mode = -7;
    const int result = worker.GetTVMode(&mode);
    return {result, mode};
  }
};

class SetTvMode : public ChannelTest {
 protected:
  int set(int mode) { return worker.SetTVMode(static_cast<_PL_WINDOW_TV_MODE>(mode)); }
  static std::string call(const std::string& mode, const std::string& application) {
    return "IServiceNavigation[main#1]::SetTVMode(mode=" + mode + ", appId=\"" + application + "\") -> 1";
  }
};

using Expected = std::pair<int, int>;

TEST_F(GetTvMode, AnswersThePluginsNumberForTheModeAndTheSetsOwnPositiveResult) {
  EXPECT_EQ(get(), Expected(1, 1));
  EXPECT_EQ(calls(), Lines{"IServiceNavigation[main#1]::GetTvMode() mode=0,1 -> 1"});
  EXPECT_EQ(logs(), Lines{});
  EXPECT_EQ(under("IServiceNavigation::GetTvMode result=2 out.mode=2,7", [&] { return get(); }), Expected(2, 9));
  EXPECT_EQ(under("IServiceNavigation::GetTvMode result=unwritten", [&] { return get(); }), Expected(1, 0));
}

TEST_F(GetTvMode, AFailureAnswersMinus1AndLeavesTheOutputAsItWas) {
  for (const std::string way : {"result=0", "result=-3", "result=throw"}) {
    SCOPED_TRACE(way);
    EXPECT_EQ(under("IServiceNavigation::GetTvMode " + way, [&] { return get(); }), Expected(-1, -7));
    Lines told{banner(0, "GetTVMode")};
    if (way == "result=throw") told.insert(told.begin(), caught("GetTVMode", "IServiceNavigation::GetTvMode"));
    EXPECT_EQ(logs(), told);
  }
  loseNavigation();
  EXPECT_EQ(get(), Expected(0, -7));
  EXPECT_EQ(logs(), join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}));
}

TEST_F(GetTvMode, AsksTheNavigationOfTheSelectedWindow) {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  forget();
  get();
  EXPECT_EQ(calls().front().find("IServiceNavigation[pip#"), 0U);
}

TEST_F(SetTvMode, PassesTheMappedModeAndTheApplicationOn) {
  EXPECT_EQ(set(23), 1);
  EXPECT_EQ(calls(), Lines({"CEmpEngineBase::GetAppInfo(type=1) -> \"test.app\"", call("0,21", "test.app")}));
  EXPECT_EQ(logs(), Lines{"3 appid is test.app"});
}

TEST_F(SetTvMode, AModeThatNamesOnlyTheAntennaIsPairedWithTheDefaultList) {
  EXPECT_EQ(set(1), 1);
  EXPECT_EQ(logs(), Lines({"3 CEmpConverterWindow :: t_GetDefaultServiceMode",
                           "3 CEmpConverterWindow :: m_country : [ 3 ]", "3 appid is test.app"}));
  EXPECT_EQ(calls(),
            Lines({"system_info_get_value_int(key=0) value=0 -> 0", "system_settings_get_value_int(key=0) value=3 -> 0",
                   "CEmpEngineBase::GetAppInfo(type=1) -> \"test.app\"", call("0,1", "test.app")}));
}

TEST_F(SetTvMode, AModeWithoutMeaningIsLeftToTheSet) {
  for (const int mode : {0, 21, 22, 32, -1}) {
    forget();
    set(mode);
    EXPECT_NE(calls().back().find("SetTVMode(mode=-1,-1, appId="), std::string::npos) << mode;
  }
}

TEST_F(SetTvMode, AnApplicationWhoseIdCanNotBeHadIsCalledNoAppId) {
  const auto expectNone = [this] {
    EXPECT_EQ(logs(), Lines({"0 Could not get app ID.", "3 appid is NoAppId"}));
    EXPECT_EQ(calls().back(), call("1,21", "NoAppId"));
  };
  EXPECT_EQ(under("CEmpEngineBase::GetAppInfo result=null", [&] { return set(24); }), 1);
  expectNone();
  engine.SetAppInfo(1, "", "", "");
  EXPECT_EQ(set(24), 1);
  expectNone();
  worker.m_pEngine = nullptr;
  EXPECT_EQ(set(24), 1);
  expectNone();
}

TEST_F(SetTvMode, AFailureLeavesTheModeAsItWas) {
  const Lines asked{"3 appid is test.app"};
  const std::vector<std::pair<std::string, Lines>> failures{
      {"CEmpEngineBase::GetAppInfo result=throw", {caught("SetTVMode", "CEmpEngineBase::GetAppInfo")}},
      {"IServiceNavigation::SetTVMode result=0", asked},
      {"IServiceNavigation::SetTVMode result=-3", asked},
      {"IServiceNavigation::SetTVMode result=throw",
       join({asked, {caught("SetTVMode", "IServiceNavigation::SetTVMode")}})}};
  for (const auto& [words, lines] : failures) {
    SCOPED_TRACE(words);
    EXPECT_EQ(under(words, [&] { return set(24); }), -1);
    EXPECT_EQ(logs(), lines);
    EXPECT_TRUE(calls().back().ends_with("[fault]")) << "nothing is asked behind it";
    EXPECT_EQ(tv().state()[virtualtv::WindowId::main].mode, (virtualtv::TvMode{0, 1}));
  }
  EXPECT_EQ(under("IServiceNavigation::SetTVMode result=2", [&] { return set(24); }), 1) << "any positive result";
}

TEST_F(SetTvMode, WithoutNavigationProxyAnswers0AndAsksNobody) {
  loseNavigation();
  EXPECT_EQ(set(24), 0);
  EXPECT_EQ(logs(), join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}));
  EXPECT_EQ(calls().size(), 1U);
}

}  // namespace
