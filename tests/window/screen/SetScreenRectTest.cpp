// SPDX-License-Identifier: MIT
// Placing the picture.
#include <limits>

#include "Screen.h"

namespace {

using screen::ScreenTest;
using screen::sourceRead;
using sources::askCurrent;
using sources::askState;
using support::join;
using support::Lines;
using support::place;

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

class SetScreenRectTest : public ScreenTest {
 protected:
  /// What the size call gets for a rectangle in plug-in space, which the set accepts whatever it is.
  std::string sent(int x, int y, int w, int h) {
    only("IVideoControl::SetSize result=1");
    EXPECT_EQ(worker.SetScreenRect(x, y, w, h), 1);
    const std::string call = calls().back();
    const std::string before = "IVideoControl[main#1]::SetSize";
    EXPECT_EQ(call.rfind(before, 0), 0U) << call;
    return call.substr(before.size(), call.find(" -> ") - before.size());
  }

  void setBase(int width, int height) {
    worker.m_baseScrW = width;
    worker.m_baseScrH = height;
  }
};

TEST_F(SetScreenRectTest, SendsTheRectangleInBaseSpaceTheHeightBeforeTheWidth) {
  EXPECT_EQ(worker.SetScreenRect(480, 270, 240, 90), 1);
  EXPECT_EQ(calls(),
            (Lines{askState, askCurrent, "IVideoControl[main#1]::SetSize(x=960, y=540, height=180, width=480) -> 1"}));
  EXPECT_EQ(logs(), join({{place("SetScreenRect", 0), "3 nX=[480] nY=[270] nW=[240] nH=[90]",
                           "3 After convert nTempX=[960] nTempY=[540] nTempW=[480] nTempH=[180]"},
                          sourceRead,
                          {"3 SetSize success!\n"}}));
  EXPECT_EQ(planeOf(), (virtualtv::Rect{960, 540, 480, 180}));
}

TEST_F(SetScreenRectTest, ALowerRightQuarterIsOneInBaseSpaceToo) {
  EXPECT_EQ(sent(480, 270, 480, 270), "(x=960, y=540, height=540, width=960)");
}

TEST_F(SetScreenRectTest, ANegativePlaceIsTheDefaultSizeWhateverTheOtherNumbersAre) {
  for (const auto& [x, y, w, h] : std::vector<std::array<int, 4>>{{-1, 0, 0, 0},
                                                                  {-1, 480, 270, 240},
                                                                  {-2, -1, -1, -1},
                                                                  {lowest, lowest, lowest, lowest},
                                                                  {-1, highest, highest, highest}}) {
    putPlane({1, 2, 3, 4});
    forget();
    EXPECT_EQ(worker.SetScreenRect(x, y, w, h), 1);
    EXPECT_EQ(calls(), (Lines{askState, askCurrent, "IVideoControl[main#1]::SetDefaultSize() -> 1"}));
    const auto number = [](int value) { return std::to_string(value); };
    EXPECT_EQ(logs(), join({{place("SetScreenRect", 0), "3 nX=[" + number(x) + "] nY=[" + number(y) + "] nW=[" +
                                                            number(w) + "] nH=[" + number(h) + "]"},
                            sourceRead,
                            {"3 bFullScreen = true SetDefaultSize !\n", "3 SetDefaultSize success!\n"}}));
    EXPECT_EQ(planeOf(), virtualtv::baseScreen);
  }
}

TEST_F(SetScreenRectTest, APlaceOfZeroIsNotNegative) {
  EXPECT_EQ(sent(0, 0, 960, 540), "(x=0, y=0, height=1080, width=1920)");
}

TEST_F(SetScreenRectTest, OnlyTheFirstNumberChoosesTheDefaultSize) {
  EXPECT_EQ(sent(0, -1, -2, -3), "(x=0, y=-2, height=-6, width=-4)");
}

TEST_F(SetScreenRectTest, ConvertsByMultiplyingFirstAndCuttingTowardZero) {
  setBase(1366, 768);
  EXPECT_EQ(sent(1, 1, 2, 2), "(x=1, y=1, height=2, width=2)");
  EXPECT_EQ(sent(100, 100, 959, 539), "(x=142, y=142, height=766, width=1364)");
  EXPECT_EQ(sent(0, -1, -2, -5), "(x=0, y=-1, height=-7, width=-2)") << "-1.4, -7.1 and -2.8";
  setBase(3840, 2160);
  EXPECT_EQ(sent(1, 2, 3, 4), "(x=4, y=8, height=16, width=12)");
  setBase(720, 400);
  EXPECT_EQ(sent(1, 1, 3, 2), "(x=0, y=0, height=1, width=2)");
}

TEST_F(SetScreenRectTest, OnABaseScreenWithoutASizeEverythingIsZero) {
  setBase(0, 0);
  EXPECT_EQ(sent(0, -1, 480, highest), "(x=0, y=0, height=0, width=0)");
}

TEST_F(SetScreenRectTest, EachNumberIsConvertedByItsOwnSideOfTheBaseScreen) {
  setBase(960, 5400);
  EXPECT_EQ(sent(1, 2, 3, 4), "(x=1, y=20, height=40, width=3)");
}

TEST_F(SetScreenRectTest, NumbersWhoseProductExceedsAnIntAreStillExact) {
  EXPECT_EQ(sent(1073741823, 1073741823, 1073741823, 1073741823),
            "(x=2147483646, y=2147483646, height=2147483646, width=2147483646)");
  EXPECT_EQ(sent(0, -1073741824, -1073741824, -1073741824),
            "(x=0, y=-2147483648, height=-2147483648, width=-2147483648)");
}

TEST_F(SetScreenRectTest, NumbersBeyondAnIntInBaseSpaceAreClamped) {
  EXPECT_EQ(sent(highest, highest, highest, highest),
            "(x=2147483647, y=2147483647, height=2147483647, width=2147483647)");
  EXPECT_EQ(sent(1073741824, lowest, lowest, lowest),
            "(x=2147483647, y=-2147483648, height=-2147483648, width=-2147483648)");
  EXPECT_EQ(sent(0, -1073741825, 1073741824, -1073741825),
            "(x=0, y=-2147483648, height=-2147483648, width=2147483647)");
  forget();
  worker.SetScreenRect(highest, lowest, 1, 1);
  const Lines lines = logs();
  EXPECT_EQ(lines.at(1), "3 nX=[2147483647] nY=[-2147483648] nW=[1] nH=[1]");
  EXPECT_EQ(lines.at(2), "3 After convert nTempX=[2147483647] nTempY=[-2147483648] nTempW=[2] nTempH=[2]");
}

TEST_F(SetScreenRectTest, ARectangleThatTheTvServiceRefusesFails) {
  EXPECT_EQ(worker.SetScreenRect(10, 10, 0, 0), 0);
  EXPECT_EQ(worker.SetScreenRect(10, 10, -5, 5), 0);
  EXPECT_EQ(planeOf(), virtualtv::baseScreen);
}

TEST_F(SetScreenRectTest, PlacesTheWindowDriven) {
  selectPip();
  EXPECT_EQ(worker.SetScreenRect(480, 270, 240, 90), 1);
  EXPECT_EQ(planeOf(virtualtv::WindowId::pip), (virtualtv::Rect{960, 540, 480, 180}));
  EXPECT_EQ(planeOf(), virtualtv::baseScreen);
  EXPECT_EQ(worker.SetScreenRect(-1, 0, 0, 0), 1);
  EXPECT_EQ(planeOf(virtualtv::WindowId::pip), virtualtv::pipCorner);
}

}  // namespace
