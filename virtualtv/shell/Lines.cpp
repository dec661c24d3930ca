#include "shell/Lines.h"

#include <stdexcept>
#include <utility>

#include "text/Units.h"

namespace virtualtv::shell {

namespace {

constexpr std::string_view blanks = " \t";
constexpr std::string_view escapedInDouble = "\"\\$`";

[[noreturn]] void unclosed(const std::string& what, std::size_t at) {
  throw std::invalid_argument(what + " at column " + std::to_string(at + 1));
}

/// A word of a line, and what is open where the line ends in it.
struct Word {
  std::string text;
  char quote = '\0';     ///< a quote that is not closed
  bool escape = false;   ///< a backslash that nothing follows
  std::size_t open = 0;  ///< where that quote or else that backslash stands
};

bool isEscapedInDouble(char letter) {
  return escapedInDouble.find(letter) != std::string_view::npos;
}

/// Appends what stands between the quote at `at` and the one that closes it; `at` moves on behind that.
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

Word takeWord(std::string_view line, std::size_t& at) {
  Word word;
  while (at < line.size() && blanks.find(line[at]) == std::string_view::npos) {
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

std::vector<std::string> splitWords(std::string_view line) {
  std::vector<std::string> words;
  std::size_t at = 0;
  while ((at = line.find_first_not_of(blanks, at)) != std::string_view::npos) {
    Word word = takeWord(line, at);
    if (word.quote != '\0') unclosed("no closing " + std::string(1, word.quote) + " for the one", word.open);
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
