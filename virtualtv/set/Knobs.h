#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "set/Tv.h"

namespace virtualtv {

/// A group of knobs was given in place of one of them.
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
  std::string_view name;   ///< as in "country"; a part in capitals stands for what is put there: "WINDOW.source"
  std::string_view value;  ///< what it takes, in words: "number", "on or off", "ANTENNA,SERVICE"
  std::string_view help;
  /// What the knob stands at. `parts` are the texts in place of the parts in capitals.
  std::string (*get)(Tv& tv, const std::vector<std::string>& parts);
  /// Turns it. Throws std::invalid_argument with a line for a person. Null where it can only be read.
  void (*set)(Tv& tv, const std::vector<std::string>& parts, const std::string& value);
};

/// All knobs; the shell, completion and documentation walk this table.
std::span<const Knob> knobs();

/// The names of all knobs but those of services and operations, which are many.
std::vector<std::string> knobNames(Tv& tv);

/// The names of the knobs of a group, which all start with its name and a full stop: those of `main`, of `input.13` or
/// of `latency`; of `service.ID` all that a service can have, set or not. Empty when there is no such group.
/// @throws std::invalid_argument when there is no such service.
std::vector<std::string> knobsOf(Tv& tv, const std::string& group);

/// Value of the knob of that name, as `setKnob` takes it. @throws text::UnknownName when there is no such knob.
std::string getKnob(Tv& tv, const std::string& name);

/// False for a knob that can only be read. @throws text::UnknownName when there is no such knob.
bool canBeSet(const std::string& name);

/// Turns the knob of that name. @throws text::UnknownName when there is none, GroupOfKnobs when it is the name of a
/// group, std::invalid_argument when the knob does not take `value`.
void setKnob(Tv& tv, const std::string& name, const std::string& value);

}  // namespace virtualtv
