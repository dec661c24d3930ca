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

/// Runs the plug-in again and again, with another allocation failing each time.
namespace proof {

/// A command with its parameters.
struct Command {
  std::string name;
  std::vector<std::string> parameters;
  bool list = false;  ///< goes to the entry that takes a parameter list
};

/// Every command of the plug-in, in each of its forms.
std::vector<Command> everyCommand();

/// Which of the two TV stacks shows the picture.
enum class Stack { tv, isp };

class Sweep {
 public:
  /// @param every  lets only each so manieth allocation fail.
  explicit Sweep(std::size_t every);

  /// Allocations of the plug-in itself, during a command: it is answered with a kind that it has, and the next one is
  /// answered right. @param fromThenOn  those behind it fail as well.
  void commandOutsideCalls(const Command& command, Stack stack, bool fromThenOn);
  /// Allocations of the set, during the calls of a command: the reply is the one to an exception from that call.
  void commandInsideCalls(const Command& command, Stack stack);
  /// Those and all behind them, and those of the set's database: it is answered with a kind that the command has, the
  /// next one is answered right, and the set is what it keeps.
  void commandInsideCallsFromThenOn(const Command& command, Stack stack);
  void commandInsideStore(const Command& command, Stack stack, bool fromThenOn);
  /// Allocations while an engine is made: it works, refuses all commands, or there is none.
  void makingAnEngine(bool fromThenOn);
  /// Allocations while it is ended.
  void endingAnEngine(bool fromThenOn);

  std::size_t failed() const { return failed_; }  ///< allocations
  std::size_t runs() const { return runs_; }      ///< in which one failed or more
  std::size_t deviations() const { return deviations_; }

 private:
  /// A run of a command, under which `prepared` has set what it wants.
  struct Run {
    support::Outcome outcome;
    std::vector<const virtualtv::seam::Operation*> calls;  ///< to the set
    std::optional<std::size_t> hit;                        ///< the one of these in which an allocation failed
  };

  void prepare(Stack stack);
  void watch(Run& run, bool inside);
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
