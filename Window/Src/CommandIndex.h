// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>

// Finds a command's row by its name, without a walk through the table. Used by the command table.

namespace kel {

/// A hash table of names without collisions, filled at compile time: the constructor tries multipliers until no two
/// names share a slot. So a lookup takes one hash and at most one comparison. The hash uses the first and the last
/// eight bytes of a name, which distinguish all names. A loop over the whole name would take longer than everything
/// else.
///
/// A plain sorted index would be too slow. Relative to a lookup in `std::unordered_map`, docs/performance.md allows 0.5
/// of the time for a known name, and 0.3 for an unknown one. These take:
/// - binary search by text: 2.6 and 1.8
/// - binary search by length, then text: 1.9 and 1.3
/// - a comparison with each name of the same length: 0.9 and 0.6
/// - this table: 0.18 and 0.09
template <std::size_t kNames>
class CommandIndex {
 public:
  /// @param rows  a table with a `name` in each row. Of rows with the same name the first one counts.
  template <typename Row>
  constexpr explicit CommandIndex(const Row (&rows)[kNames]) {
    for (std::size_t row = 0; row < kNames; ++row) m_names[row] = rows[row].name;
    for (int tries = 0; !Fill(); ++tries) {
      if (tries == kMostTries) throw std::logic_error("two names begin and end with the same eight bytes");
      m_multiplier += 2;
    }
  }

  /// The index of the row with this name; `kNames` when there is none.
  constexpr std::size_t Find(std::string_view name) const {
    const std::size_t row = m_slots[Slot(name)];
    return row != kNames && m_names[row] == name ? row : kNames;
  }

 private:
  static constexpr unsigned kBits = 10;  // one slot in fourteen is used, so most unknown names hit an empty slot
  static constexpr std::size_t kWord = 8;
  static constexpr int kMostTries = 1000;
  static_assert(kNames < 255, "the numbers of rows are kept in a byte");

  /// Eight bytes as a number, in a form that compilers turn into one load.
  static constexpr std::uint64_t Word(const char* at) {
    const auto byte = [at](unsigned number) {
      return std::uint64_t{static_cast<unsigned char>(at[number])} << (8 * number);
    };
    return byte(0) | byte(1) | byte(2) | byte(3) | byte(4) | byte(5) | byte(6) | byte(7);
  }

  /// The same for a name shorter than eight bytes.
  static constexpr std::uint64_t ShortWord(std::string_view name) {
    std::uint64_t word = 0;
    for (const char byte : name) word = word << 8 | static_cast<unsigned char>(byte);
    return word;
  }

  constexpr std::size_t Slot(std::string_view name) const {
    const bool isShort = name.size() < kWord;
    const std::uint64_t first = isShort ? ShortWord(name) : Word(name.data());
    const std::uint64_t last = isShort ? 0 : Word(name.data() + name.size() - kWord);
    return static_cast<std::size_t>((first ^ (last << 1 | last >> 63)) * m_multiplier >> (64 - kBits));
  }

  /// Puts all names into their slots. @return false when two different names collide.
  constexpr bool Fill() {
    for (unsigned char& slot : m_slots) slot = kNames;
    for (std::size_t row = 0; row < kNames; ++row) {
      unsigned char& slot = m_slots[Slot(m_names[row])];
      if (slot == kNames) {
        slot = static_cast<unsigned char>(row);
      } else if (m_names[slot] != m_names[row]) {
        return false;
      }
    }
    return true;
  }

  std::uint64_t m_multiplier = 0xD6E8FEB86659FD93;  // any odd number
  std::array<std::string_view, kNames> m_names{};
  std::array<unsigned char, std::size_t{1} << kBits> m_slots{};
};

}  // namespace kel
