#pragma once

#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>

namespace virtualtv::text {

/// The number that a whole text is: decimal digits, behind a minus sign where the type has negative numbers. Nothing
/// for any other text and for numbers that the type can't hold.
template <typename Number>
std::optional<Number> numberIn(std::string_view text) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

/// The numbers from `least`, which is not above 0, to `most`.
struct Range {
  std::int64_t least = 0;
  std::uint64_t most = 0;
};

/// The numbers of a type; of an enumeration those of the type below it.
template <typename Number>
constexpr Range rangeOf() {
  if constexpr (std::is_enum_v<Number>) {
    return rangeOf<std::underlying_type_t<Number>>();
  } else {
    using Limits = std::numeric_limits<Number>;
    return {static_cast<std::int64_t>(Limits::min()), static_cast<std::uint64_t>(Limits::max())};
  }
}

/// The number that a whole text is, a negative one as two's complement; nothing for any other text and for numbers out
/// of the range.
inline std::optional<std::uint64_t> numberIn(std::string_view text, const Range& range) {
  if (const auto positive = numberIn<std::uint64_t>(text)) {
    return *positive <= range.most ? positive : std::nullopt;
  }
  const auto negative = numberIn<std::int64_t>(text);
  if (!negative || *negative < range.least) return std::nullopt;
  return static_cast<std::uint64_t>(*negative);
}

/// For a person: `a number from 0 to 255`.
inline std::string describe(const Range& range) {
  return "a number from " + std::to_string(range.least) + " to " + std::to_string(range.most);
}

}  // namespace virtualtv::text
