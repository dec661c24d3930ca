// SPDX-License-Identifier: MIT
// Rectangles between the plug-in's space and the base screen: special values. ConversionTest has all others.
#include "Screen.h"

namespace {

using screen::getAfd;
using screen::getScreenRect;
using screen::highest;
using screen::lowest;
using screen::numbers;
using screen::Rect;
using screen::sizeOf;

class RectTest : public screen::ScreenTest {
 protected:
  /// The arguments of the size call for a rectangle in plug-in space. The set accepts every rectangle here.
  std::string sent(int x, int y, int w, int h) {
    EXPECT_EQ(under("IVideoControl::SetSize result=1", [&] { return worker.SetScreenRect(x, y, w, h); }), 1);
    const std::string call = calls().back();
    return call.substr(call.find('('), call.find(" -> ") - call.find('('));
  }

  /// The text for these outputs of the size query, in the order in which the query writes them.
  std::string text(int x, int y, int third, int fourth) {
    return under(sizeOf(x, y, third, fourth), [this] { return query(getScreenRect).text; });
  }
  /// The rectangle for these outputs.
  std::vector<int> rectangle(int x, int y, int third, int fourth) {
    Rect rect{};
    EXPECT_EQ(under(sizeOf(x, y, third, fourth), [&] { return worker.GetScreenRect(rect); }), 1);
    return numbers(rect);
  }
  std::string activeFormat(int x, int y, int w, int h) {
    const std::string words = "IVideoControl::GetAFDGeometryRectSize result=1 out.x=" + std::to_string(x) +
                              " out.y=" + std::to_string(y) + " out.width=" + std::to_string(w) +
                              " out.height=" + std::to_string(h);
    return under(words, [this] { return query(getAfd).text; });
  }
};

// Placing the picture.

TEST_F(RectTest, ANegativePlaceIsTheDefaultSizeWhateverTheOtherNumbersAre) {
  for (const Rect& rect : {Rect{-1, 0, 0, 0}, Rect{-2, -1, -1, -1}, Rect{lowest, lowest, lowest, lowest},
                           Rect{-1, highest, highest, highest}}) {
    EXPECT_EQ(worker.SetScreenRect(1, 2, 3, 4), 1);
    EXPECT_EQ(worker.SetScreenRect(rect.x, rect.y, rect.width, rect.height), 1);
    EXPECT_EQ(calls().back(), "IVideoControl[main#1]::SetDefaultSize() -> 1");
    EXPECT_EQ(planeOf(), virtualtv::baseScreen);
  }
  EXPECT_EQ(sent(0, -1, -2, -3), "(x=0, y=-2, height=-6, width=-4)") << "no other number chooses it";
}

TEST_F(RectTest, ConvertsByMultiplyingFirstAndCuttingTowardZero) {
  setBase(1366, 768);
  EXPECT_EQ(sent(100, 100, 959, 539), "(x=142, y=142, height=766, width=1364)");
  EXPECT_EQ(sent(0, -1, -2, -5), "(x=0, y=-1, height=-7, width=-2)") << "-1.4, -7.1 and -2.8";
  setBase(720, 400);
  EXPECT_EQ(sent(1, 1, 3, 2), "(x=0, y=0, height=1, width=2)");
  setBase(960, 5400);
  EXPECT_EQ(sent(1, 2, 3, 4), "(x=1, y=20, height=40, width=3)") << "each by its own side";
  setBase(0, 0);
  EXPECT_EQ(sent(0, -1, 480, highest), "(x=0, y=0, height=0, width=0)");
}

TEST_F(RectTest, NumbersBeyondAnIntInBaseSpaceAreClamped) {
  EXPECT_EQ(sent(1073741823, -1073741824, 1073741823, -1073741824),
            "(x=2147483646, y=-2147483648, height=-2147483648, width=2147483646)");
  EXPECT_EQ(sent(1073741824, -1073741825, highest, lowest),
            "(x=2147483647, y=-2147483648, height=-2147483648, width=2147483647)");
}

TEST_F(RectTest, PlacesTheWindowDriven) {
  selectPip();
  EXPECT_EQ(worker.SetScreenRect(480, 270, 240, 90), 1);
  EXPECT_EQ(planeOf(virtualtv::WindowId::pip), (virtualtv::Rect{960, 540, 480, 180}));
  EXPECT_EQ(planeOf(), virtualtv::baseScreen);
}

// Reporting its place.

TEST_F(RectTest, TheTextTakesTheThirdOutputForTheHeightAndTheRectangleForTheWidth) {
  EXPECT_EQ(text(100, 200, 400, 600), "x:50,y:100,w:300,h:200");
  EXPECT_EQ(rectangle(100, 200, 400, 600), (std::vector<int>{50, 100, 200, 300}));
}

TEST_F(RectTest, RoundsHalvesUpAndCutsTowardZeroWhatIsNegativeThen) {
  EXPECT_EQ(text(5, 7, 9, 11), "x:3,y:4,w:6,h:5");
  EXPECT_EQ(text(-1, -2, -3, -4), "x:0,y:0,w:-1,h:-1") << "the sums are 0, -0.5, -1.5 and -1";
  EXPECT_EQ(rectangle(-1, -2, -3, -4), (std::vector<int>{0, 0, -1, -1}));
}

TEST_F(RectTest, TellsEachNumberByItsOwnSideOfTheBaseScreen) {
  setBase(960, 5400);
  EXPECT_EQ(text(1, 20, 40, 3), "x:1,y:2,w:3,h:4");
  setBase(-1920, -1080);
  EXPECT_EQ(text(0, 4, 6, -2), "x:0,y:-1,w:1,h:-2") << "a negative size turns the sign";
  setBase(0, 0);
  EXPECT_EQ(text(0, 1, 0, -1), "x:0,y:2147483647,w:-2147483648,h:0") << "0 stays 0, all else is clamped";
  EXPECT_EQ(rectangle(-1, 0, highest, 0), (std::vector<int>{lowest, 0, highest, 0}));
}

TEST_F(RectTest, NumbersThatDoNotFitAnIntAreClamped) {
  setBase(96, 54);
  EXPECT_EQ(text(highest, lowest, 3, 4), "x:2147483647,y:-2147483648,w:40,h:30");
  EXPECT_EQ(rectangle(lowest, highest, highest, lowest), (std::vector<int>{lowest, highest, highest, lowest}));
}

TEST_F(RectTest, ATextThatDoesNotFitItsBufferIsCut) {
  EXPECT_EQ(text(2000000, 2000000, 2000000, 2000000), "x:1000000,y:1000000,w:1000000,h:1000000") << "39 characters";
  EXPECT_EQ(text(20000000, 2000000, 2000000, 2000000), "x:10000000,y:1000000,w:1000000,h:100000");
  EXPECT_EQ(text(lowest, lowest, lowest, lowest), "x:-1073741823,y:-1073741823,w:-10737418");
  EXPECT_EQ(activeFormat(lowest, lowest, lowest, lowest), "x:-2147483648,y:-2147483648,w:-21474836");
}

TEST_F(RectTest, TheActiveFormatIsToldInBaseSpaceWhateverItsSize) {
  setBase(3840, 2160);
  EXPECT_EQ(activeFormat(1, 3, 5, 7), "x:1,y:3,w:5,h:7");
}

}  // namespace
