// SPDX-License-Identifier: MIT
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

// The parts of the knobs: one table for each subject, and the functions that the tables share. Used by the knobs and by
// the editing of services.

namespace virtualtv::knobparts {

/// The tables. When several names match, the first knob counts.
std::span<const Knob> setKnobs();
std::span<const Knob> ispKnobs();
std::span<const Knob> windowKnobs();
std::span<const Knob> pictureKnobs();
std::span<const Knob> serviceKnobs();

/// What can follow `service.ID.` in the name of a service's knob: its lists, all named fields, and those unnamed fields
/// that it has. @throws std::invalid_argument when there is no such service.
std::vector<std::string> partsOfService(Tv& tv, const std::string& id);

/// The texts that replace the capitalised parts of a knob's name.
using Parts = std::vector<std::string>;

/// @throws std::invalid_argument always, with the reason as its message. The parsers below throw the same exception for
/// invalid text.
[[noreturn]] void refuse(const std::string& reason);

bool onOrOff(const std::string& text);
inline const char* onOff(bool on) {
  return on ? "on" : "off";
}

/// The range of a picture's width, height and rate.
inline constexpr text::Range lengthRange{1, std::numeric_limits<int>::max()};

/// Reads such numbers separated by marks. In 720x576@25 the marks are x and @.
/// @param wanted  the expected form, for the error message.
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

/// The window with a name as `nameOf` returns it.
WindowId windowNamed(const std::string& name);

/// The service with an id or, after a #, with a key. It must exist.
ServiceKey existingService(Tv& tv, const std::string& text);
/// The text that `existingService` reads: the id of a service, or `#KEY` when it has no id. 0 stands for no service.
std::string nameOfService(Tv& tv, ServiceKey key);

}  // namespace virtualtv::knobparts
