// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "seam/Operations.h"
#include "support/allocation/Allocations.h"
#include "support/bench/Bench.h"

/// Runs the plug-in repeatedly, with another allocation failing each time.
namespace proof {

/// A command with its parameters.
struct Command {
  std::string name;
  std::vector<std::string> parameters;
  bool list = false;  ///< passed with a parameter list
};

/// Every command of the plug-in, in each of its forms.
std::vector<Command> everyCommand();

/// Which of the two TV stacks shows the picture.
enum class Stack { tv, isp };

class Sweep {
 public:
  /// @param every  makes only every n-th allocation fail.
  explicit Sweep(std::size_t every);

  /// Fails allocations of the plug-in itself, during a command. The command must give a reply of a valid kind, and the
  /// next command the right reply. @param fromThenOn  later allocations fail as well.
  void commandOutsideCalls(const Command& command, Stack stack, bool fromThenOn);
  /// Fails allocations of the set, during the calls of a command. The reply must be the one for an exception from that
  /// call.
  void commandInsideCalls(const Command& command, Stack stack);
  /// Fails those and all later allocations, and those of the set's database. The command must give a reply of a valid
  /// kind, the next command the right reply, and the set must equal its storage.
  void commandInsideCallsFromThenOn(const Command& command, Stack stack);
  void commandInsideStore(const Command& command, Stack stack, bool fromThenOn);
  /// Fails allocations while an engine is created. The engine must work, refuse all commands, or not exist.
  void makingAnEngine(bool fromThenOn);
  /// Fails allocations while an engine is closed.
  void endingAnEngine(bool fromThenOn);

  std::size_t failed() const { return failed_; }  ///< allocations
  std::size_t runs() const { return runs_; }      ///< runs with at least one failed allocation
  std::size_t deviations() const { return deviations_; }

 private:
  /// A run of a command under the plan set by `prepared`.
  struct Run {
    support::Outcome outcome;
    std::vector<const virtualtv::seam::Operation*> calls;  ///< to the set
    std::optional<std::size_t> hit;                        ///< index of the call in which an allocation failed
  };

  void prepare(Stack stack);
  void noteCalls(Run& run, bool inside);
  void carryOut(const Command& command, Run& run, const support::Bench::Around& around);
  Run runFailing(const Command& command, const support::AllocationPlan& plan, bool inside);
  void loopInside(const Command& command, Stack stack, const std::string& where, const support::AllocationPlan& plan);
  std::string answerToException(const Command& command, Stack stack, const Run& failed);
  /// Runs `attempt` for each number from 1 on, until no allocation fails any more.
  void loop(const std::string& what, const std::function<std::string(std::size_t nth)>& attempt);
  void tell(const std::string& what, std::size_t nth, const std::string& wrong);

  support::Bench bench_;
  std::size_t every_;
  std::size_t failed_ = 0;
  std::size_t runs_ = 0;
  std::size_t deviations_ = 0;
};

}  // namespace proof
