// SPDX-License-Identifier: MIT
// The plug-in's operations on pictures: place, crop, hiding, resolution. Applications use a space of 960 x 540; the
// base screen is twice that size.
#include <algorithm>
#include <array>
#include <limits>
#include <map>

#include "support/model/Documents.h"
#include "support/model/Plugin.h"

namespace model {

namespace {

using Sides = std::array<int, 4>;

int toBase(int length) {
  constexpr std::int64_t least = std::numeric_limits<int>::min();
  constexpr std::int64_t most = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(std::int64_t{length} * 2, least, most));
}

/// Rounds as the plug-in does: half the length plus half a pixel, truncated.
int toPlugin(int length) {
  return static_cast<int>((std::int64_t{length} + 1) / 2);
}

/// Left, top, width and height.
std::string textOf(const Sides& rect) {
  return "x:" + std::to_string(rect[0]) + ",y:" + std::to_string(rect[1]) + ",w:" + std::to_string(rect[2]) +
         ",h:" + std::to_string(rect[3]);
}

std::string textOf(const TSRectInfo& info) {
  return textOf(Sides{info.x, info.y, info.width, info.height});
}

/// The part of a rectangle's text that an application receives.
std::string replyOf(const Sides& rect) {
  return textOf(rect).substr(0, 39);
}

TSRectInfo infoOf(const Sides& rect) {
  TSRectInfo info;
  info.x = rect[0];
  info.y = rect[1];
  info.width = rect[2];
  info.height = rect[3];
  return info;
}

/// The display rectangle of a crop that specifies none: the plane's rectangle in the applications' space, with width
/// and height swapped. Empty if it can't be read at all; nothing if the set fails to report it.
std::optional<Sides> turnedPlaceOf(const Command& command) {
  Sides rect{};
  if (!needVideo(command) || !currentSource(command)) return rect;
  return attempt(std::optional<Sides>(), [&]() -> std::optional<Sides> {
    if (command.tv.getSize(command.engine.active.video, rect[0], rect[1], rect[2], rect[3]) < 1) return std::nullopt;
    for (int& side : rect) side = toPlugin(side);
    return rect;
  });
}

Reply cropTo(const Command& command, const Sides& part, const Sides& display) {
  if (!needVideo(command) || !currentSource(command)) return -1;
  return attempt(0, [&] {
    return command.tv.setCropArea(command.engine.active.video, infoOf(part), infoOf(display)) < 1 ? 0 : 1;
  });
}

/// Reads four sides, starting at a parameter; nothing when one of them is not a number.
std::optional<Sides> sidesFrom(const Command& command, std::size_t parameter) {
  Sides sides{};
  for (int& side : sides) {
    const auto number = command.number(parameter++);
    if (!number) return std::nullopt;
    side = *number;
  }
  return sides;
}

std::string sizeText(unsigned width, unsigned height, unsigned rate, unsigned lines) {
  return document({{"frequency", std::to_string(rate)},
                   {"hFrequency", std::to_string(lines)},
                   {"horizontal", std::to_string(width)},
                   {"vertical", std::to_string(height)}});
}

/// The document about the picture of the secondary stack.
std::string ispDetail(const Command& command) {
  return attempt(sizeText(0, 0, 0, 0), [&] {
    unsigned width = 0;
    unsigned height = 0;
    const bool told = command.tv.getInstance() && command.tv.getVideoResolution(width, height) == 0;
    return told ? sizeText(width, height, 0, 0) : sizeText(0, 0, 0, 0);
  });
}

/// The code and the size of the picture; nothing when the set fails to report them.
std::optional<std::pair<int, TSResolution>> resolutionOf(const Command& command) {
  using Told = std::optional<std::pair<int, TSResolution>>;
  if (!needAv(command)) return std::nullopt;
  return attempt(Told(), [&]() -> Told {
    std::pair<int, TSResolution> told{136, {}};
    if (command.tv.getResolution(command.engine.active.av, told.first, told.second) != 0) return std::nullopt;
    return told;
  });
}

}  // namespace

Reply setScreenRect(const Command& command) {
  const bool byDefault = command.decimal(0) < 0;
  if (!needVideo(command) || !currentSource(command)) return 0;
  const Interface video = command.engine.active.video;
  return attempt(0, [&] {
    if (byDefault) return command.tv.setDefaultSize(video) < 1 ? 0 : 1;
    const int answered = command.tv.setSize(video, toBase(command.decimal(0)), toBase(command.decimal(1)),
                                            toBase(command.decimal(3)), toBase(command.decimal(2)));
    return answered < 1 ? 0 : 1;
  });
}

