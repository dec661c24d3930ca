#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "broadcast/Bits.h"

namespace virtualtv::broadcast {

/// Cuts a stream of bytes into packets of 188 bytes, which may have 4 bytes in front of them or 16 behind, from
/// wherever the stream starts. Holds little more than a kilobyte, whatever comes.
///
///   packets.feed(block);
///   while (const std::uint8_t* packet = packets.next()) ...
class Packets {
 public:
  static constexpr std::size_t packetSize = 188;
  static constexpr std::uint8_t syncByte = 0x47;

  /// Gives the next bytes of the stream, which must stay until `next` has answered null. The bytes before are used up.
  void feed(Bytes block) { block_ = block; }
  /// No bytes will follow: `next` answers what is left.
  void end() { atEnd_ = true; }

  /// The next packet, `packetSize` bytes that stay until the next call; null when the bytes are used up. Its first byte
  /// is not `syncByte` where that is damaged while the packets around it are in their places.
  const std::uint8_t* next() {
    // Nearly every packet stands in the block right where it should.
    const bool isThere = isTold_ && carried_.empty() && block_.size() >= distance_ + packetSize;
    if (!isThere || block_[distance_] != syncByte) return search();
    block_ = block_.subspan(distance_);
    ++count_;
    return block_.data();
  }

  /// How many packets `next` has answered.
  std::uint64_t count() const { return count_; }
  /// How many bytes belonged to no packet, without those that stand in front of the first one.
  std::uint64_t lost() const { return lost_; }
  /// Behind how many packets the first of them stood.
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
  std::vector<std::uint8_t> carried_;  ///< bytes of earlier blocks, and behind them some of this one
  std::size_t old_ = 0;                ///< how many of them are of earlier blocks
  std::size_t toSkip_ = 0;             ///< bytes of blocks to come
  std::size_t distance_ = 0;           ///< of one packet to the next; 0 when not known
  bool isTold_ = false;                ///< the packet in front was the last answer
  bool atStart_ = true;                ///< nothing was passed over so far
  bool isSearched_ = false;            ///< there was enough to tell where packets are, and none was
  bool atEnd_ = false;
  std::uint64_t count_ = 0;
  std::uint64_t lost_ = 0;
  std::uint64_t firstLost_ = 0;
};

}  // namespace virtualtv::broadcast
