// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Cases.h"
#include "support/comparison/Comparison.h"

namespace sweep {

/// Which pairs of faults to try.
enum class Pairs { none, some, all };

/// The counts of a sweep.
struct Figures {
  std::uint64_t commands = 0;    ///< commands in their contexts
  std::uint64_t runs = 0;        ///< runs under one or two faults that all hit a call
  std::uint64_t deviations = 0;  ///< runs with an unexpected result
};

/// Makes each call of a command fail in each possible way, once and from then on, and tries some of these ways on pairs
/// of calls. After each run the answer, the calls after the fault, the settings keys and the set must equal those of
/// the model, and keys must have been written in order. Without the fault, the command and a simple query must then
/// give the model's answers.
class Sweep {
 public:
  /// @param reports  how many deviations are reported; all are counted.
  explicit Sweep(std::size_t reports) : mostReports_(reports) {}

  /// Sweeps a command at a context. @param pairs  which pairs of faults to try, if the command makes up to 12 calls.
  void command(const Context& context, const std::string& line, Pairs pairs);

  const Figures& figures() const { return figures_; }
  /// The first few deviations, each with a transcript and the difference.
  const std::vector<std::string>& reports() const { return reports_; }

 private:
  using Calls = std::vector<virtualtv::seam::Call>;
  using Faults = std::vector<std::string>;

  void enter(const Context& context);
  void renewEngine();
  void rewind();
  /// @return the calls of the command under these faults.
  Calls inject(const Faults& faults);
  /// @param calls  the calls of the command under the first fault.
  void sweepPairs(std::size_t position, const std::string& first, const Calls& calls, Pairs pairs);
  void note(const Faults& faults, const std::string& details);

  std::size_t mostReports_;
  comparison::Pair pair_;
  Context context_;
  std::string line_;
  model::Set set_;        ///< before the command
  model::Engine engine_;  ///< before the command
  Figures figures_;
  std::vector<std::string> reports_;
};

}  // namespace sweep
