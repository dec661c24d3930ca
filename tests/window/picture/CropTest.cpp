// SPDX-License-Identifier: MIT
// Cropping the picture, and reading the crop.
#include <climits>
#include <functional>

#include "Picture.h"

namespace {

using picture::askSource;
using picture::mainVideo;
using picture::noVideoControl;
using picture::Rect;
using picture::sourceLogs;
using support::caught;
using support::join;
using support::Lines;
using virtualtv::WindowId;

const std::string cropped = "3 SetSize success!\n";
const std::string cropRead = "3 GetScreenCropRect success!\n";
const std::string setCropArea = mainVideo + "SetCropArea";

std::string sent(const std::string& crop, const std::string& display, const std::string& result = "1") {
  return setCropArea + "(crop=" + crop + ", display=" + display + ") -> " + result;
}

bool operator==(const Rect& rect, const std::vector<int>& values) {
  return std::vector<int>{rect.x, rect.y, rect.width, rect.height} == values;
}

/// Faults that hide the window's source, and the log lines after the first ones of reading it.
struct NoSource {
  std::string words;
  Lines lines;
};
const std::vector<NoSource> noSources{
    {"ISourceControl::GetSourceState result=throw",
     {caught("t_GetCurrentSourceInfo", "ISourceControl::GetSourceState")}},
    {"ISourceControl::GetCurrentSourceInfo result=0", {"3 GetSourceState = 2", "0 GetCurrentSourceInfo failed"}},
    {"ISourceControl::GetCurrentSourceInfo result=-1", {"3 GetSourceState = 2", "0 GetCurrentSourceInfo failed"}},
    {"ISourceControl::GetCurrentSourceInfo result=throw",
     {"3 GetSourceState = 2", caught("t_GetCurrentSourceInfo", "ISourceControl::GetCurrentSourceInfo"),
      "0 GetCurrentSourceInfo failed"}},
    {"ISourceControl::GetCurrentSourceInfo result=unwritten",
     join({{"3 GetSourceState = 2", "3 GetCurrentSourceInfo successfully eTVSSource = -1"}, sources::refused(-1)})},
};
const Lines sourceAsked{"3 This is t_GetCurrentSourceInfo", "3 GetSourceState start"};

/// True when one of the calls sets or reads a crop.
bool asksForCrop(const Lines& calls) {
  return std::any_of(calls.begin(), calls.end(),
                     [](const std::string& call) { return call.find("CropArea(") != std::string::npos; });
}

class CropTest : public picture::PictureTest {
 protected:
  int setCrop(int plane = 0) { return worker.SetScreenCropRect(&crop, &display, plane); }
  int getCrop(int plane = 0) { return worker.GetScreenCropRect(crop, display, plane); }
  int setUnder(const std::string& words) {
    return under(words, [this] { return setCrop(); });
  }
  int getUnder(const std::string& words) {
    return under(words, [this] { return getCrop(); });
  }

  void expectUntouched() const {
    EXPECT_TRUE(crop == std::vector<int>({10, 20, 300, 400}));
    EXPECT_TRUE(display == std::vector<int>({5, 6, 70, 80}));
  }

