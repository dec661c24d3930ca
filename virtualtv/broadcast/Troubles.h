#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "import/Import.h"

namespace virtualtv::broadcast {

/// What may be wrong with a stream.
enum class Trouble {
  notInPackets,   ///< bytes between packets
  noSync,         ///< a packet whose first byte is damaged
  error,          ///< a packet that the receiver could not mend
  discontinuity,  ///< packets of a PID are missing
  checksum,       ///< a section whose checksum is wrong
  length,         ///< a section that is shorter than its head says
  overrun,        ///< what a section holds claims to be longer than the section
  tooMany,        ///< more of something than is kept
};

/// The troubles of a stream: each kind on each PID is counted, and told once, where it happened first.
class Troubles {
 public:
  static constexpr int wholeStream = -1;

  /// @param pid      that it concerns, or `wholeStream`.
  /// @param packet   where it is, counted from 1.
  void add(Trouble trouble, int pid, std::uint64_t packet, std::uint64_t count = 1);

  /// Tells them in the order of their places and forgets them. @param file  that the packets are of; empty when that
  /// needs not be told.
  void tell(const std::string& file, import::Problems& problems);

 private:
  struct Count {
    std::uint64_t first;
    std::uint64_t count;
  };

  std::map<std::pair<Trouble, int>, Count> counts_;
};

}  // namespace virtualtv::broadcast
