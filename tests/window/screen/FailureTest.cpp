// SPDX-License-Identifier: MIT
// What the operations that ask the video control have in common: which calls they make, on what, in which order, and
// what each call's failure comes to.
#include "Screen.h"
#include "window/lifecycle/Proxies.h"

namespace {

using lifecycle::made;
using screen::noVideoControl;
using screen::Operation;
using screen::operations;
using screen::resultOf;
using screen::sourceRead;
using sources::askCurrent;
using sources::askState;
using sources::noSourceControl;
using support::caught;
using support::join;
using support::Lines;
using support::place;

class VideoOperation : public screen::ScreenTest, public ::testing::WithParamInterface<Operation> {
 protected:
  static const Operation& operation() { return GetParam(); }
  int run() { return operation().run(worker); }

  /// The calls of the source, where the operation reads it.
  static Lines reading() { return operation().readsSource ? Lines{askState, askCurrent} : Lines(); }

  /// What it logs up to its call.
  static Lines begun() { return join({{place(operation().name, 0)}, operation().begin}); }
  static Lines asked() { return join({begun(), operation().readsSource ? sourceRead : Lines(), operation().before}); }
  static Lines withoutSource(const Lines& why) { return join({begun(), why, operation().noSource}); }
};

TEST_P(VideoOperation, ReadsTheSourceThenCallsTheWindowsVideoControl) {
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(calls(), join({reading(), {operation().traced}}));
  const Lines lines = logs();
  const Lines expected = asked();
  ASSERT_GT(lines.size(), expected.size());
  EXPECT_EQ(Lines(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(expected.size())), expected);
}

TEST_P(VideoOperation, LogsEverythingUnderItsNameButWhatItReadsTheSourceWith) {
  run();
  for (const auto& line : messages()) {
    const bool own = line.function.str().rfind("t_", 0) != 0;
    EXPECT_TRUE(!own || line.function == operation().name) << line.message.text() << " under " << line.function.str();
  }
}

TEST_P(VideoOperation, CallsTheVideoControlThatWindowSelectionMade) {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_MAIN), 1);
  forget();
  run();
  EXPECT_EQ(calls().back().rfind("IVideoControl[main#2]::", 0), 0U);
}

TEST_P(VideoOperation, CallsThePictureInPictureWindowWhenThatIsDriven) {
  selectPip();
  EXPECT_EQ(run(), 1);
  const Lines seen = calls();
  EXPECT_EQ(seen.size(), reading().size() + 1);
  for (const std::string& call : seen) {
    const bool pip = call.rfind("ISourceControl[pip#2]::", 0) == 0 || call.rfind("IVideoControl[pip#2]::", 0) == 0;
    EXPECT_TRUE(pip) << call;
  }
}

TEST_P(VideoOperation, MakesTheVideoControlThatIsMissingForItsWindow) {
  worker.video_ctrl_proxy = nullptr;
  EXPECT_EQ(run(), 1);
  Lines seen = calls();
  EXPECT_EQ(seen.front(), made("TVServiceAPI::CreateVideoControl", 1));
  EXPECT_EQ(seen.back().rfind("IVideoControl[main#2]::", 0), 0U) << seen.back();
  EXPECT_EQ(logs().at(1), "0 video_ctrl_proxy is NULL, t_eWindow =0");

  selectPip();
  worker.video_ctrl_proxy = nullptr;
  EXPECT_EQ(run(), 1);
  seen = calls();
  EXPECT_EQ(seen.front(), made("TVServiceAPI::CreateVideoControl", 101));
  EXPECT_EQ(seen.back().rfind("IVideoControl[pip#4]::", 0), 0U) << seen.back();
  EXPECT_EQ(logs().at(1), "0 video_ctrl_proxy is NULL, t_eWindow =1");
}

TEST_P(VideoOperation, FailsWithoutAVideoControlBeforeAnythingElse) {
  for (const std::string& way : lifecycle::failures("TVServiceAPI::CreateVideoControl")) {
    SCOPED_TRACE(way);
    worker.video_ctrl_proxy = nullptr;
    only("TVServiceAPI::CreateVideoControl " + way);
    EXPECT_EQ(run(), operation().unconnected);
    EXPECT_TRUE(faultsHit());
    EXPECT_EQ(calls().size(), 1U) << "the source is not read";
    Lines expected = noVideoControl;
    if (way == "result=throw") {
      expected.insert(expected.begin() + 1, caught("t_CheckVideoControlproxy", "TVServiceAPI::CreateVideoControl"));
    }
    EXPECT_EQ(logs(), join({{place(operation().name, 0)}, expected}));
  }
}

