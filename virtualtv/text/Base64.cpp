#include "text/Base64.h"

#include <cstddef>
#include <utility>

namespace virtualtv::text {

namespace {

constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

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
    const std::size_t digit = digits.find(letter);
    if (digit == std::string_view::npos) return std::nullopt;
    held = (held << 6U | static_cast<unsigned>(digit)) & 0xFFFFU;
    bits += 6;
    if (bits < 8) continue;
    bits -= 8;
    bytes += static_cast<char>(held >> bits & 0xFFU);
  }
  const bool isFilledWithZeros = (held & ((1U << bits) - 1)) == 0;
  return isFilledWithZeros ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace virtualtv::text
