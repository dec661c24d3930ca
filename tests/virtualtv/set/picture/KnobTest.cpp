// SPDX-License-Identifier: MIT
// The knobs of pictures and planes: what they print, take and refuse, and what survives a restart.
#include "virtualtv/set/picture/PictureTest.h"

namespace virtualtv::test {
namespace {

class PictureKnobs : public PictureTest {
 protected:
  /// The knobs of a window's plane and picture, on one line.
  std::string all(const std::string& window) {
    std::string line;
    for (const char* name : {"picture", "resolution", "rect", "crop", "display", "active", "order", "muted"}) {
      line += (line.empty() ? "" : " ") + knob(window + "." + name);
    }
    return line;
  }
};

TEST_F(PictureKnobs, TellWhatAWindowShowsAndWhere) {
  EXPECT_EQ(all("main"), "1920x1080@25 auto 0,0,1920,1080 0,0,1920,1080 0,0,1920,1080 0,0,1920,1080 0 off");
  EXPECT_EQ(all("pip"), "none auto 1296,702,576,324 none none none 0 off");
}

TEST_F(PictureKnobs, FollowThePlane) {
  place({100, 50, 800, 800}, WindowId::pip);
  crop({1, 2, 3, 4}, {-5, 6, 7, 8}, WindowId::pip);
  order(2, WindowId::pip);
  mute(1, WindowId::pip);
  EXPECT_EQ(all("pip"), "none auto 100,50,800,800 1,2,3,4 -5,6,7,8 none 2 on");
  switchTo(hdmi2, WindowId::pip);
  EXPECT_EQ(all("pip"), "3840x2160@50 auto 100,50,800,800 1,2,3,4 -5,6,7,8 -5,8,7,3 2 on");
  place({100, 50, 800, 800}, WindowId::pip);
  EXPECT_EQ(all("pip"), "3840x2160@50 auto 100,50,800,800 0,0,3840,2160 100,50,800,800 100,225,800,450 2 on");
}

TEST_F(PictureKnobs, OfPlanesCanOnlyBeRead) {
  for (const char* name : {"picture", "rect", "crop", "display", "active", "order", "muted"}) {
    const std::string knob = std::string("main.") + name;
    EXPECT_EQ(refusal(knob, "1"), "'" + knob + "' can only be read");
  }
}

TEST_F(PictureKnobs, PrintWhatTheyTake) {
  const std::vector<std::pair<std::string, std::string>> turns{
      {"isp.picture", "1280x720"},        {"isp.picture", "1x2147483647"},
      {"input.13.picture", "720x576@50"}, {"input.0.picture", "2147483647x1@1"},
      {"main.resolution", "-5"},          {"pip.resolution", "2147483647"},
      {"pip.resolution", "auto"}};
  for (const auto& [name, value] : turns) {
    EXPECT_EQ(refusal(name, value), "");
    EXPECT_EQ(knob(name), value);
  }
}

TEST_F(PictureKnobs, RefuseWhatIsNoSize) {
  const TvState before = tv->state();
  const std::uint64_t revision = tv->revision();
  for (const std::string size : {"", "x", "1280", "1280x", "x720", "0x720", "1280x0", "-1x720", "1280x-720", "1280X720",
                                 "1280 x 720", "1280x720x2", "axb", "1280.5x720", "2147483648x1", "+1x1"}) {
    EXPECT_EQ(refusal("isp.picture", size),
              "'" + size + "': WIDTHxHEIGHT is wanted, each a number from 1 to 2147483647");
    for (const std::string& picture : {size, size + "@50"}) {
      EXPECT_EQ(refusal("input.13.picture", picture),
                "'" + picture + "': WIDTHxHEIGHT@RATE is wanted, each a number from 1 to 2147483647");
    }
  }
  for (const std::string picture : {"1280x720", "1280x720@", "1280x720@0", "1280x720@-5", "1280x720@50@50",
                                    "1280@720x50", "1280x720@fifty", "1280x720@99999999999"}) {
    EXPECT_EQ(refusal("input.13.picture", picture),
              "'" + picture + "': WIDTHxHEIGHT@RATE is wanted, each a number from 1 to 2147483647");
  }
  EXPECT_EQ(tv->state(), before);
  EXPECT_EQ(tv->revision(), revision);
}

TEST_F(PictureKnobs, RefuseWhatIsNoCodeNoWindowNoInput) {
  for (const std::string code : {"", "Auto", "4.5", "x", "2147483648"}) {
    EXPECT_EQ(refusal("main.resolution", code),
              "a number from -2147483648 to 2147483647 or auto is wanted, not '" + code + "'");
  }
  EXPECT_EQ(refusal("third.resolution", "4"), "there is no window 'third'; there are main and pip");
  EXPECT_EQ(refusal("input.99.picture", "720x576@25"), "the set has no input 99");
  EXPECT_EQ(refusal("input.x.picture", "720x576@25"), "the set has no input x");
  EXPECT_THROW(knob("main.picture.width"), std::invalid_argument);
  EXPECT_THROW(knob("third.rect"), std::invalid_argument);
  EXPECT_THROW(knob("input.99.picture"), std::invalid_argument);
}

TEST_F(PictureKnobs, AreToldToListeners) {
  noteEvents();
  turn("pip.resolution", "4");
  turn("isp.picture", "1280x720");
  turn("input.13.picture", "1280x720@50");
  ASSERT_EQ(events.size(), 3U);
  EXPECT_EQ(changeOf<KnobChanged>(events[0]).name, "pip.resolution");
  EXPECT_EQ(changeOf<KnobChanged>(events[0]).before, "auto");
  EXPECT_EQ(changeOf<KnobChanged>(events[0]).after, "4");
  EXPECT_EQ(changeOf<IspChanged>(events[1]).after.width, 1280);
  EXPECT_EQ(changeOf<InputChanged>(events[2]).after.picture.rate, 50);
}

TEST_F(PictureKnobs, OfWhatComesInAreKeptAndTheCodeThatIsToldIsNot) {
  constexpr int scart = 17;
  switchTo(scart);
  turn("isp.picture", "1280x720");
  turn("input.17.picture", "1920x1080@50");
  const TvState before = tv->state();
  turn("main.resolution", "21");
  restart();
  EXPECT_EQ(tv->state(), before);
  EXPECT_EQ(knob("isp.picture"), "1280x720");
  EXPECT_EQ(all("main"), "1920x1080@50 auto 0,0,1920,1080 0,0,1920,1080 0,0,1920,1080 240,0,1440,1080 0 off");
}

TEST_F(PictureKnobs, OfAServiceAreKeptWithIt) {
  tv->import({serviceOf(10, 0, 1)}, false);
  turn("service.10.picture_width", "720");
  turn("service.10.picture_shape", "1");
  restart();
  EXPECT_EQ(knob("main.picture"), "720x1080@25");
  EXPECT_EQ(knob("main.active"), "240,0,1440,1080");
}

}  // namespace
}  // namespace virtualtv::test
