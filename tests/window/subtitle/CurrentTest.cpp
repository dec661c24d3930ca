// SPDX-License-Identifier: MIT
// The subtitle in use, on either TV stack, including rare answers of the set.
#include <climits>

#include "Subtitle.h"

namespace {

using support::caught;
using support::join;
using support::Lines;
using tracks::Outcome;

const std::string operation = "GetCurrentSubtitle";

template <typename Base>
class CurrentSubtitle : public Base {
 protected:
  int tell() { return this->worker.GetCurrentSubtitle(&language); }

  /// Reads the language under each fault. Afterwards it must be `left`.
  void expectLanguage(int left, const Lines& begun, const std::vector<Outcome>& outcomes) {
    this->expectEach(begun, outcomes, [&] {
      language = before;
      const int result = tell();
      EXPECT_EQ(language, left);
      return result;
    });
  }

  static constexpr int before = -77;
  int language = before;
};

// From the TV service.

const std::string askInUse = "IDataControl::GetCurrentHybridSBT ";
const std::string failed = "0 CEmpTaskWindow::GetCurrentSubtitle:: Failed!!";

using TvCurrentSubtitle = CurrentSubtitle<subtitle::SubtitleTest>;

TEST_F(TvCurrentSubtitle, TheLanguageIsLoggedHexadecimal) {
  const std::vector<std::pair<int, std::string>> languages{
      {0, "0"}, {-2, "fffffffe"}, {0x656e67, "656e67"}, {INT_MAX, "7fffffff"}, {INT_MIN, "80000000"}};
  for (const auto& [code, shown] : languages) {
    expectLanguage(code, tracks::onTv,
                   {{askInUse + "result=2 out.lang=" + std::to_string(code), 1, {"3 language:[" + shown + "] "}}});
  }
}

TEST_F(TvCurrentSubtitle, AFailureOrTheLanguageMinusOneFailsAndLeavesTheLanguage) {
  expectLanguage(before, tracks::onTv,
                 {{askInUse + "result=unwritten", -1, {failed}},
                  {askInUse + "result=1 out.lang=-1", -1, {failed}},
                  {askInUse + "result=throw", -1, {caught(operation, "IDataControl::GetCurrentHybridSBT"), failed}},
                  {askInUse + "out.lang=5", -1, {failed}, tracks::notPositive}});
}

TEST_F(TvCurrentSubtitle, ATrackThatIsNotWrittenIsHandedOverAsZeros) {
  under(askInUse + "result=unwritten", [this] { return tell(); });
  EXPECT_EQ(calls().back(), "IDataControl[main#1]::GetCurrentHybridSBT() lang=-1 subtitle=0,0 -> 1 [fault]");
}

TEST_F(TvCurrentSubtitle, WithoutDataControlAnswersZeroAndLeavesTheLanguage) {
  const Lines lines = join({tracks::onTv, subtitle::dataControlMissing});
  for (int* const out : {&language, static_cast<int*>(nullptr)}) {
    failsWithout(
        worker.svc_datacontrol_proxy, "CreateDataControl", lines, [&] { return worker.GetCurrentSubtitle(out); }, 0);
  }
  EXPECT_EQ(language, before);
}

TEST_F(TvCurrentSubtitle, ANullPointerFailsWhereTheLanguageWouldBeWritten) {
  expectEach(tracks::onTv, {{askInUse + "out.lang=51", -1, {failed}}},
             [this] { return worker.GetCurrentSubtitle(nullptr); });
}

// From the secondary stack.

const Lines begunOnIsp{tracks::onIsp, "3 CEmpTaskWindow::GetCurrentSubtitle:: Start!!"};
const std::string done = "3 CEmpTaskWindow::GetCurrentSubtitle:: Success!!";
const std::string ispNoManager = "0 CEmpTaskWindow::GetCurrentSubtitle::Invalid Channel Manager Instance.";
const std::string askIsp = "CD2tvMgrProxy::GetCurrentSubtitle ";

std::string ispFailed(const std::string& language) {
  return "3 CEmpTaskWindow::GetCurrentSubtitle::CurrentSubtitleLanguage =>[" + language + "]";
}

using IspCurrentSubtitle = CurrentSubtitle<subtitle::IspSubtitleTest>;

TEST_F(IspCurrentSubtitle, IsWhatTheStackWrites) {
  expectLanguage(-1, begunOnIsp, {{askIsp + "out.language=-1", 1, {done}}});
  expectLanguage(before, begunOnIsp, {{askIsp + "result=unwritten", 1, {done}}});
}

TEST_F(IspCurrentSubtitle, AFailureIsTheStacksOwnNumber) {
  for (const int result : {1, 2, -1, -5, INT_MIN}) {
    expectLanguage(before, begunOnIsp, {{askIsp + "result=" + std::to_string(result), result, {ispFailed("-77")}}});
  }
  expectLanguage(
      before, begunOnIsp,
      {{askIsp + "result=throw", -1, {caught(operation, "CD2tvMgrProxy::GetCurrentSubtitle"), ispFailed("-77")}}});
  expectWithoutManager(
      operation, begunOnIsp, {ispNoManager}, [this] { return tell(); }, -1);
  expectLanguage(6, begunOnIsp, {{askIsp + "result=-5 out.language=6", -5, {ispFailed("6")}}});
}

TEST_F(IspCurrentSubtitle, ANullPointerFailsWithoutBeingPassedOn) {
  EXPECT_EQ(worker.GetCurrentSubtitle(nullptr), -1);
  EXPECT_EQ(calls(), (Lines{tracks::ispTold, tracks::askManager + "made"}));
  EXPECT_EQ(logs(), join({begunOnIsp, {ispFailed("-1")}}));
  expectEach(begunOnIsp, {{"CD2tvMgrProxy::GetInstance result=null", -1, {ispNoManager}}},
             [this] { return worker.GetCurrentSubtitle(nullptr); });
}

TEST_F(IspCurrentSubtitle, NothingOfTheTvServiceIsNeeded) {
  worker.svc_datacontrol_proxy = nullptr;
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(worker.ChangeSubtitle(0), 1);
  EXPECT_EQ(worker.svc_datacontrol_proxy, nullptr);
}

}  // namespace
