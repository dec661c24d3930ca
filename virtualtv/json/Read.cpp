// SPDX-License-Identifier: MIT
#include "json/Read.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>

#include "text/Numbers.h"
#include "text/Units.h"

namespace virtualtv::json {

namespace {

bool isDigit(char letter) {
  return letter >= '0' && letter <= '9';
}

/// Scans a text once, and throws where it is not JSON.
class Scan {
 public:
  Scan(std::string_view text, const Limits& limits) : text_(text), limits_(limits) {}

  void all() {
    requireUtf8();
    value(0);
    if (at_ != text_.size()) fail("nothing more is wanted behind the value");
  }

 private:
  [[noreturn]] void fail(const std::string& reason) const {
    const std::string_view before = text_.substr(0, at_);
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    const std::size_t column = at_ - (before.rfind('\n') + 1) + 1;  // npos + 1 is 0
    throw NotJson("line " + std::to_string(line) + ", column " + std::to_string(column) + ": " +
                  (here() == '/' ? "JSON has no comments" : reason));
  }

  void requireUtf8() {
    const std::size_t front = text::utf8Front(text_).size();
    if (front == text_.size()) return;
    at_ = front;
    fail("not UTF-8");
  }

  /// The current letter; zero at the end, which never starts a JSON value.
  char here() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  bool skip(char letter) {
    if (here() != letter || at_ == text_.size()) return false;
    ++at_;
    return true;
  }
  void skipBlanks() {
    while (at_ < text_.size() && isBlank(text_[at_])) ++at_;
  }
  static bool isBlank(char letter) { return letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n'; }

  void value(std::size_t depth) {
    skipBlanks();
    if (++values_ > limits_.values) fail("more than " + std::to_string(limits_.values) + " values");
    switch (here()) {
      case '{':
        return list(depth + 1, '}', [this, depth] { member(depth + 1); });
      case '[':
        return list(depth + 1, ']', [this, depth] { value(depth + 1); });
      case '"':
        string();
        return skipBlanks();
      default:
        word();
        return skipBlanks();
    }
  }

  /// Reads an array or object, starting at its bracket.
  template <typename Item>
  void list(std::size_t depth, char end, Item item) {
    if (depth > limits_.depth) fail("nested deeper than " + std::to_string(limits_.depth));
    ++at_;
    skipBlanks();
    if (!skip(end)) {
      do {
        item();
      } while (skip(','));
      if (!skip(end)) fail(std::string("a comma or ") + end + " is wanted");
    }
    skipBlanks();
  }

  void member(std::size_t depth) {
    skipBlanks();
    if (here() != '"') fail("a name between double quotes is wanted");
    string();
    skipBlanks();
    if (!skip(':')) fail("a colon is wanted behind the name");
    value(depth);
  }

  void string() {
    ++at_;
    for (;;) {
      while (at_ < text_.size() && !endsPlainText(text_[at_])) ++at_;
      if (at_ == text_.size()) fail("a text has no end");
      if (skip('"')) return;
      if (here() != '\\') fail("a control character in a text; it is written with a backslash");
      escape();
    }
  }
  static bool endsPlainText(char letter) {
    return letter == '"' || letter == '\\' || static_cast<unsigned char>(letter) < 0x20;
  }

  void escape() {
    const std::size_t start = at_++;
    if (here() != 'u') {
      if (at_ == text_.size() || std::string_view("\"\\/bfnrt").find(here()) == std::string_view::npos) {
        fail("there is no such escape");
      }
      ++at_;
      return;
    }
    const unsigned first = unit();
    if (first < 0xD800 || first > 0xDFFF) return;
    const bool followed = first < 0xDC00 && text_.substr(at_, 2) == "\\u";
    if (followed) ++at_;
    const unsigned second = followed ? unit() : 0;
    if (second >= 0xDC00 && second <= 0xDFFF) return;
    if (limits_.loneSurrogates) return;
    at_ = start;
    fail("half of a surrogate pair alone is no character");
  }

  /// Reads the four digits after the current `u`.
  unsigned unit() {
    ++at_;
    unsigned unit = 0;
    for (int digit = 0; digit < 4; ++digit, ++at_) {
      if (std::isxdigit(static_cast<unsigned char>(here())) == 0) fail("four hexadecimal digits are wanted");
      const char letter = here();
      unit = unit * 16 + static_cast<unsigned>(isDigit(letter) ? letter - '0' : (letter | 0x20) - 'a' + 10);
    }
    return unit;
  }

  void word() {
    if (here() == '-' || isDigit(here())) return number();
    for (const std::string_view word : {"true", "false", "null"}) {
      if (text_.substr(at_, word.size()) != word) continue;
      at_ += word.size();
      return;
    }
    fail(at_ == text_.size() ? "a value is wanted, not the end" : "a value is wanted");
  }

  void number() {
    constexpr std::size_t mostDigits = 300;  // every number with this many digits fits a double
    const std::size_t start = at_;
    skip('-');
    if (!skip('0')) digits();
    if (skip('.')) digits();
    bool isGreat = false;
    if (skip('e') || skip('E')) {
      isGreat = true;
      if (!skip('+')) skip('-');
      digits();
    }
    if (isGreat || at_ - start > mostDigits) requireDouble(start);
  }
  /// Requires that a double can hold the number just read.
  void requireDouble(std::size_t start) {
    const std::string number(text_.substr(start, at_ - start));
    if (!std::isinf(std::strtod(number.c_str(), nullptr))) return;
    at_ = start;
    fail("'" + number + "' is not a number");
  }
  void digits() {
    if (!isDigit(here())) fail("a digit is wanted");
    while (isDigit(here())) ++at_;
  }

  std::string_view text_;
  const Limits& limits_;
  std::size_t at_ = 0;
  std::size_t values_ = 0;
};

/// Throws the first error that jsoncpp reports: a line with the place, then a line with the reason.
[[noreturn]] void refuse(const std::string& errors) {
  std::istringstream lines(errors);
  std::string place;
  std::string reason;
  std::getline(lines, place);
  std::getline(lines, reason);
  const auto trimmed = [](const std::string& text) {
    return text.substr(std::min(text.find_first_not_of(" *"), text.size()));
  };
  std::transform(place.begin(), place.end(), place.begin(), [](unsigned char letter) { return std::tolower(letter); });
  const std::string line = trimmed(place) + ": " + trimmed(reason);
  throw NotJson(text::printable(line.substr(0, line.find_last_not_of('.') + 1)));
}

/// Creating a reader takes longer than reading a short text, so readers are reused.
Json::CharReader& readerFor(SameNames sameNames) {
  const auto made = [](bool refused) {
    Json::CharReaderBuilder builder;
    builder["rejectDupKeys"] = refused;
    return std::unique_ptr<Json::CharReader>(builder.newCharReader());
  };
  thread_local const std::unique_ptr<Json::CharReader> tolerant = made(false);
  thread_local const std::unique_ptr<Json::CharReader> strict = made(true);
  return sameNames == SameNames::refused ? *strict : *tolerant;
}

Json::Value parse(std::string_view text, SameNames sameNames) {
  Json::Value value;
  std::string errors;
  const char* const start = text.data();
  if (!readerFor(sameNames).parse(start, start + text.size(), &value, &errors)) refuse(errors);
  return value;
}

}  // namespace

void check(std::string_view text, const Limits& limits) {
  Scan(text, limits).all();
}

Json::Value read(std::string_view text, const Limits& limits, SameNames sameNames) {
  check(text, limits);
  return parse(text, sameNames);
}

Json::Value readChecked(std::string_view text) {
  // jsoncpp accepts the second half of a surrogate pair alone.
  const auto hasSurrogate = [&](std::string_view escape) { return text.find(escape) != std::string_view::npos; };
  if (hasSurrogate("\\ud") || hasSurrogate("\\uD")) check(text);
  return parse(text, SameNames::lastCounts);
}

}  // namespace virtualtv::json
