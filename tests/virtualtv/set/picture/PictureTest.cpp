// SPDX-License-Identifier: MIT
#include "virtualtv/set/picture/PictureTest.h"

#include <ostream>

namespace virtualtv::test {

namespace {

constexpr int untouched = -77;

IVideoControl& video(WindowId window) {
  IVideoControl* made = nullptr;
  EXPECT_EQ(TVServiceAPI::CreateVideoControl(profileOf(window), 0, &made), 0);
  return *made;
}

IAVControl& sound(WindowId window) {
  IAVControl* made = nullptr;
  EXPECT_EQ(TVServiceAPI::CreateAVControl(profileOf(window), 0, &made), 0);
  return *made;
}

TSRectInfo infoOf(const Rect& rect) {
  TSRectInfo info;
  info.x = rect.x;
  info.y = rect.y;
  info.width = rect.width;
  info.height = rect.height;
  return info;
}

std::string textOf(const Rect& rect) {
  return std::to_string(rect.x) + "," + std::to_string(rect.y) + "," + std::to_string(rect.width) + "x" +
         std::to_string(rect.height);
}

std::string textOf(const TSRectInfo& info) {
  return textOf(Rect{info.x, info.y, info.width, info.height});
}

/// A rectangle that a call returned; "none" when the call failed.
std::string told(int result, const Rect& rect) {
  if (result >= 1) return textOf(rect);
  EXPECT_EQ(rect, (Rect{untouched, untouched, untouched, untouched}));
  return "none";
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Told& told) {
  return out << "code " << told.code << ", " << told.width << "x" << told.height << "@" << told.rate << ", "
             << told.lines << " lines";
}

int PictureTest::place(const Rect& rect, WindowId on) {
  return video(on).SetSize(rect.x, rect.y, rect.height, rect.width);
}

int PictureTest::placeDefault(WindowId on) {
  return video(on).SetDefaultSize();
}

int PictureTest::crop(const Rect& crop, const Rect& display, WindowId on) {
  TSRectInfo part = infoOf(crop);
  TSRectInfo place = infoOf(display);
  return video(on).SetCropArea(&part, &place);
}

int PictureTest::order(int order, WindowId on) {
  return video(on).SetZOrder(order);
}

int PictureTest::mute(int mute, WindowId on) {
  return sound(on).MuteVideo(mute);
}

std::string PictureTest::rect(WindowId on) {
  Rect rect{untouched, untouched, untouched, untouched};
  const int result = video(on).GetSize(&rect.x, &rect.y, &rect.height, &rect.width);
  return told(result, rect);
}

std::string PictureTest::cropped(WindowId on) {
  TSRectInfo part;
  TSRectInfo place;
  if (video(on).GetCropArea(&part, &place) >= 1) return textOf(part) + " at " + textOf(place);
  EXPECT_EQ(textOf(part) + textOf(place), "0,0,0x00,0,0x0");
  return "none";
}

std::string PictureTest::active(WindowId on) {
  Rect rect{untouched, untouched, untouched, untouched};
  const int result = video(on).GetAFDGeometryRectSize(&rect.x, &rect.y, &rect.width, &rect.height);
  return told(result, rect);
}

std::optional<Told> PictureTest::resolution(WindowId on) {
  auto code = static_cast<EResolution>(untouched);
  TSResolution numbers;
  const int result = sound(on).GetResolution(code, numbers);
  const Told told{code, numbers.horizontal, numbers.vertical, numbers.frequency, numbers.horizontalFrequency};
  if (result == 0) return told;
  EXPECT_EQ(told, (Told{untouched, 0, 0, 0, 0}));
  return std::nullopt;
}

}  // namespace virtualtv::test
