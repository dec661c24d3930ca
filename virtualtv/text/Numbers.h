#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

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

}  // namespace virtualtv::text
