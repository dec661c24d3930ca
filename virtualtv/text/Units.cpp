// SPDX-License-Identifier: MIT
#include "text/Units.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <utility>

namespace virtualtv::text {

namespace {

constexpr char32_t replacement = 0xFFFD;

bool isHigh(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLow(char32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// Length of the UTF-8 sequence at the front of `bytes` and its code point; length 0 when there is none.
struct Decoded {
  std::size_t length = 0;
  char32_t point = 0;
};

Decoded decode(std::string_view bytes) {
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
  const unsigned lead = byte(0);
  if (lead < 0x80) return {1, lead};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return {};
  char32_t point = lead & (0xFFU >> (length + 1));
  for (std::size_t at = 1; at < length; ++at) {
    if ((byte(at) & 0xC0U) != 0x80U) return {};
    point = point << 6U | (byte(at) & 0x3FU);
  }
  constexpr std::array<char32_t, 5> least{0, 0, 0x80, 0x800, 0x10000};
  if (point < least[length] || point > 0x10FFFF || isHigh(point) || isLow(point)) return {};
  return {length, point};
}

/// The number of ASCII bytes at the front.
std::size_t asciiFront(std::string_view bytes) {
  constexpr std::uint64_t highBits = 0x8080808080808080U;
  std::size_t at = 0;
  for (std::uint64_t eight = 0; at + sizeof eight <= bytes.size(); at += sizeof eight) {
    std::memcpy(&eight, bytes.data() + at, sizeof eight);
    if ((eight & highBits) != 0) break;
  }
  while (at < bytes.size() && static_cast<unsigned char>(bytes[at]) < 0x80) ++at;
  return at;
}

void appendUtf8(std::string& out, char32_t point) {
  const auto put = [&](char32_t byte) { out += static_cast<char>(byte); };
  if (point < 0x80) {
    put(point);
  } else if (point < 0x800) {
    put(0xC0 | point >> 6);
    put(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    put(0xE0 | point >> 12);
    put(0x80 | (point >> 6 & 0x3F));
    put(0x80 | (point & 0x3F));
  } else {
    put(0xF0 | point >> 18);
    put(0x80 | (point >> 12 & 0x3F));
    put(0x80 | (point >> 6 & 0x3F));
    put(0x80 | (point & 0x3F));
  }
}

void appendUnits(std::u16string& out, char32_t point) {
  if (point < 0x10000) {
    out += static_cast<char16_t>(point);
  } else {
    out += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
    out += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
  }
}

/// Reads the code point at `at` and advances `at`. A lone surrogate is returned unchanged.
char32_t next(std::u16string_view units, std::size_t& at) {
  const char32_t unit = units[at++];
  if (!isHigh(unit) || at == units.size() || !isLow(units[at])) return unit;
  return 0x10000 + ((unit - 0xD800) << 10 | (units[at++] - 0xDC00U));
}

bool isControl(char32_t point) {
  return point < 0x20 || (point >= 0x7F && point < 0xA0);
}

/// The longest prefix of `bytes` that is UTF-8 with wanted code points only.
template <typename Wanted>
std::string_view frontOf(std::string_view bytes, Wanted wanted) {
  std::string_view rest = bytes;
  while (!rest.empty()) {
    const Decoded decoded = decode(rest);
    if (decoded.length == 0 || !wanted(decoded.point)) break;
    rest.remove_prefix(decoded.length);
  }
  return bytes.substr(0, bytes.size() - rest.size());
}

void appendEscape(std::string& out, const char* format, unsigned value) {
  std::array<char, 8> escape{};
  std::snprintf(escape.data(), escape.size(), format, value);
  out += escape.data();
}

int hexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

std::optional<char16_t> parseEscape(std::string_view digits) {
  if (digits.size() < 4) return std::nullopt;
  unsigned unit = 0;
  for (const char digit : digits.substr(0, 4)) {
    const int value = hexDigit(digit);
    if (value < 0) return std::nullopt;
    unit = unit << 4U | static_cast<unsigned>(value);
  }
  return static_cast<char16_t>(unit);
}

}  // namespace

std::u16string toUnits(std::string_view utf8) {
  std::u16string units;
  units.reserve(utf8.size());
  while (!utf8.empty()) {
    const Decoded decoded = decode(utf8);
    appendUnits(units, decoded.length == 0 ? replacement : decoded.point);
    utf8.remove_prefix(decoded.length == 0 ? 1 : decoded.length);
  }
  return units;
}

std::string toUtf8(std::u16string_view units) {
  std::string utf8;
  for (std::size_t at = 0; at < units.size();) {
    const char32_t point = next(units, at);
    appendUtf8(utf8, isHigh(point) || isLow(point) ? replacement : point);
  }
  return utf8;
}

std::string quoted(std::u16string_view units) {
  constexpr std::size_t quotes = 2;
  std::string text = "\"";
  text.reserve(units.size() + quotes);  // most units are ASCII
  for (std::size_t at = 0; at < units.size();) {
    const char32_t point = next(units, at);
    if (point == U'"' || point == U'\\') text += '\\';
    if (isControl(point) || isHigh(point) || isLow(point)) {
      appendEscape(text, "\\u%04X", static_cast<unsigned>(point));
    } else {
      appendUtf8(text, point);
    }
  }
  return text + '"';
}

std::optional<std::u16string> parseQuoted(std::string_view& text) {
  if (text.empty() || text.front() != '"') return std::nullopt;
  std::string_view rest = text.substr(1);
  std::u16string units;
  while (!rest.empty() && rest.front() != '"') {
    if (rest.front() == '\\' && rest.size() > 1 && rest[1] == 'u') {
      const auto unit = parseEscape(rest.substr(2));
      if (!unit) return std::nullopt;
      units += *unit;
      rest.remove_prefix(6);
      continue;
    }
    if (rest.front() == '\\') rest.remove_prefix(1);
    if (rest.empty()) return std::nullopt;
    const Decoded decoded = decode(rest);
    appendUnits(units, decoded.length == 0 ? replacement : decoded.point);
    rest.remove_prefix(decoded.length == 0 ? 1 : decoded.length);
  }
  if (rest.empty()) return std::nullopt;
  text = rest.substr(1);
  return units;
}

std::string printable(std::string_view bytes) {
  std::string text;
  while (!bytes.empty()) {
    const Decoded decoded = decode(bytes);
    if (bytes.starts_with("\\x")) {
      text += "\\x5C";
    } else if (decoded.length == 0 || isControl(decoded.point)) {
      const std::size_t escaped = decoded.length == 0 ? 1 : decoded.length;
      for (const char byte : bytes.substr(0, escaped)) appendEscape(text, "\\x%02X", static_cast<unsigned char>(byte));
    } else {
      text += bytes.substr(0, decoded.length);
    }
    bytes.remove_prefix(decoded.length == 0 ? 1 : decoded.length);
  }
  return text;
}

std::string escaped(std::string_view text) {
  constexpr std::array<std::pair<char, char>, 5> letters{
      {{'\n', 'n'}, {'\r', 'r'}, {'\t', 't'}, {'\'', '\''}, {'\\', '\\'}}};
  std::string word;
  while (!text.empty()) {
    const Decoded decoded = decode(text);
    const auto letter = std::find_if(letters.begin(), letters.end(), [&](auto pair) { return pair.first == text[0]; });
    const std::size_t length = std::max<std::size_t>(decoded.length, 1);
    if (letter != letters.end() && !text.starts_with("\\x")) {
      word.append(1, '\\').append(1, letter->second);
    } else if (decoded.length == 0 || isControl(decoded.point) || decoded.point == U'\\') {
      for (const char byte : text.substr(0, length)) appendEscape(word, "\\%03o", static_cast<unsigned char>(byte));
    } else {
      word += text.substr(0, length);
    }
    text.remove_prefix(length);
  }
  return word;
}

std::string asWord(std::string_view text) {
  if (!isPrintable(text)) return "$'" + escaped(text) + "'";
  if (!text.empty() && text.find_first_of(" \t'\"\\") == text.npos) return std::string(text);
  std::string word = "'";
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\'') {
      word += "'\\''";
    } else {
      word += text[at];
      if (text.substr(at).starts_with("\\x")) word += "''";
    }
  }
  return word + "'";
}

std::string_view utf8Front(std::string_view bytes) {
  std::size_t at = 0;
  while (at < bytes.size()) {
    at += asciiFront(bytes.substr(at));
    if (at == bytes.size()) break;
    const Decoded decoded = decode(bytes.substr(at));
    if (decoded.length == 0) break;
    at += decoded.length;
  }
  return bytes.substr(0, at);
}

std::string wellFormed(std::string_view bytes) {
  return isUtf8(bytes) ? std::string(bytes) : toUtf8(toUnits(bytes));
}

bool isPrintable(std::string_view bytes) {
  return frontOf(bytes, [](char32_t point) { return !isControl(point); }).size() == bytes.size();
}

std::string asLine(std::string_view text) {
  return isPrintable(text) ? std::string(text) : printable(text);
}

std::string shortened(std::string_view text, std::size_t longest) {
  if (text.size() <= longest) return std::string(text);
  return std::string(utf8Front(text.substr(0, longest))) + "...";
}

}  // namespace virtualtv::text
