#include "Simulation.h"

#include "seam/Seam.h"
#include "support/comparison/Scripts.h"

namespace simulation {

namespace {

using comparison::Depth;
using comparison::Script;

constexpr std::size_t scriptLength = 2000;
constexpr std::size_t linesBetweenSettings = 50;

/// What a line did, as text.
std::string recordOf(const comparison::Pair& pair, const std::string& line) {
  std::string text = "> " + line + "\n";
  if (pair.answer()) text += comparison::shown(*pair.answer()) + "\n";
  for (const virtualtv::seam::Call& call : pair.calls()) text += virtualtv::seam::line(call) + "\n";
  for (const virtualtv::framework::LogLine& message : pair.log()) {
    text += std::to_string(message.level) + " " + message.function + " " + message.masked + "\n";
  }
  return text;
}

std::uint64_t hitsOf(const std::vector<virtualtv::seam::Call>& calls) {
  std::uint64_t hits = 0;
  for (const virtualtv::seam::Call& call : calls) hits += call.fault ? 1U : 0U;
  return hits;
}

}  // namespace

Script Simulation::scriptOf(std::uint64_t seed) const {
  return comparison::randomScript(seed, scriptLength, first_, comparison::Faults::some);
}

std::optional<Failure> Simulation::run(std::uint64_t seed, bool replay) {
  const Script script = scriptOf(seed);
  if (!passes(script, replay)) return Failure{seed, "the plug-in does not do what the model does", script};
  if (!replay) return std::nullopt;
  const std::string first = std::exchange(record_, {});
  const bool passed = passes(script, true);
  if (!passed || record_ != first) return Failure{seed, "it does not do the same again", script};
  ++figures_.replays;
  return std::nullopt;
}

bool Simulation::passes(const Script& script, bool recorded) {
  pair_.restart();
  pair_.keepLog(recorded);
  record_.clear();
  std::size_t number = 0;
  for (const std::string& line : script) {
    const bool last = ++number == script.size();
    const bool some = number % linesBetweenSettings == 0;
    if (!pair_.run(line, last ? Depth::services : some ? Depth::settings : Depth::state).empty()) return false;
    if (line.front() != '.') ++figures_.commands;
    if (line.starts_with(".fault ") && line != ".fault clear") ++figures_.faults;
    figures_.hits += hitsOf(pair_.calls());
    if (recorded) record_ += recordOf(pair_, line);
  }
  return true;
}

std::optional<comparison::Difference> Simulation::differenceIn(const Script& script) {
  pair_.restart();
  return comparison::compare(pair_, script);
}

}  // namespace simulation
