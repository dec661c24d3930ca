// SPDX-License-Identifier: MIT
// What all operations that use the video control have in common: their calls, the order of these, and the effect of
// each call's failure.
#include <array>
#include <ostream>

#include "Screen.h"
#include "window/lifecycle/Proxies.h"

namespace {

using screen::getAfd;
using screen::getScreenRect;
using screen::Query;
using screen::Rect;
using screen::untouched;
using sources::askCurrent;
using sources::askState;
using support::banner;
using support::caught;
using support::join;
using support::Lines;
using support::place;
using support::WorkerProbe;

template <Query operation>
int askText(WorkerProbe& worker) {
  std::array<char, 40> buffer{};
  return (worker.*operation)(buffer.data());
}

int askRectangle(WorkerProbe& worker) {
  Rect rect{};
  return worker.GetScreenRect(rect);
}

/// An operation: its calls, the effects of their failures, and its log lines.
struct Operation {
  std::string label;
  std::string name;  ///< its name in log lines
  std::string call;  ///< its call of the video control
  int (*run)(WorkerProbe& worker);
  int failed;         ///< its result without a video control or without a source
  Lines begin;        ///< its log lines before it reads the source
  Lines noSource;     ///< its log lines when there is no source
  Lines refused;      ///< its log lines after a failed call, without those before
  std::string bound;  ///< the end of its call when it succeeds
  bool readsSource = true;
};

std::ostream& operator<<(std::ostream& out, const Operation& operation) {
  return out << operation.label;
}

const std::vector<Operation> operations{
    {"SetDefault",
     "SetScreenRect",
     "SetDefaultSize",
     [](WorkerProbe& worker) { return worker.SetScreenRect(-1, 270, 480, 270); },
     0,
     {"3 nX=[-1] nY=[270] nW=[480] nH=[270]"},
     {"0 t_GetCurrentSourceInfo fails !\n"},
     {},
     "() -> 1"},
    {"Set",
     "SetScreenRect",
     "SetSize",
     [](WorkerProbe& worker) { return worker.SetScreenRect(480, 270, 480, 270); },
     0,
     {"3 nX=[480] nY=[270] nW=[480] nH=[270]", "3 After convert nTempX=[960] nTempY=[540] nTempW=[960] nTempH=[540]"},
     {"0 t_GetCurrentSourceInfo fails !\n"},
     {},
     "(x=960, y=540, height=540, width=960) -> 1"},
    {"GetText",
     "GetScreenRect",
     "GetSize",
     askText<getScreenRect>,
     0,
     {},
     {"0 Cannot get Source info from TVS!!!"},
     {"0 Cannot get Size info from TVS!!!"},
     "() x=0 y=0 height=1080 width=1920 -> 1"},
    {"GetRect", "GetScreenRect", "GetSize", askRectangle, -1, {}, {}, {}, "() x=0 y=0 height=1080 width=1920 -> 1"},
    {"GetAfd",
     "GetAFDGeometryRectSize",
     "GetAFDGeometryRectSize",
     askText<getAfd>,
     0,
     {},
     {},
     {"0 GetAFDGeometryRectSize failed"},
     "() x=0 y=0 width=1920 height=1080 -> 1",
     false},
};

class VideoOperation : public screen::ScreenTest, public ::testing::WithParamInterface<Operation> {
 protected:
  static const Operation& operation() { return GetParam(); }
  static std::string call() { return "IVideoControl::" + operation().call; }
  int run() { return operation().run(worker); }

