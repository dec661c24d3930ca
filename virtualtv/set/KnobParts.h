#pragma once

#include <array>
#include <limits>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "services/Service.h"
#include "set/Knobs.h"
#include "set/State.h"
#include "text/Numbers.h"

// What the knobs are put together from: the tables, one a subject, and what these share. Used by the knobs, and where
// services are edited.

namespace virtualtv::knobparts {

/// The tables. Where several names fit, the first knob is meant.
std::span<const Knob> setKnobs();
std::span<const Knob> ispKnobs();
std::span<const Knob> windowKnobs();
std::span<const Knob> pictureKnobs();
std::span<const Knob> serviceKnobs();

/// The parts behind `service.ID.` in the names of a service's knobs: its lists, the fields with a name, and those
/// without one that it has. @throws std::invalid_argument when there is no such service.
std::vector<std::string> partsOfService(Tv& tv, const std::string& id);

/// What stands in place of the parts in capitals of a knob's name.
using Parts = std::vector<std::string>;

/// @throws std::invalid_argument  always, with the reason as its line. So do all below for a text that they do not
/// take.
[[noreturn]] void refuse(const std::string& reason);

bool onOrOff(const std::string& text);
inline const char* onOff(bool on) {
  return on ? "on" : "off";
}

/// What the size and the rate of a picture are made of.
inline constexpr text::Range lengthRange{1, std::numeric_limits<int>::max()};

/// Reads such numbers that have marks between them, as in 720x576@25, whose marks are x and @.
/// @param wanted  what to write, for a person who wrote something else.
template <std::size_t count>
std::array<int, count> lengthsIn(const std::string& text, const std::array<char, count - 1>& marks,
                                 const std::string& wanted) {
  std::array<int, count> lengths{};
  std::size_t start = 0;
  for (std::size_t index = 0; index < count; ++index) {
    const std::size_t end = index < marks.size() ? text.find(marks[index], start) : text.size();
    const auto length = end == text.npos ? std::nullopt : text::numberIn(text.substr(start, end - start), lengthRange);
    if (!length) refuse("'" + text + "': " + wanted + " is wanted, each " + text::describe(lengthRange));
    lengths[index] = static_cast<int>(*length);
    start = end + 1;
  }
  return lengths;
}

/// The window of a name, as `nameOf` tells it.
WindowId windowNamed(const std::string& name);

/// The service of an id or, behind a #, of a key. There must be one.
ServiceKey existingService(Tv& tv, const std::string& text);
/// A service as `existingService` reads it: its id, `#KEY` where it has none; 0 for no service.
std::string nameOfService(Tv& tv, ServiceKey key);

}  // namespace virtualtv::knobparts
