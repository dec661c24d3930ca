// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "support/comparison/Comparison.h"

namespace simulation {

/// The counts of a simulation. A repeated script counts as a replay only.
struct Figures {
  std::uint64_t commands = 0;
  std::uint64_t faults = 0;  ///< faults that were set and hit a call
  std::uint64_t hits = 0;
  std::uint64_t replays = 0;  ///< scripts that were repeated with the same result
};

/// A script whose run failed.
struct Failure {
  std::uint64_t seed;
  std::string what;  ///< for a person: a summary, then the line of the script and the difference
  comparison::Script script;
};

/// Runs random scripts with random faults on the plug-in and the model, each starting with the initial set. After every
/// line compares the answer, the calls and the set's state; after some lines also the settings keys; at the end of a
/// script everything persisted. A repeated script must give the same replies, trace lines and log messages.
class Simulation {
 public:
  /// Changes the model before a script, for tests.
  using Spoil = std::function<void(model::World&)>;

  explicit Simulation(Spoil spoil = {}) : first_(comparison::startingSet()), spoil_(std::move(spoil)) {}

  /// Runs a script. @param replay  true for a repeated run. @return what is wrong; nothing on success.
  std::optional<Failure> run(std::uint64_t seed, bool replay);
  /// The script that runs with a seed.
  comparison::Script scriptOf(std::uint64_t seed) const;
  /// The difference in a script, as a transcript; nothing when there is none.
  std::optional<comparison::Difference> differenceIn(const comparison::Script& script);

  const Figures& figures() const { return figures_; }

 private:
  /// @return what differs, empty when nothing does.
  std::string carryOut(const comparison::Script& script, bool recorded);
  void count(const std::string& line);

  model::Set first_;
  Spoil spoil_;
  comparison::Pair pair_;
  std::string record_;  ///< replies, trace and log of the last recorded script
  Figures figures_;
  bool counts_ = true;
};

}  // namespace simulation
