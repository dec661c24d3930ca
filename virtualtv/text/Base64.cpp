// SPDX-License-Identifier: MIT
#include "text/Base64.h"

#include <array>
#include <cstddef>
#include <utility>

namespace virtualtv::text {

namespace {

constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr unsigned char noDigit = 64;

/// The value of each letter.
constexpr std::array<unsigned char, 256> values = [] {
  std::array<unsigned char, 256> all{};
  all.fill(noDigit);
  for (std::size_t at = 0; at < digits.size(); ++at) {
    all[static_cast<unsigned char>(digits[at])] = static_cast<unsigned char>(at);
  }
  return all;
}();

}  // namespace

std::string toBase64(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const auto byte = [&](std::size_t offset) -> unsigned {
      return at + offset < bytes.size() ? static_cast<unsigned char>(bytes[at + offset]) : 0U;
    };
    const unsigned three = byte(0) << 16U | byte(1) << 8U | byte(2);
    for (unsigned shift = 18; shift <= 18; shift -= 6) text += digits[three >> shift & 63U];
  }
  for (std::size_t missing = (3 - bytes.size() % 3) % 3; missing > 0; --missing) text[text.size() - missing] = '=';
  return text;
}

std::optional<std::string> fromBase64(std::string_view text) {
  const std::string_view letters = text.substr(0, text.find_last_not_of('=') + 1);
  if (text.size() % 4 != 0 || text.size() - letters.size() > 2) return std::nullopt;
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3);
  unsigned held = 0;
  unsigned bits = 0;
  for (const char letter : letters) {
    const unsigned value = values[static_cast<unsigned char>(letter)];
    if (value == noDigit) return std::nullopt;
    held = (held << 6U | value) & 0xFFFFU;
    bits += 6;
    if (bits < 8) continue;
    bits -= 8;
    bytes += static_cast<char>(held >> bits & 0xFFU);
  }
  const bool isFilledWithZeros = (held & ((1U << bits) - 1)) == 0;
  return isFilledWithZeros ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace virtualtv::text
