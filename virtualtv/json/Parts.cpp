// SPDX-License-Identifier: MIT
#include "json/Parts.h"

#include <algorithm>

#include "json/Read.h"

namespace virtualtv::json {

namespace {

/// The position after the closing quote of the text that starts at `at`.
std::size_t endOfText(std::string_view text, std::size_t at) {
  for (++at; text[at] != '"'; ++at) {
    if (text[at] == '\\') ++at;
  }
  return at + 1;
}

/// The position after the bracket that closes the first one.
std::size_t endOfList(std::string_view text) {
  std::size_t depth = 0;
  for (std::size_t at = 0;;) {
    const char letter = text[at];
    if (letter == '"') {
      at = endOfText(text, at);
      continue;
    }
    ++at;
    if (letter == '{' || letter == '[') ++depth;
    if ((letter == '}' || letter == ']') && --depth == 0) return at;
  }
}

std::size_t endOfValue(std::string_view text) {
  switch (text.front()) {
    case '"':
      return endOfText(text, 0);
    case '{':
    case '[':
      return endOfList(text);
    default:
      return std::min(text.find_first_of(" \t\r\n,]}"), text.size());
  }
}

}  // namespace

Parts::Parts(std::string_view text) : rest_(text) {
  skipBlanks();
  if (rest_.starts_with('{')) end_ = '}';
  if (rest_.starts_with('[')) end_ = ']';
  rest_.remove_prefix(end_ == '\0' ? rest_.size() : 1);
}

bool Parts::next() {
  skipBlanks();
  if (rest_.starts_with(',')) rest_.remove_prefix(1);
  skipBlanks();
  if (rest_.empty() || rest_.front() == end_) return false;
  if (isObject()) {
    name_ = take(endOfText(rest_, 0));
    skipBlanks();
    rest_.remove_prefix(1);  // the colon
    skipBlanks();
  }
  value_ = take(endOfValue(rest_));
  return true;
}

std::string Parts::name() const {
  return *textOf(name_);
}

std::string_view Parts::take(std::size_t end) {
  const std::string_view taken = rest_.substr(0, end);
  rest_.remove_prefix(end);
  return taken;
}

void Parts::skipBlanks() {
  while (!rest_.empty() &&
         (rest_.front() == ' ' || rest_.front() == '\t' || rest_.front() == '\r' || rest_.front() == '\n')) {
    rest_.remove_prefix(1);
  }
}

std::optional<std::string> textOf(std::string_view value) {
  if (!value.starts_with('"')) return std::nullopt;
  if (value.find('\\') != std::string_view::npos) return readChecked(value).asString();
  return std::string(value.substr(1, value.size() - 2));
}

}  // namespace virtualtv::json
