// SPDX-License-Identifier: MIT
#include "shell/Lines.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "text/Units.h"

namespace virtualtv::shell {

namespace {

constexpr std::string_view escapedInDouble = "\"\\$`";
constexpr std::string_view escapedQuote = "$'";

[[noreturn]] void unclosed(const std::string& what, std::size_t at) {
  throw std::invalid_argument(what + " at column " + std::to_string(at + 1));
}

/// A word of a line, and its errors.
struct Word {
  std::string text;
  char quote = '\0';                   ///< the open quote, `$` for `$'`
  bool escape = false;                 ///< ends with a backslash
  std::size_t open = 0;                ///< position of that quote or backslash
  std::optional<std::size_t> unknown;  ///< position of an unknown escape
};

constexpr std::array<std::pair<char, char>, 6> lettersOfEscapes{
    {{'n', '\n'}, {'r', '\r'}, {'t', '\t'}, {'\'', '\''}, {'"', '"'}, {'\\', '\\'}}};

/// The byte that the first `digits` digits of `text` encode.
std::optional<char> byteOf(std::string_view text, std::size_t digits, int base) {
  unsigned char byte = 0;
  if (text.size() < digits) return std::nullopt;
  const auto [end, error] = std::from_chars(text.data(), text.data() + digits, byte, base);
  if (error != std::errc() || end != text.data() + digits) return std::nullopt;
  return static_cast<char>(byte);
}

/// Decodes the escape of `$'...'` at the front of `text`: the byte and the length of the escape. The length is 0 for an
/// unknown escape.
std::pair<char, std::size_t> readEscape(std::string_view text) {
  constexpr std::size_t octalDigits = 3;
  constexpr std::size_t hexDigits = 2;
  for (const auto& [letter, byte] : lettersOfEscapes) {
    if (text.substr(1).starts_with(letter)) return {byte, 2};
  }
  if (text.starts_with("\\x")) {
    const auto byte = byteOf(text.substr(2), hexDigits, 16);
    return {byte.value_or('\0'), byte ? 2 + hexDigits : 0};
  }
  const auto byte = byteOf(text.substr(1), octalDigits, 8);
  return {byte.value_or('\0'), byte ? 1 + octalDigits : 0};
}

bool isEscapedInDouble(char letter) {
  return escapedInDouble.find(letter) != std::string_view::npos;
}

/// Appends the text between the quote at `at` and the closing quote, and moves `at` behind it.
void takeQuoted(std::string_view line, std::size_t& at, Word& word) {
  const std::size_t start = at;
  const char quote = line[at++];
  while (at < line.size() && line[at] != quote) {
    const bool backslash = quote == '"' && line[at] == '\\';
    word.escape = backslash && at + 1 == line.size();
    if (backslash && !word.escape && isEscapedInDouble(line[at + 1])) ++at;
    word.text += line[at++];
  }
  if (at < line.size()) {
    ++at;
  } else {
    word.quote = quote;
    word.open = start;
  }
}

/// Appends the text in the `$'...'` at `at`, and moves `at` behind it.
void takeEscaped(std::string_view line, std::size_t& at, Word& word) {
  const std::size_t start = at;
  at += escapedQuote.size();
  while (at < line.size() && line[at] != '\'') {
    const auto [byte, length] = line[at] == '\\' ? readEscape(line.substr(at)) : std::pair(line[at], std::size_t{1});
    word.escape = length == 0 && at + 1 == line.size();
    if (length == 0 && !word.unknown) word.unknown = at;
    word.text += length == 0 ? line[at] : byte;
    at += std::max<std::size_t>(length, 1);
  }
  if (at < line.size()) {
    ++at;
  } else {
    word.quote = '$';
    word.open = start;
  }
}

Word takeWord(std::string_view line, std::size_t& at) {
  Word word;
  while (at < line.size() && blanks.find(line[at]) == std::string_view::npos) {
    if (line.substr(at).starts_with(escapedQuote)) {
      takeEscaped(line, at, word);
      continue;
    }
    if (line[at] == '\'' || line[at] == '"') {
      takeQuoted(line, at, word);
      continue;
    }
    if (line[at] == '\\' && ++at == line.size()) {
      word.escape = true;
      word.open = at - 1;
      break;
    }
    word.text += line[at++];
  }
  return word;
}

}  // namespace

void append(Lines& lines, const Lines& more) {
  lines.insert(lines.end(), more.begin(), more.end());
}

Lines splitLines(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    while (line.ends_with('\r')) line.remove_suffix(1);
    lines.emplace_back(line);
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return lines;
}

char closing(char quote) {
  return quote == '$' ? '\'' : quote;
}

std::vector<std::string> splitWords(std::string_view line) {
  std::vector<std::string> words;
  std::size_t at = 0;
  while ((at = line.find_first_not_of(blanks, at)) != std::string_view::npos) {
    Word word = takeWord(line, at);
    if (word.quote == '"') unclosed("no closing \" for the one", word.open);
    if (word.quote != '\0') unclosed("no closing ' for the one", word.open);
    if (word.unknown) unclosed("an unknown escape in $'...'", *word.unknown);
    if (word.escape) unclosed("nothing behind the \\", word.open);
    words.push_back(std::move(word.text));
  }
  return words;
}

HalfTyped splitHalfTyped(std::string_view line) {
  HalfTyped typed;
  std::size_t at = 0;
  while ((at = line.find_first_not_of(blanks, at)) != std::string_view::npos) {
    Word word = takeWord(line, at);
    if (at < line.size()) {
      typed.words.push_back(std::move(word.text));
    } else {
      typed.last = std::move(word.text);
      typed.quote = word.quote;
      typed.escape = word.escape;
    }
  }
  return typed;
}

std::string asTyped(std::string_view text, char quote) {
  if (quote == '$') return text::escaped(text);
  constexpr std::string_view escapedInNone = " \t\\'\"";
  const std::string_view escaped = quote == '"' ? escapedInDouble : quote == '\0' ? escapedInNone : std::string_view();
  std::string typed;
  for (const char letter : text) {
    if (quote == '\'' && letter == quote) {
      typed += "'\\''";
      continue;
    }
    if (escaped.find(letter) != std::string_view::npos) typed += '\\';
    typed += letter;
  }
  return typed;
}

std::string oneLine(std::string_view text) {
  return text::printable(text);
}

}  // namespace virtualtv::shell
