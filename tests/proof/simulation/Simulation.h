// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "support/comparison/Comparison.h"

namespace simulation {

/// What was done. A script that is run once more counts as a replay and adds nothing else.
struct Figures {
  std::uint64_t commands = 0;
  std::uint64_t faults = 0;  ///< that were set, and that hit a call
  std::uint64_t hits = 0;
  std::uint64_t replays = 0;  ///< scripts that were run once more, and what they did was the same
};

/// A script whose run is not as it should be.
struct Failure {
  std::uint64_t seed;
  std::string what;  ///< for a person: a line, and below it the script's line and what differs
  comparison::Script script;
};

/// Runs random scripts with random faults on the plug-in and the model, from the first day on each. After every line
/// the answer, the calls and the set's state are held against each other, after some the settings keys as well, and at
/// a script's end all that is kept. A script that is run once more must give the same: each reply, each line of the
/// trace and each message of the log.
class Simulation {
 public:
  /// Changes the model before a script, for tests.
  using Spoil = std::function<void(model::World&)>;

  explicit Simulation(Spoil spoil = {}) : first_(comparison::startingSet()), spoil_(std::move(spoil)) {}

  /// Runs a script. @param replay  whether once more. @return what is wrong, nothing when all is well.
  std::optional<Failure> run(std::uint64_t seed, bool replay);
  /// The script that runs with a seed.
  comparison::Script scriptOf(std::uint64_t seed) const;
  /// What differs in a script, as a transcript; nothing when nothing does.
  std::optional<comparison::Difference> differenceIn(const comparison::Script& script);

  const Figures& figures() const { return figures_; }

 private:
  /// @return what differs, empty when nothing does.
  std::string carryOut(const comparison::Script& script, bool recorded);
  void count(const std::string& line);

  model::Set first_;
  Spoil spoil_;
  comparison::Pair pair_;
  std::string record_;  ///< of the last script that was recorded: replies, trace and log
  Figures figures_;
  bool counts_ = true;
};

}  // namespace simulation
