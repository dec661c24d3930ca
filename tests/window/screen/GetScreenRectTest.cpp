// SPDX-License-Identifier: MIT
// Where the picture is, as a text and as a rectangle.
#include <limits>

#include "Screen.h"

namespace {

using screen::Rect;
using screen::ScreenTest;
using screen::sizeOf;
using screen::sourceRead;
using screen::untouched;
using sources::askCurrent;
using sources::askState;
using support::banner;
using support::join;
using support::Lines;
using support::place;

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

class GetScreenRectTest : public ScreenTest {
 protected:
  /// The text for these outputs of the size query, in the order in which it writes them.
  std::string textFor(int x, int y, int third, int fourth) {
    only(sizeOf(x, y, third, fourth));
    const auto [result, text] = getScreenRect();
    EXPECT_EQ(result, 1);
    EXPECT_TRUE(faultsHit());
    return text;
  }

  struct Read {
    int result;
    Rect rect;
  };
  Read read(Rect rect = {}) {
    const int result = worker.GetScreenRect(rect);
    return {result, rect};
  }
};

std::vector<int> numbers(const Rect& rect) {
  return {rect.x, rect.y, rect.width, rect.height};
}

TEST_F(GetScreenRectTest, TheWholeBaseScreenIsTheWholePluginSpace) {
  const auto [result, text] = getScreenRect();
  EXPECT_EQ(result, 1);
  EXPECT_EQ(text, "x:0,y:0,w:960,h:540");
  EXPECT_EQ(calls(),
            (Lines{askState, askCurrent, "IVideoControl[main#1]::GetSize() x=0 y=0 height=1080 width=1920 -> 1"}));
  EXPECT_EQ(logs(), join({{place("GetScreenRect", 0)},
                          sourceRead,
                          {"3 GetScreenRect success! [x,y,w,h=0,0,1920,1080]\n",
                           "3 After convert x = 0000,y = 0000, w = 0960, h= 0540",
                           "3 pszScreenRect = x:0,y:0,w:960,h:540", "3 0000/0000/0960/0540"}}));
}

TEST_F(GetScreenRectTest, TheTextTakesTheThirdOutputForTheHeight) {
  EXPECT_EQ(textFor(100, 200, 400, 600), "x:50,y:100,w:300,h:200");
  const Lines lines = logs();
  EXPECT_EQ(Lines(lines.end() - 4, lines.end()),
            (Lines{"3 GetScreenRect success! [x,y,w,h=100,200,600,400]\n",
                   "3 After convert x = 0050,y = 0100, w = 0300, h= 0200", "3 pszScreenRect = x:50,y:100,w:300,h:200",
                   "3 0050/0100/0300/0200"}));
}

TEST_F(GetScreenRectTest, RoundsHalvesUp) {
  EXPECT_EQ(textFor(1, 1, 1, 1), "x:1,y:1,w:1,h:1");
  EXPECT_EQ(textFor(3, 3, 3, 3), "x:2,y:2,w:2,h:2");
  EXPECT_EQ(textFor(5, 7, 9, 11), "x:3,y:4,w:6,h:5");
}

TEST_F(GetScreenRectTest, CutsTowardZeroWhatIsNegativeAfterTheHalfWasAdded) {
  EXPECT_EQ(textFor(-1, -2, -3, -4), "x:0,y:0,w:-1,h:-1") << "the sums are 0, -0.5, -1.5 and -1";
  EXPECT_EQ(textFor(-100, -101, -102, -103), "x:-49,y:-50,w:-51,h:-50");
}

TEST_F(GetScreenRectTest, EachNumberIsConvertedByItsOwnSideOfTheBaseScreen) {
  worker.m_baseScrW = 960;
  worker.m_baseScrH = 5400;
  EXPECT_EQ(textFor(1, 20, 40, 3), "x:1,y:2,w:3,h:4");
  EXPECT_EQ(numbers(read().rect), (std::vector<int>{0, 0, 1080, 192})) << "of 0, 0, 1080, 1920";
}

TEST_F(GetScreenRectTest, NumbersThatDoNotFitAnIntAreClamped) {
  worker.m_baseScrW = 96;
  worker.m_baseScrH = 54;
  EXPECT_EQ(textFor(highest, lowest, 3, 4), "x:2147483647,y:-2147483648,w:40,h:30");
  EXPECT_EQ(textFor(3, 4, lowest, highest), "x:30,y:40,w:2147483647,h:-2147483648");
  only(sizeOf(lowest, highest, highest, lowest));
  EXPECT_EQ(numbers(read().rect), (std::vector<int>{lowest, highest, highest, lowest}));
}

TEST_F(GetScreenRectTest, OnABaseScreenWithoutASizeZeroStaysZeroAndAllElseIsClamped) {
  worker.m_baseScrW = 0;
  worker.m_baseScrH = 0;
  EXPECT_EQ(textFor(0, 0, 0, 0), "x:0,y:0,w:0,h:0");
  EXPECT_EQ(textFor(0, 1, 0, -1), "x:0,y:2147483647,w:-2147483648,h:0");
  only(sizeOf(-1, 0, highest, 0));
  EXPECT_EQ(numbers(read().rect), (std::vector<int>{lowest, 0, highest, 0}));
}

TEST_F(GetScreenRectTest, ABaseScreenOfANegativeSizeTurnsTheSign) {
  worker.m_baseScrW = -1920;
  worker.m_baseScrH = -1080;
  EXPECT_EQ(textFor(0, 4, 6, -2), "x:0,y:-1,w:1,h:-2");
}

TEST_F(GetScreenRectTest, ATextThatDoesNotFitItsBufferIsCut) {
  EXPECT_EQ(textFor(highest, highest, highest, highest), "x:1073741824,y:1073741824,w:1073741824,");
  EXPECT_EQ(textFor(lowest, lowest, lowest, lowest), "x:-1073741823,y:-1073741823,w:-10737418");
  const Lines lines = logs();
  EXPECT_EQ(Lines(lines.end() - 4, lines.end()),
            (Lines{"3 GetScreenRect success! [x,y,w,h=-2147483648,-2147483648,-2147483648,-2147483648]\n",
                   "3 After convert x = -1073741823,y = -1073741823, w = -1073741823, h= -1073741823",
                   "3 pszScreenRect = x:-1073741823,y:-1073741823,w:-10737418",
                   "3 -1073741823/-1073741823/-1073741823/-1073741823"}));
}

TEST_F(GetScreenRectTest, ATextOf39CharactersIsWholeAndALongerOneLosesItsEnd) {
  EXPECT_EQ(textFor(2000000, 2000000, 2000000, 2000000), "x:1000000,y:1000000,w:1000000,h:1000000");
  EXPECT_EQ(textFor(20000000, 2000000, 2000000, 2000000), "x:10000000,y:1000000,w:1000000,h:100000");
}

TEST_F(GetScreenRectTest, ATextThatCannotBeHadLeavesTheBufferAsItIs) {
  for (const char* words : {"IVideoControl::GetSize result=0", "IVideoControl::GetSize result=throw",
                            "ISourceControl::GetCurrentSourceInfo result=0"}) {
    only(words);
    const auto [result, text] = getScreenRect();
    EXPECT_EQ(result, 0) << words;
    EXPECT_EQ(text, untouched) << words;
  }
  clearFaults();
  loseVideoControl();
  EXPECT_EQ(getScreenRect().text, untouched);
}

TEST_F(GetScreenRectTest, OutputsThatNobodyWroteAreZero) {
  only("IVideoControl::GetSize result=unwritten");
  EXPECT_EQ(getScreenRect().text, "x:0,y:0,w:0,h:0");
  only("IVideoControl::GetSize result=unwritten");
  const auto [result, rect] = read();
  EXPECT_EQ(result, 1);
  EXPECT_EQ(numbers(rect), (std::vector<int>{0, 0, 0, 0}));
}

TEST_F(GetScreenRectTest, ANullBufferIsRefusedBeforeTheSourceIsRead) {
  EXPECT_EQ(worker.GetScreenRect(nullptr), -3);
  EXPECT_EQ(calls(), Lines());
  EXPECT_EQ(logs(), (Lines{place("GetScreenRect", 0), banner(0, "GetScreenRect")}));
}

TEST_F(GetScreenRectTest, WithoutAVideoControlANullBufferDoesNotMatter) {
  loseVideoControl();
  forget();
  EXPECT_EQ(worker.GetScreenRect(nullptr), 0);
  EXPECT_EQ(logs(), join({{place("GetScreenRect", 0)}, screen::noVideoControl}));
}

TEST_F(GetScreenRectTest, TheRectangleTakesTheThirdOutputForTheWidth) {
  const auto [result, rect] = read();
  EXPECT_EQ(result, 1);
  EXPECT_EQ(numbers(rect), (std::vector<int>{0, 0, 540, 960}));
  EXPECT_EQ(calls(),
            (Lines{askState, askCurrent, "IVideoControl[main#1]::GetSize() x=0 y=0 height=1080 width=1920 -> 1"}));
  EXPECT_EQ(logs(), join({{place("GetScreenRect", 0)}, sourceRead, {"3 GetScreenRect success!\n"}}));

  only(sizeOf(100, 200, 400, 600));
  EXPECT_EQ(numbers(read().rect), (std::vector<int>{50, 100, 200, 300}));
}

TEST_F(GetScreenRectTest, TheRectangleIsRoundedAsTheTextIs) {
  only(sizeOf(1, 3, 5, 7));
  EXPECT_EQ(numbers(read().rect), (std::vector<int>{1, 2, 3, 4}));
  only(sizeOf(-1, -2, -3, -4));
  EXPECT_EQ(numbers(read().rect), (std::vector<int>{0, 0, -1, -1}));
}

TEST_F(GetScreenRectTest, ARectangleIsLeftAsItIsWhereTheSizeIsNotAsked) {
  const std::vector<int> before{11, 12, 13, 14};
  only("ISourceControl::GetCurrentSourceInfo result=0");
  EXPECT_EQ(numbers(read({11, 12, 13, 14}).rect), before);
  clearFaults();
  loseVideoControl();
  EXPECT_EQ(numbers(read({11, 12, 13, 14}).rect), before);
}

TEST_F(GetScreenRectTest, AsksTheWindowDriven) {
  selectPip();
  EXPECT_EQ(getScreenRect().text, "x:648,y:351,w:288,h:162");
  EXPECT_EQ(calls().back(), "IVideoControl[pip#2]::GetSize() x=1296 y=702 height=324 width=576 -> 1");
}

TEST_F(GetScreenRectTest, ReadsBackWhatWasSet) {
  for (const auto& [x, y, w, h] :
       std::vector<std::array<int, 4>>{{480, 270, 480, 270}, {0, 0, 1, 1}, {7, 11, 13, 17}}) {
    EXPECT_EQ(worker.SetScreenRect(x, y, w, h), 1);
    const auto number = [](int value) { return std::to_string(value); };
    EXPECT_EQ(getScreenRect().text, "x:" + number(x) + ",y:" + number(y) + ",w:" + number(w) + ",h:" + number(h));
  }
}

}  // namespace
