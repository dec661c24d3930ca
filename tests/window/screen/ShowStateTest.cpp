// SPDX-License-Identifier: MIT
// Whether the window shows something, and the source control that this query creates.
#include <map>

#include "Screen.h"
#include "window/lifecycle/Proxies.h"

namespace {

using lifecycle::made;
using sources::askState;
using support::banner;
using support::caught;
using support::join;
using support::Lines;
using support::place;

const std::string factory = "TVServiceAPI::CreateSourceControl";
const std::string stateCall = "ISourceControl::GetSourceState";
const std::string opening = place("GetState_Show", 0);

class ShowStateTest : public screen::ScreenTest {
 protected:
  int ask() {
    state = untouched;
    return worker.GetState_Show(&state);
  }
  int askUnder(const std::string& words) {
    return under(words, [this] { return ask(); });
  }

  /// Removes the source control in use, and with `slot` the stored one of the window, too. Clears the keys.
  void lose(bool slot) {
    worker.src_ctrl_proxy = nullptr;
    if (slot) (worker.t_eWindow == 0 ? worker.src_ctrl_proxy_main : worker.src_ctrl_proxy_pip) = nullptr;
    worker.m_SourceVconf.clear();
    worker.m_PreviousSourceVconf.clear();
    forget();
  }
  Lines keys() const { return {worker.m_SourceVconf, worker.m_PreviousSourceVconf}; }

