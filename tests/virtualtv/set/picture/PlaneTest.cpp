// SPDX-License-Identifier: MIT
// The planes of the windows: their position, the part of the picture that they show, their order, and whether they are
// hidden.
#include <climits>

#include "virtualtv/set/picture/PictureTest.h"

namespace virtualtv::test {
namespace {

constexpr WindowId pip = WindowId::pip;

/// Rectangles without content.
std::vector<Rect> emptyRects() {
  std::vector<Rect> rects;
  for (const int side : {0, -1, INT_MIN}) {
    rects.push_back({10, 20, side, 30});
    rects.push_back({10, 20, 30, side});
    rects.push_back({10, 20, side, side});
  }
  return rects;
}

/// Unusual rectangles with content.
std::vector<Rect> oddRects() {
  return {{-300, -200, 1920, 1080},
          {5000, 4000, 10, 10},
          {0, 0, 1, 1},
          {INT_MIN, INT_MIN, 1, 1},
          {INT_MAX, INT_MAX, INT_MAX, INT_MAX},
          {INT_MIN, INT_MIN, INT_MAX, INT_MAX}};
}

class Planes : public PictureTest {
 protected:
  Planes() { noteEvents(); }

  /// Checks that nothing has changed since then and that no change was reported.
  void expectNothingSince(const TvState& before, std::uint64_t revision) {
    EXPECT_EQ(tv->state(), before);
    EXPECT_EQ(tv->revision(), revision);
  }
};

TEST_F(Planes, TheMainWindowFillsTheScreenAndTheOtherStandsInItsCorner) {
  EXPECT_EQ(rect(), "0,0,1920x1080");
  EXPECT_EQ(rect(pip), "1296,702,576x324");
  for (const WindowId id : windowIds) {
    EXPECT_EQ(plane(id).order, 0) << nameOf(id);
    EXPECT_FALSE(plane(id).muted) << nameOf(id);
    EXPECT_EQ(plane(id).crop, std::nullopt) << nameOf(id);
  }
}

TEST_F(Planes, EachWindowIsPlacedOnItsOwn) {
  EXPECT_GE(place({960, 540, 800, 450}), 1);
  EXPECT_EQ(rect(), "960,540,800x450");
  EXPECT_EQ(rect(pip), "1296,702,576x324");
  EXPECT_GE(place({1, 2, 3, 4}, pip), 1);
  EXPECT_EQ(rect(), "960,540,800x450");
  EXPECT_EQ(rect(pip), "1,2,3x4");
}

TEST_F(Planes, EachWindowGoesBackToItsOwnPlace) {
  place({1, 2, 3, 4});
  place({5, 6, 7, 8}, pip);
  EXPECT_GE(placeDefault(), 1);
  EXPECT_EQ(rect(), "0,0,1920x1080");
  EXPECT_EQ(rect(pip), "5,6,7x8");
  EXPECT_GE(placeDefault(pip), 1);
  EXPECT_EQ(rect(pip), "1296,702,576x324");
}

TEST_F(Planes, AnEmptyPlaceIsRefused) {
  place({100, 100, 640, 360});
  crop({0, 0, 10, 10}, {0, 0, 20, 20});
  const TvState before = tv->state();
  const std::uint64_t revision = tv->revision();
  for (const Rect& empty : emptyRects()) EXPECT_EQ(place(empty), 0) << empty.width << "x" << empty.height;
  expectNothingSince(before, revision);
}

TEST_F(Planes, APlaceMayBeOddAndIsToldAsItWasGiven) {
  for (const Rect& odd : oddRects()) {
    EXPECT_GE(place(odd), 1);
    EXPECT_EQ(plane().rect, odd);
    EXPECT_NE(active(), "none");
  }
}

TEST_F(Planes, StandWhateverTheyShow) {
  place({10, 20, 300, 200});
  order(2);
  mute(1);
  crop({0, 0, 100, 100}, {50, 50, 200, 200});
  const Plane before = plane();
  switchTo(hdmi1);
  EXPECT_EQ(plane(), before);
  leaveSource();
  EXPECT_EQ(plane(), before);
  tv->import({serviceOf(10, 0, 1)}, false);
  EXPECT_EQ(plane(), before);
  switchTo(antennaInput, 10);
  EXPECT_EQ(plane(), before);
  tv->showIsp();
  EXPECT_EQ(plane(), before);
}

// The crop.

TEST_F(Planes, WithoutACropTheWholePictureStandsInThePlane) {
  EXPECT_EQ(cropped(), "0,0,1920x1080 at 0,0,1920x1080");
  place({100, 50, 640, 360});
  EXPECT_EQ(cropped(), "0,0,1920x1080 at 100,50,640x360");
  switchTo(hdmi2);
  EXPECT_EQ(cropped(), "0,0,3840x2160 at 100,50,640x360");
}

TEST_F(Planes, WithoutAPictureAndWithoutACropThereIsNoneToTell) {
  EXPECT_EQ(cropped(pip), "none");
}

TEST_F(Planes, ACropIsToldAsItWasGivenAndLeavesThePlaceAlone) {
  place({100, 50, 640, 360});
  EXPECT_GE(crop({480, 270, 960, 540}, {0, 0, 1280, 720}), 1);
  EXPECT_EQ(cropped(), "480,270,960x540 at 0,0,1280x720");
  EXPECT_EQ(rect(), "100,50,640x360");
  EXPECT_EQ(cropped(pip), "none");
}

TEST_F(Planes, ACropIsToldWithoutAPictureToo) {
  EXPECT_GE(crop({0, 0, 960, 540}, {0, 0, 100, 100}, pip), 1);
  EXPECT_EQ(cropped(pip), "0,0,960x540 at 0,0,100x100");
}

TEST_F(Planes, TheNextCropTakesTheLastOnesPlace) {
  crop({480, 270, 960, 540}, {0, 0, 1280, 720});
  EXPECT_GE(crop({1, 2, 3, 4}, {5, 6, 7, 8}), 1);
  EXPECT_EQ(cropped(), "1,2,3x4 at 5,6,7x8");
}

TEST_F(Planes, APlaceEndsACrop) {
  crop({480, 270, 960, 540}, {0, 0, 1280, 720});
  place({100, 50, 640, 360});
  EXPECT_EQ(cropped(), "0,0,1920x1080 at 100,50,640x360");
  crop({480, 270, 960, 540}, {0, 0, 1280, 720});
  placeDefault();
  EXPECT_EQ(cropped(), "0,0,1920x1080 at 0,0,1920x1080");
}

TEST_F(Planes, APlaceEndsTheCropOfItsWindowOnly) {
  crop({1, 2, 3, 4}, {5, 6, 7, 8});
  place({0, 0, 100, 100}, pip);
  EXPECT_EQ(cropped(), "1,2,3x4 at 5,6,7x8");
}

TEST_F(Planes, ACropWithAnEmptyRectangleIsRefused) {
  crop({1, 2, 3, 4}, {5, 6, 7, 8});
  const TvState before = tv->state();
  const std::uint64_t revision = tv->revision();
  for (const Rect& empty : emptyRects()) {
    EXPECT_EQ(crop(empty, {0, 0, 10, 10}), 0);
    EXPECT_EQ(crop({0, 0, 10, 10}, empty), 0);
    EXPECT_EQ(crop(empty, empty), 0);
  }
  expectNothingSince(before, revision);
}

TEST_F(Planes, ACropMayBeOdd) {
  for (const Rect& part : oddRects()) {
    for (const Rect& display : oddRects()) {
      EXPECT_GE(crop(part, display), 1);
      EXPECT_EQ(plane().crop, (Crop{part, display}));
      EXPECT_NE(active(), "none");
    }
  }
}

// Order and mute.

TEST_F(Planes, TheOrderIsAnyNumberFromZeroOn) {
  for (const int wanted : {2, 0, 1, INT_MAX}) {
    EXPECT_GE(order(wanted), 0);
    EXPECT_EQ(plane().order, wanted);
  }
  EXPECT_EQ(plane(pip).order, 0);
  EXPECT_GE(order(7, pip), 0);
  EXPECT_EQ(plane().order, INT_MAX);
}

TEST_F(Planes, ANegativeOrderIsRefused) {
  order(2);
  const TvState before = tv->state();
  const std::uint64_t revision = tv->revision();
  for (const int wanted : {-1, INT_MIN}) EXPECT_LT(order(wanted), 0);
  expectNothingSince(before, revision);
}

TEST_F(Planes, EachWindowIsHiddenOnItsOwn) {
  EXPECT_EQ(mute(1, pip), 1);
  EXPECT_TRUE(plane(pip).muted);
  EXPECT_FALSE(plane().muted);
  EXPECT_EQ(mute(1, pip), 1) << "again";
  EXPECT_EQ(mute(0, pip), 1);
  EXPECT_FALSE(plane(pip).muted);
}

TEST_F(Planes, HidingTakesOneOrZero) {
  mute(1);
  const TvState before = tv->state();
  const std::uint64_t revision = tv->revision();
  for (const int wanted : {2, -1, INT_MAX, INT_MIN}) EXPECT_EQ(mute(wanted), 0) << wanted;
  expectNothingSince(before, revision);
}

TEST_F(Planes, AHiddenPictureIsStillThere) {
  mute(1);
  EXPECT_EQ(rect(), "0,0,1920x1080");
  EXPECT_EQ(active(), "0,0,1920x1080");
  EXPECT_EQ(knob("main.picture"), "1920x1080@25");
}

// What is reported and persisted.

TEST_F(Planes, EachChangeIsToldOnceWithItsWindow) {
  place({1, 2, 3, 4}, pip);
  placeDefault();  // it is there already
  crop({1, 2, 3, 4}, {5, 6, 7, 8});
  placeDefault();
  order(2, pip);
  mute(1);
  const std::vector<WindowId> windows{pip, WindowId::main, WindowId::main, pip, WindowId::main};
  ASSERT_EQ(events.size(), windows.size());
  for (std::size_t index = 0; index < events.size(); ++index) {
    EXPECT_EQ(changeOf<PlaneChanged>(events[index]).window, windows[index]) << index;
    EXPECT_EQ(events[index].revision, events[0].revision + index) << index;
  }
  EXPECT_EQ(tv->revision(), events.back().revision);
}

TEST_F(Planes, StandWhereTheyBelongWhenTheSetIsSwitchedOn) {
  const TvState before = tv->state();
  for (const WindowId id : windowIds) {
    place({1, 2, 3, 4}, id);
    crop({1, 2, 3, 4}, {5, 6, 7, 8}, id);
    order(2, id);
    mute(1, id);
  }
  restart();
  EXPECT_EQ(tv->state(), before);
}

TEST_F(Planes, AResetPutsThemWhereTheyBelong) {
  const TvState before = tv->state();
  place({1, 2, 3, 4});
  mute(1, pip);
  tv->reset();
  EXPECT_EQ(tv->state(), before);
}

TEST_F(Planes, AreMovedAlsoByASetThatCannotKeepAnything) {
  breakStore();
  EXPECT_GE(place({1, 2, 3, 4}), 1);
  EXPECT_EQ(rect(), "1,2,3x4");
  EXPECT_EQ(tv->takeComplaints(), std::vector<std::string>());
}

}  // namespace
}  // namespace virtualtv::test
