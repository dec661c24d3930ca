// SPDX-License-Identifier: MIT
// Knobs for what each window shows.
#include "set/KnobParts.h"

namespace virtualtv::knobparts {

namespace {

template <auto member>
std::string getOfWindow(Tv& tv, const Parts& parts) {
  return std::to_string(tv.state()[windowNamed(parts[0])].*member);
}
template <auto member>
void setOfWindow(Tv& tv, const Parts& parts, const std::string& value) {
  const WindowId window = windowNamed(parts[0]);
  const int wanted = text::requireNumber<int>(value);
  tv.adjust([&](TvState& state) { state[window].*member = wanted; });
}

std::string getMode(Tv& tv, const Parts& parts) {
  const TvMode mode = tv.state()[windowNamed(parts[0])].mode;
  return std::to_string(mode.antenna) + "," + std::to_string(mode.service);
}
void setMode(Tv& tv, const Parts& parts, const std::string& value) {
  const WindowId window = windowNamed(parts[0]);
  const std::size_t comma = value.find(',');
  if (comma == std::string::npos || comma != value.rfind(',')) refuse("'" + value + "': ANTENNA,SERVICE is wanted");
  tv.setMode(window,
             {text::requireNumber<int>(value.substr(0, comma)), text::requireNumber<int>(value.substr(comma + 1))});
}

template <auto member>
std::string getServiceOfWindow(Tv& tv, const Parts& parts) {
  return nameOfService(tv, tv.state()[windowNamed(parts[0])].*member);
}
ServiceKey serviceOrNone(Tv& tv, const std::string& value) {
  return value == "0" ? 0 : existingService(tv, value);
}
void setService(Tv& tv, const Parts& parts, const std::string& value) {
  const WindowId window = windowNamed(parts[0]);
  const ServiceKey key = serviceOrNone(tv, value);
  tv.adjust([=](TvState& state) { state[window].bring(key); });
}
void setPreviousService(Tv& tv, const Parts& parts, const std::string& value) {
  const WindowId window = windowNamed(parts[0]);
  const ServiceKey key = serviceOrNone(tv, value);
  tv.adjust([=](TvState& state) { state[window].previousService = key; });
}

template <auto member>
std::string getInUse(Tv& tv, const Parts& parts) {
  return std::to_string(tv.state()[windowNamed(parts[0])].inUse.*member);
}
template <auto member>
void setInUse(Tv& tv, const Parts& parts, const std::string& value) {
  const WindowId window = windowNamed(parts[0]);
  const int position = text::requireNumber<int>(value);
  tv.adjust([=](TvState& state) { state[window].inUse.*member = position; });
}

constexpr std::array windowTable{
    Knob{"WINDOW.source_state", "number", "state of the window's source: -1 none, 1 no signal, 2 shown",
         getOfWindow<&WindowState::sourceState>, setOfWindow<&WindowState::sourceState>},
    Knob{"WINDOW.source", "number", "the TV service's number of the window's source, -1 for none",
         getOfWindow<&WindowState::source>, setOfWindow<&WindowState::source>},
    Knob{"WINDOW.previous_source", "number", "the TV service's number of the previous source, -1 for none",
         getOfWindow<&WindowState::previousSource>, setOfWindow<&WindowState::previousSource>},
    Knob{"WINDOW.mode", "ANTENNA,SERVICE",
         "the TV service's numbers of the TV mode: antenna 0 terrestrial, 1 cable, 2 satellite, and service list",
         getMode, setMode},
    Knob{"WINDOW.service", "service id, #KEY or 0", "the service on screen", getServiceOfWindow<&WindowState::service>,
         setService},
    Knob{"WINDOW.previous_service", "service id, #KEY or 0", "the previous service on screen",
         getServiceOfWindow<&WindowState::previousService>, setPreviousService},
    Knob{"WINDOW.audio", "number", "position of the audio track in use among those of the service, counted from 0",
         getInUse<&TracksInUse::audio>, setInUse<&TracksInUse::audio>},
    Knob{"WINDOW.subtitle", "number", "position of the subtitle in use, counted from 0; -1 for none",
         getInUse<&TracksInUse::subtitle>, setInUse<&TracksInUse::subtitle>},
};

}  // namespace

std::span<const Knob> windowKnobs() {
  return windowTable;
}

}  // namespace virtualtv::knobparts
