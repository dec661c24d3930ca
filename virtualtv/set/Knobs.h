// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "set/Tv.h"

namespace virtualtv {

/// The name of a group of knobs was given where a knob is needed.
class GroupOfKnobs : public std::invalid_argument {
 public:
  explicit GroupOfKnobs(const std::string& group)
      : std::invalid_argument("'" + group + "' is a group of knobs"), group_(group) {}

  const std::string& group() const { return group_; }

 private:
  std::string group_;
};

/// Something about the set that can be read and set from outside.
struct Knob {
  std::string_view name;   ///< as in "country"; a part in capitals is a placeholder: "WINDOW.source"
  std::string_view value;  ///< its valid values, in words: "number", "on or off", "ANTENNA,SERVICE"
  std::string_view help;
  /// Returns the value of the knob. `parts` are the texts that replace the parts in capitals.
  std::string (*get)(Tv& tv, const std::vector<std::string>& parts);
  /// Sets the knob. Throws std::invalid_argument with a line for a person. Null when the knob is read-only.
  void (*set)(Tv& tv, const std::vector<std::string>& parts, const std::string& value);
};

/// All knobs; the shell, completion and documentation walk this table.
std::span<const Knob> knobs();

/// The names of all knobs, except the many knobs of services and operations.
std::vector<std::string> knobNames(Tv& tv);

/// The names of the knobs of a group such as `main`, `input.13` or `latency`. They all start with the name of the group
/// and a full stop. The group `service.ID` has all knobs that a service can have, set or not. Returns an empty list
/// when there is no such group.
/// @throws std::invalid_argument when there is no such service.
std::vector<std::string> knobsOf(Tv& tv, const std::string& group);

/// The value of the knob with this name, as `setKnob` takes it. @throws text::UnknownName when there is no such knob.
std::string getKnob(Tv& tv, const std::string& name);

/// False for a read-only knob. @throws text::UnknownName when there is no such knob.
bool canBeSet(const std::string& name);

/// Sets the knob with this name. @throws text::UnknownName when there is no such knob, GroupOfKnobs for the name of a
/// group, std::invalid_argument when the knob does not take `value`.
void setKnob(Tv& tv, const std::string& name, const std::string& value);

}  // namespace virtualtv
