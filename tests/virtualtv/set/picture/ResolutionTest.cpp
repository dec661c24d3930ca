// SPDX-License-Identifier: MIT
// The resolution that the set reports for a window's picture, and for the ISP source.
#include "d2tv/CD2tvMgrProxy.h"
#include "d2tv/D2TVCAPI.h"
#include "virtualtv/set/picture/PictureTest.h"

namespace virtualtv::test {
namespace {

constexpr WindowId pip = WindowId::pip;
constexpr int unknown = 136;

class Resolution : public PictureTest {
 protected:
  /// The resolution reported for an HDMI input with this picture.
  std::optional<Told> of(const std::string& picture) {
    turn("input.13.picture", picture);
    switchTo(hdmi1);
    return resolution();
  }

  /// The size of the ISP source's picture, as its manager reports it.
  static std::string ofIsp() {
    unsigned width = 77;
    unsigned height = 78;
    CD2tvMgrProxy* const manager = CD2tvMgrProxy::GetInstance("client");
    if (manager == nullptr) return "no manager";
    const std::string size = manager->GetVideoResolution(&width, &height) == 0 ? "" : "not told ";
    return size + std::to_string(width) + "x" + std::to_string(height);
  }
};

TEST_F(Resolution, IsToldByCodeAndNumbers) {
  EXPECT_EQ(resolution(), (Told{4, 1920, 1080, 25, 28125}));
}

TEST_F(Resolution, HasACodeForTheUsualSizes) {
  const std::map<std::string, Told> wanted{
      {"640x480@60", {0, 640, 480, 60, 31500}},      {"720x480@60", {1, 720, 480, 60, 31500}},
      {"720x576@25", {2, 720, 576, 25, 15625}},      {"720x576@50", {2, 720, 576, 50, 31250}},
      {"1280x720@50", {3, 1280, 720, 50, 37500}},    {"1280x720@60", {3, 1280, 720, 60, 45000}},
      {"1920x1080@50", {4, 1920, 1080, 50, 56250}},  {"1920x1080@60", {4, 1920, 1080, 60, 67500}},
      {"3840x2160@50", {29, 3840, 2160, 50, 112500}}};
  for (const auto& [picture, told] : wanted) EXPECT_EQ(of(picture), told) << picture;
}

TEST_F(Resolution, HasNoCodeForOtherSizes) {
  EXPECT_EQ(of("1024x768@60"), (Told{unknown, 1024, 768, 60, 768 * 60})) << "all lines carry the picture";
  EXPECT_EQ(of("1440x1080@25"), (Told{unknown, 1440, 1080, 25, 28125}));
  EXPECT_EQ(of("1080x1920@25"), (Told{unknown, 1080, 1920, 25, 1920 * 25}));
  EXPECT_EQ(of("1x1@1"), (Told{unknown, 1, 1, 1, 1}));
}

TEST_F(Resolution, OfAHugePictureHasAsManyLinesAsANumberHolds) {
  const unsigned most = 2147483647;
  EXPECT_EQ(of("2147483647x2147483647@2147483647"), (Told{unknown, most, most, most, 4294967295}));
  EXPECT_EQ(of("1x2147483647@2"), (Told{unknown, 1, most, 2, 4294967294}));
  EXPECT_EQ(of("1x2147483647@3"), (Told{unknown, 1, most, 3, 4294967295}));
  EXPECT_EQ(of("1x2160@2147483647"), (Told{unknown, 1, 2160, most, 4294967295}));
}

TEST_F(Resolution, CannotBeToldWithoutAPicture) {
  EXPECT_EQ(resolution(pip), std::nullopt);
  leaveSource();
  EXPECT_EQ(resolution(), std::nullopt);
}

TEST_F(Resolution, IsOfEachWindowsOwnPicture) {
  switchTo(hdmi2, pip);
  EXPECT_EQ(resolution(pip), (Told{29, 3840, 2160, 50, 112500}));
  EXPECT_EQ(resolution(), (Told{4, 1920, 1080, 25, 28125}));
}

TEST_F(Resolution, DoesNotDependOnThePlane) {
  const auto before = resolution();
  place({1, 2, 3, 4});
  crop({0, 0, 10, 10}, {0, 0, 20, 20});
  mute(1);
  EXPECT_EQ(resolution(), before);
}

TEST_F(Resolution, TellsTheCodeThatItIsSetTo) {
  for (const int code : {-1, 0, 18, 137, 154, -2147483647, 2147483647}) {
    turn("main.resolution", std::to_string(code));
    EXPECT_EQ(resolution(), (Told{code, 1920, 1080, 25, 28125}));
  }
  EXPECT_EQ(resolution(pip), std::nullopt) << "of its window only";
  turn("main.resolution", "auto");
  EXPECT_EQ(resolution(), (Told{4, 1920, 1080, 25, 28125}));
}

TEST_F(Resolution, TellsTheCodeThatItIsSetToAlsoWithoutAPicture) {
  turn("pip.resolution", "21");
  EXPECT_EQ(resolution(pip), (Told{21, 0, 0, 0, 0}));
}

// The ISP source.

TEST_F(Resolution, OfTheIspSourceIsToldWhileItIsShown) {
  EXPECT_EQ(ofIsp(), "not told 77x78");
  ASSERT_EQ(D2TVCAPI_setSourceISP(), 1);
  EXPECT_EQ(ofIsp(), "1920x1080");
  switchTo(hdmi1);
  EXPECT_EQ(ofIsp(), "not told 77x78");
}

TEST_F(Resolution, OfTheIspSourceIsWhatItIsSetTo) {
  turn("isp.picture", "1280x720");
  tv->showIsp();
  EXPECT_EQ(ofIsp(), "1280x720");
  turn("isp.picture", "2147483647x1");
  EXPECT_EQ(ofIsp(), "2147483647x1");
}

TEST_F(Resolution, OfTheIspSourceDoesNotDependOnTheTvServicesPicture) {
  tv->showIsp();
  leaveSource();
  EXPECT_EQ(ofIsp(), "1920x1080");
}

TEST_F(Resolution, OfTheIspSourceNeedsTheSecondStack) {
  tv->showIsp();
  turn("isp.present", "off");
  EXPECT_EQ(ofIsp(), "no manager");
}

}  // namespace
}  // namespace virtualtv::test
