// SPDX-License-Identifier: MIT
// Whether the window shows something, and the source control that asking makes.
#include <map>

#include "Screen.h"
#include "window/lifecycle/Proxies.h"

namespace {

using lifecycle::made;
using screen::ScreenTest;
using sources::askState;
using support::banner;
using support::caught;
using support::join;
using support::Lines;
using support::place;

const std::string factory = "TVServiceAPI::CreateSourceControl";
const std::string stateCall = "ISourceControl::GetSourceState";

/// The last log line of a success.
std::string told(bool active, int state) {
  return "3 nShowState=[" + std::string(active ? "1" : "0") + "], *peShowState=[" + std::to_string(state) + "]";
}

class ShowStateTest : public ScreenTest {
 protected:
  int ask() {
    state = untouched;
    return worker.GetState_Show(&state);
  }

  void forgetKeys() {
    worker.m_SourceVconf.clear();
    worker.m_PreviousSourceVconf.clear();
  }
  Lines keys() const { return {worker.m_SourceVconf, worker.m_PreviousSourceVconf}; }

  static constexpr auto untouched = static_cast<_PL_WINDOW_SHOW_STATE>(-77);
  _PL_WINDOW_SHOW_STATE state = untouched;
};

const Lines mainKeys{"db/emp/mainsource", "db/emp/previousmainsource"};
const Lines pipKeys{"db/emp/pipsource", "db/emp/previouspipsource"};

TEST_F(ShowStateTest, TellsTheStateOfTheSource) {
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(state, 1);
  EXPECT_EQ(calls(), Lines{askState});
  EXPECT_EQ(logs(), (Lines{place("GetState_Show", 0), told(true, 1)}));
}

TEST_F(ShowStateTest, MapsTheStatesAndLogsWhetherThereIsASourceInsteadOfTheState) {
  const std::map<int, int> states{{-1, 0}, {1, 3}, {2, 1}, {0, 4}, {3, 4}, {4, 4}, {-2, 4}, {100, 4}, {2147483647, 4}};
  for (const auto& [source, shown] : states) {
    only(stateCall + " out.state=" + std::to_string(source));
    EXPECT_EQ(ask(), 1) << source;
    EXPECT_TRUE(faultsHit());
    EXPECT_EQ(state, shown) << source;
    EXPECT_EQ(logs(), (Lines{place("GetState_Show", 0), told(source != -1, shown)})) << source;
  }
}

TEST_F(ShowStateTest, IsZeroWithoutASource) {
  deactivate();
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(state, 0);
}

TEST_F(ShowStateTest, AStateThatNobodyWroteIsThatOfNoSource) {
  only(stateCall + " result=unwritten");
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(state, 0);
}

TEST_F(ShowStateTest, FailsWhenTheStateQueryAnswersZero) {
  only(stateCall + " result=0");
  EXPECT_EQ(ask(), -1);
  EXPECT_EQ(state, untouched);
  EXPECT_EQ(logs(), (Lines{place("GetState_Show", 0), banner(0, "GetState_Show")}));
}

TEST_F(ShowStateTest, FailsWhenTheStateQueryThrows) {
  only(stateCall + " result=throw");
  EXPECT_EQ(ask(), -1);
  EXPECT_EQ(state, untouched);
  EXPECT_EQ(logs(), (Lines{place("GetState_Show", 0), caught("GetState_Show", stateCall), banner(0, "GetState_Show")}));
}

TEST_F(ShowStateTest, SucceedsOnAnyAnswerButZero) {
  for (const int result : {1, 2, -1, 100}) {
    only(stateCall + " result=" + std::to_string(result) + " out.state=2");
    EXPECT_EQ(ask(), 1) << result;
    EXPECT_EQ(state, 1) << result;
  }
}

TEST_F(ShowStateTest, ANullOutputIsRefusedBeforeAnythingElse) {
  worker.src_ctrl_proxy = nullptr;
  EXPECT_EQ(worker.GetState_Show(nullptr), -3);
  EXPECT_EQ(calls(), Lines());
  EXPECT_EQ(logs(), (Lines{place("GetState_Show", 0), banner(0, "GetState_Show")}));
}

TEST_F(ShowStateTest, AsksTheWindowDriven) {
  selectPip();
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(state, 1);
  EXPECT_EQ(calls(), Lines{"ISourceControl[pip#2]::GetSourceState() state=2 -> 1"});
}

TEST_F(ShowStateTest, LeavesTheKeysAsTheyAreWhereThereIsASourceControl) {
  forgetKeys();
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(keys(), (Lines{"", ""}));
}

// The source control that is missing, made as window selection makes it.

TEST_F(ShowStateTest, UsesTheWindowsSourceControlAndSetsItsKeys) {
  auto* const own = worker.src_ctrl_proxy_main;
  worker.src_ctrl_proxy = nullptr;
  forgetKeys();
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(worker.src_ctrl_proxy, own);
  EXPECT_EQ(keys(), mainKeys);
  EXPECT_EQ(calls(), Lines{askState}) << "no other one is made";
  EXPECT_EQ(logs(), (Lines{place("GetState_Show", 0), "0 PL_WINDOW_WINDOW_MAIN", told(true, 1)}));
}

TEST_F(ShowStateTest, MakesTheWindowsSourceControlAndSetsItsKeys) {
  worker.src_ctrl_proxy = nullptr;
  worker.src_ctrl_proxy_main = nullptr;
  forgetKeys();
  EXPECT_EQ(ask(), 1);
  EXPECT_NE(worker.src_ctrl_proxy, nullptr);
  EXPECT_EQ(worker.src_ctrl_proxy_main, worker.src_ctrl_proxy);
  EXPECT_EQ(worker.src_ctrl_proxy_pip, nullptr);
  EXPECT_EQ(keys(), mainKeys);
  EXPECT_EQ(calls(), (Lines{made(factory, 1), "ISourceControl[main#2]::GetSourceState() state=2 -> 1"}));
  EXPECT_EQ(logs(), (Lines{place("GetState_Show", 0), "0 PL_WINDOW_WINDOW_MAIN", told(true, 1)}));
}

TEST_F(ShowStateTest, UsesThePictureInPictureWindowsSourceControl) {
  selectPip();
  auto* const own = worker.src_ctrl_proxy_pip;
  worker.src_ctrl_proxy = nullptr;
  forgetKeys();
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(worker.src_ctrl_proxy, own);
  EXPECT_EQ(keys(), pipKeys);
  EXPECT_EQ(calls(), Lines{"ISourceControl[pip#2]::GetSourceState() state=2 -> 1"});
  EXPECT_EQ(logs(), (Lines{place("GetState_Show", 0), "0 PL_WINDOW_WINDOW_PIP", told(true, 1)}));
}

TEST_F(ShowStateTest, MakesThePictureInPictureWindowsSourceControlForAnyOtherWindow) {
  show(1, 2, virtualtv::WindowId::pip);
  auto* const mains = worker.src_ctrl_proxy_main;
  for (const int window : {1, 2, 3, -1}) {
    worker.t_eWindow = window;
    worker.src_ctrl_proxy = nullptr;
    worker.src_ctrl_proxy_pip = nullptr;
    forgetKeys();
    forget();
    EXPECT_EQ(ask(), 1) << window;
    EXPECT_EQ(state, 1);
    ASSERT_NE(worker.src_ctrl_proxy, nullptr);
    EXPECT_EQ(worker.src_ctrl_proxy_pip, worker.src_ctrl_proxy);
    EXPECT_EQ(worker.src_ctrl_proxy_main, mains);
    EXPECT_EQ(keys(), pipKeys);
    EXPECT_EQ(calls().front(), made(factory, 101));
    EXPECT_EQ(logs(), (Lines{place("GetState_Show", 0), "0 PL_WINDOW_WINDOW_PIP", told(true, 1)}));
  }
}

TEST_F(ShowStateTest, WindowSelectionReusesTheSourceControlThatWasMade) {
  worker.src_ctrl_proxy = nullptr;
  worker.src_ctrl_proxy_main = nullptr;
  ask();
  auto* const own = worker.src_ctrl_proxy;
  forget();
  EXPECT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_MAIN), 1);
  EXPECT_EQ(worker.src_ctrl_proxy, own);
  for (const std::string& call : calls()) EXPECT_NE(call, made(factory, 1));
}

