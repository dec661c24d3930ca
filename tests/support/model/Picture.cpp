// SPDX-License-Identifier: MIT
#include "support/model/Picture.h"

#include <algorithm>
#include <limits>
#include <map>
#include <utility>

namespace model {

namespace {

using Data = TCServiceData;
using virtualtv::Shape;

constexpr std::int64_t mostInt = std::numeric_limits<int>::max();

/// The content of a service, by its channel type.
enum class Brings { analogueTelevision, soundOrData, television };

Brings broughtBy(const Service& service) {
  switch (number(service, Data::CHANNEL_TYPE).value_or(0)) {
    case 1:
    case 2:
      return Brings::analogueTelevision;
    case 3:
    case 4:
    case 5:
    case 6:
    case 7:
    case 8:
      return Brings::soundOrData;
    default:
      return Brings::television;
  }
}

/// Replaces a default length by a field of the service. @return false when no picture can have that length.
bool measure(const Service& service, int field, int& length) {
  const auto held = number(service, field);
  if (!held) return true;
  length = static_cast<int>(std::min<std::uint64_t>(*held, mostInt));
  return *held >= 1 && *held <= mostInt;
}

std::optional<Picture> pictureOf(const Service& service) {
  const Brings brings = broughtBy(service);
  if (brings == Brings::soundOrData) return std::nullopt;
  const bool analogue = brings == Brings::analogueTelevision;
  Picture picture;
  picture.width = analogue ? 720 : 1920;
  picture.height = analogue ? 576 : 1080;
  picture.rate = 25;
  const bool measured = measure(service, virtualtv::PICTURE_WIDTH, picture.width) &&
                        measure(service, virtualtv::PICTURE_HEIGHT, picture.height) &&
                        measure(service, virtualtv::FRAME_RATE, picture.rate);
  if (!measured) return std::nullopt;
  const bool narrow = number(service, virtualtv::PICTURE_SHAPE).value_or(analogue ? 1 : 0) == 1;
  picture.shape = narrow ? Shape::narrow : Shape::wide;
  picture.activeFormat = static_cast<int>(number(service, virtualtv::ACTIVE_FORMAT).value_or(8));
  return picture;
}

bool isEmpty(const Rect& rect) {
  return rect.width <= 0 || rect.height <= 0;
}

/// The ratio of width to height.
using Ratio = std::pair<std::int64_t, std::int64_t>;

/// The largest rectangle of a ratio within another one, centred; fractions of pixels are truncated.
Rect within(const Rect& outer, Ratio ratio) {
  const std::int64_t width = std::min<std::int64_t>(outer.width, outer.height * ratio.first / ratio.second);
  const std::int64_t height = std::min<std::int64_t>(outer.height, outer.width * ratio.second / ratio.first);
  const std::int64_t left = outer.x + (outer.width - width) / 2;
  const std::int64_t top = outer.y + (outer.height - height) / 2;
  return {static_cast<int>(std::min(left, mostInt)), static_cast<int>(std::min(top, mostInt)), static_cast<int>(width),
          static_cast<int>(height)};
}

}  // namespace

std::optional<Picture> pictureOn(const Set& set, WindowId id) {
  const virtualtv::WindowState& window = set.state[id];
  if (window.sourceState != virtualtv::SOURCE_STATE_SHOWN) return std::nullopt;
  if (window.source == 0) {
    const Service* const service = at(set, window.service);
    return service == nullptr ? std::nullopt : pictureOf(*service);
  }
  for (const virtualtv::Input& input : set.state.inputs) {
    if (input.source == window.source) return input.picture;
  }
  return std::nullopt;
}

int resolutionCode(const Picture& picture) {
  static const std::map<std::pair<int, int>, int> codes{{{640, 480}, 0},  {{720, 480}, 1},   {{720, 576}, 2},
                                                        {{1280, 720}, 3}, {{1920, 1080}, 4}, {{3840, 2160}, 29}};
  const auto found = codes.find({picture.width, picture.height});
  return found == codes.end() ? 136 : found->second;
}

unsigned linesPerSecond(const Picture& picture) {
  static const std::map<int, int> frames{{480, 525}, {576, 625}, {720, 750}, {1080, 1125}, {2160, 2250}};
  const auto found = frames.find(picture.height);
  const std::int64_t lines = found == frames.end() ? picture.height : found->second;
  return static_cast<unsigned>(std::min<std::int64_t>(lines * picture.rate, std::numeric_limits<unsigned>::max()));
}

bool place(Set& set, WindowId window, const Rect& rect) {
  if (isEmpty(rect)) return false;
  virtualtv::Plane& plane = set.state[window].plane;
  plane.rect = rect;
  plane.crop = std::nullopt;
  return true;
}

void placeDefault(Set& set, WindowId window) {
  const bool main = window == WindowId::main;
  place(set, window, main ? Rect{0, 0, 1920, 1080} : Rect{1296, 702, 576, 324});
}

bool crop(Set& set, WindowId window, const Crop& crop) {
  if (isEmpty(crop.crop) || isEmpty(crop.display)) return false;
  set.state[window].plane.crop = crop;
  return true;
}

std::optional<Crop> cropOn(const Set& set, WindowId window) {
  const virtualtv::Plane& plane = set.state[window].plane;
  if (plane.crop) return plane.crop;
  const auto picture = pictureOn(set, window);
  if (!picture) return std::nullopt;
  return Crop{{0, 0, picture->width, picture->height}, plane.rect};
}

std::optional<Rect> activeArea(const Set& set, WindowId window) {
  const auto picture = pictureOn(set, window);
  if (!picture) return std::nullopt;
  const Ratio fourThree{4, 3};
  const Ratio sixteenNine{16, 9};
  const std::map<int, Ratio> contents{{9, fourThree},  {10, sixteenNine}, {11, {14, 9}},
                                      {13, fourThree}, {14, sixteenNine}, {15, sixteenNine}};
  const Rect shown = cropOn(set, window)->display;
  const Rect frame = within(shown, picture->shape == Shape::narrow ? fourThree : sixteenNine);
  const auto content = contents.find(picture->activeFormat);
  return content == contents.end() ? frame : within(frame, content->second);
}

}  // namespace model
