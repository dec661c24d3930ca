// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "broadcast/Bits.h"

namespace virtualtv::broadcast {

/// A section of a table with a correct checksum: the values of its head, and the bytes between head and checksum.
struct Section {
  unsigned table;    ///< id of the table
  int extension;     ///< transport stream, program or network, depending on the table
  unsigned version;  ///< 0 to 31
  bool isCurrent;    ///< false: it will be valid later
  unsigned number;   ///< number of this section in its table
  Bytes body;
};

/// Why bytes are not a usable section.
enum class Flaw { none, length, checksum };

/// Reads a section, and only the given bytes. @param flaw  receives the reason when the result is nothing. It is `none`
/// for a section in short form, which has no checksum.
std::optional<Section> readSection(Bytes bytes, Flaw& flaw);

/// The checksum of sections. Over an intact section, including its own checksum, it is 0.
std::uint32_t checksum(Bytes bytes);

/// Assembles the sections of one PID from the payloads of its packets. Stores at most one section, of 4 KiB.
class SectionAssembler {
 public:
  /// Calls `take` with the bytes of each section that a payload completes. They are valid during the call. @param
  /// starts the packet says that a section starts in its payload.
  template <typename Take>
  void feed(Bytes payload, bool starts, Take take) {
    if (starts) {
      Bits bits(payload);
      const unsigned pointer = bits.get(8);
      const Bytes before = bits.take(pointer);
      if (!bits.isSound()) return drop();
      append(before, take);
      section_.clear();
      isOpen_ = true;
      payload = bits.rest();
    }
    append(payload, take);
  }

  /// Drops a section that has a gap.
  void drop() {
    section_.clear();
    isOpen_ = false;
  }

 private:
  static constexpr std::size_t headSize = 3;
  static constexpr std::uint8_t stuffing = 0xFF;

  /// A payload can have several sections in a row. Stuffing ends them.
  template <typename Take>
  void append(Bytes payload, Take take) {
    while (isOpen_ && !payload.empty()) {
      if (section_.empty() && payload.front() == stuffing) return drop();
      payload = payload.subspan(fill(payload));
      if (!isWhole()) continue;
      take(Bytes(section_));
      section_.clear();
    }
  }

  std::size_t fill(Bytes payload);
  std::size_t size() const;
  bool isWhole() const { return section_.size() >= headSize && section_.size() == size(); }

  std::vector<std::uint8_t> section_;
  bool isOpen_ = false;  ///< a section has started and has no gap so far
};

}  // namespace virtualtv::broadcast
