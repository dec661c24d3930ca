// SPDX-License-Identifier: MIT
// The command with a parameter list: both rectangles of a crop, and a plane.
#include "support/Channels.h"
#include "support/Sources.h"

namespace {

using support::caught;
using support::join;
using support::Lines;
using support::noNumbers;
using virtualtv::WindowId;

const std::string command = "SetScreenCropRect";
const Lines rects{"1", "2", "3", "4", "5", "6", "7", "8"};

const std::string entered = "0 CEmpEngineWindow::ExecuteWithParamList[SetScreenCropRect]\n";
std::string finish(int result) {
  return "0 CEmpEngineWindow::ExecuteWithParamList Command[SetScreenCropRect] Finish result[" + std::to_string(result) +
         "].";
}

const Lines sourceLogs = join({sources::currentLogs(5), sources::converted(5, 20)});
const std::string cropped = "3 SetSize success!\n";

std::string setCropArea(const std::string& crop, const std::string& display, const std::string& result = "1") {
  return "IVideoControl[main#1]::SetCropArea(crop=" + crop + ", display=" + display + ") -> " + result;
}

/// An engine on a set whose main window shows the source 5 (the plug-in's 20).
class ParamListTest : public channels::ChannelEngineTest {
 protected:
  void SetUp() override {
    ChannelEngineTest::SetUp();
    showSource(WindowId::main, 5);
  }

  std::string run(const Lines& parameters) {
    forget();
    return executeWithParamList(command, parameters);
  }

  /// Runs the command with a list that does not parse. It counts as done, but makes no call and writes no reply.
  void expectUnanswered(const Lines& parameters) {
    EXPECT_EQ(run(parameters), "empty") << ::testing::PrintToString(parameters);
    EXPECT_EQ(calls(), Lines()) << ::testing::PrintToString(parameters);
    EXPECT_EQ(logs(), (Lines{entered, finish(1)})) << ::testing::PrintToString(parameters);
  }

  static Lines with(std::size_t at, const std::string& text) {
    Lines parameters = rects;
    parameters[at] = text;
    return parameters;
  }

  const std::optional<virtualtv::Crop>& crop(WindowId window = WindowId::main) {
    return tv().state()[window].plane.crop;
  }
};

TEST_F(ParamListTest, CropsFromTheFirstFourParametersIntoTheNextFour) {
  EXPECT_EQ(run(rects), "int 1");
  EXPECT_EQ(calls(), (Lines{sources::askState, sources::askCurrent, setCropArea("1,2,3,4", "5,6,7,8")}))
      << "the display rectangle is neither asked for nor converted";
  EXPECT_EQ(logs(), join({{entered}, sourceLogs, {cropped, finish(1)}}));
  const virtualtv::Crop wanted{{1, 2, 3, 4}, {5, 6, 7, 8}};
  EXPECT_EQ(crop(), wanted);
}

TEST_F(ParamListTest, ThePlaneMayBeAnythingAndMayBeMissing) {
  for (const std::string& plane : join({{"0", "1", "-1", "2147483647", "-2147483648"}, noNumbers})) {
    EXPECT_EQ(run(join({rects, {plane}})), "int 1") << '\'' << plane << '\'';
    EXPECT_EQ(calls().back(), setCropArea("1,2,3,4", "5,6,7,8"));
    EXPECT_EQ(logs().back(), finish(1));
  }
}

TEST_F(ParamListTest, ParametersBehindThePlaneDoNotMatter) {
  EXPECT_EQ(run(join({rects, {"0", "x", "%s", std::string(100000, '9')}})), "int 1");
  EXPECT_EQ(run(join({rects, Lines(1000, "a")})), "int 1");
}

TEST_F(ParamListTest, EachOfTheEightMustBeAWholeNumber) {
  for (std::size_t at = 0; at < rects.size(); ++at) {
    for (const std::string& text : noNumbers) expectUnanswered(with(at, text));
  }
  for (std::size_t size = 0; size < rects.size(); ++size) {
    expectUnanswered(Lines(rects.begin(), rects.begin() + static_cast<std::ptrdiff_t>(size)));
  }
  EXPECT_EQ(crop(), std::nullopt);
}

TEST_F(ParamListTest, NumbersOfEitherSignPassAsTheyAre) {
  fault("IVideoControl::SetCropArea result=1");
  EXPECT_EQ(run({"-2147483648", "2147483647", "0", "-1", "+1", "007", "-2147483648", "2147483647"}), "int 1");
  EXPECT_EQ(calls().back(), setCropArea("-2147483648,2147483647,0,-1", "1,7,-2147483648,2147483647", "1 [fault]"));
}

TEST_F(ParamListTest, AnswersAndFinishesWithTheResultOfTheCrop) {
  const std::string call = "IVideoControl::SetCropArea";
  const std::map<std::string, Lines> failures{
      {"result=0", {}}, {"result=-1", {}}, {"result=throw", {caught(command, call)}}};
  for (const auto& [way, lines] : failures) {
    fault(call + " " + way);
    EXPECT_EQ(run(rects), "int 0") << way;
    EXPECT_EQ(logs(), join({{entered}, sourceLogs, lines, {finish(0)}}));
  }
  fault("ISourceControl::GetCurrentSourceInfo result=0");
  EXPECT_EQ(run(rects), "int -1");
  EXPECT_EQ(logs().back(), finish(-1));
  EXPECT_EQ(run(with(6, "0")), "int 0") << "the set refuses an empty rectangle";
  breakLog("SetSize success!\n");
  EXPECT_EQ(run(rects), "int -1");
  EXPECT_EQ(logs(), join({{entered}, sourceLogs, {"0 Exception Handled by ExecuteWithParamList no log", finish(-1)}}));
}

TEST_F(ParamListTest, WithoutVideoControlAnswersMinusOne) {
  close();
  fault("TVServiceAPI::CreateVideoControl always result=null");
  ASSERT_TRUE(open());
  EXPECT_EQ(run(rects), "int -1");
  EXPECT_EQ(calls().size(), 1U) << "the factory, once";
  const Lines lines = logs();
  ASSERT_GE(lines.size(), 2U);
  EXPECT_EQ(lines[lines.size() - 2], "0 VideoControlproxy is NULL");
  EXPECT_EQ(lines.back(), finish(-1));
}

TEST_F(ParamListTest, CropsTheWindowSelected) {
  ASSERT_EQ(execute("SetWindow", {"1"}), "int 1");
  showSource(WindowId::pip, 5);
  EXPECT_EQ(run(rects), "int 1");
  EXPECT_EQ(calls().back(), "IVideoControl[pip#2]::SetCropArea(crop=1,2,3,4, display=5,6,7,8) -> 1");
  EXPECT_EQ(crop(), std::nullopt);
  EXPECT_NE(crop(WindowId::pip), std::nullopt);
}

}  // namespace