  Rect crop{10, 20, 300, 400};
  Rect display{5, 6, 70, 80};
};

// Setting.

TEST_F(CropTest, SendsBothRectanglesAsTheyAreOnceTheSourceIsKnown) {
  EXPECT_EQ(setCrop(), 1);
  EXPECT_EQ(calls(), join({askSource(), {sent("10,20,300,400", "5,6,70,80")}}));
  EXPECT_EQ(logs(), join({sourceLogs(), {cropped}}));
  const virtualtv::Crop wanted{{10, 20, 300, 400}, {5, 6, 70, 80}};
  EXPECT_EQ(plane().crop, wanted);
}

TEST_F(CropTest, AnyFourNumbersPass) {
  crop = {INT_MIN, INT_MAX, 0, -1};
  display = {INT_MAX, INT_MIN, INT_MAX, INT_MIN};
  EXPECT_EQ(setUnder("IVideoControl::SetCropArea result=1"), 1);
  EXPECT_EQ(calls().back(),
            sent("-2147483648,2147483647,0,-1", "2147483647,-2147483648,2147483647,-2147483648", "1 [fault]"));
}

TEST_F(CropTest, ThePlaneDoesNotMatter) {
  for (const int plane : {0, 1, 2, -1, INT_MAX, INT_MIN}) {
    forget();
    EXPECT_EQ(setCrop(plane), 1) << plane;
    EXPECT_EQ(calls(), join({askSource(), {sent("10,20,300,400", "5,6,70,80")}})) << plane;
  }
}

TEST_F(CropTest, ANullRectangleIsSentAsZeros) {
  const std::string zeros = "0,0,0,0";
  const auto send = [this](Rect* first, Rect* second) {
    return under("IVideoControl::SetCropArea result=1",
                 [=, this] { return worker.SetScreenCropRect(first, second, 0); });
  };
  EXPECT_EQ(send(&crop, nullptr), 1);
  EXPECT_EQ(calls().back(), sent("10,20,300,400", zeros, "1 [fault]"));
  EXPECT_EQ(send(nullptr, &display), 1);
  EXPECT_EQ(calls().back(), sent(zeros, "5,6,70,80", "1 [fault]"));
  EXPECT_EQ(send(nullptr, nullptr), 1);
  EXPECT_EQ(calls().back(), sent(zeros, zeros, "1 [fault]"));
}

TEST_F(CropTest, ACropFailsBelowOneAndSucceedsFromOneOn) {
  for (const std::string result : {"0", "-1", "-2147483648"}) {
    EXPECT_EQ(setUnder("IVideoControl::SetCropArea result=" + result), 0) << result;
    EXPECT_EQ(logs(), sourceLogs()) << result;
  }
  EXPECT_EQ(setUnder("IVideoControl::SetCropArea result=throw"), 0);
  EXPECT_EQ(logs(), join({sourceLogs(), {caught("SetScreenCropRect", "IVideoControl::SetCropArea")}}));
  for (const std::string result : {"1", "2", "2147483647"}) {
    EXPECT_EQ(setUnder("IVideoControl::SetCropArea result=" + result), 1) << result;
    EXPECT_EQ(logs(), join({sourceLogs(), {cropped}})) << result;
  }
}

TEST_F(CropTest, ThePictureInPictureWindowIsCroppedAlone) {
  drivePictureInPicture();
  EXPECT_EQ(setCrop(), 1);
  EXPECT_EQ(calls(), (Lines{"ISourceControl[pip#2]::GetSourceState() state=2 -> 1",
                            "ISourceControl[pip#2]::GetCurrentSourceInfo() source=5 -> 1",
                            "IVideoControl[pip#2]::SetCropArea(crop=10,20,300,400, display=5,6,70,80) -> 1"}));
  EXPECT_EQ(plane().crop, std::nullopt);
  EXPECT_NE(plane(WindowId::pip).crop, std::nullopt);
}

// Reading.

TEST_F(CropTest, ReadsTheRectanglesOfTheLastCrop) {
  ASSERT_EQ(setCrop(), 1);
  crop = display = {};
  forget();
  EXPECT_EQ(getCrop(), 1);
  expectUntouched();
  EXPECT_EQ(calls(), join({askSource(), {mainVideo + "GetCropArea() crop=10,20,300,400 display=5,6,70,80 -> 1"}}));
  EXPECT_EQ(logs(), join({sourceLogs(), {cropRead}}));
}

TEST_F(CropTest, ReadsTheRectanglesAsTheSetTellsThem) {
  EXPECT_EQ(getUnder("IVideoControl::GetCropArea out.crop=-2147483648,2147483647,0,-1 "
                     "out.display=1920,1080,2147483647,-2147483648 result=1"),
            1);
  EXPECT_TRUE(crop == std::vector<int>({INT_MIN, INT_MAX, 0, -1}));
  EXPECT_TRUE(display == std::vector<int>({1920, 1080, INT_MAX, INT_MIN}));
}

TEST_F(CropTest, ReadingDoesNotCareForThePlane) {
  ASSERT_EQ(setCrop(), 1);
  for (const int plane : {0, 1, -1, INT_MAX, INT_MIN}) {
    crop = display = {};
    EXPECT_EQ(getCrop(plane), 1) << plane;
    EXPECT_TRUE(display == std::vector<int>({5, 6, 70, 80})) << plane;
  }
}

TEST_F(CropTest, RectanglesThatAreNotWrittenAreZeros) {
  EXPECT_EQ(getUnder("IVideoControl::GetCropArea result=unwritten"), 1);
  EXPECT_TRUE(crop == std::vector<int>(4, 0));
  EXPECT_TRUE(display == std::vector<int>(4, 0));
}

TEST_F(CropTest, AReadThatFailsLeavesTheRectanglesAlone) {
  const std::string written = " out.crop=1,1,1,1 out.display=2,2,2,2";
  for (const std::string result : {"0", "-1", "-2147483648"}) {
    EXPECT_EQ(getUnder("IVideoControl::GetCropArea result=" + result + written), 0) << result;
    EXPECT_EQ(logs(), sourceLogs());
  }
  EXPECT_EQ(getUnder("IVideoControl::GetCropArea result=throw"), 0);
  EXPECT_EQ(logs(), join({sourceLogs(), {caught("GetScreenCropRect", "IVideoControl::GetCropArea")}}));
  expectUntouched();
  EXPECT_EQ(getUnder("IVideoControl::GetCropArea out.crop=1,2,3,4 result=2147483647"), 1);
}

// Both.

TEST_F(CropTest, WithoutVideoControlNothingIsCroppedOrRead) {
  failsWithout(
      worker.video_ctrl_proxy, "CreateVideoControl", noVideoControl(), [this] { return setCrop(); }, -1);
  failsWithout(
      worker.video_ctrl_proxy, "CreateVideoControl", noVideoControl(), [this] { return getCrop(); }, -1);
  expectUntouched();
}

TEST_F(CropTest, WithoutASourceNothingIsCroppedOrRead) {
  const std::vector<std::function<int()>> both{[this] { return setCrop(); }, [this] { return getCrop(); }};
  for (const NoSource& way : noSources) {
    for (const auto& operation : both) {
      SCOPED_TRACE(way.words);
      EXPECT_EQ(under(way.words, operation), -1);
      EXPECT_FALSE(asksForCrop(calls()));
      EXPECT_EQ(logs(), join({sourceAsked, way.lines}));
    }
  }
  loseSourceControl();
  forget();
  for (const auto& operation : both) {
    EXPECT_EQ(operation(), -1);
    EXPECT_FALSE(asksForCrop(calls()));
    EXPECT_EQ(logs(), sources::noSourceControl);
  }
  EXPECT_EQ(plane().crop, std::nullopt);
  expectUntouched();
}

}  // namespace
