#include "json/Write.h"

#include <array>
#include <charconv>
#include <string_view>

namespace virtualtv::json {

namespace {

void appendEscape(std::string& text, char letter) {
  constexpr std::string_view escaped = "\"\\\b\f\n\r\t";
  constexpr std::string_view names = "\"\\bfnrt";
  if (const std::size_t at = escaped.find(letter); at != std::string_view::npos) {
    text += '\\';
    text += names[at];
    return;
  }
  constexpr std::string_view digits = "0123456789abcdef";
  text += "\\u00";
  text += digits[static_cast<unsigned char>(letter) >> 4U];
  text += digits[static_cast<unsigned char>(letter) & 15U];
}

bool isPlain(char letter) {
  return static_cast<unsigned char>(letter) >= 0x20 && letter != '"' && letter != '\\';
}

void appendText(std::string& text, std::string_view value) {
  text += '"';
  for (std::size_t at = 0; at < value.size(); ++at) {
    const std::size_t start = at;
    while (at < value.size() && isPlain(value[at])) ++at;
    text.append(value.substr(start, at - start));
    if (at < value.size()) appendEscape(text, value[at]);
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
      text += value.asBool() ? "true" : "false";
      return;
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

std::string write(const Json::Value& value) {
  std::string text;
  append(text, value);
  return text;
}

}  // namespace virtualtv::json
