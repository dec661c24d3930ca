// SPDX-License-Identifier: MIT
// Reading a window's source, its previous source and its state, including rare answers of the set.
#include "support/Sources.h"

namespace {

using sources::currentLogs;
using sources::noSourceControl;
using sources::previousMainKey;
using sources::refused;
using support::banner;
using support::caught;
using support::join;
using support::Lines;
using support::place;

const Lines askedState{place("GetSource"), "3 This is t_GetCurrentSourceInfo", "3 GetSourceState start"};
const Lines askedSource = join({askedState, {"3 GetSourceState = 2"}});
const Lines askedPrevious{place("GetPreviousSource"), "3 This is t_GetPreviousSourceInfo"};

/// A fault, the result and output of the operation, and its log lines.
struct Outcome {
  std::string fault;
  int result;
  int output;
  Lines logs;
};

class ReadTest : public sources::SourceTest {
 protected:
  /// The three operations. They write to `output`.
  int getSource(int seek = 0) {
    auto source = static_cast<_PL_WINDOW_Source>(output);
    const int result = worker.GetSource(&source, static_cast<_PL_WINDOW_SEEK>(seek));
    output = source;
    return result;
  }
  int getPrevious() {
    auto source = static_cast<_PL_WINDOW_Source>(output);
    const int result = worker.GetPreviousSource(&source);
    output = source;
    return result;
  }
  int getState() { return worker.GetSourceState(&output); }

  template <typename Operation>
  void expectEach(const std::vector<Outcome>& outcomes, Operation operation) {
    for (const Outcome& outcome : outcomes) {
      SCOPED_TRACE(outcome.fault);
      output = untouched;
      EXPECT_EQ(under(outcome.fault, operation), outcome.result);
      EXPECT_EQ(output, outcome.output);
      EXPECT_EQ(logs(), outcome.logs);
    }
  }