TEST_F(ShowStateTest, MakesNothingButTheSourceControl) {
  worker.src_ctrl_proxy = nullptr;
  worker.src_ctrl_proxy_main = nullptr;
  worker.video_ctrl_proxy = nullptr;
  worker.svc_navi_proxy = nullptr;
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(worker.video_ctrl_proxy, nullptr);
  EXPECT_EQ(worker.svc_navi_proxy, nullptr);
}

TEST_F(ShowStateTest, LogsTheSelectionUnderItsOwnName) {
  worker.src_ctrl_proxy = nullptr;
  worker.src_ctrl_proxy_main = nullptr;
  fault(factory + " result=1");
  ask();
  ask();
  for (const auto& line : messages()) EXPECT_EQ(line.function, "GetState_Show") << line.message.text();
}

/// A source control that can't be made: how, and for which window.
class ShowStateWithoutControl : public ShowStateTest,
                                public ::testing::WithParamInterface<std::tuple<std::string, bool>> {};

TEST_P(ShowStateWithoutControl, FailsInTheWordsOfWindowSelection) {
  const auto& [way, pip] = GetParam();
  if (pip) selectPip();
  worker.src_ctrl_proxy = nullptr;
  (pip ? worker.src_ctrl_proxy_pip : worker.src_ctrl_proxy_main) = nullptr;
  forgetKeys();
  only(factory + " " + way);
  EXPECT_EQ(ask(), 0);
  EXPECT_TRUE(faultsHit());
  EXPECT_EQ(state, untouched);
  EXPECT_EQ(calls().size(), 1U) << "no state is asked for";
  EXPECT_EQ(worker.src_ctrl_proxy, nullptr);
  EXPECT_EQ(pip ? worker.src_ctrl_proxy_pip : worker.src_ctrl_proxy_main, nullptr);
  EXPECT_EQ(keys(), (Lines{"", ""}));

  const bool null = way == "result=null" || way == "result=unwritten";
  const std::string failure =
      null ? "0 CreateSourceControl returned NULL!!!"
           : "0 CreateSourceControl returned false for [p:" + std::string(pip ? "101" : "1") + ",s:0] failed.";
  const Lines thrown = way == "result=throw" ? Lines{caught("GetState_Show", factory)} : Lines();
  const std::string window = pip ? "0 PL_WINDOW_WINDOW_PIP" : "0 PL_WINDOW_WINDOW_MAIN";
  EXPECT_EQ(logs(), join({{place("GetState_Show", 0), window}, thrown, {failure}}));

  EXPECT_EQ(ask(), 1) << "the next time it is made";
}

INSTANTIATE_TEST_SUITE_P(Each, ShowStateWithoutControl,
                         ::testing::Combine(::testing::ValuesIn(lifecycle::failures(factory)), ::testing::Bool()),
                         [](const auto& test) {
                           const std::string way = std::get<0>(test.param).substr(7);
                           return (way == "-1" ? "negative" : way) + (std::get<1>(test.param) ? "_pip" : "_main");
                         });

}  // namespace
