// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "broadcast/Findings.h"
#include "broadcast/Found.h"
#include "broadcast/Packets.h"
#include "broadcast/Sections.h"
#include "broadcast/Troubles.h"
#include "import/Import.h"

namespace virtualtv::broadcast {

/// Finds the services in transport streams, one after the other. Takes blocks of any size and uses bounded memory,
/// whatever the content. Damaged parts are skipped, counted and reported; the rest is used.
class Scanner {
 public:
  Scanner();

  /// Takes the next bytes of a stream. They are not needed afterwards.
  void feed(Bytes block);

  /// Ends a stream; the following bytes belong to another one. @param file  name for problems; may be empty.
  void endStream(const std::string& file = "");

  /// The content of all streams that have ended.
  Scan finish() const;

  /// The number of packets read so far.
  std::uint64_t packets() const { return before_ + packets_.count(); }

 private:
  /// A PID of the current stream.
  struct Pid {
    std::uint8_t counter = unknown;  ///< continuity counter of its last packet
    bool isRepeated = false;         ///< the last packet was repeated
    bool isScrambled = false;
    bool hasTables = false;
  };

  static constexpr std::uint8_t unknown = 0xFF;

  void drain();
  void take(const std::uint8_t* packet);
  void takePayload(int pid, const std::uint8_t* packet);
  bool isRepetition(int number, const std::uint8_t* packet);
  void takeSection(int pid, Bytes bytes);
  bool isNew(int pid, const Section& section, Bytes bytes);
  void expectTables(int pid);
  void trouble(Trouble kind, int pid);

  Packets packets_;
  std::uint64_t before_ = 0;  ///< packets of earlier streams
  std::vector<Pid> pids_;
  std::map<int, SectionAssembler> assemblers_;  ///< by PID
  /// Checksums of known sections, by table and by what identifies a section in its table.
  std::map<unsigned, std::unordered_map<std::uint64_t, std::uint32_t>> seen_;
  Findings findings_;
  Troubles troubles_;
  import::Problems problems_;
};

}  // namespace virtualtv::broadcast