TEST_P(VideoOperation, FailsWhenItsCallAnswersLessThanOne) {
  for (const int result : {0, -1, -2147483647 - 1}) {
    only(resultOf(operation().call, result));
    EXPECT_EQ(run(), 0) << result;
    EXPECT_TRUE(faultsHit());
    EXPECT_EQ(logs(), join({asked(), operation().refused})) << result;
  }
}

TEST_P(VideoOperation, FailsWhenItsCallThrows) {
  only(operation().call + " result=throw");
  EXPECT_EQ(run(), 0);
  EXPECT_TRUE(faultsHit());
  EXPECT_EQ(logs(), join({asked(), {caught(operation().name, operation().call)}, operation().refused}));
}

TEST_P(VideoOperation, SucceedsOnAnyPositiveAnswer) {
  for (const int result : {1, 2, 2147483647}) {
    only(resultOf(operation().call, result));
    EXPECT_EQ(run(), 1) << result;
    EXPECT_TRUE(faultsHit());
  }
}

TEST_P(VideoOperation, WorksAgainAfterAFailure) {
  only(operation().call + " result=throw");
  run();
  EXPECT_EQ(run(), 1);
}

TEST_P(VideoOperation, ChangesNoSettingsKey) {
  run();
  EXPECT_EQ(intSetting(sources::mainKey), 0);
  EXPECT_EQ(intSetting(sources::previousMainKey), 0);
  EXPECT_EQ(intSetting(sources::pipKey), 0);
}

INSTANTIATE_TEST_SUITE_P(Each, VideoOperation, ::testing::ValuesIn(operations()),
                         [](const auto& test) { return test.param.label; });

/// Those that want a source.
class VideoOperationWithSource : public VideoOperation {};

TEST_P(VideoOperationWithSource, FailsWithoutSourceControl) {
  loseSourceControl();
  forget();
  EXPECT_EQ(run(), operation().sourceless);
  EXPECT_EQ(calls().size(), 1U) << "the video control is not called";
  EXPECT_EQ(logs(), withoutSource(noSourceControl));
}

TEST_P(VideoOperationWithSource, FailsWhenTheSourceCannotBeRead) {
  const std::string call = "ISourceControl::GetCurrentSourceInfo";
  const Lines state{"3 This is t_GetCurrentSourceInfo", "3 GetSourceState start", "3 GetSourceState = 2"};
  const Lines failed{"0 GetCurrentSourceInfo failed"};
  for (const int result : {0, -1}) {
    only(resultOf(call, result));
    EXPECT_EQ(run(), operation().sourceless);
    EXPECT_TRUE(faultsHit());
    EXPECT_EQ(calls().size(), 2U);
    EXPECT_EQ(logs(), withoutSource(join({state, failed})));
  }
  only(call + " result=throw");
  EXPECT_EQ(run(), operation().sourceless);
  EXPECT_EQ(logs(), withoutSource(join({state, {caught("t_GetCurrentSourceInfo", call)}, failed})));
}

TEST_P(VideoOperationWithSource, FailsWhenReadingTheSourcesStateThrows) {
  only("ISourceControl::GetSourceState result=throw");
  EXPECT_EQ(run(), operation().sourceless);
  EXPECT_EQ(calls().size(), 1U);
  EXPECT_EQ(logs(), withoutSource({"3 This is t_GetCurrentSourceInfo", "3 GetSourceState start",
                                   caught("t_GetCurrentSourceInfo", "ISourceControl::GetSourceState")}));
}

TEST_P(VideoOperationWithSource, FailsForASourceThatTheTablesDoNotKnow) {
  only("ISourceControl::GetCurrentSourceInfo out.source=23");
  EXPECT_EQ(run(), operation().sourceless);
  EXPECT_EQ(calls().size(), 2U);
  EXPECT_EQ(logs(), withoutSource(join({sources::currentLogs(23), sources::refused(23)})));
}

TEST_P(VideoOperationWithSource, GoesOnWhenNoSourceIsActiveOrItsStateIsRefused) {
  deactivate();
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(calls().size(), 2U) << "state, then the call";
  only("ISourceControl::GetSourceState result=0");
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(calls().size(), 2U);
}

std::vector<Operation> withSource() {
  std::vector<Operation> found;
  for (const Operation& operation : operations()) {
    if (operation.readsSource) found.push_back(operation);
  }
  return found;
}

INSTANTIATE_TEST_SUITE_P(Each, VideoOperationWithSource, ::testing::ValuesIn(withSource()),
                         [](const auto& test) { return test.param.label; });

}  // namespace