  /// Its log lines until it reads the source, and until its call.
  static Lines begun() { return join({{place(operation().name, 0)}, operation().begin}); }
  static Lines asked() {
    const Lines read = join({sources::currentLogs(5), sources::converted(5, 20)});
    const bool announced = operation().label == "SetDefault";
    return join({begun(), operation().readsSource ? read : Lines(),
                 announced ? Lines{"3 bFullScreen = true SetDefaultSize !\n"} : Lines()});
  }
};

TEST_P(VideoOperation, ReadsTheSourceThenCallsTheWindowsVideoControl) {
  EXPECT_EQ(run(), 1);
  const Lines reading = operation().readsSource ? Lines{askState, askCurrent} : Lines();
  EXPECT_EQ(calls(), join({reading, {"IVideoControl[main#1]::" + operation().call + operation().bound}}));
  selectPip();
  EXPECT_EQ(run(), 1);
  for (const std::string& call : calls()) EXPECT_NE(call.find("Control[pip#2]::"), std::string::npos) << call;
}

TEST_P(VideoOperation, MakesTheVideoControlThatIsMissing) {
  worker.video_ctrl_proxy = nullptr;
  EXPECT_EQ(run(), 1);
  const Lines seen = calls();
  EXPECT_EQ(seen.front(), lifecycle::made("TVServiceAPI::CreateVideoControl", 1));
  EXPECT_EQ(seen.back().rfind("IVideoControl[main#2]::", 0), 0U) << seen.back();
}

TEST_P(VideoOperation, FailsWithoutAVideoControlBeforeAnythingElse) {
  loseVideoControl();
  forget();
  EXPECT_EQ(run(), operation().failed);
  EXPECT_EQ(calls().size(), 1U) << "the source is not read";
  EXPECT_EQ(logs(), (Lines{place(operation().name, 0), "0 video_ctrl_proxy is NULL, t_eWindow =0",
                           "0 CEmpTaskWindow video_ctrl_proxy create is FAIL!!", "0 VideoControlproxy is NULL"}));
}

TEST_P(VideoOperation, FailsWithoutASourceIfItReadsOne) {
  loseSourceControl();
  forget();
  if (!operation().readsSource) {
    EXPECT_EQ(run(), 1);
    return;
  }
  EXPECT_EQ(run(), operation().failed);
  EXPECT_EQ(calls().size(), 1U) << "the video control is not called";
  EXPECT_EQ(logs(), join({begun(), sources::noSourceControl, operation().noSource}));
}

TEST_P(VideoOperation, FailsWhenItsCallAnswersLessThanOne) {
  for (const int result : {0, -1, screen::lowest}) {
    EXPECT_EQ(under(call() + " result=" + std::to_string(result), [this] { return run(); }), 0) << result;
    EXPECT_EQ(logs(), join({asked(), operation().refused})) << result;
  }
  EXPECT_EQ(under(call() + " result=throw", [this] { return run(); }), 0);
  EXPECT_EQ(logs(), join({asked(), {caught(operation().name, call())}, operation().refused}));
  EXPECT_EQ(under(call() + " result=2", [this] { return run(); }), 1);
}

INSTANTIATE_TEST_SUITE_P(Each, VideoOperation, ::testing::ValuesIn(operations),
                         [](const auto& test) { return test.param.label; });

/// Operations that write into a buffer of the caller.
using OutputTest = screen::ScreenTest;

TEST_F(OutputTest, ATextThatCannotBeHadLeavesTheBufferAsItIs) {
  for (const auto& [operation, words] :
       std::vector<std::pair<Query, std::string>>{{getScreenRect, "IVideoControl::GetSize result=0"},
                                                  {getScreenRect, "ISourceControl::GetCurrentSourceInfo result=0"},
                                                  {getAfd, "IVideoControl::GetAFDGeometryRectSize result=0"},
                                                  {getAfd, "IVideoControl::GetAFDGeometryRectSize result=throw"}}) {
    EXPECT_EQ(under(words, [this, asked = operation] { return query(asked).text; }), untouched) << words;
  }
  loseVideoControl();
  EXPECT_EQ(query(getScreenRect).text, untouched);
  EXPECT_EQ(query(getAfd).text, untouched);
}

TEST_F(OutputTest, ARectangleIsLeftAsItIsWhereTheSizeIsNotAsked) {
  Rect rect{11, 12, 13, 14};
  under("ISourceControl::GetCurrentSourceInfo result=0", [&] { return worker.GetScreenRect(rect); });
  loseVideoControl();
  worker.GetScreenRect(rect);
  EXPECT_EQ(screen::numbers(rect), (std::vector<int>{11, 12, 13, 14}));
}

TEST_F(OutputTest, OutputsThatNobodyWroteAreZero) {
  const auto text = [this](Query operation) { return [this, operation] { return query(operation).text; }; };
  EXPECT_EQ(under("IVideoControl::GetSize result=unwritten", text(getScreenRect)), "x:0,y:0,w:0,h:0");
  EXPECT_EQ(under("IVideoControl::GetAFDGeometryRectSize result=unwritten", text(getAfd)), "x:0,y:0,w:0,h:0");
}

TEST_F(OutputTest, ANullOutputIsRefusedBehindTheVideoControl) {
  const std::vector<std::pair<std::string, int (*)(WorkerProbe&)>> refusing{
      {"GetScreenRect", [](WorkerProbe& to) { return to.GetScreenRect(nullptr); }},
      {"GetAFDGeometryRectSize", [](WorkerProbe& to) { return to.GetAFDGeometryRectSize(nullptr); }},
      {"GetScreenRect_PosMode", [](WorkerProbe& to) { return to.GetScreenRect_PosMode(nullptr); }},
      {"GetScreenRect_SizeMode", [](WorkerProbe& to) { return to.GetScreenRect_SizeMode(nullptr); }},
      {"GetState_Show", [](WorkerProbe& to) { return to.GetState_Show(nullptr); }},
  };
  for (const auto& [name, run] : refusing) {
    EXPECT_EQ(run(worker), -3) << name;
    EXPECT_EQ(calls(), Lines());
    EXPECT_EQ(logs(), (Lines{place(name, 0), banner(0, name)}));
  }
  loseVideoControl();
  EXPECT_EQ(refusing[0].second(worker), 0);
  EXPECT_EQ(refusing[1].second(worker), 0);
}

TEST_F(OutputTest, ModesStayAsTheyAre) {
  auto position = static_cast<_PL_WINDOW_POSITION_MODE>(-77);
  EXPECT_EQ(worker.GetScreenRect_PosMode(&position), 0);
  EXPECT_EQ(position, -77);
  auto size = static_cast<_PL_WINDOW_RECT_SIZE_MODE>(-77);
  EXPECT_EQ(worker.GetScreenRect_SizeMode(&size), 0);
  EXPECT_EQ(size, -77);
}

}  // namespace