  static constexpr auto untouched = static_cast<_PL_WINDOW_SHOW_STATE>(-77);
  _PL_WINDOW_SHOW_STATE state = untouched;
};

const Lines mainKeys{"db/emp/mainsource", "db/emp/previousmainsource"};
const Lines pipKeys{"db/emp/pipsource", "db/emp/previouspipsource"};
const std::string selectsMain = "0 PL_WINDOW_WINDOW_MAIN";
const std::string selectsPip = "0 PL_WINDOW_WINDOW_PIP";
const std::string shownState = "3 nShowState=[1], *peShowState=[1]";
const std::string askPipState = "ISourceControl[pip#2]::GetSourceState() state=2 -> 1";

TEST_F(ShowStateTest, MapsTheStatesAndLogsWhetherThereIsASourceInsteadOfTheState) {
  const std::map<int, int> states{{-1, 0}, {1, 3}, {2, 1}, {0, 4}, {3, 4}, {4, 4}, {-2, 4}, {2147483647, 4}};
  for (const auto& [source, shown] : states) {
    EXPECT_EQ(askUnder(stateCall + " out.state=" + std::to_string(source)), 1) << source;
    EXPECT_EQ(state, shown) << source;
    const std::string told = source == -1 ? "0" : "1";
    EXPECT_EQ(logs(), (Lines{opening, "3 nShowState=[" + told + "], *peShowState=[" + std::to_string(shown) + "]"}));
  }
  EXPECT_EQ(askUnder(stateCall + " result=unwritten"), 1);
  EXPECT_EQ(state, 0) << "as without a source";
}

TEST_F(ShowStateTest, FailsWhenTheStateQueryAnswersZeroOrThrows) {
  EXPECT_EQ(askUnder(stateCall + " result=0"), -1);
  EXPECT_EQ(logs(), (Lines{opening, banner(0, "GetState_Show")}));
  EXPECT_EQ(askUnder(stateCall + " result=throw"), -1);
  EXPECT_EQ(logs(), (Lines{opening, caught("GetState_Show", stateCall), banner(0, "GetState_Show")}));
  EXPECT_EQ(state, untouched);
  EXPECT_EQ(askUnder(stateCall + " result=-1 out.state=2"), 1) << "any other answer is a success";
  EXPECT_EQ(state, 1);
}

// A missing source control is created as window selection creates it.

TEST_F(ShowStateTest, UsesTheWindowsSourceControlAndSetsItsKeys) {
  auto* const mains = worker.src_ctrl_proxy_main;
  lose(false);
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(worker.src_ctrl_proxy, mains);
  EXPECT_EQ(keys(), mainKeys);
  EXPECT_EQ(calls(), Lines{askState}) << "no other one is made";
  EXPECT_EQ(logs(), (Lines{opening, selectsMain, shownState}));

  selectPip();
  auto* const pips = worker.src_ctrl_proxy_pip;
  lose(false);
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(worker.src_ctrl_proxy, pips);
  EXPECT_EQ(keys(), pipKeys);
  EXPECT_EQ(calls(), Lines{askPipState});
  EXPECT_EQ(logs(), (Lines{opening, selectsPip, shownState}));
}

TEST_F(ShowStateTest, MakesTheWindowsSourceControlAndSetsItsKeys) {
  lose(true);
  worker.video_ctrl_proxy = nullptr;
  EXPECT_EQ(ask(), 1);
  EXPECT_NE(worker.src_ctrl_proxy, nullptr);
  EXPECT_EQ(worker.src_ctrl_proxy_main, worker.src_ctrl_proxy) << "window selection makes no other one";
  EXPECT_EQ(worker.src_ctrl_proxy_pip, nullptr);
  EXPECT_EQ(keys(), mainKeys);
  EXPECT_EQ(calls(), (Lines{made(factory, 1), "ISourceControl[main#2]::GetSourceState() state=2 -> 1"}));
  EXPECT_EQ(worker.video_ctrl_proxy, nullptr) << "nor anything else";
  EXPECT_EQ(logs(), (Lines{opening, selectsMain, shownState}));
}

TEST_F(ShowStateTest, MakesThePictureInPictureWindowsSourceControlForAnyOtherWindow) {
  show(1, 2, virtualtv::WindowId::pip);
  auto* const mains = worker.src_ctrl_proxy_main;
  for (const int window : {1, 3, -1}) {
    worker.t_eWindow = window;
    lose(true);
    EXPECT_EQ(ask(), 1) << window;
    ASSERT_NE(worker.src_ctrl_proxy, nullptr);
    EXPECT_EQ(worker.src_ctrl_proxy_pip, worker.src_ctrl_proxy);
    EXPECT_EQ(worker.src_ctrl_proxy_main, mains);
    EXPECT_EQ(keys(), pipKeys);
    EXPECT_EQ(calls().front(), made(factory, 101));
    EXPECT_EQ(logs(), (Lines{opening, selectsPip, shownState}));
  }
}

/// A fault that keeps the source control from being created, and the window.
class ShowStateWithoutControl : public ShowStateTest,
                                public ::testing::WithParamInterface<std::tuple<std::string, bool>> {};

TEST_P(ShowStateWithoutControl, FailsInTheWordsOfWindowSelection) {
  const auto& [way, pip] = GetParam();
  if (pip) selectPip();
  lose(true);
  EXPECT_EQ(askUnder(factory + " " + way), 0);
  EXPECT_EQ(state, untouched);
  EXPECT_EQ(calls().size(), 1U) << "no state is asked for";
  EXPECT_EQ(worker.src_ctrl_proxy, nullptr);
  EXPECT_EQ(pip ? worker.src_ctrl_proxy_pip : worker.src_ctrl_proxy_main, nullptr);
  EXPECT_EQ(keys(), (Lines{"", ""}));

  const std::string failure =
      way == "result=null"
          ? "0 CreateSourceControl returned NULL!!!"
          : "0 CreateSourceControl returned false for [p:" + std::string(pip ? "101" : "1") + ",s:0] failed.";
  const Lines thrown = way == "result=throw" ? Lines{caught("GetState_Show", factory)} : Lines();
  EXPECT_EQ(logs(), join({{opening, pip ? selectsPip : selectsMain}, thrown, {failure}}));
}

INSTANTIATE_TEST_SUITE_P(Each, ShowStateWithoutControl,
                         ::testing::Combine(::testing::Values("result=1", "result=null", "result=throw"),
                                            ::testing::Bool()),
                         [](const auto& test) {
                           return std::get<0>(test.param).substr(7) + (std::get<1>(test.param) ? "_pip" : "_main");
                         });

}  // namespace
