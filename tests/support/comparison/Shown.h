// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <vector>

#include "seam/Seam.h"
#include "support/model/World.h"

/// Shows observations of the plug-in, the set and the model in the same form.
namespace comparison {

/// The result of a command: whether it was accepted, and the return string, which is empty when it was not written.
struct Answer {
  bool accepted = false;
  std::string encoded;

  bool operator==(const Answer&) const = default;
};
Answer answerOf(const model::Reply& reply);
/// As a transcript shows it.
std::string shown(const Answer& answer);

/// A call without its outputs.
std::string shown(const virtualtv::seam::Call& call);
std::string shown(const model::Made& made);
/// A call of the model as in a trace, with its outputs if they were noted.
virtualtv::seam::Call callOf(const model::Made& made);
/// Equivalent to comparing the shown forms of the two.
bool areSame(const std::vector<virtualtv::seam::Call>& calls, const std::vector<model::Made>& expected);

std::string shown(const std::map<std::string, model::Setting>& settings);
std::string shown(const virtualtv::TvState& state);
/// The lists of a service: tracks and favourites.
std::string shown(const model::Service& service);

/// Calls in lines.
template <typename Call>
std::string linesOf(const std::vector<Call>& calls) {
  std::string text;
  for (const Call& call : calls) text += "  " + shown(call) + "\n";
  return text;
}

}  // namespace comparison
