#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace virtualtv {

/// The windows that show live broadcast. Their numbers index `TvState::windows`.
enum class WindowId : std::size_t { main = 0, pip = 1 };
inline constexpr std::array<WindowId, 2> windowIds{WindowId::main, WindowId::pip};
constexpr const char* nameOf(WindowId window) {
  return window == WindowId::main ? "main" : "pip";
}

/// A service in the service database, which counts its keys from 1; 0 for none.
using ServiceKey = std::int64_t;

/// The antenna in use and the service list on it.
struct TvMode {
  int antenna = 0;
  int service = 0;

  bool operator==(const TvMode&) const = default;
};

/// States of a window's source, as the set reports them.
enum SourceState : int { SOURCE_STATE_NONE = -1, SOURCE_STATE_NO_SIGNAL = 1, SOURCE_STATE_SHOWN = 2 };

/// An input of the set.
struct Input {
  int source = 0;  ///< its number among the TV service's sources
  std::string name;
  bool plugged = true;

  bool operator==(const Input&) const = default;
};

struct WindowState {
  int sourceState = SOURCE_STATE_NONE;
  int source = -1;          ///< the input shown, -1 for none
  int previousSource = -1;  ///< the one before
  TvMode mode;
  ServiceKey service = 0;          ///< on screen
  ServiceKey previousService = 0;  ///< on screen before

  bool operator==(const WindowState&) const = default;
};

/// All that the set is at a moment, but for what its databases hold. Plain data.
struct TvState {
  std::vector<Input> inputs;
  std::array<WindowState, 2> windows;
  std::uint64_t startServiceId = 0;
  int startSource = 0;
  int region = 0;
  int country = 0;
  bool ispPresent = true;   ///< the secondary TV stack can be reached
  bool ispShown = false;    ///< it shows the ISP source
  int fade = 0;             ///< how much of the tuner's signal is lost, 0 to 255
  std::uint64_t clock = 0;  ///< milliseconds since the set was switched on

  WindowState& operator[](WindowId window) { return windows[static_cast<std::size_t>(window)]; }
  const WindowState& operator[](WindowId window) const { return windows[static_cast<std::size_t>(window)]; }
  bool operator==(const TvState&) const = default;
};

}  // namespace virtualtv
