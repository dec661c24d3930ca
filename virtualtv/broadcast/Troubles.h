// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "import/Import.h"

namespace virtualtv::broadcast {

/// The kinds of faults in a stream.
enum class Trouble {
  notInPackets,   ///< bytes between packets
  noSync,         ///< a packet whose first byte is damaged
  error,          ///< a packet that the receiver could not correct
  discontinuity,  ///< packets of a PID are missing
  checksum,       ///< a section whose checksum is wrong
  length,         ///< a section that is shorter than its head says
  overrun,        ///< a part of a section claims to be longer than the section
  tooMany,        ///< more entries than can be stored
};

/// The faults of a stream. Each kind is counted for each PID, and reported once, at its first place.
class Troubles {
 public:
  static constexpr int wholeStream = -1;

  /// @param pid  the PID concerned, or `wholeStream`.
  /// @param packet  number of the packet, counted from 1.
  void add(Trouble trouble, int pid, std::uint64_t packet, std::uint64_t count = 1);

  /// Reports the faults in the order of their places and clears them. @param file  file name for the problems; empty to
  /// omit it.
  void tell(const std::string& file, import::Problems& problems);

 private:
  struct Count {
    std::uint64_t first;
    std::uint64_t count;
  };

  std::map<std::pair<Trouble, int>, Count> counts_;
};

}  // namespace virtualtv::broadcast
