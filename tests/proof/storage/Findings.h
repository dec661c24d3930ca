// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace virtualtv::proof {

/// Counts the results of runs, and prints the first failures.
class Findings {
 public:
  std::uint64_t faults = 0;   ///< faults that hit, each in its own run
  std::uint64_t idle = 0;     ///< faults that should have hit but did not
  std::uint64_t crashes = 0;  ///< power cuts
  std::uint64_t states = 0;   ///< whole states compared with the acknowledged ones
  std::uint64_t lost = 0;     ///< runs that lost acknowledged data, wholly or in part
  std::uint64_t corrupt = 0;  ///< runs that left a damaged file
  std::uint64_t untold = 0;   ///< runs in which a failure was not reported, or the set did not work afterwards

  /// Counts a fault. @param hits  how many accesses it has hit.
  void noteFault(std::uint64_t hits, const std::string& where);

  /// Increments one of these, and prints the place and the failure.
  void note(std::uint64_t& kind, const std::string& where, const std::string& what);

  bool areNone() const { return idle + lost + corrupt + untold == 0; }
  /// Prints the figures.
  void print() const;

 private:
  std::uint64_t printed_ = 0;
};

}  // namespace virtualtv::proof
