// The subtitle in use, on either TV stack.
#include <climits>

#include "Subtitle.h"

namespace {

using support::caught;
using support::join;
using support::Lines;
using virtualtv::WindowId;

const std::string operation = "GetCurrentSubtitle";

class CurrentSubtitle : public subtitle::SubtitleTest {
 protected:
  int tell() { return worker.GetCurrentSubtitle(&language); }
  int tellUnder(const std::string& words) {
    language = before;
    return under(words, [this] { return tell(); });
  }

  static constexpr int before = -77;
  int language = before;
};

// From the TV service.

const std::string failed = "0 CEmpTaskWindow::GetCurrentSubtitle:: Failed!!";

std::string told(const std::string& hexadecimal) {
  return "3 language:[" + hexadecimal + "] ";
}
std::string askInUse(const std::string& outcome) {
  return subtitle::control + "GetCurrentHybridSBT() " + outcome;
}

class TvCurrentSubtitle : public CurrentSubtitle {};

TEST_F(TvCurrentSubtitle, IsTheLanguageOfTheTrackThatTheWindowUses) {
  ASSERT_TRUE(tv().selectSubtitle(WindowId::main, 1));
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(language, 51);
  EXPECT_EQ(calls(), (Lines{tracks::tvTold, askInUse("lang=51 subtitle=0,271 -> 1")}));
  EXPECT_EQ(logs(), join({tracks::onTv, {told("33")}}));
}

TEST_F(TvCurrentSubtitle, TheLanguageIsLoggedHexadecimal) {
  const std::vector<std::pair<int, std::string>> languages{
      {0, "0"}, {1, "1"}, {-2, "fffffffe"}, {0x656e67, "656e67"}, {INT_MAX, "7fffffff"}, {INT_MIN, "80000000"}};
  for (const auto& [code, shown] : languages) {
    EXPECT_EQ(tellUnder("IDataControl::GetCurrentHybridSBT result=1 out.lang=" + std::to_string(code)), 1) << code;
    EXPECT_EQ(language, code);
    EXPECT_EQ(logs(), join({tracks::onTv, {told(shown)}}));
  }
}

TEST_F(TvCurrentSubtitle, ALanguageOfMinusOneIsAFailureAlsoWithSuccess) {
  EXPECT_EQ(tell(), -1) << "no subtitle is in use";
  EXPECT_EQ(language, before);
  EXPECT_EQ(calls().back(), askInUse("lang=-1 subtitle=0,0 -> 1"));
  EXPECT_EQ(logs(), join({tracks::onTv, {failed}}));
  EXPECT_EQ(tellUnder("IDataControl::GetCurrentHybridSBT result=unwritten"), -1);
  EXPECT_EQ(language, before);
}

TEST_F(TvCurrentSubtitle, AnyResultBelowOneFailsAndLeavesTheLanguage) {
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(tellUnder("IDataControl::GetCurrentHybridSBT out.lang=5 " + way), -1) << way;
    EXPECT_EQ(language, before) << way;
    EXPECT_EQ(logs(), join({tracks::onTv, {failed}}));
  }
  EXPECT_EQ(tellUnder("IDataControl::GetCurrentHybridSBT out.lang=5 result=2"), 1);
  EXPECT_EQ(language, 5);
}

TEST_F(TvCurrentSubtitle, AnExceptionFailsAndLeavesTheLanguage) {
  EXPECT_EQ(tellUnder("IDataControl::GetCurrentHybridSBT result=throw"), -1);
  EXPECT_EQ(language, before);
  EXPECT_EQ(logs(), join({tracks::onTv, {caught(operation, "IDataControl::GetCurrentHybridSBT"), failed}}));
}

TEST_F(TvCurrentSubtitle, WithoutDataControlAnswersZeroAndLeavesTheLanguage) {
  const Lines lines = join({tracks::onTv, subtitle::dataControlMissing});
  failsWithout(
      worker.svc_datacontrol_proxy, "CreateDataControl", lines, [this] { return tell(); }, 0);
  EXPECT_EQ(language, before);
  failsWithout(
      worker.svc_datacontrol_proxy, "CreateDataControl", lines, [this] { return worker.GetCurrentSubtitle(nullptr); },
      0);
}

TEST_F(TvCurrentSubtitle, ANullPointerFailsWhereTheLanguageWouldBeWritten) {
  ASSERT_TRUE(tv().selectSubtitle(WindowId::main, 1));
  forget();
  EXPECT_EQ(worker.GetCurrentSubtitle(nullptr), -1);
  EXPECT_EQ(calls(), (Lines{tracks::tvTold, askInUse("lang=51 subtitle=0,271 -> 1")}));
  EXPECT_EQ(logs(), join({tracks::onTv, {failed}}));
}

