// SPDX-License-Identifier: MIT
#include "framework/Reply.h"

#include <array>
#include <charconv>
#include <limits>

#include "text/Units.h"

namespace virtualtv::framework {

namespace {

// An encoded reply starts with a letter for its kind and a colon. The value follows: a number in decimal, a text as its
// bytes, units as two bytes each with the high byte first.
constexpr std::string_view integerMark = "i:";
constexpr std::string_view asciiMark = "a:";
constexpr std::string_view unicodeMark = "u:";

std::u16string unitsOf(std::string_view bytes) {
  std::u16string units;
  units.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const unsigned high = static_cast<unsigned char>(bytes[at]);
    const unsigned low = static_cast<unsigned char>(bytes[at + 1]);
    units += static_cast<char16_t>(high << 8U | low);
  }
  return units;
}

std::optional<Reply> decodeInteger(std::string_view digits) {
  Reply reply{.kind = Reply::Kind::integer, .text = {}, .units = {}};
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, reply.number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return reply;
}

/// Writes one line of a text in a block. A backslash at its end must be escaped, as it would mean the end of the text.
std::string blockLine(std::string_view line) {
  const bool slash = line.ends_with('\\');
  if (slash) line.remove_suffix(1);
  return text::printable(line) + (slash ? "\\x5C" : "");
}

std::string showBlock(std::string_view text) {
  std::string shown = "ascii |";
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string line = blockLine(text.substr(0, end));
    shown += line.empty() ? "\n|" : "\n| " + line;
    if (end == std::string_view::npos) return shown + "\\";
    text.remove_prefix(end + 1);
  }
  return shown;
}

std::string showAscii(const std::string& text) {
  if (text.empty()) return "ascii";
  const bool plain = text::isPrintable(text) && text != "|" && text.back() != ' ';
  return plain ? "ascii " + text : showBlock(text);
}

}  // namespace

void encodeInteger(std::string& encoded, int number) {
  std::array<char, std::numeric_limits<int>::digits10 + 2> digits{};  // digits and a sign
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  encoded.assign(integerMark).append(digits.data(), end);
}

void encodeAscii(std::string& encoded, std::string_view text) {
  encoded.assign(asciiMark).append(text);
}

void encodeUnicode(std::string& encoded, std::u16string_view units) {
  encoded.assign(unicodeMark);
  encoded.reserve(encoded.size() + units.size() * 2);
  for (const char16_t unit : units) {
    encoded += static_cast<char>(unit >> 8U);
    encoded += static_cast<char>(unit & 0xFFU);
  }
}

std::string encode(const Reply& reply) {
  std::string encoded;
  switch (reply.kind) {
    case Reply::Kind::integer:
      encodeInteger(encoded, reply.number);
      break;
    case Reply::Kind::ascii:
      encodeAscii(encoded, reply.text);
      break;
    case Reply::Kind::unicode:
      encodeUnicode(encoded, reply.units);
      break;
  }
  return encoded;
}

std::optional<Reply> decode(std::string_view encoded) {
  const std::string_view mark = encoded.substr(0, 2);
  const std::string_view value = encoded.substr(mark.size());
  if (mark == integerMark) return decodeInteger(value);
  if (mark == asciiMark) return Reply{Reply::Kind::ascii, 0, std::string(value), {}};
  if (mark == unicodeMark && value.size() % 2 == 0) return Reply{Reply::Kind::unicode, 0, {}, unitsOf(value)};
  return std::nullopt;
}

std::optional<std::string_view> asciiIn(std::string_view encoded) {
  return encoded.starts_with(asciiMark) ? std::optional(encoded.substr(asciiMark.size())) : std::nullopt;
}

std::string show(const Reply& reply) {
  switch (reply.kind) {
    case Reply::Kind::integer:
      return "int " + std::to_string(reply.number);
    case Reply::Kind::ascii:
      return showAscii(reply.text);
    case Reply::Kind::unicode:
      break;
  }
  return "unicode " + text::quoted(reply.units);
}

std::string bare(const Reply& reply) {
  switch (reply.kind) {
    case Reply::Kind::integer:
      return std::to_string(reply.number);
    case Reply::Kind::ascii:
      return reply.text;
    case Reply::Kind::unicode:
      break;
  }
  return text::toUtf8(reply.units);
}

std::string showAnswer(bool accepted, std::string_view encoded) {
  if (encoded.empty()) return accepted ? "empty" : "refused";
  const std::optional<Reply> reply = decode(encoded);
  const std::string shown = reply ? show(*reply) : "undecodable " + text::printable(encoded);
  return accepted ? shown : "refused " + shown;
}

}  // namespace virtualtv::framework
