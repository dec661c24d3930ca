// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace virtualtv::broadcast {

/// Bytes of a broadcast, owned by someone else.
using Bytes = std::span<const std::uint8_t>;

/// Bytes as a text, whatever their character table.
inline std::string textOf(Bytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Reads bit fields from the front of some bytes, most significant bit first. A read past the end returns zeros or
/// nothing and clears `isSound`. No byte outside is ever accessed.
class Bits {
 public:
  explicit Bits(Bytes bytes) : bytes_(bytes) {}

  /// The next bits as a number. @param count  1 to 32.
  std::uint32_t get(unsigned count) {
    if (count > bytes_.size() * 8 - at_) return overrun();
    std::uint64_t value = 0;
    const std::size_t first = at_ / 8;
    const std::size_t end = (at_ + count + 7) / 8;
    for (std::size_t at = first; at < end; ++at) value = value << 8U | bytes_[at];
    at_ += count;
    value >>= end * 8 - at_;
    return static_cast<std::uint32_t>(value & ((std::uint64_t{1} << count) - 1));
  }

  int number(unsigned count) { return static_cast<int>(get(count)); }

  void skip(unsigned count) { get(count); }

  /// A number in decimal digits of four bits each; nothing when a digit is invalid or missing.
  std::optional<int> decimal(unsigned digits) {
    int value = 0;
    bool isNumber = true;
    for (unsigned digit = 0; digit < digits; ++digit) {
      const int next = number(4);
      isNumber &= next <= 9;
      value = value * 10 + next;
    }
    return isNumber && isSound_ ? std::optional(value) : std::nullopt;
  }

  /// The next `count` bytes, or all remaining ones if fewer. Call only at a byte boundary.
  Bytes take(std::size_t count) {
    const std::size_t first = at_ / 8;
    const std::size_t there = std::min(count, bytes_.size() - first);
    if (there < count) isSound_ = false;
    at_ += there * 8;
    return bytes_.subspan(first, there);
  }

  /// All bytes that are left.
  Bytes rest() { return take(left()); }

  /// How many whole bytes are left.
  std::size_t left() const { return bytes_.size() - (at_ + 7) / 8; }

  /// False once a read went past the end.
  bool isSound() const { return isSound_; }

 private:
  std::uint32_t overrun() {
    at_ = bytes_.size() * 8;
    isSound_ = false;
    return 0;
  }

  Bytes bytes_;
  std::size_t at_ = 0;  ///< bits
  bool isSound_ = true;
};

/// One descriptor of a loop.
struct Descriptor {
  unsigned tag;
  Bytes body;
};

/// Calls `take` with each descriptor of a loop. Stops at a descriptor that claims to be longer than the rest of the
/// loop. @return false when there is such a descriptor.
template <typename Take>
bool eachDescriptor(Bytes loop, Take take) {
  Bits bits(loop);
  while (bits.left() > 0) {
    const unsigned tag = bits.get(8);
    const unsigned length = bits.get(8);
    const Bytes body = bits.take(length);
    if (!bits.isSound()) return false;
    take(Descriptor{tag, body});
  }
  return true;
}

}  // namespace virtualtv::broadcast
