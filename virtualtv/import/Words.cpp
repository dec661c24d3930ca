// SPDX-License-Identifier: MIT
#include "import/Words.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "text/Units.h"

namespace virtualtv::import {

namespace {

constexpr std::string_view blanks = " \t\r";
constexpr std::size_t shown = 40;

bool continuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The length to show: `shown`, or less in order not to cut a UTF-8 character.
std::size_t shownLength(std::string_view piece) {
  std::size_t length = shown;
  while (length > shown - 4 && continuesCharacter(piece[length])) --length;
  return length;
}

char lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

}  // namespace

std::string_view trimmedEnd(std::string_view text) {
  return text.substr(0, text.find_last_not_of(blanks) + 1);
}

std::string_view trimmed(std::string_view text) {
  text = trimmedEnd(text);
  return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

std::string_view cut(std::string_view& rest, char separator) {
  const std::size_t end = rest.find(separator);
  const std::string_view piece = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  return piece;
}

std::string quoted(std::string_view piece) {
  if (piece.size() <= shown) return '"' + text::printable(piece) + '"';
  return '"' + text::printable(piece.substr(0, shownLength(piece))) + "\"...";
}

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

bool sameWord(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char one, char other) { return lower(one) == lower(other); });
}

void requireDigits(std::string_view digits, std::string_view what) {
  const std::string subject(what);
  if (digits.empty()) throw Unreadable{subject + " is missing"};
  if (std::all_of(digits.begin(), digits.end(), isDigit)) return;
  const bool negative = digits.front() == '-' && digits.size() > 1 && isDigit(digits[1]);
  throw Unreadable{subject + ' ' + quoted(digits) + (negative ? " is negative" : " is not a decimal number")};
}

std::uint64_t number(std::string_view digits, std::string_view what, std::uint64_t most) {
  requireDigits(digits, what);
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error != std::errc() || value > most) {
    throw Unreadable{std::string(what) + ' ' + quoted(digits) + " is greater than " + std::to_string(most)};
  }
  return value;
}

}  // namespace virtualtv::import
