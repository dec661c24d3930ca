// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <vector>

#include "seam/Seam.h"
#include "support/model/World.h"

/// What is seen of the plug-in, of the set and of the model of both, in the same words.
namespace comparison {

/// What an engine made of a command: whether it was accepted, and the return string, empty when nobody wrote it.
struct Answer {
  bool accepted = false;
  std::string encoded;

  bool operator==(const Answer&) const = default;
};
Answer answerOf(const model::Reply& reply);
/// As a transcript shows it.
std::string shown(const Answer& answer);

/// A call, but for what it wrote.
std::string shown(const virtualtv::seam::Call& call);
std::string shown(const model::Made& made);
/// A call of the model's as a trace has it, with what it wrote where that is noted.
virtualtv::seam::Call callOf(const model::Made& made);
/// The same as comparing the two by how they are shown.
bool areSame(const std::vector<virtualtv::seam::Call>& calls, const std::vector<model::Made>& expected);

std::string shown(const std::map<std::string, model::Setting>& settings);
std::string shown(const virtualtv::TvState& state);
/// What a service has beside its fields.
std::string shown(const model::Service& service);

/// Calls in lines.
template <typename Call>
std::string linesOf(const std::vector<Call>& calls) {
  std::string text;
  for (const Call& call : calls) text += "  " + shown(call) + "\n";
  return text;
}

}  // namespace comparison
