// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "services/Service.h"

namespace virtualtv {

/// The windows that show live broadcast. Their numbers index `TvState::windows`.
enum class WindowId : std::size_t { main = 0, pip = 1 };
inline constexpr std::array<WindowId, 2> windowIds{WindowId::main, WindowId::pip};
constexpr const char* nameOf(WindowId window) {
  return window == WindowId::main ? "main" : "pip";
}

/// The antenna in use and the service list on it.
struct TvMode {
  int antenna = 0;
  int service = 0;

  bool operator==(const TvMode&) const = default;
};

/// States of a window's source, as the set reports them.
enum SourceState : int { SOURCE_STATE_NONE = -1, SOURCE_STATE_NO_SIGNAL = 1, SOURCE_STATE_SHOWN = 2 };

/// A rectangle, in pixels of the base screen unless stated otherwise.
struct Rect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  bool operator==(const Rect&) const = default;
};

/// The base screen, on which the planes of the windows are placed.
inline constexpr Rect baseScreen{0, 0, 1920, 1080};
/// The default place of the picture-in-picture window: a corner, with a margin.
inline constexpr Rect pipCorner{1296, 702, 576, 324};

enum class Shape { wide, narrow };  ///< 16:9, 4:3

/// The format of a source's video.
struct Picture {
  int width = 1920;
  int height = 1080;
  int rate = 25;  ///< frames a second
  Shape shape = Shape::wide;
  int activeFormat = 8;  ///< the broadcaster's format description, 4 bits; 8: the content fills the picture

  bool operator==(const Picture&) const = default;
};

/// A part of the source picture, in pixels of that picture, and the rectangle of the screen that shows it.
struct Crop {
  Rect crop;
  Rect display;

  bool operator==(const Crop&) const = default;
};

/// How a window's picture is placed on the screen. A plane with a higher order covers one with a lower order. When both
/// orders are equal the picture-in-picture window covers the main window. Graphics, that is the web page, have order 1.
struct Plane {
  Rect rect = baseScreen;
  std::optional<Crop> crop;  ///< without it the whole picture fills `rect`
  int order = 0;
  bool muted = false;  ///< the picture is hidden

  bool operator==(const Plane&) const = default;
};

/// An input of the set.
struct Input {
  int source = 0;  ///< its number among the TV service's sources
  std::string name;
  bool plugged = true;
  Picture picture;  ///< the picture of the input while something is plugged in

  bool operator==(const Input&) const = default;
};

/// Positions of the selected tracks, counted from 0. There may be no track at a position.
struct TracksInUse {
  int audio = 0;
  int subtitle = -1;  ///< -1 for none

  bool operator==(const TracksInUse&) const = default;
};

struct WindowState {
  int sourceState = SOURCE_STATE_NONE;
  int source = -1;          ///< the input shown, -1 for none
  int previousSource = -1;  ///< the input shown before, -1 for none
  TvMode mode;
  ServiceKey service = 0;          ///< the service on screen, 0 for none
  TracksInUse inUse;               ///< the tracks in use of that service
  ServiceKey previousService = 0;  ///< the service on screen before, 0 for none
  Plane plane;
  std::optional<int> resolution;  ///< the resolution code that the set reports instead of that of the picture

  /// Puts a service on screen (0 for none) and selects its default tracks. Does not change `previousService`.
  void bring(ServiceKey key) {
    service = key;
    inUse = {};
  }

  bool operator==(const WindowState&) const = default;
};

/// The secondary TV stack, which shows the ISP source.
struct SecondaryStack {
  bool present = true;  ///< it can be reached
  bool shown = false;   ///< it shows the ISP source
  int width = 1920;     ///< size of its picture, pixels
  int height = 1080;
  std::vector<AudioTrack> audio;
  std::vector<SubtitleTrack> subtitles;  ///< sorted by kind, see `orderByKind`
  TracksInUse inUse;

  bool operator==(const SecondaryStack&) const = default;
};

/// The whole state of the set, except for what its databases hold. Plain data.
struct TvState {
  std::vector<Input> inputs;
  std::array<WindowState, 2> windows;
  std::uint64_t startServiceId = 0;
  int startSource = 0;
  int region = 0;
  int country = 0;
  SecondaryStack isp;
  int fade = 0;             ///< attenuation of the tuner's signal, 0 to 255
  std::uint64_t clock = 0;  ///< milliseconds since the set was switched on

  TvState() { (*this)[WindowId::pip].plane.rect = pipCorner; }

  WindowState& operator[](WindowId window) { return windows[static_cast<std::size_t>(window)]; }
  const WindowState& operator[](WindowId window) const { return windows[static_cast<std::size_t>(window)]; }
  bool operator==(const TvState&) const = default;
};

}  // namespace virtualtv