TEST_F(TvCurrentSubtitle, IsThatOfTheWindowDriven) {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  EXPECT_EQ(tellUnder("IDataControl::GetCurrentHybridSBT result=1 out.lang=5"), 1);
  EXPECT_EQ(calls().back(), "IDataControl[main#2]::GetCurrentHybridSBT() lang=5 subtitle=0,0 -> 1 [fault]")
      << "whose data control is made for the main profile";
}

// From the secondary stack.

const std::string ispBegun = "3 CEmpTaskWindow::GetCurrentSubtitle:: Start!!";
const std::string ispDone = "3 CEmpTaskWindow::GetCurrentSubtitle:: Success!!";
const std::string ispNoManager = "0 CEmpTaskWindow::GetCurrentSubtitle::Invalid Channel Manager Instance.";

std::string ispFailed(const std::string& language) {
  return "3 CEmpTaskWindow::GetCurrentSubtitle::CurrentSubtitleLanguage =>[" + language + "]";
}

class IspCurrentSubtitle : public CurrentSubtitle {
 protected:
  void SetUp() override {
    CurrentSubtitle::SetUp();
    showIsp({}, subtitle::fiveEntries);
  }
};

TEST_F(IspCurrentSubtitle, IsTheLanguageThatTheStackTells) {
  ASSERT_TRUE(tv().selectIspSubtitle(3));
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(language, 71);
  EXPECT_EQ(calls(), (Lines{tracks::ispTold, tracks::askManager + "made",
                            tracks::manager + "GetCurrentSubtitle() language=71 -> 0"}));
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispBegun, ispDone}));
}

TEST_F(IspCurrentSubtitle, MinusOneIsALanguageHere) {
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(language, -1) << "no subtitle is in use";
}

TEST_F(IspCurrentSubtitle, ALanguageThatIsNotWrittenStaysAsItWas) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetCurrentSubtitle result=unwritten"), 1);
  EXPECT_EQ(language, before);
}

TEST_F(IspCurrentSubtitle, AFailureIsTheStacksOwnNumber) {
  for (const int result : {1, 2, -1, -5, INT_MIN}) {
    EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetCurrentSubtitle result=" + std::to_string(result)), result);
    EXPECT_EQ(language, before);
    EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispBegun, ispFailed("-77")}));
  }
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetCurrentSubtitle result=-5 out.language=6"), -5);
  EXPECT_EQ(language, 6) << "the stack writes where it is told to";
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispBegun, ispFailed("6")}));
}

TEST_F(IspCurrentSubtitle, AnExceptionAnswersMinusOne) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetCurrentSubtitle result=throw"), -1);
  EXPECT_EQ(language, before);
  EXPECT_EQ(logs(),
            (Lines{tracks::onIsp, ispBegun, caught(operation, "CD2tvMgrProxy::GetCurrentSubtitle"), ispFailed("-77")}));
}

TEST_F(IspCurrentSubtitle, WithoutAManagerAnswersMinusOne) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetInstance result=null"), -1);
  EXPECT_EQ(language, before);
  EXPECT_EQ(calls(), (Lines{tracks::ispTold, tracks::askManager + "null [fault]"}));
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispBegun, ispNoManager}));
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetInstance result=throw"), -1);
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispBegun, caught(operation, "CD2tvMgrProxy::GetInstance"), ispNoManager}));
}

TEST_F(IspCurrentSubtitle, ANullPointerFailsWithoutBeingPassedOn) {
  EXPECT_EQ(worker.GetCurrentSubtitle(nullptr), -1);
  EXPECT_EQ(calls(), (Lines{tracks::ispTold, tracks::askManager + "made"}));
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispBegun, ispFailed("-1")}));
  EXPECT_EQ(under("CD2tvMgrProxy::GetInstance result=null", [this] { return worker.GetCurrentSubtitle(nullptr); }), -1);
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispBegun, ispNoManager}));
}

TEST_F(IspCurrentSubtitle, NothingOfTheTvServiceIsNeeded) {
  worker.svc_datacontrol_proxy = nullptr;
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(worker.ChangeSubtitle(0), 1);
  EXPECT_EQ(worker.svc_datacontrol_proxy, nullptr);
}

}  // namespace
