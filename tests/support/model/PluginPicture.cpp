// The plug-in's pictures: where they stand, what part of them is shown, hiding them, their resolution. Applications
// place them in a space of 960 x 540, of which the base screen is twice the size.
#include <algorithm>
#include <array>
#include <limits>
#include <map>

#include "support/model/Documents.h"
#include "support/model/Picture.h"
#include "support/model/Plugin.h"

namespace model {

namespace {

using virtualtv::Plane;

Plane& planeOf(const Command& command) {
  return command.window().plane;
}

int toBase(int length) {
  constexpr std::int64_t least = std::numeric_limits<int>::min();
  constexpr std::int64_t most = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(std::int64_t{length} * 2, least, most));
}

/// Half of it and another half pixel, without what is behind the point.
int toPlugin(int length) {
  return static_cast<int>((std::int64_t{length} + 1) / 2);
}

std::string textOf(const Rect& rect) {
  return "x:" + std::to_string(rect.x) + ",y:" + std::to_string(rect.y) + ",w:" + std::to_string(rect.width) +
         ",h:" + std::to_string(rect.height);
}

/// As much of a rectangle's text as an application gets.
std::string replyOf(const Rect& rect) {
  return textOf(rect).substr(0, 39);
}

/// The rectangle that the crop without one of its own is shown in: the plane's, in the applications' space, but with
/// width and height in each other's place.
Rect turnedPlaceOf(const Command& command) {
  const Rect& rect = planeOf(command).rect;
  return {toPlugin(rect.x), toPlugin(rect.y), toPlugin(rect.height), toPlugin(rect.width)};
}

Reply cropTo(const Command& command, const Rect& part, const Rect& display) {
  if (!currentSource(command)) return -1;
  return crop(command.set, command.engine.window, {part, display}) ? 1 : 0;
}

int hide(const Command& command, bool hidden) {
  planeOf(command).muted = hidden;
  return 1;
}

std::optional<int> codeOf(const Command& command) {
  if (const auto told = command.window().resolution) return told;
  const auto picture = pictureOn(command.set, command.engine.window);
  return picture ? std::optional(resolutionCode(*picture)) : std::nullopt;
}

std::string detail(unsigned width, unsigned height, unsigned rate, unsigned lines) {
  return document({{"frequency", std::to_string(rate)},
                   {"hFrequency", std::to_string(lines)},
                   {"horizontal", std::to_string(width)},
                   {"vertical", std::to_string(height)}});
}

/// What the secondary stack knows of its picture.
std::string ispDetail(const virtualtv::TvState& state) {
  if (!state.isp.present || !state.isp.shown) return detail(0, 0, 0, 0);
  return detail(static_cast<unsigned>(state.isp.width), static_cast<unsigned>(state.isp.height), 0, 0);
}

}  // namespace

Reply setScreenRect(const Command& command) {
  const bool byDefault = command.decimal(0) < 0;
  if (!currentSource(command)) return 0;
  if (byDefault) {
    placeDefault(command.set, command.engine.window);
    return 1;
  }
  const Rect rect{toBase(command.decimal(0)), toBase(command.decimal(1)), toBase(command.decimal(2)),
                  toBase(command.decimal(3))};
  return place(command.set, command.engine.window, rect) ? 1 : 0;
}

Reply getScreenRect(const Command& command) {
  if (!currentSource(command)) return std::string();  // a failure of 0 is answered as text
  const Rect& rect = planeOf(command).rect;
  return replyOf({toPlugin(rect.x), toPlugin(rect.y), toPlugin(rect.width), toPlugin(rect.height)});
}

Reply getActiveRect(const Command& command) {
  const auto rect = activeArea(command.set, command.engine.window);
  return rect ? replyOf(*rect) : std::string();
}

Reply getScreenMode(const Command&) {
  return 9;
}

Reply setScreenMode(const Command&) {
  return -1;
}

Reply getShowState(const Command& command) {
  switch (command.window().sourceState) {
    case -1:
      return 0;
    case 1:
      return 3;
    case 2:
      return 1;
    default:
      return 4;
  }
}

Reply setScreenCropRect(const Command& command) {
  std::array<int, 4> sides{};
  for (std::size_t side = 0; side < sides.size(); ++side) {
    const auto number = command.number(side);
    if (!number) return -1;
    sides[side] = *number;
  }
  return cropTo(command, {sides[0], sides[1], sides[2], sides[3]}, turnedPlaceOf(command));
}

Reply setScreenCropRectByList(const Command& command) {
  std::array<int, 8> sides{};
  for (std::size_t side = 0; side < sides.size(); ++side) {
    const auto number = command.number(side);
    if (!number) return Nothing{};
    sides[side] = *number;
  }
  return cropTo(command, {sides[0], sides[1], sides[2], sides[3]}, {sides[4], sides[5], sides[6], sides[7]});
}

Reply getScreenCropRect(const Command& command) {
  if (!currentSource(command)) return -1;
  const auto crop = cropOn(command.set, command.engine.window);
  if (!crop) return 0;
  return "{crop:{" + textOf(crop->crop) + "},display:{" + textOf(crop->display) +
         "},plane:" + std::to_string(command.number(0).value_or(0)) + "}";
}

Reply setScreenZorder(const Command& command) {
  const auto order = command.number(0);
  if (!order) return -1;
  planeOf(command).order = *order == 0 ? 0 : 2;
  return 1;
}

Reply show(const Command& command) {
  switch (command.decimal(0)) {
    case 0:
    case 2:
      return hide(command, true);
    case 1:
    case 3:
      return hide(command, false);
    default:
      return -1;
  }
}

Reply muteVideo(const Command& command) {
  const auto mute = command.number(0);
  return mute ? hide(command, *mute != 0) : -1;
}

Reply getResolution(const Command& command) {
  static const std::map<int, int> numbers{
      {-1, 21}, {0, 2},   {1, 5},   {2, 6},   {3, 7},   {4, 8},   {5, 9},   {10, 10}, {11, 11},  {15, 14},
      {16, 15}, {17, 16}, {18, 14}, {19, 17}, {21, 12}, {22, 13}, {29, 22}, {134, 1}, {135, 19}, {137, 0},
  };
  const auto code = codeOf(command);
  if (!code) return -1;
  const auto found = numbers.find(*code);
  return found == numbers.end() ? 20 : found->second;
}

Reply getResolutionDetail(const Command& command) {
  if (showsIsp(command.set)) return ispDetail(command.set.state);
  if (!codeOf(command)) return -1;
  const auto picture = pictureOn(command.set, command.engine.window);
  if (!picture) return detail(0, 0, 0, 0);
  return detail(static_cast<unsigned>(picture->width), static_cast<unsigned>(picture->height),
                static_cast<unsigned>(picture->rate), linesPerSecond(*picture));
}

}  // namespace model
