// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "broadcast/Bits.h"

namespace virtualtv::broadcast {

/// Splits a stream of bytes into packets of 188 bytes, which may have 4 extra bytes in front or 16 at the end. The
/// stream may start anywhere in a packet. Stores little more than a kilobyte, whatever the input.
///
///   packets.feed(block);
///   while (const std::uint8_t* packet = packets.next()) ...
class Packets {
 public:
  static constexpr std::size_t packetSize = 188;
  static constexpr std::uint8_t syncByte = 0x47;

  /// Passes the next bytes of the stream, which must stay valid until `next` has returned null. Call this only after
  /// `next` has returned null for the bytes passed before.
  void feed(Bytes block) { block_ = block; }
  /// Marks the end of the stream: `next` returns the rest.
  void end() { atEnd_ = true; }

  /// The next packet, `packetSize` bytes that are valid until the next call; null when the bytes are used up. Its first
  /// byte may be damaged, and so differ from `syncByte`, if the packets after it are in their places.
  const std::uint8_t* next() {
    // Nearly every packet is in the block at its expected place.
    const bool isThere = isTold_ && carried_.empty() && block_.size() >= distance_ + packetSize;
    if (!isThere || block_[distance_] != syncByte) return search();
    block_ = block_.subspan(distance_);
    ++count_;
    return block_.data();
  }

  /// The number of packets that `next` has returned.
  std::uint64_t count() const { return count_; }
  /// The number of bytes that belonged to no packet, except those before the first packet.
  std::uint64_t lost() const { return lost_; }
  /// The number of packets before the first of these bytes.
  std::uint64_t firstLost() const { return firstLost_; }

 private:
  const std::uint8_t* search();
  const std::uint8_t* view(std::size_t size);
  Bytes contiguous() const;
  void skip(std::size_t size);
  void lose(std::size_t size);
  std::size_t wantedAtEnd(std::size_t start) const;
  bool findSync();
  bool keepsSync();

  Bytes block_;
  std::vector<std::uint8_t> carried_;  ///< bytes of earlier blocks, followed by some of this one
  std::size_t old_ = 0;                ///< number of these bytes from earlier blocks
  std::size_t toSkip_ = 0;             ///< bytes to skip in the next blocks
  std::size_t distance_ = 0;           ///< distance of two packets; 0 when unknown
  bool isTold_ = false;                ///< the packet at the front was already returned
  bool atStart_ = true;                ///< nothing was skipped so far
  bool isSearched_ = false;            ///< the present bytes were searched completely, and contain no packets
  bool atEnd_ = false;
  std::uint64_t count_ = 0;
  std::uint64_t lost_ = 0;
  std::uint64_t firstLost_ = 0;
};

}  // namespace virtualtv::broadcast
