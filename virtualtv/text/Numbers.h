// SPDX-License-Identifier: MIT
#pragma once

#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>

namespace virtualtv::text {

/// Parses a whole text as a decimal number, with an optional minus sign for signed types. Returns nothing for any other
/// text, and for numbers that the type can't hold.
template <typename Number>
std::optional<Number> numberIn(std::string_view text) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

/// `1 service`, `2 services`.
inline std::string counted(std::uint64_t number, const char* thing) {
  return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

/// The numbers from `least` to `most`, which is not below 0.
struct Range {
  std::int64_t least = 0;
  std::uint64_t most = 0;
};

/// All numbers of a type; for an enumeration those of its underlying type.
template <typename Number>
constexpr Range rangeOf() {
  if constexpr (std::is_enum_v<Number>) {
    return rangeOf<std::underlying_type_t<Number>>();
  } else {
    using Limits = std::numeric_limits<Number>;
    return {static_cast<std::int64_t>(Limits::min()), static_cast<std::uint64_t>(Limits::max())};
  }
}

/// Parses a whole text as a number. A negative number is returned as its two's complement. Returns nothing for any
/// other text, and for numbers outside the range.
inline std::optional<std::uint64_t> numberIn(std::string_view text, const Range& range) {
  if (const auto number = numberIn<std::int64_t>(text)) {
    const bool tooGreat = *number > 0 && static_cast<std::uint64_t>(*number) > range.most;
    if (*number < range.least || tooGreat) return std::nullopt;
    return static_cast<std::uint64_t>(*number);
  }
  const auto great = numberIn<std::uint64_t>(text);  // beyond the signed range
  return great && *great <= range.most ? great : std::nullopt;
}

/// Describes a range to a person: `a number from 0 to 255`.
inline std::string describe(const Range& range) {
  return "a number from " + std::to_string(range.least) + " to " + std::to_string(range.most);
}

/// Parses a number that a person wrote.
/// @param others  the other accepted texts, as in ` or auto`.
/// @throws std::invalid_argument for any other text, and for numbers out of the range: `a number from 0 to 255 or auto
/// is wanted, not 'x'`.
template <typename Number>
Number requireNumber(std::string_view text, const Range& range = rangeOf<Number>(), std::string_view others = {}) {
  if (const auto number = numberIn(text, range)) return static_cast<Number>(*number);
  throw std::invalid_argument(describe(range) + std::string(others) + " is wanted, not '" + std::string(text) + "'");
}

}  // namespace virtualtv::text
