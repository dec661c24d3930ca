// SPDX-License-Identifier: MIT
#include "set/Picture.h"

#include <algorithm>
#include <array>
#include <limits>

#include "services/ChannelType.h"
#include "services/ServiceStore.h"
#include "set/Tv.h"

namespace virtualtv {

namespace {

using Data = TCServiceData;

/// An aspect ratio.
struct Ratio {
  int width;
  int height;
};

constexpr Ratio ratioOf(Shape shape) {
  return shape == Shape::wide ? Ratio{16, 9} : Ratio{4, 3};
}

bool isAnalogue(int channelType) {
  return channelType == CHANNEL_ANALOGUE_TERRESTRIAL || channelType == CHANNEL_ANALOGUE_CABLE;
}
bool isSoundOrData(int channelType) {
  return channelType >= CHANNEL_RADIO_TERRESTRIAL && channelType <= CHANNEL_DATA_SATELLITE;
}

/// Reads a width, a height or a rate. The field may hold a number that no picture can have. @return false when the
/// number is below 1 or beyond `int`; true, with `length` unchanged, when the record lacks the field.
bool readLength(const Data& record, int field, int& length) {
  unsigned long long held = 0;
  if (!record.Get(field, held)) return true;
  if (held < 1 || held > static_cast<unsigned>(std::numeric_limits<int>::max())) return false;
  length = static_cast<int>(held);
  return true;
}

constexpr std::array pictureFields{int{Data::CHANNEL_TYPE}, int{PICTURE_WIDTH}, int{PICTURE_HEIGHT},
                                   int{FRAME_RATE},         int{PICTURE_SHAPE}, int{ACTIVE_FORMAT}};

/// The picture of a service. The fields of the service override the default picture of its channel type. @param record
/// the picture fields of the service.
std::optional<Picture> pictureOf(const Data& record) {
  int type = 0;
  record.Get(Data::CHANNEL_TYPE, type);
  if (isSoundOrData(type)) return std::nullopt;
  Picture picture = isAnalogue(type) ? Picture{720, 576, 25, Shape::narrow} : Picture{};
  if (!readLength(record, PICTURE_WIDTH, picture.width) || !readLength(record, PICTURE_HEIGHT, picture.height) ||
      !readLength(record, FRAME_RATE, picture.rate)) {
    return std::nullopt;
  }
  int shape = static_cast<int>(picture.shape);
  if (record.Get(PICTURE_SHAPE, shape)) picture.shape = shape == 1 ? Shape::narrow : Shape::wide;
  record.Get(ACTIVE_FORMAT, picture.activeFormat);
  return picture;
}

std::optional<Data> recordOf(Tv& tv, ServiceKey key) {
  TCCriteriaHelper criteria;
  for (const int field : pictureFields) criteria.Fetch(field);
  Data record;
  if (!tv.services().at(key, criteria, record)) return std::nullopt;
  return record;
}

std::optional<Data> recordOf(const std::optional<Service>& service) {
  if (!service) return std::nullopt;
  Data record;
  for (const int field : pictureFields) {
    const auto number = service->numbers.find(field);
    if (number != service->numbers.end()) record.Set(field, number->second);
  }
  return record;
}

/// @param readService  returns the fields of the service on the window's screen, or nothing when there is none.
template <typename ReadService>
std::optional<Picture> pictureIn(const TvState& state, WindowId id, ReadService readService) {
  const WindowState& window = state[id];
  if (window.sourceState != SOURCE_STATE_SHOWN) return std::nullopt;
  if (window.source == SOURCE_TV) {
    const std::optional<Data> record = readService();
    return record ? pictureOf(*record) : std::nullopt;
  }
  for (const Input& input : state.inputs) {
    if (input.source == window.source) return input.picture;
  }
  return std::nullopt;
}

/// Moves a coordinate by a non-negative offset, clamped to the largest `int`.
int moved(int corner, int by) {
  const auto most = std::int64_t{std::numeric_limits<int>::max()};
  return static_cast<int>(std::min(std::int64_t{corner} + by, most));
}

/// The largest rectangle of a ratio that fits into `outer`, centred.
Rect fitted(const Rect& outer, Ratio ratio) {
  const auto scaled = [](int length, int by, int of) {
    return static_cast<int>(static_cast<std::int64_t>(length) * by / of);
  };
  Rect inner = outer;
  const bool tooWide = std::int64_t{outer.width} * ratio.height > std::int64_t{outer.height} * ratio.width;
  if (tooWide) {
    inner.width = scaled(outer.height, ratio.width, ratio.height);
  } else {
    inner.height = scaled(outer.width, ratio.height, ratio.width);
  }
  inner.x = moved(outer.x, (outer.width - inner.width) / 2);
  inner.y = moved(outer.y, (outer.height - inner.height) / 2);
  return inner;
}

/// The aspect ratio of the content, given the four bits of the format description. Returns nothing when the content
/// fills the picture.
std::optional<Ratio> contentOf(int activeFormat) {
  switch (activeFormat) {
    case 9:
    case 13:
      return Ratio{4, 3};
    case 10:
    case 14:
    case 15:
      return Ratio{16, 9};
    case 11:
      return Ratio{14, 9};
    default:
      return std::nullopt;
  }
}

}  // namespace

std::optional<Picture> pictureOn(Tv& tv, WindowId id) {
  return pictureIn(tv.state(), id, [&] { return recordOf(tv, tv.state()[id].service); });
}

std::optional<Picture> pictureOn(const TvState& state, WindowId id, const std::optional<Service>& service) {
  return pictureIn(state, id, [&] { return recordOf(service); });
}

int resolutionCode(const Picture& picture) {
  struct Code {
    int width;
    int height;
    int code;
  };
  constexpr std::array codes{Code{640, 480, 0},  Code{720, 480, 1},   Code{720, 576, 2},
                             Code{1280, 720, 3}, Code{1920, 1080, 4}, Code{3840, 2160, 29}};
  constexpr int unknown = 136;
  for (const Code& code : codes) {
    if (code.width == picture.width && code.height == picture.height) return code.code;
  }
  return unknown;
}

unsigned linesPerSecond(const Picture& picture) {
  struct ScanLines {
    int shown;
    int all;
  };
  constexpr ScanLines known[] = {{480, 525}, {576, 625}, {720, 750}, {1080, 1125}, {2160, 2250}};
  int lines = picture.height;
  for (const ScanLines& frame : known) {
    if (frame.shown == picture.height) lines = frame.all;
  }
  const auto most = std::int64_t{std::numeric_limits<unsigned>::max()};
  return static_cast<unsigned>(std::min(std::int64_t{lines} * picture.rate, most));
}

std::optional<Crop> cropOn(Tv& tv, WindowId window) {
  const Plane& plane = tv.state()[window].plane;
  if (plane.crop) return plane.crop;
  const auto picture = pictureOn(tv, window);
  if (!picture) return std::nullopt;
  return Crop{{0, 0, picture->width, picture->height}, plane.rect};
}

Rect drawnAt(const Plane& plane) {
  return plane.crop ? plane.crop->display : plane.rect;
}

Rect activeArea(const Plane& plane, const Picture& picture) {
  const Rect frame = fitted(drawnAt(plane), ratioOf(picture.shape));
  const auto content = contentOf(picture.activeFormat);
  return content ? fitted(frame, *content) : frame;
}

}  // namespace virtualtv
