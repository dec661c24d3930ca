// SPDX-License-Identifier: MIT
#include "json/Write.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <string_view>

namespace virtualtv::json {

namespace {

constexpr std::size_t longestEscape = 6;  // `\u001f`

/// The escaped form of a letter. All its bytes are copied, whatever its length. A branch on the length would be
/// unpredictable in texts that contain documents, where every sixth letter is escaped.
struct Written {
  std::array<char, 7> text{};
  char length = 1;
};

constexpr std::array<Written, 256> writtenAs = [] {
  constexpr std::string_view digits = "0123456789abcdef";
  constexpr std::string_view escaped = "\"\\\b\f\n\r\t";
  constexpr std::string_view named = "\"\\bfnrt";
  std::array<Written, 256> all{};
  for (std::size_t letter = 0; letter < all.size(); ++letter) all[letter].text[0] = static_cast<char>(letter);
  for (std::size_t letter = 0; letter < 0x20; ++letter) {
    all[letter] = {{'\\', 'u', '0', '0', digits[letter >> 4U], digits[letter & 15U]}, longestEscape};
  }
  for (std::size_t at = 0; at < escaped.size(); ++at) {
    all[static_cast<unsigned char>(escaped[at])] = {{'\\', named[at]}, 2};
  }
  return all;
}();

/// Works in pieces, so that a long text without escapes needs no room for them.
void appendText(std::string& text, std::string_view value) {
  constexpr std::size_t piece = 1024;
  std::array<char, piece * longestEscape + sizeof(Written)> written;  // NOLINT(*-member-init): written before it is
                                                                      // read
  text += '"';
  if (value.size() > piece) text.reserve(text.size() + value.size() + value.size() / 3);
  while (!value.empty()) {
    char* end = written.data();
    for (const char letter : value.substr(0, piece)) {
      const Written& as = writtenAs[static_cast<unsigned char>(letter)];
      std::memcpy(end, &as, sizeof as);
      end += as.length;
    }
    text.append(written.data(), end);
    value.remove_prefix(std::min(piece, value.size()));
  }
  text += '"';
}

template <typename Number>
void appendNumber(std::string& text, Number number) {
  std::array<char, 24> digits{};
  text.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

void appendArray(std::string& text, const Json::Value& value) {
  char before = '[';
  if (value.empty()) text += '[';
  for (const Json::Value& item : value) {
    text += before;
    append(text, item);
    before = ',';
  }
  text += ']';
}

void appendObject(std::string& text, const Json::Value& value) {
  char before = '{';
  if (value.empty()) text += '{';
  for (auto member = value.begin(); member != value.end(); ++member) {
    const char* end = nullptr;
    const char* const name = member.memberName(&end);
    text += before;
    appendText(text, {name, static_cast<std::size_t>(end - name)});
    text += ':';
    append(text, *member);
    before = ',';
  }
  text += '}';
}

}  // namespace

void append(std::string& text, const Json::Value& value) {
  const char* start = nullptr;
  const char* end = nullptr;
  switch (value.type()) {
    case Json::nullValue:
      text += "null";
      return;
    case Json::booleanValue:
      return append(text, value.asBool());
    case Json::intValue:
      return appendNumber(text, value.asInt64());
    case Json::uintValue:
      return appendNumber(text, value.asUInt64());
    case Json::realValue:
      text += Json::valueToString(value.asDouble());
      return;
    case Json::stringValue:
      value.getString(&start, &end);
      return appendText(text, {start, static_cast<std::size_t>(end - start)});
    case Json::arrayValue:
      return appendArray(text, value);
    case Json::objectValue:
      return appendObject(text, value);
  }
}

void append(std::string& text, bool value) {
  text += value ? "true" : "false";
}

void append(std::string& text, std::int64_t value) {
  appendNumber(text, value);
}

void append(std::string& text, std::string_view value) {
  appendText(text, value);
}

std::string write(const Json::Value& value) {
  std::string text;
  append(text, value);
  return text;
}

}  // namespace virtualtv::json
