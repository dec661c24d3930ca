// SPDX-License-Identifier: MIT
#include "Simulation.h"

#include <exception>
#include <sstream>
#include <utility>

#include "seam/Seam.h"
#include "support/comparison/Scripts.h"

namespace simulation {

namespace {

using comparison::Depth;
using comparison::Script;

constexpr std::size_t scriptLength = 2000;
constexpr std::size_t linesBetweenSettings = 50;

/// The effects of a line, as text.
std::string recordOf(const comparison::Pair& pair, const std::string& line) {
  std::string text = "> " + line + "\n";
  if (pair.answer()) text += comparison::shown(*pair.answer()) + "\n";
  for (const virtualtv::seam::Call& call : pair.calls()) text += virtualtv::seam::line(call) + "\n";
  for (const virtualtv::framework::LogLine& said : pair.log()) {
    text += std::to_string(said.level) + " " + said.function.str() + " " + said.message.masked() + "\n";
  }
  return text;
}

std::uint64_t hitsOf(const std::vector<virtualtv::seam::Call>& calls) {
  std::uint64_t hits = 0;
  for (const virtualtv::seam::Call& call : calls) hits += call.fault ? 1U : 0U;
  return hits;
}

/// The first line that differs between two records, from both.
std::string firstDifference(const std::string& first, const std::string& second) {
  std::istringstream one(first);
  std::istringstream other(second);
  std::string input;
  for (;;) {
    std::string line;
    std::string again;
    const bool hasLine = static_cast<bool>(std::getline(one, line));
    const bool hasAgain = static_cast<bool>(std::getline(other, again));
    if (line != again || hasLine != hasAgain || !hasLine) {
      return input + "\nthe first time:\n" + line + "\nthe second time:\n" + again + "\n";
    }
    if (line.starts_with("> ")) input = line;
  }
}

}  // namespace

Script Simulation::scriptOf(std::uint64_t seed) const {
  return comparison::randomScript(seed, scriptLength, first_, comparison::Faults::some);
}

std::optional<Failure> Simulation::run(std::uint64_t seed, bool replay) {
  const Script script = scriptOf(seed);
  counts_ = true;
  std::string wrong = carryOut(script, replay);
  if (!wrong.empty()) return Failure{seed, "the plug-in does not do what the model does\n" + wrong, script};
  if (!replay) return std::nullopt;
  counts_ = false;
  const std::string first = std::exchange(record_, {});
  wrong = carryOut(script, true);
  if (wrong.empty() && record_ != first) wrong = firstDifference(first, record_);
  if (!wrong.empty()) return Failure{seed, "it does not do the same again\n" + wrong, script};
  ++figures_.replays;
  return std::nullopt;
}

std::string Simulation::carryOut(const Script& script, bool recorded) {
  pair_.restart();
  if (spoil_) spoil_(pair_.world());
  pair_.keepLog(recorded);
  record_.clear();
  std::size_t number = 0;
  for (const std::string& line : script) {
    const bool last = ++number == script.size();
    const bool some = number % linesBetweenSettings == 0;
    std::string wrong;
    try {
      wrong = pair_.run(line, last ? Depth::services : some ? Depth::settings : Depth::state);
    } catch (const std::exception& exception) {
      wrong = std::string("it ends in an exception: ") + exception.what() + "\n";
    }
    if (!wrong.empty()) return "> " + line + "\n" + wrong;
    if (counts_) count(line);
    if (recorded) record_ += recordOf(pair_, line);
  }
  return {};
}

void Simulation::count(const std::string& line) {
  if (line.front() != '.') ++figures_.commands;
  if (line.starts_with(".fault ") && line != ".fault clear") ++figures_.faults;
  figures_.hits += hitsOf(pair_.calls());
}

std::optional<comparison::Difference> Simulation::differenceIn(const Script& script) {
  pair_.restart();
  return comparison::compare(pair_, script, nullptr, spoil_);
}

}  // namespace simulation
