#include "shell/Lines.h"

#include <stdexcept>

#include "text/Units.h"

namespace virtualtv::shell {

namespace {

constexpr std::string_view blanks = " \t";
constexpr std::string_view escapedInDouble = "\"\\$`";

[[noreturn]] void unclosed(const std::string& what, std::size_t at) {
  throw std::invalid_argument(what + " at column " + std::to_string(at + 1));
}

/// Appends what stands between the quote at `at` and the one that closes it; `at` moves on behind that.
void takeQuoted(std::string_view line, std::size_t& at, std::string& word) {
  const std::size_t start = at;
  const char quote = line[at++];
  while (at < line.size() && line[at] != quote) {
    const bool escape = quote == '"' && line[at] == '\\' && at + 1 < line.size() &&
                        escapedInDouble.find(line[at + 1]) != std::string_view::npos;
    if (escape) ++at;
    word += line[at++];
  }
  if (at == line.size()) unclosed("no closing " + std::string(1, quote) + " for the one", start);
  ++at;
}

std::string takeWord(std::string_view line, std::size_t& at) {
  std::string word;
  while (at < line.size() && blanks.find(line[at]) == std::string_view::npos) {
    if (line[at] == '\'' || line[at] == '"') {
      takeQuoted(line, at, word);
      continue;
    }
    if (line[at] == '\\' && ++at == line.size()) unclosed("nothing behind the \\", at - 1);
    word += line[at++];
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
  while ((at = line.find_first_not_of(blanks, at)) != std::string_view::npos) words.push_back(takeWord(line, at));
  return words;
}

std::string oneLine(std::string_view text) {
  return text::printable(text);
}

}  // namespace virtualtv::shell