  static constexpr int untouched = -77;
  int output = untouched;
};

TEST_F(ReadTest, GetSourceAsksTheTvServiceForEverySeekButTheThreePreviousOnes) {
  setSetting(previousMainKey, 99);
  for (const int seek : {-1, 0, 1, 2, 3, 4, 5, 7, 10, 11, 12, 101, 2147483647}) {
    EXPECT_EQ(getSource(seek), 1) << seek;
    EXPECT_EQ(output, 20) << seek;
  }
  for (const int seek : {6, 8, 9}) {
    for (const int stored : {0, 43, 100, -5, 123456}) {
      setSetting(previousMainKey, stored);
      EXPECT_EQ(getSource(seek), 1) << seek;
      EXPECT_EQ(output, stored) << "as it is stored";
    }
  }
}

TEST_F(ReadTest, GetSourceFailsWhenThePreviousSourceCannotBeRead) {
  const std::string failed = "0 Get vconf db/emp/previousmainsource failed";
  expectEach(
      {{"vconf_get_int result=-1", 0, untouched, {place("GetSource"), failed}},
       {"vconf_get_int result=9", 0, untouched, {place("GetSource"), failed}},
       {"vconf_get_int result=throw", 0, untouched, {place("GetSource"), caught("GetSource", "vconf_get_int"), failed}},
       {"vconf_get_int result=unwritten",
        1,
        0,
        {place("GetSource"), "3 m_PreviousSourceVconf db/emp/previousmainsource = 0 success"}}},
      [this] { return getSource(6); });
}

TEST_F(ReadTest, GetSourceReadsThePreviousSourceOfItsWindow) {
  worker.SetWindow(PL_WINDOW_WINDOW_PIP);
  setSetting(previousMainKey, 1);
  EXPECT_EQ(getSource(8), 0) << "which was never stored";
  setSetting(sources::previousPipKey, 2);
  EXPECT_EQ(getSource(8), 1);
  EXPECT_EQ(output, 2);
}

TEST_F(ReadTest, NullOutputIsRefusedBeforeAnythingElse) {
  for (const _PL_WINDOW_SEEK seek : {_PL_WINDOW_SEEK{}, PL_WINDOW_SEEK_PREVIOUS_SOURCE_6}) {
    EXPECT_EQ(worker.GetSource(nullptr, seek), -3);
    EXPECT_EQ(logs(), (Lines{place("GetSource"), banner(0, "GetSource")}));
  }
  EXPECT_EQ(worker.GetPreviousSource(nullptr), -3);
  EXPECT_EQ(logs(), (Lines{place("GetPreviousSource"), banner(0, "GetPreviousSource")}));
  EXPECT_EQ(worker.GetSourceState(nullptr), -3);
  EXPECT_EQ(logs(), (Lines{place("GetSourceState"), banner(0, "GetSourceState")}));
  EXPECT_EQ(calls(), Lines());
}

TEST_F(ReadTest, GetSourceIsFortyThreeWithoutAStateThatCanBeRead) {
  const std::string call = "ISourceControl::GetSourceState ";
  const Lines inactive = join({askedState, {"0 Get GetSourceState failed", "3 TVS is not active"}});
  expectEach(
      {{call + "result=0", 1, 43, inactive},
       {call + "result=-1", 1, 43, inactive},
       {call + "result=2", 1, 43, inactive},
       {call + "result=unwritten", 1, 43,
        join({askedState,
              {"3 GetSourceState = -1", "3 Get GetSourceState success and eCurrentSourceState = SOURCE_STATE_NONE",
               "3 TVS is not active"}})},
       {call + "result=throw", -1, untouched,
        join({askedState, {caught("t_GetCurrentSourceInfo", "ISourceControl::GetSourceState")}})}},
      [this] { return getSource(); });
}

TEST_F(ReadTest, GetSourceFailsForASourceThatCannotBeReadOrTranslated) {
  const std::string call = "ISourceControl::GetCurrentSourceInfo ";
  const std::string failed = "0 GetCurrentSourceInfo failed";
  const auto alien = [](int tc) { return join({{place("GetSource")}, currentLogs(tc), refused(tc)}); };
  expectEach({{call + "result=7", 1, 20, join({{place("GetSource")}, currentLogs(5), sources::converted(5, 20)})},
              {call + "result=0", -1, untouched, join({askedSource, {failed}})},
              {call + "result=-1", -1, untouched, join({askedSource, {failed}})},
              {call + "result=throw", -1, untouched,
               join({askedSource, {caught("t_GetCurrentSourceInfo", "ISourceControl::GetCurrentSourceInfo"), failed}})},
              {call + "result=unwritten", -1, untouched, alien(-1)},
              {call + "out.source=23", -1, untouched, alien(23)},
              {call + "out.source=999", -1, untouched, alien(999)}},
             [this] { return getSource(); });
}

TEST_F(ReadTest, GetPreviousSourceAsksTheTvServiceAndNotTheKeyAndNotForTheState) {
  setSetting(previousMainKey, 99);
  deactivate();
  forget();
  EXPECT_EQ(getPrevious(), 1);
  EXPECT_EQ(output, 24);
  EXPECT_EQ(calls(), Lines{"ISourceControl[main#1]::GetPreviousSourceInfo() source=8 -> 1"});
  EXPECT_EQ(logs(),
            join({askedPrevious, {"3 GetPreviousSourceInfo successfully eTVSSource = 8"}, sources::converted(8, 24)}));
}

TEST_F(ReadTest, GetPreviousSourceFailsForASourceThatCannotBeReadOrTranslated) {
  const std::string call = "ISourceControl::GetPreviousSourceInfo ";
  const std::string failed = "0 GetCurrentSourceInfo failed";
  const Lines alien = join({askedPrevious, {"3 GetPreviousSourceInfo successfully eTVSSource = -1"}, refused(-1)});
  expectEach(
      {{call + "result=0", -1, untouched, join({askedPrevious, {failed}})},
       {call + "result=-1", -1, untouched, join({askedPrevious, {failed}})},
       {call + "result=throw", -1, untouched,
        join({askedPrevious, {caught("t_GetPreviousSourceInfo", "ISourceControl::GetPreviousSourceInfo"), failed}})},
       {call + "out.source=-1", -1, untouched, alien},
       {call + "result=unwritten", -1, untouched, alien}},
      [this] { return getPrevious(); });
}

TEST_F(ReadTest, GetSourceStateFailsOnAnyResultButOne) {
  const std::string call = "ISourceControl::GetSourceState ";
  const Lines begun{place("GetSourceState"), "3 GetSourceState start"};
  const Lines failed = join({begun, {"0 Get GetSourceState failed"}});
  expectEach({{call + "out.state=2", 1, 2, join({begun, {"3 GetSourceState = 2"}})},
              {call + "result=unwritten", 1, -1, join({begun, {"3 GetSourceState = -1"}})},
              {call + "result=0", -1, untouched, failed},
              {call + "result=-1", -1, untouched, failed},
              {call + "result=2", -1, untouched, failed},
              {call + "result=throw", -1, untouched,
               join({begun, {caught("GetSourceState", "ISourceControl::GetSourceState"), failed.back()}})}},
             [this] { return getState(); });
}

TEST_F(ReadTest, WithoutSourceControlAllFail) {
  loseSourceControl();
  forget();
  EXPECT_EQ(getSource(), -1);
  EXPECT_EQ(logs(), join({{place("GetSource")}, noSourceControl}));
  EXPECT_EQ(getPrevious(), -1);
  EXPECT_EQ(logs(), join({{place("GetPreviousSource")}, noSourceControl}));
  EXPECT_EQ(getState(), -1);
  EXPECT_EQ(logs(), join({{place("GetSourceState")}, noSourceControl}));
  EXPECT_EQ(output, untouched);
}

TEST_F(ReadTest, GetSourceMakesTheSourceControlThatIsMissing) {
  worker.src_ctrl_proxy = nullptr;
  EXPECT_EQ(getSource(), 1);
  EXPECT_EQ(output, 20);
}

}  // namespace
