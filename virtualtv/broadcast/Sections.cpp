// SPDX-License-Identifier: MIT
#include "broadcast/Sections.h"

#include <algorithm>
#include <array>

namespace virtualtv::broadcast {

namespace {

/// The effect of a byte on the checksum, with zero to seven bytes following it. These tables allow reading eight bytes
/// at a time.
using Table = std::array<std::uint32_t, 256>;
using Tables = std::array<Table, 8>;

Tables makeTables() {
  constexpr std::uint32_t polynomial = 0x04C11DB7;
  Tables tables{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t value = byte << 24U;
    for (int bit = 0; bit < 8; ++bit) value = value << 1U ^ ((value >> 31U) != 0 ? polynomial : 0U);
    tables[0][byte] = value;
  }
  for (std::size_t later = 1; later < tables.size(); ++later) {
    for (std::size_t byte = 0; byte < 256; ++byte) {
      const std::uint32_t before = tables[later - 1][byte];
      tables[later][byte] = before << 8U ^ tables[0][before >> 24U];
    }
  }
  return tables;
}

constexpr std::size_t checksumSize = 4;

}  // namespace

std::uint32_t checksum(Bytes bytes) {
  static const Tables tables = makeTables();  // computed at run time, since 8 KB of constants would not compress
  std::uint32_t value = 0xFFFFFFFF;
  for (; bytes.size() >= tables.size(); bytes = bytes.subspan(tables.size())) {
    std::uint32_t next = 0;
    for (std::size_t at = 0; at < 4; ++at) next ^= tables[7 - at][(value >> (24 - 8 * at) & 0xFFU) ^ bytes[at]];
    for (std::size_t at = 4; at < 8; ++at) next ^= tables[7 - at][bytes[at]];
    value = next;
  }
  for (const std::uint8_t byte : bytes) value = value << 8U ^ tables[0][value >> 24U ^ byte];
  return value;
}

std::optional<Section> readSection(Bytes bytes, Flaw& flaw) {
  flaw = Flaw::none;
  Bits bits(bytes);
  Section section{};
  section.table = bits.get(8);
  const bool isLong = bits.get(1) != 0;
  bits.skip(3);
  const std::size_t length = bits.get(12);
  if (!bits.isSound() || length != bits.left()) flaw = Flaw::length;
  if (!isLong || flaw != Flaw::none) return std::nullopt;
  section.extension = bits.number(16);
  bits.skip(2);
  section.version = bits.get(5);
  section.isCurrent = bits.get(1) != 0;
  section.number = bits.get(8);
  const unsigned last = bits.get(8);
  if (!bits.isSound() || bits.left() < checksumSize || section.number > last) {
    flaw = Flaw::length;
  } else if (checksum(bytes) != 0) {
    flaw = Flaw::checksum;
  }
  if (flaw != Flaw::none) return std::nullopt;
  section.body = bits.take(bits.left() - checksumSize);
  return section;
}

std::size_t SectionAssembler::size() const {
  return headSize + ((section_[1] & 0x0FU) << 8U | section_[2]);
}

/// Takes the part of a payload that belongs to the section, its head first. @return the number of bytes.
std::size_t SectionAssembler::fill(Bytes payload) {
  const std::size_t wanted = section_.size() < headSize ? headSize : size();
  const std::size_t count = std::min(wanted - section_.size(), payload.size());
  section_.insert(section_.end(), payload.begin(), payload.begin() + static_cast<std::ptrdiff_t>(count));
  return count;
}

}  // namespace virtualtv::broadcast