/// A failure of 0 is answered as a text.
Reply getScreenRect(const Command& command) {
  if (!needVideo(command) || !currentSource(command)) return std::string();
  return attempt(std::string(), [&] {
    int x = 0, y = 0, height = 0, width = 0;
    if (command.tv.getSize(command.engine.active.video, x, y, height, width) < 1) return std::string();
    return replyOf({toPlugin(x), toPlugin(y), toPlugin(width), toPlugin(height)});
  });
}

Reply getActiveRect(const Command& command) {
  if (!needVideo(command)) return std::string();
  return attempt(std::string(), [&] {
    Sides rect{};
    const int answered =
        command.tv.getAfdGeometryRectSize(command.engine.active.video, rect[0], rect[1], rect[2], rect[3]);
    return answered < 1 ? std::string() : replyOf(rect);
  });
}

Reply getScreenMode(const Command&) {
  return 9;
}

Reply setScreenMode(const Command&) {
  return -1;
}

Reply getShowState(const Command& command) {
  constexpr int preset = 5;
  const bool there = command.engine.active.source || attempt(false, [&] { return selectSource(command); });
  if (!there) return preset;
  return attempt(-1, [&] {
    int state = -1;
    if (command.tv.getSourceState(command.engine.active.source, state) == 0) return -1;
    switch (state) {
      case -1:
        return 0;
      case 1:
        return 3;
      case 2:
        return 1;
      default:
        return 4;
    }
  });
}

Reply setScreenCropRect(const Command& command) {
  const auto part = sidesFrom(command, 0);
  if (!part) return -1;
  const auto display = turnedPlaceOf(command);
  return display ? cropTo(command, *part, *display) : -1;
}

Reply setScreenCropRectByList(const Command& command) {
  const auto part = sidesFrom(command, 0);
  const auto display = sidesFrom(command, 4);
  if (!part || !display) return Nothing{};
  return cropTo(command, *part, *display);
}

Reply getScreenCropRect(const Command& command) {
  if (!needVideo(command) || !currentSource(command)) return -1;
  return attempt(Reply(0), [&]() -> Reply {
    TSRectInfo part, display;
    if (command.tv.getCropArea(command.engine.active.video, part, display) < 1) return 0;
    return "{crop:{" + textOf(part) + "},display:{" + textOf(display) +
           "},plane:" + std::to_string(command.number(0).value_or(0)) + "}";
  });
}

Reply setScreenZorder(const Command& command) {
  const auto order = command.number(0);
  if (!order || !needVideo(command)) return -1;
  return attempt(-1,
                 [&] { return command.tv.setZOrder(command.engine.active.video, *order == 0 ? 0 : 2) < 0 ? -1 : 1; });
}

/// Only 1 counts as a success of the set here.
Reply show(const Command& command) {
  const int type = command.decimal(0);
  if (!needAv(command) || type < 0 || type > 3) return -1;
  const int mute = type == 0 || type == 2 ? 1 : 0;
  return attempt(-1, [&] { return command.tv.muteVideo(command.engine.active.av, mute) == 1 ? 1 : -1; });
}

/// Any number except 0 counts as a success of the set here.
Reply muteVideo(const Command& command) {
  const auto mute = command.number(0);
  if (!mute || !needAv(command)) return -1;
  return attempt(-1, [&] { return command.tv.muteVideo(command.engine.active.av, *mute != 0 ? 1 : 0) != 0 ? 1 : -1; });
}

Reply getResolution(const Command& command) {
  static const std::map<int, int> numbers{
      {-1, 21}, {0, 2},   {1, 5},   {2, 6},   {3, 7},   {4, 8},   {5, 9},   {10, 10}, {11, 11},  {15, 14},
      {16, 15}, {17, 16}, {18, 14}, {19, 17}, {21, 12}, {22, 13}, {29, 22}, {134, 1}, {135, 19}, {137, 0},
  };
  const auto told = resolutionOf(command);
  if (!told) return -1;
  const auto found = numbers.find(told->first);
  return found == numbers.end() ? 20 : found->second;
}

Reply getResolutionDetail(const Command& command) {
  if (showsIsp(command)) return ispDetail(command);
  const auto told = resolutionOf(command);
  if (!told) return -1;
  const TSResolution& size = told->second;
  return sizeText(size.horizontal, size.vertical, size.frequency, size.horizontalFrequency);
}

}  // namespace model
