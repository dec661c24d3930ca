// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace virtualtv::proof {

/// What was counted on the way, and what was not as it should be: the first of those are printed.
class Findings {
 public:
  std::uint64_t faults = 0;   ///< that hit, each in a run of its own
  std::uint64_t idle = 0;     ///< that should have hit, and did not
  std::uint64_t crashes = 0;  ///< moments at which the power went
  std::uint64_t states = 0;   ///< held against what had been acknowledged, as a whole
  std::uint64_t lost = 0;     ///< runs after which something acknowledged was not there, or only part of it
  std::uint64_t corrupt = 0;  ///< runs that left a damaged file
  std::uint64_t untold = 0;   ///< runs in which a failure was not reported, or the set did not work afterwards

  /// Counts a fault. @param hits  how many accesses it has hit.
  void noteFault(std::uint64_t hits, const std::string& where);

  /// Counts one more under one of these, and prints where it was and what.
  void note(std::uint64_t& kind, const std::string& where, const std::string& what);

  bool areNone() const { return idle + lost + corrupt + untold == 0; }
  /// Prints the figures.
  void print() const;

 private:
  std::uint64_t printed_ = 0;
};

}  // namespace virtualtv::proof
