#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

// Finding a command's row by its name without looking at the others. Used by the command table.

namespace kel {

/// A hash table of names without collisions, made by the compiler: it tries multipliers until no two names share a slot.
/// A name is hashed by its length, its first and its last eight bytes.
template <std::size_t kNames>
class CommandIndex {
 public:
  /// @param rows  a table with a `name` in each row. Of rows with the same name the first one counts.
  template <typename Row>
  constexpr explicit CommandIndex(const Row (&rows)[kNames]) {
    while (!Fill(rows)) m_multiplier += 2;
  }

  /// The number of the only row that may have this name; `kNames` when there is none.
  constexpr std::size_t Find(std::string_view name) const { return m_slots[Slot(name)]; }

 private:
  static constexpr unsigned kBits = 10;  // a slot in fourteen is taken, so that most names that no row has meet none
  static constexpr std::size_t kWord = 8;
  static_assert(kNames < 255, "the numbers of rows are kept in a byte");

  static constexpr std::uint64_t Word(std::string_view name, std::size_t from, std::size_t length) {
    std::uint64_t word = 0;
    for (std::size_t at = 0; at < length; ++at) {
      word |= std::uint64_t{static_cast<unsigned char>(name[from + at])} << (8 * at);
    }
    return word;
  }

  constexpr std::size_t Slot(std::string_view name) const {
    constexpr std::uint64_t spread = 0x9E3779B97F4A7C15;  // 2 to the 64th by the golden ratio
    const bool isShort = name.size() < kWord;
    const std::uint64_t first = isShort ? Word(name, 0, name.size()) : Word(name, 0, kWord);
    const std::uint64_t last = isShort ? 0 : Word(name, name.size() - kWord, kWord);
    return static_cast<std::size_t>(((first ^ name.size()) * spread + last) * m_multiplier >> (64 - kBits));
  }

  /// Puts all names into their slots. @return false when two different ones meet.
  template <typename Row>
  constexpr bool Fill(const Row (&rows)[kNames]) {
    for (unsigned char& slot : m_slots) slot = kNames;
    for (std::size_t row = 0; row < kNames; ++row) {
      unsigned char& slot = m_slots[Slot(rows[row].name)];
      if (slot != kNames && rows[slot].name != rows[row].name) return false;
      if (slot == kNames) slot = static_cast<unsigned char>(row);
    }
    return true;
  }

  std::uint64_t m_multiplier = 0xD6E8FEB86659FD93;  // odd, otherwise any
  std::array<unsigned char, std::size_t{1} << kBits> m_slots{};
};

}  // namespace kel
