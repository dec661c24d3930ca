// SPDX-License-Identifier: MIT
// The rectangle of the picture's active format, and the position and size modes, which this plug-in does not have.
#include <limits>

#include "Screen.h"

namespace {

using screen::ScreenTest;
using screen::untouched;
using support::banner;
using support::join;
using support::Lines;
using support::place;

constexpr int lowest = std::numeric_limits<int>::min();

class AfdTest : public ScreenTest {
 protected:
  std::string textFor(int x, int y, int w, int h) {
    only("IVideoControl::GetAFDGeometryRectSize result=1 out.x=" + std::to_string(x) + " out.y=" + std::to_string(y) +
         " out.width=" + std::to_string(w) + " out.height=" + std::to_string(h));
    const auto [result, text] = getAfd();
    EXPECT_EQ(result, 1);
    EXPECT_TRUE(faultsHit());
    return text;
  }
};

TEST_F(AfdTest, TellsTheRectangleInBaseSpace) {
  EXPECT_EQ(textFor(240, 0, 1440, 1080), "x:240,y:0,w:1440,h:1080");
  EXPECT_EQ(calls(), Lines{"IVideoControl[main#1]::GetAFDGeometryRectSize() x=240 y=0 width=1440 height=1080 -> 1 "
                           "[fault]"});
  EXPECT_EQ(logs(),
            (Lines{place("GetAFDGeometryRectSize", 0), "3 GetAFDGeometryRectSize success! [x,y,w,h=240,0,1440,1080]\n",
                   "3 pszAFDRect = x:240,y:0,w:1440,h:1080"}));
}

TEST_F(AfdTest, DoesNotConvertWhateverTheBaseScreenIs) {
  worker.m_baseScrW = 3840;
  worker.m_baseScrH = 2160;
  EXPECT_EQ(textFor(1, 3, 5, 7), "x:1,y:3,w:5,h:7");
}

TEST_F(AfdTest, DoesNotCareForTheSource) {
  loseSourceControl();
  EXPECT_EQ(textFor(1, 3, 5, 7), "x:1,y:3,w:5,h:7");
  EXPECT_EQ(calls().size(), 1U);
}

TEST_F(AfdTest, FollowsTheRectangleOfTheWindow) {
  EXPECT_EQ(worker.SetScreenRect(480, 270, 480, 270), 1);
  EXPECT_EQ(getAfd().text, "x:960,y:540,w:960,h:540");
}

TEST_F(AfdTest, ATextThatDoesNotFitItsBufferIsCut) {
  EXPECT_EQ(textFor(lowest, lowest, lowest, lowest), "x:-2147483648,y:-2147483648,w:-21474836");
  EXPECT_EQ(logs(),
            (Lines{place("GetAFDGeometryRectSize", 0),
                   "3 GetAFDGeometryRectSize success! [x,y,w,h=-2147483648,-2147483648,-2147483648,-2147483648]\n",
                   "3 pszAFDRect = x:-2147483648,y:-2147483648,w:-21474836"}));
}

TEST_F(AfdTest, ATextThatCannotBeHadLeavesTheBufferAsItIs) {
  for (const char* way : {"result=0", "result=-1", "result=throw"}) {
    only(std::string("IVideoControl::GetAFDGeometryRectSize ") + way);
    const auto [result, text] = getAfd();
    EXPECT_EQ(result, 0) << way;
    EXPECT_EQ(text, untouched) << way;
  }
  loseVideoControl();
  EXPECT_EQ(getAfd().text, untouched);
}

TEST_F(AfdTest, OutputsThatNobodyWroteAreZero) {
  only("IVideoControl::GetAFDGeometryRectSize result=unwritten");
  EXPECT_EQ(getAfd().text, "x:0,y:0,w:0,h:0");
}

TEST_F(AfdTest, ANullBufferIsRefusedBeforeTheVideoControlIsAsked) {
  EXPECT_EQ(worker.GetAFDGeometryRectSize(nullptr), -3);
  EXPECT_EQ(calls(), Lines());
  EXPECT_EQ(logs(), (Lines{place("GetAFDGeometryRectSize", 0), banner(0, "GetAFDGeometryRectSize")}));
}

TEST_F(AfdTest, WithoutAVideoControlANullBufferDoesNotMatter) {
  loseVideoControl();
  forget();
  EXPECT_EQ(worker.GetAFDGeometryRectSize(nullptr), 0);
  EXPECT_EQ(logs(), join({{place("GetAFDGeometryRectSize", 0)}, screen::noVideoControl}));
}

using ModeTest = ScreenTest;

TEST_F(ModeTest, ModesAreNotTold) {
  auto position = static_cast<_PL_WINDOW_POSITION_MODE>(-77);
  EXPECT_EQ(worker.GetScreenRect_PosMode(&position), 0);
  EXPECT_EQ(position, -77);
  EXPECT_EQ(logs(), Lines{place("GetScreenRect_PosMode", 0)});
  auto size = static_cast<_PL_WINDOW_RECT_SIZE_MODE>(-77);
  EXPECT_EQ(worker.GetScreenRect_SizeMode(&size), 0);
  EXPECT_EQ(size, -77);
  EXPECT_EQ(logs(), Lines{place("GetScreenRect_SizeMode", 0)});
  EXPECT_EQ(calls(), Lines());
}

TEST_F(ModeTest, ANullModeIsRefused) {
  EXPECT_EQ(worker.GetScreenRect_PosMode(nullptr), -3);
  EXPECT_EQ(logs(), (Lines{place("GetScreenRect_PosMode", 0), banner(0, "GetScreenRect_PosMode")}));
  EXPECT_EQ(worker.GetScreenRect_SizeMode(nullptr), -3);
  EXPECT_EQ(logs(), (Lines{place("GetScreenRect_SizeMode", 0), banner(0, "GetScreenRect_SizeMode")}));
  EXPECT_EQ(calls(), Lines());
}

TEST_F(ModeTest, ModesCannotBeSet) {
  for (const int mode : {0, 1, 9, -1, lowest}) {
    EXPECT_EQ(worker.SetScreenRect_PosSizeMode(static_cast<_PL_WINDOW_POSITION_MODE>(mode),
                                               static_cast<_PL_WINDOW_RECT_SIZE_MODE>(mode)),
              -1);
    EXPECT_EQ(logs(), Lines{place("SetScreenRect_PosSizeMode", 0)});
  }
  EXPECT_EQ(calls(), Lines());
  EXPECT_EQ(planeOf(), virtualtv::baseScreen);
}

}  // namespace
