// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>

#include "set/State.h"
#include "text/Numbers.h"

// The persisted values of a set's state. Used by the code that writes and reads them.

namespace virtualtv {

/// The version in which a value was first persisted. Older databases lack the newer names; these keep their defaults.
enum class Since { first, inputs, pictures, tracks };

/// The place where a value is persisted, and its valid numbers.
struct Persisted {
  std::string name;  ///< as in "main.source"
  Since since;
  int least = std::numeric_limits<int>::min();  ///< for an `int`
  int most = std::numeric_limits<int>::max();

  /// The valid numbers, for a value of type `Number`.
  template <typename Number>
  text::Range range() const {
    if constexpr (std::is_same_v<Number, int>) return {least, static_cast<std::uint64_t>(most)};
    return text::rangeOf<Number>();
  }
};

/// Calls `visitor` with each persisted value of a state, and with its place.
template <typename State, typename Visit>
void visitPersisted(State& state, Visit visitor) {
  constexpr int anyMore = std::numeric_limits<int>::max();
  visitor(Persisted{"region", Since::first}, state.region);
  visitor(Persisted{"country", Since::first}, state.country);
  visitor(Persisted{"isp.present", Since::inputs}, state.isp.present);
  visitor(Persisted{"isp.shown", Since::inputs}, state.isp.shown);
  visitor(Persisted{"isp.width", Since::pictures, 1, anyMore}, state.isp.width);
  visitor(Persisted{"isp.height", Since::pictures, 1, anyMore}, state.isp.height);
  visitor(Persisted{"isp.audio", Since::tracks}, state.isp.audio);
  visitor(Persisted{"isp.subtitles", Since::tracks}, state.isp.subtitles);
  visitor(Persisted{"isp.audio_in_use", Since::tracks}, state.isp.inUse.audio);
  visitor(Persisted{"isp.subtitle_in_use", Since::tracks}, state.isp.inUse.subtitle);
  visitor(Persisted{"tuner.fade", Since::inputs, 0, 255}, state.fade);
  visitor(Persisted{"start.service", Since::first}, state.startServiceId);
  visitor(Persisted{"start.source", Since::first}, state.startSource);
  for (auto& input : state.inputs) {
    const std::string prefix = "input." + std::to_string(input.source) + ".";
    visitor(Persisted{prefix + "plugged", Since::first}, input.plugged);
    visitor(Persisted{prefix + "width", Since::pictures, 1, anyMore}, input.picture.width);
    visitor(Persisted{prefix + "height", Since::pictures, 1, anyMore}, input.picture.height);
    visitor(Persisted{prefix + "rate", Since::pictures, 1, anyMore}, input.picture.rate);
  }
  for (const WindowId id : windowIds) {
    auto& window = state[id];
    const std::string prefix = std::string(nameOf(id)) + ".";
    visitor(Persisted{prefix + "source_state", Since::first}, window.sourceState);
    visitor(Persisted{prefix + "source", Since::first}, window.source);
    visitor(Persisted{prefix + "previous_source", Since::first}, window.previousSource);
    visitor(Persisted{prefix + "antenna", Since::first}, window.mode.antenna);
    visitor(Persisted{prefix + "service_mode", Since::first}, window.mode.service);
    visitor(Persisted{prefix + "service", Since::first}, window.service);
    visitor(Persisted{prefix + "previous_service", Since::first}, window.previousService);
    visitor(Persisted{prefix + "audio", Since::tracks}, window.inUse.audio);
    visitor(Persisted{prefix + "subtitle", Since::tracks}, window.inUse.subtitle);
  }
}

}  // namespace virtualtv
